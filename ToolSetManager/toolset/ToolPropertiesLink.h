#pragma once

#include "model/CVBATool.h"

#include <QObject>
#include <QPointer>

class Frame;
class ListView;
class Printers;
class QWidget;
class Settings;
class SettingsStore;
class ToolListModel;
class ToolSetDocument;
class frmToolProps;

/// Opens the tool properties dialog for the selected tool of one window and hands it the next and
/// the prior one. The list follows the document, which the dialog writes to.
class ToolPropertiesLink : public QObject
{
    Q_OBJECT
public:
    /// What is handed in is borrowed; \a form is the window itself.
    ToolPropertiesLink(QWidget *form, Frame &frame, const Settings &settings, SettingsStore &store,
        Printers &printers, ToolSetDocument &document, ListView &list, ToolListModel &model);

    /// Returns when the dialog has closed; nothing happens when no tool is selected. The dialog
    /// begins with \a field, a name in ToolFields, if there is one.
    void ShowToolProperties(const QString &field = {});

    /// The tool that the dialog shows while it has changes in its controls that are not applied;
    /// null for none.
    const CVBATool *editedTool() const;
    /// That tool as it would be if they were.
    CVBATool draft() const;

Q_SIGNALS:
    void draftChanged(); ///< There is another draft, or none any more.

private Q_SLOTS:
    void ToolProperties_Change();
    void ToolProperties_NameChange();
    void ToolProperties_RequestNextTool();
    void ToolProperties_RequestPriorTool();

private:
    void showToolIn(int row);
    /// Goes to the shown tool next behind (or before) this one by position, if there is one.
    void go(bool forward);

    QWidget *m_form;
    Frame &m_frame;
    const Settings &m_settings;
    SettingsStore &m_store;
    Printers &m_printers;
    ToolSetDocument &m_document;
    ListView &m_list;
    ToolListModel &m_model;
    QPointer<frmToolProps> ToolProperties;
    ToolPtr m_tool; ///< That the dialog shows.
};
