#pragma once

#include "platform/rtf/RtfReadOptions.h"

#include <QByteArrayView>
#include <QString>

class QTextDocument;

/// Reads Rich Text Format into a QTextDocument: what WordPad, the rich-text boxes of all ages, Word
/// and LibreOffice write, as far as a rich-text box shows it.
///
/// It never fails. Words that it does not know are passed over, groups that it does not know are
/// left out, numbers out of range are brought into it, and a text cut off at any place gives what
/// stands before. Tables become lines with tab stops at the cells' edges, fields and objects their
/// visible result, numbered lists the numbers as text. Time and memory grow with the input alone:
/// no recursion on its nesting, and decoded pictures stay within a limit (see
/// `RtfReadOptions::pictureMemory`).
class RtfReader
{
public:
    RtfReadOptions options;

    /// True for `{\rtf` at the start.
    static bool isRtf(QByteArrayView bytes);

    /// Replaces the document's content; its undo history is cleared. Bytes that are not RTF are
    /// taken as plain text of the default code page. The document's default font is that of text
    /// which names none.
    void read(QByteArrayView bytes, QTextDocument &document);

    /// The same for a text that is known to be plain.
    void readPlainText(const QString &text, QTextDocument &document);

    /// Of the last read(): the text ended with a paragraph mark, which the document does not show
    /// because each of its paragraphs has one.
    bool endedWithParagraph() const { return m_endedWithParagraph; }

private:
    bool m_endedWithParagraph = false;
};
