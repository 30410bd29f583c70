#pragma once

#include "model/CVBATool.h"

#include <QString>

class PictureControl;

/// What a file gives to the tool in it: kind, location and name (ToolFileRecognition) and, from a
/// program, the button picture. The properties dialog and the dropping of files both go this way.
namespace ToolFromFile {

/// A tool as a new one to which the user has assigned that file; null for a file of an unknown
/// kind. Its picture is null when the file has none to give.
ToolPtr make(const QString &path, const QString &macroFolder);

/// The file that a tool's location means: a bare name, or any other relative path, is that of a
/// file in the macro folder. Empty when the location is relative and no such file exists.
QString pathOf(const QString &location, const QString &macroFolder);

/// Paints the program's first icon: into \a picIcon in its own size, into \a picConvert in that
/// control's size, which is the button picture. False, and nothing changed, when there is none.
bool loadIcon(const QString &location, const QString &macroFolder, PictureControl &picIcon,
    PictureControl &picConvert);

/// True for the kinds that lend their icon.
bool isProgram(qint16 kind);

} // namespace ToolFromFile
