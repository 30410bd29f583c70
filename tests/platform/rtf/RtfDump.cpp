#include "platform/rtf/RtfDump.h"

#include "platform/rtf/RtfPicture.h"
#include "platform/rtf/RtfStyle.h"

#include <QFont>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>

namespace {

QString flagWords(const RtfCharStyle &style)
{
    constexpr std::pair<RtfCharStyle::Flag, const char *> names[] = {{RtfCharStyle::Bold, "b"},
        {RtfCharStyle::Italic, "i"}, {RtfCharStyle::Underline, "ul"},
        {RtfCharStyle::Strike, "strike"}, {RtfCharStyle::Protected, "protect"},
        {RtfCharStyle::Hidden, "v"}, {RtfCharStyle::Capitals, "caps"},
        {RtfCharStyle::SmallCapitals, "scaps"}, {RtfCharStyle::Superscript, "super"},
        {RtfCharStyle::Subscript, "sub"}};
    QString words;
    for (const auto &[flag, name] : names) {
        if (style.has(flag))
            words += QLatin1StringView(name) + u' ';
    }
    return words;
}

QString colourName(QRgb colour)
{
    return u"#%1"_qs.arg(colour & 0xFFFFFF, 6, 16, QLatin1Char('0'));
}

QString charWords(const QTextCharFormat &format)
{
    const RtfCharStyle style = RtfCharStyle::fromFormat(format, QFont(u"Arial"_qs, 12));
    QString words = flagWords(style);
    if (style.family != u"Arial"_qs)
        words += u"f="_qs + style.family + u' ';
    if (style.halfPoints != 24)
        words += u"fs%1 "_qs.arg(style.halfPoints);
    if (style.offset)
        words += u"up%1 "_qs.arg(style.offset);
    if (style.colour)
        words += u"cf="_qs + colourName(*style.colour) + u' ';
    if (style.background)
        words += u"bg="_qs + colourName(*style.background) + u' ';
    words.chop(1);
    return words;
}

QString paragraphWords(const RtfParagraphStyle &style)
{
    constexpr const char *alignments[] = {"", "qr ", "qc ", "qj "};
    constexpr const char *tabs[] = {"tx", "tqr tx", "tqc tx", "tqdec tx"};
    QString words = QString::fromLatin1(alignments[style.alignment]);
    if (style.bullet)
        words += u"bullet "_qs;
    if (style.rightToLeft)
        words += u"rtl "_qs;
    if (style.pageBreakBefore)
        words += u"pagebb "_qs;
    const auto length = [&words](const char *name, int value) {
        if (value)
            words += QLatin1StringView(name) + QString::number(value) + u' ';
    };
    length("li", style.leftIndent);
    length("ri", style.rightIndent);
    length("fi", style.firstIndent);
    length("sb", style.spaceBefore);
    length("sa", style.spaceAfter);
    length(style.lineSpacingMultiple ? "lines" : "sl", style.lineSpacing);
    for (const RtfTab &tab : style.tabs)
        words += QLatin1StringView(tabs[tab.kind]) + QString::number(tab.position) + u' ';
    words.chop(1);
    return words;
}

QString pictureWords(const RtfPicture &picture)
{
    constexpr const char *kinds[] = {"?", "wmf", "dib", "png", "jpeg", "emf", "ddb", "mac", "os2"};
    return u"[%1 %2x%3, %4]"_qs.arg(QLatin1StringView(kinds[picture.kind]))
        .arg(picture.goal.width())
        .arg(picture.goal.height())
        .arg(picture.data.size());
}

QString readable(QString text)
{
    return text.replace(u'\t', u"→"_qs).replace(QChar::LineSeparator, u"⏎"_qs);
}

} // namespace

QString rtfDump(const QTextDocument &document)
{
    QStringList lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QString line;
        const QString style = paragraphWords(
            RtfParagraphStyle::fromFormat(block.blockFormat(), block.textList() != nullptr));
        if (!style.isEmpty())
            line += u'<' + style + u'>';
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const auto picture = RtfPicture::fromFormat(fragment.charFormat());
            const QString text = picture ? pictureWords(*picture).repeated(fragment.length())
                                         : readable(fragment.text());
            const QString words = charWords(fragment.charFormat());
            if (words.isEmpty())
                line += text;
            else
                line += u'{' + words + u':' + text + u'}';
        }
        // The format of an empty paragraph is that of the text that will be typed there.
        const QString mark = charWords(block.charFormat());
        if (block.length() == 1 && !mark.isEmpty())
            line += u'{' + mark + u":}"_qs;
        lines.append(line);
    }
    return lines.join(u'\n');
}
