#pragma once

#include "platform/rtf/RtfKeywords.h"
#include "platform/rtf/RtfStyle.h"
#include "platform/rtf/RtfTokenizer.h"

#include <vector>

/// The shape of a table's row, as its control words tell it. Here a row is a line of text with a
/// tab stop at the edge of each cell.
class RtfRow
{
public:
    /// Does what a word about the row's shape says; other words do nothing.
    void apply(RtfKeyword keyword, const RtfToken &token);

    bool hasCells() const { return !m_edges.empty(); }
    /// Looks of the line.
    RtfParagraphStyle style() const;

private:
    // Twips.
    std::vector<int> m_edges; ///< Right edges of the cells.
    int m_left = 0;
    int m_gap = 0; ///< Between a cell's edge and its text.
};
