#include "platform/rtf/RtfReader.h"

#include "platform/rtf/RtfParser.h"
#include "platform/text/CodePage.h"

#include <QTextCursor>
#include <QTextDocument>

namespace {

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

/// Lends the document out for filling: empty, without undo, which comes back afterwards.
class Filling
{
public:
    explicit Filling(QTextDocument &document)
        : m_document(document)
        , m_undo(document.isUndoRedoEnabled())
    {
        document.setUndoRedoEnabled(false);
        document.clear();
        RtfParagraphStyle::setDefaultTab(document, RtfParagraphStyle::usualTab);
    }
    ~Filling()
    {
        m_document.setUndoRedoEnabled(m_undo);
        m_document.setModified(false);
    }
    Filling(const Filling &) = delete;
    Filling &operator=(const Filling &) = delete;

private:
    QTextDocument &m_document;
    bool m_undo;
};

} // namespace

bool RtfReader::isRtf(QByteArrayView bytes)
{
    return bytes.startsWith("{\\rtf") || bytes.startsWith("{\\urtf");
}

void RtfReader::read(QByteArrayView bytes, QTextDocument &document)
{
    if (!isRtf(bytes)) {
        readPlainText(CodePage(options.defaultCodePage).decode(bytes), document);
        return;
    }
    const Filling filling(document);
    m_endedWithParagraph = RtfParser(options, bytes, document).run();
}

void RtfReader::readPlainText(const QString &text, QTextDocument &document)
{
    const Filling filling(document);
    m_endedWithParagraph = false;
    const QTextCharFormat format =
        RtfCharStyle::fromFormat(QTextCharFormat(), document.defaultFont()).toFormat();
    QTextCursor cursor(&document);
    cursor.setBlockCharFormat(format);
    cursor.insertText(cleaned(text), format);
}
