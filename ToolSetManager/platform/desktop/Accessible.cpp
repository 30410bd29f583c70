#include "platform/desktop/Accessible.h"

#include "platform/rtf/RtfStyle.h"

#include <QAccessibleWidget>
#include <QLabel>
#include <QTextBlock>
#include <QTextEdit>

namespace {

constexpr char roleProperty[] = "accessibleRole";

/// Stands for a character of hidden text, so that places in the text stay: it is not spoken.
constexpr QChar hiddenCharacter(0x200B);

/// A formatted text. The toolkit calls one that is only read a label or a field, and speaks hidden
/// text as if it were there.
class TextInterface : public QAccessibleWidget,
                      public QAccessibleTextInterface,
                      public QAccessibleEditableTextInterface
{
public:
    TextInterface(QTextEdit *text, QAccessible::Role role)
        : QAccessibleWidget(text, role)
        , m_text(text)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface *>(this);
        if (type == QAccessible::EditableTextInterface && !m_text->isReadOnly())
            return static_cast<QAccessibleEditableTextInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = m_text->isReadOnly();
        state.editable = !state.readOnly;
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }
    QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Value)
            return QAccessibleWidget::text(kind);
        return text(0, characterCount()).remove(hiddenCharacter);
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
        QTextCursor cursor = between(start, end);
        QString text = cursor.selectedText().replace(QChar::ParagraphSeparator, u'\n');
        const int first = cursor.selectionStart();
        for (QTextBlock block = m_text->document()->findBlock(first);
             block.isValid() && block.position() < cursor.selectionEnd(); block = block.next()) {
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                if (!RtfCharStyle::isHidden(it.fragment().charFormat()))
                    continue;
                const int from = qMax(0, it.fragment().position() - first);
                const int to = it.fragment().position() + it.fragment().length() - first;
                for (int i = from; i < qMin<qsizetype>(to, text.size()); ++i)
                    text[i] = hiddenCharacter;
            }
        }
        return text;
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
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (!fragment.contains(offset))
                continue;
            *start = fragment.position();
            *end = fragment.position() + fragment.length();
            return attributesOf(fragment.charFormat());
        }
        return {};
    }

    void deleteText(int start, int end) override { between(start, end).removeSelectedText(); }
    void insertText(int offset, const QString &text) override
    {
        between(offset, offset).insertText(text);
    }
    void replaceText(int start, int end, const QString &text) override
    {
        between(start, end).insertText(text);
    }

private:
    /// In the form that screen readers expect.
    static QString attributesOf(const QTextCharFormat &format)
    {
        const QFont font = format.font();
        QString words = QStringLiteral("font-family:\"%1\";font-size:%2pt;")
                            .arg(font.family())
                            .arg(font.pointSizeF());
        if (font.bold())
            words += QStringLiteral("font-weight:bold;");
        if (font.italic())
            words += QStringLiteral("font-style:italic;");
        if (font.underline())
            words += QStringLiteral("text-underline-style:solid;");
        return words;
    }

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
        return new TextInterface(text, static_cast<QAccessible::Role>(role.toInt()));
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
    // Controls say things of themselves when they are made, and the toolkit may have answered for
    // this one already.
    if (QAccessibleInterface *former = QAccessible::queryAccessibleInterface(&control))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(former));
}

void makeDocument(QTextEdit &text)
{
    setRole(text, QAccessible::Document);
}

void makeEditor(QTextEdit &text)
{
    setRole(text, QAccessible::EditableText);
}

} // namespace Accessible
