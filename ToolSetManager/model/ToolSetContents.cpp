#include "model/ToolSetContents.h"

#include "model/Positions.h"

int ToolSetContents::positionOf(const CVBATool *tool) const
{
    // Outwards from the last one, in both directions, because undo walks backwards.
    const size_t count = m_order.size();
    size_t up = qMin(m_lastFound, count);
    size_t down = up;
    while (up < count || down > 0) {
        if (up < count && m_order[up++].get() == tool) {
            m_lastFound = up - 1;
            return static_cast<int>(up);
        }
        if (down > 0 && m_order[--down].get() == tool) {
            m_lastFound = down;
            return static_cast<int>(down) + 1;
        }
    }
    return 0;
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
    Positions::take(m_order, positions);
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
    Positions::insert(m_order, positions, std::move(tools));
    Q_EMIT toolsInserted(positions);
}

void ToolSetContents::reorder(const QList<int> &from, const QList<int> &to)
{
    Positions::move(m_order, from, to);
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
