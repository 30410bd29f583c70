#include "toolset/ChangesModel.h"

#include "platform/desktop/Icons.h"
#include "toolset/FindingsModel.h"

#include <QPixmap>

void ChangesModel::setPreview(const QList<BulkChange::Row> &preview, const QSet<int> &leftOut)
{
    QList<Line> lines;
    for (qsizetype tool = 0; tool < preview.size(); ++tool) {
        for (qsizetype change = 0; change < preview[tool].changes.size(); ++change)
            lines.append({tool, change});
    }
    const bool sameLines = lines == m_lines; // the place and the focus in the list stay
    if (!sameLines)
        beginResetModel();
    m_preview = preview;
    m_lines = lines;
    m_leftOut = leftOut;
    if (!sameLines)
        endResetModel();
    else
        ticked();
}

void ChangesModel::setAllTicked(bool ticked)
{
    for (const BulkChange::Row &row : m_preview) {
        if (ticked)
            m_leftOut.remove(row.position);
        else
            m_leftOut.insert(row.position);
    }
    this->ticked();
    Q_EMIT ticksChanged();
}

void ChangesModel::ticked()
{
    if (!m_lines.isEmpty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

const BulkChange::Row &ChangesModel::tool(const QModelIndex &index) const
{
    return m_preview[m_lines[index.row()].tool];
}

QString ChangesModel::text(const QModelIndex &index) const
{
    const BulkChange::Row &row = tool(index);
    const Line line = m_lines[index.row()];
    const BulkChange::FieldChange &change = row.changes[line.change];
    const bool isPicture = qstrcmp(change.field, "picture") == 0;
    switch (index.column()) {
    case ToolColumn:
        return row.tool->Description;
    case FieldColumn:
        return FindingsModel::fieldCaption(change.field);
    case OldColumn:
        return isPicture ? QStringLiteral("former picture") : change.before;
    case NewColumn:
        return isPicture ? QStringLiteral("new picture") : change.after;
    default:
        return line.change == 0 ? row.remark : QString();
    }
}

QVariant ChangesModel::picture(const QModelIndex &index) const
{
    const BulkChange::Row &row = tool(index);
    const Line line = m_lines[index.row()];
    if (index.column() == RemarkColumn && line.change == 0 && !row.remark.isEmpty()) {
        return row.storable
            ? Icons::named(QStringLiteral("emblem-warning"), QStyle::SP_MessageBoxWarning)
            : Icons::named(QStringLiteral("emblem-error"), QStyle::SP_MessageBoxCritical);
    }
    if (qstrcmp(row.changes[line.change].field, "picture") != 0)
        return {};
    if (index.column() == OldColumn)
        return QPixmap::fromImage(row.tool->Picture);
    return index.column() == NewColumn ? QPixmap::fromImage(row.after.Picture) : QVariant();
}

// --- QAbstractItemModel ---

int ChangesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

int ChangesModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ChangesModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return text(index);
    case Qt::ToolTipRole:
        return QStringLiteral("<p>%1</p>").arg(text(index).toHtmlEscaped());
    case Qt::DecorationRole:
        return picture(index);
    case Qt::CheckStateRole: {
        if (index.column() != ToolColumn)
            return {};
        const BulkChange::Row &row = tool(index);
        return row.storable && !m_leftOut.contains(row.position) ? Qt::Checked : Qt::Unchecked;
    }
    default:
        return {};
    }
}

bool ChangesModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.column() != ToolColumn || role != Qt::CheckStateRole)
        return false;
    if (value.toInt() == Qt::Checked)
        m_leftOut.remove(tool(index).position);
    else
        m_leftOut.insert(tool(index).position);
    ticked();
    Q_EMIT ticksChanged();
    return true;
}

QVariant ChangesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    static constexpr const char *captions[] = {"Tool", "Field", "Old", "New", "Remark"};
    return section < ColumnCount ? QString::fromLatin1(captions[section]) : QVariant();
}

Qt::ItemFlags ChangesModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (index.column() == ToolColumn && tool(index).storable)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}
