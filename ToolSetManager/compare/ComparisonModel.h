#pragma once

#include "compare/Comparison.h"

#include <QAbstractTableModel>

/// The rows of a comparison as a list: the tools of both sides and between them what differs, in
/// words; all rows or only those that differ. A view: it follows the comparison.
class ComparisonModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { LeftColumn, DifferenceColumn, RightColumn, ColumnCount };

    /// The comparison is borrowed.
    explicit ComparisonModel(const Comparison &comparison, QObject *parent = nullptr);

    bool changesOnly() const { return m_changesOnly; }
    void setChangesOnly(bool on);

    /// The index in Comparison::rows() of a row that is shown.
    size_t rowAt(int row) const { return m_shown[size_t(row)]; }
    const Comparison::Row &at(int row) const { return m_comparison.rows()[rowAt(row)]; }
    /// Where that one is shown; -1 for nowhere.
    int shownRow(size_t row) const;
    /// The next row that differs, beginning behind (or with -1 as \a step before) \a row; -1 for
    /// none.
    int nextChange(int row, int step) const;

    // --- QAbstractItemModel ---
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void show();
    QString text(const Comparison::Row &row, int column) const;
    QVariant background(const Comparison::Row &row) const;

    const Comparison &m_comparison;
    bool m_changesOnly = false;
    std::vector<size_t> m_shown;
};
