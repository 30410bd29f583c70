#pragma once

#include "platform/desktop/BackupStore.h"

#include <QString>

#include <memory>

class CVBATools;
struct ToolSetStorage;

/// A former state of a tool set that the program has kept.
struct EarlierVersion
{
    enum Kind {
        Backup, ///< What a save wrote over.
        Snapshot, ///< Changes that were not saved when the program ended, or that another running
                  ///< program has not saved yet.
        Recovery ///< A snapshot that could not be read.
    };
    Kind kind = Backup;
    BackupStore::Copy copy;

    QString kindCaption() const;
    QString date() const; ///< In the user's time and form.
    QString title() const; ///< Name and date.
};

namespace EarlierVersions {

/// Newest first: those of the file, or of all files where \a path is empty.
QList<EarlierVersion> find(const ToolSetStorage &storage, const QString &path);

struct Content
{
    std::unique_ptr<CVBATools> tools; ///< Null when the version cannot be read.
    QString problem; ///< Why, or what is missing of it; a sentence without its full stop.
};
Content read(const EarlierVersion &version, ToolSetStorage &storage);

} // namespace EarlierVersions
