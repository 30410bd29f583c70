#include "platform/desktop/LabelDelegate.h"

#include "platform/desktop/Icons.h"
#include "platform/desktop/ItemRoles.h"

#include <QApplication>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QTextLayout>
#include <QToolTip>

#include <limits>

namespace {

QColor mixed(const QColor &colour, const QColor &ground, float share)
{
    const auto mix = [share](float of, float with) { return of * share + with * (1 - share); };
    return QColor::fromRgbF(mix(colour.redF(), ground.redF()),
        mix(colour.greenF(), ground.greenF()), mix(colour.blueF(), ground.blueF()));
}

constexpr int badgeSide = 16;
constexpr int badgeSpace = badgeSide + 4; ///< At the end of an item.

/// The width that the text of an item has, as the style draws it.
QRect textRect(const QStyleOptionViewItem &item)
{
    const QStyle *style = item.widget->style();
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &item, item.widget) + 1;
    return style->subElementRect(QStyle::SE_ItemViewItemText, &item, item.widget)
        .adjusted(margin, 0, -margin, 0);
}

/// The marks within what is left of a text that was cut off at one end; the dots are marked for
/// what is not seen.
QList<QTextLayout::FormatRange> formatsOf(
    const TextMarks &marks, qsizetype length, qsizetype left, Qt::TextElideMode mode)
{
    QTextCharFormat marked; // like a pen's mark on paper, on any background
    marked.setBackground(QColor(255, 221, 87));
    marked.setForeground(Qt::black);
    const bool cut = left < length;
    const auto kept = static_cast<int>(left) - 1; // beside the dots
    QList<QTextLayout::FormatRange> formats;
    for (const auto &[start, count] : marks) {
        int from = start;
        int to = start + count;
        if (cut && mode == Qt::ElideLeft) {
            const auto gone = static_cast<int>(length) - kept - 1;
            from = qMax(0, from - gone);
            to = qMax(1, to - gone);
        } else if (cut) {
            from = qMin(from, kept);
            to = qMin(to, kept + 1);
        }
        formats.append({from, to - from, marked});
    }
    return formats;
}

/// Draws an item whose text has marks, into the room for the text. The style draws everything but
/// the text, in its place.
void paintMarked(
    QPainter *painter, QStyleOptionViewItem item, const TextMarks &marks, const QRect &room)
{
    const bool selected = item.state.testFlag(QStyle::State_Selected);
    const auto group =
        item.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    const QColor colour =
        item.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    item.palette.setColor(QPalette::Text, Qt::transparent);
    item.palette.setColor(QPalette::HighlightedText, Qt::transparent);
    item.widget->style()->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

    const QString text = item.fontMetrics.elidedText(item.text, item.textElideMode, room.width());
    QTextLayout layout(text, item.font, painter->device());
    QTextOption how;
    how.setWrapMode(QTextOption::NoWrap);
    how.setTextDirection(item.direction);
    how.setAlignment(QStyle::visualAlignment(item.direction, item.displayAlignment));
    layout.setTextOption(how);
    layout.setFormats(formatsOf(marks, item.text.size(), text.size(), item.textElideMode));
    layout.beginLayout();
    layout.createLine().setLineWidth(room.width());
    layout.endLayout();
    const int height = qRound(layout.boundingRect().height());
    painter->save();
    painter->setClipRect(room);
    painter->setPen(colour);
    layout.draw(painter, QPointF(room.left(), room.top() + (room.height() - height) / 2));
    painter->restore();
}

} // namespace

LabelDelegate::LabelDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
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
        if (!m_editor)
            Q_EMIT editEnded();
    });
    Q_EMIT editStarted();
    return editor;
}

bool LabelDelegate::eventFilter(QObject *watched, QEvent *event)
{
    // A menu that the keyboard opens must not end the edit, nor unselect what its commands are
    // about.
    if (event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason == Qt::MenuBarFocusReason || reason == Qt::PopupFocusReason) {
            connect(qApp, &QApplication::focusChanged, this, &LabelDelegate::leftMenu,
                Qt::UniqueConnection);
            return true;
        }
    } else if (event->type() == QEvent::FocusIn) {
        disconnect(qApp, &QApplication::focusChanged, this, &LabelDelegate::leftMenu);
    }
    return QStyledItemDelegate::eventFilter(watched, event);
}

void LabelDelegate::leftMenu(QWidget * /*old*/, QWidget *now)
{
    if (!now || qobject_cast<QMenuBar *>(now) || qobject_cast<QMenu *>(now))
        return;
    disconnect(qApp, &QApplication::focusChanged, this, &LabelDelegate::leftMenu);
    if (now != m_editor) // not back to it, as after a click elsewhere
        finish();
}

QWidget *LabelDelegate::editor() const
{
    return m_editor && !m_editor->isHidden() ? m_editor : nullptr; // hidden: about to be deleted
}

void LabelDelegate::finish()
{
    if (!editor())
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
    if (text != index.data(Qt::DisplayRole).toString())
        Q_EMIT edited(index.row(), text);
}

void LabelDelegate::destroyEditor(QWidget *editor, const QModelIndex &index) const
{
    m_editor = nullptr; // it lives on for a while, but is the view's no more
    QStyledItemDelegate::destroyEditor(editor, index);
    Q_EMIT editEnded();
}

void LabelDelegate::paint(
    QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const auto marks = index.data(MarksRole).value<TextMarks>();
    const QIcon badge = index.data(BadgeRole).value<QIcon>();
    if ((marks.isEmpty() && badge.isNull()) || !option.widget) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    QRect room = textRect(item);
    if (!badge.isNull()) {
        const bool mirrored = item.direction == Qt::RightToLeft;
        room.adjust(mirrored ? badgeSpace : 0, 0, mirrored ? 0 : -badgeSpace, 0);
    }
    if (marks.isEmpty()) {
        item.text = item.fontMetrics.elidedText(item.text, item.textElideMode, room.width());
        item.widget->style()->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
    } else {
        paintMarked(painter, item, marks, room);
    }
    if (!badge.isNull()) {
        const QRect place(item.rect.right() - badgeSpace + 1,
            item.rect.center().y() - (badgeSide - 1) / 2, badgeSide, badgeSide);
        badge.paint(painter, QStyle::visualRect(item.direction, item.rect, place));
    }
}

QSize LabelDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const auto *list = qobject_cast<const QListView *>(option.widget);
    if (!list)
        return QStyledItemDelegate::sizeHint(option, index);
    // Every label of the list view is measured, so that its columns are as wide as they need
    // to be; asking for each item's picture would take several times as long.
    constexpr int longest = 320;
    const int margin = list->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, &option) + 1;
    const QSize icon = list->iconSize();
    const int text = widthOf(index.data(Qt::DisplayRole).toString(), option);
    const int badge = index.data(BadgeRole).isNull() ? 0 : badgeSpace;
    return {qMin(icon.width() + text + 6 * margin, longest) + badge,
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

bool LabelDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view,
    const QStyleOptionViewItem &option, const QModelIndex &index)
{
    if (!index.isValid() || event->type() != QEvent::ToolTip)
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.widget = view;
    const int badge = index.data(BadgeRole).isNull() ? 0 : badgeSpace;
    const bool cut = item.fontMetrics.horizontalAdvance(item.text) > textRect(item).width() - badge;
    // A name may look like HTML, and a path must not be broken behind its drive.
    QString tip;
    if (cut)
        tip = QStringLiteral("<p style='white-space:pre'>%1</p>").arg(item.text.toHtmlEscaped());
    const QString own = index.data(Qt::ToolTipRole).toString();
    if (!own.isEmpty()) {
        tip += QStringLiteral("<p>%1</p>")
                   .arg(own.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")));
    }
    QToolTip::showText(event->globalPos(), tip, view);
    return true;
}

void LabelDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    // Pictures differ in size; the labels stand in line all the same.
    option->decorationSize = option->widget
        ? qobject_cast<const QAbstractItemView *>(option->widget)->iconSize()
        : option->decorationSize;
    if (index.column() == m_columnKeepingEnds)
        option->textElideMode = Qt::ElideLeft;
    if (index.data(GhostedRole).toBool() || index.data(FaintRole).toBool()) {
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
            QPalette &palette = option->palette;
            const QColor base = palette.color(group, QPalette::Base);
            const QColor text = palette.color(group, QPalette::Text);
            // Faint text cannot be read on the highlight, so where selected the highlight is faint.
            palette.setColor(group, QPalette::Text, mixed(text, base, 0.6F));
            palette.setColor(group, QPalette::Highlight,
                mixed(palette.color(group, QPalette::Highlight), base, 0.35F));
            palette.setColor(group, QPalette::HighlightedText, text);
        }
        option->icon = Icons::dimming(option->icon).pixmap(option->decorationSize, QIcon::Disabled);
    }
}
