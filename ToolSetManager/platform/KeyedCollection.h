#pragma once

#include "platform/VbError.h"

#include <QHash>
#include <QStringList>

#include <algorithm>
#include <deque>
#include <iterator>
#include <vector>

/// An ordered collection whose items are found by a text key or by a 1-based position.
/// Keys are compared without regard to letter case. Looking a key up, appending and removing at
/// either end cost the same however long the collection is; removing in the middle moves the
/// shorter part.
template <class T>
class KeyedCollection
{
    /// Serials rise along the collection, so that a key leads to its entry by binary search while
    /// insertions and removals leave the other entries' serials alone.
    struct Entry
    {
        qint64 serial;
        QString key;
        T item;
    };

public:
    int Count() const { return static_cast<int>(m_entries.size()); }
    bool contains(const QString &key) const { return m_serials.contains(key.toCaseFolded()); }

    /// Throws VbError::InvalidCall when no item has the key.
    const T &Item(const QString &key) const
    {
        const auto found = m_serials.constFind(key.toCaseFolded());
        if (found == m_serials.constEnd()) {
            throw VbError(VbError::InvalidCall, QStringLiteral("Collection"),
                QStringLiteral("There is no item with the key \"%1\".").arg(key));
        }
        return entryOf(*found)->item;
    }

    /// Throws VbError::SubscriptOutOfRange for a position outside 1..Count.
    const T &Item(int position) const
    {
        if (position < 1 || position > Count()) {
            throw VbError(VbError::SubscriptOutOfRange, QStringLiteral("Collection"),
                QStringLiteral("There is no item at position %1 of %2.")
                    .arg(position)
                    .arg(Count()));
        }
        return m_entries[static_cast<size_t>(position) - 1].item;
    }

    /// Appends; throws VbError::DuplicateKey when the key is taken.
    void Add(const T &item, const QString &key)
    {
        const QString folded = takeKey(key, m_nextSerial);
        m_entries.push_back({m_nextSerial++, folded, item});
    }

    /// Inserts before position 1; throws VbError::DuplicateKey when the key is taken.
    void AddFirst(const T &item, const QString &key)
    {
        const QString folded = takeKey(key, m_firstSerial - 1);
        m_entries.push_front({--m_firstSerial, folded, item});
    }

    /// Removes the item with that key; false when there is none.
    bool Remove(const QString &key)
    {
        const auto found = m_serials.constFind(key.toCaseFolded());
        if (found == m_serials.constEnd())
            return false;
        m_entries.erase(entryOf(*found));
        m_serials.erase(found);
        return true;
    }

    /// The place of an item among the others, which stays its own while the item is out.
    using Place = qint64;
    struct Placed
    {
        Place place;
        T item;
    };

    /// Takes the items with those keys out in one go: taken one at a time out of the middle, many
    /// would each move all that stand behind them. Keys that are not there are ignored.
    std::vector<Placed> TakeOut(const QStringList &keys)
    {
        std::vector<Placed> taken;
        taken.reserve(static_cast<size_t>(keys.size()));
        std::vector<qint64> serials;
        serials.reserve(taken.capacity());
        for (const QString &key : keys) {
            const auto found = m_serials.constFind(key.toCaseFolded());
            if (found == m_serials.constEnd())
                continue;
            serials.push_back(*found);
            taken.push_back({*found, entryOf(*found)->item});
            m_serials.erase(found);
        }
        if (serials.size() == 1) {
            m_entries.erase(entryOf(serials.front()));
        } else if (m_serials.isEmpty()) {
            m_entries.clear();
        } else {
            std::sort(serials.begin(), serials.end());
            auto next = serials.cbegin();
            std::erase_if(m_entries, [&](const Entry &entry) {
                const bool goes = next != serials.cend() && *next == entry.serial;
                next += goes ? 1 : 0;
                return goes;
            });
        }
        return taken;
    }

    /// Throws VbError::InvalidCall when no item has the key.
    Place placeOf(const QString &key) const
    {
        Item(key);
        return m_serials.value(key.toCaseFolded());
    }

    /// Puts items that were taken out back to their places, under the key that \a keyOf gives for
    /// each. Throws VbError::DuplicateKey when one is taken; nothing has changed then.
    template <class KeyOf>
    void PutBack(const std::vector<Placed> &items, KeyOf keyOf)
    {
        std::vector<Entry> added;
        added.reserve(items.size());
        try {
            for (const Placed &placed : items)
                added.push_back(
                    {placed.place, takeKey(keyOf(placed.item), placed.place), placed.item});
        } catch (const VbError &) {
            for (const Entry &entry : added)
                m_serials.remove(entry.key);
            throw;
        }
        const auto earlier = [](const Entry &a, const Entry &b) { return a.serial < b.serial; };
        std::sort(added.begin(), added.end(), earlier);
        constexpr size_t few = 8;
        if (added.size() <= few) {
            for (Entry &entry : added) {
                const auto at =
                    std::lower_bound(m_entries.begin(), m_entries.end(), entry, earlier);
                m_entries.insert(at, std::move(entry));
            }
            return;
        }
        std::deque<Entry> merged;
        std::merge(std::make_move_iterator(m_entries.begin()),
            std::make_move_iterator(m_entries.end()), std::make_move_iterator(added.begin()),
            std::make_move_iterator(added.end()), std::back_inserter(merged), earlier);
        m_entries = std::move(merged);
    }

    /// Removes the item at a 1-based position; false when there is none.
    bool RemoveAt(int position)
    {
        if (position < 1 || position > Count())
            return false;
        const auto entry = m_entries.begin() + (position - 1);
        m_serials.remove(entry->key);
        m_entries.erase(entry);
        return true;
    }

    class const_iterator
    {
    public:
        using Inner = typename std::deque<typename KeyedCollection::Entry>::const_iterator;
        explicit const_iterator(Inner inner)
            : m_inner(inner)
        {
        }
        const T &operator*() const { return m_inner->item; }
        const_iterator &operator++()
        {
            ++m_inner;
            return *this;
        }
        bool operator!=(const const_iterator &other) const { return m_inner != other.m_inner; }

    private:
        Inner m_inner;
    };
    const_iterator begin() const { return const_iterator(m_entries.begin()); }
    const_iterator end() const { return const_iterator(m_entries.end()); }

private:
    QString takeKey(const QString &key, qint64 serial)
    {
        QString folded = key.toCaseFolded();
        if (m_serials.contains(folded)) {
            throw VbError(VbError::DuplicateKey, QStringLiteral("Collection"),
                QStringLiteral("The key \"%1\" is taken already.").arg(key));
        }
        m_serials.insert(folded, serial);
        return folded;
    }

    auto entryOf(qint64 serial) const
    {
        return std::lower_bound(m_entries.begin(), m_entries.end(), serial,
            [](const Entry &entry, qint64 value) { return entry.serial < value; });
    }

    std::deque<Entry> m_entries;
    QHash<QString, qint64> m_serials;
    qint64 m_firstSerial = 0;
    qint64 m_nextSerial = 0;
};
