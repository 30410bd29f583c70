#include "richtext/RTFEditor.h"

#include "platform/desktop/Accessible.h"
#include "platform/desktop/Hourglass.h"
#include "platform/desktop/Icons.h"
#include "platform/desktop/MsgBox.h"
#include "platform/desktop/Toolbar.h"
#include "platform/print/PdfPath.h"
#include "platform/print/PrintJob.h"
#include "platform/print/PrintSetupDialog.h"
#include "platform/print/Printers.h"
#include "platform/rtf/RichText.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int timerInterval = 100;
constexpr int marginInset = 60; ///< Twips between the automatic margin and the box's edge.
constexpr char mixedProperty[] = "Mixed";

struct Button
{
    const char *key;
    const char *toolTip;
    const char *image;
    QKeySequence::StandardKey shortcut;
    bool toggles;
};

constexpr Button buttons[] = {
    {"bold", "Bold", "bold", QKeySequence::Bold, true},
    {"italic", "Italic", "italic", QKeySequence::Italic, true},
    {"underline", "Underline", "underline", QKeySequence::Underline, true},
    {"color", "Select Color", "paint", QKeySequence::UnknownKey, false},
    {"print", "Print selected text", "print", QKeySequence::UnknownKey, false},
};

struct Image
{
    const char *key;
    const char *themeName;
};

constexpr Image images[] = {
    {"bold", "format-text-bold"}, {"italic", "format-text-italic"},
    {"underline", "format-text-underline"}, {"paint", "format-text-color"},
    {"print", "document-print"}, {"spell", "tools-check-spelling"}, // of no button
};

QString latin(const char *text)
{
    return QString::fromLatin1(text);
}

QTimer *makeTimer(QObject *parent)
{
    auto *timer = new QTimer(parent);
    timer->setSingleShot(true);
    timer->setInterval(timerInterval);
    return timer;
}

} // namespace

RTFEditor::RTFEditor(QWidget *parent)
    : QWidget(parent)
    , tbControl(new Toolbar(QStringLiteral("Formatting")))
    , cboFonts(new QComboBox)
    , cboFontSize(new QComboBox)
    , m_bar(new QWidget(this))
    , rtControl(nullptr)
    , tmrSelchange(makeTimer(this))
    , tmrResize(makeTimer(this))
{
    tbControl->setObjectName(QStringLiteral("tbControl"));
    cboFonts->setObjectName(QStringLiteral("cboFonts"));
    cboFontSize->setObjectName(QStringLiteral("cboFontSize"));

    // Made in the order of the Tab key, so that Shift+Tab goes from the text over the boxes to the
    // buttons.
    for (const Button &button : buttons) {
        QAction *action = tbControl->addButton(latin(button.key), latin(button.toolTip));
        action->setCheckable(button.toggles);
        tbControl->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
        if (button.shortcut != QKeySequence::UnknownKey) {
            action->setShortcut(button.shortcut);
            action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
            addAction(action);
            action->setToolTip(latin(button.toolTip)); // without the key: the text is given
        }
    }
    auto *bullets = new QShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_L, this);
    bullets->setContext(Qt::WidgetWithChildrenShortcut);
    connect(bullets, &QShortcut::activated, this,
        [this] { toggle(SelBullet(), &RichTextBox::setSelBullet); });
    auto *row = new QHBoxLayout(m_bar);
    row->setContentsMargins(0, 0, 0, 2);
    row->addWidget(tbControl);
    row->addWidget(cboFonts, 1);
    row->addWidget(cboFontSize);
    row->addStretch(1);
    Accessible::setName(*cboFonts, QStringLiteral("Font name"));
    Accessible::setName(*cboFontSize, QStringLiteral("Font size"));
    tbControl->setIconSize(QSize(18, 18));
    cboFonts->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cboFonts->setMinimumContentsLength(12);

    rtControl = new RichTextBox(QStringLiteral("Arial"), 10, this);
    rtControl->setObjectName(QStringLiteral("rtControl"));
    rtControl->setAccessibleName(QStringLiteral("Text"));
    Accessible::makeEditor(*rtControl);

    setContextMenuPolicy(Qt::PreventContextMenu); // its actions are no menu
    refreshImages();

    connect(tbControl, &Toolbar::ButtonClick, this, &RTFEditor::tbControl_ButtonClick);
    connect(cboFonts, &QComboBox::activated, this, &RTFEditor::cboFonts_Click);
    connect(cboFontSize, &QComboBox::activated, this, &RTFEditor::cboFontSize_Click);
    connect(rtControl, &RichTextBox::Change, this, &RTFEditor::rtControl_Change);
    connect(rtControl, &RichTextBox::SelChange, this, &RTFEditor::rtControl_SelChange);
    // Queued: another program waits while what it dragged here is dropped.
    connect(rtControl, &RichTextBox::PictureTooLong, this, &RTFEditor::rtControl_PictureTooLong,
        Qt::QueuedConnection);
    rtControl->installEventFilter(this);
    connect(tmrSelchange, &QTimer::timeout, this, &RTFEditor::tmrSelchange_Timer);
    connect(tmrResize, &QTimer::timeout, this, &RTFEditor::tmrResize_Timer);
    connect(qApp, &QApplication::focusChanged, this, &RTFEditor::focusChanged);
    UserControl_Initialize();
}

RTFEditor::~RTFEditor()
{
    // What is left of the editor gives up the focus when it goes, and would be told of that.
    qApp->disconnect(this);
}

void RTFEditor::UserControl_Initialize()
{
    const QScopedValueRollback guard(m_synchronising, true);
    cboFonts->addItems(RichText::screenFonts());
    cboFonts->setCurrentIndex(cboFonts->findText(QStringLiteral("Arial"), Qt::MatchExactly));
    for (const char *size : {"8", "10", "12", "14", "18", "24"})
        cboFontSize->addItem(latin(size));
    cboFontSize->setCurrentIndex(cboFontSize->findText(QStringLiteral("10")));
}

// --- Properties ---

void RTFEditor::setTextRTF(const QString &rtf)
{
    rtControl->setTextRTF(rtf);
    m_changed = false;
}

int RTFEditor::RightMargin() const
{
    return m_automaticMargin ? rtControl->RightMargin() : 0; // Kept: the wrong way round.
}

void RTFEditor::setRightMargin(int twips)
{
    m_automaticMargin = twips == 0;
    rtControl->setRightMargin(m_automaticMargin ? rtControl->widthInTwips() - marginInset : twips);
}

void RTFEditor::UserControl_ReadProperties(const QVariantMap &bag)
{
    setBorderStyle(bag.value(QStringLiteral("BorderStyle"), RichTextBox::rtfFixedSingle).toInt());
    m_automaticMargin = false;
    rtControl->setRightMargin(
        static_cast<int>(bag.value(QStringLiteral("RightMargin"), 0).toFloat()));
    if (rtControl->RightMargin() == 0)
        setRightMargin(0);
}

QVariantMap RTFEditor::UserControl_WriteProperties() const
{
    const QVariant margin = m_automaticMargin
        ? QVariant::fromValue(qint16(0))
        : QVariant::fromValue(static_cast<float>(rtControl->RightMargin()));
    return {
        {QStringLiteral("BorderStyle"), QVariant::fromValue(static_cast<qint16>(BorderStyle()))},
        {QStringLiteral("RightMargin"), margin}};
}

// --- The text's events ---

void RTFEditor::rtControl_Change()
{
    if (m_synchronising)
        return;
    m_changed = true;
    if (!tmrSelchange->isActive())
        tmrSelchange->start();
}

void RTFEditor::rtControl_SelChange()
{
    Q_EMIT SelChange();
    if (m_userMode)
        tmrSelchange->start(); // anew, so that it fires after the last of a burst
}

void RTFEditor::rtControl_PictureTooLong(const QImage &picture, qint64 bytes)
{
    const QString sizes = QStringLiteral(
        "With this picture the text would need %L1 bytes. At most %L2 can be stored.")
                              .arg(bytes)
                              .arg(rtControl->longestRTF());
    if (picture.isNull()) {
        MsgBox::show(this, sizes, MsgBox::Buttons::Ok, MsgBox::Icon::Exclamation);
        return;
    }
    const auto answer = MsgBox::show(this, sizes + QStringLiteral("\n\nMake the picture smaller?"),
        MsgBox::Buttons::YesNo, MsgBox::Icon::Question);
    if (answer == MsgBox::Answer::Yes && !rtControl->insertSmallerPicture(picture)) {
        MsgBox::show(this, QStringLiteral("The text has no room for a picture."),
            MsgBox::Buttons::Ok, MsgBox::Icon::Exclamation);
    }
}

void RTFEditor::tmrSelchange_Timer()
{
    SyncToolbar();
    if (m_changed) {
        Q_EMIT Change();
        m_changed = false;
    }
}

// --- Toolbar and boxes ---

void RTFEditor::SyncToolbar()
{
    if (m_synchronising)
        return;
    const QScopedValueRollback guard(m_synchronising, true);
    syncButton(QStringLiteral("bold"), SelBold());
    syncButton(QStringLiteral("italic"), SelItalic());
    syncButton(QStringLiteral("underline"), SelUnderline());
    if (const auto family = SelFontName()) {
        const int index = cboFonts->findText(*family, Qt::MatchExactly);
        if (index >= 0)
            cboFonts->setCurrentIndex(index);
    }
    const auto size = SelFontSize();
    for (int i = 0; size && i < cboFontSize->count(); ++i) {
        if (cboFontSize->itemText(i).toInt() == *size) {
            cboFontSize->setCurrentIndex(i);
            break;
        }
    }
}

void RTFEditor::syncButton(const QString &key, std::optional<bool> value)
{
    QAction *button = tbControl->button(key);
    button->setChecked(value.value_or(false));
    if (isMixed(key) == !value)
        return;
    button->setProperty(mixedProperty, !value);
    if (QWidget *widget = tbControl->widgetForAction(button))
        widget->setAccessibleDescription(value ? QString() : QStringLiteral("Mixed"));
    showImage(button);
}

bool RTFEditor::isMixed(const QString &key) const
{
    const QAction *button = tbControl->button(key);
    return button && button->property(mixedProperty).toBool();
}

void RTFEditor::tbControl_ButtonClick(const QString &key)
{
    if (key == QStringLiteral("bold"))
        toggle(SelBold(), &RichTextBox::setSelBold);
    else if (key == QStringLiteral("italic"))
        toggle(SelItalic(), &RichTextBox::setSelItalic);
    else if (key == QStringLiteral("underline"))
        toggle(SelUnderline(), &RichTextBox::setSelUnderline);
    else if (key == QStringLiteral("color"))
        chooseColour();
    else if (key == QStringLiteral("print"))
        printSelection();
    rtControl->setFocus(); // as the boxes do: whoever came by Tab goes on writing
}

void RTFEditor::toggle(std::optional<bool> value, void (RichTextBox::*set)(bool))
{
    (rtControl->*set)(value == false);
    SyncToolbar(); // the click has pressed the button, whatever the selection was
}

void RTFEditor::chooseColour()
{
    const auto present = SelColor();
    const QColor colour = QColorDialog::getColor(present.value_or(Qt::black), this);
    if (colour.isValid()) // else cancelled
        setSelColor(colour);
}

void RTFEditor::printSelection()
{
    if (!m_printers)
        return;
    PrintSetupDialog dlg(*m_printers, this);
    dlg.askWhatToPrint(SelLength() >= 1);
    if (dlg.exec() != QDialog::Accepted)
        return;
    PrintJob job(*m_printers, QStringLiteral("Text"));
    if (m_printers->name() == Printers::pdfFile()) {
        const QString path = askForPdfPath(this, QStringLiteral("Text"));
        if (path.isEmpty())
            return;
        job.setFileName(path);
    }
    Hourglass busy;
    // A failure leaves nothing printed, and nothing to say.
    if (!job.start())
        return;
    print(job, dlg.selectionOnly());
    job.end();
}

void RTFEditor::print(PrintJob &job, bool selectionOnly)
{
    const QRect area = QRect(QPoint(0, 0), job.paper().size).marginsRemoved(job.paper().margins());
    rtControl->SelPrint(
        job.painter(), area, [&job] { job.newPage(); }, selectionOnly);
}

void RTFEditor::cboFonts_Click()
{
    if (m_synchronising)
        return;
    rtControl->setSelFontName(cboFonts->currentText());
    rtControl->setFocus();
}

void RTFEditor::cboFontSize_Click()
{
    if (m_synchronising)
        return;
    rtControl->setSelFontSize(cboFontSize->currentText().toDouble());
    rtControl->setFocus();
}

void RTFEditor::refreshImages()
{
    for (const Image &image : images)
        m_images.insert(latin(image.key), Icons::named(latin(image.themeName)));
    const auto all = tbControl->buttons();
    for (QAction *button : all)
        showImage(button);
}

void RTFEditor::showImage(QAction *button)
{
    const auto *row = std::find_if(std::begin(buttons), std::end(buttons),
        [&](const Button &b) { return latin(b.key) == Toolbar::key(button); });
    QIcon image = m_images.value(latin(row->image));
    if (button->property(mixedProperty).toBool()) {
        // Greyed, but it works: neither pressed nor not.
        QIcon grey;
        for (const int side : {18, 36})
            grey.addPixmap(image.pixmap(QSize(side, side), 1, QIcon::Disabled));
        image = grey;
    }
    button->setIcon(image);
}

// --- Layout and focus ---

QSize RTFEditor::minimumSizeHint() const
{
    const QSize bar = m_bar->minimumSizeHint();
    return {bar.width(), bar.height() + 3 * fontMetrics().height()};
}

void RTFEditor::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_bar->setGeometry(0, 0, width(), m_bar->sizeHint().height());
    if (!tmrResize->isActive())
        tmrResize->start();
}

void RTFEditor::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    tmrResize_Timer(); // not a tenth of a second late
}

void RTFEditor::tmrResize_Timer()
{
    tmrResize->stop();
    const int top = m_bar->height();
    if (width() <= 0 || height() <= top)
        return; // too small: the box stays as it was
    rtControl->setGeometry(0, top, width(), height() - top);
    if (m_automaticMargin)
        setRightMargin(0);
}

void RTFEditor::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !tbControl->buttons().isEmpty())
        refreshImages();
}

void RTFEditor::focusInEvent(QFocusEvent *)
{
    // Not by a focus proxy: Qt then leaves the boxes out on the way back from the text.
    UserControl_EnterFocus();
}

void RTFEditor::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QWidget::keyPressEvent(event);
        return;
    }
    // What the boxes and buttons leave would press the dialog's default button.
    if (auto *button = qobject_cast<QAbstractButton *>(focusWidget()))
        button->click();
    event->accept();
}

bool RTFEditor::eventFilter(QObject *watched, QEvent *event)
{
    const bool isKey =
        event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (watched != rtControl || !isKey)
        return QWidget::eventFilter(watched, event);
    const auto *keys = static_cast<QKeyEvent *>(event);
    const int key = keys->key();
    const bool writes = key == Qt::Key_Tab || key == Qt::Key_Return || key == Qt::Key_Enter;
    if (!writes || (keys->modifiers() & ~Qt::KeypadModifier) != Qt::ControlModifier)
        return QWidget::eventFilter(watched, event);
    // Ctrl+Tab and Ctrl+Enter write what the key alone does, whatever they mean to the dialog.
    if (event->type() == QEvent::KeyPress) {
        QKeyEvent plain(QEvent::KeyPress, key, Qt::NoModifier,
            key == Qt::Key_Tab ? QStringLiteral("\t") : QStringLiteral("\r"));
        QCoreApplication::sendEvent(rtControl, &plain);
    }
    event->accept();
    return true;
}

void RTFEditor::focusChanged(QWidget *old, QWidget *now)
{
    if (!now || !isAncestorOf(now) || (old && isAncestorOf(old)))
        return;
    // Tab from outside comes to the first button; whoever clicks into a box means the box.
    const auto *first = tbControl->widgetForAction(tbControl->buttons().constFirst());
    if (now == rtControl || now == first)
        UserControl_EnterFocus();
}

void RTFEditor::UserControl_EnterFocus()
{
    if (cboFonts->currentIndex() < 0)
        cboFonts->setCurrentIndex(0);
    if (!rtControl->hasFocus())
        rtControl->setFocus();
}
