#include "platform/desktop/SafeFiles.h"

#include <QDir>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace SafeFiles {

bool makeFolder(const QString &folder)
{
    return QDir().mkpath(folder) && QFile::setPermissions(folder, folderPermissions);
}

void flushToDisk(const QFileDevice &file)
{
#ifdef Q_OS_UNIX
    ::fdatasync(file.handle());
#else
    Q_UNUSED(file)
#endif
}

} // namespace SafeFiles
