#include "toolset/SnapshotKeeper.h"

#include "model/ToolSetStorage.h"
#include "platform/desktop/ProgramEnd.h"
#include "platform/desktop/SafeFiles.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSignalBlocker>
#include <QTimer>

namespace {

/// Short enough that typing and scrolling stay smooth between two of them.
constexpr std::chrono::milliseconds pieceTime {4};

/// Who changes a huge set without a pause gets four fifths of the time.
constexpr int restPerCost = 4;

constexpr std::chrono::minutes longestDelay {5};

} // namespace

SnapshotKeeper::SnapshotKeeper(ToolSetStorage &storage, Take take, QObject *parent)
    : QObject(parent)
    , m_storage(storage)
    , m_take(std::move(take))
    , m_delay(new QTimer(this))
    , m_pieces(new QTimer(this))
{
    m_delay->setObjectName(QStringLiteral("tmrSnapshot"));
    m_delay->setSingleShot(true);
    connect(m_delay, &QTimer::timeout, this, &SnapshotKeeper::start);
    m_pieces->setInterval(0);
    connect(m_pieces, &QTimer::timeout, this, &SnapshotKeeper::writeOn);
    m_storage.snapshots.enroll(this, [this] {
        const QSignalBlocker noWindows(this); // the display may be gone
        if (m_written != m_changes)
            writeNow();
    });
}

SnapshotKeeper::~SnapshotKeeper()
{
    m_storage.snapshots.withdraw(this);
}

void SnapshotKeeper::changed()
{
    ++m_changes;
    // Not started anew by each change: who works without a pause is covered as well.
    const auto delay = std::max(m_storage.snapshotDelay, restPerCost * m_cost);
    if (!m_delay->isActive() || m_delay->remainingTime() > delay.count()) {
        m_delay->start(delay);
        ProgramEnd::renew();
    }
}

void SnapshotKeeper::start()
{
    if (m_writer) { // a large set on a slow disk: the next one when this one is complete
        m_delay->start(std::max(m_storage.snapshotDelay, restPerCost * m_cost));
        return;
    }
    // The folder may have been removed under the running program.
    if (m_path.isEmpty() || !QFileInfo(QFileInfo(m_path).path()).isDir())
        m_path = m_storage.snapshots.newPath();
    if (m_path.isEmpty()) {
        fail(QStringLiteral("\"%1\" cannot be written")
                 .arg(QDir::toNativeSeparators(m_storage.snapshots.folder())));
        return;
    }
    QElapsedTimer timer;
    timer.start();
    m_taken = m_changes;
    m_writer = std::make_unique<SnapshotWriter>(m_take(), m_path);
    m_cost = std::chrono::milliseconds(timer.elapsed());
    m_pieces->start();
}

void SnapshotKeeper::writeOn()
{
    QElapsedTimer timer;
    timer.start();
    const auto state = m_writer->writeFor(pieceTime);
    m_cost += std::chrono::milliseconds(timer.elapsed());
    if (state != SnapshotWriter::State::Writing)
        endWriting();
}

bool SnapshotKeeper::endWriting()
{
    m_pieces->stop();
    const auto writer = std::move(m_writer);
    if (!writer || writer->state() == SnapshotWriter::State::Writing)
        return false;
    if (writer->state() == SnapshotWriter::State::Failed) {
        fail(writer->errorString());
        return false;
    }
    m_written = m_taken;
    m_failures = 0;
    return true;
}

void SnapshotKeeper::fail(const QString &reason)
{
    constexpr int doublings = 10; // no matter when the longest delay is reached
    m_delay->start(std::min<std::chrono::milliseconds>(
        m_storage.snapshotDelay * (1 << std::min(m_failures, doublings)), longestDelay));
    ++m_failures;
    Q_EMIT failed(reason);
}

bool SnapshotKeeper::writeNow()
{
    endWriting();
    m_delay->stop();
    start();
    if (m_writer)
        m_writer->finish();
    return endWriting();
}

bool SnapshotKeeper::flush()
{
    return m_written == m_changes && QFileInfo::exists(m_path) && SafeFiles::flushToDisk(m_path)
        && SafeFiles::flushFolders(m_path, 3);
}

void SnapshotKeeper::adopt(const QString &path)
{
    discard();
    const QString own = m_storage.snapshots.newPath();
    m_path = !own.isEmpty() && QFile::rename(path, own) ? own : path;
}

bool SnapshotKeeper::leave()
{
    const bool written = writeNow();
    m_delay->stop();
    const bool flushed = written && flush();
    m_path.clear();
    m_written = m_changes;
    return flushed;
}

void SnapshotKeeper::discard()
{
    endWriting();
    m_delay->stop();
    if (!m_path.isEmpty())
        QFile::remove(m_path);
    m_written = m_changes;
    m_failures = 0;
}
