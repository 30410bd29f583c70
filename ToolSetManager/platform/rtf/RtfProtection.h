#pragma once

#include <QTextCharFormat>
#include <QTextCursor>

#include <optional>

class QFont;
class QKeyEvent;

/// Protected text: what the user of a rich-text box may not change, and what text typed beside it
/// looks like.
namespace RtfProtection {

/// What an action changes when nothing is selected.
enum class Touch {
    Nothing,
    Before, ///< The character before the cursor.
    After,
    Insertion ///< Text comes in at the cursor. At the edges of protected text it may.
};

/// True when the action would change protected text: selected text, else what \a touch says.
bool isLocked(const QTextCursor &cursor, Touch touch);
/// The same for what a key does in a text box.
bool isLocked(const QTextCursor &cursor, const QKeyEvent &key);

/// The text that a key for deleting more than a character reaches; empty for other keys.
std::optional<QTextCursor> reachOf(const QTextCursor &cursor, const QKeyEvent &key);

/// Text typed beside protected or hidden text or a picture is none of these: the format for it,
/// or the one given when that may stay.
QTextCharFormat typed(const QTextCharFormat &beside, const QFont &standard);

} // namespace RtfProtection
