#include "platform/desktop/DiskFile.h"

#include "platform/desktop/SafeFiles.h"

#include <QFile>

#include <cerrno>
#include <utility>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#else
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#endif

#ifdef Q_OS_UNIX

namespace {

FileStamp stampOf(const struct stat &info)
{
#ifdef Q_OS_DARWIN
    const timespec &time = info.st_mtimespec;
#else
    const timespec &time = info.st_mtim;
#endif
    constexpr qint64 nanoseconds = 1'000'000'000;
    return {static_cast<quint64>(info.st_dev), static_cast<quint64>(info.st_ino), info.st_size,
        time.tv_sec * nanoseconds + time.tv_nsec};
}

} // namespace

FileStamp FileStamp::of(const QString &path)
{
    struct stat info
    {
    };
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? stampOf(info) : FileStamp();
}

bool DiskFile::open(OpenMode mode)
{
    const QByteArray name = QFile::encodeName(m_path);
    m_created = false;
    constexpr mode_t everybody = 0666; // less the user's mask
    constexpr mode_t userAlone = 0600;
    // A file that exists is distinguished from one made here; it may come or go in between.
    constexpr int attempts = 10;
    for (int i = 0; i < attempts && m_file < 0; ++i) {
        if (!mode.testFlag(NewOnly))
            m_file = ::open(name.constData(), O_RDWR | O_CLOEXEC);
        if (m_file >= 0 || (!mode.testFlag(NewOnly) && errno != ENOENT))
            break;
        m_file = ::open(name.constData(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
            mode.testFlag(NewOnly) ? userAlone : everybody);
        m_created = m_file >= 0;
        if (mode.testFlag(NewOnly) || (m_file < 0 && errno != EEXIST))
            break;
        if (m_file < 0) // a link that leads nowhere yet
            m_file = ::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, everybody);
    }
    if (m_file < 0)
        return failed();
    return QIODevice::open(WriteOnly | Unbuffered);
}

bool DiskFile::tryLock()
{
    return ::flock(m_file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

bool DiskFile::isInPlace() const
{
    const FileStamp own = stamp();
    const FileStamp named = FileStamp::of(m_path);
    return own.device == named.device && own.node == named.node;
}

FileStamp DiskFile::stamp() const
{
    struct stat info
    {
    };
    return m_file >= 0 && ::fstat(m_file, &info) == 0 ? stampOf(info) : m_last;
}

bool DiskFile::truncate()
{
    return SafeFiles::repeated([this] { return ::ftruncate(m_file, 0); }) == 0 || failed();
}

qint64 DiskFile::writeData(const char *bytes, qint64 count)
{
    const auto written =
        SafeFiles::repeated([&] { return ::write(m_file, bytes, static_cast<size_t>(count)); });
    if (written < 0)
        failed();
    return written;
}

bool DiskFile::finish()
{
    m_last = stamp();
    const bool flushed = SafeFiles::flushToDisk(m_file) || failed();
    // Not repeated when interrupted: the descriptor may be another file's by then.
    const bool closed = ::close(std::exchange(m_file, -1)) == 0 || failed();
    const QString reason = errorString();
    QIODevice::close();
    setErrorString(reason);
    return flushed && closed;
}

void DiskFile::close()
{
    QIODevice::close();
    if (m_file >= 0)
        ::close(std::exchange(m_file, -1));
}

#else

FileStamp FileStamp::of(const QString &path)
{
    struct _stat64 info;
    if (::_wstat64(reinterpret_cast<const wchar_t *>(path.utf16()), &info) != 0)
        return {};
    return {info.st_dev, info.st_ino, info.st_size, info.st_mtime};
}

bool DiskFile::open(OpenMode mode)
{
    m_created = FileStamp::of(m_path).size < 0;
    // Who opens the file meanwhile is refused, which is this system's lock.
    const errno_t error = ::_wsopen_s(&m_file, reinterpret_cast<const wchar_t *>(m_path.utf16()),
        _O_RDWR | _O_CREAT | _O_BINARY | _O_NOINHERIT | (mode.testFlag(NewOnly) ? _O_EXCL : 0),
        _SH_DENYWR, _S_IREAD | _S_IWRITE);
    if (error != 0)
        return failed();
    return QIODevice::open(WriteOnly | Unbuffered);
}

bool DiskFile::tryLock()
{
    return true;
}

bool DiskFile::isInPlace() const
{
    return true; // an open file cannot be replaced
}

FileStamp DiskFile::stamp() const
{
    struct _stat64 info;
    if (m_file < 0 || ::_fstat64(m_file, &info) != 0)
        return m_last;
    return {info.st_dev, info.st_ino, info.st_size, info.st_mtime};
}

bool DiskFile::truncate()
{
    return ::_chsize_s(m_file, 0) == 0 || failed();
}

qint64 DiskFile::writeData(const char *bytes, qint64 count)
{
    const int written = ::_write(m_file, bytes, static_cast<unsigned>(count));
    if (written < 0)
        failed();
    return written;
}

bool DiskFile::finish()
{
    m_last = stamp();
    const bool flushed = ::_commit(m_file) == 0 || failed();
    const bool closed = ::_close(std::exchange(m_file, -1)) == 0 || failed();
    const QString reason = errorString();
    QIODevice::close();
    setErrorString(reason);
    return flushed && closed;
}

void DiskFile::close()
{
    QIODevice::close();
    if (m_file >= 0)
        ::_close(std::exchange(m_file, -1));
}

#endif

DiskFile::DiskFile(const QString &path)
    : m_path(path)
{
}

DiskFile::~DiskFile()
{
    DiskFile::close();
}

bool DiskFile::failed()
{
    setErrorString(qt_error_string(errno));
    return false;
}
