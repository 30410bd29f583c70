#pragma once

#include "cli/Session.h"

#include <QStringList>

class QCommandLineParser;

/// The commands. Each has reported its errors to the session when it returns.
namespace Commands {

using Run = Session::Result (*)(Session &session, const QCommandLineParser &arguments);

Session::Result list(Session &session, const QCommandLineParser &arguments);
Session::Result show(Session &session, const QCommandLineParser &arguments);
Session::Result cat(Session &session, const QCommandLineParser &arguments);
Session::Result check(Session &session, const QCommandLineParser &arguments);
Session::Result diff(Session &session, const QCommandLineParser &arguments);
Session::Result merge(Session &session, const QCommandLineParser &arguments);
Session::Result relocate(Session &session, const QCommandLineParser &arguments);
Session::Result unpack(Session &session, const QCommandLineParser &arguments);
Session::Result pack(Session &session, const QCommandLineParser &arguments);
Session::Result icons(Session &session, const QCommandLineParser &arguments);
Session::Result report(Session &session, const QCommandLineParser &arguments);

} // namespace Commands

/// The program "toolset" without its main().
namespace Cli {

/// Whether the command of these arguments lays out text, and so needs a QGuiApplication.
bool needsFonts(const QStringList &arguments);

/// Runs the command of the arguments, the program's name not among them; returns the exit code.
int run(const QStringList &arguments, const Session::Streams &streams, const QString &dataFolder);

} // namespace Cli
