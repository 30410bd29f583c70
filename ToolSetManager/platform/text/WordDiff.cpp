#include "platform/text/WordDiff.h"

#include <QStringView>

#include <algorithm>
#include <vector>

namespace {

using Words = std::vector<QStringView>;

Words wordsOf(QStringView text)
{
    enum Kind { Letters, Blanks, Other };
    const auto kindOf = [](QChar c) {
        if (c.isLetterOrNumber() || c.isSurrogate() || c.isMark() || c == u'_')
            return Letters;
        return c.isSpace() && c != u'\n' ? Blanks : Other;
    };
    Words words;
    for (qsizetype i = 0; i < text.size();) {
        const Kind kind = kindOf(text[i]);
        qsizetype end = i + 1;
        while (kind != Other && end < text.size() && kindOf(text[end]) == kind)
            ++end;
        words.push_back(text.sliced(i, end - i));
        i = end;
    }
    return words;
}

struct Changed
{
    std::vector<bool> left;
    std::vector<bool> right;
};

/// For each number of changes how far every diagonal of the grid of both texts was reached before
/// the last of them; diagonal 0 is the middle one.
using Trace = std::vector<std::vector<int>>;

int &on(std::vector<int> &reached, int diagonal)
{
    return reached[reached.size() / 2 + size_t(diagonal)];
}

/// Whether the best path of that many changes comes to the diagonal by a word of the right text.
bool comesDown(std::vector<int> &reached, int changes, int diagonal)
{
    return diagonal == -changes
        || (diagonal != changes && on(reached, diagonal - 1) < on(reached, diagonal + 1));
}

/// Marks the words of a longest common subsequence, walking the shortest path backwards.
void markCommon(Trace &trace, int x, int y, Changed &changed)
{
    for (int changes = int(trace.size()) - 1; changes >= 0; --changes) {
        std::vector<int> &reached = trace[size_t(changes)];
        const int diagonal = x - y;
        const int before = comesDown(reached, changes, diagonal) ? diagonal + 1 : diagonal - 1;
        const int fromX = changes > 0 ? on(reached, before) : 0;
        const int fromY = changes > 0 ? fromX - before : 0;
        while (x > fromX && y > fromY) {
            changed.left[size_t(--x)] = false;
            changed.right[size_t(--y)] = false;
        }
        x = fromX;
        y = fromY;
    }
}

/// The words that are not common, by the shortest path through the grid (Myers 1986). It is looked
/// for up to a length, since the trace grows with the square; beyond it everything is changed.
Changed changedWords(const Words &left, const Words &right)
{
    constexpr int longestPath = 1500;
    const int n = int(left.size());
    const int m = int(right.size());
    Changed changed {std::vector<bool>(left.size(), true), std::vector<bool>(right.size(), true)};
    const int limit = std::min(n + m, longestPath);
    std::vector<int> reached(2 * size_t(limit) + 3, 0);
    Trace trace;
    for (int changes = 0; changes <= limit; ++changes) {
        const auto middle = reached.begin() + ptrdiff_t(reached.size() / 2);
        trace.emplace_back(middle - changes - 1, middle + changes + 2);
        for (int diagonal = -changes; diagonal <= changes; diagonal += 2) {
            int x = comesDown(reached, changes, diagonal) ? on(reached, diagonal + 1)
                                                          : on(reached, diagonal - 1) + 1;
            while (x < n && x - diagonal < m && left[size_t(x)] == right[size_t(x - diagonal)])
                ++x;
            on(reached, diagonal) = x;
            if (x >= n && x - diagonal >= m) {
                markCommon(trace, n, m, changed);
                return changed;
            }
        }
    }
    return changed;
}

QList<WordDiff::Range> ranges(
    const Words &words, const std::vector<bool> &changed, size_t first, qsizetype start)
{
    QList<WordDiff::Range> found;
    for (size_t i = 0; i < changed.size(); ++i) {
        const qsizetype length = words[first + i].size();
        if (changed[i]) {
            if (!found.isEmpty() && found.constLast().start + found.constLast().length == start)
                found.last().length += length;
            else
                found.append({start, length});
        }
        start += length;
    }
    return found;
}

} // namespace

WordDiff::Ranges WordDiff::between(const QString &left, const QString &right)
{
    Words l = wordsOf(left);
    Words r = wordsOf(right);
    size_t head = 0;
    qsizetype start = 0;
    while (head < l.size() && head < r.size() && l[head] == r[head])
        start += l[head++].size();
    size_t tail = 0;
    while (tail < l.size() - head && tail < r.size() - head
        && l[l.size() - 1 - tail] == r[r.size() - 1 - tail])
        ++tail;
    const auto middle = [&](const Words &all) {
        return Words(all.begin() + ptrdiff_t(head), all.end() - ptrdiff_t(tail));
    };
    const Changed changed = changedWords(middle(l), middle(r));
    return {ranges(l, changed.left, head, start), ranges(r, changed.right, head, start)};
}
