#pragma once

#include "model/ToolCheck.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <array>

/// What a check found as a table, the most severe first until it is sorted otherwise.
class FindingsModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column {
        SeverityColumn,
        ToolColumn,
        FieldColumn,
        FindingColumn,
        AdviceColumn,
        ColumnCount
    };

    explicit FindingsModel(QObject *parent = nullptr);

    /// Shows other findings, which are given by position. Rows that are the same stay what they
    /// are; one that took the place of another is selected if that was.
    void setFindings(const QList<ToolCheck::Row> &findings);
    const QList<ToolCheck::Row> &findings() const { return m_findings; } ///< By position.
    const ToolCheck::Row &findingAt(int row) const { return m_rows[row]; }

    /// Differs in shape, not in colour alone; null for what needs no mark.
    QIcon icon(ToolFinding::Severity severity) const;
    void refreshIcons(); ///< The palette has changed.
    /// A field's name as a heading has it.
    static QString fieldCaption(const char *field);

    // --- QAbstractItemModel ---
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    QList<ToolCheck::Row> sorted() const;
    QString text(const ToolCheck::Row &row, int column) const;

    QList<ToolCheck::Row> m_findings;
    QList<ToolCheck::Row> m_rows; ///< The same in the order shown.
    int m_sortColumn = SeverityColumn;
    Qt::SortOrder m_sortOrder = Qt::DescendingOrder;
    std::array<QIcon, 4> m_icons; ///< By severity.
};
