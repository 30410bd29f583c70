#include "cli/Commands.h"
#include "cli/SetFile.h"
#include "model/BulkChange.h"
#include "model/ToolSetDocument.h"

#include <QCommandLineParser>

#include <numeric>

Session::Result Commands::relocate(Session &session, const QCommandLineParser &arguments)
{
    const QStringList words = arguments.positionalArguments();
    const QString &path = words[2];
    if (words[0].isEmpty()) {
        session.error({}, QStringLiteral("the folder to be replaced is empty"));
        return Session::Trouble;
    }
    auto tools = SetFile::read(session, path, SetFile::Damaged::Refuse);
    if (!tools)
        return Session::Trouble;
    ToolSetDocument document(session.storage());
    document.setTools(std::move(tools), true);

    BulkChange change;
    change.replacement = {
        BulkChange::Field::Location, BulkChange::Search::Folder, words[0], words[1]};
    QList<int> positions(document.count());
    std::iota(positions.begin(), positions.end(), 1);
    const QList<BulkChange::Row> rows = change.preview(document, positions, session.codePage());
    const bool isDry = arguments.isSet(QStringLiteral("dry-run"));
    for (const BulkChange::Row &row : rows) {
        if (!row.storable) {
            session.error(SetFile::shown(path),
                QStringLiteral("\"%1\": %2")
                    .arg(Session::visible(row.tool->Description), Session::visible(row.remark)));
        } else if (isDry) {
            for (const BulkChange::FieldChange &field : row.changes) {
                session.printLine(
                    QStringLiteral("%1: %2 -> %3")
                        .arg(Session::visible(row.tool->Description),
                            Session::visible(field.before), Session::visible(field.after)));
            }
        }
    }
    if (isDry || session.hadTrouble())
        return Session::Success;
    const QString out = arguments.value(QStringLiteral("output"));
    if (rows.isEmpty() && out.isEmpty() && path != u"-")
        return Session::Success; // the file is as it shall be
    BulkChange::apply(document, rows);
    return SetFile::write(
               session, document.file(), document.keysInOrder(), out.isEmpty() ? path : out)
        ? Session::Success
        : Session::Trouble;
}
