#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <map>
#include <optional>

/// The meaning of bytes above 127 (and, in symbol fonts, of all bytes) in a piece of RTF: the code
/// page that belongs to a font's character set.
class RtfCharset
{
public:
    // Code pages that are none of Windows' numbered ones.
    static constexpr int symbolPage = 42; ///< Any symbol font: private-use characters U+F020 on.
    static constexpr int symbolFontPage = -42; ///< The font named "Symbol": Greek and mathematics.
    static constexpr int wingdingsPage = -43; ///< The font of that name, as far as Unicode has it.

    // Numbers of \fcharset.
    static constexpr int ansiCharset = 0;
    static constexpr int symbolCharset = 2;

    explicit RtfCharset(int codePage);

    int codePage() const { return m_codePage; }
    /// True when a character may take two or more bytes; then only decode() tells what they mean.
    bool isMultiByte() const { return !m_codec.isEmpty(); }
    /// True for the first byte of a letter of two.
    bool isLead(char byte) const;
    /// True when bytes below 128 are ASCII.
    bool isAsciiBased() const { return m_asciiBased; }

    /// The character of a byte in a single-byte code page; 0 for none.
    char16_t character(char byte) const { return m_table[static_cast<unsigned char>(byte)]; }
    QString decode(QByteArrayView bytes) const;

    /// The page of a symbol font whose characters have codes of their own in Unicode; 0 for other
    /// fonts.
    static int fontPage(const QString &family);
    static bool isSymbolFont(const QString &family) { return fontPage(family) != 0; }
    /// The code page of a font with that \fcharset number; \a documentPage for the number 1 and
    /// unknown ones.
    static int codePageOf(int charset, const QString &family, int documentPage);
    /// Leaves of a font's name what other readers know: "Arial CE" is the font Arial with another
    /// charset, whose number is returned; "C059 [urw]" is C059, which the system has twice.
    static std::optional<int> dropScript(QString &family);
    /// The page that a number means: 1252 for all that are not known.
    static int known(int codePage);

    /// A character as a byte of a font with some \fcharset number.
    struct Encoded
    {
        int charset = ansiCharset;
        char byte = 0;
    };
    /// How a character can be written for readers that know no Unicode; empty when no character
    /// set has it. \a charset, the one that the text before is in, is preferred, then Western.
    static std::optional<Encoded> encode(char16_t character, const QString &family, int charset);

private:
    void fill(const char *codec);
    void fillSymbols();

    int m_codePage;
    bool m_asciiBased = true;
    QByteArray m_codec; ///< Of a multi-byte code page.
    std::array<char16_t, 256> m_table {};
};

/// Code pages that are in use; making one is expensive, and few are needed.
class RtfCharsets
{
public:
    /// Stays where it is.
    const RtfCharset &page(int codePage);

private:
    std::map<int, RtfCharset> m_pages;
};
