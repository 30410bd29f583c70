#pragma once

#include "model/ToolSetMerge.h"
#include "model/ToolSetUpdate.h"

#include <QObject>

#include <array>
#include <memory>
#include <vector>

class ComparedSet;
class QTimer;
class ToolSetDocument;

/// Two sets side by side, with a third one that both come from where there is one: what differs,
/// and the copying and merging of it. Follows sets that are open in windows. No windows.
class Comparison : public QObject
{
    Q_OBJECT
public:
    enum Side { Left, Right };
    static Side other(Side side) { return side == Left ? Right : Left; }

    /// A tool of either side; the first row is the set's own values.
    struct Row : ToolSetDiff::Row
    {
        bool ofSet = false; ///< The fields are those of DifferenceTexts::SetField then.
        int base = 0; ///< Position in the base; 0 for none.
        QBitArray conflicts; ///< Fields that both sides have changed; empty for none.
        bool removalConflict = false; ///< One side has removed the tool, the other one changed it.

        bool hasConflict() const { return removalConflict || !conflicts.isEmpty(); }
        int position(Side side) const { return side == Left ? left : right; }
    };

    Comparison(std::unique_ptr<ComparedSet> left, std::unique_ptr<ComparedSet> right);
    ~Comparison() override;

    // --- The sets ---
    ComparedSet &set(Side side) { return *m_sets[side]; }
    const ComparedSet &set(Side side) const { return *m_sets[side]; }
    const ComparedSet *base() const { return m_base.get(); } ///< Null for none.
    void setSet(Side side, std::unique_ptr<ComparedSet> set);
    void setBase(std::unique_ptr<ComparedSet> base); ///< Null: two sets only.
    void swapSides();

    // --- The differences ---
    const std::vector<Row> &rows() const { return m_rows; }
    /// The tool as it is compared; null for the set's own values and where the side has none.
    const CVBATool *tool(const Row &row, Side side) const;
    const CVBATool *baseTool(const Row &row) const;
    QString name(const Row &row) const; ///< Of the right tool, else of the left one.
    QString difference(const Row &row) const; ///< In words; "Same" for none.
    QString summary() const; ///< Of all rows, in words.
    /// What a merge would leave to the user; none without a base.
    const std::vector<ToolSetMerge::Conflict> &conflicts() const { return m_conflicts; }
    /// Which row a conflict is about; -1 where there is none.
    int rowOf(const ToolSetMerge::Conflict &conflict) const;
    /// Compares again at once, if anything has changed.
    void refresh();

    // --- Changes of one side, each one step of undo of its document, which must be there ---
    /// Makes these tools like those of the other side: changes, moves, adds or removes them.
    void copy(const std::vector<size_t> &rows, Side to);
    /// Copies single fields of a row that both sides have.
    void copyFields(size_t row, const QList<int> &fields, Side to);
    void copyAll(Side to);
    /// Brings in what the other side has changed since the base. Conflicts keep what the side has.
    void mergeInto(Side to);

Q_SIGNALS:
    void refreshed();
    void titlesChanged();

private:
    void follow(ComparedSet &set);
    void compare();
    Row rowOfSet() const;
    void addBaseTo(std::vector<Row> &rows) const;
    QString changedFields(const Row &row) const;
    bool sameAsBase(const Row &row, Side side, int field) const;
    ToolSetUpdate::Target withRows(const std::vector<size_t> &rows, Side to) const;

    std::array<std::unique_ptr<ComparedSet>, 2> m_sets;
    std::unique_ptr<ComparedSet> m_base;
    std::vector<Row> m_rows;
    ToolSetDiff::Summary m_summary;
    std::vector<ToolSetMerge::Conflict> m_conflicts;
    QTimer *m_later; ///< To the next comparison: edits come in numbers.
    qint64 m_cost = 0; ///< Milliseconds of the last comparison.
};
