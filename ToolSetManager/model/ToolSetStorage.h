#pragma once

#include "platform/desktop/BackupStore.h"
#include "platform/desktop/ScratchFile.h"
#include "platform/desktop/SnapshotStore.h"
#include "platform/text/CodePage.h"

#include <chrono>

/// What tool sets need around their files. One object for the program, which outlives the sets;
/// a test makes its own in a folder of its own.
struct ToolSetStorage
{
    /// \a scratchFolder receives "XTemp.bmp"; \a dataFolder the folders "backups",
    /// "recovery" and "snapshots". Nothing is written where one of them is empty.
    ToolSetStorage(int codePageNumber, const QString &scratchFolder, const QString &dataFolder)
        : codePage(codePageNumber)
        , scratch(below(scratchFolder, "XTemp.bmp"))
        , backups(below(dataFolder, "backups"))
        , recovery(below(dataFolder, "recovery"))
        , snapshots(below(dataFolder, "snapshots"))
    {
    }

    CodePage codePage; ///< Of the text in files.
    ScratchFile scratch; ///< Passed by every picture on its way in or out.
    BackupStore backups; ///< The former content of files that are saved over.
    BackupStore recovery; ///< Sets that could not be saved and would be lost otherwise.
    SnapshotStore snapshots; ///< Sets with unsaved changes, for the case of a crash.
    std::chrono::milliseconds snapshotDelay {2000}; ///< From a change to its snapshot.

private:
    static QString below(const QString &folder, const char *name)
    {
        return folder.isEmpty() ? folder : folder + u'/' + QLatin1StringView(name);
    }
};
