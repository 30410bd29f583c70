#pragma once

#include "compare/Comparison.h"

#include <QAbstractTableModel>

/// The fields of one row of a comparison, side by side; with those of the base where there is one.
class FieldsModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { FieldColumn, LeftColumn, RightColumn, BaseColumn };

    /// The comparison is borrowed. The code page is that of rich texts that do not tell theirs.
    FieldsModel(const Comparison &comparison, int codePage, QObject *parent = nullptr);

    /// By its index in Comparison::rows(); -1 for none.
    void setRow(int row);

    int fieldAt(int row) const { return m_fields[row]; } ///< As Row::fields counts them.
    bool differs(int row) const;

    // --- QAbstractItemModel ---
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const Comparison::Row &row() const { return m_comparison.rows()[size_t(m_row)]; }
    const CVBATool *tool(int column) const;
    QString value(int field, int column) const;
    QString caption(int field) const;
    QString mark(int row) const;
    QString spokenMark(int row) const;
    bool isConflict(int row) const;

    const Comparison &m_comparison;
    const int m_codePage;
    int m_row = -1;
    QList<int> m_fields;
};
