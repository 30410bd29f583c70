#pragma once

#include <QByteArray>

class QTextCursor;
class QTextDocument;

/// Writes a QTextDocument as Rich Text Format 1.x in seven-bit ASCII, in the words that the first
/// rich-text boxes know: a character that is not Western is written in a font of its character
/// set, and with `\u` only where there is none; bullets are `\pn` groups, pictures metafiles.
/// Pictures that came in a newer form stand in both.
///
/// Equal documents give equal bytes. What RtfReader reads back is the same document again.
namespace RtfWriter {

/// The whole document.
QByteArray write(const QTextDocument &document);

/// The selected text; with a last paragraph mark only where one is selected.
QByteArray writeSelection(const QTextCursor &cursor);

} // namespace RtfWriter
