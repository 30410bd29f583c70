#include "platform/desktop/SingleInstance.h"

#include "platform/desktop/FileLock.h"
#include "platform/desktop/InstanceRequest.h"

#include <QFile>
#include <QSocketNotifier>

namespace {

constexpr int patienceMs = 3000;

} // namespace

SingleInstance::SingleInstance(const QString &windowClass, const QString &caption, QObject *parent)
    : QObject(parent)
    , m_socket(windowClass, caption)
{
}

SingleInstance::~SingleInstance()
{
    if (m_lock)
        QFile::remove(m_socket.lockPath());
}

bool SingleInstance::claim()
{
    m_lock = std::make_unique<FileLock>();
    if (m_lock->lock(m_socket.lockPath()) == FileLock::Result::Taken) {
        m_lock.reset();
        return false;
    }
    serve();
    return true;
}

/// Without the socket a second start still ends; it only brings nothing forward.
void SingleInstance::serve()
{
    const int descriptor = m_socket.listen();
    if (descriptor < 0)
        return;
    auto *notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &SingleInstance::receive);
}

void SingleInstance::receive()
{
    bool asked = false;
    QStringList paths;
    while (const auto message = m_socket.receive()) {
        const QString path = InstanceRequest::pathToOpen(*message);
        if (!path.isEmpty())
            paths.append(path);
        asked = asked || !path.isEmpty() || *message == InstanceRequest::comeForward();
    }
    if (asked)
        Q_EMIT comeForward();
    for (const QString &path : std::as_const(paths))
        Q_EMIT openRequested(path);
}

bool SingleInstance::askFirstToComeForward() const
{
    // The first instance may hold the lock and not listen yet.
    return m_socket.sendWhenReady(InstanceRequest::comeForward(), patienceMs)
        == InstanceSocket::Outcome::Sent;
}
