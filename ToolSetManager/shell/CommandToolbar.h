#pragma once

#include "platform/desktop/Toolbar.h"
#include "shell/CommandState.h"

/// The toolbar of the main frame: a button for each row of the CommandTable. A click gives the
/// button's command word; a group of commands is what carries the same tag.
class CommandToolbar : public Toolbar
{
    Q_OBJECT
public:
    /// The buttons are as without a document window, and all buttons blank until showIcons().
    explicit CommandToolbar(QWidget *parent);

    /// Gives the buttons their icons, or other ones when the desktop's colours have changed.
    /// Finding and reading them takes as long as all the rest of the frame.
    void showIcons();

    /// Enables the buttons by the groups that their tags name, and presses the button of the view.
    void show(const CommandState &state);
    using Toolbar::show;
};
