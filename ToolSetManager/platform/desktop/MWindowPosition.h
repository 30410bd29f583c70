#pragma once

#include <QRect>
#include <QString>

#include <optional>

class QWidget;
class SettingsStore;

/// Keeps the place and size of top-level windows across runs, in twips, in a section of the
/// settings with a name that the caller chooses. What is kept is the window with its frame and
/// title bar, so a window that is only opened and closed stays where it is.
namespace MWindowPosition {

/// Writes the window's place and size; those it returns to when it is maximised or minimised.
/// Throws VbError when the store cannot be written.
void SaveWindowPosition(SettingsStore &store, const QString &name, const QWidget &window);

/// Moves and sizes the window: to its stored values; where one is missing, to its present size and
/// the centre of the primary screen; and never larger than that screen or beyond its edges.
/// Before the window is shown its frame is unknown: it is placed again when it has one.
void RestoreWindowPosition(const SettingsStore &store, const QString &name, QWidget &window);

/// Writes the window's place and size from now on whenever the user has changed them. A store that
/// cannot be written is passed over.
void WriteWhenChanged(SettingsStore &store, const QString &name, QWidget &window);

// The names of the windows that have one.
constexpr char16_t mainWindow[] = u"Main";
constexpr char16_t preview[] = u"Printer";

/// Gives the window two thirds of the screen, in its middle.
void Center(QWidget &window);

/// Forgets the stored place and size: the next RestoreWindowPosition() finds none. Throws VbError.
void ForgetWindowPosition(SettingsStore &store, const QString &name);

/// What a section holds; a value that is missing or no number is left out.
struct Stored
{
    std::optional<int> left;
    std::optional<int> top;
    std::optional<int> width;
    std::optional<int> height;
};

/// Where a window goes, in any one unit. \a present and \a smallest are its present size and the
/// one below which it cannot get, both with its frame; the screen's top left is 0, 0.
QRect restored(
    const Stored &stored, const QSize &present, const QSize &smallest, const QSize &screen);

} // namespace MWindowPosition
