#include "report/ToolsetReport.h"

#include "model/CVBATools.h"
#include "model/VbEvents.h"
#include "platform/print/PageDocument.h"

namespace {

constexpr int start = 1440; ///< Both ways.
constexpr int nameColumn = 2160;
constexpr int labelColumn = 2880;
constexpr int valueColumn = 5760;
constexpr int pictureSize = 360;

QString lineEnd()
{
    return QStringLiteral("\r\n");
}

void printAt(PageDocument &page, int column, const QString &text)
{
    page.setCurrentX(column);
    page.setText(text);
}

/// Goes to the second column. On paper too narrow for two columns the second one goes on below the
/// first.
void goToValue(PageDocument &page)
{
    if (page.hasRoomAt(valueColumn)) {
        page.setCurrentX(valueColumn);
        return;
    }
    page.setText(lineEnd());
    if (page.hasRoomAt(labelColumn))
        page.setCurrentX(labelColumn);
}

void printValue(PageDocument &page, const QString &label, const QString &value)
{
    printAt(page, labelColumn, label);
    if (!label.isEmpty() || page.hasRoomAt(valueColumn))
        goToValue(page);
    page.setText(value + lineEnd());
}

/// Empty for the kinds that have no such line.
QString typeName(int kind)
{
    switch (kind) {
    case CVBATool::StandardExecutable:
        return QStringLiteral("Standard Exe");
    case CVBATool::AddInExecutable:
        return QStringLiteral("Brelmark Exe");
    case CVBATool::Macro:
        return QStringLiteral("Macro");
    default:
        return {};
    }
}

QString access(const CVBATool &tool)
{
    if (!tool.Enabled)
        return QStringLiteral("Not enabled");
    QStringList ways;
    if (tool.IntoolBar())
        ways.append(QStringLiteral("Toolbar"));
    if (tool.InList())
        ways.append(QStringLiteral("List"));
    if (tool.UseHotKey())
        ways.append(QStringLiteral("Use %1 for hot key").arg(tool.Hotkey));
    return ways.join(QStringLiteral(", "));
}

void printHelp(PageDocument &page, const QString &help)
{
    printAt(page, labelColumn, QStringLiteral("Tool Help:"));
    if (help.isEmpty()) {
        // Kept: this sentence stands right behind its label, unlike every other value.
        page.setText(QStringLiteral("No help defined for this tool.") + lineEnd());
    } else {
        goToValue(page);
        page.setIndentLeft(page.CurrentX() - page.MarginLeft());
        page.setTextRTF(lineEnd() + help + lineEnd());
    }
    page.setIndentLeft(0);
}

void printTool(PageDocument &page, const CVBATool &tool)
{
    if (page.CurrentY() + pictureSize > page.PageHeight() - page.MarginBottom())
        page.NewPage();
    page.DrawPicture(
        tool.Picture, QRect(page.CurrentX(), page.CurrentY(), pictureSize, pictureSize));

    printAt(page, nameColumn, tool.Description);
    if (page.hasRoomAt(valueColumn) && page.CurrentX() > valueColumn)
        page.setText(lineEnd()); // a long name and the location would stand on each other
    goToValue(page);
    // The location as stored: where it is empty, nothing stands in for it here.
    page.setText(tool.FileName + lineEnd() + lineEnd());

    const QString type = typeName(tool.ToolType);
    if (!type.isEmpty())
        printValue(page, QStringLiteral("Tool type:"), type);
    printValue(page, QStringLiteral("Tool access:"), access(tool));
    if (!tool.AppName().isEmpty())
        printValue(page, QStringLiteral("OLE application name:"), tool.AppName());
    if (!tool.CommandLine.isEmpty())
        printValue(page, QStringLiteral("Command line arguments:"), tool.CommandLine);
    ToolsetReport::PrintToolEvents(tool.VBEvents, page);
    printHelp(page, tool.HelpString);
    page.setText(lineEnd() + lineEnd());
}

} // namespace

void ToolsetReport::PrintToolEvents(qint32 events, PageDocument &page)
{
    for (const VbEvents::Group &group : VbEvents::groups) {
        QString heading = VbEvents::text(group.reportHeading);
        for (int event = group.first; event <= group.last; ++event) {
            if (!VbEvents::contains(events, event))
                continue;
            printValue(page, heading, VbEvents::text(VbEvents::events[size_t(event)].name));
            heading.clear(); // only on the line of the group's first event
        }
    }
}

void ToolsetReport::begin(PageDocument &page, const QString &fileName, const QString &title)
{
    page.setCurrentX(start);
    page.setCurrentY(start);
    // A per cent sign of the file's name must not be taken for the mark of the page's number.
    QString name = fileName;
    name.replace(u'%', QStringLiteral("%%"));
    page.setHeader(QStringLiteral("File name: ") + name + QStringLiteral("||") + title);
    page.setFooter(QStringLiteral("VB Quillon||Page %d"));
    page.setHeaderFont(QStringLiteral("Arial"), 10, true);
    page.setFont(QStringLiteral("Arial"), 10, false);
    page.setText(lineEnd());
}

bool ToolsetReport::write(
    PageDocument &page, const CVBATools &tools, const QString &fileName, const Progress &progress)
{
    begin(page, fileName, QStringLiteral("Tool Set Report"));
    int done = 0;
    for (const ToolPtr &tool : tools) {
        printTool(page, *tool);
        if (progress && !progress(++done))
            return false;
    }
    page.EndDoc();
    return true;
}
