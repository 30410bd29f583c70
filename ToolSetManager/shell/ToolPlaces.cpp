#include "shell/ToolPlaces.h"

#include "platform/desktop/SettingsStore.h"
#include "platform/desktop/mFileUtil.h"
#include "shell/Settings.h"

#include <QDir>

#include <chrono>
#include <future>
#include <memory>
#include <thread>

namespace {

QString usableMacroFolder(const QString &wanted)
{
    const auto answer = std::make_shared<std::promise<QString>>();
    std::future<QString> folder = answer->get_future();
    // Detached: a thread that the system holds cannot be joined.
    std::thread([answer, wanted] { answer->set_value(mFileUtil::UsableFolder(wanted)); }).detach();
    constexpr std::chrono::milliseconds patience {500};
    return folder.wait_for(patience) == std::future_status::ready ? folder.get() : wanted;
}

} // namespace

DosDrives ToolPlaces::namedDrives(const SettingsStore &store)
{
    DosDrives drives;
    const auto pairs = store.GetAllSettings(
        QString::fromUtf16(Settings::application), QString::fromUtf16(drivesSection));
    for (const auto &[name, folder] : pairs) {
        const bool isDrive = name.size() == 2 && !DosDrives::drive(name).isNull();
        if (isDrive && QDir::isAbsolutePath(folder))
            drives.assign(name[0], folder);
    }
    return drives;
}

ToolPlaces ToolPlaces::read(const Settings &settings, const SettingsStore &store)
{
    ToolPlaces places;
    places.drives = DosDrives::ofWine();
    const DosDrives named = namedDrives(store);
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        const QString folder = named.folder(QLatin1Char(letter));
        if (!folder.isEmpty())
            places.drives.assign(QLatin1Char(letter), folder);
    }
    places.macroFolder = usableMacroFolder(settings.MacroPath());
    return places;
}
