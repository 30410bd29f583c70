#pragma once

#include <QStringList>

class QDropEvent;

/// Files that a file manager drags onto a window of the program.
namespace FileDrag {

/// The regular files that the drag carries, absolute and with the platform's own separators;
/// folders and what lies on another machine are left out. It asks the other program and the disk:
/// to be called when the drag enters a window, not at each of its moves.
QStringList paths(const QDropEvent &event);

/// The files' names without their folders, for the user to read.
QString names(const QStringList &paths);

/// Says to the drag whether a drop would be taken. The files are only read, so what is agreed on
/// with the other program is a copy or a link, never a move, after which that one deletes its
/// files.
void answer(QDropEvent &event, bool fits);

} // namespace FileDrag
