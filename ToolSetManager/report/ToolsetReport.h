#pragma once

#include <QString>
#include <QtGlobal>

#include <functional>

class CVBATools;
class PageDocument;

/// The listing of a tool set: of each tool its picture, name, location, kind, switches, OLE name,
/// command line, events and help text.
namespace ToolsetReport {

/// Told after each tool how many are written; false gives the report up.
using Progress = std::function<bool(int done)>;

/// Writes the whole report into a document that has been started, and ends it. \a fileName stands
/// in the header. False when it was given up.
bool write(PageDocument &page, const CVBATools &tools, const QString &fileName,
    const Progress &progress = {});

/// Sets header, footer, font and place of a document that has been started, as all reports of a set
/// have them. \a title stands in the header beside the file's name.
void begin(PageDocument &page, const QString &fileName, const QString &title);

/// Writes the names of the subscribed events, a line each, with their groups' headings. \a events
/// is CVBATool::VBEvents.
void PrintToolEvents(qint32 events, PageDocument &page);

} // namespace ToolsetReport
