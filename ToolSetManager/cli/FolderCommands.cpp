// The commands between a set and a folder: unpack, pack.

#include "cli/Commands.h"
#include "cli/SetFile.h"
#include "cli/UnpackedSet.h"

#include <QCommandLineParser>

Session::Result Commands::unpack(Session &session, const QCommandLineParser &arguments)
{
    const QStringList paths = arguments.positionalArguments();
    const auto tools = SetFile::read(session, paths[0]);
    return tools && UnpackedSet::write(session, *tools, paths[1]) ? Session::Success
                                                                  : Session::Trouble;
}

Session::Result Commands::pack(Session &session, const QCommandLineParser &arguments)
{
    const QStringList paths = arguments.positionalArguments();
    int codePage = 0;
    const auto tools = UnpackedSet::read(session, paths[0], codePage);
    if (!tools)
        return Session::Trouble;
    if (!arguments.isSet(QStringLiteral("code-page")))
        session.storage().codePage = CodePage(codePage);
    return SetFile::write(session, *tools, paths[1]) ? Session::Success : Session::Trouble;
}
