#include "model/ToolCheck.h"

#include "model/BmtFormat.h"
#include "model/Positions.h"
#include "model/ToolInspection.h"
#include "model/ToolSetDocument.h"

#include <QDeadlineTimer>
#include <QMap>

#include <algorithm>

namespace {

using Severity = ToolFinding::Severity;

constexpr int pieceOfWork = 15; // milliseconds, a frame of the screen
constexpr char hotKeyField[] = "hot key"; ///< As in ToolFields.

} // namespace

QString ToolCheck::caption(Severity severity)
{
    switch (severity) {
    case Severity::Note:
        return QStringLiteral("Not checked");
    case Severity::Hint:
        return QStringLiteral("Hint");
    case Severity::Warning:
        return QStringLiteral("Warning");
    case Severity::Error:
        break;
    }
    return QStringLiteral("Error");
}

ToolCheck::ToolCheck(const ToolSetDocument &document, Rules rules, QObject *parent)
    : QObject(parent)
    , m_document(document)
    , m_rules(std::move(rules))
{
    connect(&m_timer, &QTimer::timeout, this, &ToolCheck::workOn);
    if (m_rules.files)
        connect(m_rules.files, &FileLookup::answered, this, &ToolCheck::takeAnswers);
    connect(&document, &ToolSetDocument::reset, this, [this] {
        if (m_following)
            start();
    });
    connect(&document, &ToolSetDocument::toolsRemoved, this, [this](const QList<int> &positions) {
        if (!m_following)
            return;
        for (Entry &entry : Positions::take(m_entries, positions)) {
            uncheck(entry);
            --m_unchecked;
        }
        startWork();
        Q_EMIT changed();
    });
    connect(&document, &ToolSetDocument::toolsInserted, this, [this](const QList<int> &positions) {
        if (!m_following)
            return;
        std::vector<Entry> entries;
        for (const int position : positions)
            entries.push_back(entryFor(m_document.toolAt(position)));
        Positions::insert(m_entries, positions, std::move(entries));
        startWork();
    });
    connect(&document, &ToolSetDocument::toolsMoved, this,
        [this](const QList<int> &from, const QList<int> &to) {
            if (!m_following)
                return;
            Positions::move(m_entries, from, to);
            startWork();
            Q_EMIT changed();
        });
    connect(&document, &ToolSetDocument::toolChanged, this, [this](int position) {
        if (!m_following)
            return;
        check(position);
        Q_EMIT changed();
    });
}

void ToolCheck::start(const Rules &rules)
{
    if (m_rules.files)
        disconnect(m_rules.files, nullptr, this, nullptr);
    m_rules = rules;
    if (m_rules.files)
        connect(m_rules.files, &FileLookup::answered, this, &ToolCheck::takeAnswers);
    start();
}

void ToolCheck::start()
{
    stop();
    m_following = true;
    if (m_rules.files)
        m_rules.files->forget();
    m_entries.reserve(static_cast<size_t>(m_document.count()));
    for (const ToolPtr &tool : m_document.toolsInOrder())
        m_entries.push_back(entryFor(tool));
    startWork();
    Q_EMIT changed();
}

void ToolCheck::stop()
{
    m_following = false;
    m_entries.clear();
    m_hotKeys.clear();
    m_unchecked = 0;
    m_waiting = 0;
    m_timer.stop();
}

ToolCheck::Entry ToolCheck::entryFor(const ToolPtr &tool)
{
    ++m_unchecked;
    Entry entry;
    entry.tool = tool;
    return entry;
}

// --- Checking ---

void ToolCheck::startWork()
{
    m_next = 0;
    if (m_unchecked > 0)
        m_timer.start(0);
}

void ToolCheck::finish()
{
    if (!m_following)
        start();
    if (m_unchecked == 0)
        return;
    work(-1);
    Q_EMIT changed();
    if (isComplete())
        Q_EMIT completed();
}

void ToolCheck::workOn()
{
    work(pieceOfWork);
    Q_EMIT changed();
    if (isComplete())
        Q_EMIT completed();
}

void ToolCheck::work(int milliseconds)
{
    constexpr size_t looksPerClock = 16;
    const QDeadlineTimer deadline(milliseconds); // a negative time is for ever
    for (size_t looks = 1; m_next < m_entries.size(); ++m_next) {
        if (m_entries[m_next].checked)
            continue;
        check(static_cast<int>(m_next) + 1);
        if (looks++ % looksPerClock == 0 && deadline.hasExpired())
            break;
    }
    if (m_unchecked == 0)
        m_timer.stop();
}

void ToolCheck::check(int position)
{
    Entry &entry = m_entries[static_cast<size_t>(position) - 1];
    uncheck(entry);
    const qint16 version = m_document.Tools().FileVersion();
    const auto inspection =
        ToolInspection::of(*entry.tool, m_rules, version == BmtFormat::oldVersion);
    entry.findings = inspection.findings;
    entry.checked = true;
    --m_unchecked;
    entry.waitsFor = inspection.waitsFor;
    m_waiting += !entry.waitsFor.isEmpty();
    entry.hotKey = inspection.hotKey;
    if (!entry.hotKey.isEmpty())
        m_hotKeys[entry.hotKey].append(entry.tool);
}

void ToolCheck::uncheck(Entry &entry)
{
    if (!entry.checked)
        return;
    entry.checked = false;
    ++m_unchecked;
    m_waiting -= !entry.waitsFor.isEmpty();
    entry.waitsFor.clear();
    entry.findings.clear();
    const auto users = m_hotKeys.find(entry.hotKey);
    if (users != m_hotKeys.end()) {
        users->removeOne(entry.tool);
        if (users->isEmpty())
            m_hotKeys.erase(users);
    }
}

void ToolCheck::takeAnswers()
{
    if (m_waiting == 0)
        return;
    for (size_t i = 0; i < m_entries.size(); ++i) {
        const QString &path = m_entries[i].waitsFor;
        if (!path.isEmpty() && m_rules.files->state(path) != FileLookup::State::Pending)
            check(static_cast<int>(i) + 1);
    }
    Q_EMIT changed();
    if (isComplete())
        Q_EMIT completed();
}

// --- Findings ---

ToolCheck::Findings ToolCheck::findings(int position) const
{
    if (position < 1 || static_cast<size_t>(position) > m_entries.size())
        return {}; // a view may ask before the check has heard of a tool
    const Entry &entry = m_entries[static_cast<size_t>(position) - 1];
    const QList<ToolPtr> users = m_hotKeys.value(entry.hotKey);
    if (entry.hotKey.isEmpty() || users.size() < 2)
        return entry.findings;
    const ToolPtr &other = users[users[0] == entry.tool ? 1 : 0];
    const QString others = users.size() == 2
        ? QStringLiteral("\"%1\"").arg(other->Description)
        : QStringLiteral("\"%1\" and %L2 more").arg(other->Description).arg(users.size() - 2);
    Findings all = entry.findings;
    const auto place = std::find_if(all.begin(), all.end(),
        [](const ToolFinding &finding) { return finding.severity <= Severity::Warning; });
    all.insert(place,
        {Severity::Warning, ToolFinding::Problem::HotKeyDoubled, hotKeyField,
            QStringLiteral("The hot key %1 is also that of %2.").arg(entry.hotKey, others),
            QStringLiteral("Give one of them another hot key in the add-in.")});
    return all;
}

std::optional<ToolFinding::Severity> ToolCheck::severity(int position) const
{
    const Findings all = findings(position);
    return all.isEmpty() ? std::nullopt : std::optional(all.constFirst().severity);
}

QList<ToolCheck::Row> ToolCheck::allFindings() const
{
    QList<Row> rows;
    for (int position = 1; position <= static_cast<int>(m_entries.size()); ++position) {
        for (const ToolFinding &finding : findings(position))
            rows.append({m_entries[static_cast<size_t>(position) - 1].tool, position, finding});
    }
    return rows;
}

QString ToolCheck::summary(const QList<Row> &rows)
{
    QMap<Severity, int> counts;
    for (const Row &row : rows)
        ++counts[row.finding.severity];
    const std::pair<Severity, const char *> words[] = {
        {Severity::Error, "error"}, {Severity::Warning, "warning"}, {Severity::Hint, "hint"}};
    QStringList parts;
    for (const auto &[severity, word] : words) {
        if (const int count = counts.value(severity)) {
            parts.append(
                QStringLiteral("%L1 %2%3")
                    .arg(count)
                    .arg(QLatin1StringView(word), count == 1 ? QString() : QStringLiteral("s")));
        }
    }
    if (const int count = counts.value(Severity::Note))
        parts.append(QStringLiteral("%L1 not checked").arg(count));
    return parts.isEmpty() ? QStringLiteral("nothing found") : parts.join(QStringLiteral(", "));
}
