#include "platform/desktop/SingleInstance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QStandardPaths>
#include <QThread>

namespace {

constexpr char request[] = "come forward\n";
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

SingleInstance::~SingleInstance() = default;

bool SingleInstance::claim()
{
    m_lock = std::make_unique<QLockFile>(m_base + QStringLiteral(".lock"));
    m_lock->setStaleLockTime(0); // only a dead process makes the lock stale, not its age
    if (!m_lock->tryLock(0) && m_lock->error() == QLockFile::LockFailedError) {
        m_lock.reset();
        return false;
    }
    serve();
    return true;
}

void SingleInstance::serve()
{
    const QString name = m_base + QStringLiteral(".sock");
    QLocalServer::removeServer(name); // left behind by a crash
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = m_server->nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
                if (!socket->canReadLine())
                    return;
                socket->readAll();
                Q_EMIT comeForward();
                socket->write("done\n");
                socket->disconnectFromServer();
            });
        }
    });
    m_server->listen(name); // without it a second start still ends; it only brings nothing forward
}

bool SingleInstance::askFirstToComeForward() const
{
    QDeadlineTimer deadline(patienceMs);
    QLocalSocket socket;
    // The first instance may hold the lock and not listen yet.
    for (;;) {
        socket.connectToServer(m_base + QStringLiteral(".sock"));
        if (socket.waitForConnected(static_cast<int>(deadline.remainingTime())))
            break;
        if (deadline.hasExpired())
            return false;
        QThread::msleep(20);
    }
    socket.write(request);
    return socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()));
}
