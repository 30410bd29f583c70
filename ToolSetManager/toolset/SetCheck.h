#pragma once

#include "model/ToolCheck.h"
#include "platform/desktop/BackgroundFiles.h"
#include "printing/ReportCommands.h"

#include <QObject>
#include <QTimer>

class CheckPanel;
class Settings;
class SettingsStore;
class ToolListModel;
class ToolSetDocument;

/// The check of one window: checks its document while the panel is open, shows what it finds there
/// and marks the tools in the list.
class SetCheck : public QObject
{
    Q_OBJECT
public:
    /// What is handed in is borrowed; \a form is the window itself, in which the panel lies.
    SetCheck(QWidget *form, const CodePage &codePage, const Settings &settings,
        SettingsStore &store, ToolSetDocument &document, ToolListModel &list,
        ReportCommands &report);

    /// Opens the panel, gives it the focus and checks all tools anew, files included.
    void run();
    void close(); ///< The findings and marks go.
    bool isOpen() const;

    /// Lays the panel out at the bottom of \a room and returns the rest.
    QRect layOut(const QRect &room);

Q_SIGNALS:
    /// The user wants to change a field, a name in ToolFields, of that tool.
    void fieldChosen(const ToolPtr &tool, const QString &field);
    void layoutChanged(); ///< layOut() gives another answer.
    void closed(); ///< By the user in the panel, which had the focus.

private:
    void makePanel();
    ToolCheck::Rules rules();
    void refresh();
    QString summary(const QList<ToolCheck::Row> &findings) const;
    QIcon mark(int position) const;
    QString markText(int position) const;
    void chooseDrives();

    QWidget *m_form;
    const CodePage &m_codePage;
    const Settings &m_settings;
    SettingsStore &m_store;
    ToolSetDocument &m_document;
    ToolListModel &m_list;
    ReportCommands &m_report;
    BackgroundFiles m_files;
    ToolCheck m_check;
    CheckPanel *m_panel = nullptr; ///< Made when it is first opened.
    QTimer m_refresh; ///< From the check's news to the panel.
};
