#include "printing/ReportCommands.h"

#include "platform/desktop/Hourglass.h"
#include "platform/desktop/MsgBox.h"
#include "platform/print/PrintSetupDialog.h"
#include "platform/print/Printers.h"
#include "printing/frmPrint.h"
#include "shell/Frame.h"

ReportCommands::ReportCommands(
    QWidget *owner, Frame &frame, SettingsStore &store, Printers &printers)
    : m_owner(owner)
    , m_frame(frame)
    , m_store(store)
    , m_printers(printers)
{
}

void ReportCommands::print(const CVBATools &tools, const QString &fileName)
{
    if (!printerIsInstalled())
        return;
    frmPrint report(m_store, m_printers, m_owner->window());
    hand(report, tools, fileName);
    report.PrintToolset();
}

void ReportCommands::preview(const CVBATools &tools, const QString &fileName)
{
    if (!printerIsInstalled())
        return;
    frmPrint report(m_store, m_printers, m_owner->window());
    hand(report, tools, fileName);
    report.PreviewToolset();
}

void ReportCommands::setUp()
{
    PrintSetupDialog(m_printers, m_owner->window()).exec();
}

bool ReportCommands::printerIsInstalled()
{
    {
        Hourglass busy;
        if (!m_printers.names().isEmpty())
            return true;
    }
    MsgBox::show(m_owner,
        QStringLiteral("No printers are installed.  Set up a printer and rerun this function."),
        MsgBox::Buttons::Ok, MsgBox::Icon::Information);
    return false;
}

void ReportCommands::hand(frmPrint &report, const CVBATools &tools, const QString &fileName)
{
    report.ToolSet = &tools;
    report.FileName = fileName;
    QObject::connect(&report, &frmPrint::produced, &report,
        [this](const QString &text, const QString &file) { m_frame.showResult(text, file); });
}
