#pragma once

#include <QIODevice>

/// Tells one state of a file from another without reading it.
struct FileStamp
{
    quint64 device = 0;
    quint64 node = 0;
    qint64 size = -1; ///< -1: there is no such file.
    qint64 modified = 0; ///< In the system's finest unit.

    static FileStamp of(const QString &path);
    bool operator==(const FileStamp &) const = default;
};

/// An ordinary file that is written from its start to its end, unbuffered. Unlike a QFile it
/// reports a failed flush and a failed close, and can be locked against other programs that write
/// it in this way. errorString() gives the reason for each failure.
class DiskFile : public QIODevice
{
public:
    explicit DiskFile(const QString &path);
    ~DiskFile() override;

    /// For writing; an existing file keeps its content. With NewOnly the file must not exist, is
    /// the user's alone, and a link in its place is not followed.
    bool open(OpenMode mode) override;
    /// The file did not exist before open().
    bool created() const { return m_created; }
    /// False when another program, or another object, holds the lock. True also where the system
    /// has no locks. The lock ends with the file's closing.
    bool tryLock();
    /// False when the path leads to another file by now, or to none.
    bool isInPlace() const;
    FileStamp stamp() const; ///< When it is closed, as it was then.
    qint64 size() const override { return stamp().size; }
    bool isSequential() const override { return true; } // nothing is sought

    bool truncate(); ///< To nothing.
    /// Flushes the content to the disk and closes. False when either failed: what was written may
    /// not outlast the machine then.
    bool finish();
    void close() override; ///< Without a flush, and whatever comes of it.

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *bytes, qint64 count) override;

private:
    bool failed();

    const QString m_path;
    int m_file = -1;
    FileStamp m_last;
    bool m_created = false;
};
