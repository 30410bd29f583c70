#pragma once

#include <QRect>
#include <QString>

class QWidget;
class SettingsStore;

/// Keeps the place and size of top-level windows across runs, in twips, in a section of the
/// settings with a name that the caller chooses.
namespace MWindowPosition {

/// Writes the window's place and size; those it returns to when it is maximised or minimised.
/// Throws VbError when the store cannot be written.
void SaveWindowPosition(SettingsStore &store, const QString &name, const QWidget &window);

/// Moves and sizes the window: to its stored values; where one is missing, to its present size and
/// the centre of the primary screen; and never larger than that screen or beyond its edges.
void RestoreWindowPosition(const SettingsStore &store, const QString &name, QWidget &window);

/// The last two steps of restoring, in any one unit: no larger than the screen (whose top left is
/// 0, 0), then moved so that no edge lies beyond it.
QRect keptOnScreen(QRect window, const QSize &screen);

} // namespace MWindowPosition
