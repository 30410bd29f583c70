#pragma once

#include "model/CVBATool.h"

#include <QFile>

#include <chrono>
#include <optional>
#include <vector>

/// A tool set as it stands at one moment. Unlike a tool set file it holds everything, also what a
/// file has no room for: any character, texts of any length, pictures as they are. Its own file is
/// for this program on this machine.
struct ToolSetSnapshot
{
    QString title; ///< What the user knows the set by: its file's name or its window's caption.
    QString path; ///< Of the file that the set belongs to; empty when it was never saved.
    qint16 FLAGS = 0;
    QString Description;
    QString LongDescription; ///< RTF, or empty.
    /// By position. The texts and pictures are shared with the set, so taking it costs little.
    std::vector<CVBATool> tools;

    /// Empty when the file is no snapshot or not whole.
    static std::optional<ToolSetSnapshot> read(const QString &path);
    /// What its file begins with.
    struct Origin
    {
        QString title; ///< As above; empty when it cannot be read.
        QString path;
    };
    static Origin readOrigin(const QString &path);
};

/// Writes a snapshot to a file beside \a path, piece by piece, and puts that in its place when it
/// is complete. So there is a whole one at every moment, the former or the new one. The file is
/// the user's alone. It is not flushed to the disk: it outlives the program, not the machine, until
/// SafeFiles has flushed it.
class SnapshotWriter
{
public:
    enum class State { Writing, Done, Failed };

    SnapshotWriter(ToolSetSnapshot snapshot, const QString &path);
    /// One that is not complete is removed.
    ~SnapshotWriter();

    State state() const { return m_state; }
    /// Writes for about that long.
    State writeFor(std::chrono::milliseconds time);
    /// Why it failed.
    QString errorString() const { return m_error; }
    /// Writes all that is left.
    State finish() { return writeFor(std::chrono::milliseconds::max()); }

private:
    void writePiece();
    void fail();

    const ToolSetSnapshot m_snapshot;
    const QString m_path;
    QFile m_file;
    size_t m_next = 0; ///< The tool to be written next.
    State m_state = State::Writing;
    QString m_error;
};
