#pragma once

#include <QFileDevice>

class QFile;

/// What keeps files safe: from other users and from a machine that stops.
///
/// The program's own folders and files are the user's alone, whatever mask the program was started
/// with. One that is a symbolic link, or belongs to somebody else, is not used: what lies there may
/// have been put in place by another user, for the program to overwrite or to read.
namespace SafeFiles {

constexpr QFileDevice::Permissions folderPermissions =
    QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
constexpr QFileDevice::Permissions filePermissions =
    QFileDevice::ReadOwner | QFileDevice::WriteOwner;

/// Makes the folder when it is missing, with those above it, and closes it to others in any case.
/// False when it cannot be made or must not be used.
bool makeFolder(const QString &folder);

/// True for a folder that exists and may be used.
bool isOwnFolder(const QString &folder);

/// Opens a file of the program's own for reading and writing, unbuffered: made when it is missing,
/// closed to others in any case, its content left as it is. Its folder must be one of the program's
/// own, too. False when it cannot be opened or must not be used; a second name (a hard link) counts
/// like a symbolic one.
bool openOwnFile(QFile &file);

/// The same for a file that is open already: closes it to others. False when it must not be used.
bool closeToOthers(int descriptor);

/// Returns when the file's content is on the disk, as far as the system can tell. Flushes nothing
/// that the file itself holds back.
void flushToDisk(const QFileDevice &file);

} // namespace SafeFiles
