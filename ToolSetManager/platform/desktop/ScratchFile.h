#pragma once

#include <QByteArrayView>
#include <QFile>
#include <QString>

/// A file that is overwritten again and again and never deleted. One handle stays open, because
/// opening with truncation costs a flush to the disk at each close on some file systems.
class ScratchFile
{
public:
    /// Nothing is opened or made before the first write. The file and its folder are the user's
    /// alone; where that cannot be had (SafeFiles), and without a path, nothing is written.
    explicit ScratchFile(const QString &path);

    /// Replaces the content. False when it cannot be written; the content is then undefined.
    bool write(QByteArrayView bytes);

private:
    bool open();

    QFile m_file;
    qint64 m_size = 0;
    bool m_failed = false; ///< Opening failed once: not tried again for every picture.
};
