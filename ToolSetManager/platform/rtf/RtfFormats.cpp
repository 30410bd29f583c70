#include "platform/rtf/RtfFormats.h"

#include "platform/rtf/RtfBuilder.h"

#include <QFont>
#include <QTextDocument>

namespace {

/// Looking for a font takes the system a millisecond: a text that names more than any text needs is
/// shown in the usual one from there on, and keeps its names.
constexpr qsizetype maximumFamilies = 500;

} // namespace

RtfFormats::RtfFormats(RtfBuilder &builder, const QTextDocument &document, int codePage)
    : m_builder(builder)
    , m_document(document)
    , m_documentPage(codePage)
{
}

void RtfFormats::readFonts(RtfTokenizer &tokenizer)
{
    m_fonts.read(tokenizer, m_documentPage, m_charsets);
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
    return m_charsets.page(of ? of->codePage : m_documentPage);
}

QTextCharFormat RtfFormats::shownFormat(const RtfCharStyle &style)
{
    QTextCharFormat format = style.toFormat();
    if (m_families.size() < maximumFamilies)
        m_families.insert(style.family);
    else if (!m_families.contains(style.family))
        format.setFontFamilies({m_document.defaultFont().family()});
    return format;
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
            number = m_builder.addFormat(shownFormat(style)) + 1;
        entry->second = number - 1;
    }
    return entry->second;
}
