#pragma once

#include <QByteArray>
#include <QStringView>

/// RTF as bytes under way: puts a blank between a control word and what would be taken for a part
/// of it.
class RtfOutput
{
public:
    /// A control word, without its backslash.
    void word(const char *name);
    void word(const char *name, int number);
    /// Braces, control symbols and line ends.
    void raw(const char *bytes);
    /// Text that stands for itself.
    void plain(char c);
    void plain(QStringView ascii);
    void escaped(char c); ///< Behind a backslash.
    void hexByte(char byte);
    void unicode(char16_t unit); ///< With "?" for readers that know no Unicode.
    /// Hexadecimal digits in lines of their own.
    void hexLines(QByteArrayView bytes);

    /// Printable ASCII that stands for itself.
    static bool isPlain(char16_t c);
    static constexpr bool needsEscape(char16_t c) { return c == u'\\' || c == u'{' || c == u'}'; }

    void reserve(qsizetype size) { m_bytes.reserve(size); }
    QByteArray take();

private:
    void endWord();

    QByteArray m_bytes;
    bool m_afterWord = false; ///< A letter, digit or blank would be taken for a part of the word.
};
