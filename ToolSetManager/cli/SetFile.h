#pragma once

#include "model/CVBATools.h"
#include "model/ToolSetDiff.h"

class Session;

/// Tool set files as commands name them: by their path, or "-" for the standard streams.
namespace SetFile {

enum class Damaged {
    Accept, ///< What can be read is read; the damage is reported and makes the result Trouble.
    Refuse
};
enum class Empty { Refuse, Accept }; ///< A file without any bytes.

/// Reads the set as a window would. Null after a message; a file that is no tool set is an error.
std::unique_ptr<CVBATools> read(Session &session, const QString &path,
    Damaged damaged = Damaged::Accept, Empty empty = Empty::Refuse);

/// Writes the tools of those names, in that order. What was in the file goes to the backups and
/// stays in it unless all could be written. False after a message.
bool write(Session &session, CVBATools &tools, const QStringList &names, const QString &path);
bool write(Session &session, CVBATools &tools, const QString &path); ///< In their own order.

/// All the bytes of a file or of the standard input. Empty, and \a ok is false, after a message.
QByteArray readBytes(Session &session, const QString &path, bool &ok);
/// The bytes in the place of an ordinary file, or on the standard output. An old content stays
/// unless all could be written; it is not backed up. False after a message.
bool writeBytes(Session &session, const QByteArray &bytes, const QString &path);

/// What messages call the file.
QString shown(const QString &path);

ToolSetState stateOf(const CVBATools &tools);

} // namespace SetFile
