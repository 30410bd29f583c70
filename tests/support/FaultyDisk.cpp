#include "support/FaultyDisk.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

thread_local int left = 0; // calls until the one that fails; 0: disarmed, or it was reached
thread_local int fault = 0;
thread_local char failing[PATH_MAX + 20] = "";
thread_local char half = 0;
thread_local int interruptions = 0;

/// True when the call has to fail.
bool fails(const char *call, const char *path)
{
    if (fault == 0)
        return false;
    char now[sizeof failing];
    std::snprintf(now, sizeof now, "%s %s", call, path);
    if (left > 0 && --left == 0) {
        if (fault == FaultyDisk::killed) {
            if (std::strcmp(call, "write") != 0)
                ::kill(::getpid(), SIGKILL);
            half = 1;
        }
        std::strcpy(failing, now);
    }
    if (failing[0] == '\0' || std::strcmp(failing, now) != 0)
        return false;
    errno = fault;
    // The toolkit repeats an interrupted call for ever.
    return fault != EINTR || interruptions++ < 200;
}

bool fails(const char *call, int file)
{
    struct stat info
    {
    };
    if (fault == 0 || ::fstat(file, &info) != 0
        || (!S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode)))
        return false;
    char link[40];
    char path[PATH_MAX] = "";
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    if (::readlink(link, path, sizeof path - 1) < 0)
        return false;
    return fails(call, path);
}

} // namespace

FaultyDisk::FaultyDisk(int nth, int error)
{
    failing[0] = '\0';
    interruptions = 0;
    left = nth;
    fault = error;
}

FaultyDisk::~FaultyDisk()
{
    fault = 0;
}

QByteArray FaultyDisk::hit()
{
    return failing;
}

extern "C" {

ssize_t write(int file, const void *bytes, size_t count)
{
    const bool failed = fails("write", file);
    if (half) {
        ::syscall(SYS_write, file, bytes, count / 2);
        ::kill(::getpid(), SIGKILL);
    }
    return failed ? -1 : ::syscall(SYS_write, file, bytes, count);
}

int fsync(int file)
{
    return fails("fsync", file) ? -1 : static_cast<int>(::syscall(SYS_fsync, file));
}

int fdatasync(int file)
{
    return fails("fsync", file) ? -1 : static_cast<int>(::syscall(SYS_fdatasync, file));
}

int close(int file)
{
    const bool failed = fails("close", file);
    const int error = errno;
    const auto result = static_cast<int>(::syscall(SYS_close, file));
    if (failed)
        errno = error;
    return failed ? -1 : result;
}

int ftruncate(int file, off_t size) noexcept
{
    return fails("truncate", file) ? -1 : static_cast<int>(::syscall(SYS_ftruncate, file, size));
}

int ftruncate64(int file, off_t size) noexcept
{
    return ftruncate(file, size);
}

int rename(const char *from, const char *to) noexcept
{
    return fails("rename", from) ? -1 : static_cast<int>(::syscall(SYS_rename, from, to));
}

int unlink(const char *path) noexcept
{
    return fails("unlink", path) ? -1 : static_cast<int>(::syscall(SYS_unlink, path));
}
}
