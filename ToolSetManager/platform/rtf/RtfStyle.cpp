#include "platform/rtf/RtfStyle.h"

#include "platform/rtf/RtfCharset.h"
#include "platform/text/Twips.h"

#include <QFont>
#include <QPoint>
#include <QTextDocument>
#include <QTextOption>

#include <cmath>

namespace {

constexpr double twipsPerPixel = Twips::perPixel;
constexpr int wholeLine = 240; // of lineSpacing with lineSpacingMultiple
constexpr int htmlIndent = 600; // twips of one step of QTextBlockFormat::indent

/// Height of a line over the size of its font: that of the fonts which documents mostly use. Qt
/// moves text by parts of the line's height, rich text by points.
constexpr double heightOfSize = 1.117;

// What hidden text is made of: small enough not to be seen, and (letter spacing) without width.
constexpr int hiddenPixels = 1;
constexpr double hiddenSpacing = 100.0 / 64;

int toTwips(double pixels)
{
    const double twips = pixels * twipsPerPixel;
    constexpr int limit = RtfParagraphStyle::maximumLength;
    return static_cast<int>(std::lround(qBound<double>(-limit, twips, limit)));
}

std::optional<QRgb> colourOf(const QTextCharFormat &format, int property)
{
    const QBrush brush = format.brushProperty(property);
    if (brush.style() == Qt::NoBrush)
        return std::nullopt;
    return brush.color().rgb();
}

double pointsOf(const QTextCharFormat &format, const QFont &standard)
{
    for (const int property : {int(RtfHiddenSizeProperty), int(QTextFormat::FontPointSize)}) {
        if (format.hasProperty(property))
            return format.doubleProperty(property);
    }
    if (format.hasProperty(QTextFormat::FontPixelSize))
        return format.intProperty(QTextFormat::FontPixelSize) * 72.0 / 96;
    double points =
        standard.pointSizeF() > 0 ? standard.pointSizeF() : standard.pixelSize() * 72.0 / 96;
    // The steps of text that comes from web pages.
    points *= std::pow(1.2, format.intProperty(QTextFormat::FontSizeAdjustment));
    return points;
}

void setHidden(QTextCharFormat &format, double points)
{
    format.setProperty(RtfHiddenProperty, true);
    format.setProperty(RtfHiddenSizeProperty, points);
    if (format.hasProperty(QTextFormat::ForegroundBrush))
        format.setProperty(RtfHiddenColourProperty, format.foreground().color().rgb());
    format.clearProperty(QTextFormat::FontPointSize);
    format.setProperty(QTextFormat::FontPixelSize, hiddenPixels);
    format.setFontLetterSpacingType(QFont::PercentageSpacing);
    format.setFontLetterSpacing(hiddenSpacing);
    format.setForeground(QColor(Qt::transparent));
}

QList<QTextOption::Tab> shownTabs(const RtfParagraphStyle &style)
{
    const int start = style.leftIndent + (style.bullet ? 0 : style.firstIndent);
    QList<QTextOption::Tab> tabs;
    // The left indent stops a tab in a first line that hangs out.
    int hanging = !style.bullet && style.firstIndent < 0 ? style.leftIndent : -1;
    const auto append = [&](int position, QTextOption::TabType type) {
        if (position <= start)
            return;
        // For a stop at the left Qt measures the rest of the paragraph, for nothing; at a mark that
        // no text has, it only looks for that.
        const bool plain = type == QTextOption::LeftTab && !style.rightToLeft;
        tabs.append(QTextOption::Tab((position - start) / twipsPerPixel,
            plain ? QTextOption::DelimiterTab : type, plain ? QChar(0xFFFF) : QChar()));
    };
    for (const RtfTab &tab : style.tabs) {
        if (hanging >= 0 && hanging < tab.position) {
            append(hanging, QTextOption::LeftTab);
            hanging = -1;
        }
        constexpr QTextOption::TabType types[] = {QTextOption::LeftTab, QTextOption::RightTab,
            QTextOption::CenterTab, QTextOption::DelimiterTab};
        append(tab.position, types[tab.kind]);
        if (tab.kind == RtfTab::Decimal && !tabs.isEmpty())
            tabs.last().delimiter = u'.';
    }
    if (hanging >= 0)
        append(hanging, QTextOption::LeftTab);
    return tabs;
}

} // namespace

// --- Characters ---

QTextCharFormat RtfCharStyle::toFormat() const
{
    QTextCharFormat format;
    if (RtfCharset::isSymbolFont(family)) {
        // Its characters are Unicode here; fonts of that name have them elsewhere, if at all.
        format.setFontFamilies({QStringLiteral("Times New Roman")});
    } else {
        format.setFontFamilies({family});
    }
    // Also told where nothing stands in for it: the toolkit finds formats by their properties, but
    // does not look into lists of families, so that many fonts would be one long chain.
    format.setProperty(RtfFamilyProperty, family);
    format.setFontPointSize(halfPoints / 2.0);
    if (has(Bold))
        format.setFontWeight(QFont::Bold);
    if (has(Italic))
        format.setFontItalic(true);
    if (has(Underline))
        format.setFontUnderline(true);
    if (has(Strike))
        format.setFontStrikeOut(true);
    if (has(Capitals))
        format.setFontCapitalization(QFont::AllUppercase);
    else if (has(SmallCapitals))
        format.setFontCapitalization(QFont::SmallCaps);
    if (has(Superscript))
        format.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
    else if (has(Subscript))
        format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
    if (has(Protected))
        format.setProperty(RtfProtectedProperty, true);
    if (colour)
        format.setForeground(QColor(*colour));
    if (background) {
        format.setBackground(QColor(*background));
        if (!colour) {
            // The desktop's text colour may be that of the mark.
            format.setForeground(qGray(*background) > 127 ? Qt::black : Qt::white);
            format.setProperty(RtfAutomaticColourProperty, true);
        }
    }
    if (offset) {
        format.setProperty(RtfOffsetProperty, offset);
        format.setBaselineOffset(100.0 * offset / (halfPoints * heightOfSize));
    }
    if (has(Hidden))
        setHidden(format, halfPoints / 2.0);
    return format;
}

RtfCharStyle RtfCharStyle::fromFormat(const QTextCharFormat &format, const QFont &standard)
{
    RtfCharStyle style;
    style.family = format.stringProperty(RtfFamilyProperty);
    if (style.family.isEmpty())
        style.family = format.fontFamilies().toStringList().value(0);
    if (style.family.isEmpty())
        style.family = standard.family();
    style.family = plainFamily(style.family);
    style.halfPoints =
        qBound(1, static_cast<int>(std::lround(pointsOf(format, standard) * 2)), maximumHalfPoints);
    const auto set = [&style](Flag flag, bool on) {
        if (on)
            style.flags |= flag;
    };
    set(Bold, format.fontWeight() >= QFont::DemiBold);
    set(Italic, format.fontItalic());
    set(Underline, format.fontUnderline());
    set(Strike, format.fontStrikeOut());
    set(Capitals, format.fontCapitalization() == QFont::AllUppercase);
    set(SmallCapitals, format.fontCapitalization() == QFont::SmallCaps);
    set(Superscript, format.verticalAlignment() == QTextCharFormat::AlignSuperScript);
    set(Subscript, format.verticalAlignment() == QTextCharFormat::AlignSubScript);
    set(Protected, isProtected(format));
    set(Hidden, isHidden(format));
    style.offset = format.intProperty(RtfOffsetProperty);
    style.background = colourOf(format, QTextFormat::BackgroundBrush);
    if (format.boolProperty(RtfAutomaticColourProperty))
        style.colour.reset();
    else if (!style.has(Hidden))
        style.colour = colourOf(format, QTextFormat::ForegroundBrush);
    else if (format.hasProperty(RtfHiddenColourProperty))
        style.colour = format.property(RtfHiddenColourProperty).toUInt();
    return style;
}

QString RtfCharStyle::plainFamily(const QString &family)
{
    QString plain = family;
    RtfCharset::dropScript(plain);
    return plain;
}

int RtfCharStyle::halfPointsOf(const QTextCharFormat &format)
{
    return static_cast<int>(std::lround(pointsOf(format, QFont()) * 2));
}

bool RtfCharStyle::isProtected(const QTextCharFormat &format)
{
    return format.boolProperty(RtfProtectedProperty);
}

bool RtfCharStyle::isHidden(const QTextCharFormat &format)
{
    return format.boolProperty(RtfHiddenProperty);
}

// --- Paragraphs ---

int RtfParagraphStyle::defaultTab(const QTextDocument &document)
{
    return toTwips(document.defaultTextOption().tabStopDistance());
}

void RtfParagraphStyle::setDefaultTab(QTextDocument &document, int twips)
{
    QTextOption option = document.defaultTextOption();
    option.setTabStopDistance(twips / twipsPerPixel);
    document.setDefaultTextOption(option);
}

QTextBlockFormat RtfParagraphStyle::toFormat(int halfPoints) const
{
    QTextBlockFormat format;
    constexpr Qt::Alignment alignments[] = {Qt::AlignLeft | Qt::AlignAbsolute,
        Qt::AlignRight | Qt::AlignAbsolute, Qt::AlignHCenter, Qt::AlignJustify};
    if (alignment != Left || rightToLeft)
        format.setAlignment(alignments[alignment]);
    if (rightToLeft)
        format.setLayoutDirection(Qt::RightToLeft);
    constexpr int twipsPerHalfPoint = 10; // so that a bullet's room is as wide as its font is high
    const int bulletRoom = qMax(240, halfPoints * twipsPerHalfPoint);
    const int shownLeft = bullet ? qMax(leftIndent, bulletRoom) : leftIndent;
    if (shownLeft)
        format.setLeftMargin(shownLeft / twipsPerPixel);
    if (rightIndent)
        format.setRightMargin(rightIndent / twipsPerPixel);
    if (bullet)
        format.setProperty(RtfIndentsProperty, QPoint(leftIndent, firstIndent));
    else if (firstIndent)
        format.setTextIndent(firstIndent / twipsPerPixel);
    if (spaceBefore)
        format.setTopMargin(spaceBefore / twipsPerPixel);
    if (spaceAfter)
        format.setBottomMargin(spaceAfter / twipsPerPixel);
    if (lineSpacing > 0 && lineSpacingMultiple)
        format.setLineHeight(100.0 * lineSpacing / wholeLine, QTextBlockFormat::ProportionalHeight);
    else if (lineSpacing > 0)
        format.setLineHeight(lineSpacing / twipsPerPixel, QTextBlockFormat::MinimumHeight);
    else if (lineSpacing < 0)
        format.setLineHeight(-lineSpacing / twipsPerPixel, QTextBlockFormat::FixedHeight);
    if (pageBreakBefore)
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    if (!tabs.isEmpty()) {
        QList<int> stored;
        stored.reserve(tabs.size());
        for (const RtfTab &tab : tabs)
            stored.append(tab.position * 4 + tab.kind);
        format.setProperty(RtfTabsProperty, QVariant::fromValue(stored));
    }
    if (!row.isEmpty())
        format.setProperty(RtfRowProperty, QVariant::fromValue(row));
    const auto shown = shownTabs(*this);
    if (!shown.isEmpty())
        format.setTabPositions(shown);
    return format;
}

RtfParagraphStyle RtfParagraphStyle::fromFormat(const QTextBlockFormat &format, bool bullet)
{
    RtfParagraphStyle style;
    style.bullet = bullet;
    style.rightToLeft = format.hasProperty(QTextFormat::LayoutDirection)
        && format.layoutDirection() == Qt::RightToLeft;
    const Qt::Alignment alignment = format.alignment();
    const bool absolute = alignment.testFlag(Qt::AlignAbsolute) || !style.rightToLeft;
    if (alignment & Qt::AlignHCenter)
        style.alignment = Centre;
    else if (alignment & Qt::AlignJustify)
        style.alignment = Justified;
    else if (alignment & Qt::AlignRight)
        style.alignment = absolute ? Right : Left;
    else
        style.alignment = absolute ? Left : Right;

    style.leftIndent = qBound(-maximumLength,
        toTwips(format.leftMargin()) + htmlIndent * qBound(0, format.indent(), 40), maximumLength);
    style.rightIndent = toTwips(format.rightMargin());
    style.firstIndent = toTwips(format.textIndent());
    if (bullet && format.hasProperty(RtfIndentsProperty)) {
        const QPoint indents = format.property(RtfIndentsProperty).toPoint();
        style.leftIndent = indents.x();
        style.firstIndent = indents.y();
    }
    style.spaceBefore = toTwips(format.topMargin());
    style.spaceAfter = toTwips(format.bottomMargin());
    switch (format.lineHeightType()) {
    case QTextBlockFormat::ProportionalHeight:
        style.lineSpacing = static_cast<int>(std::lround(format.lineHeight() * wholeLine / 100));
        style.lineSpacingMultiple = true;
        break;
    case QTextBlockFormat::MinimumHeight:
        style.lineSpacing = toTwips(format.lineHeight());
        break;
    case QTextBlockFormat::FixedHeight:
        style.lineSpacing = -toTwips(format.lineHeight());
        break;
    default:
        break;
    }
    style.pageBreakBefore = format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore;
    const auto stored = format.property(RtfTabsProperty).value<QList<int>>();
    for (const int tab : stored) // divided so that negative positions would come out right too
        style.tabs.append({(tab - (tab & 3)) / 4, static_cast<RtfTab::Kind>(tab & 3)});
    style.row = format.property(RtfRowProperty).value<QList<int>>();
    return style;
}
