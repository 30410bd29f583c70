#pragma once

#include "platform/KeyedCollection.h"

#include <QObject>

class SettingsStore;

/// The recently used files, most recent first, in upper case. A path appears once, whatever its
/// letter case.
class CFileList : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    qint16 Max() const { return m_max; } ///< The greatest number of entries kept.
    void setMax(qint16 max) { m_max = max; }

    qint16 Count() const { return static_cast<qint16>(m_entries.Count()); }
    const KeyedCollection<QString> &Items() const { return m_entries; }

    /// Makes the path the most recent entry and raises FileAdded.
    void Add(const QString &path);

    /// Fills the list from the keys \a prefix + "1", "2", ... of a section. A missing or
    /// unusable "Max Count" leaves `Max` as it is; empty entries are passed over.
    void Load(const SettingsStore &store, const QString &application, const QString &section,
        const QString &prefix);
    /// Writes "Max Count" and the entries. Keys left over from a longer list stay. Throws VbError.
    void Save(SettingsStore &store, const QString &application, const QString &section,
        const QString &prefix) const;

Q_SIGNALS:
    void FileAdded();

private:
    qint16 m_max = 4;
    KeyedCollection<QString> m_entries;
};
