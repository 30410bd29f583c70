#include "shell/MDI.h"

#include "platform/VbError.h"
#include "platform/desktop/CommonDialog.h"
#include "platform/desktop/FileDrag.h"
#include "platform/desktop/Icons.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/MWindowPosition.h"
#include "platform/desktop/MenuBarStyle.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/desktop/StatusBar.h"
#include "platform/desktop/mFileUtil.h"
#include "richtext/frmToolHelp.h"
#include "shell/CFileList.h"
#include "shell/CommandQueue.h"
#include "shell/CommandToolbar.h"
#include "shell/DocumentWindow.h"
#include "shell/HelpKey.h"
#include "shell/MdiArea.h"
#include "shell/NoticeBar.h"
#include "shell/RecentFileMenu.h"
#include "shell/RecoveryOffer.h"
#include "shell/Settings.h"
#include "shell/StartPage.h"
#include "shell/ToolSetFiles.h"
#include "shell/WindowArranger.h"
#include "shell/frmAbout.h"
#include "shell/frmHelp.h"
#include "shell/mTSM.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

namespace {

const QString fileListSection = QStringLiteral("FileList");
const QString recentFilePrefix = QStringLiteral("Recent File ");
const QString positionName = QString::fromUtf16(MWindowPosition::mainWindow);
// Of the frame itself; no button and no window has them.
const QString recoverWord = QStringLiteral("recover");
const QString discardWord = QStringLiteral("discardsnapshots");

QString application()
{
    return QString::fromUtf16(Settings::application);
}

} // namespace

MDI::MDI(mTSM &state, Settings &settings, SettingsStore &store, DocumentFactory factory,
    const QString &commandLine)
    : m_state(state)
    , m_settings(settings)
    , m_store(store)
    , m_factory(std::move(factory))
    , tbTools(new CommandToolbar(this))
    , status(new StatusBar({1, 3}, this))
    , mdi(new MdiArea(this))
    , tmrDrag(new QTimer(this))
    , m_files(new CFileList(this))
    , m_commands(new CommandQueue([this](const QString &word) { dispatch(word); }, this))
{
    setObjectName(QStringLiteral("MDI"));
    setWindowTitle(QString::fromUtf16(caption));
    resize(QSize(960, 640).boundedTo(screen()->availableSize() * 0.95));
    auto *centre = new QWidget(this);
    auto *inCentre = new QVBoxLayout(centre);
    inCentre->setContentsMargins(0, 0, 0, 0);
    inCentre->setSpacing(0);
    inCentre->addWidget(mdi, 1);
    setCentralWidget(centre);
    m_recovery = new RecoveryOffer(inCentre, this);
    // Queued like every command.
    connect(m_recovery, &RecoveryOffer::takeWanted, this, [this] { setAction(recoverWord); });
    connect(m_recovery, &RecoveryOffer::discardWanted, this, [this] { setAction(discardWord); });
    setStatusBar(status);
    addToolBar(tbTools);
    setAcceptDrops(true);
    auto *menuBarStyle = new MenuBarStyle;
    menuBarStyle->setParent(this);
    menuBar()->setStyle(menuBarStyle);
    setContextMenuPolicy(Qt::NoContextMenu); // no menu that hides the one toolbar
    mdi->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mdi->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    // After a window was closed, the one used before it comes to the front.
    mdi->setActivationOrder(QMdiArea::ActivationHistoryOrder);
    connect(mdi, &QMdiArea::subWindowActivated, this, &MDI::mdi_SubWindowActivated);

    status->setObjectName(QStringLiteral("status"));
    tmrDrag->setObjectName(QStringLiteral("tmrDrag"));
    tmrDrag->setInterval(1000);
    connect(tmrDrag, &QTimer::timeout, this, &MDI::tmrDrag_Timer);
    connect(&m_state, &mTSM::dragGateArmed, tmrDrag, qOverload<>(&QTimer::start));
    connect(&m_state, &mTSM::dragGateClosed, tmrDrag, &QTimer::stop);

    connect(tbTools, &Toolbar::ButtonClick, this, &MDI::setAction);
    makeMenus();
    new HelpKey(*this, this);
    // What hands that know such windows try first, beside Ctrl+W and Ctrl+Tab. Where Ctrl+F4 is the
    // desktop's own key the toolkit has it, and two shortcuts of one key would do nothing.
    const QKeySequence close(Qt::CTRL | Qt::Key_F4);
    if (!QKeySequence::keyBindings(QKeySequence::Close).contains(close))
        connect(new QShortcut(close, this), &QShortcut::activated, mdi,
            &QMdiArea::closeActiveSubWindow);
    connect(new QShortcut(Qt::CTRL | Qt::Key_F6, this), &QShortcut::activated, mdi,
        &QMdiArea::activateNextSubWindow);
    mdi->viewport()->installEventFilter(this);
    connect(this, &MDI::firstPainted, this, [this] {
        m_painted = true;
        refreshIcons();
        makeStartPage();
    });
    MDIForm_Load(commandLine);
}

MDI::~MDI()
{
    // The child windows go with the frame and would call back into it.
    mdi->disconnect(this);
    m_documents.clear();
}

void MDI::MDIForm_Load(const QString &commandLine)
{
    connect(m_files, &CFileList::FileAdded, this, &MDI::FileListHandler_FileAdded);
    m_files->setMax(4);
    m_files->Load(m_store, application(), fileListSection, recentFilePrefix);
    FileListHandler_FileAdded();
    // Not only at the end, which may be that of the machine.
    connect(m_files, &CFileList::FileAdded, this, &MDI::saveRecentFiles);
    m_settings.LoadSettings(m_store);
    MWindowPosition::RestoreWindowPosition(m_store, positionName, *this);
    MWindowPosition::WriteWhenChanged(m_store, positionName, *this);
    if (commandLine.count(u' ') < commandLine.size()) // not of blanks alone
        openFile(commandLine);
}

bool MDI::eventFilter(QObject *watched, QEvent *event)
{
    // The MDI area covers the frame, which gets no paint event of its own.
    if (event->type() == QEvent::Paint && watched == mdi->viewport()) {
        watched->removeEventFilter(this);
        QMetaObject::invokeMethod(this, &MDI::firstPainted, Qt::QueuedConnection);
    }
    return QMainWindow::eventFilter(watched, event);
}

void MDI::refreshIcons()
{
    Icons::followPalette();
    tbTools->showIcons();
}

void MDI::makeStartPage()
{
    // Anew with each change of the desktop's colours, for its icons.
    auto *page = new StartPage(mdi);
    page->setRecentFiles(*m_files);
    connect(page, &StartPage::commandChosen, this, &MDI::setAction);
    connect(page, &StartPage::fileChosen, this, &MDI::openFile);
    connect(page, &StartPage::manualChosen, this,
        [this] { showHelp(QString::fromUtf16(programHelp)); });
    connect(m_files, &CFileList::FileAdded, page, [this, page] { page->setRecentFiles(*m_files); });
    mdi->setEmptyPage(page);
}

void MDI::makeMenus()
{
    mnuFile = new QMenu(QStringLiteral("&File"), this);
    QAction *newSet = mnuFile->addAction(QStringLiteral("&New Tool Set"), QKeySequence::New, this,
        [this] { setAction(QStringLiteral("newtoolset")); });
    newSet->setObjectName(QStringLiteral("mnuFileX(0)"));
    QAction *open = mnuFile->addAction(QStringLiteral("&Open Tool Set..."), QKeySequence::Open,
        this, [this] { setAction(QStringLiteral("open")); });
    open->setObjectName(QStringLiteral("mnuFileX(1)"));
    mnuFile->addSeparator();
    mnuFileList = new RecentFileMenu(mnuFile);
    connect(mnuFileList, &RecentFileMenu::chosen, this, &MDI::openFile);
    QAction *versions = mnuFile->addAction(QStringLiteral("&Earlier Versions..."), this,
        [this] { setAction(QString::fromUtf16(versionsWord)); });
    versions->setObjectName(QStringLiteral("mnuFileVersions"));
    QAction *preferences = mnuFile->addAction(QStringLiteral("Pre&ferences..."), this,
        [this] { setAction(QString::fromUtf16(preferencesWord)); });
    preferences->setObjectName(QStringLiteral("mnuFilePreferences"));
    mnuFile->addSeparator();
    QAction *exit = mnuFile->addAction(QStringLiteral("E&xit"), this, &MDI::closeFrame);
    exit->setObjectName(QStringLiteral("mnuExit"));
    exit->setShortcut(QKeySequence::Quit);

    mnuHelp = new QMenu(QStringLiteral("&Help"), this);
    mnuHelp->addAction(QStringLiteral("&Tool Set Manager..."), QKeySequence::HelpContents, this,
        [this] { showHelp(QString::fromUtf16(programHelp)); });
    mnuHelp->addAction(QStringLiteral("&VB Quillon..."), this,
        [this] { showHelp(QString::fromUtf16(addInHelp)); });
    mnuHelp->addSeparator();
    mnuHelp->addAction(QStringLiteral("&About Tool Set Manager"), this, &MDI::showAbout);
    showMenusOf(nullptr);
}

// --- The command queue ---

QString MDI::Action()
{
    return m_commands->takeFirst();
}

void MDI::setAction(const QString &word)
{
    m_commands->append(word);
}

void MDI::setCommand(const QString &word, std::function<void()> command)
{
    m_ownCommands.insert(word, std::move(command));
}

void MDI::tmrDrag_Timer()
{
    tmrDrag->stop();
    m_state.openDragGate();
}

void MDI::dispatch(const QString &word)
{
    if (word == QStringLiteral("newtoolset")) {
        newToolSet();
    } else if (word == QStringLiteral("open")) {
        openToolSet(currentView(), m_pendingPaths.isEmpty() ? QString() : m_pendingPaths.dequeue());
    } else if (word == recoverWord) {
        recoverToolSets();
    } else if (word == discardWord) {
        m_recovery->discard(this);
    } else if (const auto own = m_ownCommands.constFind(word); own != m_ownCommands.cend()) {
        (*own)();
    } else if (DocumentWindow *document = activeDocument()) {
        document->setAction(word);
    }
    // Also after "close", and after a click on a view button, which has pressed it.
    showCommandState();
}

int MDI::currentView() const
{
    const DocumentWindow *document = activeDocument();
    return document ? document->View() : ListView::lvwReport;
}

void MDI::newToolSet()
{
    ++m_newWindows;
    newDocument(QStringLiteral("Untitled %1").arg(m_newWindows));
}

DocumentWindow *MDI::newDocument(const QString &itsCaption)
{
    const int view = currentView();
    DocumentWindow *document = makeDocument();
    document->setCaption(itsCaption);
    document->setView(view);
    subWindowOf(document)->show();
    return document;
}

void MDI::openFile(const QString &path)
{
    m_pendingPaths.enqueue(path);
    setAction(QStringLiteral("open"));
}

DocumentWindow *MDI::openDocument(const QString &path)
{
    DocumentWindow *document = openToolSet(currentView(), path);
    return document->FileName().isEmpty() ? nullptr : document;
}

DocumentWindow *MDI::openToolSet(int view, QString path)
{
    m_state.setDragGate(false);
    if (path.isEmpty()) {
        path = openHelper();
        if (path.isEmpty()) {
            m_state.setDragGate(true);
            return nullptr;
        }
    }
    DocumentWindow *open = documentWithCaption(path);
    if (!open && !QFileInfo::exists(path)) {
        // Recent files are kept in upper case, which names no file where letter case counts.
        const QString spelling = mFileUtil::RealSpelling(path);
        if (!spelling.isEmpty()) {
            path = spelling;
            open = documentWithCaption(path);
        }
    }
    if (open) {
        // Where another window was maximised, this one would come up maximised, too.
        QMdiSubWindow *window = subWindowOf(open);
        const bool maximized = window->isMaximized();
        activateDocument(open);
        if (!maximized)
            window->showNormal();
        return open; // Kept: on this path the drag gate stays closed until it is armed again.
    }
    DocumentWindow *document = makeDocument();
    subWindowOf(document)->show();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    document->setView(view);
    document->setFileName(path);
    document->setAction(QStringLiteral("open"));
    m_state.setDragGate(true);
    return document;
}

QString MDI::openHelper()
{
    CommonDialog dlg(this);
    dlg.DialogTitle = QStringLiteral("Open Tool Set");
    dlg.Flags = CommonDialog::FileMustExist | CommonDialog::HideReadOnly;
    dlg.InitDir =
        mFileUtil::UsableFolder(m_settings.ToolsetPath(), mFileUtil::UserFolder::Documents);
    dlg.Filter = QStringLiteral("Tool Sets (bmt)|*.bmt");
    const bool chosen = dlg.ShowOpen();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return chosen ? dlg.FileName : QString();
}

// --- Recovery ---

void MDI::offerRecovery(const QStringList &snapshots)
{
    m_recovery->add(snapshots);
}

void MDI::recoverToolSets()
{
    const int view = currentView();
    const QStringList snapshots = m_recovery->take();
    for (const QString &snapshot : snapshots) {
        DocumentWindow *document = makeDocument();
        document->setView(view);
        subWindowOf(document)->show();
        if (!document->Recover(snapshot))
            document->Unload();
    }
}

// --- Toolbar, status bar ---

void MDI::commandStateChanged(const DocumentWindow &document)
{
    if (&document == activeDocument())
        showCommandState();
}

void MDI::showCommandState()
{
    const DocumentWindow *document = activeDocument();
    tbTools->show(document ? document->commandState() : CommandState());
}

void MDI::statusChanged(const DocumentWindow &document)
{
    if (&document != activeDocument() || m_statusPending)
        return;
    // Once for all that one command changes.
    m_statusPending = true;
    QMetaObject::invokeMethod(this, &MDI::showStatus, Qt::QueuedConnection);
}

void MDI::showStatus()
{
    m_statusPending = false;
    const DocumentWindow *document = activeDocument();
    const DocumentStatus shown = document ? document->status() : DocumentStatus();
    status->setFacts({shown.name, shown.contents, shown.state});
}

QString MDI::panelText(int panel) const
{
    return status->panelText(panel);
}

void MDI::setPanelText(int panel, const QString &text)
{
    status->setPanelText(panel, text);
}

void MDI::showResult(const QString &text, const QString &file)
{
    status->showResult(noticePanel, text, file);
}

void MDI::showProgress(const QString &what, int percent)
{
    status->showProgress(what, percent);
    // Not all work is a command's: a window that is closed saves, too, and no command may run
    // meanwhile.
    const CommandQueue::Hold hold(*m_commands);
    QCoreApplication::processEvents(
        QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
}

void MDI::endProgress()
{
    status->endProgress();
}

void MDI::showWarning(const QString &text)
{
    if (m_warnings.contains(text))
        return;
    m_warnings.append(text);
    auto *bar = new NoticeBar(text, QStringLiteral("dialog-warning"));
    connect(bar->addButton(QStringLiteral("cmdClose"), QStringLiteral("Close"), {}),
        &QPushButton::clicked, bar, [bar] {
            bar->hide();
            bar->deleteLater();
        });
    qobject_cast<QVBoxLayout *>(centralWidget()->layout())->insertWidget(0, bar);
}

// --- Document windows ---

DocumentWindow *MDI::makeDocument()
{
    DocumentWindow *document = m_factory(*this);
    takeIn(document);
    return document;
}

void MDI::addDocument(DocumentWindow *document)
{
    takeIn(document);
    subWindowOf(document)->show();
}

void MDI::takeIn(DocumentWindow *document)
{
    QMdiSubWindow *window = mdi->addSubWindow(document->widget());
    window->setAttribute(Qt::WA_DeleteOnClose);
    giveIcon({window});
    window->setGeometry(
        WindowArranger::placeFor(mdi->viewport()->rect(), static_cast<int>(m_documents.size()),
            window->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window)));
    m_documents.append(document);
    document->mnuFileList().rebuild(*m_files);
}

QMdiSubWindow *MDI::subWindowOf(DocumentWindow *document) const
{
    return qobject_cast<QMdiSubWindow *>(document->widget()->parentWidget());
}

DocumentWindow *MDI::documentWithCaption(const QString &wanted) const
{
    for (DocumentWindow *document : m_documents) {
        if (document->Caption() == wanted)
            return document;
    }
    return nullptr;
}

DocumentWindow *MDI::activeDocument() const
{
    // Not activeSubWindow(), which is null while another window, say a message box, is active.
    const QMdiSubWindow *window = mdi->currentSubWindow();
    for (DocumentWindow *document : m_documents) {
        if (window && window->widget() == document->widget())
            return document;
    }
    return nullptr;
}

void MDI::activateDocument(DocumentWindow *document)
{
    QMdiSubWindow *window = subWindowOf(document);
    if (window->isMaximized())
        window->show();
    else
        window->showNormal();
    mdi->setActiveSubWindow(window);
    document->widget()->setFocus();
}

void MDI::documentClosed(DocumentWindow *document)
{
    m_documents.removeOne(document);
    if (m_menuOwner == document)
        showMenusOf(nullptr);
}

void MDI::mdi_SubWindowActivated()
{
    DocumentWindow *document = activeDocument();
    if (document != m_menuOwner)
        showMenusOf(document);
    if (document)
        document->Form_Activate();
    showCommandState();
    showStatus();
}

void MDI::showMenusOf(DocumentWindow *document)
{
    m_menuOwner = document;
    setPanelText(noticePanel, document ? document->notice() : QString());
    menuBar()->clear();
    const QList<QMenu *> menus = document ? document->menus() : QList<QMenu *> {mnuFile, mnuHelp};
    for (QMenu *menu : menus)
        menuBar()->addMenu(menu);
}

void MDI::arrangeWindows(Arrangement arrangement)
{
    switch (arrangement) {
    case Arrangement::TileHorizontally:
        WindowArranger::tileHorizontally(*mdi);
        break;
    case Arrangement::TileVertically:
        WindowArranger::tileVertically(*mdi);
        break;
    case Arrangement::Cascade:
        mdi->cascadeSubWindows();
        break;
    case Arrangement::ArrangeIcons:
        WindowArranger::arrangeIcons(*mdi);
        break;
    }
}

void MDI::FileListHandler_FileAdded()
{
    mnuFileList->rebuild(*m_files);
    for (DocumentWindow *document : std::as_const(m_documents))
        document->mnuFileList().rebuild(*m_files);
}

void MDI::saveRecentFiles()
{
    try {
        m_files->Save(m_store, application(), fileListSection, recentFilePrefix);
    } catch (const VbError &) {
        // Settings that cannot be written must not keep a file from opening or the program from
        // ending; they stay as they were stored before.
    }
}

// --- Help ---

void MDI::showHelp(const QString &helpFile, const QString &topic)
{
    if (!m_help)
        m_help = new frmHelp(this);
    m_help->showHelp(helpFile, topic);
}

void MDI::showAbout()
{
    frmAbout(this).exec();
}

// --- The frame as a window ---

void MDI::comeForward()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

bool MDI::event(QEvent *event)
{
    // Qt would add the name of a maximised child; the caption is what a second start looks for.
    if (event->type() == QEvent::WindowTitleChange && windowTitle() != QStringView(caption)) {
        setWindowTitle(QString::fromUtf16(caption));
        return true;
    }
    if (event->type() == QEvent::WindowIconChange)
        giveIcon(mdi->subWindowList());
    return QMainWindow::event(event);
}

void MDI::giveIcon(const QList<QMdiSubWindow *> &windows) const
{
    // Windows inside the frame do not take the program's icon by themselves.
    for (QMdiSubWindow *window : windows)
        window->setWindowIcon(windowIcon());
}

void MDI::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_painted) {
        refreshIcons();
        makeStartPage();
    }
}

// --- Files dragged from the desktop ---

void MDI::dragEnterEvent(QDragEnterEvent *event)
{
    m_draggedFiles = ToolSetFiles::among(FileDrag::paths(*event));
    if (!m_draggedFiles.isEmpty())
        tellDrag(QStringLiteral("Open"), FileDrag::names(m_draggedFiles));
    dragMoveEvent(event);
}

void MDI::dragMoveEvent(QDragMoveEvent *event)
{
    FileDrag::answer(*event, !m_draggedFiles.isEmpty());
}

void MDI::dragLeaveEvent(QDragLeaveEvent * /*event*/)
{
    m_draggedFiles.clear();
    tellDrag({}, {});
}

void MDI::dropEvent(QDropEvent *event)
{
    FileDrag::answer(*event, !m_draggedFiles.isEmpty());
    const QStringList files = std::exchange(m_draggedFiles, {});
    tellDrag({}, {});
    for (const QString &file : files)
        openFile(file);
}

void MDI::tellDrag(const QString &effect, const QString &names)
{
    setPanelText(effectPanel, effect);
    setPanelText(namesPanel, names);
}

void MDI::closeFrame()
{
    close();
}

void MDI::closeEvent(QCloseEvent *event)
{
    event->setAccepted(!MDIForm_QueryUnload());
}

bool MDI::MDIForm_QueryUnload()
{
    QList<frmToolHelp *> helps = findChildren<frmToolHelp *>();
    helps.removeIf([](const frmToolHelp *help) { return !help->isVisible(); });
    if (!m_documents.isEmpty() || !helps.isEmpty()) {
        const auto asked = m_documents;
        for (DocumentWindow *document : asked) {
            if (document->CleanIfDirty())
                return true;
        }
        while (!m_documents.isEmpty()) {
            DocumentWindow *first = m_documents.takeFirst();
            first->Unload();
        }
        for (frmToolHelp *help : std::as_const(helps))
            help->close();
        showMenusOf(nullptr);
        showCommandState();
        return true; // Kept: the first close takes all other windows, the second one the frame.
    }
    saveRecentFiles();
    try {
        MWindowPosition::SaveWindowPosition(m_store, positionName, *this);
    } catch (const VbError &) {
        // As for the recent files.
    }
    return false;
}
