#include "model/ToolSetContents.h"

#include <algorithm>

namespace {

/// Removes the elements at those positions.
void erasePositions(std::vector<ToolPtr> &order, const QList<int> &positions)
{
    if (positions.isEmpty())
        return;
    qsizetype next = 0;
    size_t kept = static_cast<size_t>(positions.constFirst()) - 1;
    for (size_t i = kept; i < order.size(); ++i) {
        if (next < positions.size() && static_cast<size_t>(positions[next]) == i + 1)
            ++next;
        else
            order[kept++] = std::move(order[i]);
    }
    order.resize(kept);
}

/// Inserts elements so that they have those positions then.
void insertPositions(
    std::vector<ToolPtr> &order, const QList<int> &positions, const std::vector<ToolPtr> &tools)
{
    const size_t staying = order.size();
    order.resize(staying + tools.size());
    // From the end, so that each element is moved once.
    size_t from = staying;
    size_t inserted = tools.size();
    for (size_t to = order.size(); to > 0 && inserted > 0; --to) {
        if (static_cast<size_t>(positions[static_cast<qsizetype>(inserted) - 1]) == to)
            order[to - 1] = tools[--inserted];
        else
            order[to - 1] = std::move(order[--from]);
    }
}

} // namespace

int ToolSetContents::positionOf(const CVBATool *tool) const
{
    const auto found = std::find_if(m_order.begin(), m_order.end(),
        [tool](const ToolPtr &candidate) { return candidate.get() == tool; });
    return found == m_order.end() ? 0 : static_cast<int>(found - m_order.begin()) + 1;
}

ToolSetContents::Properties ToolSetContents::properties() const
{
    return {m_tools->Description(), m_tools->LongDescription(), m_tools->FLAGS()};
}

void ToolSetContents::setTools(std::unique_ptr<CVBATools> tools)
{
    m_tools = std::move(tools);
    m_order.clear();
    m_order.reserve(static_cast<size_t>(m_tools->Count()));
    for (const ToolPtr &tool : *m_tools)
        m_order.push_back(tool);
}

QList<int> ToolSetContents::append(const QList<ToolPtr> &tools)
{
    QList<int> positions;
    positions.reserve(tools.size());
    for (const ToolPtr &tool : tools) {
        if (!m_tools->Add(tool))
            continue;
        m_order.push_back(tool);
        positions.append(static_cast<int>(m_order.size()));
    }
    if (!positions.isEmpty())
        Q_EMIT toolsInserted(positions);
    return positions;
}

ToolSetContents::TakenTools ToolSetContents::takeOut(const QList<int> &positions)
{
    QStringList keys;
    keys.reserve(positions.size());
    for (const int position : positions)
        keys.append(toolAt(position)->Description);
    TakenTools taken = m_tools->TakeOut(keys);
    erasePositions(m_order, positions);
    Q_EMIT toolsRemoved(positions);
    return taken;
}

void ToolSetContents::putIn(const QList<int> &positions, const TakenTools &taken)
{
    m_tools->PutBack(taken);
    std::vector<ToolPtr> tools;
    tools.reserve(taken.size());
    for (const auto &placed : taken)
        tools.push_back(placed.item);
    insertPositions(m_order, positions, tools);
    Q_EMIT toolsInserted(positions);
}

void ToolSetContents::reorder(const QList<int> &from, const QList<int> &to)
{
    std::vector<ToolPtr> moved;
    moved.reserve(static_cast<size_t>(from.size()));
    for (const int position : from)
        moved.push_back(toolAt(position));
    erasePositions(m_order, from);
    insertPositions(m_order, to, moved);
    Q_EMIT toolsMoved(from, to);
}

KeyedCollection<ToolPtr>::Place ToolSetContents::placeOf(const ToolPtr &tool) const
{
    return m_tools->Items().placeOf(tool->Description);
}

void ToolSetContents::rename(
    const ToolPtr &tool, const QString &newName, KeyedCollection<ToolPtr>::Place place)
{
    auto taken = m_tools->TakeOut({tool->Description});
    tool->Description = newName;
    taken.front().place = place;
    m_tools->PutBack(taken);
    Q_EMIT toolChanged(positionOf(tool.get()));
}

void ToolSetContents::rename(const ToolPtr &tool, const QString &newName)
{
    m_tools->Rename(tool, newName);
    Q_EMIT toolChanged(positionOf(tool.get()));
}

void ToolSetContents::writeFields(const ToolPtr &tool, const CVBATool &fields)
{
    const QString name = tool->Description;
    *tool = fields;
    tool->Description = name;
    Q_EMIT toolChanged(positionOf(tool.get()));
}

void ToolSetContents::writeProperties(const Properties &properties)
{
    m_tools->setDescription(properties.Description);
    m_tools->setLongDescription(properties.LongDescription);
    m_tools->setFLAGS(properties.FLAGS);
    Q_EMIT propertiesChanged();
}
