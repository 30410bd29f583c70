#pragma once

#include <QObject>

/// Answers whether files exist, without ever keeping the caller waiting.
class FileLookup : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    enum class State {
        Found,
        Missing,
        Unknown, ///< It could not be looked up: no permission, or no answer in time.
        Pending ///< answered() follows.
    };
    /// Of an absolute path of this system, without regard to letter case.
    virtual State state(const QString &path) = 0;
    virtual void forget() { } ///< Looks everything up anew from now on.

Q_SIGNALS:
    void answered(); ///< One or more of the pending questions.
};
