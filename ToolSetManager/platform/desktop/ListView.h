#pragma once

#include "platform/desktop/DragHost.h"
#include "platform/desktop/EmptyHint.h"

#include <QPersistentModelIndex>
#include <QWidget>

class LabelDelegate;
class QAbstractItemModel;
class QAbstractItemView;
class QDragMoveEvent;
class QDropEvent;
class QItemSelectionModel;
class QListView;
class QMimeData;
class QPainter;
class QStackedWidget;
class QTreeView;

/// A list view: one model, shown either as a list of labels in columns or as a table with headers.
/// Both views share one selection. Labels (column 0) are edited in place; the model's setData() is
/// not used for that, the owner decides what becomes of the text. Rows for which `GhostedRole` is
/// true are drawn faint.
///
/// Drags: the list reports when the user starts one (OLEStartDrag) and what a drag does above it;
/// the owner fills the data, chooses the effect and carries out the drop. Near the edges the list
/// scrolls. Only the left button drags; pressing another one cancels the drag.
///
/// "Selected item" is the item that has the focus within the selection; rows are counted from 0 in
/// the order shown.
class ListView : public QWidget, private DragHost
{
    Q_OBJECT
public:
    /// The values of `View`.
    enum ViewConstants { lvwList = 2, lvwReport = 3 };

    /// \a name is the accessible name of both views; \a pictureSize in logical pixels.
    ListView(const QString &name, const QSize &pictureSize, QWidget *parent = nullptr);
    ~ListView() override;

    /// The model is borrowed and must outlive the view.
    void setModel(QAbstractItemModel *model);

    int View() const;
    /// Other values than those of `ViewConstants` are ignored.
    void setView(int view);

    /// -1 when nothing is selected.
    int SelectedItem() const;
    QList<int> selectedRows() const; ///< Ascending.
    void UnselectAll();
    void selectAll();
    void invertSelection(); ///< Selects the rows that are not, and only these.
    /// Selects that row alone and gives it the focus.
    void setSelectedItem(int row);
    /// Selects exactly these rows; the first one gets the focus and is scrolled to.
    void selectRows(const QList<int> &rows);

    int focusedItem() const; ///< -1 for none.
    /// Gives that row the focus and changes no selection; nothing for row -1.
    void setFocusedItem(int row);
    /// Unselects the one row and selects the other one, which gets the focus and is scrolled to.
    void moveSelection(int fromRow, int toRow);
    void scrollToTop(int row); ///< So that it is the first one to be seen.
    /// Scrolls to the selected item, if there is one.
    void EnsureVisible();

    /// Starts the editing of the selected item's label, if there is one.
    void StartLabelEdit();
    /// Accepts what has been typed into a label so far, if one is being edited.
    void finishLabelEdit();
    /// The edit box of the label that is being edited; null for none.
    QWidget *labelEditor() const;

    /// Texts of that column that are too long for it lose their start instead of their end.
    void setColumnKeepingEnds(int column);

    /// Of the table, in logical pixels; the last column takes the rest.
    void setColumnWidths(const QList<int> &widths);
    QList<int> columnWidths() const;

    /// What is shown while there are no items.
    void setEmptyHint(const EmptyHint &hint);

    /// Shows the sort arrow; none for column -1.
    void setSortIndicator(int column, Qt::SortOrder order);

    /// The row that a drop would go to, marked with a line above or (\a below) below it; none for
    /// row -1.
    void setDropHighlight(int row, bool below = false);
    int DropHighlight() const { return m_dropRow.isValid() ? m_dropRow.row() : -1; }

    /// Runs a drag of the selected items until it is dropped or cancelled; copying and moving are
    /// offered. The list takes the data.
    void OLEDrag(QMimeData *carried, const QPixmap &picture);

    /// The row at a point of the current view's viewport; -1 for none.
    int HitTest(const QPoint &position) const;
    /// Where a menu for the selected item opens when the keyboard asks for it; global.
    QPoint menuPosition() const;

    QAbstractItemView *currentView() const;
    /// Of the two views only the current one has the model.
    QTreeView *reportView() const { return m_report; }
    QListView *listView() const { return m_list; }

Q_SIGNALS:
    void ColumnClick(int column);
    void ColumnResize(); ///< The user has made a column wider or narrower.
    void BeforeLabelEdit();
    void AfterLabelEdit(int row, const QString &NewString); ///< The text was changed and accepted.
    void labelEditEnded(); ///< In whatever way.
    void selectionChanged(); ///< Not what is in it, nor when the model is reset.
    void Click();
    void DblClick();
    void MouseDown(Qt::MouseButton button, const QPoint &position); ///< In the viewport.
    void MouseUp();
    void KeyDown(int key);
    void KeyUp(int key); ///< Only for a key that was pressed in the list too.
    void menuKeyPressed(); ///< The menu key, or Shift+F10.
    void OLEStartDrag(); ///< The mouse was moved with the left button held on an item.
    void OLEGiveFeedback(Qt::DropAction effect); ///< What a drop of this list's drag would do now.
    void OLEDragOver(QDragMoveEvent *event); ///< Ignored unless the owner accepts it.
    void OLEDragLeave();
    void OLEDragDrop(QDropEvent *event); ///< Likewise.

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // --- For the two views ---
    bool isDragSpent() const override { return m_dragSpent; }
    void startDrag() override;
    void dragOver(QDragMoveEvent *event) override { Q_EMIT OLEDragOver(event); }
    void dragLeave() override { Q_EMIT OLEDragLeave(); }
    void dragDrop(QDropEvent *event) override { Q_EMIT OLEDragDrop(event); }
    void paintMarks(QPainter &painter) const override;
    void paintEmptyHint(QPainter &painter) const;
    void paintDropHighlight(QPainter &painter) const;

    void setUpView(QAbstractItemView *view, const QString &name, const QSize &pictureSize);
    /// Gives the model to a view, or takes it away: a hidden view must not be found by screen
    /// readers, nor work for nothing.
    void attach(QAbstractItemView *view);
    void detach(QAbstractItemView *view);
    bool viewportEvent(QEvent *event);
    void describeEmptiness();

    QStackedWidget *m_stack;
    QTreeView *m_report;
    QListView *m_list;
    QList<LabelDelegate *> m_delegates; ///< One for each view: each commits its own editors only.
    QAbstractItemModel *m_model = nullptr;
    QItemSelectionModel *m_selection = nullptr; ///< Of both views.
    QByteArray m_headerState; ///< Column widths, while the table has no model.
    bool m_settingWidths = false; ///< The columns change, but not by the user.
    EmptyHint m_emptyHint;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    int m_pressedKey = 0;
    QPersistentModelIndex m_dropRow;
    bool m_dropBelow = false;
    bool m_dragSpent = false;
};
