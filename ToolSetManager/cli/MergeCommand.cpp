#include "cli/Commands.h"
#include "cli/SetFile.h"
#include "model/FieldText.h"
#include "model/ToolFields.h"
#include "model/ToolSetMerge.h"

#include <QCommandLineParser>

namespace {

/// The tools of a state as a set of their own.
std::unique_ptr<CVBATools> setOf(Session &session, const ToolSetState &state)
{
    auto tools = std::make_unique<CVBATools>(session.storage());
    tools->setFLAGS(state.properties.FLAGS);
    tools->setDescription(state.properties.Description);
    tools->setLongDescription(state.properties.LongDescription);
    for (const ToolPtr &tool : state.tools)
        tools->Add(tool); // the merge has made the names unique
    return tools;
}

/// The value of a field that is in conflict, where it is short; else nothing.
QString valueOf(const CVBATools &side, const ToolSetMerge::Conflict &conflict, const QString &name)
{
    static const int help = ToolFields::indexOf(&CVBATool::HelpString);
    if (conflict.field < 0 || conflict.field == help || !side.Items().contains(conflict.tool))
        return {};
    return QStringLiteral(" %1: %2.")
        .arg(name, Session::visible(FieldText::of(*side.Item(conflict.tool), conflict.field)));
}

} // namespace

Session::Result Commands::merge(Session &session, const QCommandLineParser &arguments)
{
    const QString out = arguments.value(QStringLiteral("output"));
    if (out.isEmpty()) {
        session.error({}, QStringLiteral("-o OUT is missing"));
        return Session::Trouble;
    }
    const QStringList paths = arguments.positionalArguments();
    // A set that ends early would look as if tools had been removed.
    constexpr auto whole = SetFile::Damaged::Refuse;
    const auto base = SetFile::read(session, paths[0], whole, SetFile::Empty::Accept);
    const auto ours = SetFile::read(session, paths[1], whole);
    const auto theirs = SetFile::read(session, paths[2], whole);
    if (!base || !ours || !theirs)
        return Session::Trouble;
    const ToolSetMerge merge(
        SetFile::stateOf(*base), SetFile::stateOf(*ours), SetFile::stateOf(*theirs));
    const auto merged = setOf(session, merge.result());
    if (!SetFile::write(session, *merged, out))
        return Session::Trouble;
    static const int flags = ToolFields::indexOf(&CVBATool::FLAGS);
    bool inConflict = false;
    for (const ToolSetMerge::Conflict &conflict : merge.conflicts()) {
        if (conflict.field == flags)
            continue; // not in the file; the events, which are, tell the same
        inConflict = true;
        session.say(out,
            QStringLiteral("conflict%1: %2%3%4")
                .arg(conflict.tool.isEmpty()
                        ? QString()
                        : QStringLiteral(" in \"%1\"").arg(Session::visible(conflict.tool)),
                    Session::visible(conflict.text),
                    valueOf(*merged, conflict, QStringLiteral("Ours")),
                    valueOf(*theirs, conflict, QStringLiteral("Theirs"))));
    }
    return inConflict ? Session::Findings : Session::Success;
}
