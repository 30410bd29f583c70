#include "model/ToolSetDiff.h"

#include "model/ToolFields.h"

#include <QHash>

#include <algorithm>
#include <functional>

namespace {

/// What a tool is recognised by when its name is another one; an empty key stands for nothing that
/// could be recognised.
using KeyOf = std::function<QByteArray(const CVBATool &tool)>;

QByteArray hashed(std::initializer_list<size_t> hashes)
{
    QByteArray key;
    for (const size_t hash : hashes)
        key.append(reinterpret_cast<const char *>(&hash), sizeof(hash));
    return key;
}

size_t hashOf(const QImage &picture)
{
    return picture.isNull() ? 0 : qHashBits(picture.constBits(), size_t(picture.sizeInBytes()));
}

size_t hashOfAll(const CVBATool &tool)
{
    size_t seed = hashOf(tool.Picture);
    ToolFields::forEach([&](const auto &field) {
        using Field = std::decay_t<decltype(field)>;
        if constexpr (std::is_same_v<Field, ToolFields::Text>) {
            if (field.field != &CVBATool::Description)
                seed = qHash(tool.*(field.field), seed);
        } else if constexpr (std::is_same_v<Field, ToolFields::Number>) {
            seed = qHash(tool.*(field.field), seed);
        }
    });
    return qHash(tool.VBEvents, seed);
}

/// From the surest to the weakest.
const std::vector<KeyOf> &renamedKeys()
{
    static const std::vector<KeyOf> keys {
        [](const CVBATool &tool) {
            const bool blank = tool.Location().isEmpty() && tool.HelpString.isEmpty()
                && tool.CommandLine.isEmpty();
            return blank ? QByteArray() : hashed({hashOfAll(tool)});
        },
        [](const CVBATool &tool) {
            return tool.FileName.isEmpty() || tool.HelpString.isEmpty()
                ? QByteArray()
                : hashed({qHash(tool.FileName.toCaseFolded()), qHash(tool.HelpString)});
        },
        [](const CVBATool &tool) {
            return tool.FileName.isEmpty()
                ? QByteArray()
                : hashed({qHash(tool.FileName.toCaseFolded()), qHash(tool.CommandLine)});
        },
        [](const CVBATool &tool) {
            return tool.HelpString.isEmpty()
                ? QByteArray()
                : hashed({qHash(tool.HelpString), hashOf(tool.Picture)});
        },
    };
    return keys;
}

/// Matches tools that are unmatched so far and have a key that no other unmatched one of their side
/// has.
void matchByKey(const ToolSetState &left, const ToolSetState &right, const KeyOf &keyOf,
    std::vector<int> &matches, std::vector<bool> &taken)
{
    constexpr int ambiguous = -1;
    const auto collect = [&keyOf](const std::vector<ToolPtr> &tools, const auto &isFree) {
        QHash<QByteArray, int> positions;
        for (size_t i = 0; i < tools.size(); ++i) {
            if (!isFree(i))
                continue;
            const QByteArray key = keyOf(*tools[i]);
            if (!key.isEmpty())
                positions.insert(key, positions.contains(key) ? ambiguous : int(i) + 1);
        }
        return positions;
    };
    const auto lefts = collect(left.tools, [&](size_t i) { return matches[i] == 0; });
    if (lefts.isEmpty())
        return;
    const auto rights = collect(right.tools, [&](size_t i) { return !taken[i]; });
    for (auto it = lefts.begin(); it != lefts.end(); ++it) {
        const int other = rights.value(it.key(), ambiguous);
        if (*it == ambiguous || other == ambiguous)
            continue;
        matches[size_t(*it) - 1] = other;
        taken[size_t(other) - 1] = true;
    }
}

} // namespace

std::vector<int> ToolSetDiff::match(const ToolSetState &left, const ToolSetState &right)
{
    QHash<QString, int> byName;
    byName.reserve(qsizetype(right.tools.size()));
    for (size_t i = 0; i < right.tools.size(); ++i)
        byName.insert(right.tools[i]->Description.toCaseFolded(), int(i) + 1);
    std::vector<int> matches(left.tools.size(), 0);
    std::vector<bool> taken(right.tools.size(), false);
    for (size_t i = 0; i < left.tools.size(); ++i) {
        const int position = byName.value(left.tools[i]->Description.toCaseFolded());
        matches[i] = position;
        if (position > 0)
            taken[size_t(position) - 1] = true;
    }
    for (const KeyOf &keyOf : renamedKeys())
        matchByKey(left, right, keyOf, matches, taken);
    return matches;
}

std::vector<bool> ToolSetDiff::inPlace(const std::vector<int> &positions)
{
    // For each length the index at which the subsequence with the lowest end ends.
    std::vector<size_t> ends;
    constexpr size_t none = size_t(-1);
    std::vector<size_t> before(positions.size(), none);
    for (size_t i = 0; i < positions.size(); ++i) {
        if (positions[i] == 0)
            continue;
        const auto at = std::lower_bound(ends.begin(), ends.end(), positions[i],
            [&](size_t end, int position) { return positions[end] < position; });
        if (at != ends.begin())
            before[i] = *(at - 1);
        if (at == ends.end())
            ends.push_back(i);
        else
            *at = i;
    }
    std::vector<bool> kept(positions.size(), false);
    for (size_t i = ends.empty() ? none : ends.back(); i != none; i = before[i])
        kept[i] = true;
    return kept;
}

ToolSetDiff::ToolSetDiff(const ToolSetState &left, const ToolSetState &right)
    : m_propertiesDiffer(!(left.properties == right.properties))
{
    const std::vector<int> matches = match(left, right);
    const std::vector<bool> stays = inPlace(matches);
    std::vector<int> leftOf(right.tools.size(), 0);
    for (size_t i = 0; i < matches.size(); ++i) {
        if (matches[i] > 0)
            leftOf[size_t(matches[i]) - 1] = int(i) + 1;
    }
    m_rows.reserve(left.tools.size() + right.tools.size());
    size_t nextLeft = 0;
    const auto addOnlyLeft = [&](size_t end) {
        for (; nextLeft < end; ++nextLeft) {
            if (matches[nextLeft] == 0)
                m_rows.push_back({int(nextLeft) + 1, 0, false, {}});
        }
    };
    for (size_t i = 0; i < right.tools.size(); ++i) {
        Row row {leftOf[i], int(i) + 1, false, {}};
        if (row.left > 0) {
            const size_t at = size_t(row.left) - 1;
            row.moved = !stays[at];
            row.fields = ToolFields::differing(*left.tools[at], *right.tools[i]);
            if (!row.moved)
                addOnlyLeft(at);
        }
        m_rows.push_back(row);
    }
    addOnlyLeft(left.tools.size());
}

ToolSetDiff::Summary ToolSetDiff::summary() const
{
    Summary summary;
    summary.properties = m_propertiesDiffer;
    for (const Row &row : m_rows) {
        if (row.onlyRight())
            ++summary.added;
        else if (row.onlyLeft())
            ++summary.removed;
        else if (!row.fields.isEmpty())
            ++summary.changed;
        if (row.moved)
            ++summary.moved;
    }
    return summary;
}
