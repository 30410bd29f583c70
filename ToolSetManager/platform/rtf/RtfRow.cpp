#include "platform/rtf/RtfRow.h"

#include <QTextBlock>
#include <QTextList>

RtfRow::RtfRow(const QList<int> &shape)
    : m_edges(shape.begin() + qMin(qsizetype(2), shape.size()), shape.end())
    , m_left(shape.value(0))
    , m_gap(shape.value(1))
{
}

bool RtfRow::isRow(const QTextBlock &block)
{
    if (!block.isValid() || !block.blockFormat().hasProperty(RtfRowProperty) || block.textList())
        return false;
    const auto style = RtfParagraphStyle::fromFormat(block.blockFormat(), false);
    const RtfRow row(style.row);
    return row.hasCells() && style == row.style()
        && block.text().count(u'\t') + 1 == static_cast<qsizetype>(row.m_edges.size());
}

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
    if (hasCells()) {
        style.row = {m_left, m_gap};
        style.row.append(QList<int>(m_edges.begin(), m_edges.end()));
    }
    style.leftIndent = qMax(0, RtfParagraphStyle::bounded(m_left + m_gap));
    for (size_t i = 0; i + 1 < m_edges.size(); ++i) {
        const int position = RtfParagraphStyle::bounded(m_edges[i] + m_gap);
        if (style.tabs.isEmpty() || position > style.tabs.last().position)
            style.tabs.append({position, RtfTab::Left});
    }
    return style;
}
