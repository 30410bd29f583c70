#pragma once

#include "platform/desktop/BackupStore.h"
#include "platform/desktop/ScratchFile.h"
#include "platform/text/CodePage.h"

/// What tool sets need around their files. One object for the program, which outlives the sets;
/// a test makes its own in a folder of its own.
struct ToolSetStorage
{
    /// \a scratchFolder receives "XTemp.bmp"; \a dataFolder the folders "backups" and "recovery".
    ToolSetStorage(int codePageNumber, const QString &scratchFolder, const QString &dataFolder)
        : codePage(codePageNumber)
        , scratch(scratchFolder + QStringLiteral("/XTemp.bmp"))
        , backups(dataFolder + QStringLiteral("/backups"))
        , recovery(dataFolder + QStringLiteral("/recovery"))
    {
    }

    CodePage codePage; ///< Of the text in files.
    ScratchFile scratch; ///< Passed by every picture on its way in or out.
    BackupStore backups; ///< The former content of files that are saved over.
    BackupStore recovery; ///< Sets that could not be saved and would be lost otherwise.
};
