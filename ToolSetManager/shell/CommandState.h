#pragma once

#include <QString>

#include <optional>

/// What a document window offers at present. The window shows it in its menus, the frame in the
/// toolbar while the window is the active one. As constructed: nothing, as without a window.
struct CommandState
{
    // The groups of CommandTable.
    bool needsToolSet = false;
    bool needsTool = false;
    bool needsClipboard = false;

    int view = 0; ///< The view that is on: a value of ListView::ViewConstants, 0 for none.

    // What one step back or forward would undo or redo; no value: there is nothing.
    std::optional<QString> undo;
    std::optional<QString> redo;

    /// The member for that group; null for a tag that is none.
    bool *group(const QString &tag);
    bool isEnabled(const QString &tag) const;
};
