#pragma once

#include "model/ToolSetDocument.h"
#include "printing/ReportCommands.h"
#include "shell/DocumentWindow.h"
#include "toolset/ClipboardSource.h"

#include <QWidget>

#include <functional>

class EditCommands;
class FindBar;
class Frame;
class ListView;
class Printers;
class QLabel;
class QLineEdit;
class QTimer;
class SetCheck;
class Settings;
class SettingsStore;
class ToolListModel;
class ToolPropertiesLink;
class ToolSetFile;
class ToolSetMenus;
class mTSM;
struct ToolSetStorage;

/// Document window of one tool set: owns its document, shows it in lvTools and runs its commands.
/// The Position column, not the current sort, decides the order in which tools are written.
class frmToolSet : public QWidget, public DocumentWindow, public ClipboardSource
{
    Q_OBJECT
public:
    /// What is handed in is borrowed. The window deletes itself when it is closed.
    frmToolSet(Frame &frame, mTSM &state, const Settings &settings, SettingsStore &store,
        ToolSetStorage &storage, Printers &printers, QWidget *parent = nullptr);
    ~frmToolSet() override;

    // --- Properties ---
    QWidget *widget() override { return this; }
    QString Name() const override;
    QString Caption() const override { return m_caption; }
    void setCaption(const QString &caption) override;
    QString FileName() const override;
    void setFileName(const QString &path) override;
    QString notice() const override;
    int View() const override;
    void setView(int view) override;
    void setAction(const QString &word) override;
    CommandState commandState() const override { return m_commands; }
    DocumentStatus status() const override;
    const CVBATools &Tools() const;
    ToolSetDocument &Document() { return m_set; }
    ToolSetDocument *toolSet() override { return &m_set; }
    bool Dirty() const; ///< Changed since it was loaded or saved.

    // --- Operations ---
    bool CleanIfDirty() override;
    bool Recover(const QString &snapshot) override;
    void Unload() override;
    void Form_Activate() override;
    void unghostTools() override;
    void completeCut() override;
    /// Enables or disables the commands of a group: toolbar buttons, menu items; then brings the
    /// view buttons and the paste commands up to date.
    void SetCommandGroup(const QString &group, bool enabled);
    void UnselectAll();
    /// Ends a pending cut, copy or drag: the source window's items are no longer ghosted, the tool
    /// clipboard is empty.
    void ClearDragTools();

    // --- Menus ---
    QList<QMenu *> menus() const override;
    RecentFileMenu &mnuFileList() override;

    QSize sizeHint() const override { return {620, 380}; }

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    // --- lvTools ---
    void lvTools_ColumnClick(int column);
    void lvTools_BeforeLabelEdit();
    void lvTools_AfterLabelEdit(int row, const QString &NewString);
    void lvTools_Click();
    void lvTools_DblClick();
    void lvTools_KeyUp(int key);
    void lvTools_MouseDown(Qt::MouseButton button);
    // --- Form ---
    void Form_KeyDown(int key);
    // --- menus ---
    void mnuFileExit_Click();
    // --- lblToolSet ---
    void lblToolSet_DblClick();
    // --- timers ---
    void tmrPopUp_Timer(); ///< 25 ms after the right button: the list has done its own part then.
    void tmrResize_Timer(); ///< 50 ms after the last resize: label, then list.

private:
    void Form_Load();
    void connectList();
    void connectMenus();
    void connectFind();
    void layOut();
    int heightOf(QWidget *bar) const; ///< 0 while it is hidden.
    void showEditMenu(const QPoint &globalPosition);

    void connectEdits();
    /// Every command but cut, copy, paste, undo and redo begins here: what was typed into a label
    /// counts.
    void runCommand(const std::function<void()> &command);
    /// While a name is edited in place, cut, copy and paste are keystrokes for the edit box.
    bool sentToLabel(Qt::Key key, Qt::KeyboardModifier modifier);
    /// While a name is edited in place, undo and redo are about what is typed.
    QLineEdit *editedLabel() const;
    void addMoveKeys();

    void copyCommand();
    void cutCommand();
    void pasteCommand();
    void propertiesCommand();
    void changeToolsCommand();
    void connectCheck();
    void showField(const ToolPtr &tool, const QString &field);
    void showToolHelp();
    void showProperties();
    void undoCommand();
    void redoCommand();
    /// What an empty list says; not before the window has its set.
    void showEmptyHint();
    void showList();
    void setSort(int column, Qt::SortOrder order);
    void refreshToolCommands(); ///< There may be tools now, or none any more.
    void refreshPasteCommand();
    void setPasteEnabled(bool enabled);
    void showCommandState(); ///< In the menus and, by the frame, in the toolbar.

    Frame &m_frame;
    mTSM &m_state;
    Printers &m_printers;
    const Settings &m_settings;
    SettingsStore &m_store;
    const CodePage &m_codePage; ///< Of files.

    // --- Controls ---
    QLabel *lblToolSet;
    ListView *lvTools;
    FindBar *m_find;
    ToolSetMenus *m_menus;
    QTimer *tmrHelp; ///< 10 ms from "Tool Help" in the menu, which has gone then, to the help.
    QTimer *tmrPopUp;
    QTimer *tmrResize;

    // --- State ---
    ToolSetDocument m_set;
    ToolListModel *m_list;
    ToolSetFile *m_file;
    EditCommands *m_edit;
    ToolPropertiesLink *m_properties;
    ReportCommands m_report;
    SetCheck *m_check;
    CommandState m_commands;
    QString m_caption;
    bool m_labelEditing = false;
    bool m_unloading = false; ///< Closed from code: nothing is asked.
    bool m_laidOut = false;
};
