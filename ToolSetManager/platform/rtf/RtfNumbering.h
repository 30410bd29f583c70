#pragma once

#include <QTextCharFormat>

#include <optional>

class QTextCursor;

/// Numbers of lists. They are text here ("2)" and a tab, say), as the labels in the files are; this
/// keeps them counting while the text is edited.
namespace RtfNumbering {

/// What the Enter key does in an item of a numbered list: a new item with the next number, those
/// behind it counted on; in an item without text, the list's end. One step that can be undone.
///
/// The format of what is typed next; empty when the cursor is in no item, and nothing was done. A
/// paragraph is an item when it begins with a number and hangs, or when the number goes on from the
/// paragraph before it.
std::optional<QTextCharFormat> enter(QTextCursor &cursor);

} // namespace RtfNumbering
