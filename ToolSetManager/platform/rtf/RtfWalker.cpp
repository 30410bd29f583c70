#include "platform/rtf/RtfWalker.h"

#include "platform/rtf/RtfGroup.h"

#include <QChar>

#include <utility>

void RtfWalker::walk()
{
    do {
        const RtfToken token = m_tokenizer.next();
        const bool atGroupStart = std::exchange(m_atGroupStart, token.kind == RtfToken::GroupStart);
        switch (token.kind) {
        case RtfToken::End:
            m_depth = 0;
            break;
        case RtfToken::GroupStart:
            openGroup();
            break;
        case RtfToken::GroupEnd:
            if (m_depth == 1)
                m_depth = 0; // the last paragraph looks as its end does, not as the beginning did
            else
                closeGroup();
            break;
        case RtfToken::Word:
            controlWord(token);
            break;
        case RtfToken::Symbol:
            // Elsewhere it says nothing: some writers put it in front of any word.
            if (token.byte == '*')
                m_ignorable = atGroupStart;
            else
                symbol(token.byte);
            break;
        case RtfToken::Byte:
        case RtfToken::Text:
            text(token);
            break;
        case RtfToken::Binary: // outside a picture
            m_skipCharacters = qMax(0, m_skipCharacters - 1);
            break;
        }
    } while (m_depth > 0);
    flush();
}

void RtfWalker::openGroup()
{
    flush();
    m_skipCharacters = 0;
    m_ignorable = false;
    ++m_depth;
    groupOpened();
    if (std::exchange(m_skipNextGroup, false))
        skipGroup();
}

void RtfWalker::closeGroup()
{
    flush();
    m_skipCharacters = 0;
    m_ignorable = false;
    groupClosed();
    --m_depth;
}

void RtfWalker::skipGroup()
{
    RtfGroup group(m_tokenizer);
    while (group.next()) { }
    closeGroup();
}

void RtfWalker::text(const RtfToken &token)
{
    m_ignorable = false;
    const bool isByte = token.kind == RtfToken::Byte;
    QByteArrayView text = isByte ? QByteArrayView(&token.byte, 1) : token.text;
    if (m_skipCharacters > 0) {
        const qsizetype skipped = qMin(text.size(), qsizetype(m_skipCharacters));
        m_skipCharacters -= static_cast<int>(skipped);
        text = text.sliced(skipped);
        if (text.isEmpty())
            return;
    }
    if (isByte && (token.byte == '\r' || token.byte == '\n') && !isInLetter()) {
        paragraph();
        return;
    }
    bytes(text, token.plain);
    // A brace or backslash may be the second half of a letter that is not spelled in digits.
    if (!isByte && !token.plain && m_tokenizer.isAtControl() && isInLetter()) {
        const char byte = m_tokenizer.takeByte();
        bytes(QByteArrayView(&byte, 1), false);
    }
}

void RtfWalker::paragraph()
{
    RtfToken mark;
    mark.kind = RtfToken::Word;
    word({RtfWord::Paragraph}, mark);
}

void RtfWalker::symbol(char symbol)
{
    if (symbol == '\r' || symbol == '\n') {
        m_skipCharacters = 0;
        m_ignorable = false;
        paragraph();
        return;
    }
    if (m_skipCharacters > 0) {
        --m_skipCharacters;
        return;
    }
    switch (symbol) {
    case '\\':
    case '{':
    case '}':
        bytes(QByteArrayView(&symbol, 1), false);
        return;
    case '~':
        flush();
        character(QChar::Nbsp);
        return;
    case '-':
        flush();
        character(QChar::SoftHyphen);
        return;
    case '_':
        flush();
        character(0x2011);
        return;
    case '\t':
        flush();
        character(u'\t');
        return;
    default: // parts of index entries and formulas
        flush();
        return;
    }
}

void RtfWalker::controlWord(const RtfToken &token)
{
    const RtfKeyword keyword = rtfKeyword(token.text);
    if (m_skipCharacters > 0) {
        // A word may stand for one fallback character; one that writes no text ends the fallback.
        if (keyword.word == RtfWord::Character) {
            --m_skipCharacters;
            return;
        }
        m_skipCharacters = 0;
    }
    const bool isGroup = keyword.word >= RtfWord::FontTable && keyword.word <= RtfWord::Skipped;
    if (std::exchange(m_ignorable, false) && !isGroup) {
        skipGroup();
        return;
    }
    if (!isGroup) {
        if (keyword.word == RtfWord::Unicode)
            number(token.parameter);
        else if (keyword.word != RtfWord::Unknown)
            word(keyword, token);
        return;
    }
    flush();
    if (keyword.word == RtfWord::Skipped)
        skipGroup();
    else if (keyword.word == RtfWord::EitherOr)
        m_skipNextGroup = true;
    else
        group(keyword.word);
}

void RtfWalker::number(int number)
{
    flush();
    if (number < 0)
        number += 0x10000;
    if (number > 0xFFFF && number <= 0x10FFFF) { // not in the standard, but it is written
        const auto code = static_cast<char32_t>(number);
        character(QChar::highSurrogate(code));
        character(QChar::lowSurrogate(code));
    } else if (number > 0 && number <= 0xFFFF) {
        unicode(static_cast<char16_t>(number));
    }
    m_skipCharacters = fallbackLength();
}
