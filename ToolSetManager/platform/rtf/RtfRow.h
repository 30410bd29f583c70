#pragma once

#include "platform/rtf/RtfKeywords.h"
#include "platform/rtf/RtfStyle.h"
#include "platform/rtf/RtfTokenizer.h"

#include <vector>

class QTextBlock;

/// The shape of a table's row, as its control words tell it. Here a row is a line of text with a
/// tab stop at the edge of each cell; tabs stand between cells.
class RtfRow
{
public:
    RtfRow() = default;
    /// From `RtfParagraphStyle::row`.
    explicit RtfRow(const QList<int> &shape);

    /// True for a paragraph that looks like a row and has one tab less than cells.
    static bool isRow(const QTextBlock &block);

    /// Does what a word about the row's shape says; other words do nothing.
    void apply(RtfKeyword keyword, const RtfToken &token);

    bool hasCells() const { return !m_edges.empty(); }
    int left() const { return m_left; }
    int gap() const { return m_gap; }
    const std::vector<int> &edges() const { return m_edges; }
    /// Looks of the line.
    RtfParagraphStyle style() const;

private:
    // Twips.
    std::vector<int> m_edges; ///< Right edges of the cells.
    int m_left = 0;
    int m_gap = 0; ///< Between a cell's edge and its text.
};
