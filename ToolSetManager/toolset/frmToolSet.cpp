#include "toolset/frmToolSet.h"

#include "model/ToolSetStorage.h"
#include "platform/desktop/Captions.h"
#include "platform/desktop/Hourglass.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/SendKeys.h"
#include "platform/desktop/Tag.h"
#include "shell/CommandTable.h"
#include "shell/Frame.h"
#include "shell/RecentFileMenu.h"
#include "shell/ToolPlaces.h"
#include "shell/WindowMenu.h"
#include "shell/frmTSProps.h"
#include "shell/mTSM.h"
#include "toolset/EditCommands.h"
#include "toolset/FileDrop.h"
#include "toolset/FindBar.h"
#include "toolset/SetCheck.h"
#include "toolset/ToolDrag.h"
#include "toolset/ToolHelp.h"
#include "toolset/ToolListModel.h"
#include "toolset/ToolPropertiesLink.h"
#include "toolset/ToolSetFile.h"
#include "toolset/ToolSetMenus.h"
#include "toolset/frmChangeTools.h"

#include <QAction>
#include <QCloseEvent>
#include <QCursor>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QShortcut>
#include <QTimer>

#include <optional>

namespace {

constexpr QSize buttonPictureSize(CVBATool::pictureSide, CVBATool::pictureSide);

QTimer *makeTimer(QObject *parent, int interval)
{
    auto *timer = new QTimer(parent);
    timer->setSingleShot(true);
    timer->setInterval(interval);
    return timer;
}

} // namespace

frmToolSet::frmToolSet(Frame &frame, mTSM &state, const Settings &settings, SettingsStore &store,
    ToolSetStorage &storage, Printers &printers, QWidget *parent)
    : QWidget(parent)
    , m_frame(frame)
    , m_state(state)
    , m_printers(printers)
    , m_settings(settings)
    , m_store(store)
    , m_codePage(storage.codePage)
    , lblToolSet(new QLabel(QStringLiteral("New Tool Set"), this))
    , lvTools(new ListView(QStringLiteral("Tools"), buttonPictureSize, this))
    , m_menus(new ToolSetMenus(this))
    , tmrHelp(makeTimer(this, 10))
    , tmrPopUp(makeTimer(this, 25))
    , tmrResize(makeTimer(this, 50))
    , m_set(storage)
    , m_list(new ToolListModel(m_set, storage.codePage.number(), this))
    , m_file(new ToolSetFile(*this, this, frame, state, settings, storage, m_set, *lvTools))
    , m_edit(new EditCommands(*this, this, frame, state, storage, m_set, *lvTools, *m_list))
    , m_properties(
          new ToolPropertiesLink(this, frame, settings, store, printers, m_set, *lvTools, *m_list))
    , m_report(
          this,
          [&frame](const QString &text, const QString &file) { frame.showResult(text, file); },
          store, printers)
    , m_check(new SetCheck(this, m_codePage, settings, store, m_set, *m_list, m_report))
{
    setObjectName(QStringLiteral("frmToolSet"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_caption = QStringLiteral("Untitled");
    setWindowTitle(m_caption);
    setFocusProxy(lvTools);

    lblToolSet->setObjectName(QStringLiteral("lblToolSet"));
    lblToolSet->setTextFormat(Qt::PlainText);
    lblToolSet->setContentsMargins(6, 4, 6, 4);
    lvTools->setObjectName(QStringLiteral("lvTools"));
    lblToolSet->installEventFilter(this);
    connect(tmrHelp, &QTimer::timeout, this, &frmToolSet::showToolHelp);
    connect(tmrPopUp, &QTimer::timeout, this, &frmToolSet::tmrPopUp_Timer);
    connect(tmrResize, &QTimer::timeout, this, &frmToolSet::tmrResize_Timer);
    connectList();
    connectEdits();
    new FileDrop(*this, frame, state, settings, *lvTools, *m_edit, this);
    connectMenus();
    connectFind();
    connectCheck();
    new WindowMenu(*m_menus->mnuWindow, *this, frame, this);
    Form_Load();
}

frmToolSet::~frmToolSet()
{
    // A label that is being edited would be committed into a set that is gone.
    lvTools->disconnect(this);
}

void frmToolSet::Form_Load()
{
    for (const int item : {ToolSetMenus::EditToolProperties, ToolSetMenus::EditCut,
             ToolSetMenus::EditCopy, ToolSetMenus::EditDelete}) {
        Tag::set(*m_menus->mnuEditX[static_cast<size_t>(item)], CommandTable::needsTool);
    }
    Tag::set(*m_menus->mnuViewX[ToolSetMenus::ViewToolHelp], CommandTable::needsTool);
    Tag::set(*m_menus->mnuEditX[ToolSetMenus::EditPaste], CommandTable::needsClipboard);
    SetCommandGroup(CommandTable::needsToolSet, true);
}

void frmToolSet::connectList()
{
    lvTools->setModel(m_list);
    lvTools->setColumnKeepingEnds(ToolListModel::LocationColumn);
    const int letter = fontMetrics().averageCharWidth();
    lvTools->setColumnWidths(m_state.ColumnWidths.isEmpty() ? QList<int> {letter * 34, letter * 12}
                                                            : m_state.ColumnWidths);
    connect(lvTools, &ListView::ColumnResize, this,
        [this] { m_state.ColumnWidths = lvTools->columnWidths(); });
    connect(lvTools, &ListView::ColumnClick, this, &frmToolSet::lvTools_ColumnClick);
    connect(lvTools, &ListView::BeforeLabelEdit, this, &frmToolSet::lvTools_BeforeLabelEdit);
    connect(lvTools, &ListView::AfterLabelEdit, this, &frmToolSet::lvTools_AfterLabelEdit);
    connect(lvTools, &ListView::labelEditEnded, this, [this] {
        m_labelEditing = false;
        showCommandState();
    });
    connect(lvTools, &ListView::selectionChanged, this, [this] { m_frame.statusChanged(*this); });
    connect(lvTools, &ListView::Click, this, &frmToolSet::lvTools_Click);
    connect(lvTools, &ListView::DblClick, this, &frmToolSet::lvTools_DblClick);
    connect(lvTools, &ListView::KeyDown, this, &frmToolSet::Form_KeyDown);
    connect(lvTools, &ListView::KeyUp, this, &frmToolSet::lvTools_KeyUp);
    connect(lvTools, &ListView::MouseDown, this, &frmToolSet::lvTools_MouseDown);
    connect(lvTools, &ListView::menuKeyPressed, this,
        [this] { showEditMenu(lvTools->menuPosition()); });
}

void frmToolSet::connectMenus()
{
    using Menus = ToolSetMenus;
    connect(m_menus, &Menus::chosen, this, [this](const QString &word) {
        // Queued, so that no command runs while its menu is still closing.
        m_frame.setAction(word);
    });
    connect(m_menus->mnuFileList, &RecentFileMenu::chosen, this,
        [this](const QString &path) { runCommand([&] { m_frame.openFile(path); }); });
    connect(m_menus->mnuWindow, &QMenu::triggered, lvTools, &ListView::finishLabelEdit);
    // The items without a command word.
    const auto connectItem = [this](QAction *item, const std::function<void()> &command) {
        connect(item, &QAction::triggered, this, [this, command] { runCommand(command); });
    };
    connectItem(m_menus->mnuFilex[Menus::FileSaveAs], [this] { m_file->saveAs(); });
    connectItem(m_menus->mnuFilePrintPreview, [this] { m_report.preview(Tools(), FileName()); });
    connectItem(m_menus->mnuFilex[Menus::FilePrintSetup], [this] { m_report.setUp(); });
    connectItem(m_menus->mnuFileExit, [this] { mnuFileExit_Click(); });
    connectItem(m_menus->mnuEditX[Menus::EditToolHelp], [this] { tmrHelp->start(); });
    connectItem(m_menus->mnuViewX[Menus::ViewToolHelp], [this] { showToolHelp(); });
    connect(m_menus->mnuEdit, &QMenu::aboutToShow, this, &frmToolSet::showCommandState);
    // "Tool Help" goes again with the menu. Later, because the menu reports that it hides before it
    // reports which item was chosen.
    connect(m_menus->mnuEdit, &QMenu::aboutToHide, this, [this] {
        QTimer::singleShot(
            0, this, [this] { m_menus->mnuEditX[Menus::EditToolHelp]->setVisible(false); });
    });

    connectItem(m_menus->mnuHelpx[Menus::HelpToolSetManager],
        [this] { m_frame.showHelp(QString::fromUtf16(Frame::toolSetHelp)); });
    connectItem(m_menus->mnuHelpx[Menus::HelpAddIn],
        [this] { m_frame.showHelp(QString::fromUtf16(Frame::addInHelp)); });
    connectItem(m_menus->mnuHelpx[Menus::HelpAbout], [this] { m_frame.showAbout(); });
}

void frmToolSet::connectFind()
{
    m_find = new FindBar(m_state, m_set, *lvTools, *m_list, this);
    connect(m_find, &FindBar::shown, this, &frmToolSet::layOut);
    connect(m_find, &FindBar::countChanged, this, &frmToolSet::showEmptyHint);
    const auto connectItem = [this](QAction *item, const std::function<void()> &command) {
        connect(item, &QAction::triggered, this, [this, command] { runCommand(command); });
    };
    connectItem(m_menus->mnuEditFind, [this] { m_find->open(); });
    connectItem(m_menus->mnuEditFindNext, [this] { m_find->findNext(true); });
    connectItem(m_menus->mnuEditFindPrevious, [this] { m_find->findNext(false); });
}

// --- Properties ---

QString frmToolSet::FileName() const
{
    return m_set.FileName();
}

void frmToolSet::setFileName(const QString &path)
{
    m_set.setFileName(path);
}

QString frmToolSet::notice() const
{
    return m_file->notice();
}

const CVBATools &frmToolSet::Tools() const
{
    return m_set.Tools();
}

bool frmToolSet::Dirty() const
{
    return m_set.Dirty();
}

QString frmToolSet::Name() const
{
    return QStringLiteral("frmToolSet");
}

void frmToolSet::setCaption(const QString &caption)
{
    // A cut is completed in the window of this caption, also when it gets another one meanwhile.
    if (m_state.SourceCaption == m_caption && !m_list->ghostedPositions().isEmpty())
        m_state.SourceCaption = caption;
    m_caption = caption;
    setWindowTitle(Captions::forTitle(caption));
    m_frame.statusChanged(*this);
    showEmptyHint();
}

DocumentStatus frmToolSet::status() const
{
    const auto tools = [](int count) {
        return count == 1 ? QStringLiteral("1 tool") : QStringLiteral("%L1 tools").arg(count);
    };
    DocumentStatus status;
    status.name = FileName().isEmpty() ? Caption() : QFileInfo(FileName()).fileName();
    status.contents = m_set.count() == 0 ? QStringLiteral("no tools") : tools(m_set.count());
    if (const qsizetype selected = lvTools->selectedRows().size())
        status.contents += QStringLiteral(", %L1 selected").arg(selected);
    if (Dirty())
        status.state = QStringLiteral("changed");
    return status;
}

int frmToolSet::View() const
{
    return lvTools->View();
}

void frmToolSet::setView(int view)
{
    lvTools->setView(view);
    refreshToolCommands();
}

void frmToolSet::setAction(const QString &word)
{
    using Handler = void (*)(frmToolSet &);
    static const QHash<QString, Handler> handlers {
        {QStringLiteral("open"),
            [](frmToolSet &w) {
                w.m_file->open();
                w.showEmptyHint();
            }},
        {QStringLiteral("save"), [](frmToolSet &w) { w.m_file->save(); }},
        {QStringLiteral("list"), [](frmToolSet &w) { w.showList(); }},
        {QStringLiteral("details"), [](frmToolSet &w) { w.setView(ListView::lvwReport); }},
        {QStringLiteral("newtool"), [](frmToolSet &w) { w.m_edit->newTool(); }},
        {QStringLiteral("delete"), [](frmToolSet &w) { w.m_edit->deleteTools(true); }},
        {QStringLiteral("silentdelete"), [](frmToolSet &w) { w.m_edit->deleteTools(false); }},
        {QStringLiteral("rename"), [](frmToolSet &w) { w.lvTools->StartLabelEdit(); }},
        {QStringLiteral("moveup"),
            [](frmToolSet &w) { w.m_edit->moveSelection(EditCommands::Direction::Up); }},
        {QStringLiteral("movedown"),
            [](frmToolSet &w) { w.m_edit->moveSelection(EditCommands::Direction::Down); }},
        {QStringLiteral("movetostart"),
            [](frmToolSet &w) { w.m_edit->moveSelection(EditCommands::Direction::ToStart); }},
        {QStringLiteral("movetoend"),
            [](frmToolSet &w) { w.m_edit->moveSelection(EditCommands::Direction::ToEnd); }},
        {QStringLiteral("selectall"), [](frmToolSet &w) { w.lvTools->selectAll(); }},
        {QStringLiteral("invertselection"), [](frmToolSet &w) { w.lvTools->invertSelection(); }},
        {QStringLiteral("toolproperties"),
            [](frmToolSet &w) { w.m_properties->ShowToolProperties(); }},
        {QStringLiteral("check"), [](frmToolSet &w) { w.m_check->run(); }},
        {QStringLiteral("changetools"), [](frmToolSet &w) { w.changeToolsCommand(); }},
        {QStringLiteral("properties"), [](frmToolSet &w) { w.propertiesCommand(); }},
        {QStringLiteral("print"), [](frmToolSet &w) { w.m_report.print(w.Tools(), w.FileName()); }},
    };
    if (word == QStringLiteral("cut"))
        cutCommand();
    else if (word == QStringLiteral("copy"))
        copyCommand();
    else if (word == QStringLiteral("paste"))
        pasteCommand();
    else if (word == QStringLiteral("undo"))
        undoCommand();
    else if (word == QStringLiteral("redo"))
        redoCommand();
    else if (word == QStringLiteral("newtoolset"))
        m_frame.setAction(word);
    else if (const Handler handler = handlers.value(word))
        runCommand([this, handler] { handler(*this); });
}

void frmToolSet::runCommand(const std::function<void()> &command)
{
    lvTools->finishLabelEdit();
    command();
}

QList<QMenu *> frmToolSet::menus() const
{
    return m_menus->all();
}

RecentFileMenu &frmToolSet::mnuFileList()
{
    return *m_menus->mnuFileList;
}

// --- The file ---

bool frmToolSet::CleanIfDirty()
{
    return m_file->CleanIfDirty();
}

bool frmToolSet::Recover(const QString &snapshot)
{
    return m_file->recover(snapshot);
}

void frmToolSet::showProperties()
{
    lblToolSet->setText(Tools().Description());
}

void frmToolSet::showEmptyHint()
{
    if (m_find->hidesAll()) {
        lvTools->setEmptyHint({QStringLiteral("No tool matches"),
            QStringLiteral("Press Escape in the field above to show all tools again.")});
        return;
    }
    lvTools->setEmptyHint({QStringLiteral("No tools yet"),
        QStringLiteral(
            "Press Ins to make a new tool, or drag programs, macros, help and text files "
            "from the desktop onto this list.")});
}

void frmToolSet::Unload()
{
    m_unloading = true;
    // The child window takes this one with it.
    if (auto *window = qobject_cast<QMdiSubWindow *>(parentWidget()))
        window->close();
    else
        close();
}

void frmToolSet::closeEvent(QCloseEvent *event)
{
    if (!m_unloading) {
        if (CleanIfDirty()) {
            event->ignore();
            return;
        }
        m_frame.setAction(QStringLiteral("close"));
    }
    m_file->closed();
    m_frame.documentClosed(this);
    event->accept();
}

// --- Commands ---

void frmToolSet::Form_Activate()
{
    refreshToolCommands();
}

void frmToolSet::refreshToolCommands()
{
    SetCommandGroup(CommandTable::needsTool, m_set.count() >= 1);
}

void frmToolSet::SetCommandGroup(const QString &group, bool enabled)
{
    if (bool *state = m_commands.group(group))
        *state = enabled;
    refreshPasteCommand();
}

void frmToolSet::refreshPasteCommand()
{
    // A clipboard that holds a set without tools leaves the command as it is.
    const bool undecided = m_state.ToolClipboard && m_state.ToolClipboard->Count() < 1;
    setPasteEnabled(undecided ? m_commands.needsClipboard : m_state.ToolClipboard != nullptr);
}

void frmToolSet::setPasteEnabled(bool enabled)
{
    m_commands.needsClipboard = enabled;
    showCommandState();
}

void frmToolSet::showCommandState()
{
    const auto step = [](bool available, const QString &text = {}) {
        return available ? std::optional(text) : std::nullopt;
    };
    m_commands.view = View();
    if (const QLineEdit *label = editedLabel()) {
        m_commands.undo = step(label->isUndoAvailable());
        m_commands.redo = step(label->isRedoAvailable());
    } else {
        m_commands.undo = step(m_set.canUndo(), m_set.undoText());
        m_commands.redo = step(m_set.canRedo(), m_set.redoText());
    }
    m_menus->show(m_commands);
    m_frame.commandStateChanged(*this);
    m_frame.statusChanged(*this);
}

void frmToolSet::showList()
{
    setSort(ToolListModel::PositionColumn, Qt::AscendingOrder);
    setView(ListView::lvwList);
}

void frmToolSet::UnselectAll()
{
    lvTools->UnselectAll();
}

void frmToolSet::ClearDragTools()
{
    m_edit->ClearDragTools();
}

void frmToolSet::unghostTools()
{
    m_list->clearGhosted();
}

void frmToolSet::completeCut()
{
    m_edit->selectGhosted();
    setAction(QStringLiteral("silentdelete"));
}

// --- Edits ---

void frmToolSet::connectEdits()
{
    new ToolDrag(*this, m_frame, m_state, *lvTools, *m_list, *m_edit, this);
    connect(&m_set, &ToolSetDocument::reset, this, &frmToolSet::showProperties);
    connect(&m_set, &ToolSetDocument::propertiesChanged, this, &frmToolSet::showProperties);
    connect(&m_set, &ToolSetDocument::stateChanged, this, &frmToolSet::refreshToolCommands);
    connect(&m_state, &mTSM::toolClipboardEmptied, this, &frmToolSet::refreshPasteCommand);
    // Kept: also of a clipboard without tools, which a copy of nothing leaves.
    connect(m_edit, &EditCommands::clipboardFilled, this, [this] { setPasteEnabled(true); });
    connect(m_edit, &EditCommands::toolAdded, m_properties,
        [this] { m_properties->ShowToolProperties(); });
    m_file->setProperties(*m_properties);
    addMoveKeys();
}

void frmToolSet::addMoveKeys()
{
    using Direction = EditCommands::Direction;
    const std::pair<Qt::Key, Direction> keys[] = {{Qt::Key_Up, Direction::Up},
        {Qt::Key_Down, Direction::Down}, {Qt::Key_Home, Direction::ToStart},
        {Qt::Key_End, Direction::ToEnd}};
    for (const auto &[key, direction] : keys) {
        auto *shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | key), lvTools);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this,
            [this, way = direction] { runCommand([&] { m_edit->moveSelection(way); }); });
    }
}

bool frmToolSet::sentToLabel(Qt::Key key, Qt::KeyboardModifier modifier)
{
    if (m_labelEditing)
        SendKeys::sendTo(lvTools->labelEditor(), key, modifier);
    return m_labelEditing;
}

void frmToolSet::copyCommand()
{
    if (!sentToLabel(Qt::Key_Insert, Qt::ControlModifier))
        m_edit->copy();
}

void frmToolSet::cutCommand()
{
    if (!sentToLabel(Qt::Key_Delete, Qt::ShiftModifier))
        m_edit->cut();
}

void frmToolSet::pasteCommand()
{
    // Kept: Alt+Insert, which pastes nothing into the name.
    if (!sentToLabel(Qt::Key_Insert, Qt::AltModifier))
        m_edit->paste(m_edit->PasteEffect());
}

// --- Dialogs ---

void frmToolSet::propertiesCommand()
{
    frmTSProps dialog(m_set, this);
    dialog.setPrinters(m_printers);
    dialog.Toolset = &m_set.Tools();
    dialog.exec();
}

void frmToolSet::changeToolsCommand()
{
    const frmChangeTools::Scope scope {
        m_list->positionsOf(lvTools->selectedRows()), m_list->shownPositions()};
    frmChangeTools(m_set, m_codePage, ToolPlaces::read(m_settings, m_store), scope, this).exec();
}

// --- The check ---

void frmToolSet::connectCheck()
{
    connect(m_check, &SetCheck::layoutChanged, this, &frmToolSet::layOut);
    connect(m_check, &SetCheck::closed, lvTools, qOverload<>(&QWidget::setFocus));
    // Queued, so that no dialog opens inside the click on the finding.
    connect(m_check, &SetCheck::fieldChosen, this, &frmToolSet::showField, Qt::QueuedConnection);
}

void frmToolSet::showField(const ToolPtr &tool, const QString &field)
{
    const int position = m_set.positionOf(tool.get());
    if (position == 0)
        return; // it was deleted meanwhile
    runCommand([&] {
        m_list->reveal({position});
        lvTools->setSelectedItem(m_list->rowOf(position));
        m_properties->ShowToolProperties(field);
    });
}

// --- Undo ---

QLineEdit *frmToolSet::editedLabel() const
{
    return m_labelEditing ? qobject_cast<QLineEdit *>(lvTools->labelEditor()) : nullptr;
}

void frmToolSet::undoCommand()
{
    if (QLineEdit *label = editedLabel())
        label->undo();
    else
        m_edit->undo();
}

void frmToolSet::redoCommand()
{
    if (QLineEdit *label = editedLabel())
        label->redo();
    else
        m_edit->redo();
}

void frmToolSet::showToolHelp()
{
    const int row = lvTools->SelectedItem();
    if (row >= 0)
        ToolHelp::show(*m_list->toolAt(row), *this);
}

void frmToolSet::lblToolSet_DblClick()
{
    m_frame.setAction(QStringLiteral("properties"));
}

bool frmToolSet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == lblToolSet && event->type() == QEvent::MouseButtonDblClick)
        lblToolSet_DblClick();
    return QWidget::eventFilter(watched, event);
}

// --- lvTools ---

void frmToolSet::lvTools_ColumnClick(int column)
{
    Qt::SortOrder order = m_list->sortOrder();
    if (column == m_list->sortKey())
        order = order == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    setSort(column, order); // Kept: another column takes over the order as it is.
}

void frmToolSet::setSort(int column, Qt::SortOrder order)
{
    const Hourglass hourglass;
    m_list->sort(column, order);
    lvTools->setSortIndicator(column, order);
    lvTools->EnsureVisible();
}

void frmToolSet::lvTools_BeforeLabelEdit()
{
    m_labelEditing = true;
}

void frmToolSet::lvTools_AfterLabelEdit(int row, const QString &NewString)
{
    // Kept: a rename in place does not make the set dirty.
    m_set.renameInPlace(m_list->toolAt(row), NewString);
    m_labelEditing = false;
}

void frmToolSet::lvTools_Click()
{
    m_labelEditing = false;
}

void frmToolSet::lvTools_DblClick()
{
    if (m_set.count() >= 1)
        m_frame.setAction(QStringLiteral("toolproperties"));
}

void frmToolSet::lvTools_KeyUp(int key)
{
    if (key == Qt::Key_Escape)
        UnselectAll();
}

void frmToolSet::Form_KeyDown(int key)
{
    if (key == Qt::Key_Escape)
        ClearDragTools();
}

void frmToolSet::lvTools_MouseDown(Qt::MouseButton button)
{
    if (button == Qt::RightButton)
        tmrPopUp->start();
}

void frmToolSet::tmrPopUp_Timer()
{
    showEditMenu(QCursor::pos());
}

void frmToolSet::showEditMenu(const QPoint &globalPosition)
{
    m_menus->mnuEditX[ToolSetMenus::EditToolHelp]->setVisible(true);
    m_menus->mnuEdit->popup(globalPosition);
}

// --- Menus ---

void frmToolSet::mnuFileExit_Click()
{
    DocumentWindow::exit(m_frame);
}

// --- Layout ---

void frmToolSet::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (!m_laidOut)
        layOut(); // at once the first time: nothing may flash at its design-time place
    tmrResize->start();
}

void frmToolSet::tmrResize_Timer()
{
    layOut();
}

void frmToolSet::layOut()
{
    const int labelHeight = lblToolSet->sizeHint().height();
    if (isMinimized() || height() <= labelHeight || width() <= 0)
        return;
    m_laidOut = true;
    lblToolSet->setGeometry(0, 0, width(), labelHeight);
    const int top = labelHeight + heightOf(m_find);
    m_find->setGeometry(0, labelHeight, width(), top - labelHeight);
    lvTools->setGeometry(m_check->layOut(QRect(0, top, width(), qMax(0, height() - top))));
}

int frmToolSet::heightOf(QWidget *bar) const
{
    return bar->isHidden() ? 0 : bar->sizeHint().height();
}
