#include "platform/desktop/InstanceSocket.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QFile>
#include <QStandardPaths>
#include <QThread>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#endif

namespace {

QString privateFolder()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return runtime.isEmpty()
        ? QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)
        : runtime;
}

#ifdef Q_OS_UNIX
// The system's own datagram socket: Qt's would bring the whole network library into every start.

/// Where a socket lies. The system's limit for its path is about a hundred bytes; a longer one is
/// spelled by way of its folder, which is open as long as the address lives.
class Address
{
public:
    explicit Address(QByteArray path)
    {
        constexpr auto room = static_cast<qsizetype>(sizeof(m_name.sun_path));
#ifdef Q_OS_LINUX
        if (path.size() >= room) {
            const qsizetype name = path.lastIndexOf('/') + 1;
            m_folder = ::open(path.left(name).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
            const QByteArray folder = "/proc/self/fd/" + QByteArray::number(m_folder);
            if (m_folder >= 0 && ::access(folder.constData(), X_OK) == 0)
                path = folder + '/' + path.mid(name);
        }
#endif
        if (path.size() >= room)
            return;
        m_name.sun_family = AF_UNIX;
        std::memcpy(m_name.sun_path, path.constData(), static_cast<size_t>(path.size()) + 1);
        m_valid = true;
    }
    ~Address()
    {
        if (m_folder >= 0)
            ::close(m_folder);
    }
    Q_DISABLE_COPY_MOVE(Address)

    bool isValid() const
    {
        return m_valid;
    }
    const sockaddr *get() const
    {
        return reinterpret_cast<const sockaddr *>(&m_name);
    }
    socklen_t size() const
    {
        return sizeof(m_name);
    }

private:
    sockaddr_un m_name {};
    int m_folder = -1;
    bool m_valid = false;
};

int openSocket()
{
    return socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

#ifdef SO_PASSCRED
using Sender = ucred;
#else
using Sender = uid_t;
#endif

/// The folder and the socket's mode keep others out already; this holds where the folder is one
/// that they can reach all the same, say by a wrong XDG_RUNTIME_DIR.
bool isFromThisUser(msghdr &message)
{
#ifdef SO_PASSCRED
    for (cmsghdr *part = CMSG_FIRSTHDR(&message); part; part = CMSG_NXTHDR(&message, part)) {
        if (part->cmsg_level == SOL_SOCKET && part->cmsg_type == SCM_CREDENTIALS) {
            Sender sender {};
            std::memcpy(&sender, CMSG_DATA(part), sizeof(sender));
            return sender.uid == ::geteuid();
        }
    }
    return false;
#else
    Q_UNUSED(message);
    return true;
#endif
}
#endif

} // namespace

InstanceSocket::InstanceSocket(const QString &windowClass, const QString &caption)
{
    // The two together are too long for a socket's path in a deep folder.
    const QByteArray hash = QCryptographicHash::hash(
        (windowClass + u'\n' + caption).toUtf8(), QCryptographicHash::Sha1);
    m_base =
        privateFolder() + u'/' + windowClass + u'-' + QString::fromLatin1(hash.toHex().left(8));
}

InstanceSocket::~InstanceSocket()
{
#ifdef Q_OS_UNIX
    if (m_socket >= 0) {
        ::close(m_socket);
        ::unlink(socketPath().constData());
    }
#endif
}

QString InstanceSocket::lockPath() const
{
    return m_base + QStringLiteral(".lock");
}

QByteArray InstanceSocket::socketPath() const
{
    return QFile::encodeName(m_base + QStringLiteral(".sock"));
}

int InstanceSocket::listen()
{
#ifdef Q_OS_UNIX
    const Address address(socketPath());
    m_socket = address.isValid() ? openSocket() : -1;
    if (m_socket < 0)
        return -1;
    ::unlink(socketPath().constData()); // left behind by a crash
    // Before the socket has a name, so that it is never open to others; where the system passes
    // over that, afterwards.
    ::fchmod(m_socket, S_IRUSR | S_IWUSR);
    bool ready = ::bind(m_socket, address.get(), address.size()) == 0;
#ifdef SO_PASSCRED
    const int on = 1;
    ready = ready && ::setsockopt(m_socket, SOL_SOCKET, SO_PASSCRED, &on, sizeof(on)) == 0;
#endif
    if (!ready) {
        ::close(m_socket);
        m_socket = -1;
        return -1;
    }
    ::chmod(socketPath().constData(), S_IRUSR | S_IWUSR);
#endif
    return m_socket;
}

std::optional<QByteArray> InstanceSocket::receive()
{
#ifdef Q_OS_UNIX
    for (;;) {
        QByteArray content(longestMessage, Qt::Uninitialized);
        iovec part {content.data(), static_cast<size_t>(content.size())};
        // Room for who sent it and no more: file descriptors that come along are closed.
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(Sender))] = {};
        msghdr message {};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        message.msg_control = control;
        message.msg_controllen = sizeof(control);
        const ssize_t size = ::recvmsg(m_socket, &message, MSG_CMSG_CLOEXEC);
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0)
            return std::nullopt;
        if ((message.msg_flags & MSG_TRUNC) == 0 && isFromThisUser(message)) {
            content.truncate(size);
            return content;
        }
    }
#else
    return std::nullopt;
#endif
}

InstanceSocket::Outcome InstanceSocket::trySend(const QByteArray &message) const
{
#ifdef Q_OS_UNIX
    const Address address(socketPath());
    if (!address.isValid())
        return Outcome::Unreachable;
    const int sender = message.size() <= longestMessage ? openSocket() : -1;
    if (sender < 0)
        return Outcome::Failed;
    const ssize_t sent = ::sendto(sender, message.constData(), static_cast<size_t>(message.size()),
        MSG_NOSIGNAL, address.get(), address.size());
    const int error = errno;
    ::close(sender);
    if (sent == message.size())
        return Outcome::Sent;
    return error == ENOENT || error == ECONNREFUSED ? Outcome::NobodyListens : Outcome::Failed;
#else
    Q_UNUSED(message);
    return Outcome::NobodyListens;
#endif
}

InstanceSocket::Outcome InstanceSocket::send(const QByteArray &message, int patienceMs) const
{
    const QDeadlineTimer deadline(patienceMs);
    Outcome outcome = trySend(message);
    while (outcome == Outcome::Failed && !deadline.hasExpired()) {
        QThread::msleep(20);
        outcome = trySend(message);
    }
    return outcome;
}

InstanceSocket::Outcome InstanceSocket::sendWhenReady(
    const QByteArray &message, int patienceMs) const
{
    const QDeadlineTimer deadline(patienceMs);
    Outcome outcome = trySend(message);
    while (outcome != Outcome::Sent && outcome != Outcome::Unreachable && !deadline.hasExpired()) {
        QThread::msleep(20);
        outcome = trySend(message);
    }
    return outcome;
}
