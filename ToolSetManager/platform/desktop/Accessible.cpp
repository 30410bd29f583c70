#include "platform/desktop/Accessible.h"

#include <QAccessibleWidget>
#include <QLabel>
#include <QTextBlock>
#include <QTextEdit>

namespace {

constexpr char roleProperty[] = "accessibleRole";

/// A text edit that is only read. The toolkit calls a browser a label and a text edit a field.
class DocumentInterface : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit DocumentInterface(QTextEdit *text)
        : QAccessibleWidget(text, QAccessible::Document)
        , m_text(text)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? m_text->toPlainText() : QAccessibleWidget::text(kind);
    }

    void selection(int index, int *start, int *end) const override
    {
        const QTextCursor cursor = m_text->textCursor();
        *start = index == 0 ? cursor.selectionStart() : 0;
        *end = index == 0 ? cursor.selectionEnd() : 0;
    }
    int selectionCount() const override { return m_text->textCursor().hasSelection() ? 1 : 0; }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int /*index*/) override { setCursorPosition(cursorPosition()); }
    void setSelection(int index, int start, int end) override
    {
        if (index == 0)
            m_text->setTextCursor(between(start, end));
    }
    int cursorPosition() const override { return m_text->textCursor().position(); }
    void setCursorPosition(int position) override
    {
        m_text->setTextCursor(between(position, position));
    }
    QString text(int start, int end) const override
    {
        return between(start, end).selectedText().replace(QChar::ParagraphSeparator, u'\n');
    }
    int characterCount() const override { return m_text->document()->characterCount() - 1; }
    QRect characterRect(int offset) const override
    {
        const QRect start = m_text->cursorRect(between(offset, offset));
        const QRect end = m_text->cursorRect(between(offset + 1, offset + 1));
        const QPoint place = m_text->viewport()->mapToGlobal(start.topLeft());
        return {place, QSize(qMax(0, end.x() - start.x()), start.height())};
    }
    int offsetAtPoint(const QPoint &point) const override
    {
        return m_text->cursorForPosition(m_text->viewport()->mapFromGlobal(point)).position();
    }
    void scrollToSubstring(int start, int /*end*/) override { setCursorPosition(start); }
    QString attributes(int offset, int *start, int *end) const override
    {
        const QTextBlock block = m_text->document()->findBlock(offset);
        *start = block.position();
        *end = block.position() + block.length();
        return {};
    }

private:
    QTextCursor between(int start, int end) const
    {
        QTextCursor cursor(m_text->document());
        cursor.setPosition(qBound(0, start, characterCount()));
        cursor.setPosition(qBound(0, end, characterCount()), QTextCursor::KeepAnchor);
        return cursor;
    }

    QTextEdit *m_text;
};

/// Asked for every object, once for each of its classes; the toolkit answers for all others.
QAccessibleInterface *interfaceOf(const QString & /*className*/, QObject *object)
{
    const QVariant role = object ? object->property(roleProperty) : QVariant();
    if (!role.isValid())
        return nullptr;
    if (auto *text = qobject_cast<QTextEdit *>(object))
        return new DocumentInterface(text);
    return new QAccessibleWidget(
        static_cast<QWidget *>(object), static_cast<QAccessible::Role>(role.toInt()));
}

} // namespace

namespace Accessible {

void setName(QWidget &control, const QString &name)
{
    control.setAccessibleName(name);
    auto *label = new QLabel(name, control.parentWidget()); // found among the control's siblings
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(&control);
    label->hide();
}

void setRole(QWidget &control, QAccessible::Role role)
{
    QAccessible::installFactory(interfaceOf); // once, however often it is called
    control.setProperty(roleProperty, static_cast<int>(role));
    // While a reader listens, controls say things of themselves when they are made, and the toolkit
    // has answered for this one already.
    if (QAccessible::isActive()) {
        if (QAccessibleInterface *former = QAccessible::queryAccessibleInterface(&control))
            QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(former));
    }
}

void makeDocument(QTextEdit &text)
{
    setRole(text, QAccessible::Document);
}

} // namespace Accessible
