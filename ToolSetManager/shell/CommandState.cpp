#include "shell/CommandState.h"

#include "shell/CommandTable.h"

bool *CommandState::group(const QString &tag)
{
    if (tag == CommandTable::needsToolSet)
        return &needsToolSet;
    if (tag == CommandTable::needsTool)
        return &needsTool;
    if (tag == CommandTable::needsClipboard)
        return &needsClipboard;
    return nullptr;
}

bool CommandState::isEnabled(const QString &tag) const
{
    CommandState copy = *this;
    const bool *state = copy.group(tag);
    return !state || *state; // what belongs to no group is always offered
}
