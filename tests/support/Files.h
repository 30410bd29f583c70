#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// Files of tests.
namespace Files {

inline bool put(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/// A content that no test expects when the file cannot be read.
inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

/// Whether nobody else can read, write or enter it.
inline bool ofTheUserAlone(const QString &path)
{
    constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
        | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    return QFile::exists(path) && (QFile::permissions(path) & others) == QFile::Permissions();
}

} // namespace Files
