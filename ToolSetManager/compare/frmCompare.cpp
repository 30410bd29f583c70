#include "compare/frmCompare.h"

#include "compare/CompareMenus.h"
#include "compare/ComparedSet.h"
#include "compare/ComparisonModel.h"
#include "compare/RowDetails.h"
#include "compare/RowTable.h"
#include "model/ToolSetDocument.h"
#include "platform/desktop/Accessible.h"
#include "platform/desktop/Captions.h"
#include "platform/desktop/Hourglass.h"
#include "platform/desktop/Icons.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/MsgBox.h"
#include "platform/desktop/Toolbar.h"
#include "shell/Frame.h"
#include "shell/RecentFileMenu.h"
#include "shell/WindowMenu.h"

#include <QAction>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QMenu>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>

namespace {

using CompareWords::word;

struct Button
{
    const char16_t *word;
    const char16_t *toolTip;
    const char16_t *icon;
    QStyle::StandardPixmap fallbackIcon;
};
constexpr Button buttons[] = {
    {CompareWords::priorChange, u"Previous change (Shift+F8)", u"go-up", QStyle::SP_ArrowUp},
    {CompareWords::nextChange, u"Next change (F8)", u"go-down", QStyle::SP_ArrowDown},
    {CompareWords::copyLeft, u"Copy to the left (Alt+Left)", u"go-previous", QStyle::SP_ArrowLeft},
    {CompareWords::copyRight, u"Copy to the right (Alt+Right)", u"go-next", QStyle::SP_ArrowRight},
    {CompareWords::changesOnly, u"Show only what differs (Ctrl+D)", u"view-filter",
        QStyle::SP_FileDialogListView},
};

QString shortTitle(const ComparedSet &set)
{
    const QString title = set.title();
    return title.contains(u'/') || title.contains(u'\\') ? QFileInfo(title).fileName() : title;
}

} // namespace

frmCompare::frmCompare(
    Frame &frame, std::unique_ptr<Comparison> comparison, int codePage, Choose choose)
    : m_frame(frame)
    , m_comparison(std::move(comparison))
    , m_choose(std::move(choose))
    , m_rows(new ComparisonModel(*m_comparison, this))
    , m_menus(new CompareMenus(this))
    , lblSets(new QLabel(this))
    , tvRows(RowTable::make(QStringLiteral("tvRows"), QStringLiteral("Tools of both sets"), this))
    , m_details(new RowDetails(*m_comparison, codePage, this))
    , lstConflicts(new QListWidget(this))
    , lblSummary(new QLabel(this))
{
    setObjectName(QStringLiteral("frmCompare"));
    setAttribute(Qt::WA_DeleteOnClose);
    setFocusProxy(tvRows);
    makeToolbar();
    makeViews();
    layOut();
    connectMenus();
    new WindowMenu(*m_menus->mnuWindow, *this, frame, this);
    connect(m_comparison.get(), &Comparison::refreshed, this, &frmCompare::showDifferences);
    connect(m_comparison.get(), &Comparison::titlesChanged, this, &frmCompare::refreshTitles);
    refreshTitles();
    showDifferences();
    goTo(qMax(0, m_rows->nextChange(-1, 1)));
}

frmCompare::~frmCompare()
{
    m_comparison->disconnect(this);
    // They show the comparison, which goes before the controls do.
    tvRows->selectionModel()->disconnect(this);
    delete m_details;
    delete tvRows;
}

void frmCompare::makeToolbar()
{
    tbCompare = new Toolbar(QStringLiteral("Comparison"), this);
    tbCompare->setObjectName(QStringLiteral("tbCompare"));
    tbCompare->setIconSize(QSize(16, 16));
    for (const Button &button : buttons) {
        tbCompare->addButton(word(button.word), QString::fromUtf16(button.toolTip),
            button.word == CompareWords::changesOnly);
    }
    connect(tbCompare, &Toolbar::ButtonClick, this,
        [this](const QString &key) { m_frame.setAction(key); });
    refreshIcons();
}

void frmCompare::refreshIcons()
{
    Icons::followPalette(); // the frame may hear of another palette later
    for (const Button &button : buttons) {
        tbCompare->button(word(button.word))
            ->setIcon(Icons::named(QString::fromUtf16(button.icon), button.fallbackIcon));
    }
}

void frmCompare::makeViews()
{
    lblSets->setObjectName(QStringLiteral("lblSets"));
    lblSets->setTextFormat(Qt::PlainText);
    lblSets->setContentsMargins(6, 2, 6, 2);
    lblSets->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblSets->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    lblSummary->setObjectName(QStringLiteral("lblSummary"));
    lblSummary->setTextFormat(Qt::PlainText);
    lblSummary->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    lstConflicts->setObjectName(QStringLiteral("lstConflicts"));
    Accessible::setName(*lstConflicts, QStringLiteral("Conflicts"));
    lstConflicts->setToolTip(
        QStringLiteral("Both sides have changed these. Enter goes to the tool"));

    const int letter = fontMetrics().averageCharWidth();
    tvRows->setModel(m_rows);
    tvRows->setUniformRowHeights(true); // quick to lay out, whatever their number
    tvRows->setIconSize(QSize(CVBATool::pictureSide, CVBATool::pictureSide));
    tvRows->setColumnWidth(ComparisonModel::LeftColumn, letter * 40);
    tvRows->setColumnWidth(ComparisonModel::DifferenceColumn, letter * 44);
    connect(tvRows->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
        &frmCompare::tvRows_Change);
    connect(tvRows->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        &frmCompare::refreshCommands);
    connect(lstConflicts, &QListWidget::itemActivated, this,
        [this](QListWidgetItem *item) { lstConflicts_Activate(lstConflicts->row(item)); });
}

void frmCompare::layOut()
{
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 6, 0);
    row->addWidget(tbCompare);
    row->addWidget(lblSummary, 1);
    auto *panes = new QSplitter(Qt::Vertical, this);
    panes->setChildrenCollapsible(false);
    panes->addWidget(tvRows);
    panes->addWidget(lstConflicts);
    panes->addWidget(m_details);
    panes->setStretchFactor(0, 1);
    panes->setStretchFactor(2, 1);
    panes->setSizes({250, 60, 250});
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(row);
    layout->addWidget(lblSets);
    layout->addWidget(panes, 1);
}

void frmCompare::connectMenus()
{
    // Queued, so that no command runs while its menu is still closing.
    connect(m_menus, &CompareMenus::chosen, this,
        [this](const QString &chosen) { m_frame.setAction(chosen); });
    connect(m_menus->mnuFileList, &RecentFileMenu::chosen, this,
        [this](const QString &path) { m_frame.openFile(path); });
    connect(
        m_menus->mnuFileExit, &QAction::triggered, this, [this] { DocumentWindow::exit(m_frame); });
    connect(m_menus->mnuEdit, &QMenu::aboutToShow, this, &frmCompare::refreshCommands);
    connect(m_menus->mnuHelpManager, &QAction::triggered, this,
        [this] { m_frame.showHelp(QString::fromUtf16(Frame::programHelp)); });
    connect(m_menus->mnuHelpAddIn, &QAction::triggered, this,
        [this] { m_frame.showHelp(QString::fromUtf16(Frame::addInHelp)); });
    connect(m_menus->mnuHelpAbout, &QAction::triggered, this, [this] { m_frame.showAbout(); });
}

// --- DocumentWindow ---

QString frmCompare::Caption() const
{
    return QStringLiteral("Compare: %1 - %2")
        .arg(shortTitle(m_comparison->set(Comparison::Left)),
            shortTitle(m_comparison->set(Comparison::Right)));
}

DocumentStatus frmCompare::status() const
{
    return {QStringLiteral("Comparison"), m_comparison->summary(), {}};
}

void frmCompare::setNotice(const QString &text)
{
    m_notice = text;
    if (m_frame.activeDocument() == this)
        m_frame.setPanelText(Frame::noticePanel, text);
}

int frmCompare::View() const
{
    return ListView::lvwReport; // of the windows that are opened from here
}

QList<QMenu *> frmCompare::menus() const
{
    return m_menus->all();
}

RecentFileMenu &frmCompare::mnuFileList()
{
    return *m_menus->mnuFileList;
}

void frmCompare::setAction(const QString &chosen)
{
    namespace Words = CompareWords;
    setNotice({});
    m_comparison->refresh(); // the command is about what the user sees of the sets as they are
    if (chosen == word(Words::nextChange))
        goToChange(1);
    else if (chosen == word(Words::priorChange))
        goToChange(-1);
    else if (chosen == word(Words::copyRight))
        copy(Comparison::Right);
    else if (chosen == word(Words::copyLeft))
        copy(Comparison::Left);
    else if (chosen == word(Words::copyAllRight))
        copyAll(Comparison::Right);
    else if (chosen == word(Words::copyAllLeft))
        copyAll(Comparison::Left);
    else if (chosen == word(Words::changesOnly))
        setChangesOnly(!m_rows->changesOnly());
    else if (chosen == word(Words::swapSides))
        m_comparison->swapSides();
    else if (chosen == word(Words::chooseBase))
        chooseBase();
    else if (chosen == word(Words::removeBase))
        m_comparison->setBase(nullptr);
    else if (chosen == word(Words::mergeRight))
        mergeInto(Comparison::Right);
    else if (chosen == word(Words::mergeLeft))
        mergeInto(Comparison::Left);
    else if (chosen == QStringLiteral("undo"))
        undo(false);
    else if (chosen == QStringLiteral("redo"))
        undo(true);
}

CommandState frmCompare::commandState() const
{
    CommandState state; // none of the commands that a set's list has
    if (m_changed && m_changed->canUndo())
        state.undo = m_changed->undoText();
    if (m_changed && m_changed->canRedo())
        state.redo = m_changed->redoText();
    return state;
}

void frmCompare::Unload()
{
    m_unloading = true;
    // The child window takes this one with it.
    if (auto *window = qobject_cast<QMdiSubWindow *>(parentWidget()))
        window->close();
    else
        close();
}

void frmCompare::closeEvent(QCloseEvent *event)
{
    if (!m_unloading)
        m_frame.setAction(QStringLiteral("close"));
    m_frame.documentClosed(this);
    event->accept();
}

void frmCompare::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        refreshIcons();
}

void frmCompare::Form_Activate()
{
    m_comparison->refresh();
    refreshCommands();
}

// --- What is shown ---

void frmCompare::refreshTitles()
{
    setWindowTitle(Captions::forTitle(Caption()));
    const auto line = [](const QString &side, const ComparedSet &set) {
        return QStringLiteral("%1: %2 (%3)").arg(side, set.title(), set.note());
    };
    QStringList lines {line(QStringLiteral("Left"), m_comparison->set(Comparison::Left)),
        line(QStringLiteral("Right"), m_comparison->set(Comparison::Right))};
    if (const ComparedSet *base = m_comparison->base())
        lines.append(QStringLiteral("Base: ") + base->title());
    lblSets->setText(lines.join(u'\n'));
    refreshCommands();
}

void frmCompare::showDifferences()
{
    const QString summary = m_comparison->summary();
    lblSummary->setText(summary);
    m_frame.statusChanged(*this);
    lstConflicts->clear();
    for (const ToolSetMerge::Conflict &conflict : m_comparison->conflicts()) {
        lstConflicts->addItem(conflict.tool.isEmpty()
                ? conflict.text
                : QStringLiteral("%1: %2").arg(conflict.tool, conflict.text));
    }
    lstConflicts->setVisible(lstConflicts->count() > 0);
    // The models were reset. The same place is where the user goes on.
    const int rows = m_rows->rowCount();
    int row = m_rows->shownRow(size_t(m_current));
    for (int at = m_current; row < 0 && at < int(m_comparison->rows().size()); ++at)
        row = m_rows->shownRow(size_t(at));
    goTo(qMin(row < 0 ? rows - 1 : row, rows - 1));
    if (rows == 0)
        tvRows_Change();
}

void frmCompare::goTo(int shownRow)
{
    const QModelIndex index = m_rows->index(shownRow, ComparisonModel::DifferenceColumn);
    if (!index.isValid())
        return;
    tvRows->selectionModel()->setCurrentIndex(
        index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    tvRows->scrollTo(index);
    tvRows_Change();
}

void frmCompare::tvRows_Change()
{
    const QModelIndex current = tvRows->currentIndex();
    const int row = current.isValid() ? int(m_rows->rowAt(current.row())) : -1;
    if (row >= 0)
        m_current = row;
    m_details->setRow(row);
    refreshCommands();
}

void frmCompare::refreshCommands()
{
    using namespace CompareWords;
    const bool selected = tvRows->selectionModel()->hasSelection();
    const auto enable = [this](const char16_t *item, bool on) {
        m_menus->item(word(item))->setEnabled(on);
        if (QAction *button = tbCompare->button(word(item)))
            button->setEnabled(on);
    };
    const bool toLeft = m_comparison->set(Comparison::Left).canChange();
    const bool toRight = m_comparison->set(Comparison::Right).canChange();
    const bool merging = m_comparison->base() != nullptr;
    enable(copyLeft, toLeft && selected);
    enable(copyRight, toRight && selected);
    enable(copyAllLeft, toLeft);
    enable(copyAllRight, toRight);
    enable(mergeLeft, toLeft && merging);
    enable(mergeRight, toRight && merging);
    enable(removeBase, merging);
    const CommandState state = commandState();
    m_menus->showUndo(state.undo, state.redo);
    m_frame.commandStateChanged(*this);
}

// --- Commands ---

void frmCompare::goToChange(int step)
{
    const QModelIndex current = tvRows->currentIndex();
    const int row = m_rows->nextChange(current.isValid() ? current.row()
            : step > 0                                   ? -1
                                                         : m_rows->rowCount(),
        step);
    if (row >= 0)
        goTo(row);
    else
        setNotice(step > 0 ? QStringLiteral("This is the last change.")
                           : QStringLiteral("This is the first change."));
}

void frmCompare::setChangesOnly(bool on)
{
    m_rows->setChangesOnly(on);
    m_menus->item(word(CompareWords::changesOnly))->setChecked(on);
    tbCompare->setPressed(word(CompareWords::changesOnly), on);
    showDifferences();
}

void frmCompare::lstConflicts_Activate(int row)
{
    const int found = m_comparison->rowOf(m_comparison->conflicts()[size_t(row)]);
    if (found < 0)
        return;
    goTo(m_rows->shownRow(size_t(found)));
    tvRows->setFocus();
}

std::vector<size_t> frmCompare::selectedRows() const
{
    std::vector<size_t> rows;
    const QModelIndexList selected = tvRows->selectionModel()->selectedRows();
    for (const QModelIndex &index : selected) {
        if (m_rows->at(index.row()).differs())
            rows.push_back(m_rows->rowAt(index.row()));
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

void frmCompare::copy(Side to)
{
    if (!tvRows->currentIndex().isValid())
        return;
    // Read first: opening a file gives the focus away.
    const auto index = size_t(m_current);
    const Comparison::Row &row = m_comparison->rows()[index];
    const bool single = m_details->fieldsHaveFocus() && !row.onlyLeft() && !row.onlyRight();
    const QList<int> fields = m_details->selectedFields();
    const std::vector<size_t> rows = selectedRows();
    if ((single ? fields.isEmpty() : rows.empty()) || !makeChangeable(to))
        return;
    const Hourglass hourglass;
    m_changed = m_comparison->set(to).document();
    if (single) {
        m_comparison->copyFields(index, fields, to);
        m_details->focusFields();
    } else {
        m_comparison->copy(rows, to);
    }
}

void frmCompare::copyAll(Side to)
{
    if (!makeChangeable(to))
        return;
    const Hourglass hourglass;
    m_changed = m_comparison->set(to).document();
    m_comparison->copyAll(to);
}

void frmCompare::mergeInto(Side to)
{
    if (!m_comparison->base() || !makeChangeable(to))
        return;
    const Hourglass hourglass;
    m_changed = m_comparison->set(to).document();
    m_comparison->mergeInto(to);
}

void frmCompare::chooseBase()
{
    auto base = m_choose(this, QStringLiteral("Choose Base"));
    if (base)
        m_comparison->setBase(std::move(base));
}

bool frmCompare::makeChangeable(Side side)
{
    ComparedSet &set = m_comparison->set(side);
    if (set.document())
        return true;
    const QString path = set.fileToOpen();
    if (path.isEmpty())
        return false;
    DocumentWindow *window = m_frame.openDocument(path);
    if (!window || !window->toolSet())
        return false;
    auto opened = std::make_unique<ComparedSet>(*window);
    const bool same = ToolSetDiff(set.state(), opened->state()).summary().isEmpty();
    m_comparison->setSet(side, std::move(opened));
    m_frame.activateDocument(this);
    if (same)
        return true;
    MsgBox::show(this,
        QStringLiteral("\"%1\" is not as it was when it was read. The comparison shows it as it "
                       "is now; nothing was copied.")
            .arg(path),
        MsgBox::Buttons::Ok, MsgBox::Icon::Exclamation);
    return false;
}

void frmCompare::undo(bool again)
{
    if (!m_changed)
        return;
    const Hourglass hourglass;
    if (again)
        m_changed->redo();
    else
        m_changed->undo();
    m_comparison->refresh();
}
