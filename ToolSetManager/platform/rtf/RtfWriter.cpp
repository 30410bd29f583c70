#include "platform/rtf/RtfWriter.h"

#include "platform/rtf/RtfBody.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

namespace {

/// \a from and \a to are positions in the document.
QByteArray writeRange(const QTextDocument &document, int from, int to, bool lastMark)
{
    RtfBody body(document);
    for (QTextBlock block = document.findBlock(from); block.isValid() && block.position() <= to;
         block = block.next()) {
        const int end = block.position() + block.length() - 1; // of the text
        const bool marked = end < to || (end == to && lastMark);
        if (block.position() == to && to > from && !marked)
            break; // the selection ends with the mark before
        body.startParagraph(block, marked && from <= block.position());
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int start = qMax(fragment.position(), from);
            const int stop = qMin(fragment.position() + fragment.length(), to);
            if (start < stop)
                body.addFragment(fragment, start - fragment.position(), stop - start);
        }
        if (marked)
            body.endParagraph(block);
    }
    return body.take();
}

} // namespace

namespace RtfWriter {

QByteArray write(const QTextDocument &document)
{
    const QTextBlock last = document.lastBlock();
    return writeRange(document, 0, last.position() + last.length() - 1, true);
}

QByteArray writeSelection(const QTextCursor &cursor)
{
    return writeRange(*cursor.document(), cursor.selectionStart(), cursor.selectionEnd(), false);
}

} // namespace RtfWriter
