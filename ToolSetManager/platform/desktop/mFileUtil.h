#pragma once

#include <QString>

/// Path helpers. Paths have the platform's own separators; "folder" means a path without regard to
/// a separator at its end.
namespace mFileUtil {

/// The folder of the running program, with a separator at its end.
QString ProgramFolder();

/// The path with a separator at its end, added when there is none.
QString AddSeparator(const QString &folder);

/// A folder that can be used for \a wanted: itself where it exists or can be made, else the folder
/// of the same name in the user's data directory, made when missing and open to the user alone.
/// Empty when that cannot be made either.
QString UsableFolder(const QString &wanted);

/// The existing path that differs from \a path at most in letter case, in its real spelling; empty
/// when there is none. An exact match of a name is preferred.
QString RealSpelling(const QString &path);

} // namespace mFileUtil
