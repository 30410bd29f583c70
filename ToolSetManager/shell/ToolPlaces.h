#pragma once

#include "platform/desktop/DosDrives.h"

class Settings;
class SettingsStore;

/// Where the locations of tools lie on this system.
struct ToolPlaces
{
    /// Of the settings: "C:" is the folder in which paths such as "C:\Tools" lie.
    static constexpr char16_t drivesSection[] = u"Drives";

    DosDrives drives; ///< Those that the user names, else those of the user's Wine.
    QString macroFolder; ///< Of macros without a path; as mFileUtil::UsableFolder() says.

    /// The drives that the settings name.
    static DosDrives namedDrives(const SettingsStore &store);
    /// As the settings are now. A macro folder on a disk that does not answer soon is taken as it
    /// stands there.
    static ToolPlaces read(const Settings &settings, const SettingsStore &store);
};
