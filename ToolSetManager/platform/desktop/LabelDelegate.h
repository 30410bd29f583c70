#pragma once

#include <QFont>
#include <QHash>
#include <QPointer>
#include <QStyledItemDelegate>

/// Edits the labels of a view in place, draws its ghosted rows (see `GhostedRole`), what is marked
/// in its texts (`MarksRole`) and badges (`BadgeRole`). What was typed is reported and does not go
/// to the model.
class LabelDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit LabelDelegate(QObject *parent);

    /// Null while no label is being edited.
    QWidget *editor() const;
    /// Accepts what has been typed so far, if a label is being edited.
    void finish();
    /// Texts of that column that are too long for it lose their start instead of their end.
    void setColumnKeepingEnds(int column) { m_columnKeepingEnds = column; }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
        const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(
        QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void destroyEditor(QWidget *editor, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
        const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /// The whole text of a label or location that is cut off, and the item's own tool tip.
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
        const QModelIndex &index) override;

Q_SIGNALS:
    void editStarted() const;
    void edited(int row, const QString &text) const; ///< The text was changed and accepted.
    void editEnded() const; ///< In whatever way.

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    /// Ends the edit when the focus goes elsewhere than from a menu back to the editor.
    void leftMenu(QWidget *old, QWidget *now);
    int widthOf(const QString &text, const QStyleOptionViewItem &option) const;

    int m_columnKeepingEnds = -1;
    mutable QPointer<QWidget> m_editor;
    mutable QFont m_widthFont; ///< What the widths belong to.
    mutable QHash<QString, int> m_widths; ///< Of the list view's labels, in logical pixels.
};
