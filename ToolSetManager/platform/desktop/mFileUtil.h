#pragma once

#include <QString>

/// Path helpers. Paths have the platform's own separators; "folder" means a path without regard to
/// a separator at its end.
namespace mFileUtil {

/// The folder of the running program, with a separator at its end.
QString ProgramFolder();

/// The path with a separator at its end, added when there is none.
QString AddSeparator(const QString &folder);

enum class UserFolder {
    Documents, ///< Where the user keeps documents.
    Data ///< The program's own data directory, open to the user alone.
};

/// A folder that can be used for \a wanted: itself where it exists or can be made, else the folder
/// of the same name below \a instead, made when missing. Nothing is ever made below the program's
/// folder. Empty when no folder can be made.
QString UsableFolder(const QString &wanted, UserFolder instead = UserFolder::Data);

/// The path in upper case, letter by letter: "ß" has no capital and stays, so that two files never
/// become one and the capitals of a path in capitals are that path.
QString UpperCase(const QString &path);

/// The existing path that differs from \a path at most in letter case, in its real spelling; empty
/// when there is none. An exact match of a name is preferred, then one by UpperCase().
QString RealSpelling(const QString &path);

} // namespace mFileUtil
