#pragma once

#include "model/CVBATool.h"

#include <QObject>
#include <QPersistentModelIndex>
#include <QPointer>

class Frame;
class ListView;
class Printers;
class QWidget;
class Settings;
class SettingsStore;
class ToolListModel;
class frmToolProps;

/// Opens the tool properties dialog for the selected tool of one window and keeps the list in step
/// with what the dialog changes. The dialog works on the set's own tool.
class ToolPropertiesLink : public QObject
{
    Q_OBJECT
public:
    /// What is handed in is borrowed; \a form is the window itself.
    ToolPropertiesLink(QWidget *form, Frame &frame, const Settings &settings, SettingsStore &store,
        Printers &printers, ListView &list, ToolListModel &model);

    /// Returns when the dialog has closed; nothing happens when no tool is selected.
    void ShowToolProperties();

    /// The tool that the dialog shows while it has changes in its controls that are not applied;
    /// null for none.
    const CVBATool *editedTool() const;
    /// That tool as it would be if they were.
    CVBATool draft() const;

Q_SIGNALS:
    void changed(); ///< The set is no longer what is in its file.
    void draftChanged(); ///< There is another draft, or none any more.

private Q_SLOTS:
    void ToolProperties_LocationChange();
    void ToolProperties_NameChange(const QString &OldName, const QString &NewName);
    void ToolProperties_RequestNextTool();
    void ToolProperties_RequestPriorTool();
    void ToolProperties_UpdatePicture();

private:
    void showToolIn(int row);
    /// Goes to the tool that many positions away, if there is one.
    void goBy(int positions);

    QWidget *m_form;
    Frame &m_frame;
    const Settings &m_settings;
    SettingsStore &m_store;
    Printers &m_printers;
    ListView &m_list;
    ToolListModel &m_model;
    QPointer<frmToolProps> ToolProperties;
    QPersistentModelIndex m_item; ///< Of the tool that the dialog shows.
};
