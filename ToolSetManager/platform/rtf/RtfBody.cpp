#include "platform/rtf/RtfBody.h"

#include "platform/rtf/RtfCharset.h"
#include "platform/rtf/RtfHex.h"
#include "platform/rtf/RtfPicture.h"

#include <QFont>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QUrl>

#include <array>
#include <charconv>

namespace {

constexpr char bulletByte = '\xB7'; // in the font Symbol
constexpr int bulletIndent = 200;
constexpr qsizetype pictureBytesInLine = 64;

bool needsEscape(char16_t c)
{
    return c == u'\\' || c == u'{' || c == u'}';
}

/// Printable ASCII that stands for itself.
constexpr std::array<bool, 128> makePlain()
{
    std::array<bool, 128> plain {};
    for (size_t c = 0x20; c < 0x7F; ++c)
        plain[c] = c != '\\' && c != '{' && c != '}';
    return plain;
}

constexpr auto plainAscii = makePlain();

bool isPlain(char16_t c)
{
    return c < 128 && plainAscii[c];
}

} // namespace

RtfBody::RtfBody(const QTextDocument &document)
    : m_document(document)
    , m_standard(document.defaultFont())
{
    m_body.reserve(document.characterCount() * 3 / 2);
}

// --- Paragraphs ---

void RtfBody::startParagraph(const QTextBlock &block)
{
    if (!m_paragraphWritten || block.blockFormatIndex() != m_blockFormat) {
        m_blockFormat = block.blockFormatIndex();
        const auto style =
            RtfParagraphStyle::fromFormat(block.blockFormat(), block.textList() != nullptr);
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
    word("par");
    m_body.append("\r\n");
    m_afterWord = false;
}

void RtfBody::writeParagraphStyle(const RtfParagraphStyle &style)
{
    word("pard");
    if (style.bullet) {
        const int symbols = fontNumber(QStringLiteral("Symbol"), RtfCharset::symbolCharset);
        writeBulletText();
        m_body.append("{\\*");
        word("pn");
        word("pnlvlblt");
        word("pnf", symbols);
        word("pnindent", bulletIndent);
        m_body.append("{\\pntxtb");
        hexByte(bulletByte);
        m_body.append("}}");
        m_afterWord = false;
    }
    const auto length = [this](const char *name, int twips) {
        if (twips)
            word(name, twips);
    };
    if (style.rightToLeft)
        word("rtlpar");
    constexpr const char *alignments[] = {nullptr, "qr", "qc", "qj"};
    if (alignments[style.alignment])
        word(alignments[style.alignment]);
    length("fi", style.firstIndent);
    length("li", style.leftIndent);
    length("ri", style.rightIndent);
    length("sb", style.spaceBefore);
    length("sa", style.spaceAfter);
    length("sl", style.lineSpacing);
    if (style.lineSpacing)
        word("slmult", style.lineSpacingMultiple ? 1 : 0);
    if (style.pageBreakBefore)
        word("pagebb");
    writeTabs(style);
}

void RtfBody::writeTabs(const RtfParagraphStyle &style)
{
    constexpr const char *kinds[] = {nullptr, "tqr", "tqc", "tqdec"};
    for (const RtfTab &tab : style.tabs) {
        if (kinds[tab.kind])
            word(kinds[tab.kind]);
        word("tx", tab.position);
    }
}

void RtfBody::writeBulletText()
{
    const int symbols = fontNumber(QStringLiteral("Symbol"), RtfCharset::symbolCharset);
    m_body.append("{\\pntext");
    word("f", symbols);
    hexByte(bulletByte);
    word("tab");
    m_body.append('}');
    m_afterWord = false;
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
            while (stop != end && isPlain(*stop))
                ++stop;
        }
        if (stop == at) {
            writeCharacter(*at++, format);
            continue;
        }
        writeFormat(
            format, m_charset == RtfCharset::symbolCharset ? RtfCharset::ansiCharset : m_charset);
        if (m_afterWord)
            m_body.append(' ');
        m_afterWord = false;
        const qsizetype before = m_body.size();
        m_body.resize(before + (stop - at));
        char *to = m_body.data() + before;
        while (at != stop)
            *to++ = static_cast<char>(*at++);
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
        word("tab");
        return;
    case QChar::LineSeparator:
        word("line");
        return;
    case QChar::Nbsp:
        m_body.append("\\~");
        m_afterWord = false;
        return;
    case QChar::SoftHyphen:
        m_body.append("\\-");
        m_afterWord = false;
        return;
    case 0x2011:
        m_body.append("\\_");
        m_afterWord = false;
        return;
    default:
        break;
    }
    if (!encoded) {
        word("u", static_cast<qint16>(unit));
        m_body.append('?');
        m_afterWord = false;
        return;
    }
    const auto byte = static_cast<unsigned char>(encoded->byte);
    if (needsEscape(byte)) {
        m_body.append('\\');
        m_body.append(encoded->byte);
        m_afterWord = false;
    } else if (isPlain(byte)) {
        plain(encoded->byte);
    } else {
        hexByte(encoded->byte);
    }
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
        word("f", font);
    m_charset = charset;
    const RtfCharStyle &style = format.style;
    if (style.halfPoints != m_written.halfPoints)
        word("fs", style.halfPoints);
    if (style.offset != m_written.offset)
        word(style.offset < 0 ? "dn" : "up", qAbs(style.offset));
    if (format.colour != m_written.colour)
        word("cf", format.colour);
    if (format.background != m_written.background)
        word("highlight", format.background);
    const quint16 changed = style.flags ^ m_written.flags;
    if (changed) {
        using S = RtfCharStyle;
        writeFlag(changed, style.flags, S::Bold, "b");
        writeFlag(changed, style.flags, S::Italic, "i");
        if (changed & S::Underline)
            word(style.has(S::Underline) ? "ul" : "ulnone");
        writeFlag(changed, style.flags, S::Strike, "strike");
        writeFlag(changed, style.flags, S::Protected, "protect");
        writeFlag(changed, style.flags, S::Hidden, "v");
        writeFlag(changed, style.flags, S::Capitals, "caps");
        writeFlag(changed, style.flags, S::SmallCapitals, "scaps");
        if (changed & (S::Superscript | S::Subscript)) {
            word(style.has(S::Superscript)    ? "super"
                    : style.has(S::Subscript) ? "sub"
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
        word(name);
    else
        word(name, 0);
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
        constexpr double twipsPerPixel = 15;
        const QSize twips =
            size.hasProperty(QTextFormat::ImageWidth) && size.hasProperty(QTextFormat::ImageHeight)
            ? (QSizeF(size.width(), size.height()) * twipsPerPixel).toSize()
            : QSize();
        writePictureData(RtfPicture::fromImage(image, twips));
    } else if (own->kind == RtfPicture::Metafile || own->kind == RtfPicture::Bitmap) {
        writePictureData(*own);
    } else {
        m_body.append("{\\*\\shppict");
        writePictureData(*own);
        m_body.append('}');
        const QImage image = pictureImage(format);
        if (!image.isNull()) {
            m_body.append("{\\nonshppict");
            writePictureData(RtfPicture::fromImage(image, own->goal));
            m_body.append('}');
        }
    }
    m_afterWord = false;
}

void RtfBody::writePictureData(const RtfPicture &picture)
{
    m_body.append("{\\pict");
    switch (picture.kind) {
    case RtfPicture::Metafile:
        word("wmetafile", 8); // scaled to its frame in both directions
        break;
    case RtfPicture::Bitmap:
        word("dibitmap", 0);
        break;
    case RtfPicture::Png:
        word("pngblip");
        break;
    case RtfPicture::Jpeg:
        word("jpegblip");
        break;
    default:
        word("emfblip");
        break;
    }
    word("picw", picture.extent.width());
    word("pich", picture.extent.height());
    word("picwgoal", picture.goal.width());
    word("pichgoal", picture.goal.height());
    for (qsizetype from = 0; from < picture.data.size(); from += pictureBytesInLine) {
        const qsizetype count = qMin(pictureBytesInLine, picture.data.size() - from);
        m_body.append("\r\n");
        const qsizetype before = m_body.size();
        m_body.resize(before + 2 * count);
        char *to = m_body.data() + before;
        const char *data = picture.data.constData() + from;
        for (qsizetype i = 0; i < count; ++i) {
            const auto byte = static_cast<unsigned char>(data[i]);
            *to++ = RtfHex::lower[byte >> 4];
            *to++ = RtfHex::lower[byte & 15];
        }
    }
    m_body.append('}');
    m_afterWord = false;
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

// --- The bytes ---

void RtfBody::word(const char *name)
{
    m_body.append('\\').append(name);
    m_afterWord = true;
}

void RtfBody::word(const char *name, int number)
{
    word(name);
    std::array<char, 16> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    m_body.append(digits.data(), end - digits.data());
}

void RtfBody::plain(char c)
{
    if (m_afterWord)
        m_body.append(' ');
    m_body.append(c);
    m_afterWord = false;
}

void RtfBody::hexByte(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    const char text[] = {'\\', '\'', RtfHex::lower[value >> 4], RtfHex::lower[value & 15]};
    m_body.append(text, sizeof text);
    m_afterWord = false;
}

QByteArray RtfBody::take()
{
    if (m_fontList.isEmpty())
        fontNumber(m_standard.family(), RtfCharset::ansiCharset);
    QByteArray text = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl";
    const QByteArray body = std::exchange(m_body, {});
    for (qsizetype i = 0; i < m_fontList.size(); ++i) {
        const auto &[family, charset] = m_fontList.at(i);
        m_body.append('{');
        word("f", static_cast<int>(i));
        word("fnil");
        word("fcharset", charset);
        for (const QChar c : family) {
            const char16_t unit = c.unicode();
            if (needsEscape(unit)) {
                m_body.append('\\').append(static_cast<char>(unit));
                m_afterWord = false;
            } else if (isPlain(unit) && unit != u';') {
                plain(static_cast<char>(unit));
            } else if (unit >= 0x80) {
                word("u", static_cast<qint16>(unit));
                m_body.append('?');
                m_afterWord = false;
            }
        }
        m_body.append(";}");
        m_afterWord = false;
    }
    m_body.append("}\r\n");
    if (!m_colourList.isEmpty()) {
        m_body.append("{\\colortbl ;");
        for (const QRgb colour : std::as_const(m_colourList)) {
            word("red", qRed(colour));
            word("green", qGreen(colour));
            word("blue", qBlue(colour));
            m_body.append(';');
        }
        m_body.append("}\r\n");
    }
    text.reserve(text.size() + m_body.size() + body.size() + 1);
    text.append(m_body).append(body).append('}');
    m_body.clear();
    return text;
}
