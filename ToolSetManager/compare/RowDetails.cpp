#include "compare/RowDetails.h"

#include "compare/ComparedSet.h"
#include "compare/Comparison.h"
#include "compare/FieldsModel.h"
#include "compare/HelpComparison.h"
#include "compare/RowTable.h"

#include <QTreeView>

RowDetails::RowDetails(const Comparison &comparison, int codePage, QWidget *parent)
    : QSplitter(Qt::Vertical, parent)
    , m_comparison(comparison)
    , m_fields(new FieldsModel(comparison, codePage, this))
    , tvFields(
          RowTable::make(QStringLiteral("tvFields"), QStringLiteral("Fields of the tool"), this))
    , m_help(new HelpComparison(codePage, this))
{
    setChildrenCollapsible(false);
    const int letter = fontMetrics().averageCharWidth();
    tvFields->setModel(m_fields);
    tvFields->setIconSize(QSize(CVBATool::pictureSide, CVBATool::pictureSide) * 2);
    tvFields->setColumnWidth(FieldsModel::FieldColumn, letter * 30);
    tvFields->setColumnWidth(FieldsModel::LeftColumn, letter * 47);
    tvFields->setColumnWidth(FieldsModel::RightColumn, letter * 47);
    addWidget(tvFields);
    addWidget(m_help);
    setStretchFactor(0, 2);
    setStretchFactor(1, 1);
    setSizes({200, 100});
}

void RowDetails::setRow(int row)
{
    m_fields->setRow(row);
    QString what = QStringLiteral("Help text");
    QString left;
    QString right;
    if (row >= 0) {
        const Comparison::Row &shown = m_comparison.rows()[size_t(row)];
        const CVBATool *leftTool = m_comparison.tool(shown, Comparison::Left);
        const CVBATool *rightTool = m_comparison.tool(shown, Comparison::Right);
        left = leftTool ? leftTool->HelpString : QString();
        right = rightTool ? rightTool->HelpString : QString();
        if (shown.ofSet) {
            what = QStringLiteral("Long description");
            left = m_comparison.set(Comparison::Left).state().properties.LongDescription;
            right = m_comparison.set(Comparison::Right).state().properties.LongDescription;
        }
    }
    m_help->setTexts(what, left, right);
    int first = 0;
    while (first < m_fields->rowCount() && !m_fields->differs(first))
        ++first;
    tvFields->setCurrentIndex(
        m_fields->index(first < m_fields->rowCount() ? first : 0, FieldsModel::FieldColumn));
}

bool RowDetails::fieldsHaveFocus() const
{
    return tvFields->hasFocus();
}

void RowDetails::focusFields()
{
    tvFields->setFocus();
}

QList<int> RowDetails::selectedFields() const
{
    QList<int> fields;
    const QModelIndexList selected = tvFields->selectionModel()->selectedRows();
    for (const QModelIndex &index : selected) {
        if (m_fields->differs(index.row()))
            fields.append(m_fields->fieldAt(index.row()));
    }
    return fields;
}
