#include "printing/CheckReport.h"

#include "platform/print/PageDocument.h"

namespace {

constexpr int severityColumn = 1800; ///< Twips, as in the listing of the tools.
constexpr int findingColumn = 3240;

QString lineEnd()
{
    return QStringLiteral("\r\n");
}

void printFinding(PageDocument &page, const ToolFinding &finding)
{
    page.setCurrentX(severityColumn);
    page.setText(ToolCheck::caption(finding.severity) + u' ');
    if (page.hasRoomAt(findingColumn))
        page.setCurrentX(findingColumn);
    page.setText(finding.what + u' ' + finding.advice + lineEnd());
}

} // namespace

bool CheckReport::write(PageDocument &page, const QList<ToolCheck::Row> &rows,
    const QString &fileName, const ToolsetReport::Progress &progress)
{
    ToolsetReport::begin(page, fileName, QStringLiteral("Tool Check"));
    page.setText(QStringLiteral("Found: %1.").arg(ToolCheck::summary(rows)) + lineEnd());
    int done = 0;
    int position = 0;
    for (const ToolCheck::Row &row : rows) {
        if (row.position != position) {
            position = row.position;
            page.setText(lineEnd()
                + QStringLiteral("%1  %2")
                      .arg(position, 3, 10, QLatin1Char('0'))
                      .arg(row.tool->Description)
                + lineEnd());
        }
        printFinding(page, row.finding);
        if (progress && !progress(++done))
            return false;
    }
    page.EndDoc();
    return true;
}
