#pragma once

#include "platform/desktop/SettingsStore.h"

#include <QString>

/// The add-in's settings, which this program only reads: section "Settings" of the application
/// "VB Quillon For VB5". Two of them matter here; the others are kept readable, so that the class
/// mirrors the add-in's complete set of options.
class Settings
{
public:
    static constexpr auto &application = SettingsStore::addIn;
    static constexpr char16_t section[] = u"Settings";

    /// All values at their defaults. \a programFolder is where the program lies, with or without a
    /// separator at its end.
    explicit Settings(const QString &programFolder);

    /// Reads all values anew. A missing section, an unknown name and a value that does not convert
    /// leave the defaults.
    void LoadSettings(const SettingsStore &store);

    QString ToolsetPath() const { return m_toolsetPath; } ///< Where dialogs look for tool sets.
    QString MacroPath() const { return m_macroPath; } ///< Where dialogs look for macro files.

    QString DefaultToolset() const { return m_defaultToolset; }
    QString PermanentToolSet() const { return m_permanentToolSet; }
    bool EnableHotkeys() const { return m_enableHotkeys; }
    bool VBEvents() const { return m_vbEvents; }
    qint16 MacroMode() const { return m_macroMode; }
    bool DontLoadOnStartUp() const { return m_dontLoadOnStartUp; }
    qint16 Height() const { return m_height; }
    qint16 Width() const { return m_width; }
    qint16 WindowState() const { return m_windowState; }
    bool RunOutOfProcess() const { return m_runOutOfProcess; }
    qint16 MacroEditorChoice() const { return m_macroEditorChoice; }

private:
    struct Entry;
    static const Entry entries[];

    QString m_programFolder;
    QString m_defaultToolset;
    QString m_toolsetPath;
    QString m_macroPath;
    QString m_permanentToolSet;
    bool m_enableHotkeys = true;
    bool m_vbEvents = true;
    qint16 m_macroMode = 1;
    bool m_dontLoadOnStartUp = false;
    qint16 m_height = 0;
    qint16 m_width = 0;
    qint16 m_windowState = 0;
    bool m_runOutOfProcess = false;
    qint16 m_macroEditorChoice = 1;
};
