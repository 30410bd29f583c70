#include "cli/FolderNames.h"

#include <QCryptographicHash>
#include <QHash>
#include <QSet>

#include <algorithm>

namespace {

constexpr qsizetype longest = 60; ///< Characters; a file system may allow 255 bytes.

bool isForbidden(QChar c)
{
    const char16_t unit = c.unicode();
    return unit < 0x20 || unit == 0x7F || (unit >= 0x80 && unit <= 0x9F)
        || (unit >= 0xD800 && unit <= 0xF8FF) || QStringView(u"<>:\"/\\|?*~").contains(c);
}

/// Names of devices, which Windows finds in every folder and with any extension.
bool isDevice(const QString &name)
{
    const QString stem = name.section(u'.', 0, 0).trimmed().toUpper();
    static const QStringList devices {
        QStringLiteral("CON"), QStringLiteral("PRN"), QStringLiteral("AUX"), QStringLiteral("NUL")};
    const bool isPort = stem.size() == 4 && stem[3].isDigit()
        && (stem.startsWith(QStringLiteral("COM")) || stem.startsWith(QStringLiteral("LPT")));
    return isPort || devices.contains(stem);
}

QString madeSafe(const QString &toolName)
{
    QString name = toolName.normalized(QString::NormalizationForm_C).left(longest);
    std::replace_if(name.begin(), name.end(), isForbidden, u'_');
    // A dot in front hides a folder, or makes it one of version control; blanks and dots at the end
    // are dropped by Windows.
    if (name.startsWith(u'.') || name.startsWith(u' ') || name.startsWith(u'-'))
        name[0] = u'_';
    while (name.endsWith(u'.') || name.endsWith(u' '))
        name.chop(1);
    if (name.isEmpty() || isDevice(name))
        name += u'_';
    return name;
}

QString digestOf(const QString &toolName)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(toolName.toCaseFolded().toUtf8(), QCryptographicHash::Sha1)
            .toHex()
            .left(8));
}

} // namespace

QStringList FolderNames::of(const QStringList &toolNames, const QStringList &taken)
{
    QStringList names;
    names.reserve(toolNames.size());
    QHash<QString, int> uses;
    for (const QString &each : taken)
        ++uses[each.toCaseFolded()];
    for (const QString &each : toolNames) {
        names.append(madeSafe(each));
        ++uses[names.constLast().toCaseFolded()];
    }
    QSet<QString> given;
    for (qsizetype i = 0; i < names.size(); ++i) {
        QString &name = names[i];
        if (uses.value(name.toCaseFolded()) > 1)
            name += u'-' + digestOf(toolNames[i]);
        // Another tool may be called like that.
        while (given.contains(name.toCaseFolded()))
            name += u'_';
        given.insert(name.toCaseFolded());
    }
    return names;
}

bool FolderNames::isPlain(const QString &name)
{
    return !name.isEmpty() && name != u"." && name != u".." && !name.contains(u'/')
        && !name.contains(u'\\') && !name.contains(u':') && !name.contains(QChar::Null);
}
