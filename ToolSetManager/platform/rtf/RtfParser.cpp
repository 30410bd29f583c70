#include "platform/rtf/RtfParser.h"

#include "platform/rtf/RtfField.h"
#include "platform/rtf/RtfGroup.h"
#include "platform/rtf/RtfPictureGroup.h"

#include <QTextDocument>

namespace {

/// Deeper groups share their state: real texts nest a dozen deep, and a text made of braces must
/// not take more memory than its size warrants.
constexpr size_t maximumSavedStates = 100'000;

qint64 pictureBudget(const RtfReadOptions &options, qsizetype size)
{
    if (options.pictureMemory > 0)
        return options.pictureMemory;
    constexpr qint64 base = 64 << 20;
    constexpr qint64 most = 512 << 20;
    return qMin(base + 100 * qint64(size), most);
}

} // namespace

RtfParser::RtfParser(const RtfReadOptions &options, QByteArrayView bytes, QTextDocument &document)
    : RtfWalker(bytes)
    , m_options(options)
    , m_document(document)
    , m_builder(document)
    , m_formats(m_builder, document, options.defaultCodePage)
    , m_pictureMemory(pictureBudget(options, bytes.size()))
{
}

RtfParser::~RtfParser() = default;

bool RtfParser::run()
{
    walk();
    const bool ended = m_line.isEmpty() && m_label.isEmpty() && !m_builder.isEmpty();
    if (!ended)
        endParagraph();
    return ended;
}

// --- Groups ---

void RtfParser::groupClosed()
{
    if (m_symbol && depth() <= m_symbol->depth)
        insertSymbol();
    if (m_unsavedGroups > 0) {
        --m_unsavedGroups;
    } else if (!m_saved.empty()) {
        m_state = std::move(m_saved.back().state);
        m_unsavedGroups = m_saved.back().groups - 1;
        m_saved.pop_back();
        m_format = -1;
        m_charset = nullptr;
    }
}

RtfState &RtfParser::change()
{
    if (m_unsavedGroups > 0 && m_saved.size() < maximumSavedStates)
        m_saved.push_back({m_state, std::exchange(m_unsavedGroups, 0)});
    return m_state;
}

RtfCharState &RtfParser::changeCharacters()
{
    flush();
    m_format = -1;
    return change().characters;
}

// --- Text ---

void RtfParser::bytes(QByteArrayView text, bool plain)
{
    const RtfCharset &page = charset();
    if (page.isMultiByte() && (!plain || !m_pending.isEmpty())) {
        m_pending.append(text);
        for (const char c : text)
            m_inLetter = !m_inLetter && page.isLead(c);
    } else if (plain && page.isAsciiBased()) {
        line().text.append(QLatin1StringView(text.data(), text.size()));
        closeRun();
    } else {
        for (const char c : text)
            appendToLine(c == '\t' ? u'\t' : page.character(c));
        closeRun();
    }
}

void RtfParser::unicode(char16_t unit)
{
    // Symbol fonts are also written with its bytes in the range for private use.
    const RtfFont *font = m_formats.font(m_state.characters);
    if ((unit & 0xFF00) == 0xF000 && (unit & 0xFF) >= 0x20 && font
        && RtfCharset::isSymbolFont(font->family)) {
        const RtfCharset &symbols = m_formats.page(RtfCharset::fontPage(font->family));
        unit = symbols.character(static_cast<char>(unit & 0xFF));
    }
    character(unit);
}

void RtfParser::character(char16_t unit)
{
    appendToLine(unit);
    closeRun();
}

void RtfParser::appendToLine(char16_t unit)
{
    if (unit < 0x20 && unit != u'\t')
        return;
    switch (unit) {
    case QChar::ParagraphSeparator:
        unit = QChar::LineSeparator;
        break;
    case 0xFDD0: // these three have a meaning of their own in a QTextDocument
    case 0xFDD1:
    case QChar::ObjectReplacementCharacter:
        unit = QChar::ReplacementCharacter;
        break;
    default:
        break;
    }
    line().text.append(QChar(unit));
}

void RtfParser::flush()
{
    m_inLetter = false;
    if (m_pending.isEmpty())
        return;
    const QString decoded = charset().decode(std::exchange(m_pending, {}));
    for (const QChar c : decoded)
        appendToLine(c.unicode());
    closeRun();
}

void RtfParser::closeRun()
{
    RtfLine &to = line();
    const qsizetype closed = to.runs.empty() ? 0 : to.runs.back().end;
    if (to.text.size() == closed)
        return;
    to.closeRun(currentFormat());
    m_cellEnded = false;
    m_newPicture = NewPicture::None;
    if (!m_state.oldListText)
        m_lastTextFormat = m_format;
}

const RtfCharset &RtfParser::charset()
{
    if (!m_charset)
        m_charset = &m_formats.charset(m_state.characters);
    return *m_charset;
}

int RtfParser::currentFormat()
{
    if (m_format < 0)
        m_format = m_formats.format(m_state.characters);
    return m_format;
}

// --- Words ---

void RtfParser::word(RtfKeyword keyword, const RtfToken &token)
{
    if (keyword.word >= RtfWord::Ansi && keyword.word <= RtfWord::DefaultFont)
        documentWord(keyword, token);
    else if (keyword.word >= RtfWord::InTable && keyword.word < RtfWord::Ansi)
        tableWord(keyword, token);
    else if (keyword.word >= RtfWord::ParagraphDefaults && keyword.word < RtfWord::InTable)
        change().applyToParagraph(keyword, token);
    else if (keyword.word < RtfWord::ParagraphDefaults)
        characterWord(keyword, token);
}

void RtfParser::characterWord(RtfKeyword keyword, const RtfToken &token)
{
    switch (keyword.word) {
    case RtfWord::Character:
        flush();
        character(static_cast<char16_t>(keyword.value));
        break;
    case RtfWord::FallbackLength:
        change().fallbackLength =
            token.hasParameter ? qBound(0, token.parameter, maximumFallback) : 1;
        break;
    case RtfWord::Paragraph:
        flush();
        if (m_state.inTable)
            character(QChar::LineSeparator);
        else
            endParagraph();
        break;
    case RtfWord::Page:
    case RtfWord::Section:
        flush();
        if (!m_line.isEmpty())
            endParagraph();
        if (keyword.word == RtfWord::Page)
            m_pageBreak = true;
        break;
    case RtfWord::Plain:
        changeCharacters() = {};
        m_state.script = RtfScript::Any;
        m_charset = nullptr;
        break;
    case RtfWord::Script:
        if (const RtfScript script = m_state.scriptAfter(keyword); script != m_state.script)
            change().script = script;
        break;
    case RtfWord::AssociatedSize:
    case RtfWord::AssociatedFlag:
        // Those of other scripts say how text would look that is not there.
        if (m_state.script == RtfScript::EastAsian || m_state.script == RtfScript::Any)
            changeCharacters().apply(keyword, token);
        break;
    case RtfWord::Font:
        changeCharacters().apply(keyword, token); // looks up the former font for what is pending
        m_charset = nullptr;
        break;
    default:
        changeCharacters().apply(keyword, token);
        break;
    }
}

void RtfParser::documentWord(RtfKeyword keyword, const RtfToken &token)
{
    flush();
    m_charset = nullptr;
    switch (keyword.word) {
    case RtfWord::AnsiCodePage:
        if (token.parameter > 0)
            m_formats.setDocumentPage(token.parameter);
        break;
    case RtfWord::CodePage:
        m_formats.setDocumentPage(keyword.value);
        break;
    case RtfWord::DefaultTab:
        if (const int twips = RtfParagraphStyle::bounded(token.parameter); twips > 0)
            RtfParagraphStyle::setDefaultTab(m_document, twips);
        break;
    case RtfWord::DefaultFont:
        m_formats.setDefaultFont(token.parameter);
        break;
    default:
        break;
    }
}

void RtfParser::group(RtfWord word)
{
    switch (word) {
    case RtfWord::FontTable:
        m_formats.readFonts(tokenizer());
        closeGroup();
        break;
    case RtfWord::ColourTable:
        m_formats.readColours(tokenizer());
        closeGroup();
        break;
    case RtfWord::ListTable:
        m_lists.readLists(tokenizer());
        closeGroup();
        break;
    case RtfWord::ListOverrideTable:
        m_lists.readOverrides(tokenizer());
        closeGroup();
        break;
    case RtfWord::OldList:
        readOldList();
        break;
    case RtfWord::OldListText:
        change().oldListText = true;
        break;
    case RtfWord::Picture:
        readPicture();
        break;
    case RtfWord::NewPicture:
        change().newPicture = true;
        m_newPicture = NewPicture::None;
        break;
    case RtfWord::OldPicture:
        if (m_newPicture == NewPicture::Shown)
            skipGroup();
        else
            change().oldPicture = true;
        break;
    case RtfWord::NestedTableProperties:
        readNestedTableProperties();
        break;
    case RtfWord::FieldInstruction:
        readField();
        break;
    default:
        break;
    }
    m_format = -1;
    m_charset = nullptr;
}

void RtfParser::readOldList()
{
    std::optional<bool> bullet;
    RtfGroup group(tokenizer());
    while (group.next()) {
        if (group.depth > 1 || group.token.kind != RtfToken::Word)
            continue;
        const RtfWord word = rtfKeyword(group.token.text).word;
        if (word == RtfWord::BulletLevel)
            bullet = true;
        else if (word == RtfWord::OtherLevel)
            bullet = false;
    }
    closeGroup();
    if (bullet) // it is the paragraph's, not the group's
        change().paragraph.bullet = *bullet;
}

/// Remembers the character that the field stands for, if it is one.
void RtfParser::readField()
{
    const qsizetype field = depth() - 1;
    const auto symbol = RtfField::read(tokenizer(), m_state.characters);
    closeGroup();
    if (!symbol)
        return;
    RtfCharState look = symbol->look;
    if (!symbol->family.isEmpty())
        look.font = m_formats.fontNumber(symbol->family);
    char16_t unit = static_cast<char16_t>(symbol->code);
    const RtfCharset &page = m_formats.charset(look);
    if (!symbol->isUnicode && symbol->code < 0x100 && !page.isMultiByte())
        unit = page.character(static_cast<char>(symbol->code));
    m_symbol = Symbol {field, m_length + m_line.text.size(), look, unit};
}

/// At the end of its field.
void RtfParser::insertSymbol()
{
    const Symbol symbol = *std::exchange(m_symbol, std::nullopt);
    if (m_length + m_line.text.size() != symbol.length || m_state.oldListText)
        return; // the field's result says what it looks like
    const int before = std::exchange(m_format, m_formats.format(symbol.look));
    character(symbol.unit);
    m_format = before;
}

// --- Paragraphs ---

RtfParagraphStyle RtfParser::paragraphStyle() const
{
    constexpr int singleLine = 240;
    RtfParagraphStyle style = m_state.paragraph;
    if (m_lists.isBullet(m_state.list, m_state.listLevel))
        style.bullet = true;
    if (style.lineSpacing == 0 || (style.lineSpacingMultiple && style.lineSpacing == singleLine)) {
        style.lineSpacing = 0;
        style.lineSpacingMultiple = false;
    } else if (style.lineSpacing < 0) {
        style.lineSpacingMultiple = false; // exactly so high, whatever else is said
    }
    style.pageBreakBefore |= m_pageBreak;
    return style;
}

void RtfParser::endParagraph()
{
    addParagraph(m_state.inTable && m_row.hasCells() ? m_row.style() : paragraphStyle());
}

void RtfParser::addParagraph(const RtfParagraphStyle &style)
{
    if (style.bullet)
        m_label.clear(); // the bullet is drawn, not written
    // The mark of a paragraph with text looks like its last text: nobody sees another one.
    int mark = m_lastTextFormat;
    if (mark < 0)
        mark = m_label.isEmpty() ? currentFormat() : m_label.runs.back().format;
    m_length += m_line.text.size() + 1;
    m_builder.addParagraph(m_label, m_line, style, mark);
    m_label.clear();
    m_line.clear();
    m_lastTextFormat = -1;
    m_cellEnded = false;
    m_pageBreak = false;
    m_newPicture = NewPicture::None;
}

// --- Tables ---

void RtfParser::tableWord(RtfKeyword keyword, const RtfToken &token)
{
    flush();
    switch (keyword.word) {
    case RtfWord::InTable:
        change().inTable = !token.hasParameter || token.parameter != 0;
        break;
    case RtfWord::Cell:
    case RtfWord::NestedCell:
        character(u'\t');
        m_cellEnded = true;
        break;
    case RtfWord::Row:
        endRow();
        break;
    case RtfWord::NestedRow:
        endNestedRow();
        break;
    default:
        m_row.apply(keyword, token);
        break;
    }
}

void RtfParser::endRow()
{
    if (m_cellEnded) {
        m_line.chop(1); // tabs stand between cells, not behind the last
        if (!m_line.isEmpty())
            m_lastTextFormat = m_line.runs.back().format;
    }
    addParagraph(m_row.style());
}

void RtfParser::endNestedRow()
{
    if (m_cellEnded)
        m_line.chop(1);
    character(QChar::LineSeparator);
}

void RtfParser::readNestedTableProperties()
{
    RtfGroup group(tokenizer());
    bool ended = false;
    while (group.next()) {
        if (group.token.kind == RtfToken::Word)
            ended |= rtfKeyword(group.token.text).word == RtfWord::NestedRow;
    }
    closeGroup();
    if (ended)
        endNestedRow();
}

// --- Pictures ---

void RtfParser::readPicture()
{
    const auto picture = RtfPictureGroup::read(tokenizer());
    closeGroup();
    if (picture)
        insertPicture(*picture);
}

void RtfParser::insertPicture(const RtfPicture &picture)
{
    const QString name = picture.resourceName();
    auto known = m_pictures.constFind(name);
    if (known == m_pictures.cend()) {
        const QImage image = picture.decode(m_options.metafileDecoder, m_pictureMemory);
        known = m_pictures.insert(name, RtfPicture::addResource(m_document, name, image));
    }
    const bool decoded = *known == name;
    if (m_state.oldPicture && m_newPicture == NewPicture::Failed) {
        if (!decoded)
            return; // the newer form has its place already
        line().chop(1); // the frame that stands for the newer form
    }
    const int format =
        m_builder.addFormat(picture.toFormat(m_builder.format(currentFormat()), *known));
    line().text.append(QChar::ObjectReplacementCharacter);
    line().closeRun(format);
    m_cellEnded = false;
    if (m_lastTextFormat < 0 && !m_state.oldListText)
        m_lastTextFormat = currentFormat();
    m_newPicture = !m_state.newPicture ? NewPicture::None
        : decoded                      ? NewPicture::Shown
                                       : NewPicture::Failed;
}
