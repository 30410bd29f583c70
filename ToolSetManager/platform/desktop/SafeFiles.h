#pragma once

#include <QFileDevice>

#include <cerrno>

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

/// Returns when the content of the open file, or of the file at \a path, is on the disk; true also
/// where the system cannot say that. Flushes nothing that the program itself holds back.
bool flushToDisk(int file);
bool flushToDisk(const QString &path);
/// Flushes what a new or renamed file at \a path has changed in its folder and in so many folders
/// above that may be new as well.
bool flushFolders(const QString &path, int above = 0);

/// Puts the file \a from in the place of \a to. Not QFile::rename, which replaces nothing.
bool rename(const QString &from, const QString &to);
/// Whether \a file may take the place of \a former without a change of owner, group, permissions
/// or links; it has the former's permissions then. False also where that is not known.
bool canReplace(const QString &former, const QString &file);

/// Calls the system again when a signal has interrupted it, but not for ever.
template <class Call>
auto repeated(Call call)
{
    auto result = call();
    for (int i = 0; result < 0 && errno == EINTR && i < 100; ++i)
        result = call();
    return result;
}

} // namespace SafeFiles
