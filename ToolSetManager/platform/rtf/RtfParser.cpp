#include "platform/rtf/RtfParser.h"

#include "platform/rtf/RtfGroup.h"
#include "platform/rtf/RtfPictureGroup.h"

#include <QTextDocument>

namespace {

/// Deeper groups share their state: real texts nest a dozen deep, and a text made of braces must
/// not take more memory than its size warrants.
constexpr size_t maximumSavedStates = 100'000;

constexpr int maximumFallback = 255; // of \uc

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
    : m_options(options)
    , m_document(document)
    , m_tokenizer(bytes)
    , m_builder(document)
    , m_formats(m_builder, document, options.defaultCodePage)
    , m_pictureMemory(pictureBudget(options, bytes.size()))
{
}

RtfParser::~RtfParser() = default;

bool RtfParser::run()
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
            if (m_depth == 1)
                m_depth = 0; // the last paragraph looks as its end does, not as the beginning did
            else
                closeGroup();
            break;
        case RtfToken::Word:
            word(token);
            break;
        case RtfToken::Symbol:
            symbol(token.byte);
            break;
        case RtfToken::Byte:
            byte(token.byte);
            break;
        case RtfToken::Text:
            text(token);
            break;
        case RtfToken::Binary: // outside a picture
            m_skipCharacters = qMax(0, m_skipCharacters - 1);
            break;
        }
    } while (m_depth > 0);
    decodePending();
    const bool ended = m_line.isEmpty() && m_label.isEmpty() && !m_builder.isEmpty();
    if (!ended)
        endParagraph();
    return ended;
}

// --- Groups ---

void RtfParser::openGroup()
{
    decodePending();
    m_skipCharacters = 0;
    m_ignorable = false;
    ++m_depth;
    ++m_unsavedGroups;
    if (std::exchange(m_skipNextGroup, false))
        skipGroup();
}

void RtfParser::closeGroup()
{
    decodePending();
    m_skipCharacters = 0;
    m_ignorable = false;
    --m_depth;
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
    decodePending();
    m_format = -1;
    return change().characters;
}

void RtfParser::skipGroup()
{
    RtfGroup group(m_tokenizer);
    while (group.next()) { }
    closeGroup();
}

// --- Text ---

void RtfParser::text(const RtfToken &token)
{
    m_ignorable = false;
    QByteArrayView bytes = token.text;
    if (m_skipCharacters > 0) {
        const qsizetype skipped = qMin(bytes.size(), qsizetype(m_skipCharacters));
        m_skipCharacters -= static_cast<int>(skipped);
        bytes = bytes.sliced(skipped);
        if (bytes.isEmpty())
            return;
    }
    const RtfCharset &page = charset();
    if (page.isMultiByte() && (!token.plain || !m_pending.isEmpty())) {
        m_pending.append(bytes);
    } else if (token.plain && page.isAsciiBased()) {
        line().text.append(QLatin1StringView(bytes.data(), bytes.size()));
        closeRun();
    } else {
        for (const char c : bytes)
            appendToLine(c == '\t' ? u'\t' : page.character(c));
        closeRun();
    }
}

void RtfParser::byte(char byte)
{
    m_ignorable = false;
    if (m_skipCharacters > 0) {
        --m_skipCharacters;
        return;
    }
    const RtfCharset &page = charset();
    if (page.isMultiByte())
        m_pending.append(byte);
    else
        character(byte == '\t' ? u'\t' : page.character(byte));
}

void RtfParser::symbol(char symbol)
{
    if (symbol == '*') {
        m_ignorable = true;
        return;
    }
    if (symbol == '\r' || symbol == '\n') {
        m_skipCharacters = 0;
        word({.kind = RtfToken::Word, .text = "par"});
        return;
    }
    if (m_skipCharacters > 0) {
        --m_skipCharacters;
        return;
    }
    decodePending();
    switch (symbol) {
    case '\\':
    case '{':
    case '}':
        character(static_cast<char16_t>(symbol));
        break;
    case '~':
        character(QChar::Nbsp);
        break;
    case '-':
        character(QChar::SoftHyphen);
        break;
    case '_':
        character(0x2011);
        break;
    case '\t':
        character(u'\t');
        break;
    default: // parts of index entries and formulas
        break;
    }
}

void RtfParser::unicode(int number)
{
    decodePending();
    if (number < 0)
        number += 0x10000;
    if (number > 0xFFFF && number <= 0x10FFFF) { // not in the standard, but it is written
        const auto code = static_cast<char32_t>(number);
        appendToLine(QChar::highSurrogate(code));
        character(QChar::lowSurrogate(code));
    } else if (number > 0 && number <= 0xFFFF) {
        // Symbol fonts are also written with its bytes in the range for private use.
        const RtfFont *font = m_formats.font(m_state.characters);
        if ((number & 0xFF00) == 0xF000 && (number & 0xFF) >= 0x20 && font
            && RtfCharset::isSymbolFont(font->family)) {
            const RtfCharset symbols(RtfCharset::fontPage(font->family));
            character(symbols.character(static_cast<char>(number & 0xFF)));
        } else {
            character(static_cast<char16_t>(number));
        }
    }
    m_skipCharacters = m_state.fallbackLength;
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

void RtfParser::decodePending()
{
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

void RtfParser::word(const RtfToken &token)
{
    const RtfKeyword keyword = rtfKeyword(token.text);
    if (m_skipCharacters > 0) {
        // A word may stand for one fallback character; one that writes no text ends the fallback.
        if (keyword.word == RtfWord::Character) {
            --m_skipCharacters;
            return;
        }
        m_skipCharacters = 0;
    }
    const bool isGroup = keyword.word >= RtfWord::FontTable && keyword.word <= RtfWord::Skipped;
    if (std::exchange(m_ignorable, false) && !isGroup
        && keyword.word != RtfWord::NestedTableProperties) {
        skipGroup();
        return;
    }
    if (isGroup)
        groupWord(keyword);
    else if (keyword.word >= RtfWord::Ansi && keyword.word <= RtfWord::DefaultFont)
        documentWord(keyword, token);
    else if (keyword.word >= RtfWord::InTable && keyword.word < RtfWord::Ansi)
        tableWord(keyword, token);
    else if (keyword.word >= RtfWord::ParagraphDefaults && keyword.word < RtfWord::InTable)
        change().applyToParagraph(keyword, token);
    else if (keyword.word >= RtfWord::Character && keyword.word < RtfWord::ParagraphDefaults)
        characterWord(keyword, token);
}

void RtfParser::characterWord(RtfKeyword keyword, const RtfToken &token)
{
    switch (keyword.word) {
    case RtfWord::Character:
        decodePending();
        character(static_cast<char16_t>(keyword.value));
        break;
    case RtfWord::Unicode:
        unicode(token.parameter);
        break;
    case RtfWord::FallbackLength:
        change().fallbackLength =
            token.hasParameter ? qBound(0, token.parameter, maximumFallback) : 1;
        break;
    case RtfWord::Paragraph:
        decodePending();
        if (m_state.inTable)
            character(QChar::LineSeparator);
        else
            endParagraph();
        break;
    case RtfWord::Page:
    case RtfWord::Section:
        decodePending();
        if (!m_line.isEmpty())
            endParagraph();
        if (keyword.word == RtfWord::Page)
            m_pageBreak = true;
        break;
    case RtfWord::Plain:
        changeCharacters() = {};
        m_charset = nullptr;
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
    decodePending();
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

void RtfParser::groupWord(RtfKeyword keyword)
{
    decodePending();
    switch (keyword.word) {
    case RtfWord::FontTable:
        m_formats.readFonts(m_tokenizer);
        closeGroup();
        break;
    case RtfWord::ColourTable:
        m_formats.readColours(m_tokenizer);
        closeGroup();
        break;
    case RtfWord::ListTable:
        m_lists.readLists(m_tokenizer);
        closeGroup();
        break;
    case RtfWord::ListOverrideTable:
        m_lists.readOverrides(m_tokenizer);
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
    case RtfWord::EitherOr:
        m_skipNextGroup = true;
        break;
    case RtfWord::Skipped:
        skipGroup();
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
    RtfGroup group(m_tokenizer);
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
    decodePending();
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
    case RtfWord::NestedTableProperties:
        readNestedTableProperties();
        break;
    default:
        m_row.apply(keyword, token);
        break;
    }
}

void RtfParser::endRow()
{
    if (m_cellEnded)
        m_line.chop(1); // tabs stand between cells, not behind the last
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
    RtfGroup group(m_tokenizer);
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
    const auto picture = RtfPictureGroup::read(m_tokenizer);
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
