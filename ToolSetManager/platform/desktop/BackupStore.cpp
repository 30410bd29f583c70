#include "platform/desktop/BackupStore.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

namespace {

constexpr auto folderOwnerOnly =
    QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
constexpr auto fileOwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

bool makePrivate(const QString &folder)
{
    return QDir().mkpath(folder) && QFile::setPermissions(folder, folderOwnerOnly);
}

/// Universal time: local time repeats an hour a year, and the names must sort by age.
QString dateStamp()
{
    return QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
}

/// The end of a name, which holds its extension, short enough that a date fits before it: file
/// systems count a name's bytes, and a character can have four.
QString fittingName(const QString &name)
{
    return name.right(50);
}

/// A path for a dated copy that does not exist yet.
QString freePath(const QString &folder, const QString &name)
{
    const QString dated = folder + u'/' + dateStamp();
    for (int i = 0;; ++i) {
        const QString path = dated + QStringLiteral("-%1-").arg(i) + fittingName(name);
        if (!QFileInfo::exists(path))
            return path;
    }
}

/// Two files of one name in different folders must not push each other's copies out.
QString folderNameFor(const QFileInfo &file)
{
    const QByteArray hash =
        QCryptographicHash::hash(file.absoluteFilePath().toUtf8(), QCryptographicHash::Sha1);
    return fittingName(file.completeBaseName()) + u'-' + QString::fromLatin1(hash.toHex().left(12));
}

} // namespace

BackupStore::BackupStore(const QString &folder)
    : m_folder(folder)
{
}

QString BackupStore::backup(const QString &path)
{
    const QFileInfo file(path);
    if (!file.isFile() || file.size() == 0 || m_folder.isEmpty())
        return {};
    const QString folder = m_folder + u'/' + folderNameFor(file);
    if (!makePrivate(m_folder) || !makePrivate(folder))
        return {};
    const QString copy = freePath(folder, file.fileName());
    if (!QFile::copy(path, copy)) {
        QFile::remove(copy); // what a full disk left of it
        return {};
    }
    QFile::setPermissions(copy, fileOwnerOnly);
    prune(folder, copy);
    return QDir::toNativeSeparators(copy);
}

QString BackupStore::newPathFor(const QString &name)
{
    if (m_folder.isEmpty() || !makePrivate(m_folder))
        return {};
    return QDir::toNativeSeparators(freePath(m_folder, name));
}

void BackupStore::prune(const QString &folder, const QString &newest)
{
    // The dated names sort by age.
    QStringList own = QDir(folder).entryList(QDir::Files, QDir::Name);
    while (own.size() > keptPerFile)
        QFile::remove(folder + u'/' + own.takeFirst());

    QList<QFileInfo> all;
    qint64 bytes = 0;
    QDirIterator walk(m_folder, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        walk.next();
        all.append(walk.fileInfo());
        bytes += walk.fileInfo().size();
    }
    std::sort(all.begin(), all.end(),
        [](const QFileInfo &a, const QFileInfo &b) { return a.fileName() < b.fileName(); });
    for (const QFileInfo &file : std::as_const(all)) {
        if (bytes <= keptBytes)
            break;
        if (file.absoluteFilePath() == QFileInfo(newest).absoluteFilePath())
            continue;
        if (QFile::remove(file.absoluteFilePath()))
            bytes -= file.size();
    }
}
