#include "platform/desktop/ListView.h"

#include "platform/desktop/DragView.h"
#include "platform/desktop/Hourglass.h"
#include "platform/desktop/LabelDelegate.h"

#include <QApplication>
#include <QDrag>
#include <QHeaderView>
#include <QKeyEvent>
#include <QListView>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QStackedWidget>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

/// While it lives, pressing another mouse button cancels the running drag, wherever the mouse is.
class DragCanceller : public QObject
{
public:
    DragCanceller() { qApp->installEventFilter(this); }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() != QEvent::MouseButtonPress)
            return false;
        QDrag::cancel();
        return true;
    }
};

} // namespace

ListView::ListView(const QString &name, const QSize &pictureSize, QWidget *parent)
    : QWidget(parent)
    , m_stack(new QStackedWidget(this))
    , m_report(new DragView<QTreeView>(*this))
    , m_list(new DragView<QListView>(*this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_stack);

    m_report->setRootIsDecorated(false);
    m_report->setItemsExpandable(false);
    m_report->setUniformRowHeights(true);
    m_report->setAllColumnsShowFocus(true);
    m_report->header()->setSectionsClickable(true);
    m_report->header()->setSectionsMovable(false);
    m_report->header()->setSortIndicatorShown(true);
    m_report->header()->setSortIndicator(-1, Qt::AscendingOrder);
    connect(m_report->header(), &QHeaderView::sectionClicked, this, &ListView::ColumnClick);
    // The second one of two fast clicks.
    connect(m_report->header(), &QHeaderView::sectionDoubleClicked, this, &ListView::ColumnClick);
    connect(m_report->header(), &QHeaderView::sectionResized, this, [this](int column) {
        // The last one follows the window.
        if (!m_settingWidths && m_model && column < m_report->header()->count() - 1)
            Q_EMIT ColumnResize();
    });

    m_list->setFlow(QListView::TopToBottom);
    m_list->setWrapping(true);
    m_list->setResizeMode(QListView::Adjust);
    m_list->setSpacing(1);

    setUpView(m_report, name, pictureSize);
    setUpView(m_list, name, pictureSize);
    m_stack->setCurrentWidget(m_report);
    setFocusProxy(m_report);
}

ListView::~ListView()
{
    for (LabelDelegate *delegate : std::as_const(m_delegates))
        delegate->disconnect(this); // an editor may go with it
}

void ListView::setUpView(QAbstractItemView *view, const QString &name, const QSize &pictureSize)
{
    view->setAccessibleName(name);
    view->setIconSize(pictureSize);
    view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    auto *delegate = new LabelDelegate(this);
    view->setItemDelegate(delegate);
    connect(delegate, &LabelDelegate::editStarted, this, &ListView::BeforeLabelEdit);
    connect(delegate, &LabelDelegate::edited, this, &ListView::AfterLabelEdit);
    connect(delegate, &LabelDelegate::editEnded, this, &ListView::labelEditEnded);
    m_delegates.append(delegate);
    view->installEventFilter(this);
    view->viewport()->installEventFilter(this);
    connect(view, &QAbstractItemView::clicked, this, &ListView::Click);
    m_stack->addWidget(view);
}

void ListView::setModel(QAbstractItemModel *model)
{
    m_model = model;
    m_selection = new QItemSelectionModel(model, this);
    connect(m_selection, &QItemSelectionModel::selectionChanged, this, &ListView::selectionChanged);
    attach(currentView());
    for (const auto change : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(model, change, this, &ListView::describeEmptiness);
    connect(model, &QAbstractItemModel::modelReset, this, &ListView::describeEmptiness);
    describeEmptiness();
}

void ListView::attach(QAbstractItemView *view)
{
    const QScopedValueRollback guard(m_settingWidths, true);
    view->setModel(m_model);
    QItemSelectionModel *own = view->selectionModel();
    view->setSelectionModel(m_selection);
    delete own;
    if (view == m_report && !m_headerState.isEmpty()) {
        m_report->header()->restoreState(m_headerState);
        m_report->header()->setSortIndicator(m_sortColumn, m_sortOrder); // changed meanwhile
    }
}

void ListView::detach(QAbstractItemView *view)
{
    if (view == m_report)
        m_headerState = m_report->header()->saveState();
    const QScopedValueRollback guard(m_settingWidths, true);
    view->setModel(nullptr);
}

int ListView::View() const
{
    return m_stack->currentWidget() == m_list ? lvwList : lvwReport;
}

void ListView::setView(int view)
{
    QAbstractItemView *to = nullptr;
    if (view == lvwList)
        to = m_list;
    else if (view == lvwReport)
        to = m_report;
    if (!to || to == m_stack->currentWidget())
        return;
    const Hourglass hourglass; // a list measures every label
    QAbstractItemView *from = currentView();
    const bool focused = from->hasFocus();
    finishLabelEdit();
    if (m_model) {
        attach(to);
        detach(from);
    }
    m_stack->setCurrentWidget(to);
    to->doItemsLayout(); // now, not when it is painted
    setFocusProxy(to);
    if (focused)
        to->setFocus();
    EnsureVisible();
}

QAbstractItemView *ListView::currentView() const
{
    return View() == lvwList ? static_cast<QAbstractItemView *>(m_list) : m_report;
}

int ListView::SelectedItem() const
{
    const QModelIndex current = m_selection->currentIndex();
    if (current.isValid() && m_selection->isRowSelected(current.row()))
        return current.row();
    int first = -1;
    const QItemSelection ranges = m_selection->selection();
    for (const QItemSelectionRange &range : ranges) {
        if (first < 0 || range.top() < first)
            first = range.top();
    }
    return first;
}

QList<int> ListView::selectedRows() const
{
    QList<int> rows;
    const QItemSelection ranges = m_selection->selection();
    for (const QItemSelectionRange &range : ranges) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.append(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void ListView::selectAll()
{
    currentView()->selectAll();
}

void ListView::invertSelection()
{
    if (m_model->rowCount() == 0)
        return;
    const QItemSelection all(
        m_model->index(0, 0), m_model->index(m_model->rowCount() - 1, m_model->columnCount() - 1));
    m_selection->select(all, QItemSelectionModel::Toggle);
}

void ListView::UnselectAll()
{
    m_selection->clearSelection();
}

void ListView::setSelectedItem(int row)
{
    selectRows({row});
}

void ListView::selectRows(const QList<int> &rows)
{
    if (rows.isEmpty()) {
        m_selection->clearSelection();
        return;
    }
    // Neighbours become one range: thousands of single rows would make the selection slow.
    QList<int> sorted = rows;
    std::sort(sorted.begin(), sorted.end());
    const int lastColumn = m_model->columnCount() - 1;
    QItemSelection ranges;
    for (qsizetype from = 0; from < sorted.size();) {
        qsizetype to = from;
        while (to + 1 < sorted.size() && sorted[to + 1] <= sorted[to] + 1)
            ++to;
        ranges.append(QItemSelectionRange(
            m_model->index(sorted[from], 0), m_model->index(sorted[to], lastColumn)));
        from = to + 1;
    }
    const QModelIndex first = m_model->index(rows.constFirst(), 0);
    m_selection->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    m_selection->select(ranges, QItemSelectionModel::ClearAndSelect);
    currentView()->scrollTo(first);
}

int ListView::focusedItem() const
{
    return m_selection->currentIndex().row();
}

void ListView::setFocusedItem(int row)
{
    if (row >= 0) {
        m_selection->setCurrentIndex(m_model->index(row, 0), QItemSelectionModel::NoUpdate);
    }
}

void ListView::moveSelection(int fromRow, int toRow)
{
    constexpr auto wholeRow = QItemSelectionModel::Rows;
    m_selection->select(m_model->index(fromRow, 0), QItemSelectionModel::Deselect | wholeRow);
    m_selection->select(m_model->index(toRow, 0), QItemSelectionModel::Select | wholeRow);
    setFocusedItem(toRow);
    EnsureVisible();
}

void ListView::scrollToTop(int row)
{
    currentView()->scrollTo(m_model->index(row, 0), QAbstractItemView::PositionAtTop);
}

void ListView::EnsureVisible()
{
    const int row = m_model ? SelectedItem() : -1;
    if (row >= 0)
        currentView()->scrollTo(m_model->index(row, 0));
}

void ListView::StartLabelEdit()
{
    const int row = SelectedItem();
    if (row < 0)
        return;
    const QModelIndex index = m_model->index(row, 0);
    m_selection->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    currentView()->edit(index);
}

void ListView::finishLabelEdit()
{
    for (LabelDelegate *delegate : std::as_const(m_delegates))
        delegate->finish();
}

QWidget *ListView::labelEditor() const
{
    for (const LabelDelegate *delegate : m_delegates) {
        if (QWidget *editor = delegate->editor())
            return editor;
    }
    return nullptr;
}

void ListView::setColumnKeepingEnds(int column)
{
    for (LabelDelegate *delegate : std::as_const(m_delegates))
        delegate->setColumnKeepingEnds(column);
}

void ListView::setColumnWidths(const QList<int> &widths)
{
    const QScopedValueRollback guard(m_settingWidths, true);
    for (int column = 0; column < widths.size(); ++column)
        m_report->setColumnWidth(column, widths[column]);
}

QList<int> ListView::columnWidths() const
{
    QList<int> widths;
    for (int column = 0; column < m_report->header()->count() - 1; ++column)
        widths.append(m_report->columnWidth(column));
    return widths;
}

void ListView::setEmptyHint(const EmptyHint &hint)
{
    m_emptyHint = hint;
    describeEmptiness();
}

void ListView::describeEmptiness()
{
    const bool empty = m_model && m_model->rowCount() == 0;
    for (QAbstractItemView *view :
        {static_cast<QAbstractItemView *>(m_report), static_cast<QAbstractItemView *>(m_list)}) {
        view->setAccessibleDescription(empty ? m_emptyHint.spoken() : QString());
        view->viewport()->update();
    }
}

void ListView::setSortIndicator(int column, Qt::SortOrder order)
{
    m_sortColumn = column;
    m_sortOrder = order;
    m_report->header()->setSortIndicator(column, order);
}

void ListView::setDropHighlight(int row, bool below)
{
    if (row == DropHighlight() && below == m_dropBelow)
        return;
    m_dropRow = row < 0 ? QPersistentModelIndex() : QPersistentModelIndex(m_model->index(row, 0));
    m_dropBelow = below;
    currentView()->viewport()->update();
}

void ListView::startDrag()
{
    // After a drag was cancelled with the button still held, Qt would start the next at once.
    if (!std::exchange(m_dragSpent, true))
        Q_EMIT OLEStartDrag();
}

void ListView::OLEDrag(QMimeData *carried, const QPixmap &picture)
{
    auto *drag = new QDrag(currentView());
    drag->setMimeData(carried);
    drag->setPixmap(picture);
    drag->setHotSpot(QPoint(-12, -4)); // beside the pointer, so that the mark stays in sight
    connect(drag, &QDrag::actionChanged, this, &ListView::OLEGiveFeedback);
    const DragCanceller canceller;
    drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::CopyAction);
}

void ListView::paintMarks(QPainter &painter) const
{
    paintEmptyHint(painter);
    paintDropHighlight(painter);
}

void ListView::paintDropHighlight(QPainter &painter) const
{
    if (!m_dropRow.isValid())
        return;
    QRect item = currentView()->visualRect(m_dropRow);
    if (View() == lvwReport)
        item.setRight(m_report->header()->length());
    QColor colour = palette().color(QPalette::Highlight);
    painter.setPen(QPen(colour, 2));
    const int y = m_dropBelow ? item.bottom() : item.top() + 1;
    painter.drawLine(item.left() + 1, y, item.right() - 1, y);
    colour.setAlphaF(0.2F);
    painter.fillRect(item, colour);
}

void ListView::paintEmptyHint(QPainter &painter) const
{
    if (m_model && m_model->rowCount() == 0) {
        m_emptyHint.paint(painter, currentView()->viewport()->rect(), palette(), QPalette::Base);
    }
}

int ListView::HitTest(const QPoint &position) const
{
    const QModelIndex index = currentView()->indexAt(position);
    return index.isValid() ? index.row() : -1;
}

QPoint ListView::menuPosition() const
{
    const QAbstractItemView *view = currentView();
    QPoint position(4, 4);
    const int row = SelectedItem();
    if (row >= 0) {
        const QRect item = view->visualRect(m_model->index(row, 0));
        if (view->viewport()->rect().contains(item.center()))
            position = item.center();
    }
    return view->viewport()->mapToGlobal(position);
}

bool ListView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress) {
        m_dragSpent = false;
        const auto *mouse = static_cast<QMouseEvent *>(event);
        Q_EMIT MouseDown(mouse->button(), mouse->position().toPoint());
    } else if (event->type() == QEvent::MouseButtonDblClick) {
        if (static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton)
            Q_EMIT DblClick();
    } else if (event->type() == QEvent::MouseButtonRelease) {
        Q_EMIT MouseUp();
    } else if (event->type() == QEvent::ContextMenu) {
        return true; // the owner answers MouseDown and menuKeyPressed
    }
    return false;
}

bool ListView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_report->viewport() || watched == m_list->viewport())
        return viewportEvent(event) || QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        m_pressedKey = key->key();
        // The toolkit knows the menu key only.
        if (key->key() == Qt::Key_F10 && key->modifiers() == Qt::ShiftModifier) {
            Q_EMIT menuKeyPressed();
            return true;
        }
        Q_EMIT KeyDown(key->key());
    } else if (event->type() == QEvent::KeyRelease) {
        const auto *key = static_cast<QKeyEvent *>(event);
        // The release of a key that ended a label edit is none of the list's.
        if (!key->isAutoRepeat() && key->key() == m_pressedKey)
            Q_EMIT KeyUp(key->key());
        m_pressedKey = 0;
    } else if (event->type() == QEvent::FocusOut) {
        m_pressedKey = 0;
    } else if (event->type() == QEvent::ContextMenu) {
        Q_EMIT menuKeyPressed();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
