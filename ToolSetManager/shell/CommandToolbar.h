#pragma once

#include "platform/desktop/Toolbar.h"

/// The toolbar of the main frame: a button for each row of the CommandTable. A click gives the
/// button's command word; a group of commands is what carries the same tag.
class CommandToolbar : public Toolbar
{
    Q_OBJECT
public:
    /// The document buttons are disabled, and all buttons blank until showIcons().
    explicit CommandToolbar(QWidget *parent);

    /// Gives the buttons their icons, or other ones when the desktop's colours have changed.
    /// Finding and reading them takes as long as all the rest of the frame.
    void showIcons();

    /// Enables or disables the buttons whose tag is \a group.
    void setGroupEnabled(const QString &group, bool enabled);
    // A key that no button has is ignored.
    void setButtonEnabled(const QString &key, bool enabled);
    void setButtonPressed(const QString &key, bool pressed);
    void releaseViewButtons();
    /// As it is without a document window.
    void disableDocumentButtons();
};
