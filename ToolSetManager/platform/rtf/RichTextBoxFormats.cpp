#include "platform/rtf/RichTextBox.h"
#include "platform/text/Twips.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int twipsPerHalfPoint = Twips::perPoint / 2;
constexpr int bulletHang = 200; ///< Between bullet and text where the paragraph says nothing.
constexpr int nextTab = 720; ///< Distance of a stop that is added.

} // namespace

// --- Formats of the selection ---

template <class Get>
auto RichTextBox::charValue(Get get) const -> std::optional<decltype(get(QTextCharFormat()))>
{
    std::optional<decltype(get(QTextCharFormat()))> value;
    bool mixed = false;
    RtfSelection::visitCharacters(textCursor(), [&](const QTextCharFormat &format) {
        const auto here = get(format);
        mixed = value && *value != here;
        value = here;
        return !mixed;
    });
    if (mixed)
        return std::nullopt;
    return value ? value : get(currentCharFormat()); // no text, or paragraph marks alone
}

template <class Get>
auto RichTextBox::paragraphValue(Get get) const -> std::optional<decltype(get(RtfParagraphStyle()))>
{
    std::optional<decltype(get(RtfParagraphStyle()))> value;
    bool mixed = false;
    RtfSelection::visitParagraphs(textCursor(), [&](const RtfParagraphStyle &style) {
        const auto here = get(style);
        mixed = value && *value != here;
        value = here;
        return !mixed;
    });
    return mixed ? std::nullopt : value;
}

void RichTextBox::changeCharacters(const RtfSelection::CharacterChange &change)
{
    if (textCursor().hasSelection())
        RtfSelection::changeCharacters(textCursor(), font(), change);
    else
        setCurrentCharFormat(RtfSelection::changed(currentCharFormat(), font(), change));
}

void RichTextBox::setFlag(RtfCharStyle::Flag flag, bool on)
{
    changeCharacters([flag, on](RtfCharStyle &style) {
        style.flags = static_cast<quint16>(on ? style.flags | flag : style.flags & ~flag);
    });
}

void RichTextBox::changeParagraphs(const RtfSelection::ParagraphChange &change)
{
    RtfSelection::changeParagraphs(textCursor(), change);
}

std::optional<QString> RichTextBox::SelFontName() const
{
    return charValue(
        [this](const QTextCharFormat &f) { return RtfCharStyle::fromFormat(f, font()).family; });
}

void RichTextBox::setSelFontName(const QString &family)
{
    changeCharacters([&family](RtfCharStyle &style) { style.family = family; });
}

std::optional<double> RichTextBox::SelFontSize() const
{
    return charValue([this](const QTextCharFormat &f) {
        return RtfCharStyle::fromFormat(f, font()).halfPoints / 2.0;
    });
}

void RichTextBox::setSelFontSize(double points)
{
    constexpr double most = RtfCharStyle::maximumHalfPoints;
    const int halfPoints = static_cast<int>(std::lround(qBound(1.0, points * 2, most)));
    changeCharacters([halfPoints](RtfCharStyle &style) { style.halfPoints = halfPoints; });
}

std::optional<bool> RichTextBox::SelBold() const
{
    return charValue([](const QTextCharFormat &f) { return f.fontWeight() >= QFont::DemiBold; });
}

void RichTextBox::setSelBold(bool on)
{
    setFlag(RtfCharStyle::Bold, on);
}

std::optional<bool> RichTextBox::SelItalic() const
{
    return charValue([](const QTextCharFormat &f) { return f.fontItalic(); });
}

void RichTextBox::setSelItalic(bool on)
{
    setFlag(RtfCharStyle::Italic, on);
}

std::optional<bool> RichTextBox::SelUnderline() const
{
    return charValue([](const QTextCharFormat &f) { return f.fontUnderline(); });
}

void RichTextBox::setSelUnderline(bool on)
{
    setFlag(RtfCharStyle::Underline, on);
}

std::optional<bool> RichTextBox::SelStrikeThru() const
{
    return charValue([](const QTextCharFormat &f) { return f.fontStrikeOut(); });
}

void RichTextBox::setSelStrikeThru(bool on)
{
    setFlag(RtfCharStyle::Strike, on);
}

std::optional<bool> RichTextBox::SelProtected() const
{
    return charValue([](const QTextCharFormat &f) { return RtfCharStyle::isProtected(f); });
}

void RichTextBox::setSelProtected(bool on)
{
    setFlag(RtfCharStyle::Protected, on);
}

std::optional<QColor> RichTextBox::SelColor() const
{
    const auto colour = charValue(
        [this](const QTextCharFormat &f) { return RtfCharStyle::fromFormat(f, font()).colour; });
    if (!colour)
        return std::nullopt;
    return *colour ? QColor(**colour) : palette().color(QPalette::Text);
}

void RichTextBox::setSelColor(const QColor &colour)
{
    changeCharacters([&colour](RtfCharStyle &style) { style.colour = colour.rgb(); });
}

std::optional<int> RichTextBox::SelCharOffset() const
{
    return charValue([](const QTextCharFormat &f) {
        return f.intProperty(RtfOffsetProperty) * twipsPerHalfPoint;
    });
}

void RichTextBox::setSelCharOffset(int twips)
{
    constexpr int limit = RtfCharStyle::maximumHalfPoints;
    const int offset =
        qBound(-limit, static_cast<int>(std::lround(double(twips) / twipsPerHalfPoint)), limit);
    changeCharacters([offset](RtfCharStyle &style) { style.offset = offset; });
}

std::optional<int> RichTextBox::SelAlignment() const
{
    return paragraphValue([](const RtfParagraphStyle &style) -> int {
        switch (style.alignment) {
        case RtfParagraphStyle::Right:
            return rtfRight;
        case RtfParagraphStyle::Centre:
            return rtfCenter;
        default:
            return rtfLeft;
        }
    });
}

void RichTextBox::setSelAlignment(int alignment)
{
    changeParagraphs([alignment](RtfParagraphStyle &style) {
        style.alignment = alignment == rtfRight ? RtfParagraphStyle::Right
            : alignment == rtfCenter            ? RtfParagraphStyle::Centre
                                                : RtfParagraphStyle::Left;
    });
}

std::optional<bool> RichTextBox::SelBullet() const
{
    return paragraphValue([](const RtfParagraphStyle &style) { return style.bullet; });
}

void RichTextBox::setSelBullet(bool on)
{
    changeParagraphs([on](RtfParagraphStyle &style) {
        if (on && !style.bullet && style.firstIndent == 0) {
            style.leftIndent += bulletHang;
            style.firstIndent = -bulletHang;
        } else if (!on && style.bullet && style.firstIndent == -bulletHang) {
            style.leftIndent -= bulletHang;
            style.firstIndent = 0;
        }
        style.bullet = on;
    });
}

std::optional<int> RichTextBox::SelIndent() const
{
    return paragraphValue(
        [](const RtfParagraphStyle &style) { return style.leftIndent + style.firstIndent; });
}

void RichTextBox::setSelIndent(int twips)
{
    changeParagraphs([twips](RtfParagraphStyle &style) {
        style.leftIndent =
            RtfParagraphStyle::bounded(RtfParagraphStyle::bounded(twips) - style.firstIndent);
    });
}

std::optional<int> RichTextBox::SelHangingIndent() const
{
    return paragraphValue([](const RtfParagraphStyle &style) { return -style.firstIndent; });
}

void RichTextBox::setSelHangingIndent(int twips)
{
    changeParagraphs([twips](RtfParagraphStyle &style) {
        style.leftIndent = RtfParagraphStyle::bounded(
            style.leftIndent + style.firstIndent + RtfParagraphStyle::bounded(twips));
        style.firstIndent = -RtfParagraphStyle::bounded(twips);
    });
}

std::optional<int> RichTextBox::SelRightIndent() const
{
    return paragraphValue([](const RtfParagraphStyle &style) { return style.rightIndent; });
}

void RichTextBox::setSelRightIndent(int twips)
{
    changeParagraphs([twips](RtfParagraphStyle &style) {
        style.rightIndent = RtfParagraphStyle::bounded(twips);
    });
}

std::optional<int> RichTextBox::SelTabCount() const
{
    return paragraphValue(
        [](const RtfParagraphStyle &style) { return static_cast<int>(style.tabs.size()); });
}

void RichTextBox::setSelTabCount(int count)
{
    const auto wanted = qBound(qsizetype(0), qsizetype(count), RtfParagraphStyle::maximumTabs);
    changeParagraphs([wanted](RtfParagraphStyle &style) {
        style.tabs.resize(qMin(wanted, style.tabs.size()));
        while (style.tabs.size() < wanted) {
            const int last = style.tabs.isEmpty() ? 0 : style.tabs.last().position;
            if (last > RtfParagraphStyle::maximumLength - nextTab)
                break; // no text has a stop further out
            style.tabs.append({last + nextTab, RtfTab::Left});
        }
    });
}

std::optional<int> RichTextBox::SelTabs(int index) const
{
    const auto position = paragraphValue([index](const RtfParagraphStyle &style) {
        return index >= 0 && index < style.tabs.size() ? style.tabs.at(index).position : -1;
    });
    return position == -1 ? std::nullopt : position;
}

void RichTextBox::setSelTabs(int index, int twips)
{
    changeParagraphs([index, twips](RtfParagraphStyle &style) {
        if (index < 0 || index >= style.tabs.size())
            return;
        style.tabs[index].position = RtfParagraphStyle::bounded(twips);
        std::sort(style.tabs.begin(), style.tabs.end(),
            [](const RtfTab &a, const RtfTab &b) { return a.position < b.position; });
    });
}
