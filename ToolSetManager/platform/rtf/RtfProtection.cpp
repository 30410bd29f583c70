#include "platform/rtf/RtfProtection.h"

#include "platform/rtf/RtfStyle.h"

#include <QKeyEvent>
#include <QTextBlock>
#include <QTextDocument>

#include <array>
#include <optional>
#include <utility>

namespace RtfProtection {

namespace {

bool hasProtected(const QTextDocument &document, int from, int to)
{
    for (QTextBlock block = document.findBlock(from); block.isValid() && block.position() < to;
         block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (fragment.position() < to && fragment.position() + fragment.length() > from
                && RtfCharStyle::isProtected(fragment.charFormat())) {
                return true;
            }
        }
    }
    return false;
}

bool types(const QKeyEvent &key)
{
    if (key.text().isEmpty() || (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0)
        return false;
    return key.text().at(0).isPrint() || key.key() == Qt::Key_Tab || key.key() == Qt::Key_Return
        || key.key() == Qt::Key_Enter;
}

} // namespace

std::optional<QTextCursor> reachOf(const QTextCursor &cursor, const QKeyEvent &key)
{
    static constexpr std::array<std::pair<QKeySequence::StandardKey, QTextCursor::MoveOperation>, 4>
        reaches {{{QKeySequence::DeleteStartOfWord, QTextCursor::PreviousWord},
            {QKeySequence::DeleteEndOfWord, QTextCursor::NextWord},
            {QKeySequence::DeleteEndOfLine, QTextCursor::EndOfBlock},
            {QKeySequence::DeleteCompleteLine, QTextCursor::NoMove}}};
    for (const auto &[standardKey, move] : reaches) {
        if (!key.matches(standardKey))
            continue;
        QTextCursor reached = cursor;
        if (move == QTextCursor::NoMove && !cursor.hasSelection())
            reached.select(QTextCursor::BlockUnderCursor);
        else if (!cursor.hasSelection())
            reached.movePosition(move, QTextCursor::KeepAnchor);
        return reached;
    }
    return std::nullopt;
}

bool isLocked(const QTextCursor &cursor, Touch touch)
{
    const QTextDocument &document = *cursor.document();
    const int at = cursor.position();
    if (cursor.hasSelection())
        return hasProtected(document, cursor.selectionStart(), cursor.selectionEnd());
    switch (touch) {
    case Touch::Before:
        return hasProtected(document, qMax(0, at - 1), at);
    case Touch::After:
        return hasProtected(document, at, at + 1);
    case Touch::Insertion:
        return at > 0 && hasProtected(document, at - 1, at) && hasProtected(document, at, at + 1);
    case Touch::Nothing:
        break;
    }
    return false;
}

bool isLocked(const QTextCursor &cursor, const QKeyEvent &key)
{
    if (key.matches(QKeySequence::Cut))
        return isLocked(cursor, Touch::Nothing);
    if (key.matches(QKeySequence::Paste))
        return isLocked(cursor, Touch::Insertion);
    if (const auto reached = reachOf(cursor, key))
        return isLocked(*reached, Touch::Nothing);
    if (key.key() == Qt::Key_Backspace)
        return isLocked(cursor, Touch::Before);
    if (key.key() == Qt::Key_Delete)
        return isLocked(cursor, Touch::After);
    return types(key) && isLocked(cursor, Touch::Insertion);
}

QTextCharFormat typed(const QTextCharFormat &beside, const QFont &standard)
{
    RtfCharStyle style = RtfCharStyle::fromFormat(beside, standard);
    constexpr quint16 locked = RtfCharStyle::Protected | RtfCharStyle::Hidden;
    if ((style.flags & locked) == 0 && !beside.isImageFormat())
        return beside;
    style.flags &= static_cast<quint16>(~locked);
    return style.toFormat();
}

} // namespace RtfProtection
