#include "toolset/FindingsModel.h"

#include "platform/desktop/Icons.h"

#include <algorithm>

namespace {

bool isSame(const ToolCheck::Row &a, const ToolCheck::Row &b)
{
    return a.tool == b.tool && a.finding == b.finding;
}

} // namespace

FindingsModel::FindingsModel(QObject *parent)
    : QAbstractTableModel(parent)
{
    refreshIcons();
}

void FindingsModel::refreshIcons()
{
    // In the order of the severities.
    m_icons = {Icons::emblem(QStringLiteral("emblem-question"), QStyle::SP_MessageBoxQuestion),
        Icons::emblem(QStringLiteral("emblem-information"), QStyle::SP_MessageBoxInformation),
        Icons::emblem(QStringLiteral("emblem-warning"), QStyle::SP_MessageBoxWarning),
        Icons::emblem(QStringLiteral("emblem-error"), QStyle::SP_MessageBoxCritical)};
    if (!m_rows.isEmpty())
        Q_EMIT dataChanged(index(0, SeverityColumn), index(rowCount() - 1, SeverityColumn));
}

QIcon FindingsModel::icon(ToolFinding::Severity severity) const
{
    return m_icons[static_cast<size_t>(severity)];
}

QString FindingsModel::fieldCaption(const char *field)
{
    QString caption = QLatin1StringView(field);
    caption[0] = caption[0].toUpper();
    return caption;
}

// --- Rows ---

void FindingsModel::setFindings(const QList<ToolCheck::Row> &findings)
{
    m_findings = findings;
    const QList<ToolCheck::Row> rows = sorted();
    const qsizetype shorter = std::min(rows.size(), m_rows.size());
    qsizetype first = 0;
    while (first < shorter && isSame(rows[first], m_rows[first]))
        ++first;
    qsizetype same = 0; // at the end
    while (same < shorter - first && isSame(rows.rbegin()[same], m_rows.rbegin()[same]))
        ++same;
    const int before = static_cast<int>(m_rows.size());
    const int after = static_cast<int>(rows.size());
    const int end = static_cast<int>(shorter - same); // of what is replaced
    if (after < before) {
        beginRemoveRows({}, end, end + before - after - 1);
        m_rows = rows;
        endRemoveRows();
    } else if (after > before) {
        beginInsertRows({}, end, end + after - before - 1);
        m_rows = rows;
        endInsertRows();
    } else {
        m_rows = rows;
    }
    if (!m_rows.isEmpty()) // all: a tool may have another name
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

QString FindingsModel::text(const ToolCheck::Row &row, int column) const
{
    switch (column) {
    case SeverityColumn:
        return ToolCheck::caption(row.finding.severity);
    case ToolColumn:
        return row.tool->Description;
    case FieldColumn:
        return fieldCaption(row.finding.field);
    case FindingColumn:
        return row.finding.what;
    default:
        return row.finding.advice;
    }
}

QList<ToolCheck::Row> FindingsModel::sorted() const
{
    struct Keyed
    {
        QString key;
        qsizetype row;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(static_cast<size_t>(m_findings.size()));
    for (qsizetype i = 0; i < m_findings.size(); ++i) {
        const ToolCheck::Row &row = m_findings[i];
        keyed.push_back(
            {m_sortColumn == SeverityColumn ? QString(QChar(static_cast<int>(row.finding.severity)))
                                            : text(row, m_sortColumn).toCaseFolded(),
                i});
    }
    const bool descending = m_sortOrder == Qt::DescendingOrder;
    std::stable_sort(keyed.begin(), keyed.end(), [descending](const Keyed &a, const Keyed &b) {
        return descending ? b.key < a.key : a.key < b.key;
    });
    QList<ToolCheck::Row> rows;
    rows.reserve(m_findings.size());
    for (const Keyed &entry : keyed)
        rows.append(m_findings[entry.row]);
    return rows;
}

void FindingsModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= ColumnCount)
        return;
    beginResetModel();
    m_sortColumn = column;
    m_sortOrder = order;
    m_rows = sorted();
    endResetModel();
}

// --- QAbstractItemModel ---

int FindingsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int FindingsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FindingsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const ToolCheck::Row &row = m_rows[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.column());
    case Qt::DecorationRole:
        return index.column() == SeverityColumn ? icon(row.finding.severity) : QVariant();
    case Qt::ToolTipRole:
        return QStringLiteral("<p><b>%1</b></p><p>%2</p><p>%3</p>")
            .arg(row.tool->Description.toHtmlEscaped(), row.finding.what.toHtmlEscaped(),
                row.finding.advice.toHtmlEscaped());
    default:
        return {};
    }
}

QVariant FindingsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    static constexpr const char *captions[] = {
        "Severity", "Tool", "Field", "Finding", "What to do"};
    return section < ColumnCount ? QString::fromLatin1(captions[section]) : QVariant();
}
