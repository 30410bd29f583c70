#include "platform/rtf/RtfPlainText.h"

#include "platform/rtf/RtfTables.h"
#include "platform/rtf/RtfText.h"
#include "platform/rtf/RtfWalker.h"

#include <optional>
#include <vector>

namespace {

/// Deeper groups share their state, as in the reader.
constexpr size_t maximumSavedStates = 100'000;
constexpr int noFont = -1;

} // namespace

/// The state of reading one text.
class RtfPlainText::Run : private RtfWalker
{
public:
    Run(RtfPlainText &owner, QByteArrayView bytes)
        : RtfWalker(bytes)
        , m_owner(owner)
        , m_documentPage(owner.m_codePage)
    {
    }

    QString run()
    {
        walk();
        return m_text;
    }

private:
    struct State
    {
        int font = noFont;
        int fallbackLength = 1;
    };

    void groupOpened() override
    {
        if (m_saved.size() < maximumSavedStates)
            m_saved.push_back(m_state);
    }

    void groupClosed() override
    {
        if (!m_saved.empty() && m_saved.size() >= static_cast<size_t>(depth())) {
            m_state = m_saved.back();
            m_saved.pop_back();
        }
    }

    int fallbackLength() const override { return m_state.fallbackLength; }

    void word(RtfKeyword keyword, const RtfToken &token) override
    {
        flush();
        switch (keyword.word) {
        case RtfWord::Character:
            character(static_cast<char16_t>(keyword.value));
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
            character(u'\n');
            break;
        case RtfWord::Cell:
        case RtfWord::NestedCell:
            character(u'\t');
            break;
        case RtfWord::Plain:
            m_state.font = noFont;
            break;
        case RtfWord::Font:
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

    void group(RtfWord word) override
    {
        if (word == RtfWord::FontTable && !m_fontTable)
            m_fontTable = tokenizer(); // read when a character needs it, which is rare
        if (word != RtfWord::Entered && word != RtfWord::NewPicture)
            skipGroup();
    }

    void character(char16_t unit) override
    {
        if (unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator)
            unit = u'\n';
        if (unit != QChar::SoftHyphen && (unit >= u' ' || unit == u'\t' || unit == u'\n'))
            m_text.append(QChar(unit));
    }

    void bytes(QByteArrayView text, bool plain) override
    {
        if (plain && m_pending.isEmpty()) {
            m_text.append(QLatin1StringView(text.data(), text.size()));
            return;
        }
        m_pending.append(text);
        const RtfCharset &page = m_owner.m_charsets.page(codePage());
        for (const char c : text)
            m_inLetter = !m_inLetter && page.isLead(c);
    }

    bool isInLetter() override { return m_inLetter; }

    void flush() override
    {
        m_inLetter = false;
        if (m_pending.isEmpty())
            return;
        const RtfCharset &page = m_owner.m_charsets.page(codePage());
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
            m_fonts->read(*m_fontTable, m_documentPage, m_owner.m_charsets);
        }
        const RtfFont *font = m_fonts
            ? m_fonts->find(m_state.font == noFont ? m_defaultFont : m_state.font)
            : nullptr;
        return font && font->codePage > 0 ? font->codePage : m_documentPage;
    }

    RtfPlainText &m_owner;
    int m_documentPage;
    std::optional<RtfTokenizer> m_fontTable; ///< Where it starts.
    std::optional<RtfFontTable> m_fonts;
    int m_defaultFont = noFont;
    State m_state;
    std::vector<State> m_saved;
    QByteArray m_pending; ///< Bytes that a code page has to tell the meaning of.
    bool m_inLetter = false; ///< The last of them begins a letter of two.
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
