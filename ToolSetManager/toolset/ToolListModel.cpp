#include "toolset/ToolListModel.h"

#include "model/CVBATools.h"
#include "platform/desktop/ListView.h"

#include <QCollator>
#include <QIcon>
#include <QPixmap>

#include <algorithm>
#include <numeric>

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

QStringList ToolListModel::keysInPositionOrder() const
{
    QStringList keys(static_cast<qsizetype>(m_rows.size()));
    for (const Row &row : m_rows)
        keys[row.position - 1] = row.tool->Description;
    return keys;
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
    struct Keyed {
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

    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<int> positions; // of the rows that the selection and the focus hold on to
    positions.reserve(static_cast<size_t>(before.size()));
    for (const QModelIndex &index : before)
        positions.push_back(positionAt(index.row()));

    sortRows(m_rows);

    std::vector<int> rowOfPosition(m_rows.size() + 1);
    for (size_t row = 0; row < m_rows.size(); ++row)
        rowOfPosition[static_cast<size_t>(m_rows[row].position)] = static_cast<int>(row);
    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i) {
        after.append(index(
            rowOfPosition[static_cast<size_t>(positions[static_cast<size_t>(i)])],
            before[i].column()));
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

QString ToolListModel::renameTool(int row, const QString &newName)
{
    const ToolPtr tool = toolAt(row);
    m_tools->Rename(tool, newName);
    dataChangedInRow(row);
    return tool->Description;
}

void ToolListModel::setGhosted(const QList<int> &rows, bool ghosted)
{
    for (const int row : rows) {
        m_rows[static_cast<size_t>(row)].ghosted = ghosted;
        dataChangedInRow(row);
    }
}

void ToolListModel::clearGhosted()
{
    for (size_t row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row].ghosted) {
            m_rows[row].ghosted = false;
            dataChangedInRow(static_cast<int>(row));
        }
    }
}

void ToolListModel::refreshPictures()
{
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(index(0, NameColumn), index(rowCount() - 1, NameColumn),
                           {Qt::DecorationRole});
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
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (index.column() == NameColumn)
        flags |= Qt::ItemIsEditable;
    return flags;
}
