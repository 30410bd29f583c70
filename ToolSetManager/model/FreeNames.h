#pragma once

#include <QHash>
#include <QString>

#include <functional>

/// Makes free names "Base(1)", "Base(2)", ... without counting through the taken ones each time:
/// for each base it remembers below which number all are taken.
class FreeNames
{
public:
    /// True when the name is in use.
    using Taken = std::function<bool(const QString &name)>;

    /// The free name for a tool called \a name: the name itself when it is free, else the name with
    /// the lowest free number in parentheses, without a blank between; for an empty name, or one
    /// that would read as a number, always "Tool" with a number. Throws VbError::Overflow when the
    /// number would pass 32,767.
    QString nameFor(const QString &name, const Taken &taken);

    /// To be told when a name is free again, so that gaps are refilled.
    void released(const QString &name);

    void clear() { m_lowest.clear(); }

private:
    /// By base without letter case: all lower numbers, from 1 on, are taken.
    QHash<QString, int> m_lowest;
};
