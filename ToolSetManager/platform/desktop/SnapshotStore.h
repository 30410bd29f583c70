#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <vector>

class FileLock;

/// The folder of snapshots: copies of unsaved work, for the case that the program ends without
/// having been closed. Each running program has a folder of its own in it, which it holds by a
/// lock; a folder whose lock is free was left behind. Everything is the user's alone.
class SnapshotStore
{
public:
    /// Nothing is made before the first newPath().
    explicit SnapshotStore(const QString &folder);
    /// Folders in which no snapshot is left are removed.
    ~SnapshotStore();
    SnapshotStore(const SnapshotStore &) = delete;
    SnapshotStore &operator=(const SnapshotStore &) = delete;

    QString folder() const { return m_folder; }

    /// A path in this program's folder that was not given out before; empty when the folder cannot
    /// be made.
    QString newPath();

    /// The snapshots that were left behind, oldest first. This program holds their folders from
    /// then on, so no other one is offered the same; what is not removed is found again by the
    /// next.
    QStringList abandoned();

    /// All snapshots that other programs have written, running or not, oldest first. They stay
    /// theirs.
    QStringList ofOthers() const;

    /// Work that may be in no snapshot yet: \a write puts it into one at once. To be withdrawn by
    /// its owner.
    void enroll(const void *owner, std::function<void()> write);
    void withdraw(const void *owner) { m_writers.erase(owner); }
    void writeAll(); ///< Runs all of them: the program is about to end.

private:
    struct Session
    {
        QString folder;
        std::unique_ptr<FileLock> lock;
    };
    bool makeOwnSession();

    QString m_folder;
    Session m_own;
    std::vector<Session> m_abandoned;
    std::map<const void *, std::function<void()>> m_writers;
    int m_given = 0;
};
