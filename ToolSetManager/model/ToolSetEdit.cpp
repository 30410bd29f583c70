#include "model/ToolSetEdit.h"

#include "model/ToolFields.h"

#include <algorithm>
#include <type_traits>

namespace {

qint64 bytesOf(const QString &text)
{
    return text.size() * qint64(sizeof(QChar));
}

qint64 bytesOf(const QImage &picture)
{
    return picture.sizeInBytes();
}

template <class Value>
qint64 bytesOf(const Value & /*number*/)
{
    return sizeof(Value);
}

qint64 bytesOf(const CVBATool &tool)
{
    qint64 bytes = sizeof(CVBATool);
    ToolFields::forEach([&](const auto &field) { bytes += bytesOf(tool.*(field.field)); });
    return bytes;
}

/// Of the fields of \a before that \a after does not share with it.
qint64 bytesChanged(const CVBATool &before, const CVBATool &after)
{
    qint64 bytes = 2 * sizeof(CVBATool);
    ToolFields::forEach([&](const auto &field) {
        if (before.*(field.field) != after.*(field.field))
            bytes += bytesOf(before.*(field.field));
    });
    return bytes;
}

qint64 bytesOf(const QList<int> &positions)
{
    return positions.size() * qint64(sizeof(int));
}

} // namespace

// --- Append, remove, move ---

AppendEdit::AppendEdit(const QList<ToolPtr> &tools)
    : m_tools(tools)
{
}

void AppendEdit::apply(ToolSetContents &contents)
{
    if (m_taken.empty()) {
        m_positions = contents.append(m_tools);
        m_tools.clear();
    } else {
        contents.putIn(m_positions, m_taken);
        m_taken.clear();
    }
}

void AppendEdit::revert(ToolSetContents &contents)
{
    m_taken = contents.takeOut(m_positions);
}

RemoveEdit::RemoveEdit(const QList<int> &positions)
    : m_positions(positions)
{
}

void RemoveEdit::apply(ToolSetContents &contents)
{
    m_taken = contents.takeOut(m_positions);
}

void RemoveEdit::revert(ToolSetContents &contents)
{
    contents.putIn(m_positions, m_taken);
    m_taken.clear();
}

qint64 RemoveEdit::bytes() const
{
    qint64 bytes = bytesOf(m_positions);
    for (const auto &placed : m_taken)
        bytes += bytesOf(*placed.item);
    return bytes;
}

MoveEdit::MoveEdit(const QList<int> &from, const QList<int> &to)
    : m_from(from)
    , m_to(to)
{
}

void MoveEdit::apply(ToolSetContents &contents)
{
    contents.reorder(m_from, m_to);
}

void MoveEdit::revert(ToolSetContents &contents)
{
    contents.reorder(m_to, m_from);
}

qint64 MoveEdit::bytes() const
{
    return bytesOf(m_from) + bytesOf(m_to);
}

// --- Rename, change ---

RenameEdit::RenameEdit(const ToolPtr &tool, const QString &newName)
    : m_tool(tool)
    , m_after {newName}
{
}

void RenameEdit::apply(ToolSetContents &contents)
{
    if (m_applied) {
        contents.rename(m_tool, m_after.name, m_after.place);
        return;
    }
    m_before = {m_tool->Description, contents.placeOf(m_tool)};
    contents.rename(m_tool, m_after.name);
    m_after = {m_tool->Description, contents.placeOf(m_tool)};
    m_applied = true;
}

void RenameEdit::revert(ToolSetContents &contents)
{
    contents.rename(m_tool, m_before.name, m_before.place);
}

ChangeEdit::ChangeEdit(const ToolPtr &tool, const CVBATool &after)
    : m_tool(tool)
    , m_before(*tool)
    , m_after(after)
{
}

void ChangeEdit::apply(ToolSetContents &contents)
{
    contents.writeFields(m_tool, m_after);
}

void ChangeEdit::revert(ToolSetContents &contents)
{
    contents.writeFields(m_tool, m_before);
}

qint64 ChangeEdit::bytes() const
{
    return bytesChanged(m_before, m_after);
}

PropertiesEdit::PropertiesEdit(
    ToolSetContents::Properties before, ToolSetContents::Properties after)
    : m_before(std::move(before))
    , m_after(std::move(after))
{
}

void PropertiesEdit::apply(ToolSetContents &contents)
{
    contents.writeProperties(m_after);
}

void PropertiesEdit::revert(ToolSetContents &contents)
{
    contents.writeProperties(m_before);
}

qint64 PropertiesEdit::bytes() const
{
    return bytesOf(m_before.Description) + bytesOf(m_before.LongDescription);
}

// --- A step ---

ToolSetStep::ToolSetStep(ToolSetContents &contents, const QString &text, const QList<int> &selected)
    : QUndoCommand(text)
    , m_contents(contents)
    , m_selectedBefore(selected)
{
}

void ToolSetStep::add(std::unique_ptr<ToolSetEdit> edit, bool dirties)
{
    m_bytes += edit->bytes();
    m_edits.push_back(std::move(edit));
    m_dirties = m_dirties || dirties;
}

void ToolSetStep::forget()
{
    m_edits.clear();
    m_selectedBefore.clear();
    m_selectedAfter.clear();
    m_bytes = 0;
}

void ToolSetStep::undo()
{
    for (auto edit = m_edits.rbegin(); edit != m_edits.rend(); ++edit)
        (*edit)->revert(m_contents);
}

void ToolSetStep::redo()
{
    if (!m_pushed) {
        m_pushed = true;
        return;
    }
    for (const auto &edit : m_edits)
        edit->apply(m_contents);
}
