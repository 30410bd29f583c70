#pragma once

#include <QStringList>

/// Names of folders for tools.
namespace FolderNames {

/// A name for each tool, by index: the tool's own, as far as file systems and version control allow
/// it. Names that would be alike without regard to letter case get a digest of the tool's name, so
/// that the order of the tools does not matter. \a taken are not used.
QStringList of(const QStringList &toolNames, const QStringList &taken);

/// Whether a name is one of a folder in this very folder and leads nowhere else.
bool isPlain(const QString &name);

} // namespace FolderNames
