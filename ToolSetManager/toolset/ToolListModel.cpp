#include "toolset/ToolListModel.h"

#include "model/ToolSetDocument.h"
#include "platform/desktop/ItemRoles.h"

#include <QCollator>
#include <QHash>
#include <QPixmap>

#include <algorithm>

namespace {

QString positionText(int position)
{
    return QStringLiteral("%1").arg(position, 3, 10, QLatin1Char('0'));
}

/// A collator that works in the "C" locale too, where Qt's has no sort keys.
QCollator makeCollator()
{
    const QLocale locale;
    QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

} // namespace

ToolListModel::ToolListModel(ToolSetDocument &document, QObject *parent)
    : QAbstractTableModel(parent)
    , m_document(document)
{
    connect(&document, &ToolSetDocument::reset, this, &ToolListModel::showAll);
    connect(&document, &ToolSetDocument::toolsRemoved, this, &ToolListModel::removeRowsAt);
    connect(&document, &ToolSetDocument::toolsInserted, this, &ToolListModel::insertRowsAt);
    connect(&document, &ToolSetDocument::toolsMoved, this, &ToolListModel::reorder);
    connect(&document, &ToolSetDocument::toolChanged, this, [this](int position) {
        const int row = rowOf(position);
        if (row >= 0)
            Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
    });
    showAll();
}

// --- The document ---

void ToolListModel::showAll()
{
    beginResetModel();
    m_rows.clear();
    m_rows.reserve(m_document.toolsInOrder().size());
    int position = 0;
    for (const ToolPtr &tool : m_document.toolsInOrder())
        m_rows.push_back({tool, ++position, false});
    sortRows(m_rows);
    endResetModel();
}

namespace {

/// Views look through their rows at each insertion and removal, so many scattered rows go in one
/// step.
constexpr qsizetype fewRanges = 32;

/// First and last of the neighbours among ascending numbers.
QList<std::pair<int, int>> rangesOf(const QList<int> &numbers)
{
    QList<std::pair<int, int>> ranges;
    for (const int number : numbers) {
        if (!ranges.isEmpty() && ranges.constLast().second == number - 1)
            ranges.last().second = number;
        else
            ranges.append({number, number});
    }
    return ranges;
}

} // namespace

void ToolListModel::renumber(const std::vector<int> &newPosition)
{
    for (Row &row : m_rows)
        row.position = newPosition[static_cast<size_t>(row.position)];
}

void ToolListModel::removeRowsAt(const QList<int> &positions)
{
    const auto ranges = rangesOf(rowsOf(positions));
    std::vector<int> newPosition(m_rows.size() + 1, 0); // 0 for those that go
    qsizetype next = 0;
    int position = 0;
    for (int old = 1; old <= rowCount(); ++old) {
        if (next < positions.size() && positions[next] == old)
            ++next;
        else
            newPosition[static_cast<size_t>(old)] = ++position;
    }
    renumber(newPosition);
    if (ranges.size() > fewRanges) {
        beginResetModel();
        std::erase_if(m_rows, [](const Row &row) { return row.position == 0; });
        endResetModel();
        return;
    }
    for (auto range = ranges.crbegin(); range != ranges.crend(); ++range) {
        beginRemoveRows({}, range->first, range->second);
        m_rows.erase(m_rows.begin() + range->first, m_rows.begin() + range->second + 1);
        endRemoveRows();
    }
    positionsChanged();
}

void ToolListModel::insertRowsAt(const QList<int> &positions)
{
    std::vector<int> newPosition(m_rows.size() + 1, 0);
    qsizetype next = 0;
    int position = 0;
    for (size_t old = 1; old <= m_rows.size(); ++old) {
        for (++position; next < positions.size() && positions[next] == position; ++next)
            ++position;
        newPosition[old] = position;
    }
    renumber(newPosition);
    const auto rowAt = [this](int at) { return Row {m_document.toolAt(at), at, false}; };
    const bool inOrder = isInPositionOrder();
    const auto ranges = rangesOf(positions);
    if (ranges.size() > fewRanges) {
        beginResetModel();
        for (const int at : positions)
            m_rows.push_back(rowAt(at));
        sortRows(m_rows);
        endResetModel();
        return;
    }
    for (const auto &[first, last] : ranges) {
        const int row = inOrder ? first - 1 : rowCount();
        std::vector<Row> rows;
        rows.reserve(static_cast<size_t>(last - first) + 1);
        for (int at = first; at <= last; ++at)
            rows.push_back(rowAt(at));
        beginInsertRows({}, row, row + last - first);
        m_rows.insert(m_rows.begin() + row, rows.begin(), rows.end());
        endInsertRows();
    }
    if (!inOrder)
        sort(m_sortKey, m_sortOrder);
    positionsChanged();
}

void ToolListModel::reorder(const QList<int> &from, const QList<int> &to)
{
    std::vector<int> newPosition(m_rows.size() + 1, 0);
    for (qsizetype i = 0; i < from.size(); ++i)
        newPosition[static_cast<size_t>(from[i])] = to[i];
    qsizetype next = 0;
    int position = 1;
    for (size_t old = 1; old <= m_rows.size(); ++old) {
        if (newPosition[old] != 0)
            continue;
        for (; next < to.size() && to[next] == position; ++next)
            ++position;
        newPosition[old] = position++;
    }
    rearrange([&] {
        renumber(newPosition);
        sortRows(m_rows); // by location, too: equal ones stand by position
    });
    positionsChanged();
}

// --- Look-up ---

bool ToolListModel::isInPositionOrder() const
{
    return m_sortKey < 0 || (m_sortKey == PositionColumn && m_sortOrder == Qt::AscendingOrder);
}

QList<int> ToolListModel::positionsOf(const QList<int> &rows) const
{
    QList<int> positions;
    positions.reserve(rows.size());
    for (const int row : rows)
        positions.append(positionAt(row));
    std::sort(positions.begin(), positions.end());
    return positions;
}

QList<int> ToolListModel::shownPositions() const
{
    QList<int> positions;
    positions.reserve(rowCount());
    for (const Row &row : m_rows)
        positions.append(row.position);
    std::sort(positions.begin(), positions.end());
    return positions;
}

int ToolListModel::rowOf(int position) const
{
    if (isInPositionOrder() && position >= 1 && position <= rowCount())
        return position - 1;
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
        [position](const Row &row) { return row.position == position; });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

QList<int> ToolListModel::rowsOf(const QList<int> &positions) const
{
    QList<int> rows;
    rows.reserve(positions.size());
    if (isInPositionOrder()) {
        for (const int position : positions)
            rows.append(position - 1);
        return rows;
    }
    for (int row = 0; row < rowCount(); ++row) {
        if (std::binary_search(positions.begin(), positions.end(), positionAt(row)))
            rows.append(row);
    }
    return rows;
}

QList<int> ToolListModel::ghostedRows() const
{
    QList<int> rows;
    for (size_t row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row].ghosted)
            rows.append(static_cast<int>(row));
    }
    return rows;
}

void ToolListModel::sortRows(std::vector<Row> &rows) const
{
    const bool descending = m_sortKey >= 0 && m_sortOrder == Qt::DescendingOrder;
    if (m_sortKey < 0 || m_sortKey == PositionColumn) {
        std::sort(rows.begin(), rows.end(), [descending](const Row &a, const Row &b) {
            return descending ? b.position < a.position : a.position < b.position;
        });
        return;
    }
    struct Keyed
    {
        QCollatorSortKey key;
        size_t row;
    };
    const QCollator collator = makeCollator();
    std::vector<Keyed> keyed;
    keyed.reserve(rows.size());
    for (size_t i = 0; i < rows.size(); ++i) {
        const CVBATool &tool = *rows[i].tool;
        keyed.push_back(
            {collator.sortKey(m_sortKey == NameColumn ? tool.Description : tool.Location()), i});
    }
    std::sort(keyed.begin(), keyed.end(), [&](const Keyed &a, const Keyed &b) {
        const int order = a.key.compare(b.key);
        if (order != 0)
            return descending ? order > 0 : order < 0;
        return rows[a.row].position < rows[b.row].position;
    });
    std::vector<Row> sorted;
    sorted.reserve(rows.size());
    for (const Keyed &entry : keyed)
        sorted.push_back(std::move(rows[entry.row]));
    rows = std::move(sorted);
}

void ToolListModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= ColumnCount)
        return;
    m_sortKey = column;
    m_sortOrder = order;
    rearrange([this] { sortRows(m_rows); });
}

template <class Change>
void ToolListModel::rearrange(Change change)
{
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<const CVBATool *> tools; // of the rows that the selection and the focus hold on to
    tools.reserve(static_cast<size_t>(before.size()));
    for (const QModelIndex &index : before)
        tools.push_back(toolAt(index.row()).get());

    change();

    QHash<const CVBATool *, int> rowOfTool;
    if (!before.isEmpty()) {
        rowOfTool.reserve(rowCount());
        for (size_t row = 0; row < m_rows.size(); ++row)
            rowOfTool.insert(m_rows[row].tool.get(), static_cast<int>(row));
    }
    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i)
        after.append(index(rowOfTool.value(tools[static_cast<size_t>(i)]), before[i].column()));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void ToolListModel::positionsChanged()
{
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(
            index(0, PositionColumn), index(rowCount() - 1, PositionColumn), {Qt::DisplayRole});
    }
}

void ToolListModel::setGhosted(const QList<int> &rows, bool ghosted)
{
    for (const int row : rows)
        m_rows[static_cast<size_t>(row)].ghosted = ghosted;
    ghostsChanged();
}

void ToolListModel::clearGhosted()
{
    for (Row &row : m_rows)
        row.ghosted = false;
    ghostsChanged();
}

void ToolListModel::ghostsChanged()
{
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1), {GhostedRole});
    }
}

void ToolListModel::setMarks(const Marks &marks)
{
    m_marks = marks;
    marksChanged();
}

void ToolListModel::marksChanged()
{
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(index(0, NameColumn), index(rowCount() - 1, NameColumn),
            {MarkRole, Qt::ToolTipRole, Qt::AccessibleDescriptionRole});
    }
}

QVariant ToolListModel::mark(const QModelIndex &index, int role) const
{
    if (index.column() != NameColumn || !m_marks.icon || !m_marks.text)
        return {};
    const int position = positionAt(index.row());
    if (role == MarkRole) {
        const QIcon icon = m_marks.icon(position);
        return icon.isNull() ? QVariant() : icon;
    }
    const QString text = m_marks.text(position);
    return text.isEmpty() ? QVariant() : text;
}

void ToolListModel::RefreshIcons()
{
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(
            index(0, NameColumn), index(rowCount() - 1, NameColumn), {Qt::DecorationRole});
    }
}

int ToolListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ToolListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ToolListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Row &row = m_rows[static_cast<size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        if (index.column() == NameColumn)
            return row.tool->Description;
        if (index.column() == PositionColumn)
            return positionText(row.position);
        return row.tool->Location();
    case Qt::DecorationRole:
        // Made when a row is drawn: of ten thousand pictures only those in sight are needed.
        if (index.column() == NameColumn && !row.tool->Picture.isNull())
            return QIcon(QPixmap::fromImage(row.tool->Picture));
        return {};
    case GhostedRole:
        return row.ghosted;
    case MarkRole:
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        return mark(index, role);
    default:
        return {};
    }
}

QVariant ToolListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case NameColumn:
        return QStringLiteral("Tool Description");
    case PositionColumn:
        return QStringLiteral("Position");
    case LocationColumn:
        return QStringLiteral("Tool Location");
    default:
        return {};
    }
}

Qt::ItemFlags ToolListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags =
        Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
    if (index.column() == NameColumn)
        flags |= Qt::ItemIsEditable;
    return flags;
}
