#pragma once

#include <QList>
#include <QString>

/// What differs between two texts, word by word.
namespace WordDiff {

/// Characters of a text.
struct Range
{
    qsizetype start = 0;
    qsizetype length = 0;
    bool operator==(const Range &other) const = default;
};

/// What each text has that the other one does not, in order; ranges do not touch each other. Words,
/// numbers, runs of blanks and single other characters count as wholes. Texts that have little in
/// common are one difference from the first word to the last that differs.
struct Ranges
{
    QList<Range> left;
    QList<Range> right;
};
Ranges between(const QString &left, const QString &right);

} // namespace WordDiff
