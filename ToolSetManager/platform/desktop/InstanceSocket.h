#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The local socket by which later starts reach the running instance of a program: datagrams of a
/// few bytes, open to the user alone. It lies in the session's own folder (XDG_RUNTIME_DIR), or in
/// the user's cache folder where the system gives none. Needs QtCore only, so that a small program
/// can ask, too.
class InstanceSocket
{
public:
    enum class Outcome {
        Sent,
        NobodyListens, ///< No instance runs, or it is not ready yet.
        Failed, ///< There is one, but it did not take the message in time.
        Unreachable ///< There can be no socket: the folder's path is too long for the system.
    };

    static constexpr qsizetype longestMessage = 4200; ///< Bytes: a path and a word.

    /// Window class and caption of the main window together name the program.
    InstanceSocket(const QString &windowClass, const QString &caption);
    ~InstanceSocket();
    InstanceSocket(const InstanceSocket &) = delete;
    InstanceSocket &operator=(const InstanceSocket &) = delete;

    /// The file beside the socket whose lock tells who is first.
    QString lockPath() const;

    /// Takes the place of the listener until destruction. The descriptor to watch; -1 when the
    /// socket cannot be made.
    int listen();
    /// The next message that waits; nothing when there is none. Messages of other users, and such
    /// as are too long, are thrown away.
    std::optional<QByteArray> receive();

    /// Hands a message to the listener. Waits up to \a patienceMs for one that is busy.
    Outcome send(const QByteArray &message, int patienceMs) const;
    /// Waits, too, while nobody listens yet.
    Outcome sendWhenReady(const QByteArray &message, int patienceMs) const;

private:
    Outcome trySend(const QByteArray &message) const;
    QByteArray socketPath() const;

    QString m_base;
    int m_socket = -1;
};
