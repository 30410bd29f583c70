#pragma once

#include "platform/desktop/DiskFile.h"

#include <functional>

class BackupStore;

/// Writes over a file so that a complete copy of its former or of its new content is on a disk at
/// every moment, however the program or the machine stops:
///
/// - where the former content can be copied to the backups, or the new content is kept elsewhere,
///   the file is written in place, so that its owner, its links and its permissions stay;
/// - otherwise the new content is written beside the file first, then moved over it, or copied into
///   it where a move would change owner or links.
///
/// Where nothing of that is possible the file is not touched. An empty or a new file has nothing to
/// lose and is written in place.
class SafeWriter
{
public:
    /// Writes all of the content; false when the device refused some of it. What it throws ends the
    /// writing and reaches the caller.
    using Content = std::function<bool(QIODevice &device)>;

    /// The store is borrowed.
    SafeWriter(const QString &path, BackupStore &backups);

    /// Whether the new content is on the disk elsewhere; asked only when there is no backup.
    std::function<bool()> KeptElsewhere;
    /// Keeps the former content until the new one is complete also where there is a backup: for
    /// callers that do not offer one after a failure.
    bool AlwaysBeside = false;
    /// Called again and again while another program writes the file.
    std::function<void()> Waiting;

    /// \a size is that of the new content in bytes. Throws VbError, whose text says what became of
    /// the file.
    void write(qint64 size, const Content &content);

    // --- What write() has found and left ---
    const FileStamp &found() const { return m_found; } ///< Size -1 when there was no file.
    const FileStamp &left() const { return m_left; } ///< Also after a failure.
    bool hasWaited() const { return m_waited; } ///< Another program has written the file meanwhile.
    QString backup() const { return m_backup; } ///< Of the former content; empty for none.

private:
    void openLocked(DiskFile &file);
    void prepare(DiskFile &file, qint64 size);
    void checkRoom(qint64 needed, qint64 former) const;
    void writeInto(DiskFile &file, const Content &content);
    void writeBeside(DiskFile &file, qint64 size, const Content &content);
    FileStamp makeCopyBeside(const QString &path, const Content &content) const;
    void copyInto(DiskFile &file, const QString &from);

    const QString m_path;
    BackupStore &m_backups;
    FileStamp m_found;
    FileStamp m_left;
    bool m_waited = false;
    bool m_inPlace = true;
    QString m_backup;
};
