#pragma once

#include <QStringList>

/// Which files on the desktop are tool sets: it goes by their names, as the open dialog does.
namespace ToolSetFiles {

inline QStringList among(const QStringList &paths)
{
    QStringList found;
    for (const QString &path : paths) {
        if (path.endsWith(QLatin1StringView(".bmt"), Qt::CaseInsensitive))
            found.append(path);
    }
    return found;
}

} // namespace ToolSetFiles
