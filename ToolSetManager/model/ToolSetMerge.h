#pragma once

#include "model/ToolSetDiff.h"

#include <QStringList>

#include <vector>

/// Merges two states of a set that come from a common one, tool by tool, field by field, and in
/// their order. What only one side has changed is taken from that side. Where both have, the merge
/// takes ours and reports a conflict. No tool is lost and none doubled: one that one side has
/// removed and the other one changed stays, with a conflict.
class ToolSetMerge
{
public:
    struct Conflict
    {
        enum Kind { Field, Removal, Order, Name };
        Kind kind = Field;
        QString tool; ///< Its name in the result; empty for the set itself.
        int field = -1; ///< Index in ToolFields; -1 where it is no field of a tool.
        QString text; ///< What both sides did, in a sentence.
    };

    ToolSetMerge(const ToolSetState &base, const ToolSetState &ours, const ToolSetState &theirs);

    /// Its tools are new ones.
    const ToolSetState &result() const { return m_result; }
    const std::vector<Conflict> &conflicts() const { return m_conflicts; }

private:
    /// One tool through all three states; indexes from 0, -1 where a state does not have it.
    struct Item
    {
        int base = -1;
        int ours = -1;
        int theirs = -1;
        ToolPtr merged; ///< Null when it is removed.
    };
    /// A side's order of the items, and which of them it has moved or added.
    struct Side
    {
        std::vector<int> order; ///< Items.
        std::vector<bool> displaced; ///< By item.
    };

    void mergeProperties(
        const ToolSetState &base, const ToolSetState &ours, const ToolSetState &theirs);
    void collectItems(
        const ToolSetState &base, const ToolSetState &ours, const ToolSetState &theirs);
    void mergeTool(
        Item &item, const ToolSetState &base, const ToolSetState &ours, const ToolSetState &theirs);
    void mergeFields(CVBATool &merged, const CVBATool *base, const CVBATool &theirs);
    void mergeOrder(const ToolSetState &base, const ToolSetState &ours, const ToolSetState &theirs);
    Side sideOf(const ToolSetState &base, const ToolSetState &side, int Item::*position) const;
    void makeNamesUnique();

    std::vector<Item> m_items;
    ToolSetState m_result;
    std::vector<Conflict> m_conflicts;
};
