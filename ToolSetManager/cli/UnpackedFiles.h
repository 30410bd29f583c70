#pragma once

#include <QString>

/// The names of files in an unpacked set.
namespace UnpackedFiles {

inline const QString help = QStringLiteral("help.rtf"); ///< In the folder of a tool.
inline const QString picture = QStringLiteral("picture.bmp"); ///< In the folder of a tool.
inline const QString description = QStringLiteral("description.rtf");

} // namespace UnpackedFiles
