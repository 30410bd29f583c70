#pragma once

#include "model/BulkChange.h"

#include <QAbstractTableModel>
#include <QSet>

/// The preview of a change of several tools as a table: a row for each field that changes. All rows
/// of a tool are ticked together.
class ChangesModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { ToolColumn, FieldColumn, OldColumn, NewColumn, RemarkColumn, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    /// Tools that cannot be stored are shown, but cannot be ticked.
    void setPreview(const QList<BulkChange::Row> &preview, const QSet<int> &leftOut);
    QSet<int> leftOut() const { return m_leftOut; } ///< Positions that are not ticked.
    void setAllTicked(bool ticked);

    // --- QAbstractItemModel ---
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    void ticksChanged(); ///< By the user.

private:
    struct Line
    {
        qsizetype tool; ///< Of m_preview.
        qsizetype change; ///< Of that.
        bool operator==(const Line &other) const = default;
    };
    const BulkChange::Row &tool(const QModelIndex &index) const;
    QString text(const QModelIndex &index) const;
    QVariant picture(const QModelIndex &index) const;
    void ticked();

    QList<BulkChange::Row> m_preview;
    QList<Line> m_lines;
    QSet<int> m_leftOut;
};
