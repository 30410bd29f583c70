#include "platform/desktop/SettingsStore.h"

#include "platform/VbError.h"
#include "platform/desktop/IniFile.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>

#include <optional>

namespace {

using Pairs = QList<QPair<QString, QString>>;

constexpr int patienceMs = 2000; // with another writer, which needs a few milliseconds

QString pathOf(const QString &folder, const QString &application)
{
    return folder + u'/' + application + QStringLiteral(".conf");
}

/// Empty for a file that does not exist; nothing for one that cannot be read.
std::optional<QByteArray> contentOf(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return info.isSymLink() ? std::nullopt : std::make_optional<QByteArray>();
    QFile file(path);
    constexpr qint64 largest = 16 << 20; // far more than settings are
    // A pipe would keep the program waiting for somebody who writes into it.
    if (!info.isFile() || info.size() > largest || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

/// The file is replaced as a whole: one that is read meanwhile, or a machine that stops, leaves the
/// old content or the new one.
bool writeValues(const QString &path, const QString &section, const Pairs &pairs)
{
    if (!QDir().mkpath(QFileInfo(path).path()))
        return false;
    QLockFile lock(path + QStringLiteral(".lock"));
    // A folder that takes no lock file takes no second writer's file either.
    if (!lock.tryLock(patienceMs) && lock.error() == QLockFile::LockFailedError)
        return false;
    const std::optional<QByteArray> content = contentOf(path);
    if (!content)
        return false;
    IniFile ini(*content);
    for (const auto &[key, value] : pairs)
        ini.setValue(section, key, value);
    if (ini.content() == *content)
        return true;
    QSaveFile file(path);
    file.setDirectWriteFallback(true); // where only the file itself may be written
    return file.open(QIODevice::WriteOnly) && file.write(ini.content()) >= 0 && file.commit();
}

#ifdef Q_OS_WIN
const QString registry =
    QStringLiteral("HKEY_CURRENT_USER\\Software\\VB and VBA Program Settings\\");

Pairs registryValues(const QString &application, const QString &section)
{
    QSettings settings(registry + application + u'\\' + section, QSettings::NativeFormat);
    Pairs pairs;
    const QStringList keys = settings.childKeys();
    for (const QString &key : keys)
        pairs.append({key, settings.value(key).toString()});
    return pairs;
}

bool writeRegistry(const QString &application, const QString &section, const Pairs &pairs)
{
    QSettings settings(registry + application + u'\\' + section, QSettings::NativeFormat);
    for (const auto &[key, value] : pairs)
        settings.setValue(key, value);
    settings.sync();
    return settings.status() == QSettings::NoError;
}
#endif

} // namespace

SettingsStore::SettingsStore(const QString &folder)
    : m_folder(folder)
{
#ifndef Q_OS_WIN
    if (m_folder.isEmpty())
        m_folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
#endif
}

QString SettingsStore::GetSetting(const QString &application, const QString &section,
    const QString &key, const QString &fallback) const
{
    const Pairs pairs = GetAllSettings(application, section);
    const auto found = std::find_if(
        pairs.crbegin(), pairs.crend(), [&key](const auto &pair) { return pair.first == key; });
    return found != pairs.crend() ? found->second : fallback;
}

QList<QPair<QString, QString>> SettingsStore::GetAllSettings(
    const QString &application, const QString &section) const
{
#ifdef Q_OS_WIN
    if (m_folder.isEmpty())
        return registryValues(application, section);
#endif
    return IniFile(contentOf(pathOf(m_folder, application)).value_or(QByteArray())).values(section);
}

void SettingsStore::SaveSetting(
    const QString &application, const QString &section, const QString &key, const QString &value)
{
    SaveSettings(application, section, {{key, value}});
}

void SettingsStore::SaveSettings(
    const QString &application, const QString &section, const Pairs &pairs)
{
    const QString path = pathOf(m_folder, application);
#ifdef Q_OS_WIN
    if (m_folder.isEmpty() ? writeRegistry(application, section, pairs)
                           : writeValues(path, section, pairs))
        return;
#else
    if (writeValues(path, section, pairs))
        return;
#endif
    throw VbError(VbError::DeviceError, QStringLiteral("SettingsStore"),
        QStringLiteral("The settings cannot be written to \"%1\".")
            .arg(QDir::toNativeSeparators(path)));
}
