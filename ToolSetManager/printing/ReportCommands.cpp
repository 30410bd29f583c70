#include "printing/ReportCommands.h"

#include "platform/desktop/Hourglass.h"
#include "platform/desktop/MsgBox.h"
#include "platform/print/PrintSetupDialog.h"
#include "platform/print/Printers.h"
#include "printing/CheckReport.h"
#include "printing/frmPrint.h"

ReportCommands::ReportCommands(
    QWidget *owner, const Produced &produced, SettingsStore &store, Printers &printers)
    : m_owner(owner)
    , m_produced(produced)
    , m_store(store)
    , m_printers(printers)
{
}

void ReportCommands::print(const CVBATools &tools, const QString &fileName)
{
    run([&](frmPrint &report) { hand(report, tools, fileName); }, &frmPrint::PrintToolset);
}

void ReportCommands::preview(const CVBATools &tools, const QString &fileName)
{
    run([&](frmPrint &report) { hand(report, tools, fileName); }, &frmPrint::PreviewToolset);
}

void ReportCommands::print(const QList<ToolCheck::Row> &findings, const QString &fileName)
{
    run([&](frmPrint &report) { hand(report, findings, fileName); }, &frmPrint::PrintToolset);
}

void ReportCommands::preview(const QList<ToolCheck::Row> &findings, const QString &fileName)
{
    run([&](frmPrint &report) { hand(report, findings, fileName); }, &frmPrint::PreviewToolset);
}

void ReportCommands::run(
    const std::function<void(frmPrint &)> &prepare, void (frmPrint::*operation)())
{
    if (!printerIsInstalled())
        return;
    frmPrint report(m_store, m_printers, m_owner->window());
    prepare(report);
    (report.*operation)();
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
    QObject::connect(&report, &frmPrint::produced, &report, m_produced);
}

void ReportCommands::hand(
    frmPrint &report, const QList<ToolCheck::Row> &findings, const QString &fileName)
{
    report.FileName = fileName;
    QObject::connect(&report, &frmPrint::produced, &report, m_produced);
    report.setReport({QStringLiteral("Tool Check Report"),
        QStringLiteral("Writing finding %1 of %2"), static_cast<int>(findings.size()),
        [=](PageDocument &page, const ToolsetReport::Progress &progress) {
            return CheckReport::write(page, findings, fileName, progress);
        }});
}
