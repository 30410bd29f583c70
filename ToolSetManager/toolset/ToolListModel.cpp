#include "toolset/ToolListModel.h"

#include "model/Positions.h"
#include "model/ToolSetDocument.h"
#include "platform/desktop/ItemRoles.h"
#include "platform/picture/ButtonPicture.h"

#include <QCollator>
#include <QFont>
#include <QGuiApplication>
#include <QHash>
#include <QPalette>
#include <QPixmap>
#include <QPixmapCache>

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

QFont italicFont()
{
    QFont font; // the delegate takes nothing but the slant from it
    font.setItalic(true);
    return font;
}

/// The tool's picture as the list shows it.
QPixmap iconOf(const CVBATool &tool)
{
    const QPalette palette = QGuiApplication::palette();
    const QColor background = palette.color(QPalette::Base);
    const QString key = QStringLiteral("tool %1 %2 %3")
                            .arg(tool.Picture.cacheKey())
                            .arg(tool.ToolType)
                            .arg(background.rgb());
    QPixmap icon;
    if (QPixmapCache::find(key, &icon))
        return icon;
    QImage shown = ButtonPicture::onBackground(tool.Picture, background);
    if (tool.ToolType == CVBATool::Separator && ButtonPicture::isEmpty(shown)) {
        QColor line = palette.color(QPalette::Text);
        line.setAlphaF(0.5F);
        shown = ButtonPicture::separatorLine(shown.size(), line);
    }
    icon = QPixmap::fromImage(shown);
    QPixmapCache::insert(key, icon);
    return icon;
}

} // namespace

ToolListModel::ToolListModel(ToolSetDocument &document, int codePage, QObject *parent)
    : QAbstractTableModel(parent)
    , m_document(document)
    , m_finder(document, codePage)
{
    connect(&document, &ToolSetDocument::reset, this, &ToolListModel::showAll);
    connect(&document, &ToolSetDocument::toolsRemoved, this, &ToolListModel::removeRowsAt);
    connect(&document, &ToolSetDocument::toolsInserted, this, &ToolListModel::insertRowsAt);
    connect(&document, &ToolSetDocument::toolsMoved, this, &ToolListModel::reorder);
    connect(&document, &ToolSetDocument::toolChanged, this, &ToolListModel::refreshRowAt);
    showAll();
}

// --- The document ---

void ToolListModel::showAll()
{
    beginResetModel();
    m_rows.clear();
    m_rows.reserve(m_document.toolsInOrder().size());
    int position = 0;
    for (const ToolPtr &tool : m_document.toolsInOrder()) {
        ++position;
        m_rows.push_back({tool, position, false, m_finder.matches(position)});
    }
    sortRows(m_rows);
    collectShown();
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

void ToolListModel::collectShown()
{
    m_shown.clear();
    m_shown.reserve(m_rows.size());
    for (size_t i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i].shown)
            m_shown.push_back(i);
    }
}

void ToolListModel::removeRowsAt(const QList<int> &positions)
{
    const auto ranges = rangesOf(rowsOf(positions));
    renumber(Positions::afterRemoval(m_rows.size(), positions));
    const auto isGone = [](const Row &row) { return row.position == 0; };
    if (ranges.size() > fewRanges) {
        beginResetModel();
        std::erase_if(m_rows, isGone);
        collectShown();
        endResetModel();
        return;
    }
    for (auto range = ranges.crbegin(); range != ranges.crend(); ++range) {
        beginRemoveRows({}, range->first, range->second);
        m_shown.erase(m_shown.begin() + range->first, m_shown.begin() + range->second + 1);
        endRemoveRows();
    }
    std::erase_if(m_rows, isGone);
    collectShown();
    positionsChanged();
}

void ToolListModel::insertRowsAt(const QList<int> &positions)
{
    renumber(Positions::afterInsertion(m_rows.size(), positions));
    const bool inOrder = isInPositionOrder();
    const size_t formerCount = m_rows.size();
    std::vector<Row> rows;
    rows.reserve(static_cast<size_t>(positions.size()));
    for (const int at : positions)
        rows.push_back({m_document.toolAt(at), at, false, false});
    std::vector<size_t> matching;
    for (size_t i = 0; i < rows.size(); ++i) {
        if (m_finder.matches(rows[i].position))
            matching.push_back(
                inOrder ? static_cast<size_t>(rows[i].position) - 1 : formerCount + i);
    }
    if (inOrder)
        Positions::insert(m_rows, positions, std::move(rows));
    else
        m_rows.insert(m_rows.end(), rows.begin(), rows.end());
    collectShown();
    show(matching);
    if (!inOrder)
        sort(m_sortKey, m_sortOrder);
    positionsChanged();
}

void ToolListModel::refreshRowAt(int position)
{
    const int row = rowOf(position);
    if (row >= 0)
        Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
    else if (m_finder.matches(position))
        showNewMatches();
}

void ToolListModel::reorder(const QList<int> &from, const QList<int> &to)
{
    rearrange([&] {
        renumber(Positions::afterMove(m_rows.size(), from, to));
        sortRows(m_rows); // by location, too: equal ones stand by position
        collectShown();
    });
    positionsChanged();
}

// --- Filter ---

void ToolListModel::show(const std::vector<size_t> &indexes)
{
    QList<int> rows; // that they will have
    rows.reserve(static_cast<qsizetype>(indexes.size()));
    for (const size_t i : indexes)
        rows.append(rowOfIndex(i) + static_cast<int>(rows.size()));
    const auto ranges = rangesOf(rows);
    if (ranges.size() > fewRanges) {
        Q_EMIT shownAboutToChange();
        beginResetModel();
        for (const size_t i : indexes)
            m_rows[i].shown = true;
        collectShown();
        endResetModel();
        Q_EMIT shownChanged();
        return;
    }
    auto from = indexes.begin();
    for (const auto &[first, last] : ranges) {
        const auto to = from + (last - first + 1);
        beginInsertRows({}, first, last);
        for (auto each = from; each != to; ++each)
            m_rows[*each].shown = true;
        m_shown.insert(m_shown.begin() + first, from, to);
        endInsertRows();
        from = to;
    }
}

void ToolListModel::setFilter(const ToolFilter &filter)
{
    m_finder.setFilter(filter);
    std::vector<size_t> shown;
    shown.reserve(m_rows.size());
    for (size_t i = 0; i < m_rows.size(); ++i) {
        if (m_finder.matches(m_rows[i].position))
            shown.push_back(i);
    }
    if (shown == m_shown) {
        changed(0, ColumnCount - 1, MarksRole);
        return;
    }
    Q_EMIT shownAboutToChange();
    beginResetModel();
    for (const size_t i : m_shown)
        m_rows[i].shown = false;
    for (const size_t i : shown)
        m_rows[i].shown = true;
    m_shown = std::move(shown);
    endResetModel();
    Q_EMIT shownChanged();
}

void ToolListModel::endFilter()
{
    setFilter({});
    m_finder.release();
}

void ToolListModel::showNewMatches()
{
    std::vector<size_t> indexes;
    for (size_t i = 0; i < m_rows.size(); ++i) {
        if (!m_rows[i].shown && m_finder.matches(m_rows[i].position))
            indexes.push_back(i);
    }
    show(indexes);
}

void ToolListModel::reveal(const QList<int> &positions)
{
    if (rowsOf(positions).size() == positions.size())
        return;
    setFilter({});
    Q_EMIT filterGivenUp();
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
    for (int row = 0; row < rowCount(); ++row)
        positions.append(positionAt(row));
    std::sort(positions.begin(), positions.end());
    return positions;
}

int ToolListModel::rowOfIndex(size_t index) const
{
    return static_cast<int>(
        std::lower_bound(m_shown.begin(), m_shown.end(), index) - m_shown.begin());
}

int ToolListModel::rowOf(int position) const
{
    if (position < 1 || static_cast<size_t>(position) > m_rows.size())
        return -1;
    auto found = m_rows.begin() + (position - 1);
    if (!isInPositionOrder()) {
        found = std::find_if(m_rows.begin(), m_rows.end(),
            [position](const Row &row) { return row.position == position; });
    }
    return found->shown ? rowOfIndex(static_cast<size_t>(found - m_rows.begin())) : -1;
}

QList<int> ToolListModel::rowsOf(const QList<int> &positions) const
{
    QList<int> rows;
    rows.reserve(positions.size());
    if (isInPositionOrder()) {
        for (const int position : positions) {
            const auto index = static_cast<size_t>(position) - 1;
            if (index < m_rows.size() && m_rows[index].shown)
                rows.append(rowOfIndex(index));
        }
        return rows;
    }
    for (int row = 0; row < rowCount(); ++row) {
        if (std::binary_search(positions.begin(), positions.end(), positionAt(row)))
            rows.append(row);
    }
    return rows;
}

int ToolListModel::nextShown(int position, bool forward) const
{
    int next = 0;
    for (int row = 0; row < rowCount(); ++row) {
        const int at = positionAt(row);
        if (forward ? at > position && (next == 0 || at < next) : at < position && at > next)
            next = at;
    }
    return next;
}

QList<int> ToolListModel::ghostedPositions() const
{
    QList<int> positions;
    for (const Row &row : m_rows) {
        if (row.ghosted)
            positions.append(row.position);
    }
    std::sort(positions.begin(), positions.end());
    return positions;
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
    rearrange([this] {
        sortRows(m_rows);
        collectShown();
    });
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
        for (int row = 0; row < rowCount(); ++row)
            rowOfTool.insert(toolAt(row).get(), row);
    }
    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i)
        after.append(index(rowOfTool.value(tools[static_cast<size_t>(i)]), before[i].column()));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void ToolListModel::changed(int firstColumn, int lastColumn, int role)
{
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, firstColumn), index(rowCount() - 1, lastColumn), {role});
}

void ToolListModel::positionsChanged()
{
    changed(PositionColumn, PositionColumn, Qt::DisplayRole);
}

void ToolListModel::setGhosted(const QList<int> &rows, bool ghosted)
{
    for (const int row : rows)
        m_rows[m_shown[static_cast<size_t>(row)]].ghosted = ghosted;
    changed(0, ColumnCount - 1, GhostedRole);
}

void ToolListModel::clearGhosted()
{
    for (Row &row : m_rows)
        row.ghosted = false;
    changed(0, ColumnCount - 1, GhostedRole);
}

void ToolListModel::setBadges(const Badges &badges)
{
    m_badges = badges;
    badgesChanged();
}

void ToolListModel::badgesChanged()
{
    changed(NameColumn, NameColumn, BadgeRole);
}

QVariant ToolListModel::badge(const QModelIndex &index, int role) const
{
    if (index.column() != NameColumn)
        return {};
    const int position = positionAt(index.row());
    if (role == BadgeRole) {
        const QIcon icon = m_badges.icon ? m_badges.icon(position) : QIcon();
        return icon.isNull() ? QVariant() : icon;
    }
    QStringList texts;
    if (m_badges.text)
        texts.append(m_badges.text(position));
    if (!toolAt(index.row())->Enabled)
        texts.append(QStringLiteral("Not enabled"));
    texts.removeAll(QString());
    return texts.isEmpty() ? QVariant() : texts.join(u'\n');
}

void ToolListModel::RefreshIcons()
{
    changed(NameColumn, NameColumn, Qt::DecorationRole);
}

int ToolListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int ToolListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ToolListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Row &row = shownAt(index.row());
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
            return QIcon(iconOf(*row.tool));
        return {};
    case Qt::FontRole:
        return row.tool->Enabled ? QVariant() : italicFont();
    case FaintRole:
        return !row.tool->Enabled;
    case GhostedRole:
        return row.ghosted;
    case BadgeRole:
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        return badge(index, role);
    case MarksRole:
        return marks(index);
    default:
        return {};
    }
}

QVariant ToolListModel::marks(const QModelIndex &index) const
{
    using Scope = ToolFilter::Scope;
    const ToolFilter &filter = m_finder.filter();
    if (filter.isEmpty() || index.column() == PositionColumn)
        return {};
    TextMarks marks;
    const Scope scope = index.column() == NameColumn ? Scope::Name : Scope::Location;
    const QString text = data(index, Qt::DisplayRole).toString();
    for (const auto &[start, length] : filter.ranges(scope, text))
        marks.append({static_cast<int>(start), static_cast<int>(length)});
    return QVariant::fromValue(marks);
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
