#pragma once

#include "model/CVBATools.h"

#include <QHash>
#include <QStringList>

class Session;

/// A tool set as a folder of files that version control and editors can work with: "toolset.json"
/// has the order of the tools and all that is text in them; the folder of each tool has its help
/// text, "help.rtf", and its button picture, "picture.bmp"; "description.rtf" is the set's long
/// description. Rich texts have the bytes of the tool set file, in the code page that the JSON
/// names.
class UnpackedSet
{
public:
    /// Reads a folder. Null after messages, each with file, line and field. \a codePage becomes
    /// that of the folder.
    static std::unique_ptr<CVBATools> read(Session &session, const QString &folder, int &codePage);

    /// Writes the set into a folder: a new one, an empty one, or one that was unpacked before. Only
    /// what differs is written, and what belongs to no tool any more is removed; the former state
    /// of the folder goes to the backups as a tool set. False after a message; a new folder is
    /// removed then.
    static bool write(Session &session, const CVBATools &tools, const QString &folder);

    static const QString listName; ///< "toolset.json"
};
