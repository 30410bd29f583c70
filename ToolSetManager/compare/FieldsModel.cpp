#include "compare/FieldsModel.h"

#include "compare/ComparedSet.h"
#include "compare/DifferenceTexts.h"
#include "compare/Tint.h"
#include "model/ToolFields.h"

#include <QFont>
#include <QPixmap>

namespace {

bool isFlags(int field)
{
    return ToolFields::nameOf(field) == QStringLiteral("flags"); // not interpreted, not compared
}

bool isPicture(int field)
{
    return ToolFields::nameOf(field) == QStringLiteral("picture");
}

} // namespace

FieldsModel::FieldsModel(const Comparison &comparison, int codePage, QObject *parent)
    : QAbstractTableModel(parent)
    , m_comparison(comparison)
    , m_codePage(codePage)
{
}

void FieldsModel::setRow(int row)
{
    beginResetModel();
    m_row = row;
    m_fields.clear();
    if (m_row >= 0) {
        const bool ofSet = this->row().ofSet;
        const int count = ofSet ? int(DifferenceTexts::setFieldCount) : ToolFields::count;
        for (int field = 0; field < count; ++field) {
            if (ofSet || !isFlags(field))
                m_fields.append(field);
        }
    }
    endResetModel();
}

bool FieldsModel::differs(int row) const
{
    const QBitArray &fields = this->row().fields;
    return !fields.isEmpty() && fields.at(m_fields[row]);
}

QString FieldsModel::caption(int field) const
{
    return row().ofSet ? DifferenceTexts::setFieldCaption(field)
                       : DifferenceTexts::fieldCaption(field);
}

QString FieldsModel::mark(int row) const
{
    if (this->row().onlyLeft() || this->row().onlyRight())
        return {}; // nothing stands beside it
    if (isConflict(row))
        return QStringLiteral("! ");
    return differs(row) ? QStringLiteral("\u2260 ") : QStringLiteral("= ");
}

QString FieldsModel::spokenMark(int row) const
{
    if (isConflict(row))
        return QStringLiteral(", conflict");
    return differs(row) ? QStringLiteral(", differs") : QString();
}

bool FieldsModel::isConflict(int row) const
{
    const QBitArray &conflicts = this->row().conflicts;
    return !conflicts.isEmpty() && conflicts.at(m_fields[row]);
}

int FieldsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_fields.size());
}

int FieldsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_comparison.base() ? BaseColumn + 1 : int(BaseColumn);
}

const CVBATool *FieldsModel::tool(int column) const
{
    if (column == BaseColumn)
        return m_comparison.baseTool(row());
    return m_comparison.tool(row(), column == LeftColumn ? Comparison::Left : Comparison::Right);
}

QString FieldsModel::value(int field, int column) const
{
    if (row().ofSet) {
        const ComparedSet *set = column == BaseColumn
            ? m_comparison.base()
            : &m_comparison.set(column == LeftColumn ? Comparison::Left : Comparison::Right);
        return DifferenceTexts::setValue(set->state().properties, field, m_codePage);
    }
    const CVBATool *shown = tool(column);
    return shown ? DifferenceTexts::value(*shown, field, m_codePage) : QString();
}

QVariant FieldsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const int field = m_fields[index.row()];
    const bool isCaption = index.column() == FieldColumn;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return isCaption ? QString(mark(index.row()) + caption(field))
                         : value(field, index.column());
    case Qt::AccessibleTextRole:
        return isCaption ? QString(caption(field) + spokenMark(index.row()))
                         : value(field, index.column());
    case Qt::DecorationRole:
        if (!isCaption && !row().ofSet && isPicture(field) && tool(index.column())) {
            // Twice as large: single pixels can be seen.
            const QImage &picture = tool(index.column())->Picture;
            return QPixmap::fromImage(picture.scaled(picture.size() * 2));
        }
        return {};
    case Qt::BackgroundRole:
        if (!differs(index.row()))
            return {};
        return Tint::of(isConflict(index.row()) ? Tint::Conflict : Tint::Changed);
    case Qt::FontRole: {
        QFont font;
        font.setBold(isCaption && differs(index.row()));
        return font;
    }
    default:
        return {};
    }
}

QVariant FieldsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case FieldColumn:
        return QStringLiteral("Field");
    case LeftColumn:
        return QStringLiteral("Left");
    case RightColumn:
        return QStringLiteral("Right");
    default:
        return QStringLiteral("Base");
    }
}
