#include "compare/ComparisonModel.h"

#include "compare/ComparedSet.h"
#include "compare/Tint.h"

#include <QFont>
#include <QIcon>
#include <QPixmap>

#include <algorithm>

namespace {

Comparison::Side sideOf(int column)
{
    return column == ComparisonModel::LeftColumn ? Comparison::Left : Comparison::Right;
}

/// Before the words, so that a column of them can be skimmed.
QString mark(const Comparison::Row &row)
{
    if (row.hasConflict())
        return QStringLiteral("! ");
    if (row.onlyLeft())
        return QStringLiteral("\u2190 ");
    if (row.onlyRight())
        return QStringLiteral("\u2192 ");
    if (!row.fields.isEmpty())
        return QStringLiteral("\u2260 ");
    return row.moved ? QStringLiteral("\u2195 ") : QStringLiteral("= ");
}

} // namespace

ComparisonModel::ComparisonModel(const Comparison &comparison, QObject *parent)
    : QAbstractTableModel(parent)
    , m_comparison(comparison)
{
    connect(&comparison, &Comparison::refreshed, this, &ComparisonModel::show);
    connect(&comparison, &Comparison::titlesChanged, this,
        [this] { Q_EMIT headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1); });
    show();
}

void ComparisonModel::setChangesOnly(bool on)
{
    m_changesOnly = on;
    show();
}

void ComparisonModel::show()
{
    beginResetModel();
    m_shown.clear();
    const auto &rows = m_comparison.rows();
    for (size_t i = 0; i < rows.size(); ++i) {
        if (!m_changesOnly || rows[i].differs())
            m_shown.push_back(i);
    }
    endResetModel();
}

int ComparisonModel::shownRow(size_t row) const
{
    const auto at = std::lower_bound(m_shown.begin(), m_shown.end(), row);
    return at != m_shown.end() && *at == row ? int(at - m_shown.begin()) : -1;
}

int ComparisonModel::nextChange(int row, int step) const
{
    for (int at = row + step; at >= 0 && at < rowCount(); at += step) {
        if (this->at(at).differs())
            return at;
    }
    return -1;
}

int ComparisonModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_shown.size());
}

int ComparisonModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QString ComparisonModel::text(const Comparison::Row &row, int column) const
{
    if (column == DifferenceColumn)
        return mark(row) + m_comparison.difference(row);
    if (row.ofSet)
        return m_comparison.name(row);
    const CVBATool *tool = m_comparison.tool(row, sideOf(column));
    return tool ? tool->Description : QString();
}

QVariant ComparisonModel::background(const Comparison::Row &row) const
{
    if (row.hasConflict())
        return Tint::of(Tint::Conflict);
    if (row.onlyLeft())
        return Tint::of(Tint::OnlyLeft);
    if (row.onlyRight())
        return Tint::of(Tint::OnlyRight);
    return row.differs() ? QVariant(Tint::of(Tint::Changed)) : QVariant();
}

QVariant ComparisonModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Comparison::Row &row = at(index.row());
    const bool isDifference = index.column() == DifferenceColumn;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return text(row, index.column());
    case Qt::AccessibleTextRole: {
        if (isDifference)
            return m_comparison.difference(row);
        const QString name = text(row, index.column());
        return name.isEmpty() ? QStringLiteral("not there") : name;
    }
    case Qt::DecorationRole:
        if (row.ofSet && !isDifference) {
            // As high as the others, which have the first row's height.
            QPixmap blank(CVBATool::pictureSide, CVBATool::pictureSide);
            blank.fill(Qt::transparent);
            return blank;
        }
        if (const CVBATool *tool =
                isDifference ? nullptr : m_comparison.tool(row, sideOf(index.column())))
            return QPixmap::fromImage(tool->Picture);
        return {};
    case Qt::BackgroundRole:
        return background(row);
    case Qt::FontRole: {
        QFont font;
        font.setBold(isDifference && row.differs());
        font.setItalic(row.ofSet);
        return font;
    }
    default:
        return {};
    }
}

QVariant ComparisonModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    if (section == DifferenceColumn)
        return QStringLiteral("Difference");
    return QStringLiteral("%1: %2").arg(sideOf(section) == Comparison::Left ? u"Left" : u"Right",
        m_comparison.set(sideOf(section)).title());
}
