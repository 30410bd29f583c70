#include "platform/rtf/RtfState.h"

#include <algorithm>

void RtfCharState::apply(RtfKeyword keyword, const RtfToken &token)
{
    const bool on = !token.hasParameter || token.parameter != 0;
    switch (keyword.word) {
    case RtfWord::CharacterFlag:
    case RtfWord::AssociatedFlag: {
        constexpr quint16 shifted = RtfCharStyle::Superscript | RtfCharStyle::Subscript;
        const auto flag = static_cast<quint16>(keyword.value);
        if (flag & shifted)
            flags &= static_cast<quint16>(~shifted);
        flags = static_cast<quint16>(on ? flags | flag : flags & ~flag);
        break;
    }
    case RtfWord::FlagOff:
        flags &= static_cast<quint16>(~keyword.value);
        break;
    case RtfWord::Font:
        font = token.hasParameter ? token.parameter : noFont;
        break;
    case RtfWord::FontSize:
    case RtfWord::AssociatedSize:
        halfPoints = static_cast<qint16>(token.hasParameter
                ? qBound(1, token.parameter, RtfCharStyle::maximumHalfPoints)
                : RtfCharState().halfPoints);
        break;
    case RtfWord::Colour:
        colour = token.parameter;
        break;
    case RtfWord::Background:
        background = token.parameter;
        break;
    case RtfWord::OffsetUp:
    case RtfWord::OffsetDown: {
        constexpr int usual = 6;
        const int by = qBound(-RtfCharStyle::maximumHalfPoints,
            token.hasParameter ? token.parameter : usual, RtfCharStyle::maximumHalfPoints);
        offset = static_cast<qint16>(keyword.word == RtfWord::OffsetUp ? by : -by);
        break;
    }
    default:
        break;
    }
}

RtfScript RtfState::scriptAfter(RtfKeyword keyword) const
{
    const auto said = static_cast<RtfScript>(keyword.value);
    // The direction that is named second is the one which the text has.
    if (said == RtfScript::Any && script != RtfScript::RightToLeft)
        return RtfScript::Other;
    return said;
}

void RtfState::applyToParagraph(RtfKeyword keyword, const RtfToken &token)
{
    const bool on = !token.hasParameter || token.parameter != 0;
    switch (keyword.word) {
    case RtfWord::ParagraphDefaults:
        paragraph = {};
        list = 0;
        listLevel = 0;
        inTable = false;
        nextTab = RtfTab::Left;
        break;
    case RtfWord::Alignment:
        paragraph.alignment = static_cast<RtfParagraphStyle::Alignment>(keyword.value);
        break;
    case RtfWord::LeftIndent:
        paragraph.leftIndent = RtfParagraphStyle::bounded(token.parameter);
        break;
    case RtfWord::RightIndent:
        paragraph.rightIndent = RtfParagraphStyle::bounded(token.parameter);
        break;
    case RtfWord::FirstIndent:
        paragraph.firstIndent = RtfParagraphStyle::bounded(token.parameter);
        break;
    case RtfWord::SpaceBefore:
        paragraph.spaceBefore = qMax(0, RtfParagraphStyle::bounded(token.parameter));
        break;
    case RtfWord::SpaceAfter:
        paragraph.spaceAfter = qMax(0, RtfParagraphStyle::bounded(token.parameter));
        break;
    case RtfWord::LineSpacing:
        paragraph.lineSpacing = RtfParagraphStyle::bounded(token.parameter);
        paragraph.lineSpacingMultiple = false;
        break;
    case RtfWord::LineSpacingMultiple:
        paragraph.lineSpacingMultiple = on;
        break;
    case RtfWord::TabKind:
        nextTab = static_cast<RtfTab::Kind>(keyword.value);
        break;
    case RtfWord::TabStop: {
        const RtfTab tab {
            RtfParagraphStyle::bounded(token.parameter), std::exchange(nextTab, RtfTab::Left)};
        const auto before = [](const RtfTab &a, const RtfTab &b) {
            return a.position < b.position;
        };
        const auto place =
            std::lower_bound(paragraph.tabs.cbegin(), paragraph.tabs.cend(), tab, before);
        const bool there = place != paragraph.tabs.cend() && place->position == tab.position;
        if (!there && paragraph.tabs.size() < RtfParagraphStyle::maximumTabs)
            paragraph.tabs.insert(place - paragraph.tabs.cbegin(), tab);
        break;
    }
    case RtfWord::PageBreakBefore:
        paragraph.pageBreakBefore = on;
        break;
    case RtfWord::Direction:
        paragraph.rightToLeft = keyword.value != 0;
        break;
    case RtfWord::ListNumber:
        list = token.parameter;
        break;
    case RtfWord::ListLevel:
        listLevel = static_cast<quint8>(qBound(0, token.parameter, 8));
        break;
    default:
        break;
    }
}
