#pragma once

#include "model/CVBATool.h"
#include "model/ToolFinder.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <functional>
#include <vector>

class ToolSetDocument;

/// The tools of a document as a list: name, position and location, sorted and narrowed by a filter
/// in whatever way the user looks at them. A view: it follows the document and changes nothing in
/// it.
///
/// Rows count from 0 in the order shown, positions from 1 in the order of the document. Hidden
/// tools have no row. A tool that an edit makes no longer match stays shown until there is another
/// filter, so that nothing vanishes under the user's hands.
class ToolListModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { NameColumn, PositionColumn, LocationColumn, ColumnCount };

    /// The document is borrowed. \a codePage is that of help texts that do not tell theirs.
    ToolListModel(ToolSetDocument &document, int codePage, QObject *parent = nullptr);

    // --- Look-up ---
    const ToolPtr &toolAt(int row) const { return shownAt(row).tool; }
    int positionAt(int row) const { return shownAt(row).position; }
    QList<int> positionsOf(const QList<int> &rows) const; ///< Ascending.
    int rowOf(int position) const; ///< -1 when the tool is not shown.
    QList<int> shownPositions() const; ///< Of all rows, ascending.
    QList<int> rowsOf(const QList<int> &positions) const; ///< Ascending; of those that are shown.
    /// The shown tool next behind (or before) a position; 0 for none.
    int nextShown(int position, bool forward) const;
    bool isGhosted(int row) const { return shownAt(row).ghosted; }
    QList<int> ghostedPositions() const; ///< Hidden tools included; ascending.

    // --- Filter ---
    const ToolFinder &finder() const { return m_finder; }
    void prepareFilter() { m_finder.prepare(); } ///< Makes the first one fast.
    void endFilter(); ///< Shows all tools and releases memory.
    /// Shows the tools that match, those that only their help text can decide later: see
    /// showNewMatches().
    void setFilter(const ToolFilter &filter);
    /// Shows what finder() has found since, when it said so.
    void showNewMatches();
    /// Gives the filter up when one of these tools is hidden.
    void reveal(const QList<int> &positions);

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

    /// What rows have at the end of their names, by position: an icon, null for none, and what it
    /// means.
    struct Badges
    {
        std::function<QIcon(int position)> icon;
        std::function<QString(int position)> text;
    };
    void setBadges(const Badges &badges); ///< No row has one without both.
    void badgesChanged();

    void RefreshIcons(); ///< Redraws the pictures of all rows.

    // --- QAbstractItemModel ---
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    /// Around a reset by which other tools are shown, and in which positions are what they were:
    /// for keeping the selection.
    void shownAboutToChange();
    void shownChanged();
    void filterGivenUp(); ///< By reveal().

private:
    struct Row
    {
        ToolPtr tool;
        int position = 0;
        bool ghosted = false;
        bool shown = false;
    };

    // --- Rows ---
    const Row &shownAt(int row) const { return m_rows[m_shown[static_cast<size_t>(row)]]; }
    /// The row of an element of m_rows that is shown.
    int rowOfIndex(size_t index) const;
    void collectShown();
    /// Shows elements of m_rows that were hidden; ascending.
    void show(const std::vector<size_t> &indexes);

    // --- The document ---
    void showAll();
    void removeRowsAt(const QList<int> &positions);
    void insertRowsAt(const QList<int> &positions);
    void refreshRowAt(int position);
    void reorder(const QList<int> &from, const QList<int> &to);

    bool isInPositionOrder() const;
    /// Gives each row the position that \a newPosition has for its present one.
    void renumber(const std::vector<int> &newPosition);
    void sortRows(std::vector<Row> &rows) const;
    /// Runs a change of the rows' order so that selection and focus stay with their tools.
    template <class Change>
    void rearrange(Change change);
    void positionsChanged();
    void changed(int firstColumn, int lastColumn, int role); ///< In all rows.
    QVariant marks(const QModelIndex &index) const;
    QVariant badge(const QModelIndex &index, int role) const;

    const ToolSetDocument &m_document;
    ToolFinder m_finder; ///< Hears of the document's changes first.
    std::vector<Row> m_rows; ///< Of all tools, in the order shown.
    std::vector<size_t> m_shown; ///< Those that are: indexes into m_rows, ascending.
    int m_sortKey = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    Badges m_badges;
};
