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
/// the user's actions; the dearer the last one was, the longer is that moment. What cannot be
/// written is not told: the next change tries again.
class SnapshotKeeper : public QObject
{
    Q_OBJECT
public:
    using Take = std::function<ToolSetSnapshot()>;

    /// \a take gives the set as it stands. The storage is borrowed.
    SnapshotKeeper(ToolSetStorage &storage, Take take, QObject *parent);

    /// There is something new to keep.
    void changed();
    /// Puts the set as it stands into the snapshot at once.
    void writeNow();
    /// Goes on with a snapshot that another program has left.
    void adopt(const QString &path);
    /// Nothing is left to keep: the snapshot goes.
    void discard();

private:
    void start();
    void writeOn();
    void endWriting();

    ToolSetStorage &m_storage;
    Take m_take;
    QTimer *m_delay; ///< Runs from the first change that is in no snapshot yet.
    QTimer *m_pieces;
    QString m_path; ///< Empty before the first snapshot.
    std::unique_ptr<SnapshotWriter> m_writer; ///< Null while none is being written.
    std::chrono::milliseconds m_cost {0}; ///< What the last snapshot took of the window's time.
};
