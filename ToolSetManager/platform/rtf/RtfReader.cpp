#include "platform/rtf/RtfReader.h"

#include "platform/rtf/RtfParser.h"
#include "platform/text/CodePage.h"

#include <QTextCursor>
#include <QTextDocument>
#include <QTextOption>

namespace {

constexpr double defaultTabPixels = 48; // 720 twips

/// Plain text has no characters of layout but tabs and line ends.
QString cleaned(const QString &plain)
{
    QString text;
    text.reserve(plain.size());
    for (const QChar c : plain) {
        if (c == u'\n' || c == u'\r' || c == u'\t' || c >= u' ')
            text.append(c);
    }
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QChar(0xFDD0), QChar::ReplacementCharacter);
    text.replace(QChar(0xFDD1), QChar::ReplacementCharacter);
    text.replace(QChar::ObjectReplacementCharacter, QChar::ReplacementCharacter);
    return text;
}

void readPlainText(const QString &text, QTextDocument &document)
{
    RtfCharStyle style;
    style = RtfCharStyle::fromFormat(QTextCharFormat(), document.defaultFont());
    QTextCursor cursor(&document);
    cursor.setBlockCharFormat(style.toFormat());
    cursor.insertText(cleaned(text), style.toFormat());
}

} // namespace

bool RtfReader::isRtf(QByteArrayView bytes)
{
    return bytes.startsWith("{\\rtf") || bytes.startsWith("{\\urtf");
}

void RtfReader::read(QByteArrayView bytes, QTextDocument &document)
{
    const bool undo = document.isUndoRedoEnabled();
    document.setUndoRedoEnabled(false);
    document.clear();
    QTextOption option = document.defaultTextOption();
    option.setTabStopDistance(defaultTabPixels);
    document.setDefaultTextOption(option);
    m_endedWithParagraph = false;
    if (isRtf(bytes))
        m_endedWithParagraph = RtfParser(*this, bytes, document).run();
    else
        readPlainText(CodePage(defaultCodePage).decode(bytes), document);
    document.setUndoRedoEnabled(undo);
    document.setModified(false);
}
