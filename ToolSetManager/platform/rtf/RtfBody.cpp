#include "platform/rtf/RtfBody.h"

#include "platform/rtf/RtfCharset.h"
#include "platform/rtf/RtfPicture.h"
#include "platform/rtf/RtfRow.h"
#include "platform/text/Twips.h"

#include <QFont>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QUrl>

namespace {

constexpr char bulletByte = '\xB7'; // in the font Symbol
constexpr int bulletIndent = 200;

} // namespace

RtfBody::RtfBody(const QTextDocument &document)
    : m_document(document)
    , m_standard(document.defaultFont())
{
    m_body.reserve(document.characterCount() * 3 / 2);
}

// --- Paragraphs ---

void RtfBody::startParagraph(const QTextBlock &block, bool whole)
{
    m_inRow = whole && RtfRow::isRow(block);
    if (m_inRow) {
        writeRow(RtfRow(RtfParagraphStyle::fromFormat(block.blockFormat(), false).row));
        m_paragraphWritten = false;
        return;
    }
    if (!m_paragraphWritten || block.blockFormatIndex() != m_blockFormat) {
        m_blockFormat = block.blockFormatIndex();
        auto style =
            RtfParagraphStyle::fromFormat(block.blockFormat(), block.textList() != nullptr);
        style.row.clear();
        if (!m_paragraphWritten || style != m_paragraph) {
            writeParagraphStyle(style);
            m_paragraph = style;
            m_paragraphWritten = true;
            return;
        }
    }
    if (m_paragraph.bullet)
        writeBulletText();
}

void RtfBody::endParagraph(const QTextBlock &block)
{
    // The mark of a paragraph with text is taken to look like the text.
    if (block.length() == 1) {
        Format &mark = format(block.charFormatIndex());
        writeFormat(mark, neutralCharset(mark));
    }
    if (m_inRow) {
        m_body.word("cell");
        m_body.word("row");
    } else {
        m_body.word("par");
    }
    m_body.raw("\r\n");
}

void RtfBody::writeRow(const RtfRow &row)
{
    m_body.word("trowd");
    m_body.word("trgaph", row.gap());
    m_body.word("trleft", row.left());
    for (const int edge : row.edges())
        m_body.word("cellx", edge);
    m_body.word("pard");
    m_body.word("intbl");
}

void RtfBody::writeParagraphStyle(const RtfParagraphStyle &style)
{
    m_body.word("pard");
    if (style.bullet) {
        const int symbols = fontNumber(QStringLiteral("Symbol"), RtfCharset::symbolCharset);
        writeBulletText();
        m_body.raw("{\\*");
        m_body.word("pn");
        m_body.word("pnlvlblt");
        m_body.word("pnf", symbols);
        m_body.word("pnindent", bulletIndent);
        m_body.raw("{\\pntxtb");
        m_body.hexByte(bulletByte);
        m_body.raw("}}");
    }
    const auto length = [this](const char *name, int twips) {
        if (twips)
            m_body.word(name, twips);
    };
    if (style.rightToLeft)
        m_body.word("rtlpar");
    constexpr const char *alignments[] = {nullptr, "qr", "qc", "qj"};
    if (alignments[style.alignment])
        m_body.word(alignments[style.alignment]);
    length("fi", style.firstIndent);
    length("li", style.leftIndent);
    length("ri", style.rightIndent);
    length("sb", style.spaceBefore);
    length("sa", style.spaceAfter);
    length("sl", style.lineSpacing);
    if (style.lineSpacing)
        m_body.word("slmult", style.lineSpacingMultiple ? 1 : 0);
    if (style.pageBreakBefore)
        m_body.word("pagebb");
    writeTabs(style);
}

void RtfBody::writeTabs(const RtfParagraphStyle &style)
{
    constexpr const char *kinds[] = {nullptr, "tqr", "tqc", "tqdec"};
    for (const RtfTab &tab : style.tabs) {
        if (kinds[tab.kind])
            m_body.word(kinds[tab.kind]);
        m_body.word("tx", tab.position);
    }
}

void RtfBody::writeBulletText()
{
    const int symbols = fontNumber(QStringLiteral("Symbol"), RtfCharset::symbolCharset);
    m_body.raw("{\\pntext");
    m_body.word("f", symbols);
    m_body.hexByte(bulletByte);
    m_body.word("tab");
    m_body.raw("}");
}

// --- Text ---

void RtfBody::addFragment(const QTextFragment &fragment, int start, int length)
{
    Format &fragmentFormat = format(fragment.charFormatIndex());
    if (fragmentFormat.picture) {
        writeFormat(fragmentFormat, neutralCharset(fragmentFormat));
        for (int i = 0; i < length; ++i)
            writePicture(fragment.charFormat());
        return;
    }
    const QString text = fragment.text();
    writeText(QStringView(text).mid(start, length), fragmentFormat);
}

void RtfBody::writeText(QStringView text, Format &format)
{
    const bool symbols = RtfCharset::isSymbolFont(format.style.family);
    const char16_t *at = text.utf16();
    const char16_t *const end = at + text.size();
    while (at != end) {
        // A stretch of what stands for itself.
        const char16_t *stop = at;
        if (!symbols) {
            while (stop != end && RtfOutput::isPlain(*stop))
                ++stop;
        }
        if (stop == at) {
            writeCharacter(*at++, format);
            continue;
        }
        writeFormat(
            format, m_charset == RtfCharset::symbolCharset ? RtfCharset::ansiCharset : m_charset);
        m_body.plain(QStringView(at, stop));
        at = stop;
    }
}

void RtfBody::writeCharacter(char16_t unit, Format &format)
{
    if (unit < 0x20 && unit != u'\t')
        return;
    const auto encoded = RtfCharset::encode(unit, format.style.family, m_charset);
    writeFormat(format, encoded ? encoded->charset : neutralCharset(format));
    switch (unit) {
    case u'\t':
        m_body.word(m_inRow ? "cell" : "tab");
        return;
    case QChar::LineSeparator:
        m_body.word("line");
        return;
    case QChar::Nbsp:
        m_body.raw("\\~");
        return;
    case QChar::SoftHyphen:
        m_body.raw("\\-");
        return;
    case 0x2011:
        m_body.raw("\\_");
        return;
    default:
        break;
    }
    if (!encoded) {
        m_body.unicode(unit);
        return;
    }
    const auto byte = static_cast<unsigned char>(encoded->byte);
    // In a symbol font it is none of these characters, and readers differ in how they take it.
    if (RtfOutput::needsEscape(byte) && encoded->charset == RtfCharset::symbolCharset)
        m_body.hexByte(encoded->byte);
    else if (RtfOutput::needsEscape(byte))
        m_body.escaped(encoded->byte);
    else if (RtfOutput::isPlain(byte))
        m_body.plain(encoded->byte);
    else
        m_body.hexByte(encoded->byte);
}

// --- Formats ---

RtfBody::Format &RtfBody::format(int index)
{
    const auto place = static_cast<size_t>(index);
    if (place >= m_formats.size())
        m_formats.resize(place + 1);
    Format &format = m_formats[place];
    if (!format.known) {
        const QTextCharFormat charFormat = m_document.allFormats().at(index).toCharFormat();
        format.known = true;
        format.picture = charFormat.isImageFormat();
        format.style = RtfCharStyle::fromFormat(charFormat, m_standard);
        format.colour = colourNumber(format.style.colour);
        format.background = colourNumber(format.style.background);
    }
    return format;
}

int RtfBody::neutralCharset(const Format &format) const
{
    const bool otherSymbols = m_charset == RtfCharset::symbolCharset
        && m_fontList.at(m_written.font).first != format.style.family;
    return otherSymbols ? RtfCharset::ansiCharset : m_charset;
}

int RtfBody::fontNumber(Format &format, int charset)
{
    for (const auto &[known, number] : format.fonts) {
        if (known == charset)
            return number;
    }
    const int number = fontNumber(format.style.family, charset);
    format.fonts.emplace_back(charset, number);
    return number;
}

int RtfBody::fontNumber(const QString &family, int charset)
{
    const auto key = std::pair(family, charset);
    const auto [entry, isNew] = m_fonts.try_emplace(key, static_cast<int>(m_fontList.size()));
    if (isNew)
        m_fontList.append(key);
    return entry->second;
}

int RtfBody::colourNumber(const std::optional<QRgb> &colour)
{
    if (!colour)
        return 0;
    const QRgb opaque = *colour | 0xFF000000;
    auto found = m_colours.constFind(opaque);
    if (found == m_colours.cend()) {
        m_colourList.append(opaque);
        found = m_colours.insert(opaque, static_cast<int>(m_colourList.size()));
    }
    return *found;
}

void RtfBody::writeFormat(Format &format, int charset)
{
    const int font = fontNumber(format, charset);
    if (font != m_written.font)
        m_body.word("f", font);
    m_charset = charset;
    const RtfCharStyle &style = format.style;
    if (style.halfPoints != m_written.halfPoints)
        m_body.word("fs", style.halfPoints);
    if (style.offset != m_written.offset)
        m_body.word(style.offset < 0 ? "dn" : "up", qAbs(style.offset));
    if (format.colour != m_written.colour)
        m_body.word("cf", format.colour);
    if (format.background != m_written.background)
        m_body.word("highlight", format.background);
    const quint16 changed = style.flags ^ m_written.flags;
    if (changed) {
        using S = RtfCharStyle;
        writeFlag(changed, style.flags, S::Bold, "b");
        writeFlag(changed, style.flags, S::Italic, "i");
        if (changed & S::Underline)
            m_body.word(style.has(S::Underline) ? "ul" : "ulnone");
        writeFlag(changed, style.flags, S::Strike, "strike");
        writeFlag(changed, style.flags, S::Protected, "protect");
        writeFlag(changed, style.flags, S::Hidden, "v");
        writeFlag(changed, style.flags, S::Capitals, "caps");
        writeFlag(changed, style.flags, S::SmallCapitals, "scaps");
        if (changed & (S::Superscript | S::Subscript)) {
            m_body.word(style.has(S::Superscript) ? "super"
                    : style.has(S::Subscript)     ? "sub"
                                                  : "nosupersub");
        }
    }
    m_written = {
        font, style.halfPoints, style.offset, style.flags, format.colour, format.background};
}

void RtfBody::writeFlag(quint16 changed, quint16 flags, RtfCharStyle::Flag flag, const char *name)
{
    if (!(changed & flag))
        return;
    if (flags & flag)
        m_body.word(name);
    else
        m_body.word(name, 0);
}

// --- Pictures ---

void RtfBody::writePicture(const QTextCharFormat &format)
{
    const auto own = RtfPicture::fromFormat(format);
    if (!own) { // from a web page, say
        const QImage image = pictureImage(format);
        if (image.isNull())
            return;
        const QTextImageFormat size = format.toImageFormat();
        const QSize twips =
            size.hasProperty(QTextFormat::ImageWidth) && size.hasProperty(QTextFormat::ImageHeight)
            ? (QSizeF(size.width(), size.height()) * Twips::perPixel).toSize()
            : QSize();
        writePictureData(RtfPicture::fromImage(image, twips));
    } else if (own->kind != RtfPicture::Png && own->kind != RtfPicture::Jpeg
        && own->kind != RtfPicture::EnhancedMetafile) {
        writePictureData(*own);
    } else {
        m_body.raw("{\\*\\shppict");
        writePictureData(*own);
        m_body.raw("}");
        const QImage image = pictureImage(format);
        if (!image.isNull()) {
            m_body.raw("{\\nonshppict");
            writePictureData(RtfPicture::fromImage(image, own->goal));
            m_body.raw("}");
        }
    }
}

void RtfBody::writePictureData(const RtfPicture &picture)
{
    m_body.raw("{\\pict");
    switch (picture.kind) {
    case RtfPicture::Metafile:
        m_body.word("wmetafile", 8); // scaled to its frame in both directions
        break;
    case RtfPicture::Bitmap:
        m_body.word("dibitmap", 0);
        break;
    case RtfPicture::Png:
        m_body.word("pngblip");
        break;
    case RtfPicture::Jpeg:
        m_body.word("jpegblip");
        break;
    case RtfPicture::DeviceBitmap:
        m_body.word("wbitmap", 0);
        break;
    case RtfPicture::MacPicture:
        m_body.word("macpict");
        break;
    case RtfPicture::Os2Metafile:
        m_body.word("pmmetafile", 0);
        break;
    default:
        m_body.word("emfblip");
        break;
    }
    m_body.word("picw", picture.extent.width());
    m_body.word("pich", picture.extent.height());
    m_body.word("picwgoal", picture.goal.width());
    m_body.word("pichgoal", picture.goal.height());
    m_body.hexLines(picture.data);
    m_body.raw("}");
}

QImage RtfBody::pictureImage(const QTextCharFormat &format) const
{
    const QString name = format.toImageFormat().name();
    if (name == RtfPicture::frameName())
        return {};
    const QVariant resource = m_document.resource(QTextDocument::ImageResource, QUrl(name));
    if (resource.canConvert<QImage>())
        return resource.value<QImage>();
    return {};
}

QByteArray RtfBody::take()
{
    if (m_fontList.isEmpty())
        fontNumber(m_standard.family(), RtfCharset::ansiCharset);
    RtfOutput head;
    head.raw("{\\rtf1\\ansi\\ansicpg1252\\deff0");
    const int defaultTab = RtfParagraphStyle::defaultTab(m_document);
    if (defaultTab != RtfParagraphStyle::usualTab)
        head.word("deftab", defaultTab);
    head.raw("{\\fonttbl");
    for (qsizetype i = 0; i < m_fontList.size(); ++i) {
        const auto &[family, charset] = m_fontList.at(i);
        head.raw("{");
        head.word("f", static_cast<int>(i));
        head.word("fnil");
        head.word("fcharset", charset);
        for (const QChar c : family) {
            const char16_t unit = c.unicode();
            if (RtfOutput::needsEscape(unit))
                head.escaped(static_cast<char>(unit));
            else if (RtfOutput::isPlain(unit) && unit != u';')
                head.plain(static_cast<char>(unit));
            else if (unit >= 0x80)
                head.unicode(unit);
        }
        head.raw(";}");
    }
    head.raw("}\r\n");
    if (!m_colourList.isEmpty()) {
        head.raw("{\\colortbl ;");
        for (const QRgb colour : std::as_const(m_colourList)) {
            head.word("red", qRed(colour));
            head.word("green", qGreen(colour));
            head.word("blue", qBlue(colour));
            head.raw(";");
        }
        head.raw("}\r\n");
    }
    return head.take() + m_body.take() + '}';
}
