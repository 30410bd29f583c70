#include "platform/rtf/RtfCharset.h"

#include "platform/text/CodePage.h"

#include <QHash>
#include <QStringDecoder>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

struct CharsetRow
{
    int charset;
    int codePage;
};

constexpr CharsetRow charsets[] = {{0, 1252}, {77, 10000}, {78, 10001}, {79, 10003}, {80, 10008},
    {81, 10002}, {85, 10006}, {86, 10081}, {88, 10029}, {89, 10007}, {128, 932}, {129, 949},
    {130, 1361}, {134, 936}, {136, 950}, {161, 1253}, {162, 1254}, {163, 1258}, {177, 1255},
    {178, 1256}, {186, 1257}, {204, 1251}, {222, 874}, {238, 1250}, {254, 437}, {255, 850}};

struct Script
{
    QLatin1StringView name;
    int charset;
};

/// Word processors list a font once for each script, its name followed by that of the script.
constexpr Script scripts[] = {{QLatin1StringView(" CE"), 238}, {QLatin1StringView(" Cyr"), 204},
    {QLatin1StringView(" Greek"), 161}, {QLatin1StringView(" Tur"), 162},
    {QLatin1StringView(" (Hebrew)"), 177}, {QLatin1StringView(" (Arabic)"), 178},
    {QLatin1StringView(" Baltic"), 186}, {QLatin1StringView(" (Vietnamese)"), 163}};

struct Codec
{
    int codePage;
    const char *name;
    bool multiByte;
};

/// The East Asian ones of the Macintosh are taken for what they grew from.
constexpr Codec codecs[] = {{437, "IBM437", false}, {850, "IBM850", false}, {852, "IBM852", false},
    {866, "IBM866", false}, {932, "windows-932", true}, {936, "windows-936", true},
    {949, "windows-949", true}, {950, "windows-950", true}, {1361, "windows-1361", true},
    {10000, "macintosh", false}, {10001, "Shift_JIS", true}, {10002, "Big5", true},
    {10003, "EUC-KR", true}, {10006, "x-mac-greek", false}, {10007, "x-mac-cyrillic", false},
    {10008, "GB2312", true}, {10029, "x-mac-centraleurroman", false},
    {10081, "x-mac-turkish", false}, {54936, "gb18030", true}, {65001, "UTF-8", true}};

const Codec *codecOf(int codePage)
{
    const auto *found = std::find_if(std::begin(codecs), std::end(codecs),
        [codePage](const Codec &codec) { return codec.codePage == codePage; });
    return found != std::end(codecs) && QStringDecoder(found->name).isValid() ? found : nullptr;
}

/// The encoding of the font "Symbol" from byte 0x20 on; 0 where it is undefined.
constexpr char16_t symbolFont[] = {0x0020, 0x0021, 0x2200, 0x0023, 0x2203, 0x0025, 0x0026,
    0x220B, //
    0x0028, 0x0029, 0x2217, 0x002B, 0x002C, 0x2212, 0x002E, 0x002F, //
    0x0030, 0x0031, 0x0032, 0x0033, 0x0034, 0x0035, 0x0036, 0x0037, //
    0x0038, 0x0039, 0x003A, 0x003B, 0x003C, 0x003D, 0x003E, 0x003F, //
    0x2245, 0x0391, 0x0392, 0x03A7, 0x0394, 0x0395, 0x03A6, 0x0393, //
    0x0397, 0x0399, 0x03D1, 0x039A, 0x039B, 0x039C, 0x039D, 0x039F, //
    0x03A0, 0x0398, 0x03A1, 0x03A3, 0x03A4, 0x03A5, 0x03C2, 0x03A9, //
    0x039E, 0x03A8, 0x0396, 0x005B, 0x2234, 0x005D, 0x22A5, 0x005F, //
    0x203E, 0x03B1, 0x03B2, 0x03C7, 0x03B4, 0x03B5, 0x03C6, 0x03B3, //
    0x03B7, 0x03B9, 0x03D5, 0x03BA, 0x03BB, 0x03BC, 0x03BD, 0x03BF, //
    0x03C0, 0x03B8, 0x03C1, 0x03C3, 0x03C4, 0x03C5, 0x03D6, 0x03C9, //
    0x03BE, 0x03C8, 0x03B6, 0x007B, 0x007C, 0x007D, 0x223C, 0, //
    0, 0, 0, 0, 0, 0, 0, 0, //
    0, 0, 0, 0, 0, 0, 0, 0, //
    0, 0, 0, 0, 0, 0, 0, 0, //
    0, 0, 0, 0, 0, 0, 0, 0, //
    0x20AC, 0x03D2, 0x2032, 0x2264, 0x2044, 0x221E, 0x0192, 0x2663, //
    0x2666, 0x2665, 0x2660, 0x2194, 0x2190, 0x2191, 0x2192, 0x2193, //
    0x00B0, 0x00B1, 0x2033, 0x2265, 0x00D7, 0x221D, 0x2202, 0x2022, //
    0x00F7, 0x2260, 0x2261, 0x2248, 0x2026, 0x23D0, 0x23AF, 0x21B5, //
    0x2135, 0x2111, 0x211C, 0x2118, 0x2297, 0x2295, 0x2205, 0x2229, //
    0x222A, 0x2283, 0x2287, 0x2284, 0x2282, 0x2286, 0x2208, 0x2209, //
    0x2220, 0x2207, 0x00AE, 0x00A9, 0x2122, 0x220F, 0x221A, 0x22C5, //
    0x00AC, 0x2227, 0x2228, 0x21D4, 0x21D0, 0x21D1, 0x21D2, 0x21D3, //
    0x25CA, 0x2329, 0, 0, 0, 0x2211, 0x239B, 0x239C, //
    0x239D, 0x23A1, 0x23A2, 0x23A3, 0x23A7, 0x23A8, 0x23A9, 0x23AA, //
    0, 0x232A, 0x222B, 0x2320, 0x23AE, 0x2321, 0x239E, 0x239F, //
    0x23A0, 0x23A4, 0x23A5, 0x23A6, 0x23AB, 0x23AC, 0x23AD, 0};

/// What texts take from the font "Wingdings": bullets, marks, arrows, hands and numbers in circles.
/// Its other characters are not in the basic plane, or in no font.
constexpr std::pair<uchar, char16_t> wingdings[] = {{0x22, 0x2702}, {0x28, 0x260E}, {0x2A, 0x2709},
    {0x3F, 0x270D}, {0x41, 0x270C}, {0x45, 0x261C}, {0x46, 0x261E}, {0x47, 0x261D}, {0x48, 0x261F},
    {0x4A, 0x263A}, {0x4C, 0x2639}, {0x4E, 0x2620}, {0x52, 0x263C}, {0x54, 0x2744}, {0x6C, 0x25CF},
    {0x6E, 0x25A0}, {0x6F, 0x25A1}, {0x71, 0x2751}, {0x72, 0x2752}, {0x75, 0x25C6}, {0x76, 0x2756},
    {0x80, 0x24EA}, {0x81, 0x2460}, {0x82, 0x2461}, {0x83, 0x2462}, {0x84, 0x2463}, {0x85, 0x2464},
    {0x86, 0x2465}, {0x87, 0x2466}, {0x88, 0x2467}, {0x89, 0x2468}, {0x8A, 0x2469}, {0x8C, 0x2776},
    {0x8D, 0x2777}, {0x8E, 0x2778}, {0x8F, 0x2779}, {0x90, 0x277A}, {0x91, 0x277B}, {0x92, 0x277C},
    {0x93, 0x277D}, {0x94, 0x277E}, {0x95, 0x277F}, {0x9F, 0x2022}, {0xA7, 0x25AA}, {0xA8, 0x25FB},
    {0xAB, 0x2605}, {0xD8, 0x27A2}, {0xE8, 0x2794}, {0xEF, 0x21E6}, {0xF0, 0x21E8}, {0xF1, 0x21E7},
    {0xF2, 0x21E9}, {0xFB, 0x2718}, {0xFC, 0x2714}, {0xFD, 0x2612}, {0xFE, 0x2611}};

constexpr char16_t symbolBase = 0xF000;

/// Which characters a single-byte character set has.
class Encoder
{
public:
    Encoder(int charset, const RtfCharset &page)
        : m_charset(charset)
    {
        for (int byte = 0x20; byte < 256; ++byte) {
            const char16_t character = page.character(static_cast<char>(byte));
            if (character && !m_bytes.contains(character))
                m_bytes.insert(character, static_cast<char>(byte));
        }
    }

    int charset() const { return m_charset; }
    std::optional<char> byteOf(char16_t character) const
    {
        const auto found = m_bytes.constFind(character);
        return found == m_bytes.cend() ? std::nullopt : std::optional(*found);
    }

private:
    int m_charset;
    QHash<char16_t, char> m_bytes;
};

/// Western first; then in the order in which readers of that age were spread.
const std::vector<Encoder> &encoders()
{
    static const std::vector<Encoder> all = [] {
        std::vector<Encoder> list;
        for (const int charset : {0, 238, 204, 161, 162, 186, 177, 178, 222, 163})
            list.emplace_back(charset, RtfCharset(RtfCharset::codePageOf(charset, {}, 1252)));
        return list;
    }();
    return all;
}

const Encoder &symbolEncoder(int fontPage)
{
    static const Encoder symbol(RtfCharset::symbolCharset, RtfCharset(RtfCharset::symbolFontPage));
    static const Encoder dings(RtfCharset::symbolCharset, RtfCharset(RtfCharset::wingdingsPage));
    return fontPage == RtfCharset::wingdingsPage ? dings : symbol;
}

} // namespace

RtfCharset::RtfCharset(int codePage)
    : m_codePage(codePage)
{
    if (codePage == symbolPage || codePage == symbolFontPage || codePage == wingdingsPage) {
        m_asciiBased = false;
        fillSymbols();
        return;
    }
    if (const Codec *codec = codecOf(codePage)) {
        if (codec->multiByte)
            m_codec = codec->name;
        else
            fill(codec->name);
        return;
    }
    const CodePage page(codePage);
    m_codePage = page.number();
    for (int byte = 0x20; byte < 256; ++byte) {
        const char raw = static_cast<char>(byte);
        m_table[static_cast<size_t>(byte)] = page.decode(QByteArrayView(&raw, 1))[0].unicode();
    }
}

void RtfCharset::fill(const char *codec)
{
    for (int byte = 0x20; byte < 256; ++byte) {
        QStringDecoder decoder(codec, QStringDecoder::Flag::Stateless);
        const char raw = static_cast<char>(byte);
        const QString text = decoder(QByteArrayView(&raw, 1));
        m_table[static_cast<size_t>(byte)] = text.size() == 1 ? text[0].unicode() : u'?';
    }
}

void RtfCharset::fillSymbols()
{
    for (int byte = 0x20; byte < 256; ++byte) {
        char16_t character = m_codePage == symbolFontPage ? symbolFont[byte - 0x20] : 0;
        if (!character)
            character = static_cast<char16_t>(symbolBase + byte);
        m_table[static_cast<size_t>(byte)] = character;
    }
    if (m_codePage == wingdingsPage) {
        for (const auto &[byte, character] : wingdings)
            m_table[byte] = character;
    }
}

bool RtfCharset::isLead(char byte) const
{
    const auto value = static_cast<unsigned char>(byte);
    switch (m_codePage) {
    case 932:
    case 10001:
        return (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
    case 65001: // no byte of its letters is ASCII
        return false;
    default:
        return isMultiByte() && value >= 0x81 && value <= 0xFE;
    }
}

QString RtfCharset::decode(QByteArrayView bytes) const
{
    if (isMultiByte()) {
        QStringDecoder decoder(m_codec.constData(), QStringDecoder::Flag::Stateless);
        return decoder(bytes);
    }
    QString text;
    text.reserve(bytes.size());
    for (const char byte : bytes)
        text.append(QChar(character(byte)));
    return text;
}

int RtfCharset::fontPage(const QString &family)
{
    if (family.compare(QLatin1StringView("Symbol"), Qt::CaseInsensitive) == 0)
        return symbolFontPage;
    if (family.compare(QLatin1StringView("Wingdings"), Qt::CaseInsensitive) == 0)
        return wingdingsPage;
    return 0;
}

int RtfCharset::codePageOf(int charset, const QString &family, int documentPage)
{
    if (charset == symbolCharset)
        return isSymbolFont(family) ? fontPage(family) : symbolPage;
    for (const CharsetRow &row : charsets) {
        if (row.charset == charset)
            return row.codePage;
    }
    return documentPage;
}

std::optional<int> RtfCharset::dropScript(QString &family)
{
    const auto isThere = [&family](const Script &script) {
        return family.size() > script.name.size()
            && family.endsWith(script.name, Qt::CaseInsensitive);
    };
    std::optional<int> charset;
    for (;;) {
        family = std::move(family).trimmed();
        const qsizetype maker = family.lastIndexOf(QLatin1StringView(" ["));
        const auto *script = std::find_if(std::begin(scripts), std::end(scripts), isThere);
        if (script != std::end(scripts)) {
            family.chop(script->name.size());
            if (!charset)
                charset = script->charset;
        } else if (maker > 0 && family.endsWith(u']')) {
            family.truncate(maker);
        } else {
            return charset;
        }
    }
}

int RtfCharset::known(int codePage)
{
    const bool symbols =
        codePage == symbolPage || codePage == symbolFontPage || codePage == wingdingsPage;
    return symbols || codecOf(codePage) ? codePage : CodePage(codePage).number();
}

const RtfCharset &RtfCharsets::page(int codePage)
{
    auto found = m_pages.find(codePage);
    if (found == m_pages.end()) {
        codePage = RtfCharset::known(codePage);
        found = m_pages.try_emplace(codePage, codePage).first;
    }
    return found->second;
}

std::optional<RtfCharset::Encoded> RtfCharset::encode(
    char16_t character, const QString &family, int charset)
{
    if (const int page = fontPage(family)) {
        if (const auto byte = symbolEncoder(page).byteOf(character))
            return Encoded {symbolCharset, *byte};
    } else if (character >= symbolBase + 0x20 && character <= symbolBase + 0xFF) {
        return Encoded {symbolCharset, static_cast<char>(character - symbolBase)};
    }
    for (const Encoder &encoder : encoders()) {
        if (encoder.charset() != charset)
            continue;
        if (const auto byte = encoder.byteOf(character))
            return Encoded {charset, *byte};
    }
    for (const Encoder &encoder : encoders()) {
        if (const auto byte = encoder.byteOf(character))
            return Encoded {encoder.charset(), *byte};
    }
    return std::nullopt;
}
