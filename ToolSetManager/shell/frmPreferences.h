#pragma once

#include <QDialog>

class QComboBox;
class QPushButton;
class Settings;
class SettingsStore;
class Theme;

/// The dialog of the program's own settings: the colours of its windows, the folders of drives and
/// the places of windows. What the add-in has set is shown and cannot be changed here.
class frmPreferences : public QDialog
{
    Q_OBJECT
public:
    /// Of the program's own settings, beside the add-in's.
    static constexpr char16_t section[] = u"Manager";
    static constexpr char16_t themeKey[] = u"Theme";

    /// What is handed in is borrowed.
    frmPreferences(
        SettingsStore &store, const Settings &settings, Theme &theme, QWidget *parent = nullptr);

    /// Chooses the colours that the settings name.
    static void restoreTheme(const SettingsStore &store, Theme &theme);

private:
    void cmdReset_Click();
    void cmdOK_Click();
    QWidget *makeAddInSettings(const Settings &settings);

    SettingsStore &m_store;
    Theme &m_theme;

    QComboBox *cboTheme;
    QPushButton *cmdDrives;
    QPushButton *cmdReset;
};
