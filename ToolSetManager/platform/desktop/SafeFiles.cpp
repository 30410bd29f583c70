#include "platform/desktop/SafeFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace SafeFiles {

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

void flushToDisk(const QFileDevice &file)
{
    ::fdatasync(file.handle());
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

void flushToDisk(const QFileDevice &)
{
}

#endif

} // namespace SafeFiles
