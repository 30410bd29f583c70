#pragma once

#include "platform/desktop/DosDrives.h"

#include <QDialog>

class QComboBox;
class QLineEdit;
class QPushButton;
class SettingsStore;

/// The dialog in which the user names the folders that stand for drives such as C: here. They are
/// kept in the settings (ToolPlaces::drivesSection).
class frmDrives : public QDialog
{
    Q_OBJECT
public:
    /// The store is borrowed.
    explicit frmDrives(SettingsStore &store, QWidget *parent = nullptr);

private Q_SLOTS:
    void cboDrive_Click();
    void txtFolder_Change();
    void cmdBrowse_Click();
    void cmdOK_Click();

private:
    QChar letter() const; ///< The chosen drive's.
    QString caption(QChar letter) const; ///< In the list of drives.

    SettingsStore &m_store;
    DosDrives m_wine;
    DosDrives m_stored; ///< Those that the settings name.
    DosDrives m_drives; ///< The same as they are entered.

    QComboBox *cboDrive;
    QLineEdit *txtFolder;
    QPushButton *cmdBrowse;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
};
