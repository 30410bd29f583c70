#include "platform/rtf/RtfTokenizer.h"

#include "platform/rtf/RtfHex.h"

#include <array>
#include <limits>

namespace {

enum ByteClass : unsigned char { PlainByte = 0, OddByte = 1, StopByte = 2 };

constexpr std::array<unsigned char, 256> makeClasses()
{
    std::array<unsigned char, 256> classes {};
    for (size_t i = 0; i < 256; ++i)
        classes[i] = i < 0x20 || i > 0x7E ? OddByte : PlainByte;
    for (const char stop : {'\\', '{', '}', '\r', '\n'})
        classes[static_cast<unsigned char>(stop)] = StopByte;
    return classes;
}

constexpr auto byteClasses = makeClasses();

unsigned char classOf(char c)
{
    return byteClasses[static_cast<unsigned char>(c)];
}

bool isLetter(char c)
{
    const auto lower = static_cast<unsigned char>(c | 0x20);
    return lower >= 'a' && lower <= 'z';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

RtfToken ofKind(RtfToken::Kind kind)
{
    RtfToken token;
    token.kind = kind;
    return token;
}

} // namespace

RtfToken RtfTokenizer::next()
{
    while (m_at != m_end && (*m_at == '\r' || *m_at == '\n'))
        ++m_at; // line ends in the file are no text
    if (m_at == m_end)
        return {};
    switch (*m_at) {
    case '{':
        ++m_at;
        return ofKind(RtfToken::GroupStart);
    case '}':
        ++m_at;
        return ofKind(RtfToken::GroupEnd);
    case '\\':
        ++m_at;
        return control();
    default:
        return text();
    }
}

RtfToken RtfTokenizer::text()
{
    const char *start = m_at;
    unsigned char seen = 0;
    while (m_at != m_end) {
        const unsigned char byteClass = classOf(*m_at);
        if (byteClass == StopByte)
            break;
        seen |= byteClass;
        ++m_at;
    }
    RtfToken token = ofKind(RtfToken::Text);
    token.text = QByteArrayView(start, m_at - start);
    token.plain = seen == PlainByte;
    return token;
}

RtfToken RtfTokenizer::control()
{
    if (m_at == m_end)
        return {};
    if (isLetter(*m_at))
        return word();
    const char symbol = *m_at++;
    if (symbol == '\'')
        return hexByte();
    RtfToken token = ofKind(RtfToken::Symbol);
    token.byte = symbol;
    if (symbol == '\r' && m_at != m_end && *m_at == '\n')
        ++m_at; // one line end, not two
    return token;
}

RtfToken RtfTokenizer::word()
{
    RtfToken token = ofKind(RtfToken::Word);
    const char *start = m_at;
    while (m_at != m_end && isLetter(*m_at))
        ++m_at;
    token.text = QByteArrayView(start, m_at - start);

    const bool negative = m_end - m_at > 1 && m_at[0] == '-' && isDigit(m_at[1]);
    if (negative)
        ++m_at;
    if (m_at != m_end && isDigit(*m_at)) {
        constexpr qint64 limit = std::numeric_limits<int>::max();
        qint64 number = 0;
        for (; m_at != m_end && isDigit(*m_at); ++m_at)
            number = qMin(number * 10 + (*m_at - '0'), limit);
        token.hasParameter = true;
        token.parameter = static_cast<int>(negative ? -number : number);
    }
    if (m_at != m_end && *m_at == ' ')
        ++m_at; // belongs to the word

    if (token.text == QByteArrayView("bin")) {
        const qint64 length = qBound(qint64(0), qint64(token.parameter), qint64(m_end - m_at));
        token.kind = RtfToken::Binary;
        token.text = QByteArrayView(m_at, length);
        m_at += length;
    }
    return token;
}

RtfToken RtfTokenizer::hexByte()
{
    RtfToken token = ofKind(RtfToken::Byte);
    int value = 0;
    int digits = 0;
    while (digits < 2 && m_at != m_end && RtfHex::digit(*m_at) >= 0) {
        value = value * 16 + RtfHex::digit(*m_at++);
        ++digits;
    }
    token.byte = static_cast<char>(value); // without digits a zero, which is no text
    return token;
}
