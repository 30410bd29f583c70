#include "platform/desktop/SettingsStore.h"

#include "platform/VbError.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace {

#ifdef Q_OS_WIN
QString location(const QString &folder, const QString &application)
{
    if (!folder.isEmpty())
        return folder + u'/' + application + QStringLiteral(".conf");
    return QStringLiteral("HKEY_CURRENT_USER\\Software\\VB and VBA Program Settings\\")
        + application;
}
QSettings::Format format(const QString &folder)
{
    return folder.isEmpty() ? QSettings::NativeFormat : QSettings::IniFormat;
}
#else
QString location(const QString &folder, const QString &application)
{
    return folder + u'/' + application + QStringLiteral(".conf");
}
QSettings::Format format(const QString &)
{
    return QSettings::IniFormat;
}
#endif

/// Opening a pipe would wait for its other end, and the toolkit reads a file whole.
bool isUsable(const QString &path)
{
    constexpr qint64 largest = 16 << 20;
    const QFileInfo file(path);
    return !file.exists() || (file.isFile() && file.size() <= largest);
}

/// A hand-written value with a comma in it reads as a list.
QString textOf(const QVariant &value)
{
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(QStringLiteral(", "));
    return value.toString();
}

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
    if (!isUsable(location(m_folder, application)))
        return fallback;
    const QSettings settings(location(m_folder, application), format(m_folder));
    const QVariant value = settings.value(section + u'/' + key);
    return value.isValid() ? textOf(value) : fallback;
}

QList<QPair<QString, QString>> SettingsStore::GetAllSettings(
    const QString &application, const QString &section) const
{
    if (!isUsable(location(m_folder, application)))
        return {};
    QSettings settings(location(m_folder, application), format(m_folder));
    settings.beginGroup(section);
    QList<QPair<QString, QString>> pairs;
    const QStringList keys = settings.childKeys();
    for (const QString &key : keys)
        pairs.append({key, textOf(settings.value(key))});
    return pairs;
}

void SettingsStore::SaveSetting(
    const QString &application, const QString &section, const QString &key, const QString &value)
{
    const QString path = location(m_folder, application);
    if (isUsable(path)) {
        QSettings settings(path, format(m_folder));
        settings.setValue(section + u'/' + key, value);
        settings.sync();
        if (settings.status() == QSettings::NoError)
            return;
    }
    throw VbError(VbError::DeviceError, QStringLiteral("SettingsStore"),
        QStringLiteral("The settings cannot be written to \"%1\".")
            .arg(QDir::toNativeSeparators(path)));
}
