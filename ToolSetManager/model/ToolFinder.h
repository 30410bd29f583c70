#pragma once

#include "model/ToolFilter.h"
#include "platform/rtf/RtfPlainText.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <optional>

class ToolSetDocument;

/// Tells which tools of a document match a filter, and follows the document. It changes nothing.
///
/// Names, locations and the like are searched at once. Help texts, whose words have to be read out
/// of RTF once, follow in short pieces from the event loop; a tool that only its help can decide
/// does not match until then. The words are kept for the next search, as far as the memory that was
/// granted for them reaches.
class ToolFinder : public QObject
{
    Q_OBJECT
public:
    /// The document is borrowed. \a codePage is that of help texts that do not tell theirs.
    ToolFinder(const ToolSetDocument &document, int codePage, QObject *parent = nullptr);

    /// Folds all texts but the help, so that the first search is as fast as the others. From here
    /// on, or from the first filter, until release() it keeps what it reads of the tools.
    void prepare();
    void release(); ///< Empties the filter, too.

    const ToolFilter &filter() const { return m_filter; }
    /// One that is narrower than the last looks at the tools that matched that one only.
    void setFilter(const ToolFilter &filter);

    bool matches(int position) const;
    int matchCount() const { return m_following ? m_matchCount : total(); }
    int total() const;
    bool isComplete() const { return !m_unread; } ///< No help text is left to be searched.
    /// Searches the rest without the event loop.
    void finish();

    static constexpr qint64 keptHelpBytes = 256LL * 1024 * 1024;
    void setKeptHelpBytes(qint64 bytes) { m_helpLimit = bytes; }

Q_SIGNALS:
    /// More tools match than before, by help texts that were read in the meantime. Changes of the
    /// document are followed without it: whoever connects to the document after this object was
    /// made, hears of them when they have been followed.
    void matchesChanged();
    void completed(); ///< The last help text has been searched.

private:
    using Verdict = ToolFilter::Verdict;
    struct Entry
    {
        ToolTexts texts;
        std::optional<std::string> help; ///< Words of the help text, folded; empty when not read.
        Verdict verdict = Verdict::No;
    };

    /// What the tool's help says; \a scratch is for a text that is not kept.
    std::string_view help(Entry &entry, int position, std::string &scratch);
    void decide(Entry &entry, int position); ///< With the help, where that is needed.
    void setVerdict(Entry &entry, Verdict verdict);
    void forgetHelp(Entry &entry);
    /// Decides help texts until the time is over; true when there was a new match.
    bool work(std::chrono::milliseconds time);
    void workOn();
    void startWork();

    const ToolSetDocument &m_document;
    RtfPlainText m_plainText;
    ToolFilter m_filter;
    bool m_following = false; ///< There is an entry for each tool.
    std::vector<Entry> m_entries; ///< By position.
    int m_matchCount = 0;
    bool m_unread = false; ///< Some entry from m_nextUnread on may depend on its help.
    size_t m_nextUnread = 0;
    qint64 m_helpBytes = 0;
    qint64 m_helpLimit = keptHelpBytes;
    QTimer m_timer;
};
