#pragma once

#include "platform/desktop/InstanceSocket.h"

#include <QObject>

#include <memory>

class FileLock;

/// Sees to it that the program runs once in a user's session. A lock, which is void as soon
/// as its process is gone, decides who is first; a local socket beside it, open to the user alone,
/// takes the requests of later starts and of the opener.
class SingleInstance : public QObject
{
    Q_OBJECT
public:
    /// Window class and caption of the main window together name the program.
    SingleInstance(const QString &windowClass, const QString &caption, QObject *parent = nullptr);
    ~SingleInstance() override;

    /// True when this is the first running instance; it is so until destruction. When the place
    /// for the lock cannot be written there is nobody to ask, and the answer is true.
    bool claim();

    /// Asks the first instance to come forward. Tries again for a moment while that one is still
    /// starting; false when it could not be reached.
    bool askFirstToComeForward() const;

Q_SIGNALS:
    void comeForward();
    /// The user has opened that file on the desktop: an absolute path of a regular file that
    /// exists, or whose name cannot be read. comeForward() is raised before it.
    void openRequested(const QString &path);

private:
    void serve();
    void receive();

    InstanceSocket m_socket;
    std::unique_ptr<FileLock> m_lock;
};
