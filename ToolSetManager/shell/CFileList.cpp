#include "shell/CFileList.h"

#include "platform/desktop/SettingsStore.h"
#include "platform/text/VbConvert.h"

#include <QHash>

namespace {

const QString maxCountKey = QStringLiteral("Max Count");

} // namespace

void CFileList::Add(const QString &path)
{
    if (m_entries.contains(path)) {
        if (m_entries.Count() > 1) {
            m_entries.Remove(path);
            m_entries.AddFirst(path.toUpper(), path);
        }
    } else {
        m_entries.AddFirst(path.toUpper(), path);
    }
    while (m_entries.Count() > qMax<int>(m_max, 0))
        m_entries.RemoveAt(m_entries.Count());
    Q_EMIT FileAdded();
}

void CFileList::Load(const SettingsStore &store, const QString &application, const QString &section,
    const QString &prefix)
{
    // In one call: each reads the whole file.
    QHash<QString, QString> stored;
    const auto pairs = store.GetAllSettings(application, section);
    for (const auto &[key, value] : pairs)
        stored.insert(key, value);
    const auto max = VbConvert::toInt16(stored.value(maxCountKey));
    if (max && *max >= 0)
        m_max = *max;
    for (int i = 1; i <= m_max; ++i) {
        const QString path = stored.value(prefix + QString::number(i));
        if (!path.isEmpty() && !m_entries.contains(path))
            m_entries.Add(path.toUpper(), path);
    }
}

void CFileList::Save(SettingsStore &store, const QString &application, const QString &section,
    const QString &prefix) const
{
    store.SaveSetting(application, section, maxCountKey, QString::number(m_max));
    const int count = qMin<int>(m_entries.Count(), m_max);
    for (int i = 1; i <= count; ++i) {
        store.SaveSetting(application, section, prefix + QString::number(i), m_entries.Item(i));
    }
}
