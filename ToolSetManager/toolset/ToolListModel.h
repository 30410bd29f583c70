#pragma once

#include "model/CVBATool.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <functional>
#include <vector>

class ToolSetDocument;

/// The tools of a document as a list: name, position and location, sorted in whatever way the user
/// looks at them. A view: it follows the document and changes nothing in it.
///
/// Rows count from 0 in the order shown, positions from 1 in the order of the document.
class ToolListModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { NameColumn, PositionColumn, LocationColumn, ColumnCount };

    /// The document is borrowed.
    explicit ToolListModel(ToolSetDocument &document, QObject *parent = nullptr);

    // --- Look-up ---
    const ToolPtr &toolAt(int row) const { return m_rows[static_cast<size_t>(row)].tool; }
    int positionAt(int row) const { return m_rows[static_cast<size_t>(row)].position; }
    QList<int> positionsOf(const QList<int> &rows) const; ///< Ascending.
    int rowOf(int position) const; ///< -1 when the tool is not shown.
    QList<int> shownPositions() const; ///< Of all rows, ascending.
    QList<int> rowsOf(const QList<int> &positions) const; ///< Ascending; of those that are shown.
    bool isGhosted(int row) const { return m_rows[static_cast<size_t>(row)].ghosted; }
    QList<int> ghostedRows() const;

    // --- Sort ---
    int sortKey() const { return m_sortKey; } ///< A column; -1 before the first sort.
    Qt::SortOrder sortOrder() const { return m_sortOrder; }
    /// Names and locations sort as text without regard to letter case, positions as numbers; equal
    /// texts stand by position.
    void sort(int column, Qt::SortOrder order) override;

    // --- Marks ---
    /// Ghosted rows are drawn faint: their tools are cut or being dragged.
    void setGhosted(const QList<int> &rows, bool ghosted);
    void clearGhosted();

    /// What rows are marked with, by position: an icon, null for none, and what it stands for.
    struct Marks
    {
        std::function<QIcon(int position)> icon;
        std::function<QString(int position)> text;
    };
    void setMarks(const Marks &marks); ///< No row is marked without both.
    void marksChanged();

    void RefreshIcons(); ///< Redraws the pictures of all rows.

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

    // --- The document ---
    void showAll();
    void removeRowsAt(const QList<int> &positions);
    void insertRowsAt(const QList<int> &positions);
    void reorder(const QList<int> &from, const QList<int> &to);

    bool isInPositionOrder() const;
    /// Gives each row the position that \a newPosition has for its present one.
    void renumber(const std::vector<int> &newPosition);
    void sortRows(std::vector<Row> &rows) const;
    /// Runs a change of the rows' order so that selection and focus stay with their tools.
    template <class Change>
    void rearrange(Change change);
    void positionsChanged();
    void ghostsChanged();
    QVariant mark(const QModelIndex &index, int role) const;

    const ToolSetDocument &m_document;
    std::vector<Row> m_rows; ///< In the order shown.
    int m_sortKey = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    Marks m_marks;
};
