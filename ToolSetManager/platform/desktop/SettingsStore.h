#pragma once

#include <QList>
#include <QPair>
#include <QString>

/// The per-user settings store that the program shares with the add-in: text values by
/// application, section and key. Keys differ by letter case.
///
/// One INI file for each application, "<application>.conf" in the user's configuration directory,
/// which may be edited by hand (IniFile says how it is read); on Windows the registry key under
/// which Visual Basic programs keep their settings. What is no ordinary file, or far larger than
/// settings are, is neither read nor written.
class SettingsStore
{
public:
    /// The application under which the add-in and this program keep theirs.
    static constexpr char16_t addIn[] = u"VB Quillon For VB5";

    /// \a folder is where the files lie; empty means the user's configuration directory.
    explicit SettingsStore(const QString &folder = {});

    QString GetSetting(const QString &application, const QString &section, const QString &key,
        const QString &fallback = {}) const;

    /// All name and value pairs of a section; empty when the section is missing or unreadable.
    QList<QPair<QString, QString>> GetAllSettings(
        const QString &application, const QString &section) const;

    /// Throws VbError::DeviceError when the value could not be stored.
    void SaveSetting(const QString &application, const QString &section, const QString &key,
        const QString &value);
    /// The same for several values of a section, all of them or none.
    void SaveSettings(const QString &application, const QString &section,
        const QList<QPair<QString, QString>> &pairs);

private:
    QString m_folder;
};
