#pragma once

#include "model/ToolSetSnapshot.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

class QTimer;
struct ToolSetStorage;

/// Keeps a snapshot of a set for as long as the set has changes that are in no file. Changes are
/// gathered for a moment; then the set is taken as it stands and written in small pieces between
/// the user's actions; the more expensive the last one was, the longer is that moment. What cannot
/// be written is tried again, with a growing delay. When the program is ended from outside, what is
/// in no snapshot is written at once.
class SnapshotKeeper : public QObject
{
    Q_OBJECT
public:
    using Take = std::function<ToolSetSnapshot()>;

    /// \a take gives the set as it stands. The storage is borrowed.
    SnapshotKeeper(ToolSetStorage &storage, Take take, QObject *parent);
    /// The snapshot stays.
    ~SnapshotKeeper() override;

    /// There is something new to keep.
    void changed();
    /// Puts the set as it stands into the snapshot at once. False when that failed.
    bool writeNow();
    /// Flushes the snapshot to the disk. False when that failed, or when it does not hold the set
    /// as it stands.
    bool flush();
    /// Goes on with a snapshot that another program has left.
    void adopt(const QString &path);
    /// Leaves the snapshot, with the set as it stands, for the next start. False when it cannot be
    /// written.
    bool leave();
    /// Nothing is left to keep: the snapshot goes.
    void discard();

Q_SIGNALS:
    void failed(const QString &reason); ///< The set as it stands is in no snapshot.

private:
    void start();
    void writeOn();
    /// Ends the writing, as far as it is.
    bool endWriting();
    void fail(const QString &reason);

    ToolSetStorage &m_storage;
    Take m_take;
    QTimer *m_delay; ///< Runs from the first change that is in no snapshot yet.
    QTimer *m_pieces;
    QString m_path; ///< Empty before the first snapshot.
    std::unique_ptr<SnapshotWriter> m_writer; ///< Null while none is being written.
    std::chrono::milliseconds m_cost {0}; ///< What the last snapshot took of the window's time.
    int m_changes = 0; ///< Counts what is to be kept, ...
    int m_taken = 0; ///< ... what is in the snapshot that is being written, ...
    int m_written = 0; ///< ... and what is in the one that is complete.
    int m_failures = 0; ///< In a row.
};
