#include "model/ToolSetUpdate.h"

#include "model/ToolSetDocument.h"

#include <QHash>
#include <QSet>

namespace {

using Entry = ToolSetUpdate::Target::Entry;

/// The tools of the document that the target keeps, by the target's order; null for a new one.
std::vector<ToolPtr> keptTools(const ToolSetDocument &document, const std::vector<Entry> &entries)
{
    std::vector<ToolPtr> kept;
    kept.reserve(entries.size());
    for (const Entry &entry : entries)
        kept.push_back(entry.from > 0 ? document.toolAt(entry.from) : nullptr);
    return kept;
}

void removeOthers(ToolSetDocument &document, const std::vector<Entry> &entries)
{
    std::vector<bool> stays(size_t(document.count()) + 1, false);
    for (const Entry &entry : entries)
        stays[size_t(entry.from)] = true;
    QList<int> positions;
    for (int position = 1; position <= document.count(); ++position) {
        if (!stays[size_t(position)])
            positions.append(position);
    }
    document.remove(positions);
}

/// Tools that have each other's names get them by way of names that nobody has.
void rename(
    ToolSetDocument &document, const std::vector<Entry> &entries, const std::vector<ToolPtr> &kept)
{
    QSet<QString> finalNames;
    QHash<QString, ToolPtr> owners; // of names that will be free
    for (size_t i = 0; i < entries.size(); ++i) {
        finalNames.insert(entries[i].tool->Description.toCaseFolded());
        if (kept[i] && kept[i]->Description != entries[i].tool->Description)
            owners.insert(kept[i]->Description.toCaseFolded(), kept[i]);
    }
    if (owners.isEmpty())
        return;
    for (size_t i = 0; i < entries.size(); ++i) {
        const QString name = entries[i].tool->Description.toCaseFolded();
        const ToolPtr owner = owners.value(name);
        if (!owner || owner == kept[i] || owner->Description.toCaseFolded() != name)
            continue;
        QString other = owner->Description;
        do {
            other += u'~';
        } while (
            finalNames.contains(other.toCaseFolded()) || document.Tools().Items().contains(other));
        document.rename(owner, other);
    }
    for (size_t i = 0; i < entries.size(); ++i) {
        if (kept[i])
            document.rename(kept[i], QString(entries[i].tool->Description));
    }
}

} // namespace

ToolSetState ToolSetUpdate::stateOf(const ToolSetDocument &document)
{
    return {document.properties(), document.toolsInOrder()};
}

ToolSetState ToolSetUpdate::stateOf(const CVBATools &set)
{
    ToolSetState state {{set.Description(), set.LongDescription(), set.FLAGS()}, {}};
    state.tools.reserve(size_t(set.Count()));
    for (const ToolPtr &tool : set)
        state.tools.push_back(tool);
    return state;
}

ToolSetUpdate::Target ToolSetUpdate::unchanged(const ToolSetDocument &document)
{
    Target target {document.properties(), {}};
    target.tools.reserve(size_t(document.count()));
    for (int position = 1; position <= document.count(); ++position)
        target.tools.push_back({position, document.toolAt(position)});
    return target;
}

ToolSetUpdate::Target ToolSetUpdate::replacement(
    const ToolSetDocument &document, const ToolSetState &state)
{
    Target target {state.properties, {}};
    const std::vector<int> positions = ToolSetDiff::match(state, stateOf(document));
    target.tools.reserve(positions.size());
    for (size_t i = 0; i < positions.size(); ++i)
        target.tools.push_back({positions[i], state.tools[i]});
    return target;
}

void ToolSetUpdate::apply(ToolSetDocument &document, const Target &target, const QString &step)
{
    const ToolSetDocument::Step whole(document, step);
    document.setProperties(target.properties);
    const std::vector<ToolPtr> kept = keptTools(document, target.tools);
    removeOthers(document, target.tools);
    rename(document, target.tools, kept);
    QList<ToolPtr> added;
    for (size_t i = 0; i < kept.size(); ++i) {
        if (kept[i])
            document.change(kept[i], CVBATool(*target.tools[i].tool));
        else
            added.append(std::make_shared<CVBATool>(*target.tools[i].tool));
    }
    if (!added.isEmpty())
        document.append(added);

    QHash<const CVBATool *, int> positions;
    positions.reserve(document.count());
    for (int position = 1; position <= document.count(); ++position)
        positions.insert(document.toolAt(position).get(), position);
    std::vector<int> order;
    order.reserve(kept.size());
    auto nextAdded = added.cbegin();
    for (const ToolPtr &tool : kept) {
        const int position = positions.value(tool ? tool.get() : (nextAdded++)->get());
        if (position > 0) // not so for a tool that the set has refused
            order.push_back(position);
    }
    document.arrange(order);
}
