#include "compare/EarlierVersions.h"

#include "model/CVBATools.h"
#include "model/ToolSetSnapshot.h"
#include "model/ToolSetStorage.h"
#include "shell/ToolSetLoader.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>

namespace {

EarlierVersion snapshotVersion(const QString &path)
{
    const ToolSetSnapshot::Origin origin = ToolSetSnapshot::readOrigin(path);
    const QFileInfo file(path);
    EarlierVersion version;
    version.kind = EarlierVersion::Snapshot;
    version.copy = {QDir::toNativeSeparators(path),
        origin.title.isEmpty() ? file.fileName() : origin.title,
        QDir::toNativeSeparators(origin.path), file.lastModified(), file.size()};
    return version;
}

bool isOf(const EarlierVersion &version, const QString &path)
{
    return path.isEmpty()
        || (!version.copy.original.isEmpty()
            && QFileInfo(version.copy.original).absoluteFilePath()
                == QFileInfo(path).absoluteFilePath());
}

} // namespace

QString EarlierVersion::kindCaption() const
{
    switch (kind) {
    case Backup:
        return QStringLiteral("Backup");
    case Snapshot:
        return QStringLiteral("Unsaved changes");
    default:
        return QStringLiteral("Set aside");
    }
}

QString EarlierVersion::date() const
{
    return QLocale().toString(copy.made.toLocalTime(), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString EarlierVersion::title() const
{
    return QStringLiteral("%1, %2").arg(copy.name, date());
}

QList<EarlierVersion> EarlierVersions::find(const ToolSetStorage &storage, const QString &path)
{
    QList<EarlierVersion> found;
    const QList<BackupStore::Copy> backups =
        path.isEmpty() ? storage.backups.copies() : storage.backups.copiesOf(path);
    for (const BackupStore::Copy &copy : backups)
        found.append({EarlierVersion::Backup, copy});
    const QStringList snapshots = storage.snapshots.ofOthers();
    for (const QString &snapshot : snapshots) {
        const EarlierVersion version = snapshotVersion(snapshot);
        if (isOf(version, path))
            found.append(version);
    }
    const QList<BackupStore::Copy> setAside = storage.recovery.copies();
    for (const BackupStore::Copy &copy : setAside) {
        EarlierVersion version = snapshotVersion(copy.path);
        version.kind = EarlierVersion::Recovery;
        version.copy.made = copy.made;
        if (isOf(version, path))
            found.append(version);
    }
    std::stable_sort(found.begin(), found.end(),
        [](const auto &a, const auto &b) { return a.copy.made > b.copy.made; });
    return found;
}

EarlierVersions::Content EarlierVersions::read(
    const EarlierVersion &version, ToolSetStorage &storage)
{
    if (version.kind != EarlierVersion::Backup) {
        const auto snapshot = ToolSetSnapshot::read(version.copy.path);
        if (snapshot)
            return {ToolSetLoader::fromSnapshot(*snapshot, storage), {}};
        return {nullptr,
            QFileInfo::exists(version.copy.path)
                ? QStringLiteral("It is damaged or was not written to its end")
                : QStringLiteral("It is no longer there")};
    }
    auto loaded = ToolSetLoader::fromFile(version.copy.path, storage);
    if (!loaded.tools) {
        while (loaded.error.endsWith(u'.'))
            loaded.error.chop(1);
        return {nullptr, loaded.error};
    }
    switch (loaded.tools->fileEnd()) {
    case CVBATools::FileEnd::NotAToolSet:
        return {nullptr, QStringLiteral("It is not a tool set")};
    case CVBATools::FileEnd::Early:
        return {std::move(loaded.tools), QStringLiteral("it ends in the middle of a tool")};
    default:
        return {std::move(loaded.tools), {}};
    }
}
