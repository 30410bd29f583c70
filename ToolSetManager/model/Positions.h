#pragma once

#include <QList>

#include <utility>
#include <vector>

/// What is kept for each tool of a set, in the order of the positions, in step with the set:
/// positions count from 1, lists of positions are ascending.
namespace Positions {

/// Takes out the elements at those positions and returns them.
template <class T>
std::vector<T> take(std::vector<T> &all, const QList<int> &positions)
{
    std::vector<T> taken;
    if (positions.isEmpty())
        return taken;
    taken.reserve(static_cast<size_t>(positions.size()));
    qsizetype next = 0;
    size_t kept = static_cast<size_t>(positions.constFirst()) - 1;
    for (size_t i = kept; i < all.size(); ++i) {
        if (next < positions.size() && static_cast<size_t>(positions[next]) == i + 1) {
            ++next;
            taken.push_back(std::move(all[i]));
        } else {
            all[kept++] = std::move(all[i]);
        }
    }
    all.resize(kept);
    return taken;
}

/// Inserts elements so that they have those positions then.
template <class T>
void insert(std::vector<T> &all, const QList<int> &positions, std::vector<T> items)
{
    const size_t staying = all.size();
    all.resize(staying + items.size());
    // From the end, so that each element is moved once.
    size_t from = staying;
    size_t inserted = items.size();
    for (size_t to = all.size(); to > 0 && inserted > 0; --to) {
        if (static_cast<size_t>(positions[static_cast<qsizetype>(inserted) - 1]) == to)
            all[to - 1] = std::move(items[--inserted]);
        else
            all[to - 1] = std::move(all[--from]);
    }
}

/// Takes the elements at the positions \a from and inserts them, in their order, at \a to.
template <class T>
void move(std::vector<T> &all, const QList<int> &from, const QList<int> &to)
{
    insert(all, to, take(all, from));
}

// Where each element of so many is afterwards, by its position before; element 0 is not used.

/// 0 for those that are gone.
inline std::vector<int> afterRemoval(size_t count, const QList<int> &positions)
{
    std::vector<int> after(count + 1, 0);
    qsizetype next = 0;
    int position = 0;
    for (size_t before = 1; before <= count; ++before) {
        if (next < positions.size() && static_cast<size_t>(positions[next]) == before)
            ++next;
        else
            after[before] = ++position;
    }
    return after;
}

/// \a positions are those of the inserted ones.
inline std::vector<int> afterInsertion(size_t count, const QList<int> &positions)
{
    std::vector<int> after(count + 1, 0);
    qsizetype next = 0;
    int position = 0;
    for (size_t before = 1; before <= count; ++before) {
        for (++position; next < positions.size() && positions[next] == position; ++next)
            ++position;
        after[before] = position;
    }
    return after;
}

inline std::vector<int> afterMove(size_t count, const QList<int> &from, const QList<int> &to)
{
    std::vector<int> after = afterRemoval(count, from);
    const std::vector<int> stay = afterInsertion(count - static_cast<size_t>(from.size()), to);
    for (int &position : after)
        position = stay[static_cast<size_t>(position)];
    for (qsizetype i = 0; i < from.size(); ++i)
        after[static_cast<size_t>(from[i])] = to[i];
    return after;
}

} // namespace Positions
