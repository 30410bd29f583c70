#pragma once

class QDialogButtonBox;
class QPushButton;
class QString;
class QWidget;

/// Icons on the buttons of dialogs, on desktops that have them there.
namespace ButtonIcons {

/// Whether the desktop's own dialogs have them.
bool areUsual(const QWidget &dialog);

/// Gives the button the theme's icon of that name, where icons are usual.
void give(QPushButton &button, const QString &icon);

// Those of the buttons that most dialogs have.
void giveOK(QPushButton &button);
void giveCancel(QPushButton &button);
void giveApply(QPushButton &button);
void giveHelp(QPushButton &button);
void giveClose(QPushButton &button);

/// Takes the icons that the toolkit gave to the buttons away, where they are not usual; else they
/// become those of the program's theme.
void settle(const QDialogButtonBox &buttons);

} // namespace ButtonIcons
