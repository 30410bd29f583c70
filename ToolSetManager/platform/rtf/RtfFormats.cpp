#include "platform/rtf/RtfFormats.h"

#include "platform/rtf/RtfBuilder.h"

#include <QFont>
#include <QTextDocument>

RtfFormats::RtfFormats(RtfBuilder &builder, const QTextDocument &document, int codePage)
    : m_builder(builder)
    , m_document(document)
    , m_documentPage(codePage)
{
}

void RtfFormats::readFonts(RtfTokenizer &tokenizer)
{
    m_fonts.read(tokenizer, m_documentPage);
    m_formats.clear();
}

void RtfFormats::readColours(RtfTokenizer &tokenizer)
{
    m_colours.read(tokenizer);
    m_formats.clear();
}

const RtfFont *RtfFormats::font(const RtfCharState &state) const
{
    return m_fonts.find(state.font == RtfCharState::noFont ? m_defaultFont : state.font);
}

const RtfCharset &RtfFormats::charset(const RtfCharState &state)
{
    const RtfFont *of = font(state);
    const int page = of ? of->codePage : m_documentPage;
    auto &entry = m_charsets[page];
    if (!entry)
        entry = std::make_shared<const RtfCharset>(page);
    return *entry;
}

int RtfFormats::format(const RtfCharState &state)
{
    const auto [entry, isNew] = m_formats.try_emplace(state, 0);
    if (isNew) {
        RtfCharStyle style;
        const RtfFont *of = font(state);
        style.family = of ? of->family : m_document.defaultFont().family();
        style.halfPoints = state.halfPoints;
        style.offset = state.offset;
        style.flags = state.flags;
        style.colour = m_colours.find(state.colour);
        if (state.background > 0) // 0 is "none", whatever the table says
            style.background = m_colours.find(state.background);
        // States that differ in the charset alone look the same and make one run.
        auto &number = m_styles[style];
        if (number == 0)
            number = m_builder.addFormat(style.toFormat()) + 1;
        entry->second = number - 1;
    }
    return entry->second;
}
