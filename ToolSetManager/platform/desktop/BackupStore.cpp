#include "platform/desktop/BackupStore.h"

#include "platform/desktop/SafeFiles.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

namespace {

/// Universal time: local time repeats an hour a year, and the names must sort by age.
const QString stampFormat = QStringLiteral("yyyyMMdd-HHmmss-zzz");

QString dateStamp()
{
    return QDateTime::currentDateTimeUtc().toString(stampFormat);
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
        QString path = dated + QStringLiteral("-%1-").arg(i) + fittingName(name);
        if (!QFileInfo::exists(path))
            return path;
    }
}

/// Its name begins like that of no copy.
const QString unfinished = QStringLiteral("/unfinished");

/// The copy has its name only when it is complete and on the disk: what it was made of is about to
/// be overwritten.
bool copyWhole(const QString &path, const QString &scratch, const QString &copy)
{
    QFile::remove(scratch);
    // The folders may have been made for it.
    constexpr int newFolders = 3;
    if (QFile::copy(path, scratch) && QFile::setPermissions(scratch, SafeFiles::filePermissions)
        && SafeFiles::flushToDisk(scratch) && QFile::rename(scratch, copy)) {
        if (SafeFiles::flushFolders(copy, newFolders))
            return true;
        QFile::remove(copy);
    }
    QFile::remove(scratch); // what a full disk left of it
    return false;
}

/// In the folder of a file: its path. Hidden, so that it is no copy.
const QString originalName = QStringLiteral("/.original");

void noteOriginal(const QString &folder, const QString &path)
{
    QFile note(folder + originalName);
    if (note.size() > 0 || !note.open(QIODevice::WriteOnly, SafeFiles::filePermissions))
        return; // without it only the list of all copies says less
    note.write(path.toUtf8());
}

QString notedOriginal(const QString &folder)
{
    constexpr qint64 longestPath = 16384;
    QFile note(folder + originalName);
    return note.open(QIODevice::ReadOnly) ? QString::fromUtf8(note.read(longestPath)) : QString();
}

/// The dated copies right in a folder; other files are none.
QList<BackupStore::Copy> copiesIn(const QString &folder, const QString &original)
{
    QList<BackupStore::Copy> found;
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files | QDir::NoSymLinks);
    for (const QFileInfo &file : files) {
        const QString name = file.fileName();
        QDateTime made = QDateTime::fromString(name.left(stampFormat.size()), stampFormat);
        if (!made.isValid())
            continue;
        made.setTimeSpec(Qt::UTC);
        // Behind the date stands the number that makes it unique.
        const QString rest = name.mid(stampFormat.size() + 1);
        found.append({QDir::toNativeSeparators(file.filePath()),
            original.isEmpty() ? rest.section(u'-', 1) : QFileInfo(original).fileName(),
            QDir::toNativeSeparators(original), made, file.size()});
    }
    return found;
}

void sortByAge(QList<BackupStore::Copy> &copies)
{
    std::stable_sort(
        copies.begin(), copies.end(), [](const auto &a, const auto &b) { return a.made > b.made; });
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

QString BackupStore::backup(const QString &path, const QString &contentPath)
{
    const QFileInfo file(path);
    const QFileInfo content(contentPath);
    if (!content.isFile() || content.size() == 0 || m_folder.isEmpty())
        return {};
    const QString folder = folderOf(path);
    if (!SafeFiles::makeFolder(m_folder) || !SafeFiles::makeFolder(folder))
        return {};
    const QString copy = freePath(folder, file.fileName());
    if (!copyWhole(contentPath, folder + unfinished, copy))
        return {};
    noteOriginal(folder, file.absoluteFilePath());
    prune(folder, copy);
    return QDir::toNativeSeparators(copy);
}

QString BackupStore::folderOf(const QString &path) const
{
    return m_folder + u'/' + folderNameFor(QFileInfo(path));
}

QList<BackupStore::Copy> BackupStore::copiesOf(const QString &path) const
{
    QList<Copy> found;
    if (!m_folder.isEmpty() && !path.isEmpty())
        found = copiesIn(folderOf(path), QFileInfo(path).absoluteFilePath());
    sortByAge(found);
    return found;
}

QList<BackupStore::Copy> BackupStore::copies() const
{
    if (m_folder.isEmpty())
        return {};
    QList<Copy> found = copiesIn(m_folder, {});
    const auto folders =
        QDir(m_folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QFileInfo &folder : folders)
        found += copiesIn(folder.filePath(), notedOriginal(folder.filePath()));
    sortByAge(found);
    return found;
}

QString BackupStore::newPathFor(const QString &name)
{
    if (m_folder.isEmpty() || !SafeFiles::makeFolder(m_folder))
        return {};
    return QDir::toNativeSeparators(freePath(m_folder, name));
}

void BackupStore::prune(const QString &folder, const QString &newest)
{
    // The dated names sort by age. Anything else is a copy that was cut off.
    QStringList own = QDir(folder).entryList(QDir::Files, QDir::Name);
    while (!own.isEmpty() && !own.constLast().at(0).isDigit())
        QFile::remove(folder + u'/' + own.takeLast());
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
