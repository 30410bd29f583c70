#include "platform/rtf/RtfOutput.h"

#include "platform/rtf/RtfHex.h"

#include <array>
#include <charconv>
#include <utility>

namespace {

constexpr qsizetype bytesInLine = 64;

constexpr std::array<bool, 128> makePlain()
{
    std::array<bool, 128> plain {};
    for (size_t c = 0x20; c < 0x7F; ++c)
        plain[c] = !RtfOutput::needsEscape(static_cast<char16_t>(c));
    return plain;
}

constexpr auto plainAscii = makePlain();

} // namespace

bool RtfOutput::isPlain(char16_t c)
{
    return c < plainAscii.size() && plainAscii[c];
}

void RtfOutput::word(const char *name)
{
    m_bytes.append('\\').append(name);
    m_afterWord = true;
}

void RtfOutput::word(const char *name, int number)
{
    word(name);
    std::array<char, 16> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    m_bytes.append(digits.data(), end - digits.data());
}

void RtfOutput::raw(const char *bytes)
{
    m_bytes.append(bytes);
    m_afterWord = false;
}

void RtfOutput::endWord()
{
    if (std::exchange(m_afterWord, false))
        m_bytes.append(' ');
}

void RtfOutput::plain(char c)
{
    endWord();
    m_bytes.append(c);
}

void RtfOutput::plain(QStringView ascii)
{
    endWord();
    const qsizetype before = m_bytes.size();
    m_bytes.resize(before + ascii.size());
    char *to = m_bytes.data() + before;
    for (const QChar c : ascii)
        *to++ = static_cast<char>(c.unicode());
}

void RtfOutput::escaped(char c)
{
    m_bytes.append('\\').append(c);
    m_afterWord = false;
}

void RtfOutput::hexByte(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    const char text[] = {'\\', '\'', RtfHex::lower[value >> 4], RtfHex::lower[value & 15]};
    m_bytes.append(text, sizeof text);
    m_afterWord = false;
}

void RtfOutput::unicode(char16_t unit)
{
    word("u", static_cast<qint16>(unit));
    raw("?");
}

void RtfOutput::hexLines(QByteArrayView bytes)
{
    for (qsizetype from = 0; from < bytes.size(); from += bytesInLine) {
        const QByteArrayView line = bytes.sliced(from, qMin(bytesInLine, bytes.size() - from));
        raw("\r\n");
        const qsizetype before = m_bytes.size();
        m_bytes.resize(before + 2 * line.size());
        char *to = m_bytes.data() + before;
        for (const char c : line) {
            const auto byte = static_cast<unsigned char>(c);
            *to++ = RtfHex::lower[byte >> 4];
            *to++ = RtfHex::lower[byte & 15];
        }
    }
}

QByteArray RtfOutput::take()
{
    m_afterWord = false;
    return std::exchange(m_bytes, {});
}
