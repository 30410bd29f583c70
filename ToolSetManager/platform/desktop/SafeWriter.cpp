#include "platform/desktop/SafeWriter.h"

#include "platform/VbError.h"
#include "platform/desktop/BackupStore.h"
#include "platform/desktop/SafeFiles.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QStorageInfo>
#include <QThread>

namespace {

VbError error(const QString &text)
{
    return {VbError::DeviceError, QStringLiteral("SafeWriter"), text};
}

/// \a text has a place for the path, and behind it one for the reason.
VbError error(const QString &text, const QString &path, const QString &reason = {})
{
    const QString shown = QDir::toNativeSeparators(path);
    return error(reason.isNull() ? text.arg(shown) : text.arg(shown, reason));
}

const QString notWritten = QStringLiteral("\"%1\" cannot be written: %2.");
const QString incomplete = QStringLiteral("\"%1\" could not be written completely: %2.");

QStorageInfo diskOf(QString folder)
{
    while (!QFileInfo::exists(folder) && QFileInfo(folder).path() != folder)
        folder = QFileInfo(folder).path();
    return QStorageInfo(folder);
}

/// Short enough for every file system with what is put before it, and with its extension.
QString besideName(const QString &prefix, const QFileInfo &file)
{
    return file.path() + u'/' + prefix + file.fileName().right(50);
}

} // namespace

SafeWriter::SafeWriter(const QString &path, BackupStore &backups)
    : m_path(path)
    , m_backups(backups)
{
}

void SafeWriter::write(qint64 size, const Content &content)
{
    DiskFile file(m_path);
    openLocked(file);
    m_found = file.created() ? FileStamp() : file.stamp();
    const auto noteLeft = qScopeGuard([&] {
        if (m_left.size < 0)
            m_left = file.stamp();
    });
    try {
        prepare(file, size);
    } catch (const VbError &) {
        if (file.created())
            QFile::remove(m_path);
        throw;
    }
    try {
        if (m_inPlace)
            writeInto(file, content);
        else
            writeBeside(file, size, content);
    } catch (const VbError &failure) {
        if (m_backup.isEmpty())
            throw;
        throw VbError(failure.number(), failure.source(),
            QStringLiteral("%1 The former content of the file is kept in \"%2\".")
                .arg(failure.description(), m_backup));
    }
}

void SafeWriter::openLocked(DiskFile &file)
{
    constexpr int pause = 20; // milliseconds
    constexpr qint64 patience = 60'000; // longer than any save takes; its program may be stopped
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        if (!file.open(QIODevice::WriteOnly))
            throw error(notWritten, m_path, file.errorString());
        // Another program may have put a new file in its place before the lock was had.
        if (file.tryLock() && file.isInPlace())
            return;
        file.close();
        m_waited = true;
        if (timer.hasExpired(patience))
            throw error(notWritten, m_path, QStringLiteral("another program is writing it"));
        if (Waiting)
            Waiting();
        QThread::msleep(pause);
    }
}

void SafeWriter::prepare(DiskFile &file, qint64 size)
{
    const qint64 former = file.size();
    checkRoom(size, former);
    m_inPlace = former <= 0;
    if (m_inPlace)
        return;
    // The backup may be on the same disk, and leave no room for what the file grows by.
    const QStorageInfo disk = diskOf(QFileInfo(m_path).absolutePath());
    const QStorageInfo copies = diskOf(m_backups.folder());
    if (copies.device() != disk.device() || disk.bytesAvailable() >= qMax(size, former))
        m_backup = m_backups.backup(m_path);
    checkRoom(size, former);
    m_inPlace = !AlwaysBeside && (!m_backup.isEmpty() || (KeptElsewhere && KeptElsewhere()));
}

void SafeWriter::checkRoom(qint64 needed, qint64 former) const
{
    const QStorageInfo disk(QFileInfo(m_path).absolutePath());
    if (!disk.isValid() || disk.bytesTotal() <= 0 || disk.bytesAvailable() + former >= needed)
        return;
    // The name last: it may hold what looks like a place for one of the numbers.
    throw error(QStringLiteral("There is no room for \"%3\": %L1 bytes are needed and %L2 "
                               "are free. The file is as it was.")
                    .arg(needed)
                    .arg(disk.bytesAvailable() + former)
                    .arg(QDir::toNativeSeparators(m_path)));
}

void SafeWriter::writeInto(DiskFile &file, const Content &content)
{
    if (!file.truncate())
        throw error(notWritten, m_path, file.errorString());
    bool whole = content(file);
    const QString reason = file.errorString();
    if (!whole)
        throw error(incomplete, m_path, reason);
    whole = file.finish();
    if (!whole || (file.created() && !SafeFiles::flushFolders(m_path)))
        throw error(incomplete, m_path, whole ? qt_error_string() : file.errorString());
}

void SafeWriter::writeBeside(DiskFile &file, qint64 size, const Content &content)
{
    const QFileInfo target(QFileInfo(m_path).canonicalFilePath());
    const QString copy = besideName(QStringLiteral(".unfinished-"), target);
    const FileStamp made = makeCopyBeside(copy, content);
    if (SafeFiles::canReplace(target.filePath(), copy)
        && SafeFiles::rename(copy, target.filePath())) {
        m_left = made;
        if (!SafeFiles::flushFolders(target.filePath()))
            throw error(incomplete, m_path, qt_error_string());
        return;
    }
    // Complete, it gets a name that is seen: what follows may be cut off.
    const QString kept = besideName(QStringLiteral("Unfinished - "), target);
    if (!SafeFiles::rename(copy, kept) || !SafeFiles::flushFolders(kept)) {
        const QString reason = qt_error_string();
        QFile::remove(copy);
        QFile::remove(kept);
        throw error(notWritten, m_path, reason);
    }
    try {
        checkRoom(size, file.size());
    } catch (const VbError &) {
        QFile::remove(kept);
        throw;
    }
    try {
        copyInto(file, kept);
    } catch (const VbError &failure) {
        throw error(QStringLiteral("%1 Its new content is kept in \"%2\".")
                        .arg(failure.description(), QDir::toNativeSeparators(kept)));
    }
    QFile::remove(kept);
}

FileStamp SafeWriter::makeCopyBeside(const QString &path, const Content &content) const
{
    QFile::remove(path); // what an earlier save may have left
    DiskFile copy(path);
    bool whole = copy.open(QIODevice::WriteOnly | QIODevice::NewOnly);
    try {
        whole = whole && content(copy);
    } catch (const VbError &) {
        QFile::remove(path);
        throw;
    }
    const QString reason = copy.errorString();
    if (whole && copy.finish())
        return copy.stamp();
    const QString last = whole ? copy.errorString() : reason;
    QFile::remove(path);
    throw error(
        QStringLiteral("\"%1\" is not written: no second copy can be made first, neither in "
                       "the program's data folder nor beside the file (%2). The file is as "
                       "it was."),
        m_path, last);
}

void SafeWriter::copyInto(DiskFile &file, const QString &from)
{
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw error(notWritten, m_path, source.errorString());
    writeInto(file, [&source](QIODevice &device) {
        constexpr qint64 piece = 1 << 20;
        for (;;) {
            const QByteArray bytes = source.read(piece);
            if (bytes.isEmpty())
                return source.error() == QFileDevice::NoError;
            for (qint64 written = 0; written < bytes.size();) {
                const qint64 count =
                    device.write(bytes.constData() + written, bytes.size() - written);
                if (count <= 0)
                    return false;
                written += count;
            }
        }
    });
}
