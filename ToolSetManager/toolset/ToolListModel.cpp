#include "toolset/ToolListModel.h"

#include "model/CVBATools.h"
#include "platform/desktop/ListView.h"

#include <QCollator>
#include <QHash>
#include <QIcon>
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

ToolListModel::ToolListModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

void ToolListModel::setTools(CVBATools *tools)
{
    beginResetModel();
    m_tools = tools;
    m_rows.clear();
    if (tools) {
        m_rows.reserve(static_cast<size_t>(tools->Count()));
        int position = 0;
        for (const ToolPtr &tool : *tools)
            m_rows.push_back({tool, ++position, false});
        sortRows(m_rows);
    }
    endResetModel();
}

int ToolListModel::rowAt(int position) const
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
        [position](const Row &row) { return row.position == position; });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

QStringList ToolListModel::keysInPositionOrder() const
{
    QStringList keys(static_cast<qsizetype>(m_rows.size()));
    for (const Row &row : m_rows)
        keys[row.position - 1] = row.tool->Description;
    return keys;
}

QList<ToolPtr> ToolListModel::toolsInPositionOrder() const
{
    QList<ToolPtr> tools(static_cast<qsizetype>(m_rows.size()));
    for (const Row &row : m_rows)
        tools[row.position - 1] = row.tool;
    return tools;
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
    if (m_sortKey < 0)
        return;
    const bool descending = m_sortOrder == Qt::DescendingOrder;
    if (m_sortKey == PositionColumn) {
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

QString ToolListModel::renameTool(int row, const QString &newName)
{
    const ToolPtr tool = toolAt(row);
    if (!m_tools->CanRename(tool, newName)) {
        Q_EMIT noFreeName(newName);
        return tool->Description;
    }
    m_tools->Rename(tool, newName);
    dataChangedInRow(row);
    return tool->Description;
}

void ToolListModel::toolChanged(int row)
{
    dataChangedInRow(row);
}

QList<int> ToolListModel::appendTools(const QList<ToolPtr> &tools)
{
    std::vector<Row> added;
    added.reserve(static_cast<size_t>(tools.size()));
    int position = rowCount();
    for (const ToolPtr &tool : tools) {
        if (m_tools->Add(tool))
            added.push_back({tool, ++position, false});
        else
            Q_EMIT noFreeName(tool->Description);
    }
    QList<int> rows;
    if (added.empty())
        return rows;
    const bool byPosition =
        m_sortKey < 0 || (m_sortKey == PositionColumn && m_sortOrder == Qt::AscendingOrder);
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(added.size()) - 1);
    m_rows.insert(m_rows.end(), added.begin(), added.end());
    endInsertRows();
    if (byPosition) {
        for (int row = first; row < rowCount(); ++row)
            rows.append(row);
        return rows;
    }
    sort(m_sortKey, m_sortOrder);
    for (int row = 0; row < rowCount(); ++row) {
        if (positionAt(row) > first)
            rows.append(row);
    }
    return rows;
}

void ToolListModel::removeTools(const QList<int> &rows)
{
    if (rows.isEmpty())
        return;
    QList<int> sorted = rows;
    std::sort(sorted.begin(), sorted.end());
    QStringList names;
    QList<std::pair<int, int>> ranges; // first and last row of neighbours
    for (const int row : std::as_const(sorted)) {
        names.append(toolAt(row)->Description);
        if (!ranges.isEmpty() && ranges.constLast().second == row - 1)
            ranges.last().second = row;
        else
            ranges.append({row, row});
    }
    m_tools->Remove(names);
    std::vector<bool> taken(m_rows.size() + 1, false); // by position
    for (const int row : std::as_const(sorted))
        taken[static_cast<size_t>(positionAt(row))] = true;
    std::vector<int> newPosition(m_rows.size() + 1, 0);
    int position = 0;
    for (size_t old = 1; old <= m_rows.size(); ++old)
        newPosition[old] = taken[old] ? 0 : ++position;
    for (Row &row : m_rows)
        row.position = newPosition[static_cast<size_t>(row.position)];

    // Views look through their rows at each removal, so many scattered rows go in one step.
    constexpr qsizetype fewRanges = 32;
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

bool ToolListModel::movesBelow(const QList<int> &rows, int targetRow) const
{
    const int target = positionAt(targetRow);
    return std::any_of(rows.begin(), rows.end(), [&](int row) { return positionAt(row) < target; });
}

QList<int> ToolListModel::MoveTools(const QList<int> &rows, int targetRow)
{
    const int target = positionAt(targetRow);
    const bool targetMoves = rows.contains(targetRow);
    const bool below = movesBelow(rows, targetRow) && !targetMoves;
    std::vector<bool> moves(m_rows.size() + 1, false); // by position
    for (const int row : rows)
        moves[static_cast<size_t>(positionAt(row))] = true;

    int before = 0; // tools that stay and stand before the place
    for (int position = 1; position < target + (below ? 1 : 0); ++position)
        before += moves[static_cast<size_t>(position)] ? 0 : 1;
    const int moved = static_cast<int>(std::count(moves.begin(), moves.end(), true));

    rearrange([&] {
        std::vector<int> newPosition(m_rows.size() + 1, 0);
        int staying = 0;
        int moving = before;
        for (size_t old = 1; old <= m_rows.size(); ++old) {
            if (moves[old]) {
                newPosition[old] = ++moving;
            } else {
                ++staying;
                newPosition[old] = staying <= before ? staying : staying + moved;
            }
        }
        for (Row &row : m_rows)
            row.position = newPosition[static_cast<size_t>(row.position)];
        m_sortKey = PositionColumn;
        m_sortOrder = Qt::AscendingOrder;
        sortRows(m_rows);
    });
    positionsChanged();
    QList<int> now;
    for (int row = before; row < before + moved; ++row)
        now.append(row);
    return now;
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
        Q_EMIT dataChanged(
            index(0, 0), index(rowCount() - 1, ColumnCount - 1), {ListView::GhostedRole});
    }
}

void ToolListModel::RefreshIcons()
{
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(
            index(0, NameColumn), index(rowCount() - 1, NameColumn), {Qt::DecorationRole});
    }
}

void ToolListModel::dataChangedInRow(int row)
{
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
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
    case ListView::GhostedRole:
        return row.ghosted;
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
