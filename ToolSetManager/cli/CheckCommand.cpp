#include "cli/Commands.h"
#include "cli/Json.h"
#include "cli/SetFile.h"
#include "model/ToolCheck.h"
#include "model/ToolSetDocument.h"
#include "platform/desktop/DiskFiles.h"

#include <QCommandLineParser>
#include <QDir>

namespace {

using Severity = ToolFinding::Severity;

/// False after a message.
bool assignDrives(Session &session, DosDrives &drives, const QStringList &assignments)
{
    for (const QString &each : assignments) {
        const QString folder = each.section(u'=', 1);
        if (each.section(u'=', 0, 0).size() != 2 || DosDrives::drive(each).isNull()
            || folder.isEmpty()) {
            session.error({}, QStringLiteral("\"%1\" is not of the form C:=FOLDER").arg(each));
            return false;
        }
        drives.assign(each[0], QDir(folder).absolutePath());
    }
    return true;
}

Session::Colour colourOf(Severity severity)
{
    switch (severity) {
    case Severity::Error:
        return Session::Colour::Red;
    case Severity::Warning:
        return Session::Colour::Yellow;
    case Severity::Hint:
    case Severity::Note:
        break;
    }
    return Session::Colour::Bold;
}

void print(Session &session, const QString &path, const CVBATool &tool, const ToolCheck::Row &row)
{
    const ToolFinding &finding = row.finding;
    session.printLine(QStringLiteral("%1: #%2 \"%3\": %4: %5 %6")
                          .arg(SetFile::shown(path))
                          .arg(row.position)
                          .arg(Session::visible(tool.Description),
                              session.coloured(colourOf(finding.severity),
                                  ToolCheck::caption(finding.severity).toLower()),
                              Session::visible(finding.what), finding.advice));
}

void write(JsonWriter &json, const CVBATool &tool, const ToolCheck::Row &row)
{
    json.beginObject();
    json.member("tool", tool.Description);
    json.member("position", row.position);
    json.member("severity", ToolCheck::caption(row.finding.severity).toLower());
    json.member("field", QString::fromLatin1(row.finding.field));
    json.member("what", row.finding.what);
    json.member("advice", row.finding.advice);
    json.endObject();
}

} // namespace

Session::Result Commands::check(Session &session, const QCommandLineParser &arguments)
{
    DiskFiles files;
    ToolCheck::Rules rules {
        session.codePage(), arguments.value(QStringLiteral("macros")), DosDrives::ofWine(), &files};
    if (!assignDrives(session, rules.drives, arguments.values(QStringLiteral("drive"))))
        return Session::Trouble;
    Severity least = Severity::Note;
    if (const QString level = arguments.value(QStringLiteral("level")); !level.isEmpty()) {
        for (const Severity each : {Severity::Hint, Severity::Warning, Severity::Error}) {
            if (level == ToolCheck::caption(each).toLower())
                least = each;
        }
        if (least == Severity::Note) {
            session.error({}, QStringLiteral("there is no level \"%1\"").arg(level));
            return Session::Trouble;
        }
    }
    const bool asJson = arguments.isSet(QStringLiteral("json"));
    QByteArray text;
    JsonWriter json(text);
    if (asJson)
        json.beginArray();
    bool found = false;
    const QStringList paths = arguments.positionalArguments();
    for (const QString &path : paths) {
        auto tools = SetFile::read(session, path);
        if (!tools)
            continue;
        ToolSetDocument document(session.storage());
        document.setTools(std::move(tools), true);
        ToolCheck check(document, rules);
        check.finish();
        if (asJson) {
            json.beginObject();
            json.member("file", path);
            json.key("findings");
            json.beginArray();
        }
        const QList<ToolCheck::Row> rows = check.allFindings();
        for (const ToolCheck::Row &row : rows) {
            if (row.finding.severity < least)
                continue;
            found |= row.finding.severity > Severity::Note;
            const CVBATool &tool = *document.toolAt(row.position);
            if (asJson)
                write(json, tool, row);
            else
                print(session, path, tool, row);
        }
        if (asJson) {
            json.endArray();
            json.endObject();
        }
    }
    if (asJson)
        json.endArray();
    session.print(QByteArrayView(text));
    return found ? Session::Findings : Session::Success;
}
