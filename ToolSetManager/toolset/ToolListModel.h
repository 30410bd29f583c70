#pragma once

#include "model/CVBATool.h"

#include <QAbstractTableModel>

#include <vector>

class CVBATools;

/// The tools of one set as a list: name, position and location, sorted in whatever way the user
/// looks at them. All edits of a set go through this class, which keeps the set, the positions and
/// the pictures in step; it needs no window.
///
/// Rows count from 0 in the order shown, positions from 1. The positions, not the rows, are the
/// order in which tools are written. They have no gaps.
class ToolListModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { NameColumn, PositionColumn, LocationColumn, ColumnCount };

    explicit ToolListModel(QObject *parent = nullptr);

    /// Shows another set, in the set's own order; the present sort stays on. The set is borrowed;
    /// null for none.
    void setTools(CVBATools *tools);

    // --- Look-up ---
    const ToolPtr &toolAt(int row) const { return m_rows[static_cast<size_t>(row)].tool; }
    int positionAt(int row) const { return m_rows[static_cast<size_t>(row)].position; }
    int rowAt(int position) const; ///< -1 where there is no such position.
    /// The keys of all tools, by position: what the file is written by.
    QStringList keysInPositionOrder() const;
    QList<ToolPtr> toolsInPositionOrder() const;
    bool isGhosted(int row) const { return m_rows[static_cast<size_t>(row)].ghosted; }
    QList<int> ghostedRows() const;

    // --- Sort ---
    int sortKey() const { return m_sortKey; } ///< A column; -1 before the first sort.
    Qt::SortOrder sortOrder() const { return m_sortOrder; }
    /// Names and locations sort as text without regard to letter case, positions as numbers; equal
    /// texts stand by position.
    void sort(int column, Qt::SortOrder order) override;

    // --- Edits ---
    /// Renames the tool in that row; the set may make the name unique. Returns the name it has
    /// then: the former one when no name is free. The row keeps its place.
    QString renameTool(int row, const QString &newName);
    /// The tool in that row was changed in another way than by its name.
    void toolChanged(int row);
    /// Adds the tools at the end of the set, which names them; a tool that it refuses is left out.
    /// Returns their rows: the last ones, or where the present sort puts a single tool.
    QList<int> appendTools(const QList<ToolPtr> &tools);
    /// Takes the tools of these rows out of the set and closes the gaps in the positions.
    void removeTools(const QList<int> &rows);
    /// Takes the tools of \a rows out of the order and puts them in, in their order, at the
    /// position of the tool in \a targetRow: below it when the first of them comes from above it,
    /// else above it. Where the target is one of them they gather at its place. The list is then
    /// sorted by position. Returns the rows of the tools then.
    QList<int> MoveTools(const QList<int> &rows, int targetRow);
    /// True when MoveTools would put the tools of \a rows below the target instead of above it.
    bool movesBelow(const QList<int> &rows, int targetRow) const;

    // --- Marks ---
    /// Ghosted rows are drawn faint: their tools are cut or being dragged.
    void setGhosted(const QList<int> &rows, bool ghosted);
    void clearGhosted();

    void RefreshIcons(); ///< Redraws the pictures of all rows.

Q_SIGNALS:
    /// A tool was not renamed or not added, because neither \a name is free nor any number for it.
    void noFreeName(const QString &name);

public:
    // --- QAbstractItemModel ---
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    struct Row
    {
        ToolPtr tool;
        int position = 0;
        bool ghosted = false;
    };

    void sortRows(std::vector<Row> &rows) const;
    /// Runs a change of the rows' order so that selection and focus stay with their tools.
    template <class Change>
    void rearrange(Change change);
    void positionsChanged();
    void ghostsChanged();
    void dataChangedInRow(int row);

    CVBATools *m_tools = nullptr;
    std::vector<Row> m_rows; ///< In the order shown.
    int m_sortKey = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};
