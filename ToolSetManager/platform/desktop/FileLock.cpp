#include "platform/desktop/FileLock.h"

#include "platform/desktop/SafeFiles.h"

#include <QFile>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#else
#include <QLockFile>
#endif

FileLock::FileLock() = default;

#ifdef Q_OS_UNIX

FileLock::~FileLock()
{
    if (m_file >= 0)
        ::close(m_file);
}

FileLock::Result FileLock::lock(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const int file = ::open(name.constData(),
        O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (file < 0)
        return Result::Unusable;
    if (!SafeFiles::closeToOthers(file)) {
        ::close(file);
        return Result::Unusable;
    }
    if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        const bool taken = errno == EWOULDBLOCK;
        ::close(file);
        return taken ? Result::Taken : Result::Unusable;
    }
    // Its last holder may have removed the file between the opening and the locking; who comes
    // next would make a new one and hold that.
    struct stat own
    {
    };
    struct stat named
    {
    };
    if (::fstat(file, &own) != 0 || ::stat(name.constData(), &named) != 0
        || own.st_ino != named.st_ino || own.st_dev != named.st_dev) {
        ::close(file);
        return Result::Taken;
    }
    m_file = file;
    return Result::Locked;
}

#else

FileLock::~FileLock() = default;

FileLock::Result FileLock::lock(const QString &path)
{
    auto file = std::make_unique<QLockFile>(path);
    file->setStaleLockTime(0); // only a dead process makes the lock stale, not its age
    if (!file->tryLock(0)) {
        return file->error() == QLockFile::LockFailedError ? Result::Taken : Result::Unusable;
    }
    m_file = std::move(file);
    return Result::Locked;
}

#endif
