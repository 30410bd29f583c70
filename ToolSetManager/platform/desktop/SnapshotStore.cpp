#include "platform/desktop/SnapshotStore.h"

#include "platform/desktop/FileLock.h"
#include "platform/desktop/SafeFiles.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>

#include <algorithm>

namespace {

const QString lockName = QStringLiteral("lock");
const QString suffix = QStringLiteral(".snapshot");

QString lockPath(const QString &folder)
{
    return folder + u'/' + lockName;
}

QStringList byAge(QFileInfoList &files)
{
    std::stable_sort(files.begin(), files.end(),
        [](const QFileInfo &a, const QFileInfo &b) { return a.lastModified() < b.lastModified(); });
    QStringList paths;
    for (const QFileInfo &file : std::as_const(files))
        paths.append(file.filePath());
    return paths;
}

} // namespace

SnapshotStore::SnapshotStore(const QString &folder)
    : m_folder(folder)
{
}

SnapshotStore::~SnapshotStore()
{
    m_abandoned.push_back(std::move(m_own));
    for (const Session &session : m_abandoned) {
        // The lock's file goes first, still locked, because no folder with a file in it goes.
        if (session.lock && QDir(session.folder).entryList(QDir::Files) == QStringList(lockName)) {
            QFile::remove(lockPath(session.folder));
            QDir().rmdir(session.folder);
        }
    }
}

bool SnapshotStore::makeOwnSession()
{
    if (m_own.lock && QFile::exists(lockPath(m_own.folder)))
        return true;
    if (m_folder.isEmpty() || !SafeFiles::makeFolder(m_folder))
        return false;
    const QString stamp = QDateTime::currentDateTimeUtc()
                              .toString(QStringLiteral("yyyyMMdd-HHmmss-zzz-%1-"))
                              .arg(QCoreApplication::applicationPid());
    // A program that looks for abandoned folders may take away one that is not locked yet.
    constexpr int attempts = 10;
    for (int i = 0; i < attempts; ++i) {
        Session session {
            m_folder + u'/' + stamp + QString::number(i), std::make_unique<FileLock>()};
        if (QDir().mkdir(session.folder) && SafeFiles::makeFolder(session.folder)
            && session.lock->lock(lockPath(session.folder)) == FileLock::Result::Locked) {
            m_own = std::move(session);
            return true;
        }
    }
    return false;
}

QString SnapshotStore::newPath()
{
    if (!makeOwnSession())
        return {};
    return m_own.folder + u'/' + QString::number(++m_given) + suffix;
}

QStringList SnapshotStore::abandoned()
{
    QFileInfoList found;
    if (!SafeFiles::isOwnFolder(m_folder))
        return {};
    const auto folders =
        QDir(m_folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QFileInfo &folder : folders) {
        Session session {folder.filePath(), std::make_unique<FileLock>()};
        if (!SafeFiles::isOwnFolder(session.folder))
            continue;
        if (session.lock->lock(lockPath(session.folder)) != FileLock::Result::Locked)
            continue;
        const QFileInfoList files = QDir(session.folder).entryInfoList(QDir::Files);
        for (const QFileInfo &file : files) {
            if (file.fileName().endsWith(suffix))
                found.append(file);
            else if (file.fileName() != lockName)
                QFile::remove(file.filePath()); // a snapshot that was being written
        }
        m_abandoned.push_back(std::move(session));
    }
    return byAge(found);
}

QStringList SnapshotStore::ofOthers() const
{
    QFileInfoList found;
    if (!SafeFiles::isOwnFolder(m_folder))
        return {};
    const auto folders =
        QDir(m_folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QFileInfo &folder : folders) {
        if (folder.filePath() != m_own.folder)
            found += QDir(folder.filePath()).entryInfoList({u'*' + suffix}, QDir::Files);
    }
    return byAge(found);
}

void SnapshotStore::enroll(const void *owner, std::function<void()> write)
{
    m_writers[owner] = std::move(write);
}

void SnapshotStore::writeAll()
{
    for (const auto &[owner, write] : m_writers)
        write();
}
