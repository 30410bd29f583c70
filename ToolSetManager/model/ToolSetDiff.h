#pragma once

#include "model/ToolSetContents.h"

#include <QBitArray>

#include <vector>

/// A set as comparisons and merges read it: its own values and its tools by position.
struct ToolSetState
{
    ToolSetContents::Properties properties;
    std::vector<ToolPtr> tools;
};

/// The difference between two states of a set. Tools are matched by their names without regard to
/// letter case, then, where they were renamed, by what else they have: location, help text,
/// picture. The cost grows linearly with the sets, but for sorting.
class ToolSetDiff
{
public:
    /// One tool of either side.
    struct Row
    {
        int left = 0; ///< Position in the left set; 0 when it is only in the right one.
        int right = 0;
        bool moved = false; ///< Its place among the tools that both sets have is another one.
        QBitArray fields; ///< Those that differ, by their index in ToolFields; empty for none.

        bool onlyLeft() const { return right == 0; }
        bool onlyRight() const { return left == 0; }
        bool differs() const { return onlyLeft() || onlyRight() || moved || !fields.isEmpty(); }
    };

    /// What a person wants to know first.
    struct Summary
    {
        int added = 0; ///< Only in the right set.
        int removed = 0;
        int changed = 0;
        int moved = 0;
        bool properties = false;
        bool isEmpty() const { return added + removed + changed + moved == 0 && !properties; }
    };

    ToolSetDiff(const ToolSetState &left, const ToolSetState &right);

    /// One row for each tool of either side: the order of the right set, in which each tool that is
    /// only in the left one follows the tool that it follows there.
    const std::vector<Row> &rows() const { return m_rows; }
    bool propertiesDiffer() const { return m_propertiesDiffer; }
    Summary summary() const;

    /// For each position of the left set, beginning at index 0, the position of the same tool in
    /// the right one; 0 for none.
    static std::vector<int> match(const ToolSetState &left, const ToolSetState &right);
    /// Of positions that a matching gave, those whose order both sets share: a longest ascending
    /// subsequence. By index; entries of 0 do not count.
    static std::vector<bool> inPlace(const std::vector<int> &positions);

private:
    std::vector<Row> m_rows;
    bool m_propertiesDiffer = false;
};
