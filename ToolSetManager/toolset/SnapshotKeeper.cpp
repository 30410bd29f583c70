#include "toolset/SnapshotKeeper.h"

#include "model/ToolSetStorage.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTimer>

namespace {

/// Short enough that typing and scrolling stay smooth between two of them.
constexpr std::chrono::milliseconds pieceTime {4};

/// Who changes a huge set without a pause gets four fifths of the time.
constexpr int restPerCost = 4;

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
}

void SnapshotKeeper::changed()
{
    // Not started anew by each change: who works without a pause is covered as well.
    if (!m_delay->isActive())
        m_delay->start(std::max(m_storage.snapshotDelay, restPerCost * m_cost));
}

void SnapshotKeeper::start()
{
    if (m_writer) { // a large set on a slow disk: the next one when this one is complete
        changed();
        return;
    }
    // The folder may have been removed under the running program.
    if (m_path.isEmpty() || !QFileInfo(QFileInfo(m_path).path()).isDir())
        m_path = m_storage.snapshots.newPath();
    if (m_path.isEmpty())
        return;
    QElapsedTimer timer;
    timer.start();
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

void SnapshotKeeper::endWriting()
{
    m_pieces->stop();
    m_writer.reset();
}

void SnapshotKeeper::writeNow()
{
    endWriting();
    m_delay->stop();
    start();
    if (m_writer)
        m_writer->finish();
    endWriting();
}

void SnapshotKeeper::adopt(const QString &path)
{
    discard();
    const QString own = m_storage.snapshots.newPath();
    m_path = !own.isEmpty() && QFile::rename(path, own) ? own : path;
}

void SnapshotKeeper::discard()
{
    endWriting();
    m_delay->stop();
    if (!m_path.isEmpty())
        QFile::remove(m_path);
}
