#include "model/ToolFinder.h"

#include "model/Positions.h"
#include "model/ToolSetDocument.h"

#include <QDeadlineTimer>

namespace {

constexpr std::chrono::milliseconds pieceOfWork {15}; // a frame of the screen
constexpr int decidedAtOnce = 1000; // new tools, with their help

} // namespace

ToolFinder::ToolFinder(const ToolSetDocument &document, int codePage, QObject *parent)
    : QObject(parent)
    , m_document(document)
    , m_plainText(codePage)
{
    connect(&m_timer, &QTimer::timeout, this, &ToolFinder::workOn);
    connect(&document, &ToolSetDocument::reset, this, [this] {
        if (!m_following)
            return;
        const ToolFilter filter = m_filter;
        release();
        prepare();
        setFilter(filter);
    });
    connect(&document, &ToolSetDocument::toolsRemoved, this, [this](const QList<int> &positions) {
        if (!m_following)
            return;
        for (Entry &entry : Positions::take(m_entries, positions)) {
            setVerdict(entry, Verdict::No);
            forgetHelp(entry);
        }
        m_nextUnread = 0;
    });
    connect(&document, &ToolSetDocument::toolsInserted, this, [this](const QList<int> &positions) {
        if (!m_following)
            return;
        std::vector<Entry> entries(static_cast<size_t>(positions.size()));
        Positions::insert(m_entries, positions, std::move(entries));
        for (const int position : positions) {
            Entry &entry = m_entries[static_cast<size_t>(position) - 1];
            if (positions.size() <= decidedAtOnce) {
                decide(entry, position);
            } else {
                entry.texts = ToolTexts(*m_document.toolAt(position));
                setVerdict(entry, m_filter.match(entry.texts));
                m_unread = m_unread || entry.verdict == Verdict::DependsOnHelp;
            }
        }
        startWork();
    });
    connect(&document, &ToolSetDocument::toolsMoved, this,
        [this](const QList<int> &from, const QList<int> &to) {
            if (!m_following)
                return;
            Positions::move(m_entries, from, to);
            m_nextUnread = 0;
        });
    connect(&document, &ToolSetDocument::toolChanged, this, [this](int position) {
        if (!m_following)
            return;
        Entry &entry = m_entries[static_cast<size_t>(position) - 1];
        forgetHelp(entry);
        decide(entry, position);
    });
}

int ToolFinder::total() const
{
    return m_document.count();
}

bool ToolFinder::matches(int position) const
{
    return !m_following || m_entries[static_cast<size_t>(position) - 1].verdict == Verdict::Yes;
}

// --- Searching ---

void ToolFinder::prepare()
{
    if (m_following)
        return;
    m_following = true;
    m_entries.resize(static_cast<size_t>(total()));
    for (size_t i = 0; i < m_entries.size(); ++i) {
        m_entries[i].texts = ToolTexts(*m_document.toolsInOrder()[i]);
        m_entries[i].verdict = Verdict::Yes; // the filter is empty
    }
    m_matchCount = total();
}

void ToolFinder::release()
{
    m_following = false;
    m_filter = {};
    m_entries.clear();
    m_entries.shrink_to_fit();
    m_helpBytes = 0;
    m_matchCount = 0;
    m_unread = false;
    m_timer.stop();
}

void ToolFinder::setFilter(const ToolFilter &filter)
{
    if (!m_following && filter.isEmpty())
        return;
    prepare();
    const bool narrower = filter.narrows(m_filter);
    m_filter = filter;
    m_unread = false;
    for (Entry &entry : m_entries) {
        if (narrower && entry.verdict == Verdict::No)
            continue;
        setVerdict(entry, m_filter.match(entry.texts));
        m_unread = m_unread || entry.verdict == Verdict::DependsOnHelp;
    }
    startWork();
}

void ToolFinder::startWork()
{
    m_nextUnread = 0;
    if (m_unread)
        m_timer.start(0);
    else
        m_timer.stop();
}

void ToolFinder::finish()
{
    if (!m_unread)
        return;
    const bool found = work(std::chrono::milliseconds(-1));
    if (found)
        Q_EMIT matchesChanged();
    Q_EMIT completed();
}

void ToolFinder::workOn()
{
    const bool found = work(pieceOfWork);
    if (found)
        Q_EMIT matchesChanged();
    if (!m_unread)
        Q_EMIT completed();
}

bool ToolFinder::work(std::chrono::milliseconds time)
{
    // Reading the clock costs more than a look at a text that is at hand.
    constexpr size_t looksPerClock = 32;
    const QDeadlineTimer deadline(time.count()); // a negative time is for ever
    const int before = m_matchCount;
    size_t looks = 0;
    for (; m_nextUnread < m_entries.size(); ++m_nextUnread) {
        Entry &entry = m_entries[m_nextUnread];
        if (entry.verdict != Verdict::DependsOnHelp)
            continue;
        if (++looks % looksPerClock == 0 && deadline.hasExpired())
            return m_matchCount != before;
        std::string scratch;
        const auto words = help(entry, static_cast<int>(m_nextUnread) + 1, scratch);
        setVerdict(entry, m_filter.match(entry.texts, words) ? Verdict::Yes : Verdict::No);
    }
    m_unread = false;
    m_timer.stop();
    return m_matchCount != before;
}

std::string_view ToolFinder::help(Entry &entry, int position, std::string &scratch)
{
    if (entry.help)
        return *entry.help;
    const QString &text = m_document.toolAt(position)->HelpString;
    scratch = FoldedText::of(m_plainText.read(text));
    const auto size = static_cast<qint64>(scratch.size());
    if (m_helpBytes + size > m_helpLimit)
        return scratch;
    m_helpBytes += size;
    return entry.help.emplace(std::move(scratch));
}

void ToolFinder::decide(Entry &entry, int position)
{
    entry.texts = ToolTexts(*m_document.toolAt(position));
    Verdict verdict = m_filter.match(entry.texts);
    if (verdict == Verdict::DependsOnHelp) {
        std::string scratch;
        const auto words = help(entry, position, scratch);
        verdict = m_filter.match(entry.texts, words) ? Verdict::Yes : Verdict::No;
    }
    setVerdict(entry, verdict);
}

void ToolFinder::setVerdict(Entry &entry, Verdict verdict)
{
    m_matchCount += (verdict == Verdict::Yes) - (entry.verdict == Verdict::Yes);
    entry.verdict = verdict;
}

void ToolFinder::forgetHelp(Entry &entry)
{
    if (entry.help)
        m_helpBytes -= static_cast<qint64>(entry.help->size());
    entry.help.reset();
}
