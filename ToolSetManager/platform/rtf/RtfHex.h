#pragma once

#include <QByteArray>

#include <array>

/// Hexadecimal digits, as RTF writes bytes.
namespace RtfHex {

constexpr std::array<signed char, 256> makeDigits()
{
    std::array<signed char, 256> digits {};
    digits.fill(-1);
    for (std::size_t i = 0; i < 10; ++i)
        digits['0' + i] = static_cast<signed char>(i);
    for (std::size_t i = 0; i < 6; ++i) {
        digits['a' + i] = static_cast<signed char>(10 + i);
        digits['A' + i] = static_cast<signed char>(10 + i);
    }
    return digits;
}

inline constexpr auto digits = makeDigits();

/// The value of a digit; -1 for any other character.
constexpr int digit(char c)
{
    return digits[static_cast<unsigned char>(c)];
}

inline constexpr char lower[] = "0123456789abcdef";

/// Appends the bytes that \a text spells; other characters than digits are passed over. \a high is
/// the digit that waits for its second half, -1 for none.
inline void append(QByteArray &bytes, QByteArrayView text, int &high)
{
    const qsizetype before = bytes.size();
    bytes.resize(before + text.size() / 2 + 1);
    char *to = bytes.data() + before;
    for (const char c : text) {
        const int value = digit(c);
        if (value < 0)
            continue;
        if (high < 0) {
            high = value;
        } else {
            *to++ = static_cast<char>(high << 4 | value);
            high = -1;
        }
    }
    bytes.truncate(to - bytes.constData());
}

} // namespace RtfHex
