#include "platform/rtf/RtfTables.h"

#include "platform/rtf/RtfCharset.h"
#include "platform/rtf/RtfGroup.h"
#include "platform/rtf/RtfKeywords.h"

#include <algorithm>

namespace {

constexpr int noCharset = -1;
constexpr int bulletStyle = 23; // of \levelnfc

/// Fonts of symbols whose characters have codes of their own only in those fonts.
bool isUnknownSymbolFont(const QString &family)
{
    static constexpr QLatin1StringView names[] = {QLatin1StringView("Wingdings 2"),
        QLatin1StringView("Wingdings 3"), QLatin1StringView("Webdings"),
        QLatin1StringView("ZapfDingbats"), QLatin1StringView("Monotype Sorts"),
        QLatin1StringView("Marlett")};
    return std::any_of(std::begin(names), std::end(names),
        [&family](auto name) { return family.compare(name, Qt::CaseInsensitive) == 0; });
}

} // namespace

// --- Fonts ---

void RtfFontTable::read(RtfTokenizer &tokenizer, int documentPage, RtfCharsets &charsets)
{
    int number = 0;
    int charset = noCharset;
    int codePage = 0;
    QByteArray bytes; // of the name
    QString name; // as far as it is spelled in Unicode
    int fallback = 0; // bytes left that say the last Unicode character once more
    const auto page = [&](const QString &family) {
        return RtfCharset::codePageOf(charset, family, codePage > 0 ? codePage : documentPage);
    };
    const auto decode = [&] {
        // A name is no symbols.
        const int of = charset == RtfCharset::symbolCharset ? documentPage : page({});
        name.append(charsets.page(of).decode(std::exchange(bytes, {})));
    };
    const auto append = [&](char c) {
        if (fallback > 0)
            --fallback;
        else
            bytes.append(c);
    };
    const auto finish = [&] {
        decode();
        name.removeIf([](QChar c) { return c < u' ' || c == u'\x7F'; });
        name = std::exchange(name, {}).trimmed();
        const auto implied = RtfCharset::dropScript(name);
        const bool isTold =
            codePage > 0 || (charset != noCharset && charset != RtfCharset::ansiCharset);
        if (implied && !isTold)
            charset = *implied;
        if (!name.isEmpty())
            m_fonts.insert(number, {name, page(name)});
        name.clear();
        charset = noCharset;
        codePage = 0;
        fallback = 0;
    };
    RtfGroup group(tokenizer);
    while (group.next()) {
        const RtfToken &token = group.token;
        if (token.kind == RtfToken::GroupEnd && group.depth == 1)
            finish();
        if (group.depth > 2) // other names of the font, its shape
            continue;
        switch (token.kind) {
        case RtfToken::Word: {
            const RtfKeyword keyword = rtfKeyword(token.text);
            if (keyword.word == RtfWord::Font)
                number = token.parameter;
            else if (keyword.word == RtfWord::FontCharset) {
                charset = token.parameter;
                codePage = 0;
            } else if (keyword.word == RtfWord::FontCodePage) {
                if (charset != RtfCharset::symbolCharset)
                    charset = noCharset; // what is said last counts
                codePage = token.parameter;
            } else if (keyword.word == RtfWord::Unicode) {
                decode();
                name.append(QChar(static_cast<char16_t>(token.parameter)));
                fallback = 1;
            }
            break;
        }
        case RtfToken::Byte:
            append(token.byte);
            break;
        case RtfToken::Symbol:
            if (token.byte == '\\' || token.byte == '{' || token.byte == '}')
                append(token.byte);
            break;
        case RtfToken::Text:
            for (const char c : token.text) {
                if (c == ';')
                    finish();
                else
                    append(c);
            }
            break;
        default:
            break;
        }
    }
    if (group.depth == 0) // not cut off
        finish();
}

int RtfFontTable::number(const QString &family, int documentPage)
{
    const auto known = m_added.constFind(family);
    if (known != m_added.cend())
        return *known;
    const auto named = std::find_if(m_fonts.cbegin(), m_fonts.cend(),
        [&family](const RtfFont &font) { return font.family == family; });
    constexpr int firstAdded = -1'000'000; // no text has such numbers
    const int number =
        named != m_fonts.cend() ? named.key() : firstAdded - static_cast<int>(m_added.size());
    if (named == m_fonts.cend()) {
        const bool symbols = RtfCharset::isSymbolFont(family) || isUnknownSymbolFont(family);
        const int charset = symbols ? RtfCharset::symbolCharset : noCharset;
        m_fonts.insert(number, {family, RtfCharset::codePageOf(charset, family, documentPage)});
    }
    m_added.insert(family, number);
    return number;
}

const RtfFont *RtfFontTable::find(int number) const
{
    const auto found = m_fonts.constFind(number);
    return found == m_fonts.cend() ? nullptr : &*found;
}

// --- Colours ---

void RtfColourTable::read(RtfTokenizer &tokenizer)
{
    m_colours.clear();
    int red = 0;
    int green = 0;
    int blue = 0;
    bool given = false;
    RtfGroup group(tokenizer);
    while (group.next()) {
        const RtfToken &token = group.token;
        if (token.kind == RtfToken::Word) {
            int *part = nullptr;
            switch (rtfKeyword(token.text).word) {
            case RtfWord::Red:
                part = &red;
                break;
            case RtfWord::Green:
                part = &green;
                break;
            case RtfWord::Blue:
                part = &blue;
                break;
            default:
                continue;
            }
            *part = qBound(0, token.parameter, 255);
            given = true;
        } else if (token.kind == RtfToken::Text) {
            for (const char c : token.text) {
                if (c != ';')
                    continue;
                m_colours.push_back(given ? std::optional(qRgb(red, green, blue)) : std::nullopt);
                red = green = blue = 0;
                given = false;
            }
        }
    }
    // Writers of the first age spell the automatic colour out as black.
    if (!m_colours.empty() && m_colours[0] == qRgb(0, 0, 0))
        m_colours[0].reset();
}

std::optional<QRgb> RtfColourTable::find(int number) const
{
    if (number < 0 || static_cast<size_t>(number) >= m_colours.size())
        return std::nullopt;
    return m_colours[static_cast<size_t>(number)];
}

// --- Lists ---

void RtfListTable::readLists(RtfTokenizer &tokenizer)
{
    QList<int> levels;
    int identity = 0;
    RtfGroup group(tokenizer);
    while (group.next()) {
        const RtfToken &token = group.token;
        if (token.kind == RtfToken::GroupEnd && group.depth == 1)
            m_lists.insert(identity, std::exchange(levels, {}));
        if (token.kind != RtfToken::Word)
            continue;
        switch (rtfKeyword(token.text).word) {
        case RtfWord::ListEntry:
            levels.append(0);
            break;
        case RtfWord::ListStyle:
            if (!levels.isEmpty())
                levels.last() = token.parameter;
            break;
        case RtfWord::ListIdentity:
            identity = token.parameter;
            break;
        default:
            break;
        }
    }
}

void RtfListTable::readOverrides(RtfTokenizer &tokenizer)
{
    int identity = 0;
    int number = 0;
    RtfGroup group(tokenizer);
    while (group.next()) {
        const RtfToken &token = group.token;
        if (token.kind == RtfToken::GroupEnd && group.depth == 1)
            m_overrides.insert(number, identity);
        if (token.kind != RtfToken::Word)
            continue;
        const RtfWord word = rtfKeyword(token.text).word;
        if (word == RtfWord::ListIdentity)
            identity = token.parameter;
        else if (word == RtfWord::ListNumber)
            number = token.parameter;
    }
}

bool RtfListTable::isBullet(int number, int level) const
{
    const auto found = m_lists.constFind(m_overrides.value(number));
    if (number <= 0 || found == m_lists.cend())
        return false;
    return found->value(level, found->value(0)) == bulletStyle;
}
