#include "platform/desktop/SingleInstance.h"

#include "platform/desktop/FileLock.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QFile>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <QThread>

#ifdef Q_OS_UNIX
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <optional>
#endif

namespace {

constexpr char request[] = "come forward";
constexpr int patienceMs = 3000;

/// The session's own folder; where the system gives none, the cache folder, which is the user's
/// as well.
QString privateFolder()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return runtime.isEmpty()
        ? QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)
        : runtime;
}

#ifdef Q_OS_UNIX
// The system's own datagram socket: Qt's would bring the whole network library into every start.

struct Address
{
    sockaddr_un name {};
    socklen_t size = 0;
    const sockaddr *get() const { return reinterpret_cast<const sockaddr *>(&name); }
};

/// Empty when the path is longer than the system allows for a socket.
std::optional<Address> addressOf(const QByteArray &path)
{
    Address address;
    if (path.size() >= static_cast<qsizetype>(sizeof(address.name.sun_path)))
        return std::nullopt;
    address.name.sun_family = AF_UNIX;
    std::memcpy(address.name.sun_path, path.constData(), static_cast<size_t>(path.size()) + 1);
    address.size = sizeof(address.name);
    return address;
}

int openSocket()
{
    return socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}
#endif

} // namespace

SingleInstance::SingleInstance(const QString &windowClass, const QString &caption, QObject *parent)
    : QObject(parent)
{
    // The two together are too long for a socket's path in a deep folder.
    const QByteArray hash = QCryptographicHash::hash(
        (windowClass + u'\n' + caption).toUtf8(), QCryptographicHash::Sha1);
    m_base =
        privateFolder() + u'/' + windowClass + u'-' + QString::fromLatin1(hash.toHex().left(8));
}

SingleInstance::~SingleInstance()
{
#ifdef Q_OS_UNIX
    if (m_socket >= 0) {
        ::close(m_socket);
        ::unlink(socketPath().constData());
    }
#endif
    if (m_lock)
        QFile::remove(lockPath());
}

QString SingleInstance::lockPath() const
{
    return m_base + QStringLiteral(".lock");
}

QByteArray SingleInstance::socketPath() const
{
    return QFile::encodeName(m_base + QStringLiteral(".sock"));
}

bool SingleInstance::claim()
{
    m_lock = std::make_unique<FileLock>();
    if (m_lock->lock(lockPath()) == FileLock::Result::Taken) {
        m_lock.reset();
        return false;
    }
    serve();
    return true;
}

/// Without the socket a second start still ends; it only brings nothing forward.
void SingleInstance::serve()
{
#ifdef Q_OS_UNIX
    const auto address = addressOf(socketPath());
    m_socket = address ? openSocket() : -1;
    if (m_socket < 0)
        return;
    ::unlink(address->name.sun_path); // left behind by a crash
    if (::bind(m_socket, address->get(), address->size) != 0) {
        ::close(m_socket);
        m_socket = -1;
        return;
    }
    ::chmod(address->name.sun_path, S_IRUSR | S_IWUSR);
    auto *notifier = new QSocketNotifier(m_socket, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char received[sizeof(request)];
        bool asked = false;
        ssize_t size = 0;
        while ((size = ::recv(m_socket, received, sizeof(received), 0)) >= 0) {
            asked =
                asked || QByteArrayView(received, size) == QByteArrayView(request, sizeof(request));
        }
        if (asked)
            Q_EMIT comeForward();
    });
#endif
}

bool SingleInstance::askFirstToComeForward() const
{
#ifdef Q_OS_UNIX
    const auto address = addressOf(socketPath());
    const int sender = address ? openSocket() : -1;
    if (sender < 0)
        return false;
    const QDeadlineTimer deadline(patienceMs);
    bool sent = false;
    // The first instance may hold the lock and not listen yet.
    while (!(sent = ::sendto(sender, request, sizeof(request), 0, address->get(), address->size)
                   == static_cast<ssize_t>(sizeof(request)))
        && !deadline.hasExpired()) {
        QThread::msleep(20);
    }
    ::close(sender);
    return sent;
#else
    return false;
#endif
}
