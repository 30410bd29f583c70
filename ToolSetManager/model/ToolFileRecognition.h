#pragma once

#include <QString>

#include <optional>

/// What a tool's file tells about the tool. File types are recognised by their extensions alone.
namespace ToolFileRecognition {

/// The kind (CVBATool::Kind) of the tool in that file; empty for an unknown extension. An ".exe"
/// leaves an add-in's executable what it is.
std::optional<qint16> kindOf(const QString &fileName, qint16 currentKind);

/// What the user is told about a file of an unknown kind; lines end with CR LF.
QString unrecognisedText();

/// The location to store: the bare name for a file in the macro folder, else the whole path.
/// Folders are compared without regard to letter case and to separators at their end.
QString locationOf(const QString &path, const QString &macroFolder);

/// The file's name with its extension, the first letter in upper case and all others in lower case.
QString nameOf(const QString &path);

/// True when a description is none that the user gave: a default one such as "Tool(3)", or what
/// nameOf() made of the location that the tool had before.
bool isReplaceable(const QString &description, const QString &formerLocation);

} // namespace ToolFileRecognition
