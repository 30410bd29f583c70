#include "cli/Commands.h"

#include <QCommandLineParser>
#include <QLocale>

#include <algorithm>

namespace {

/// A command's row: everything but what it does.
struct Command
{
    const char *name;
    Commands::Run run;
    bool needsFonts;
    int fewest; ///< Arguments beside options.
    int most;
    const char *options; ///< Names, aliases after "|", "=" where there is a value.
    const char *usage;
    const char *summary;
    const char *help;
};

constexpr int anyNumber = 1 << 30;

constexpr Command commands[] = {
    {"list", Commands::list, false, 1, anyNumber, "json", "list [--json] FILE...",
        "names, positions, kinds and locations of the tools",
        R"(Prints a line for each tool: name, position, kind and location, aligned on a terminal
and divided by tabs elsewhere. With several files the file stands in front.

  --json            as JSON)"},
    {"show", Commands::show, false, 1, anyNumber, "help-text rtf picture=",
        "show FILE [NAME|#POSITION...] [--help-text|--rtf|--picture OUT]", "all of a tool",
        R"(Prints all of the tools that are named or numbered; of all tools when none is.

  --help-text       prints the words of the help text only
  --rtf             prints the help text only, as it is stored
  --picture OUT     writes the button picture (*.png or *.bmp) of the one tool)"},
    {"cat", Commands::cat, false, 1, 1, "", "cat FILE", "the whole set as text",
        R"(Prints the whole set, one fact on each line, for comparisons: equal sets give equal text.
Empty texts and numbers that are 0 are left out.)"},
    {"check", Commands::check, false, 1, anyNumber, "json drive= macros= level=",
        "check [OPTION...] FILE...", "what is probably wrong with tools",
        R"(Prints the findings of the check. The result is 1 when there are any; what could not be
checked here is printed as well, but does not count.

  --json            as JSON
  --drive C:=DIR    where a drive of the locations lies here; beside those of Wine
  --macros DIR      where macros without a path lie
  --level LEVEL     only findings of that severity or above: hint, warning, error)"},
    {"unpack", Commands::unpack, false, 2, 2, "", "unpack FILE DIR",
        "a set as a folder of text files and pictures",
        R"(Writes the set into a folder: toolset.json, and a folder for each tool with its help text
(help.rtf) and its button picture (picture.bmp). A folder that was unpacked before is brought up to
date; what stood in it goes to the backups. Any other folder must be empty.)"},
    {"pack", Commands::pack, false, 2, 2, "no-backup", "pack DIR FILE", "the reverse of unpack",
        R"(Makes a set of a folder that unpack has written and that may have been edited since. The
code page is that of the folder unless --code-page is given.

  --no-backup       keeps no copy of what was in FILE)"},
    {"diff", Commands::diff, false, 2, 2, "json help-text", "diff [--json] [--help-text] A B",
        "what differs between two sets",
        R"(Prints what differs, tool by tool and field by field; a moved tool as moved. The result is
1 when anything differs.

  --json            as JSON
  --help-text       compares the words of help texts and prints those that differ)"},
    {"merge", Commands::merge, false, 3, 3, "o|output= no-backup", "merge BASE OURS THEIRS -o OUT",
        "a three-way merge",
        R"(Merges two sets that come from a common one, tool by tool, field by field and in their
order. Where both have changed the same, OUT has ours, the conflict is printed and the result is 1.
An empty file as BASE is a set without tools.

  -o, --output OUT  the merged set; may be one of the others
  --no-backup       keeps no copy of what was in OUT)"},
    {"relocate", Commands::relocate, false, 3, 3, "o|output= dry-run no-backup",
        "relocate OLD NEW FILE [-o OUT]", "another folder in the locations",
        R"(Replaces the folder OLD at the start of locations by NEW. Letter case and the kind of
separators do not matter in paths of Windows.

  -o, --output OUT  the changed set, in place of FILE
  --dry-run         only prints what would change
  --no-backup       keeps no copy of what was in the file)"},
    {"report", Commands::report, true, 1, 1, "o|output= paper=", "report FILE -o OUT.pdf",
        "the printed report as PDF",
        R"(Writes the pages that the window would print.

  -o, --output OUT  the file in the Portable Document Format
  --paper SIZE      A4, Letter or another usual sheet; that of the country without it)"},
    {"icons", Commands::icons, false, 1, 2, "size=", "icons PROGRAM [DIR]",
        "the icons of a program file",
        R"(Prints how many icons a program, library or icon file of Windows has, and their sizes and
depths. With DIR it writes each as a picture, 0.png and so on.

  --size N          pixels of the pictures; 32 without it)"},
};

constexpr char commonOptions[] =
    R"(  --code-page N     code page of texts in files (874, 1250 to 1258); that of the country without it
  --help            prints this text)";

const Command *find(const QString &name)
{
    const auto *found = std::find_if(std::begin(commands), std::end(commands),
        [&](const Command &command) { return name == QLatin1StringView(command.name); });
    return found == std::end(commands) ? nullptr : found;
}

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QString overview()
{
    QString all = QStringLiteral("Usage: toolset COMMAND [OPTION...] FILE...\n"
                                 "Works on the tool sets (*.bmt) of the VB Quillon add-in.\n\n");
    for (const Command &command : commands)
        all += QStringLiteral("  %1 %2\n").arg(text(command.name), -9).arg(text(command.summary));
    return all
        + QStringLiteral(
            "\n\"-\" as a file is the standard input or output. "
            "\"toolset COMMAND --help\" explains a command,\n\"man toolset\" all. Exit codes: 0 "
            "success or equal; 1 findings, differences or conflicts; 2 trouble.\n\n"
            "  --help     prints this text\n  --version  prints the version\n");
}

QString helpOf(const Command &command)
{
    // The command's own options, where it has some, end the text already.
    const bool hasOptions = *command.options != '\0';
    return QStringLiteral("Usage: toolset %1\n%2\n%3%4\n")
        .arg(text(command.usage), text(command.help), hasOptions ? QString() : QStringLiteral("\n"),
            text(commonOptions));
}

void addOptions(QCommandLineParser &parser, const Command &command)
{
    const QString names = text(command.options) + QStringLiteral(" code-page= help");
    const QStringList all = names.split(u' ', Qt::SkipEmptyParts);
    for (QString option : all) {
        const bool hasValue = option.endsWith(u'=');
        if (hasValue)
            option.chop(1);
        QCommandLineOption parsed(option.split(u'|'));
        if (hasValue)
            parsed.setValueName(QStringLiteral("value"));
        parser.addOption(parsed);
    }
}

/// Messages about the command line end with where to look.
int misused(Session &session, const QString &what, const Command *command)
{
    session.error({}, what);
    session.say({},
        command ? QStringLiteral("try \"toolset %1 --help\"").arg(text(command->name))
                : QStringLiteral("try \"toolset --help\""));
    return Session::Trouble;
}

/// Empty when the option names none.
std::optional<int> codePageOf(const QCommandLineParser &parser)
{
    const QString option = QStringLiteral("code-page");
    if (!parser.isSet(option))
        return CodePage::numberForLocale(QLocale::system());
    bool ok = false;
    const int number = parser.value(option).toInt(&ok);
    if (!ok || CodePage(number).number() != number)
        return std::nullopt;
    return number;
}

} // namespace

bool Cli::needsFonts(const QStringList &arguments)
{
    const Command *command = find(arguments.value(0));
    return command && command->needsFonts;
}

int Cli::run(
    const QStringList &arguments, const Session::Streams &streams, const QString &dataFolder)
{
    const QString name = arguments.value(0);
    const Command *command = find(name);
    QCommandLineParser parser;
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsOptions);
    bool parsed = true;
    if (command) {
        addOptions(parser, *command);
        parsed = parser.parse(arguments);
    }
    const auto codePage = command && parsed ? codePageOf(parser) : 1252;
    const bool noBackup = command && parsed && parser.optionNames().contains(u"no-backup");
    Session session(streams, codePage.value_or(1252), noBackup ? QString() : dataFolder);
    if (!command) {
        const bool wantsHelp = name == u"--help" || name == u"help" || name == u"-h";
        if (wantsHelp)
            session.print(overview());
        else if (name == u"--version")
            session.printLine(QStringLiteral("toolset " TSM_VERSION));
        else if (name.isEmpty())
            return misused(session, QStringLiteral("a command is missing"), nullptr);
        else
            return misused(
                session, QStringLiteral("there is no command \"%1\"").arg(name), nullptr);
        session.flush();
        return session.hadTrouble() ? Session::Trouble : Session::Success;
    }
    if (!parsed)
        return misused(session, parser.errorText(), command);
    if (!codePage)
        return misused(session, QStringLiteral("there is no such code page"), command);
    if (parser.isSet(QStringLiteral("help"))) {
        session.print(helpOf(*command));
        session.flush();
        return session.hadTrouble() ? Session::Trouble : Session::Success;
    }
    const qsizetype count = parser.positionalArguments().size();
    if (count < command->fewest || count > command->most) {
        return misused(session,
            count < command->fewest ? QStringLiteral("a file or another argument is missing")
                                    : QStringLiteral("there are too many arguments"),
            command);
    }
    const Session::Result result = command->run(session, parser);
    session.flush();
    return session.hadTrouble() ? Session::Trouble : result;
}
