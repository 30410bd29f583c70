#pragma once

#include "model/ToolCheck.h"

#include <QString>

#include <functional>

class CVBATools;
class Frame;
class frmPrint;
class Printers;
class QWidget;
class SettingsStore;

/// What the menus of a tool set window offer about printing.
class ReportCommands
{
public:
    /// What is handed in is borrowed; \a owner is the window that asks.
    ReportCommands(QWidget *owner, Frame &frame, SettingsStore &store, Printers &printers);

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
    Frame &m_frame; ///< Says what was produced.
    SettingsStore &m_store;
    Printers &m_printers;
};
