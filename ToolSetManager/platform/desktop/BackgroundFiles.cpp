#include "platform/desktop/BackgroundFiles.h"

#include "platform/desktop/DiskFiles.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace {

/// Each may be held by the system for good; then nothing more is looked up.
constexpr int maximumStuckThreads = 4;
constexpr std::chrono::milliseconds usualTimeLimit {3000};

QString folderOf(const QString &path)
{
    return path.left(path.lastIndexOf(u'/') + 1);
}

BackgroundFiles::Probe diskProbe()
{
    return
        [disk = std::make_shared<DiskFiles>()](const QString &path) { return disk->state(path); };
}

} // namespace

/// Between the object and one thread, which may outlive it.
struct BackgroundFiles::Shared
{
    using Clock = std::chrono::steady_clock;

    void run(const MakeProbe &makeProbe)
    {
        const Probe probe = makeProbe();
        std::unique_lock lock(mutex);
        for (;;) {
            wake.wait(lock, [this] { return stopped || !questions.empty(); });
            if (stopped)
                return;
            current = std::move(questions.front());
            questions.pop_front();
            since = Clock::now();
            const QString path = current;
            lock.unlock();
            const State state = probe(path);
            lock.lock();
            current.clear();
            if (stopped)
                return;
            answers.emplace_back(path, state);
            if (owner && std::exchange(asleep, false))
                QMetaObject::invokeMethod(
                    owner, &BackgroundFiles::takeAnswers, Qt::QueuedConnection);
        }
    }

    std::mutex mutex;
    std::condition_variable wake;
    std::deque<QString> questions;
    std::vector<std::pair<QString, State>> answers;
    QString current; ///< Being looked up; empty for none.
    Clock::time_point since;
    bool stopped = false;
    bool asleep = true; ///< The owner is to be told of the next answer.
    BackgroundFiles *owner = nullptr; ///< Valid while not stopped.
};

BackgroundFiles::BackgroundFiles(QObject *parent)
    : BackgroundFiles(diskProbe, usualTimeLimit, parent)
{
}

BackgroundFiles::BackgroundFiles(
    MakeProbe makeProbe, std::chrono::milliseconds timeLimit, QObject *parent)
    : FileLookup(parent)
    , m_makeProbe(std::move(makeProbe))
    , m_timeLimit(timeLimit)
{
    m_timer.setInterval(timeLimit / 4 + std::chrono::milliseconds(1));
    connect(&m_timer, &QTimer::timeout, this, &BackgroundFiles::lookAfterThread);
}

BackgroundFiles::~BackgroundFiles()
{
    forget();
}

FileLookup::State BackgroundFiles::state(const QString &path)
{
    const auto known = m_states.constFind(path);
    if (known != m_states.constEnd())
        return *known;
    if (m_stuckThreads >= maximumStuckThreads)
        return m_states[path] = State::Unknown;
    if (!m_shared)
        startThread();
    m_states.insert(path, State::Pending);
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->questions.push_back(path);
    }
    m_shared->wake.notify_one();
    if (!m_timer.isActive())
        m_timer.start();
    return State::Pending;
}

void BackgroundFiles::forget()
{
    m_states.clear();
    m_timer.stop();
    if (!m_shared)
        return;
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->stopped = true;
    }
    m_shared->wake.notify_one();
    m_shared.reset();
}

void BackgroundFiles::startThread()
{
    m_shared = std::make_shared<Shared>();
    m_shared->owner = this;
    // Detached: a thread that the system holds cannot be joined.
    std::thread([shared = m_shared, makeProbe = m_makeProbe] { shared->run(makeProbe); }).detach();
}

void BackgroundFiles::takeAnswers()
{
    if (!m_shared)
        return;
    std::vector<std::pair<QString, State>> answers;
    {
        const std::lock_guard lock(m_shared->mutex);
        answers.swap(m_shared->answers);
        m_shared->asleep = true;
        if (m_shared->questions.empty() && m_shared->current.isEmpty())
            m_timer.stop();
    }
    for (const auto &[path, state] : answers)
        m_states.insert(path, state);
    if (!answers.empty())
        Q_EMIT answered();
}

void BackgroundFiles::lookAfterThread()
{
    if (!m_shared)
        return;
    std::deque<QString> rest;
    QString stuck;
    {
        const std::lock_guard lock(m_shared->mutex);
        if (m_shared->current.isEmpty() || Shared::Clock::now() - m_shared->since < m_timeLimit)
            return;
        stuck = m_shared->current;
        rest.swap(m_shared->questions);
        m_shared->stopped = true;
    }
    takeAnswers();
    m_shared.reset();
    m_timer.stop();
    ++m_stuckThreads;
    m_states.insert(stuck, State::Unknown);
    const QString folder = folderOf(stuck);
    for (const QString &path : rest) {
        m_states.remove(path);
        if (path.startsWith(folder))
            m_states.insert(path, State::Unknown);
        else
            state(path);
    }
    Q_EMIT answered();
}
