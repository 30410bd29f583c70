#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

/// Keeps copies of files that are about to be overwritten or of work that would otherwise be lost.
/// Everything in it is readable by the user alone.
class BackupStore
{
public:
    static constexpr int keptPerFile = 10;
    static constexpr qint64 keptBytes = 200LL * 1024 * 1024;

    /// \a folder holds one folder of dated copies for each file; it is made when first needed.
    explicit BackupStore(const QString &folder);

    QString folder() const { return m_folder; }

    /// Copies \a path, when it exists and is not empty, to a dated file and drops the oldest
    /// copies: all but the last ten of this file, then the oldest of all files until 200 MB are
    /// left. The newest copy of a file is never dropped for another file's sake within the call
    /// that made it. Returns the copy's path; empty when there was nothing to copy or it failed.
    QString backup(const QString &path) { return backup(path, path); }
    /// The same with the content of another file in its place.
    QString backup(const QString &path, const QString &contentPath);

    /// A copy that is kept.
    struct Copy
    {
        QString path;
        QString name; ///< Of the file that it was made of; the end of it where that is long.
        QString original; ///< Path of that file; empty where it is not known.
        QDateTime made;
        qint64 size = 0; ///< Bytes.
    };
    QList<Copy> copies() const; ///< Newest first, as the next.
    QList<Copy> copiesOf(const QString &path) const;

    /// A path at which a copy of a file named \a name may be written; it does not exist yet, its
    /// folder does. Empty when the folder cannot be made.
    QString newPathFor(const QString &name);

private:
    QString folderOf(const QString &path) const;
    void prune(const QString &folder, const QString &newest);

    QString m_folder;
};
