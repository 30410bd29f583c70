#include "platform/desktop/DosDrives.h"

#include <QDir>
#include <QFileInfo>

DosDrives DosDrives::ofWine()
{
    QString prefix = qEnvironmentVariable("WINEPREFIX");
    if (prefix.isEmpty())
        prefix = QDir::homePath() + QStringLiteral("/.wine");
    return ofWine(prefix + QStringLiteral("/dosdevices"));
}

DosDrives DosDrives::ofWine(const QString &devices)
{
    DosDrives drives;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        // Only the link is read: what it leads to may be a share that does not answer.
        const QFileInfo link(QStringLiteral("%1/%2:").arg(devices).arg(QLatin1Char(letter)));
        if (link.isSymLink())
            drives.assign(QLatin1Char(letter), link.symLinkTarget());
    }
    return drives;
}

void DosDrives::assign(QChar letter, const QString &folder)
{
    if (folder.isEmpty())
        m_folders.remove(letter.toUpper());
    else
        m_folders.insert(letter.toUpper(), folder);
}

QString DosDrives::folder(QChar letter) const
{
    return m_folders.value(letter.toUpper());
}

QChar DosDrives::drive(QStringView path)
{
    const bool has = path.size() >= 2 && path[1] == u':' && path[0] < u'\x80' && path[0].isLetter();
    return has ? path[0].toUpper() : QChar();
}

QString DosDrives::nativePath(const QString &path) const
{
    const QChar letter = drive(path);
    if (letter.isNull() || path.size() < 3 || (path[2] != u'\\' && path[2] != u'/'))
        return QDir::isAbsolutePath(path) ? QDir::cleanPath(path) : QString();
    const QString base = folder(letter);
    if (base.isEmpty())
        return QDir::isAbsolutePath(path) ? QDir::cleanPath(path) : QString(); // on Windows
    QString rest = path.sliced(2);
    rest.replace(u'\\', u'/');
    return QDir::cleanPath(base + rest);
}
