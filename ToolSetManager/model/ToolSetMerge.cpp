#include "model/ToolSetMerge.h"

#include "model/ToolFields.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace {

const CVBATool *toolAt(const ToolSetState &state, int index)
{
    return index < 0 ? nullptr : state.tools[size_t(index)].get();
}

/// An order that does not depend on which side is which.
bool comesFirst(const CVBATool &a, const CVBATool &b)
{
    const int order = QString::compare(a.Description, b.Description, Qt::CaseInsensitive);
    return order != 0 ? order < 0 : a.Description < b.Description;
}

} // namespace

ToolSetMerge::ToolSetMerge(
    const ToolSetState &base, const ToolSetState &ours, const ToolSetState &theirs)
{
    mergeProperties(base, ours, theirs);
    collectItems(base, ours, theirs);
    for (Item &item : m_items)
        mergeTool(item, base, ours, theirs);
    mergeOrder(base, ours, theirs);
    makeNamesUnique();
}

void ToolSetMerge::mergeProperties(
    const ToolSetState &base, const ToolSetState &ours, const ToolSetState &theirs)
{
    m_result.properties = ours.properties;
    const auto merge = [&](auto field, const QString &name) {
        const auto &b = base.properties.*field;
        const auto &o = ours.properties.*field;
        const auto &t = theirs.properties.*field;
        if (o == b)
            m_result.properties.*field = t;
        else if (t != b && t != o)
            m_conflicts.push_back({Conflict::Field, {}, -1,
                QStringLiteral("Both sides changed the %1 of the tool set.").arg(name)});
    };
    merge(&ToolSetContents::Properties::Description, QStringLiteral("description"));
    merge(&ToolSetContents::Properties::LongDescription, QStringLiteral("long description"));
    merge(&ToolSetContents::Properties::FLAGS, QStringLiteral("menu switch"));
}

void ToolSetMerge::collectItems(
    const ToolSetState &base, const ToolSetState &ours, const ToolSetState &theirs)
{
    m_items.resize(base.tools.size());
    std::vector<int> itemOfOurs(ours.tools.size(), -1);
    std::vector<int> itemOfTheirs(theirs.tools.size(), -1);
    const auto take = [&](const ToolSetState &side, int Item::*index, std::vector<int> &itemOf) {
        const std::vector<int> matches = ToolSetDiff::match(base, side);
        for (size_t i = 0; i < matches.size(); ++i) {
            m_items[i].base = int(i);
            m_items[i].*index = matches[i] - 1;
            if (matches[i] > 0)
                itemOf[size_t(matches[i]) - 1] = int(i);
        }
    };
    take(ours, &Item::ours, itemOfOurs);
    take(theirs, &Item::theirs, itemOfTheirs);
    // Tools that both have added under one name are one.
    QHash<QString, int> added;
    for (size_t i = 0; i < ours.tools.size(); ++i) {
        if (itemOfOurs[i] >= 0)
            continue;
        added.insert(ours.tools[i]->Description.toCaseFolded(), int(m_items.size()));
        m_items.push_back({-1, int(i), -1, {}});
    }
    for (size_t i = 0; i < theirs.tools.size(); ++i) {
        if (itemOfTheirs[i] >= 0)
            continue;
        const int item = added.value(theirs.tools[i]->Description.toCaseFolded(), -1);
        if (item >= 0)
            m_items[size_t(item)].theirs = int(i);
        else
            m_items.push_back({-1, -1, int(i), {}});
    }
}

void ToolSetMerge::mergeTool(
    Item &item, const ToolSetState &base, const ToolSetState &ours, const ToolSetState &theirs)
{
    const CVBATool *b = toolAt(base, item.base);
    const CVBATool *o = toolAt(ours, item.ours);
    const CVBATool *t = toolAt(theirs, item.theirs);
    const CVBATool *left = o ? o : t;
    if (!left)
        return; // both have removed it
    if (b && !(o && t)) {
        if (*left == *b)
            return; // one has removed it, and the other one left it as it was
        m_conflicts.push_back({Conflict::Removal, left->Description, -1,
            o ? QStringLiteral("Theirs removed the tool, ours changed it.")
              : QStringLiteral("Ours removed the tool, theirs changed it.")});
    }
    item.merged = std::make_shared<CVBATool>(*left);
    if (o && t)
        mergeFields(*item.merged, b, *t);
}

void ToolSetMerge::mergeFields(CVBATool &merged, const CVBATool *base, const CVBATool &theirs)
{
    const QBitArray differing = ToolFields::differing(merged, theirs);
    for (int field = 0; field < differing.size(); ++field) {
        if (!differing.at(field))
            continue;
        if (base && ToolFields::isSame(*base, merged, field)) {
            ToolFields::copy(theirs, merged, field);
        } else if (!base || !ToolFields::isSame(*base, theirs, field)) {
            m_conflicts.push_back({Conflict::Field, merged.Description, field,
                QStringLiteral("Both sides changed the %1.").arg(ToolFields::nameOf(field))});
        }
    }
}

ToolSetMerge::Side ToolSetMerge::sideOf(
    const ToolSetState &base, const ToolSetState &side, int Item::*position) const
{
    Side result;
    result.order.assign(side.tools.size(), -1);
    result.displaced.assign(m_items.size(), false);
    std::vector<int> positions(base.tools.size(), 0);
    for (size_t i = 0; i < m_items.size(); ++i) {
        const int at = m_items[i].*position;
        if (at < 0)
            continue;
        result.order[size_t(at)] = int(i);
        if (i < positions.size())
            positions[i] = at + 1;
        else
            result.displaced[i] = true;
    }
    const std::vector<bool> inPlace = ToolSetDiff::inPlace(positions);
    for (size_t i = 0; i < positions.size(); ++i)
        result.displaced[i] = positions[i] > 0 && !inPlace[i];
    return result;
}

void ToolSetMerge::mergeOrder(
    const ToolSetState &base, const ToolSetState &ours, const ToolSetState &theirs)
{
    const Side sides[] = {sideOf(base, ours, &Item::ours), sideOf(base, theirs, &Item::theirs)};
    // Tools that neither has moved keep their order; the others go into the gaps behind these.
    std::vector<bool> fixed(m_items.size(), false);
    for (size_t i = 0; i < base.tools.size(); ++i)
        fixed[i] = m_items[i].merged && !sides[0].displaced[i] && !sides[1].displaced[i];
    constexpr int head = -1;
    std::vector<int> gaps[2]; // by item: the fixed one that it follows on that side
    for (int side : {0, 1}) {
        gaps[side].assign(m_items.size(), head);
        int last = head;
        for (const int item : sides[side].order) {
            if (item < 0)
                continue;
            gaps[side][size_t(item)] = last;
            if (fixed[size_t(item)])
                last = item;
        }
    }
    QHash<int, std::vector<int>> inGap[2]; // each side's items behind a fixed one
    QSet<int> shared; // those on which both sides agree
    for (size_t i = 0; i < m_items.size(); ++i) {
        const Item &item = m_items[i];
        if (!item.merged || fixed[i] || item.ours < 0 || item.theirs < 0 || !sides[0].displaced[i]
            || !sides[1].displaced[i])
            continue;
        if (gaps[0][i] == gaps[1][i])
            shared.insert(int(i));
        else
            m_conflicts.push_back({Conflict::Order, item.merged->Description, -1,
                QStringLiteral("The sides put the tool in different places.")});
    }
    for (int side : {0, 1}) {
        for (const int at : sides[side].order) {
            if (at < 0 || !m_items[size_t(at)].merged || fixed[size_t(at)])
                continue;
            const Item &item = m_items[size_t(at)];
            const bool both = item.ours >= 0 && item.theirs >= 0;
            const bool mine = !both || shared.contains(at)
                || (side == 0 ? sides[0].displaced[size_t(at)] : !sides[0].displaced[size_t(at)]);
            if (mine)
                inGap[side][gaps[side][size_t(at)]].push_back(at);
        }
    }
    QSet<int> placed;
    const auto place = [&](int item) {
        if (placed.contains(item))
            return;
        placed.insert(item);
        m_result.tools.push_back(m_items[size_t(item)].merged);
    };
    const auto fillGap = [&](int gap) {
        const std::vector<int> o = inGap[0].value(gap);
        const std::vector<int> t = inGap[1].value(gap);
        auto nextOurs = o.begin();
        auto nextTheirs = t.begin();
        while (nextOurs != o.end() || nextTheirs != t.end()) {
            const auto isShared = [&](int item) { return shared.contains(item); };
            const auto endOurs = std::find_if(nextOurs, o.end(), isShared);
            const auto endTheirs = std::find_if(nextTheirs, t.end(), isShared);
            const bool oursFirst = nextTheirs == endTheirs
                || (nextOurs != endOurs
                    && comesFirst(
                        *m_items[size_t(*nextOurs)].merged, *m_items[size_t(*nextTheirs)].merged));
            if (oursFirst)
                std::for_each(nextOurs, endOurs, place);
            std::for_each(nextTheirs, endTheirs, place);
            if (!oursFirst)
                std::for_each(nextOurs, endOurs, place);
            nextOurs = endOurs == o.end() ? endOurs : endOurs + 1;
            nextTheirs = endTheirs == t.end() ? endTheirs : endTheirs + 1;
            if (endOurs != o.end())
                place(*endOurs);
            if (endTheirs != t.end())
                place(*endTheirs);
        }
    };
    m_result.tools.reserve(m_items.size());
    fillGap(head);
    for (size_t i = 0; i < base.tools.size(); ++i) {
        if (!fixed[i])
            continue;
        place(int(i));
        fillGap(int(i));
    }
}

void ToolSetMerge::makeNamesUnique()
{
    // The names of ours stay.
    QHash<QString, const CVBATool *> owners;
    for (const bool ofOurs : {true, false}) {
        for (const Item &item : m_items) {
            if (!item.merged || (item.ours >= 0) != ofOurs)
                continue;
            const QString name = item.merged->Description;
            if (!owners.contains(name.toCaseFolded())) {
                owners.insert(name.toCaseFolded(), item.merged.get());
                continue;
            }
            int number = 1;
            QString free;
            do {
                free = QStringLiteral("%1(%2)").arg(name).arg(number++);
            } while (owners.contains(free.toCaseFolded()));
            item.merged->Description = free;
            owners.insert(free.toCaseFolded(), item.merged.get());
            m_conflicts.push_back({Conflict::Name, free, -1,
                QStringLiteral("Both sides have another tool called \"%1\".").arg(name)});
        }
    }
}
