#include "platform/desktop/LabelDelegate.h"

#include "platform/desktop/Icons.h"
#include "platform/desktop/ListView.h"

#include <QLineEdit>
#include <QListView>

#include <limits>

LabelDelegate::LabelDelegate(ListView *owner)
    : QStyledItemDelegate(owner)
    , m_owner(owner)
{
}

QWidget *LabelDelegate::createEditor(
    QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &index) const
{
    auto *editor = new QLineEdit(parent);
    editor->setMaxLength(std::numeric_limits<int>::max()); // whose text it is knows its limit
    editor->setAccessibleName(index.model()->headerData(index.column(), Qt::Horizontal).toString());
    m_editor = editor;
    // destroyEditor() is not called when the model is reset.
    connect(editor, &QObject::destroyed, this, [this] {
        if (!m_editor && m_owner)
            Q_EMIT m_owner->labelEditEnded();
    });
    Q_EMIT m_owner->BeforeLabelEdit();
    return editor;
}

void LabelDelegate::finish()
{
    if (!m_editor || m_editor->isHidden()) // on its way out
        return;
    Q_EMIT commitData(m_editor);
    Q_EMIT closeEditor(m_editor);
}

void LabelDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    // Called again whenever the model says that the row has changed, which must not throw away
    // what was typed.
    auto *line = qobject_cast<QLineEdit *>(editor);
    if (!line->isModified())
        line->setText(index.data(Qt::DisplayRole).toString());
}

void LabelDelegate::setModelData(
    QWidget *editor, QAbstractItemModel *, const QModelIndex &index) const
{
    const QString text = qobject_cast<QLineEdit *>(editor)->text();
    if (m_owner && text != index.data(Qt::DisplayRole).toString())
        Q_EMIT m_owner->AfterLabelEdit(index.row(), text);
}

void LabelDelegate::destroyEditor(QWidget *editor, const QModelIndex &index) const
{
    m_editor = nullptr; // it lives on for a while, but is the view's no more
    QStyledItemDelegate::destroyEditor(editor, index);
    if (m_owner)
        Q_EMIT m_owner->labelEditEnded();
}

QSize LabelDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (option.widget != m_owner->listView())
        return QStyledItemDelegate::sizeHint(option, index);
    // Every label of the list view is measured, so that its columns are as wide as they need
    // to be; asking for each item's picture would take several times as long.
    constexpr int longest = 320;
    const int margin =
        option.widget->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, &option) + 1;
    const QSize icon = m_owner->listView()->iconSize();
    const int text = widthOf(index.data(Qt::DisplayRole).toString(), option);
    return {qMin(icon.width() + text + 6 * margin, longest),
        qMax(icon.height(), option.fontMetrics.height()) + 2};
}

int LabelDelegate::widthOf(const QString &text, const QStyleOptionViewItem &option) const
{
    // The view asks for every label again whenever the selection changes.
    constexpr qsizetype most = 500000;
    if (m_widthFont != option.font || m_widths.size() >= most) {
        m_widths.clear();
        m_widthFont = option.font;
    }
    int &width = m_widths[text];
    if (width == 0)
        width = option.fontMetrics.horizontalAdvance(text);
    return width;
}

void LabelDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    // Pictures differ in size; the labels stand in line all the same.
    option->decorationSize = option->widget
        ? qobject_cast<const QAbstractItemView *>(option->widget)->iconSize()
        : option->decorationSize;
    if (index.data(ListView::GhostedRole).toBool()) {
        for (const QPalette::ColorRole role : {QPalette::Text, QPalette::HighlightedText}) {
            QColor faint = option->palette.color(role);
            faint.setAlphaF(0.45F);
            option->palette.setColor(role, faint);
        }
        option->icon = Icons::dimming(option->icon).pixmap(option->decorationSize, QIcon::Disabled);
    }
}
