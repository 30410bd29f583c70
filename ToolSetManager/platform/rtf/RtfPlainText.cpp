#include "platform/rtf/RtfPlainText.h"

#include "platform/rtf/RtfGroup.h"
#include "platform/rtf/RtfKeywords.h"
#include "platform/rtf/RtfTables.h"
#include "platform/rtf/RtfText.h"

#include <optional>
#include <vector>

namespace {

/// Deeper groups share their state, as in the reader.
constexpr size_t maximumSavedStates = 100'000;
constexpr int maximumFallback = 255; // of \uc
constexpr int noFont = -1;

} // namespace

/// The state of reading one text.
class RtfPlainText::Run
{
public:
    Run(RtfPlainText &owner, QByteArrayView bytes)
        : m_owner(owner)
        , m_documentPage(owner.m_codePage)
        , m_tokenizer(bytes)
    {
    }

    QString run()
    {
        do {
            const RtfToken token = m_tokenizer.next();
            switch (token.kind) {
            case RtfToken::End:
                m_depth = 0;
                break;
            case RtfToken::GroupStart:
                openGroup();
                break;
            case RtfToken::GroupEnd:
                closeGroup();
                break;
            case RtfToken::Word:
                word(token);
                break;
            case RtfToken::Symbol:
                symbol(token.byte);
                break;
            case RtfToken::Byte:
                bytes(QByteArrayView(&token.byte, 1), false);
                break;
            case RtfToken::Text:
                bytes(token.text, token.plain);
                break;
            case RtfToken::Binary:
                break;
            }
        } while (m_depth > 0);
        decodePending();
        return m_text;
    }

private:
    struct State
    {
        int font = noFont;
        int fallbackLength = 1;
    };

    void openGroup()
    {
        decodePending();
        m_skipCharacters = 0;
        m_ignorable = false;
        ++m_depth;
        if (m_saved.size() < maximumSavedStates)
            m_saved.push_back(m_state);
        if (std::exchange(m_skipNextGroup, false))
            skipGroup();
    }

    void closeGroup()
    {
        decodePending();
        m_skipCharacters = 0;
        m_ignorable = false;
        if (!m_saved.empty() && m_saved.size() >= m_depth) {
            m_state = m_saved.back();
            m_saved.pop_back();
        }
        if (m_depth > 0)
            --m_depth;
    }

    void skipGroup()
    {
        RtfGroup group(m_tokenizer);
        while (group.next()) { }
        closeGroup();
    }

    void word(const RtfToken &token)
    {
        const RtfKeyword keyword = rtfKeyword(token.text);
        if (m_skipCharacters > 0) {
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
        if (isGroup) {
            group(keyword.word);
            return;
        }
        switch (keyword.word) {
        case RtfWord::Character:
            append(static_cast<char16_t>(keyword.value));
            break;
        case RtfWord::Unicode:
            unicode(token.parameter);
            break;
        case RtfWord::FallbackLength:
            m_state.fallbackLength =
                token.hasParameter ? qBound(0, token.parameter, maximumFallback) : 1;
            break;
        case RtfWord::Paragraph:
        case RtfWord::Page:
        case RtfWord::Section:
        case RtfWord::Row:
        case RtfWord::NestedRow:
            append(u'\n');
            break;
        case RtfWord::Cell:
        case RtfWord::NestedCell:
            append(u'\t');
            break;
        case RtfWord::Plain:
            decodePending();
            m_state.font = noFont;
            break;
        case RtfWord::Font:
            decodePending();
            m_state.font = token.parameter;
            break;
        case RtfWord::AnsiCodePage:
            if (token.parameter > 0)
                m_documentPage = token.parameter;
            break;
        case RtfWord::CodePage:
            m_documentPage = keyword.value;
            break;
        case RtfWord::DefaultFont:
            m_defaultFont = token.parameter;
            break;
        default:
            break;
        }
    }

    void group(RtfWord word)
    {
        switch (word) {
        case RtfWord::FontTable:
            if (!m_fontTable)
                m_fontTable = m_tokenizer; // read when a character needs it, which is rare
            skipGroup();
            break;
        case RtfWord::EitherOr:
            m_skipNextGroup = true;
            break;
        case RtfWord::Entered:
        case RtfWord::NewPicture:
            break;
        default:
            skipGroup();
            break;
        }
    }

    void symbol(char symbol)
    {
        switch (symbol) {
        case '*':
            m_ignorable = true;
            return;
        case '\r':
        case '\n':
            m_skipCharacters = 0;
            append(u'\n');
            return;
        default:
            break;
        }
        if (m_skipCharacters > 0) {
            --m_skipCharacters;
            return;
        }
        if (symbol == '\\' || symbol == '{' || symbol == '}' || symbol == '\t')
            append(static_cast<char16_t>(symbol));
        else if (symbol == '~')
            append(QChar::Nbsp);
        else if (symbol == '_')
            append(0x2011);
    }

    void unicode(int number)
    {
        if (number < 0)
            number += 0x10000;
        if (number > 0 && number <= 0xFFFF)
            append(static_cast<char16_t>(number));
        else if (number > 0xFFFF && number <= 0x10FFFF) {
            append(QChar::highSurrogate(static_cast<char32_t>(number)));
            append(QChar::lowSurrogate(static_cast<char32_t>(number)));
        }
        m_skipCharacters = m_state.fallbackLength;
    }

    void append(char16_t unit)
    {
        decodePending();
        if (unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator)
            unit = u'\n';
        if (unit >= u' ' || unit == u'\t' || unit == u'\n')
            m_text.append(QChar(unit));
    }

    /// \a plain: all are printable ASCII.
    void bytes(QByteArrayView text, bool plain)
    {
        m_ignorable = false;
        const qsizetype skipped = qMin(text.size(), qsizetype(m_skipCharacters));
        m_skipCharacters -= static_cast<int>(skipped);
        text = text.sliced(skipped);
        if (plain && m_pending.isEmpty())
            m_text.append(QLatin1StringView(text.data(), text.size()));
        else
            m_pending.append(text);
    }

    void decodePending()
    {
        if (m_pending.isEmpty())
            return;
        const RtfCharset &page = m_owner.charset(codePage());
        const QByteArray pending = std::exchange(m_pending, {});
        if (page.isMultiByte()) {
            m_text.append(page.decode(pending));
            return;
        }
        for (const char c : pending) {
            const char16_t unit = c == '\t' ? u'\t' : page.character(c);
            if (unit >= u' ' || unit == u'\t')
                m_text.append(QChar(unit));
        }
    }

    int codePage()
    {
        if (m_fontTable && !m_fonts) {
            m_fonts.emplace();
            m_fonts->read(*m_fontTable, m_documentPage);
        }
        const RtfFont *font = m_fonts
            ? m_fonts->find(m_state.font == noFont ? m_defaultFont : m_state.font)
            : nullptr;
        return font && font->codePage > 0 ? font->codePage : m_documentPage;
    }

    RtfPlainText &m_owner;
    int m_documentPage;
    RtfTokenizer m_tokenizer;
    std::optional<RtfTokenizer> m_fontTable; ///< Where it starts.
    std::optional<RtfFontTable> m_fonts;
    int m_defaultFont = noFont;
    State m_state;
    std::vector<State> m_saved;
    size_t m_depth = 0;
    bool m_ignorable = false; ///< `\*` was just read.
    bool m_skipNextGroup = false;
    int m_skipCharacters = 0; ///< Left of the fallback of the last \u.
    QByteArray m_pending; ///< Bytes that a code page has to tell the meaning of.
    QString m_text;
};

RtfPlainText::RtfPlainText(int codePage)
    : m_codePage(codePage)
{
}

QString RtfPlainText::read(const QString &text)
{
    if (!RtfText::isRtf(text))
        return text;
    return Run(*this, RtfText::toBytes(text, m_codePage)).run();
}

const RtfCharset &RtfPlainText::charset(int codePage)
{
    const auto found = m_charsets.constFind(codePage);
    return found != m_charsets.constEnd() ? *found
                                          : *m_charsets.insert(codePage, RtfCharset(codePage));
}
