#include "tooledit/frmFileButton.h"

#include "model/CVBATool.h"
#include "platform/VbError.h"
#include "platform/desktop/Accessible.h"
#include "platform/desktop/DirListBox.h"
#include "platform/desktop/DriveListBox.h"
#include "platform/desktop/FileListBox.h"
#include "platform/desktop/Hourglass.h"
#include "platform/desktop/Icons.h"
#include "platform/desktop/MsgBox.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/desktop/Tag.h"
#include "platform/desktop/mFileUtil.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureControl.h"
#include "platform/picture/ProgramIcons.h"
#include "shell/Frame.h"
#include "shell/Settings.h"
#include "shell/frmHelp.h"
#include "tooledit/IconStrip.h"
#include "tooledit/IconStripModel.h"
#include "tooledit/capture.h"

#include <QAccessible>
#include <QComboBox>
#include <QDir>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>

namespace {

constexpr int previewSize = 288; ///< A multiple of what icons and buttons measure: 16, 18, 32, 48.
constexpr char16_t section[] = u"FileButton";
constexpr char16_t key[] = u"Path";

QString application()
{
    return QString::fromUtf16(Settings::application);
}

bool hasExtension(const QString &name, const char *extension)
{
    return name.endsWith(QLatin1StringView(extension), Qt::CaseInsensitive);
}

/// A frame around a picture; it shows where the keys go, and bears the picture's tag.
QFrame *framed(PictureControl *picture, int side, QWidget *parent)
{
    auto *frame = new QFrame(parent);
    frame->setFrameShape(QFrame::Box);
    auto *layout = new QVBoxLayout(frame);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->addWidget(picture);
    picture->setFixedSize(side, side);
    Tag::set(*frame, Tag::of(*picture));
    Tag::set(*picture, {});
    frame->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return frame;
}

} // namespace

frmFileButton::frmFileButton(SettingsStore &settings, QWidget *parent)
    : QDialog(parent)
    , m_settings(settings)
{
    setObjectName(QStringLiteral("frmFileButton"));
    setWindowTitle(QStringLiteral("VB Quillon - Get Button Image From File"));
    makeControls();
    layOut();
    Form_Load();
}

void frmFileButton::makeControls()
{
    const auto tagged = [this](QWidget *control, const QString &name, const QString &tag) {
        control->setObjectName(name);
        Tag::set(*control, tag);
        Accessible::setName(*control, QString(tag).remove(u':')); // the captions are painted
    };
    const auto hidden = [this](const QString &name) {
        auto *picture = new PictureControl(this);
        picture->setObjectName(name);
        picture->hide();
        return picture;
    };

    DirList = new DirListBox(this);
    tagged(DirList, QStringLiteral("DirList"), QStringLiteral("Folders:"));
    FileList = new FileListBox(this);
    tagged(FileList, QStringLiteral("FileList"), QStringLiteral("Files:"));
    DriveList = new DriveListBox(this);
    tagged(DriveList, QStringLiteral("DriveList"), QStringLiteral("Drives:"));
    cboFilter = new QComboBox(this);
    tagged(cboFilter, QStringLiteral("cboFilter"), QStringLiteral("List Files of Type:"));
    // Kept: the blank behind "*.exe".
    cboFilter->addItems({QStringLiteral("*.*"), QStringLiteral("*.bmp"), QStringLiteral("*.dll"),
        QStringLiteral("*.exe "), QStringLiteral("*.ico"), QStringLiteral("*.wmf")});

    picFile = hidden(QStringLiteral("picFile"));
    picFileIcon = hidden(QStringLiteral("picFileIcon"));
    imgConvert = hidden(QStringLiteral("imgConvert"));
    imgConvert->resize(CVBATool::pictureSide, CVBATool::pictureSide);
    picImage = new PictureControl(this);
    tagged(picImage, QStringLiteral("picImage"), QStringLiteral("Preview:"));
    picImage->setFocusPolicy(Qt::StrongFocus);
    picImage->setCursor(Qt::CrossCursor);
    picImage->installEventFilter(this);
    const QString marking = QStringLiteral(
        "Mark a part with the mouse, or with the keys: arrows move (with Ctrl by one pixel), Space "
        "begins and ends the part. A click takes the whole preview.");
    picImage->setToolTip(marking);
    picImage->setAccessibleDescription(marking);
    picButton = new PictureControl(this);
    tagged(picButton, QStringLiteral("picButton"), QStringLiteral("Button:"));

    picIcoCtrl = new QWidget(this);
    picIcoCtrl->setObjectName(QStringLiteral("picIcoCtrl"));
    const auto stepper = [this](int index, const QString &icon, QStyle::StandardPixmap fallback,
                             const QString &name, const QKeySequence &shortcut) {
        auto *button = new QPushButton(picIcoCtrl);
        button->setObjectName(QStringLiteral("cmdIcon%1").arg(index));
        button->setIcon(Icons::named(icon, fallback));
        button->setAccessibleName(name);
        button->setToolTip(
            name + QStringLiteral(" (") + shortcut.toString(QKeySequence::NativeText) + u')');
        // Not the button's own shortcut: that runs its animation first, and so a key held down
        // would step only once.
        connect(new QShortcut(shortcut, this), &QShortcut::activated, this,
            [this, index] { cmdIcon_Click(index); });
        connect(button, &QPushButton::clicked, this, [this, index] { cmdIcon_Click(index); });
        return button;
    };
    cmdIcon = {stepper(0, QStringLiteral("go-previous"), QStyle::SP_ArrowLeft,
                   QStringLiteral("Previous icon"), QKeySequence(Qt::ALT | Qt::Key_Left)),
        stepper(1, QStringLiteral("go-next"), QStyle::SP_ArrowRight, QStringLiteral("Next icon"),
            QKeySequence(Qt::ALT | Qt::Key_Right))};
    txtIcon = new QLineEdit(QStringLiteral("1 of 16"), picIcoCtrl);
    txtIcon->setObjectName(QStringLiteral("txtIcon"));
    txtIcon->setAccessibleName(QStringLiteral("Icon"));
    txtIcon->setReadOnly(true);
    txtIcon->setAlignment(Qt::AlignCenter);

    lblNoPicture = new QLabel(QStringLiteral("This file holds no picture."), this);
    lblNoPicture->setObjectName(QStringLiteral("lblNoPicture"));
    lblNoPicture->setWordWrap(true);

    m_strip = new IconStripModel(this);
    lvIcons = new IconStrip(this);
    lvIcons->setObjectName(QStringLiteral("lvIcons"));
    lvIcons->setAccessibleName(QStringLiteral("Icons of the file"));
    lvIcons->setModel(m_strip);

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdHelp = new QPushButton(QStringLiteral("&Help"), this);
    cmdHelp->setObjectName(QStringLiteral("cmdHelp"));

    connect(DriveList, &DriveListBox::Change, this, &frmFileButton::DriveList_Change);
    connect(DirList, &DirListBox::Change, this, &frmFileButton::DirList_Change);
    connect(cboFilter, &QComboBox::currentIndexChanged, this, &frmFileButton::cboFilter_Click);
    connect(FileList, &FileListBox::KeyUp, this, &frmFileButton::FileList_KeyUp);
    connect(FileList, &FileListBox::MouseUp, this, &frmFileButton::FileList_MouseUp);
    connect(FileList, &FileListBox::DblClick, this, &frmFileButton::FileList_DblClick);
    connect(picImage, &PictureControl::MouseDown, this, &frmFileButton::picImage_MouseDown);
    connect(picImage, &PictureControl::MouseMove, this, &frmFileButton::picImage_MouseMove);
    connect(picImage, &PictureControl::MouseUp, this, &frmFileButton::picImage_MouseUp);
    connect(lvIcons->selectionModel(), &QItemSelectionModel::currentChanged, this,
        &frmFileButton::lvIcons_Click);
    connect(cmdOK, &QPushButton::clicked, this, &frmFileButton::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmFileButton::cmdCancel_Click);
    connect(cmdHelp, &QPushButton::clicked, this, &frmFileButton::cmdHelp_Click);
}

void frmFileButton::layOut()
{
    auto *icons = new QHBoxLayout(picIcoCtrl);
    icons->setContentsMargins(0, 0, 0, 0);
    icons->addWidget(cmdIcon[0]);
    icons->addWidget(txtIcon, 1);
    icons->addWidget(cmdIcon[1]);

    // Room above each tagged control, for PrintCaptions().
    const int caption = fontMetrics().height() + 4;
    QFrame *preview = framed(picImage, previewSize, this);
    preview->setObjectName(QStringLiteral("previewFrame"));
    auto *button = new QHBoxLayout;
    button->addWidget(framed(picButton, CVBATool::pictureSide, this));
    button->addStretch(1);

    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(14);
    grid->setVerticalSpacing(3);
    grid->setRowMinimumHeight(0, caption);
    grid->addWidget(DirList, 1, 0, 2, 1);
    grid->addWidget(FileList, 1, 1, 2, 1);
    grid->addWidget(preview, 1, 2, Qt::AlignTop);
    auto *belowPreview = new QVBoxLayout;
    belowPreview->setSpacing(3);
    belowPreview->addWidget(picIcoCtrl);
    belowPreview->addWidget(lblNoPicture);
    belowPreview->addStretch(1);
    grid->addLayout(belowPreview, 2, 2);
    grid->setRowStretch(2, 1);
    grid->setRowMinimumHeight(3, caption + 4);
    grid->addWidget(DriveList, 4, 0);
    grid->addWidget(cboFilter, 4, 1);
    grid->addLayout(button, 4, 2);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    for (QWidget *list : {static_cast<QWidget *>(DirList), static_cast<QWidget *>(FileList)})
        list->setMinimumWidth(190);

    for (QWidget *of : {picIcoCtrl, static_cast<QWidget *>(lblNoPicture)}) {
        QSizePolicy policy = of->sizePolicy();
        policy.setRetainSizeWhenHidden(true); // nothing jumps from file to file
        of->setSizePolicy(policy);
        of->hide();
    }

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (QPushButton *each : {cmdOK, cmdCancel, cmdHelp})
        buttons->addWidget(each);
    auto *all = new QVBoxLayout(this);
    all->setSpacing(10);
    all->addLayout(grid, 1);
    all->addWidget(lvIcons);
    all->addLayout(buttons);

    const std::array<QWidget *, 12> order {DirList, FileList, DriveList, cboFilter, picImage,
        cmdIcon[0], txtIcon, cmdIcon[1], lvIcons, cmdOK, cmdCancel, cmdHelp};
    for (std::size_t i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
    FileList->setFocus();
}

void frmFileButton::Form_Load()
{
    setFolder(m_settings.GetSetting(application(), QString::fromUtf16(section),
        QString::fromUtf16(key), QDir::toNativeSeparators(QDir::currentPath())));
    if (DirList->Path().isEmpty()) // the folder of last time is gone
        setFolder(QDir::currentPath());
    cboFilter->setCurrentIndex(0);
    m_ok = false;
    unsetCursor();
}

void frmFileButton::Form_QueryUnload()
{
    try {
        m_settings.SaveSetting(
            application(), QString::fromUtf16(section), QString::fromUtf16(key), DirList->Path());
    } catch (const VbError &) {
        // The next time starts in the folder of the time before.
    }
}

void frmFileButton::done(int result)
{
    Form_QueryUnload();
    QDialog::done(result);
}

// --- Lists ---

QString frmFileButton::Folder() const
{
    return DirList->Path();
}

void frmFileButton::setFolder(const QString &path)
{
    DriveList->setDrive(path);
    DirList->setPath(path);
}

void frmFileButton::setButtonPicture(const QImage &picture)
{
    picButton->setPicture(picture);
}

void frmFileButton::DriveList_Change()
{
    DirList->setPath(DriveList->Drive());
}

void frmFileButton::DirList_Change()
{
    FileList->setPath(DirList->Path());
    // Going up may lead out of the drive.
    const QSignalBlocker guard(DriveList);
    DriveList->setDrive(DirList->Path());
}

void frmFileButton::cboFilter_Click()
{
    FileList->setPattern(cboFilter->currentText());
}

void frmFileButton::FileList_KeyUp()
{
    if (FileList->FileName().isEmpty())
        return;
    // Whoever chooses a file is through with the folders: OK must not open one.
    DirList->highlightOpenFolder();
    GetFilePicture();
    snapshotOfPreview();
}

void frmFileButton::FileList_MouseUp()
{
    FileList_KeyUp();
}

void frmFileButton::FileList_DblClick()
{
    cmdOK_Click();
}

void frmFileButton::GetFilePicture()
{
    const QString name = FileList->FileName();
    if (name.isEmpty())
        return;
    const bool shown = showFile(name);
    m_hasPreview = m_hasPreview || shown;
    lblNoPicture->setVisible(!shown);
    if (!shown) {
        QAccessibleEvent alert(lblNoPicture, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

bool frmFileButton::showFile(const QString &name)
{
    if (hasExtension(name, ".dib"))
        return false;
    const QString path = mFileUtil::AddSeparator(DirList->Path()) + name;
    if (hasExtension(name, ".dll") || hasExtension(name, ".exe")) {
        m_iconCount = CountIcons(path);
        if (m_iconCount == 0) {
            hideIcons();
            return false;
        }
        m_iconFile = path;
        m_icon = 1;
        m_strip->setIcons(std::make_unique<ProgramIcons>(path), m_iconCount);
        picIcoCtrl->show();
        return ShowIcon(path, 1);
    }
    hideIcons();
    const Hourglass busy;
    const QImage picture = Picture::load(path);
    if (picture.isNull())
        return false;
    picFile->setPicture(picture);
    picFile_Change();
    return true;
}

// --- Pictures ---

void frmFileButton::picFile_Change()
{
    picImage->setPicture(picFile->Picture());
}

void frmFileButton::snapshotOfPreview()
{
    if (!m_hasPreview)
        return;
    ButtonSnapShot(picImage, 0, 0, picImage->width(), picImage->height());
}

bool frmFileButton::ButtonSnapShot(QWidget *window, int x1, int y1, int x2, int y2)
{
    if (x1 == x2 || y1 == y2)
        return true;
    QString error;
    {
        const Hourglass busy;
        if (x2 < x1)
            Swap(x1, x2);
        if (y2 < y1)
            Swap(y1, y2);
        const QPoint topLeft = window->mapToGlobal(QPoint(x1, y1));
        const QPoint bottomRight = window->mapToGlobal(QPoint(x2, y2));
        // The capture does not tell whether it wrote the file: a former one must not pass for it.
        QFile::remove(m_fileName);
        // The preview keeps its picture, although the capture lands in picFile: so another part
        // can be marked.
        capture::CaptureScreenRectToFile(
            {topLeft.x(), topLeft.y(), bottomRight.x(), bottomRight.y()}, m_fileName, *picFile);
        const QImage picture = Picture::load(m_fileName);
        if (picture.isNull()) {
            error = QStringLiteral("The picture cannot be written to \"%1\".").arg(m_fileName);
        } else {
            imgConvert->setPicture(picture);
            picButton->setPicture(imgConvert->Image());
        }
    }
    if (error.isEmpty())
        return true;
    MsgBox::show(this, error, MsgBox::Buttons::Ok, MsgBox::Icon::Exclamation);
    return false;
}

void frmFileButton::picImage_MouseDown(const QPoint &position)
{
    m_band.begin(position);
    picImage->setBand({});
}

void frmFileButton::picImage_MouseMove(const QPoint &position)
{
    m_band.moveTo(position);
    picImage->setBand(m_band.shown());
}

void frmFileButton::picImage_MouseUp(const QPoint &position)
{
    m_band.moveTo(position);
    picImage->setBand({}); // it must not be in the picture
    const QPoint from = m_band.start();
    const QPoint to = m_band.end();
    if (m_hasPreview && m_band.hasArea())
        ButtonSnapShot(picImage, from.x(), from.y(), to.x(), to.y());
    else
        snapshotOfPreview();
}

bool frmFileButton::imageKeyPressed(int pressed, Qt::KeyboardModifiers modifiers)
{
    switch (m_band.pressed(pressed, modifiers, picImage->size())) {
    case RubberBand::Effect::None:
        return false; // Escape closes the dialog
    case RubberBand::Effect::Moved:
        picImage->setBand(m_band.shown());
        break;
    case RubberBand::Effect::Ended:
        picImage_MouseUp(m_band.end());
        break;
    case RubberBand::Effect::GivenUp:
        picImage->setBand({});
        break;
    }
    return true;
}

bool frmFileButton::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != picImage)
        return QDialog::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::ShortcutOverride: {
        const auto *keys = static_cast<QKeyEvent *>(event);
        if (m_band.isMarking() && keys->key() == Qt::Key_Escape) {
            event->accept();
            return true;
        }
        break;
    }
    case QEvent::KeyPress: {
        const auto *keys = static_cast<QKeyEvent *>(event);
        if (imageKeyPressed(keys->key(), keys->modifiers()))
            return true;
        break;
    }
    case QEvent::FocusIn:
    case QEvent::FocusOut: {
        QPalette colours = palette();
        if (event->type() == QEvent::FocusIn)
            colours.setColor(QPalette::WindowText, colours.color(QPalette::Highlight));
        picImage->parentWidget()->setPalette(colours);
        if (event->type() == QEvent::FocusOut) {
            m_band.giveUp();
            picImage->setBand({});
        }
        break;
    }
    default:
        break;
    }
    return QDialog::eventFilter(watched, event);
}

// --- Icons ---

int frmFileButton::CountIcons(const QString &fileName)
{
    const ProgramIcons icons(fileName);
    const int most = std::min(icons.count(), mostIcons);
    int count = 0;
    while (count < most && icons.has(count))
        ++count;
    return count;
}

bool frmFileButton::ShowIcon(const QString &fileName, int number)
{
    Q_ASSERT(fileName == m_iconFile);
    const QImage icon = m_strip->icon(number - 1);
    if (icon.isNull())
        return false;
    m_icon = number;
    picFileIcon->resize(icon.size());
    picFileIcon->setPicture(icon);
    picImage->setPicture(picFileIcon->Image());
    txtIcon->setText(
        QString::number(number) + QStringLiteral(" of ") + QString::number(m_iconCount));
    picIcoCtrl->show();
    lvIcons->setCurrentIndex(m_strip->index(number - 1));
    return true;
}

void frmFileButton::hideIcons()
{
    picIcoCtrl->hide();
    m_iconCount = 0;
    m_strip->setIcons(nullptr, 0);
}

void frmFileButton::cmdIcon_Click(int Index)
{
    if (m_iconCount < 2)
        return;
    const int step = Index == 1 ? 1 : m_iconCount - 1;
    m_icon = (m_icon - 1 + step) % m_iconCount + 1;
    ShowIcon(m_iconFile, m_icon);
    snapshotOfPreview();
}

void frmFileButton::lvIcons_Click(const QModelIndex &index)
{
    // ShowIcon() moves the current icon, too.
    if (!index.isValid() || index.row() + 1 == m_icon)
        return;
    ShowIcon(m_iconFile, index.row() + 1);
    snapshotOfPreview();
}

// --- Captions ---

void frmFileButton::PrintCaptions()
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    const auto controls = findChildren<QWidget *>();
    for (const QWidget *control : controls) {
        const QString tag = Tag::of(*control);
        if (tag.isEmpty() || !control->isVisibleTo(this))
            continue;
        const QPoint corner = control->mapTo(this, QPoint(0, 0));
        painter.drawText(corner - QPoint(0, fontMetrics().descent() + 3), tag);
    }
}

void frmFileButton::paintEvent(QPaintEvent *event)
{
    QDialog::paintEvent(event);
    PrintCaptions();
}

// --- Buttons ---

void frmFileButton::cmdOK_Click()
{
    if (!DirList->isOpenFolderHighlighted()) {
        DirList->setPath(DirList->highlighted());
        return;
    }
    if (!ButtonSnapShot(picButton, 0, 0, picButton->width(), picButton->height()))
        return; // the caller would read nothing
    m_ok = true;
    accept();
}

void frmFileButton::cmdCancel_Click()
{
    reject();
}

void frmFileButton::cmdHelp_Click()
{
    // A window of this dialog, because a modal dialog keeps the input from all others.
    if (m_help == nullptr)
        m_help = new frmHelp(this);
    m_help->showHelp(QString::fromUtf16(Frame::programHelp));
}
