#include "tooledit/frmToolProps.h"

#include "model/BmtFormat.h"
#include "model/ToolFileRecognition.h"
#include "model/ToolKinds.h"
#include "model/ToolSetDocument.h"
#include "platform/desktop/ButtonIcons.h"
#include "platform/desktop/CommonDialog.h"
#include "platform/desktop/HelpTopic.h"
#include "platform/desktop/Icons.h"
#include "platform/desktop/MsgBox.h"
#include "platform/desktop/SendKeys.h"
#include "platform/desktop/mFileUtil.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureControl.h"
#include "richtext/RTFEditor.h"
#include "shell/Settings.h"
#include "tooledit/EventsPage.h"
#include "tooledit/StoredFields.h"
#include "tooledit/ToolFromFile.h"
#include "tooledit/frmFileButton.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>

namespace {

enum Tab { GeneralTab, EventsTab, HelpTab };

/// Of the open dialog. Kept: the last piece lacks its separator.
QString browseFilter()
{
    return QStringLiteral("Executable(*.exe; *.com; *.bat)|*.exe;*.com;*.bat"
                          "|Macro Files(*.bmm; *.bas)|*.bmm;*.bas"
                          "|Text files(*.txt; *.ini)|*.txt;*.ini"
                          "|Help files(*.hlp)|*.hlp"
                          "All Files|*.*");
}

/// The entry of that filter which shows the files of a kind, counted from 1.
int browseFilterIndex(qint16 kind)
{
    switch (kind) {
    case CVBATool::Macro:
        return 2;
    case CVBATool::TextFile:
        return 3;
    case CVBATool::HelpFile:
        return 5; // all files: the pattern of the entry before it matches none
    default:
        return 1;
    }
}

} // namespace

frmToolProps::frmToolProps(
    ToolSetDocument &document, const Settings &settings, SettingsStore &store, QWidget *parent)
    : QDialog(parent)
    , m_document(document)
    , m_settings(settings)
    , m_store(store)
{
    setObjectName(QStringLiteral("frmToolProps"));
    setWindowTitle(QStringLiteral("VB Quillon Tool Properties"));
    HelpTopic::set(*this, "tool-properties");
    sstAll = new QTabWidget(this);
    sstAll->setObjectName(QStringLiteral("sstAll"));
    sstAll->setAccessibleName(QStringLiteral("Pages"));
    sstAll->addTab(generalPage(), QStringLiteral("General"));
    m_events = new EventsPage(sstAll);
    sstAll->addTab(m_events, QStringLiteral("Events"));
    auto *helpPage = new QWidget(sstAll);
    auto *inHelpPage = new QVBoxLayout(helpPage);
    rtHelp = new RTFEditor(helpPage);
    inHelpPage->addWidget(rtHelp);
    rtHelp->setObjectName(QStringLiteral("rtHelp"));
    HelpTopic::set(*rtHelp, "the-help-text");
    rtHelp->setLongestRTF(BmtFormat::longestString);
    sstAll->addTab(helpPage, QStringLiteral("Help"));

    const auto changed = [this] { setDirty(true); };
    connect(m_events, &EventsPage::chkEvent_Click, this, changed);
    connect(rtHelp, &RTFEditor::Change, this, changed);

    const auto stepper = [this](const QString &name, const QString &icon,
                             QStyle::StandardPixmap fallback, const QString &tip) {
        auto *button = new QPushButton(this);
        button->setObjectName(name);
        button->setIcon(Icons::named(icon, fallback));
        button->setToolTip(tip);
        button->setAccessibleName(tip);
        return button;
    };
    cmdPrior = stepper(QStringLiteral("cmdPrior"), QStringLiteral("go-previous"),
        QStyle::SP_ArrowLeft, QStringLiteral("Previous Tool"));
    cmdNext = stepper(QStringLiteral("cmdNext"), QStringLiteral("go-next"), QStyle::SP_ArrowRight,
        QStringLiteral("Next Tool"));
    const auto button = [this](const QString &name, const QString &caption) {
        auto *made = new QPushButton(caption, this);
        made->setObjectName(name);
        return made;
    };
    cmdOK = button(QStringLiteral("cmdOK"), QStringLiteral("OK"));
    cmdOK->setDefault(true);
    cmdCancel = button(QStringLiteral("cmdCancel"), QStringLiteral("Cancel"));
    cmdApply = button(QStringLiteral("cmdApply"), QStringLiteral("&Apply"));
    ButtonIcons::giveOK(*cmdOK);
    ButtonIcons::giveCancel(*cmdCancel);
    ButtonIcons::giveApply(*cmdApply);
    connect(cmdPrior, &QPushButton::clicked, this, &frmToolProps::cmdPrior_Click);
    connect(cmdNext, &QPushButton::clicked, this, &frmToolProps::cmdNext_Click);
    connect(cmdOK, &QPushButton::clicked, this, &frmToolProps::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmToolProps::cmdCancel_Click);
    connect(cmdApply, &QPushButton::clicked, this, &frmToolProps::cmdApply_Click);
    const auto turns = [this](const QKeySequence &keys, int step) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, [this, step] {
            sstAll->setCurrentIndex(
                (sstAll->currentIndex() + step + sstAll->count()) % sstAll->count());
            sstAll->tabBar()->setFocus(Qt::ShortcutFocusReason);
        });
    };
    turns(Qt::CTRL | Qt::Key_Tab, 1);
    turns(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, -1);
    turns(Qt::CTRL | Qt::Key_PageDown, 1);
    turns(Qt::CTRL | Qt::Key_PageUp, -1);
    layOut();
    Form_Load();
}

void frmToolProps::setPrinters(Printers &printers)
{
    rtHelp->setPrinters(printers);
}

QWidget *frmToolProps::generalPage()
{
    auto *page = new QWidget(sstAll);
    const auto line = [&](const QString &name) {
        auto *edit = new QLineEdit(page);
        edit->setObjectName(name);
        edit->setMaxLength(BmtFormat::longestString); // or a longer one would be cut on opening
        connect(edit, &QLineEdit::textChanged, this, [this] { setDirty(true); });
        return edit;
    };
    const auto box = [&](const QString &name, const QString &caption, const QString &tip) {
        auto *made = new QCheckBox(caption, page);
        made->setObjectName(name);
        made->setToolTip(tip);
        made->setAccessibleName(QString(caption).remove(u':'));
        connect(made, &QCheckBox::toggled, this, [this] { setDirty(true); });
        return made;
    };
    const auto button = [&](const QString &name, const QString &caption, const QString &tip) {
        auto *made = new QPushButton(caption, page);
        made->setObjectName(name);
        made->setToolTip(tip);
        return made;
    };
    const auto hidden = [&](const QString &name) {
        auto *made = new PictureControl(page);
        made->setObjectName(name);
        made->resize(CVBATool::pictureSide, CVBATool::pictureSide);
        made->hide();
        return made;
    };

    cboToolType = new QComboBox(page);
    cboToolType->setObjectName(QStringLiteral("cboToolType"));
    for (qint16 kind = CVBATool::NoKind; ToolKinds::isKnown(kind); ++kind)
        cboToolType->addItem(ToolKinds::caption(kind), kind);
    // A choice by the user, also of the entry that was chosen before.
    connect(cboToolType, &QComboBox::activated, this, &frmToolProps::cboToolType_Click);
    txtLocation = line(QStringLiteral("txtLocation"));
    cmdBrowseTool = button(QStringLiteral("cmdBrowseTool"), QStringLiteral("Browse ..."),
        QStringLiteral("Select the tool's file"));
    txtCommandLine = line(QStringLiteral("txtCommandLine"));
    txtDescription = line(QStringLiteral("txtDescription"));
    picToolImage = new PictureControl(page);
    picToolImage->setObjectName(QStringLiteral("picToolImage"));
    picToolImage->setAccessibleName(QStringLiteral("Tool image"));
    picToolImage->setFixedSize(CVBATool::pictureSide, CVBATool::pictureSide);
    cmdBrowseImage = button(QStringLiteral("cmdBrowseImage"), QStringLiteral("Browse ..."),
        QStringLiteral("Select a tool image from a picture file"));
    cmdBrowseImage->setAccessibleName(QStringLiteral("Browse for an image"));
    cmdBrowseTool->setAccessibleName(QStringLiteral("Browse for the tool"));
    chkEnabled = box(QStringLiteral("chkEnabled"), QStringLiteral("Enabled:"),
        QStringLiteral("The add-in offers the tool; without this nowhere, whatever else is set"));
    chkInToolBar = box(QStringLiteral("chkInToolBar"), QStringLiteral("Show in tool bar:"),
        QStringLiteral("The tool has a button in the add-in's toolbar"));
    chkRunOutOfProcess =
        box(QStringLiteral("chkRunOutOfProcess"), QStringLiteral("Run out of process:"),
            QStringLiteral("The add-in starts the tool as a process of its own, not inside that of "
                           "Visual Basic"));
    cmdToolID = button(QStringLiteral("cmdToolID"), QStringLiteral("Insert in Help"),
        QStringLiteral("Insert image and description into the help text"));
    picIcon = hidden(QStringLiteral("picIcon"));
    picConvert = hidden(QStringLiteral("picConvert"));
    imgBlank = hidden(QStringLiteral("imgBlank"));
    connect(cmdBrowseTool, &QPushButton::clicked, this, &frmToolProps::cmdBrowseTool_Click);
    connect(cmdBrowseImage, &QPushButton::clicked, this, &frmToolProps::cmdBrowseImage_Click);
    connect(cmdToolID, &QPushButton::clicked, this, &frmToolProps::cmdToolID_Click);

    auto *frame = new QFrame(page);
    frame->setFrameShape(QFrame::Box);
    frame->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto *inFrame = new QVBoxLayout(frame);
    inFrame->setContentsMargins(1, 1, 1, 1);
    inFrame->addWidget(picToolImage);
    auto *image = new QHBoxLayout;
    image->addWidget(frame);
    image->addSpacing(6);
    image->addWidget(cmdToolID);
    image->addStretch(1);

    auto *grid = new QGridLayout(page);
    grid->setVerticalSpacing(8);
    grid->setHorizontalSpacing(10);
    const auto row = [&](int at, const QString &caption, QWidget *field) {
        auto *label = new QLabel(caption, page);
        label->setBuddy(field);
        field->setAccessibleName(QString(caption).remove(u':'));
        grid->addWidget(label, at, 0);
        grid->addWidget(field, at, 1);
    };
    row(0, QStringLiteral("Tool type:"), cboToolType);
    row(1, QStringLiteral("Tool location:"), txtLocation);
    grid->addWidget(cmdBrowseTool, 1, 2);
    row(2, QStringLiteral("Command line:"), txtCommandLine);
    row(3, QStringLiteral("Description:"), txtDescription);
    auto *imageLabel = new QLabel(QStringLiteral("Tool image:"), page);
    imageLabel->setBuddy(picToolImage);
    grid->addWidget(imageLabel, 4, 0);
    grid->addLayout(image, 4, 1);
    grid->addWidget(cmdBrowseImage, 4, 2);
    grid->setRowMinimumHeight(5, 6);
    grid->addWidget(chkEnabled, 6, 1);
    grid->addWidget(chkInToolBar, 7, 1);
    grid->addWidget(chkRunOutOfProcess, 8, 1);
    m_storedCaption = new QLabel(QStringLiteral("Also stored:"), page);
    lblStored = new QLabel(page);
    lblStored->setObjectName(QStringLiteral("lblStored"));
    lblStored->setTextFormat(Qt::PlainText);
    lblStored->setWordWrap(true);
    lblStored->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    lblStored->setAccessibleName(QStringLiteral("Also stored"));
    lblStored->setToolTip(
        QStringLiteral("Values of the file that cannot be changed here; they are kept"));
    grid->addWidget(m_storedCaption, 9, 0, Qt::AlignTop);
    grid->addWidget(lblStored, 9, 1, 1, 2);
    grid->setRowStretch(10, 1);
    grid->setColumnStretch(1, 1);
    const std::array<QWidget *, 10> order {cboToolType, txtLocation, cmdBrowseTool, txtCommandLine,
        txtDescription, cmdToolID, cmdBrowseImage, chkEnabled, chkInToolBar, chkRunOutOfProcess};
    for (std::size_t i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
    addKeys(page);
    return page;
}

void frmToolProps::addKeys(QWidget *page)
{
    // The captions have no letters of their own. Keys of a page that is not shown do nothing.
    const std::pair<Qt::Key, QWidget *> keys[] = {{Qt::Key_T, cboToolType},
        {Qt::Key_L, txtLocation}, {Qt::Key_C, txtCommandLine}, {Qt::Key_D, txtDescription},
        {Qt::Key_I, cmdBrowseImage}, {Qt::Key_E, chkEnabled}, {Qt::Key_S, chkInToolBar},
        {Qt::Key_R, chkRunOutOfProcess}};
    for (const auto &[key, field] : keys) {
        const QKeySequence sequence(Qt::ALT | key);
        connect(new QShortcut(sequence, page), &QShortcut::activated, this, [field = field] {
            field->setFocus(Qt::ShortcutFocusReason);
            if (auto *box = qobject_cast<QCheckBox *>(field))
                box->click();
        });
        const QString tip = field->toolTip();
        const QString name = sequence.toString(QKeySequence::NativeText);
        field->setToolTip(tip.isEmpty() ? name : tip + QStringLiteral(" (") + name + u')');
    }
}

void frmToolProps::layOut()
{
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdPrior);
    buttons->addWidget(cmdNext);
    buttons->addStretch(1);
    for (QPushButton *button : {cmdOK, cmdCancel, cmdApply})
        buttons->addWidget(button);
    auto *all = new QVBoxLayout(this);
    all->addWidget(sstAll, 1);
    all->addLayout(buttons);
    // All tabs of the events, where the screen has room for them.
    resize(sizeHint().expandedTo({560, 400}).boundedTo(screen()->availableSize() * 0.9));
}

void frmToolProps::Form_Load()
{
    sstAll->setCurrentIndex(GeneralTab);
    m_ok = false;
    setDirty(false);
}

void frmToolProps::Form_QueryUnload()
{
    // Kept: also after Cancel.
    SaveQuestion();
}

void frmToolProps::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    setAttribute(Qt::WA_KeyboardFocusChange); // or the tab would not show that it has the focus
}

void frmToolProps::done(int result)
{
    Form_QueryUnload();
    QDialog::done(result);
    // A question and its dialog that close in one go leave some window managers with no window that
    // has the focus.
    if (QWidget *owner = parentWidget())
        owner->window()->activateWindow();
}

// --- The tool ---

void frmToolProps::setTool(const ToolPtr &tool)
{
    m_tool = tool;
    if (!tool)
        return;
    setKind(tool->ToolType);
    txtDescription->setText(tool->Description);
    txtLocation->setText(tool->Location());
    txtCommandLine->setText(tool->CommandLine);
    picToolImage->setPicture(tool->Picture);
    chkEnabled->setChecked(tool->Enabled);
    chkInToolBar->setChecked(tool->IntoolBar());
    chkRunOutOfProcess->setChecked(tool->RunOutOfProcess());
    m_events->setEvents(tool->VBEvents);
    rtHelp->setTextRTF(tool->HelpString);
    m_loadedHelp = rtHelp->TextRTF();
    for (QLineEdit *edit : {txtDescription, txtLocation, txtCommandLine})
        edit->setCursorPosition(0); // a long path shows its start
    setDirty(false);
    showStored();
    if (!focusWidget())
        focusFirstField();
}

void frmToolProps::showStored()
{
    const QString stored = StoredFields::text(*m_tool);
    lblStored->setText(stored);
    lblStored->setVisible(!stored.isEmpty());
    m_storedCaption->setVisible(!stored.isEmpty());
}

void frmToolProps::focusFirstField()
{
    const bool isNew = txtLocation->text().isEmpty() && Kind() != CVBATool::Separator;
    QLineEdit *field = isNew ? txtLocation : txtDescription;
    field->setFocus();
    field->selectAll();
}

void frmToolProps::showField(const QString &field)
{
    const QHash<QString, QWidget *> controls {
        {QStringLiteral("name"), txtDescription},
        {QStringLiteral("enabled switch"), chkEnabled},
        {QStringLiteral("access switches"), chkInToolBar},
        {QStringLiteral("location"), txtLocation},
        {QStringLiteral("application name"), txtLocation}, // stored together with it
        {QStringLiteral("command line"), txtCommandLine},
        {QStringLiteral("picture"), cmdBrowseImage},
        {QStringLiteral("kind"), cboToolType},
    };
    if (field == QStringLiteral("help text"))
        return giveFocusToHelp();
    const bool isEvents = field == QStringLiteral("events");
    sstAll->setCurrentIndex(isEvents ? EventsTab : GeneralTab);
    if (isEvents)
        m_events->giveFocus();
    else if (QWidget *control = controls.value(field))
        control->setFocus(Qt::TabFocusReason); // which selects a line's text
}

QString frmToolProps::CaptionText() const
{
    return m_tool ? m_tool->Description : QString();
}

void frmToolProps::setDirty(bool dirty)
{
    m_dirty = dirty;
    cmdApply->setEnabled(dirty);
    if (dirty)
        Q_EMIT DraftChange();
}

qint16 frmToolProps::Kind() const
{
    const QVariant kind = cboToolType->currentData();
    return kind.isValid() ? static_cast<qint16>(kind.toInt()) : qint16(CVBATool::NoKind);
}

void frmToolProps::setKind(qint16 kind)
{
    const int index = kind - CVBATool::NoKind;
    if (index < 0 || index >= cboToolType->count() || index == cboToolType->currentIndex())
        return;
    cboToolType->setCurrentIndex(index);
    cboToolType_Click();
}

void frmToolProps::ApplyChanges()
{
    if (!m_tool)
        return;
    const ToolPtr tool = m_tool; // the owner may hand in another one meanwhile
    const auto write = [&](const auto &store) {
        CVBATool after = *tool;
        store(after);
        m_document.change(tool, after);
    };
    const ToolSetDocument::Step step(
        m_document, QStringLiteral("Change of \"%1\"").arg(tool->Description));
    const QString oldName = tool->Description;
    const QString newName = txtDescription->text();
    if (newName != oldName) {
        m_document.rename(tool, newName);
        Q_EMIT NameChange(oldName, newName);
        if (tool->Description != newName)
            txtDescription->setText(tool->Description);
    }
    const QString newLocation = txtLocation->text();
    const QString oldLocation = tool->Location();
    if (newLocation != oldLocation) {
        write([&](CVBATool &after) { after.setLocation(newLocation); });
        Q_EMIT LocationChange(oldLocation, newLocation);
    }
    write([&](CVBATool &after) { after.Picture = picToolImage->Picture(); });
    Q_EMIT UpdatePicture(tool->Picture);
    write([&](CVBATool &after) { storeIn(after); });
    m_loadedHelp = tool->HelpString;
    Q_EMIT Change();
    setDirty(false);
}

void frmToolProps::storeIn(CVBATool &tool) const
{
    tool.CommandLine = txtCommandLine->text();
    tool.ToolType = Kind();
    tool.VBEvents = m_events->events(tool.VBEvents);
    tool.Enabled = chkEnabled->isChecked();
    tool.setIntoolBar(chkInToolBar->isChecked());
    tool.setRunOutOfProcess(chkRunOutOfProcess->isChecked());
    tool.HelpString = rtHelp->TextRTF();
}

CVBATool frmToolProps::Draft() const
{
    CVBATool draft = *m_tool;
    draft.Description = txtDescription->text();
    if (txtLocation->text() != draft.Location())
        draft.setLocation(txtLocation->text());
    draft.Picture = picToolImage->Picture();
    storeIn(draft);
    return draft;
}

void frmToolProps::SaveQuestion()
{
    // The editor tells of changes only after a short pause: the last words count, too.
    if (!m_tool || (!Dirty() && rtHelp->TextRTF() == m_loadedHelp))
        return;
    const auto answer =
        MsgBox::show(this, QStringLiteral("Do you want to save your changes first?"),
            MsgBox::Buttons::YesNo, MsgBox::Icon::Question);
    if (answer == MsgBox::Answer::Yes)
        ApplyChanges();
}

// --- General page ---

void frmToolProps::cboToolType_Click()
{
    if (Kind() == CVBATool::Separator) {
        txtDescription->setText(QStringLiteral("Separator"));
        picToolImage->setPicture(imgBlank->Image());
    }
    setDirty(true);
}

void frmToolProps::cmdBrowseTool_Click()
{
    CommonDialog dlg(this);
    dlg.DialogTitle = QStringLiteral("Select Tool");
    dlg.Filter = browseFilter();
    dlg.FilterIndex = browseFilterIndex(Kind());
    dlg.Flags = CommonDialog::FileMustExist;
    if (Kind() == CVBATool::Macro)
        dlg.InitDir = macroFolder();
    dlg.FileName = ToolFromFile::pathOf(txtLocation->text(), macroFolder());
    if (dlg.ShowOpen() && !dlg.FileName.isEmpty())
        RecognizeToolFile(dlg.FileName);
}

QString frmToolProps::macroFolder() const
{
    return mFileUtil::UsableFolder(m_settings.MacroPath());
}

void frmToolProps::RecognizeToolFile(const QString &FileName)
{
    const auto kind = ToolFileRecognition::kindOf(FileName, Kind());
    if (!kind) {
        // The toolkit draws a carriage return as a character of its own.
        MsgBox::show(this, ToolFileRecognition::unrecognisedText().remove(u'\r'),
            MsgBox::Buttons::Ok, MsgBox::Icon::Exclamation);
        return;
    }
    const QString formerLocation = txtLocation->text();
    setKind(*kind);
    txtLocation->setText(ToolFileRecognition::locationOf(FileName, macroFolder()));
    if (ToolFileRecognition::isReplaceable(txtDescription->text(), formerLocation))
        txtDescription->setText(ToolFileRecognition::nameOf(FileName));
    if (ToolFromFile::isProgram(*kind) && LoadIconFromFile(txtLocation->text())) {
        picToolImage->setPicture(picConvert->Picture());
        setDirty(true);
    }
}

bool frmToolProps::LoadIconFromFile(const QString &FileName)
{
    return ToolFromFile::loadIcon(FileName, macroFolder(), *picIcon, *picConvert);
}

void frmToolProps::cmdBrowseImage_Click()
{
    const QString scratch = mFileUtil::AddSeparator(macroFolder()) + QStringLiteral("$$$.bmp");
    frmFileButton picker(m_store, this);
    picker.setFileName(scratch);
    picker.setButtonPicture(picToolImage->Picture());
    picker.exec();
    if (!picker.OK() || !picker.hasPreview())
        return;
    picToolImage->setPicture(Picture::load(scratch));
    setDirty(true);
}

void frmToolProps::cmdToolID_Click()
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setImage(picToolImage->Image());
    giveFocusToHelp();
    // "+{INSERT}" to whatever has the focus now: shift and insert, which pastes.
    SendKeys::sendTo(focusWidget() ? focusWidget() : rtHelp, Qt::Key_Insert, Qt::ShiftModifier);
    rtHelp->setSelText(txtDescription->text() + u' ');
}

void frmToolProps::giveFocusToHelp()
{
    sstAll->setCurrentIndex(HelpTab); // a hidden control takes no focus
    rtHelp->setFocus();
}

// --- Buttons ---

void frmToolProps::cmdPrior_Click()
{
    SaveQuestion();
    Q_EMIT RequestPriorTool();
    if (sstAll->currentIndex() == HelpTab)
        giveFocusToHelp();
}

void frmToolProps::cmdNext_Click()
{
    SaveQuestion();
    Q_EMIT RequestNextTool();
    if (sstAll->currentIndex() == HelpTab)
        giveFocusToHelp();
}

void frmToolProps::cmdOK_Click()
{
    ApplyChanges();
    m_ok = true;
    accept();
}

void frmToolProps::cmdCancel_Click()
{
    m_ok = false;
    reject();
}

void frmToolProps::cmdApply_Click()
{
    ApplyChanges();
}
