#pragma once

#include <QByteArrayView>

/// One piece of RTF text. Views point into the bytes that the tokenizer reads.
struct RtfToken
{
    enum Kind {
        End, ///< No more bytes; comes again and again.
        GroupStart,
        GroupEnd,
        Word, ///< `\par`, `\fs20`: name in `text`, number in `parameter`.
        Symbol, ///< `\~`, `\*`: the character in `byte`.
        Byte, ///< `\'e4`: the byte in `byte`.
        Text, ///< A run of bytes without line ends.
        Binary ///< What `\bin` announced, as far as it is there.
    };

    Kind kind = End;
    bool hasParameter = false;
    bool plain = false; ///< Of a text: all bytes are printable ASCII.
    char byte = 0;
    int parameter = 0; ///< Numbers too large for it are its limits.
    QByteArrayView text;
};

/// Cuts RTF into tokens. It takes whatever bytes there are: nothing is an error, a piece cut off at
/// the end is given as far as it goes. Linear in the number of bytes.
class RtfTokenizer
{
public:
    /// The bytes are borrowed.
    explicit RtfTokenizer(QByteArrayView bytes)
        : m_at(bytes.data())
        , m_end(bytes.data() + bytes.size())
    {
    }

    RtfToken next();

    /// True when the next byte is a brace or a backslash.
    bool isAtControl() const
    {
        return m_at != m_end && (*m_at == '{' || *m_at == '}' || *m_at == '\\');
    }
    /// Takes a byte as it is; there must be one.
    char takeByte() { return *m_at++; }

private:
    RtfToken text();
    RtfToken control();
    RtfToken word();
    RtfToken hexByte();

    const char *m_at;
    const char *m_end;
};
