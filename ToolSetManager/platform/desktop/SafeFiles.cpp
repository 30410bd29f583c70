#include "platform/desktop/SafeFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#endif

#include <filesystem>

namespace SafeFiles {

bool rename(const QString &from, const QString &to)
{
    std::error_code error;
    std::filesystem::rename(std::filesystem::path(from.toStdU16String()),
        std::filesystem::path(to.toStdU16String()), error);
    if (error)
        errno = error.value();
    return !error;
}

#ifdef Q_OS_UNIX

namespace {

constexpr mode_t folderMode = S_IRWXU;
constexpr mode_t fileMode = S_IRUSR | S_IWUSR;
constexpr mode_t allModes = S_IRWXU | S_IRWXG | S_IRWXO;

/// A descriptor that is closed in time.
class Descriptor
{
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Q_DISABLE_COPY_MOVE(Descriptor)

    bool isValid() const { return m_number >= 0; }
    int get() const { return m_number; }
    int release() { return std::exchange(m_number, -1); }

private:
    int m_number;
};

/// Invalid for a symbolic link, and for what is no folder.
int openFolder(const QString &folder)
{
    // With a separator at its end the name would stand for what a link points to.
    return ::open(QFile::encodeName(QDir::cleanPath(folder)).constData(),
        O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

bool isOwn(int descriptor, struct stat &found)
{
    return descriptor >= 0 && ::fstat(descriptor, &found) == 0 && found.st_uid == ::geteuid();
}

bool setMode(int descriptor, const struct stat &found, mode_t mode)
{
    return (found.st_mode & allModes) == mode || ::fchmod(descriptor, mode) == 0;
}

/// Also the folders above it that are missing are the user's alone.
bool makeMissing(const QString &folder)
{
    const QByteArray name = QFile::encodeName(folder);
    if (::mkdir(name.constData(), folderMode) == 0 || errno == EEXIST)
        return true;
    const QString above = QFileInfo(folder).path();
    return errno == ENOENT && above != folder && makeMissing(above)
        && (::mkdir(name.constData(), folderMode) == 0 || errno == EEXIST);
}

} // namespace

bool makeFolder(const QString &folder)
{
    if (folder.isEmpty() || !makeMissing(QDir::cleanPath(folder)))
        return false;
    const Descriptor opened(openFolder(folder));
    struct stat found
    {
    };
    return isOwn(opened.get(), found) && setMode(opened.get(), found, folderMode);
}

bool isOwnFolder(const QString &folder)
{
    const Descriptor opened(openFolder(folder));
    struct stat found
    {
    };
    return isOwn(opened.get(), found);
}

bool closeToOthers(int descriptor)
{
    struct stat found
    {
    };
    return isOwn(descriptor, found) && S_ISREG(found.st_mode) && found.st_nlink <= 1
        && setMode(descriptor, found, fileMode);
}

bool openOwnFile(QFile &file)
{
    const QFileInfo info(file.fileName());
    // From the folder that was looked at, which cannot be exchanged in between.
    const Descriptor folder(openFolder(info.path()));
    struct stat found
    {
    };
    if (!isOwn(folder.get(), found))
        return false;
    // Not to wait for the other end of a pipe.
    Descriptor opened(::openat(folder.get(), QFile::encodeName(info.fileName()).constData(),
        O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, fileMode));
    if (!closeToOthers(opened.get()))
        return false;
    return file.open(opened.release(), QIODevice::ReadWrite | QIODevice::Unbuffered,
        QFileDevice::AutoCloseHandle);
}

bool canReplace(const QString &former, const QString &file)
{
    const QByteArray name = QFile::encodeName(former);
    struct stat old
    {
    };
    // Attributes may be access lists.
    if (::stat(name.constData(), &old) != 0 || old.st_nlink != 1 || old.st_uid != ::geteuid()
        || ::listxattr(name.constData(), nullptr, 0) > 0) {
        return false;
    }
    const int made = ::open(QFile::encodeName(file).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    constexpr mode_t permissions = 07777;
    const bool alike = made >= 0 && ::fchown(made, old.st_uid, old.st_gid) == 0
        && ::fchmod(made, old.st_mode & permissions) == 0;
    if (made >= 0)
        ::close(made);
    return alike;
}

bool flushToDisk(int file)
{
    // Some file systems have nothing to flush, and say so.
    return repeated([file] { return ::fsync(file); }) == 0 || errno == EINVAL || errno == EROFS
        || errno == ENOTSUP;
}

bool flushToDisk(const QString &path)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return errno == EACCES; // a folder that may be written and not be read
    const bool flushed = flushToDisk(file);
    const int error = errno;
    const bool closed = ::close(file) == 0;
    if (!flushed)
        errno = error;
    return flushed && closed;
}

bool flushFolders(const QString &path, int above)
{
    QString folder = QFileInfo(path).absolutePath();
    bool flushed = flushToDisk(folder);
    for (; flushed && above > 0; --above) {
        folder = QFileInfo(folder).path();
        flushed = flushToDisk(folder);
    }
    return flushed;
}

#else

bool makeFolder(const QString &folder)
{
    return QDir().mkpath(folder) && QFile::setPermissions(folder, folderPermissions);
}

bool isOwnFolder(const QString &folder)
{
    return QFileInfo(folder).isDir();
}

bool openOwnFile(QFile &file)
{
    return file.open(QIODevice::ReadWrite | QIODevice::Unbuffered)
        && file.setPermissions(filePermissions);
}

bool closeToOthers(int)
{
    return true;
}

bool canReplace(const QString &, const QString &)
{
    return false;
}

bool flushToDisk(int)
{
    return true;
}

bool flushToDisk(const QString &)
{
    return true;
}

bool flushFolders(const QString &, int)
{
    return true;
}

#endif

} // namespace SafeFiles
