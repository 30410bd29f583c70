#pragma once

#include <QByteArray>
#include <QString>

/// What is asked of the running instance, as messages of its socket.
namespace InstanceRequest {

QByteArray comeForward();

/// Asks for a file to be opened; the path is absolute.
QByteArray open(const QString &path);

/// The path of a request to open a file. Empty for every other message, and for a path that is not
/// absolute or names no regular file: what comes by the socket is believed no further than what a
/// user could have chosen in the file dialog. A name that is not UTF-8 is passed on, although no
/// file can be found by it, so that the program can say why it cannot be opened.
QString pathToOpen(const QByteArray &message);

} // namespace InstanceRequest
