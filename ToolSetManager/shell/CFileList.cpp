#include "shell/CFileList.h"

#include "platform/desktop/SettingsStore.h"
#include "platform/desktop/mFileUtil.h"
#include "platform/text/VbConvert.h"

namespace {

const QString maxCountKey = QStringLiteral("Max Count");

/// The path as it is kept, which is its key as well: so the key is the same again when the list
/// comes back from the store.
QString kept(const QString &path)
{
    return mFileUtil::UpperCase(path);
}

} // namespace

void CFileList::Add(const QString &path)
{
    const QString entry = kept(path);
    if (!m_entries.contains(entry)) {
        m_entries.AddFirst(entry, entry);
    } else if (m_entries.Count() > 1) {
        m_entries.Remove(entry);
        m_entries.AddFirst(entry, entry);
    }
    while (m_entries.Count() > qMax<int>(m_max, 0))
        m_entries.RemoveAt(m_entries.Count());
    Q_EMIT FileAdded();
}

void CFileList::Load(const SettingsStore &store, const QString &application, const QString &section,
    const QString &prefix)
{
    QHash<QString, QString> stored;
    const auto pairs = store.GetAllSettings(application, section);
    for (const auto &[key, value] : pairs)
        stored.insert(key, value);
    const auto max = VbConvert::toInt16(stored.value(maxCountKey));
    if (max && *max >= 0)
        m_max = *max;
    for (int i = 1; i <= m_max; ++i) {
        const QString entry = kept(stored.value(prefix + QString::number(i)));
        if (!entry.isEmpty() && !m_entries.contains(entry))
            m_entries.Add(entry, entry);
    }
}

void CFileList::Save(SettingsStore &store, const QString &application, const QString &section,
    const QString &prefix) const
{
    QList<QPair<QString, QString>> pairs {{maxCountKey, QString::number(m_max)}};
    const int count = qMin<int>(m_entries.Count(), m_max);
    for (int i = 1; i <= count; ++i)
        pairs.append({prefix + QString::number(i), m_entries.Item(i)});
    store.SaveSettings(application, section, pairs);
}
