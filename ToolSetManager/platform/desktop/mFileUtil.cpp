#include "platform/desktop/mFileUtil.h"

#include "platform/desktop/SafeFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

bool isSeparator(QChar c)
{
    return c == u'/' || c == QDir::separator();
}

/// An installed program's folder is none of the user's, and a build's is thrown away.
bool isBesideProgram(const QString &path)
{
    return QDir::cleanPath(QDir::fromNativeSeparators(path))
        .startsWith(QDir::fromNativeSeparators(mFileUtil::ProgramFolder()));
}

/// A folder in the user's data directory, made when missing and open to the user alone. Empty when
/// it cannot be made.
QString userDataFolder(const QString &name)
{
    const QString base = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    const QString folder = base + u'/' + name;
    if (base.isEmpty() || !SafeFiles::makeFolder(base) || !SafeFiles::makeFolder(folder))
        return {};
    return QDir::toNativeSeparators(folder);
}

/// Continues in \a folder with the names from \a first on; empty when no spelling of them exists.
QString spellingBelow(const QString &folder, const QStringList &names, qsizetype first)
{
    if (first == names.size())
        return folder;
    const QDir dir(folder);
    QStringList candidates;
    if (QFileInfo::exists(dir.filePath(names[first]))) {
        candidates.append(names[first]);
    }
    // Compared in upper case, because that is the form in which the recent files are kept; former
    // versions kept them with "SS" for "ß".
    const QString wanted = mFileUtil::UpperCase(names[first]);
    const QString loose = names[first].toUpper();
    const auto entries =
        dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    for (const bool exact : {true, false}) {
        for (const QString &entry : entries) {
            const bool same =
                exact ? mFileUtil::UpperCase(entry) == wanted : entry.toUpper() == loose;
            if (same && !candidates.contains(entry))
                candidates.append(entry);
        }
    }
    for (const QString &candidate : std::as_const(candidates)) {
        QString found = spellingBelow(dir.filePath(candidate), names, first + 1);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

} // namespace

namespace mFileUtil {

QString ProgramFolder()
{
    return AddSeparator(QDir::toNativeSeparators(QCoreApplication::applicationDirPath()));
}

QString AddSeparator(const QString &folder)
{
    if (folder.isEmpty() || isSeparator(folder.back()))
        return folder;
    return folder + QDir::separator();
}

QString UsableFolder(const QString &wanted, UserFolder instead)
{
    // A path of another system is a relative one here and must not become a folder of that name.
    if (QDir::isAbsolutePath(wanted)
        && (QFileInfo(wanted).isDir() || (!isBesideProgram(wanted) && QDir().mkpath(wanted))))
        return wanted;
    QString name = wanted;
    name.replace(u'\\', u'/');
    while (name.endsWith(u'/'))
        name.chop(1);
    name = name.section(u'/', -1);
    if (instead == UserFolder::Documents) {
        const QString folder =
            QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + u'/' + name;
        if (QDir().mkpath(folder))
            return QDir::toNativeSeparators(folder);
    }
    return userDataFolder(name);
}

QString UpperCase(const QString &path)
{
    QString upper;
    const auto letters = path.toUcs4();
    for (const uint letter : letters)
        upper += QChar::fromUcs4(QChar::toUpper(letter));
    return upper;
}

QString RealSpelling(const QString &path)
{
    const QString absolute = QDir::cleanPath(QDir::fromNativeSeparators(path));
    if (!QDir::isAbsolutePath(absolute))
        return {};
    const qsizetype rootLength = absolute.indexOf(u'/') + 1;
    const QStringList names = absolute.mid(rootLength).split(u'/', Qt::SkipEmptyParts);
    return QDir::toNativeSeparators(spellingBelow(absolute.left(rootLength), names, 0));
}

} // namespace mFileUtil
