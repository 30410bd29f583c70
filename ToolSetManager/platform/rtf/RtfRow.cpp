#include "platform/rtf/RtfRow.h"

void RtfRow::apply(RtfKeyword keyword, const RtfToken &token)
{
    switch (keyword.word) {
    case RtfWord::RowDefaults:
        *this = {};
        break;
    case RtfWord::RowLeft:
        m_left = RtfParagraphStyle::bounded(token.parameter);
        break;
    case RtfWord::RowGap:
        m_gap = RtfParagraphStyle::bounded(token.parameter);
        break;
    case RtfWord::CellEdge:
        if (m_edges.size() < RtfParagraphStyle::maximumTabs)
            m_edges.push_back(RtfParagraphStyle::bounded(token.parameter));
        break;
    default:
        break;
    }
}

RtfParagraphStyle RtfRow::style() const
{
    RtfParagraphStyle style;
    style.leftIndent = qMax(0, RtfParagraphStyle::bounded(m_left + m_gap));
    for (size_t i = 0; i + 1 < m_edges.size(); ++i) {
        const int position = RtfParagraphStyle::bounded(m_edges[i] + m_gap);
        if (style.tabs.isEmpty() || position > style.tabs.last().position)
            style.tabs.append({position, RtfTab::Left});
    }
    return style;
}
