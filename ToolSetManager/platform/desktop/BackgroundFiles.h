#pragma once

#include "platform/desktop/FileLookup.h"

#include <QHash>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>

/// Looks files up on a thread of its own, so that a slow disk or a share that does not answer keeps
/// no window waiting. A question that takes longer than the time limit is given up, with the others
/// in the same folder: their state is Unknown. The thread that is stuck in it is left to itself.
class BackgroundFiles : public FileLookup
{
    Q_OBJECT
public:
    /// Answers one question on the thread. Each thread has one of its own.
    using Probe = std::function<State(const QString &path)>;
    using MakeProbe = std::function<Probe()>;

    /// Looks at the disk (DiskFiles).
    explicit BackgroundFiles(QObject *parent = nullptr);
    BackgroundFiles(
        MakeProbe makeProbe, std::chrono::milliseconds timeLimit, QObject *parent = nullptr);
    ~BackgroundFiles() override; ///< Does not wait for the thread.

    State state(const QString &path) override;
    void forget() override;

private:
    struct Shared;

    void startThread();
    void takeAnswers();
    void lookAfterThread();

    MakeProbe m_makeProbe;
    std::chrono::milliseconds m_timeLimit;
    std::shared_ptr<Shared> m_shared; ///< With the present thread; null without one.
    QHash<QString, State> m_states;
    int m_stuckThreads = 0;
    QTimer m_timer; ///< Runs while there are open questions.
};
