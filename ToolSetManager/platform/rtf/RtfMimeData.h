#pragma once

#include <optional>

class QMimeData;
class QTextCursor;
class QTextDocument;
class RtfReader;

/// Formatted text on the clipboard and in drags.
namespace RtfMimeData {

/// The selected text as RTF, as a web page and plain; a picture alone as a picture, too.
QMimeData *fromSelection(const QTextCursor &cursor);

/// True for text of any kind and for pictures.
bool isReadable(const QMimeData &data);

/// Fills the document when there is formatted text: RTF, else a web page as far as RTF can keep it.
/// A page's pictures come with it or not at all: nothing is fetched for it, from nowhere.
///
/// Tells whether the text ended with a paragraph mark; empty when there is no formatted text.
std::optional<bool> readFormatted(
    const QMimeData &data, RtfReader &reader, QTextDocument &document);

} // namespace RtfMimeData
