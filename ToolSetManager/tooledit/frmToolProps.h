#pragma once

#include "model/CVBATool.h"

#include <QDialog>

class EventsPage;
class PictureControl;
class Printers;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabWidget;
class RTFEditor;
class Settings;
class SettingsStore;
class ToolSetDocument;

/// The dialog in which a tool is edited. It holds the set's own tool: nothing reaches it before the
/// changes are applied, and what is applied is at once the state of the set, written by operations
/// of the document that together are one step of undo. The owner hears of the changes through the
/// signals and hands in the next and the prior tool on request.
class frmToolProps : public QDialog
{
    Q_OBJECT
public:
    /// What is handed in is borrowed; the store keeps the picker's folder.
    frmToolProps(ToolSetDocument &document, const Settings &settings, SettingsStore &store,
        QWidget *parent = nullptr);

    /// Where the help text can be printed; borrowed.
    void setPrinters(Printers &printers);

    // --- Properties ---
    ToolPtr Tool() const { return m_tool; }
    /// Fills the controls from the tool.
    void setTool(const ToolPtr &tool);
    /// Goes to the page of a field, by its name in ToolFields, and gives its control the focus. A
    /// field that the dialog does not show leaves the first page.
    void showField(const QString &field);
    /// True when the dialog was closed by cmdOK.
    bool OK() const { return m_ok; }
    /// What the status bar shows for the tool: its name.
    QString CaptionText() const;

    /// True while the controls show changes that are not in the tool.
    bool Dirty() const { return m_dirty; }
    /// The tool as it would be if they were applied now.
    CVBATool Draft() const;

    void done(int result) override;

Q_SIGNALS:
    void Change();
    void DraftChange(); ///< The controls show something new that is not in the tool yet.
    void LocationChange(const QString &OldLocation, const QString &NewLocation);
    /// The tool has its new name already: \a NewName, or what the set made of it.
    void NameChange(const QString &OldName, const QString &NewName);
    void RequestNextTool();
    void RequestPriorTool();
    void UpdatePicture(const QImage &Picture);

protected:
    void showEvent(QShowEvent *event) override;

private Q_SLOTS:
    void cboToolType_Click();
    void cmdBrowseTool_Click();
    void cmdBrowseImage_Click();
    void cmdToolID_Click();
    void cmdPrior_Click();
    void cmdNext_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdApply_Click();

private:
    QWidget *generalPage();
    void addKeys(QWidget *page);
    void layOut();
    void Form_Load();
    void Form_QueryUnload();
    void ApplyChanges();
    /// Asks whether a changed tool shall be saved first; Yes applies.
    void SaveQuestion();
    void RecognizeToolFile(const QString &FileName);
    /// The first icon of a program file as a button picture. False when it has none.
    bool LoadIconFromFile(const QString &FileName);
    void giveFocusToHelp();
    void showStored();
    /// A new tool needs its file first, another one mostly another name.
    void focusFirstField();

    void setDirty(bool dirty);
    /// What is left when name, location and picture are stored and told.
    void storeIn(CVBATool &tool) const;
    qint16 Kind() const; ///< -1 when none is chosen.
    void setKind(qint16 kind); ///< Other values than those of the list leave the choice.
    QString macroFolder() const;

    ToolSetDocument &m_document;
    const Settings &m_settings;
    SettingsStore &m_store;
    ToolPtr m_tool;
    bool m_dirty = false;
    bool m_ok = false;
    QString m_loadedHelp; ///< As the editor gave it after loading.

    QTabWidget *sstAll;
    QComboBox *cboToolType;
    QLineEdit *txtLocation;
    QPushButton *cmdBrowseTool;
    QLineEdit *txtCommandLine;
    QLineEdit *txtDescription;
    PictureControl *picToolImage;
    QPushButton *cmdBrowseImage;
    QCheckBox *chkEnabled;
    QCheckBox *chkInToolBar;
    QCheckBox *chkRunOutOfProcess;
    QPushButton *cmdToolID;
    QLabel *m_storedCaption;
    QLabel *lblStored; ///< The fields that no control shows.
    PictureControl *picIcon;
    PictureControl *picConvert;
    PictureControl *imgBlank;
    EventsPage *m_events;
    RTFEditor *rtHelp;
    QPushButton *cmdPrior;
    QPushButton *cmdNext;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
    QPushButton *cmdApply;
};
