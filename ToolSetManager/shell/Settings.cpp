#include "shell/Settings.h"

#include "platform/desktop/SettingsStore.h"
#include "platform/desktop/mFileUtil.h"
#include "platform/text/VbConvert.h"

#include <QDir>

#include <variant>

/// A key, and the member of the value's type that it fills.
struct Settings::Entry
{
    QLatin1StringView key;
    std::variant<QString Settings::*, bool Settings::*, qint16 Settings::*> member;
};

const Settings::Entry Settings::entries[] = {
    {QLatin1StringView("Default Toolset"), &Settings::m_defaultToolset},
    {QLatin1StringView("Toolset Path"), &Settings::m_toolsetPath},
    {QLatin1StringView("Macro Path"), &Settings::m_macroPath},
    {QLatin1StringView("Permanent Tool Set"), &Settings::m_permanentToolSet},
    {QLatin1StringView("Enable Hotkeys"), &Settings::m_enableHotkeys},
    {QLatin1StringView("VB Events"), &Settings::m_vbEvents},
    {QLatin1StringView("Macro Mode"), &Settings::m_macroMode},
    {QLatin1StringView("Don't Load On Start Up"), &Settings::m_dontLoadOnStartUp},
    {QLatin1StringView("Height"), &Settings::m_height},
    {QLatin1StringView("Width"), &Settings::m_width},
    {QLatin1StringView("Window State"), &Settings::m_windowState},
    {QLatin1StringView("Run out of process"), &Settings::m_runOutOfProcess},
    {QLatin1StringView("Macro Editor Choice"), &Settings::m_macroEditorChoice},
};

Settings::Settings(const QString &programFolder)
    : m_programFolder(programFolder)
{
    const QString folder = mFileUtil::AddSeparator(programFolder);
    m_toolsetPath = folder + QStringLiteral("toolsets");
    m_defaultToolset = m_toolsetPath + QDir::separator() + QStringLiteral("default.bmt");
    m_macroPath = folder + QStringLiteral("macros");
}

void Settings::LoadSettings(const SettingsStore &store)
{
    *this = Settings(m_programFolder);
    const auto pairs =
        store.GetAllSettings(QString::fromUtf16(application), QString::fromUtf16(section));
    for (const auto &[name, text] : pairs) {
        for (const Entry &entry : entries) {
            if (name != entry.key)
                continue;
            if (const auto *member = std::get_if<QString Settings::*>(&entry.member)) {
                this->**member = text;
            } else if (const auto *flag = std::get_if<bool Settings::*>(&entry.member)) {
                this->**flag = VbConvert::toBool(text).value_or(this->**flag);
            } else if (const auto *number = std::get_if<qint16 Settings::*>(&entry.member)) {
                this->**number = VbConvert::toInt16(text).value_or(this->**number);
            }
            break;
        }
    }
}
