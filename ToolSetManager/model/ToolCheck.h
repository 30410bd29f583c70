#pragma once

#include "model/CVBATool.h"
#include "platform/desktop/DosDrives.h"
#include "platform/desktop/FileLookup.h"
#include "platform/text/CodePage.h"

#include <QHash>
#include <QObject>
#include <QTimer>

#include <optional>
#include <vector>

class ToolSetDocument;

/// Something about a tool that its user may want to know or to change.
struct ToolFinding
{
    enum class Severity {
        Note, ///< Something that could not be checked.
        Hint, ///< Works, but is probably not meant.
        Warning, ///< Does not work, or is not kept as it is.
        Error ///< The set cannot be saved.
    };
    enum class Problem {
        NotStorable,
        BlanksAtEnds,
        NumericName,
        HelpIsNoRtf,
        NoLocation,
        FileMissing,
        FileNotChecked,
        MacroElsewhere,
        KindAndExtension,
        NoKey,
        HotKeyDoubled,
        ShownNowhere,
        ShownNotEnabled,
        EventsNotReceived,
        NoPicture,
        PlainPicture,
        FlagsLost
    };

    Severity severity = Severity::Hint;
    Problem problem = Problem::NotStorable;
    const char *field = nullptr; ///< By its name in ToolFields.
    QString what; ///< One sentence.
    QString advice; ///< One sentence: what to do about it.

    bool operator==(const ToolFinding &other) const = default;
};

/// Checks the tools of a document, in short pieces from the event loop, and follows the document:
/// a changed tool is checked anew by itself. It changes nothing.
class ToolCheck : public QObject
{
    Q_OBJECT
public:
    using Severity = ToolFinding::Severity;
    using Findings = QList<ToolFinding>;

    /// What a check depends on beside the tools.
    struct Rules
    {
        CodePage codePage;
        QString macroFolder; ///< Where macros without a path lie; empty for nowhere.
        DosDrives drives;
        FileLookup *files = nullptr; ///< Borrowed; null when no file is to be looked up.
    };
    /// How severities are called in lists and reports.
    static QString caption(Severity severity);

    /// The document is borrowed. Nothing is checked before start() or finish().
    ToolCheck(const ToolSetDocument &document, Rules rules, QObject *parent = nullptr);

    /// Checks all tools anew, files included.
    void start();
    /// The same with other rules.
    void start(const Rules &rules);
    void stop(); ///< Forgets all findings and follows the document no longer.
    /// Checks what is left without the event loop. Files may still be pending.
    void finish();
    bool isComplete() const { return left() == 0; }
    int left() const
    {
        return m_unchecked + m_waiting;
    } ///< Tools that are not checked, or whose
      ///< file is being looked up.

    /// Of the tool at that position, the most severe first; empty for one that was not checked yet.
    Findings findings(int position) const;
    /// The greatest severity of these; nothing where there are none.
    std::optional<Severity> severity(int position) const;
    /// A finding with its place. Invalidated by a change of the document.
    struct Row
    {
        ToolPtr tool;
        int position;
        ToolFinding finding;
    };
    QList<Row> allFindings() const; ///< By position.
    /// How many there are of each severity, in words: "1 error, 2 hints".
    static QString summary(const QList<Row> &rows);

Q_SIGNALS:
    void changed(); ///< There are other findings.
    void completed();

private:
    struct Entry
    {
        ToolPtr tool;
        Findings findings; ///< Without those that other tools are part of.
        QString hotKey; ///< In the common form; empty for none that is in use.
        bool checked = false;
        QString waitsFor; ///< The path of its file, while that is being looked up.
    };

    void check(int position);
    void uncheck(Entry &entry);
    /// A new, unchecked entry.
    Entry entryFor(const ToolPtr &tool);
    void work(int milliseconds);
    void workOn();
    void startWork();
    void takeAnswers();

    const ToolSetDocument &m_document;
    Rules m_rules;
    bool m_following = false;
    std::vector<Entry> m_entries; ///< By position.
    QHash<QString, QList<ToolPtr>> m_hotKeys; ///< Enabled tools that use each.
    int m_unchecked = 0;
    int m_waiting = 0;
    size_t m_next = 0; ///< No entry before it is unchecked.
    QTimer m_timer;
};
