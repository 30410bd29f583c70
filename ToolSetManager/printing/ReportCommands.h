#pragma once

#include "model/ToolCheck.h"

#include <QString>

#include <functional>

class CVBATools;
class frmPrint;
class Printers;
class QWidget;
class SettingsStore;

/// What the menus of a tool set window offer about printing.
class ReportCommands
{
public:
    /// Is told what was produced, and the file if it is one.
    using Produced = std::function<void(const QString &text, const QString &file)>;

    /// What is handed in is borrowed; \a owner is the window that asks.
    ReportCommands(
        QWidget *owner, const Produced &produced, SettingsStore &store, Printers &printers);

    /// Both tell the user when there is no printer. \a fileName is the set's path, or empty.
    void print(const CVBATools &tools, const QString &fileName);
    void preview(const CVBATools &tools, const QString &fileName);
    /// The same of what a check found, by position.
    void print(const QList<ToolCheck::Row> &findings, const QString &fileName);
    void preview(const QList<ToolCheck::Row> &findings, const QString &fileName);
    void setUp(); ///< Lets the user choose printer and paper for the rest of the run.

private:
    void run(const std::function<void(frmPrint &)> &prepare, void (frmPrint::*operation)());
    bool printerIsInstalled();
    void hand(frmPrint &report, const CVBATools &tools, const QString &fileName);
    void hand(frmPrint &report, const QList<ToolCheck::Row> &findings, const QString &fileName);

    QWidget *m_owner;
    Produced m_produced;
    SettingsStore &m_store;
    Printers &m_printers;
};
