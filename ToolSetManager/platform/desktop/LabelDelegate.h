#pragma once

#include <QFont>
#include <QHash>
#include <QPointer>
#include <QStyledItemDelegate>

class ListView;

/// Edits the labels of a list view in place and draws its ghosted rows. What was typed goes to the
/// list's owner, not to the model.
class LabelDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit LabelDelegate(ListView *owner);

    /// Null while no label is being edited.
    QWidget *editor() const;
    /// Accepts what has been typed so far, if a label is being edited.
    void finish();
    /// The owner is being destroyed and may take an editor with it; it is not notified any more.
    void forgetOwner() { m_owner = nullptr; }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
        const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(
        QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void destroyEditor(QWidget *editor, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /// The whole text of a label or location that is cut off.
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
        const QModelIndex &index) override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    /// Ends the edit when the focus goes elsewhere than from a menu back to the editor.
    void leftMenu(QWidget *old, QWidget *now);
    int widthOf(const QString &text, const QStyleOptionViewItem &option) const;

    ListView *m_owner;
    mutable QPointer<QWidget> m_editor;
    mutable QFont m_widthFont; ///< What the widths belong to.
    mutable QHash<QString, int> m_widths; ///< Of the list view's labels, in logical pixels.
};
