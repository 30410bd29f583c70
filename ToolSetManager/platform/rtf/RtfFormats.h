#pragma once

#include "platform/rtf/RtfCharset.h"
#include "platform/rtf/RtfState.h"
#include "platform/rtf/RtfTables.h"

#include <QHash>
#include <QSet>

#include <unordered_map>

class QTextDocument;
class RtfBuilder;
class RtfTokenizer;

/// What a text's character states mean: their numbers point into its tables of fonts and colours,
/// and its head tells what holds where they point nowhere. Everything is looked up once.
class RtfFormats
{
public:
    /// Builder and document are borrowed; \a codePage is that of texts that do not tell theirs.
    RtfFormats(RtfBuilder &builder, const QTextDocument &document, int codePage);

    // --- The head of the text ---
    void readFonts(RtfTokenizer &tokenizer); ///< Takes the rest of the group.
    void readColours(RtfTokenizer &tokenizer); ///< Likewise.
    void setDocumentPage(int codePage) { m_documentPage = codePage; }
    void setDefaultFont(int number) { m_defaultFont = number; }

    // --- A state ---
    /// Null when the table does not have the font.
    const RtfFont *font(const RtfCharState &state) const;
    /// The number of a font of that name, which is added where the table has none.
    int fontNumber(const QString &family) { return m_fonts.number(family, m_documentPage); }
    const RtfCharset &page(int codePage) { return m_charsets.page(codePage); }
    /// What bytes in that font mean.
    const RtfCharset &charset(const RtfCharState &state);
    /// Its look as a format of the builder. The numbers given before a table is read stay good.
    int format(const RtfCharState &state);

private:
    QTextCharFormat shownFormat(const RtfCharStyle &style);

    RtfBuilder &m_builder;
    const QTextDocument &m_document;
    int m_documentPage;
    int m_defaultFont = 0;
    RtfFontTable m_fonts;
    RtfColourTable m_colours;
    RtfCharsets m_charsets;
    std::unordered_map<RtfCharState, int, RtfCharState::Hash> m_formats;
    QHash<RtfCharStyle, int> m_styles; ///< Format number plus 1.
    QSet<QString> m_families; ///< That are shown as they are.
};
