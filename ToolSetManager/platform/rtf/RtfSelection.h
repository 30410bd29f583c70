#pragma once

#include "platform/rtf/RtfStyle.h"

#include <functional>

class QTextCursor;

/// The formats of the text that a cursor has selected: asked for, and changed as one step that can
/// be undone.
namespace RtfSelection {

/// Calls \a visit with the format of each selected run, until it returns false. Paragraph marks
/// have no say.
void visitCharacters(
    const QTextCursor &cursor, const std::function<bool(const QTextCharFormat &)> &visit);
/// The same with each paragraph of which something is selected; without a selection, with the one
/// in which the cursor is.
void visitParagraphs(
    const QTextCursor &cursor, const std::function<bool(const RtfParagraphStyle &)> &visit);

using CharacterChange = std::function<void(RtfCharStyle &)>;
using ParagraphChange = std::function<void(RtfParagraphStyle &)>;

/// The format changed; \a standard is the font of text that names none. A picture stays one.
QTextCharFormat changed(
    const QTextCharFormat &format, const QFont &standard, const CharacterChange &change);

/// The marks of the paragraphs that start in the selection change, too: so an empty one among them
/// is typed into with the new format.
void changeCharacters(
    const QTextCursor &cursor, const QFont &standard, const CharacterChange &change);
/// Gives the paragraph of the cursor another look, without an edit block of its own.
void setParagraph(QTextCursor &at, const RtfParagraphStyle &style);
void changeParagraphs(const QTextCursor &cursor, const ParagraphChange &change);

} // namespace RtfSelection
