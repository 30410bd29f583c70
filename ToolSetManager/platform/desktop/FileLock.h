#pragma once

#include <QString>

#include <memory>

#ifndef Q_OS_UNIX
class QLockFile;
#endif

/// A lock file that one process holds at a time. The system lets go of it when that process ends,
/// in whatever way, so that no lock is ever stale.
class FileLock
{
public:
    enum class Result {
        Locked,
        Taken, ///< Another process, or another object, holds it.
        Unusable ///< The place cannot be written.
    };

    FileLock();
    /// Lets go of the lock; the file stays.
    ~FileLock();

    /// Makes the file, open to the user alone, when it is missing. Does not wait.
    Result lock(const QString &path);

private:
#ifdef Q_OS_UNIX
    int m_file = -1;
#else
    std::unique_ptr<QLockFile> m_file;
#endif
};
