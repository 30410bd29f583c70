#include "toolset/ChangePreview.h"

#include "model/ToolSetDocument.h"
#include "toolset/ToolPictures.h"

ChangePreview::ChangePreview(const ToolSetDocument &document, const CodePage &codePage,
    ToolPictures &pictures, QObject *parent)
    : QObject(parent)
    , m_document(document)
    , m_codePage(codePage)
    , m_pictures(pictures)
{
    connect(&m_timer, &QTimer::timeout, this, &ChangePreview::work);
    connect(&pictures, &ToolPictures::completed, this, [this] {
        if (m_state == State::Pictures)
            begin(State::AllTools, m_positions);
    });
}

void ChangePreview::start(const BulkChange &change, const QList<int> &positions, bool takePictures)
{
    m_change = change;
    m_positions = positions;
    m_change.takePicture = nullptr;
    if (takePictures)
        m_change.takePicture = [this](const CVBATool &tool) { return m_pictures.picture(tool); };
    begin(State::AllTools, positions);
}

void ChangePreview::setLeftOut(const QSet<int> &positions)
{
    m_leftOut = positions;
    if (m_state == State::Complete || m_state == State::ChangingTools)
        beginChanging();
}

void ChangePreview::begin(State state, const QList<int> &positions)
{
    m_state = state;
    m_preview = std::make_unique<BulkChange::Preview>(m_change, m_document, positions, m_codePage);
    m_timer.start(0);
}

void ChangePreview::beginChanging()
{
    QList<int> positions;
    for (const BulkChange::Row &row : m_all) {
        if (row.storable && !m_leftOut.contains(row.position))
            positions.append(row.position);
    }
    begin(State::ChangingTools, positions);
}

void ChangePreview::work()
{
    constexpr int pieceOfWork = 15; // milliseconds, a frame of the screen
    if (!m_preview->work(pieceOfWork)) {
        Q_EMIT progressed();
        return;
    }
    m_timer.stop();
    if (m_state == State::AllTools) {
        finishAll();
    } else {
        m_changing = m_preview->rows();
        m_preview.reset();
        m_state = State::Complete;
        Q_EMIT completed();
    }
}

void ChangePreview::finishAll()
{
    m_all = m_preview->rows();
    m_givenUp = m_preview->givenUp();
    if (m_change.takePicture && m_pictures.left() > 0) {
        m_state = State::Pictures;
        Q_EMIT progressed();
    } else {
        beginChanging();
    }
}

QString ChangePreview::progress() const
{
    switch (m_state) {
    case State::Complete:
        return {};
    case State::Pictures:
        return QStringLiteral("Reading pictures, %L1 files left...").arg(m_pictures.left());
    default:
        return QStringLiteral("Looking at tool %L1 of %L2...")
            .arg(m_preview->done())
            .arg(m_preview->count());
    }
}

QList<BulkChange::Row> ChangePreview::rows() const
{
    QList<BulkChange::Row> rows = m_all;
    qsizetype next = 0;
    for (BulkChange::Row &row : rows) {
        if (next < m_changing.size() && m_changing[next].position == row.position)
            row = m_changing[next++];
    }
    return rows;
}

QList<BulkChange::Row> ChangePreview::changingRows() const
{
    QList<BulkChange::Row> rows = m_changing;
    rows.removeIf([](const BulkChange::Row &row) { return !row.storable; });
    return rows;
}
