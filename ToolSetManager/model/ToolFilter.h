#pragma once

#include "model/CVBATool.h"
#include "model/FoldedText.h"

#include <array>
#include <vector>

/// What a filter looks at in a tool, folded once for many searches. The help text, which is large,
/// is kept apart.
class ToolTexts
{
public:
    enum Field { Name, Location, CommandLine, HotKey, FieldCount };

    ToolTexts() = default;
    explicit ToolTexts(const CVBATool &tool);

    std::string_view all() const { return m_text; } ///< No text reaches across two fields.
    std::string_view field(Field field) const;
    quint32 kindBit() const { return m_kindBit; } ///< Bit of the kind plus 1; 0 for unknown ones.
    quint32 events() const { return m_events; }
    bool isEnabled() const { return m_enabled; }
    bool hasOption(CVBATool::AccessOption option) const { return (m_options & option) != 0; }

private:
    std::string m_text;
    std::array<quint32, FieldCount> m_ends {};
    quint32 m_kindBit = 0;
    quint32 m_events = 0;
    qint16 m_options = 0;
    bool m_enabled = false;
};

/// Chooses tools by what the user typed: words, all of which a tool must have, in any letter case.
/// A word is looked for in everything that prefixes() lists; "name:word" looks in one thing only.
/// Quotes hold words together, as in "two words" and name:"two words". A word with an unknown
/// prefix, "C:\Tools" say, is a plain one.
class ToolFilter
{
public:
    /// What a word is looked for in.
    enum class Scope {
        Anywhere,
        Name,
        Location,
        CommandLine,
        HotKey,
        Help,
        Kind,
        Event,
        Enabled,
        ToolBar,
        List,
        Process
    };

    ToolFilter() = default; ///< Every tool matches.
    explicit ToolFilter(const QString &text);

    bool isEmpty() const { return m_terms.empty(); }

    enum class Verdict { No, Yes, DependsOnHelp };
    /// The verdict as far as it can be had without the help text.
    Verdict match(const ToolTexts &texts) const;
    /// \a help is the folded plain text of the help.
    bool match(const ToolTexts &texts, std::string_view help) const;
    /// For a single tool; \a help is the plain text of its help.
    bool matches(const CVBATool &tool, const QString &help) const;

    /// True when each tool that matches this filter also matches \a former, so that only those
    /// need to be looked at.
    bool narrows(const ToolFilter &former) const;

    /// A part of a text that a word of the filter was found in, in UTF-16 units.
    struct Range
    {
        qsizetype start;
        qsizetype length;
        bool operator==(const Range &other) const = default;
    };
    /// What to highlight in a field's text: ascending, without overlaps. \a scope is the field's.
    QList<Range> ranges(Scope scope, const QString &text) const;

    /// A prefix as the field's hint and the manual explain it.
    struct Prefix
    {
        const char16_t *word; ///< Without the colon.
        Scope scope;
        const char16_t *example;
        const char16_t *explanation;
    };
    static const std::array<Prefix, 11> &prefixes();
    static QString hint(); ///< Some lines of plain text: how to search, and the prefixes.

private:
    struct Term
    {
        Scope scope = Scope::Anywhere;
        QString text; ///< As typed, without quotes; for highlighting.
        FoldedText::Needle needle;
        quint32 kinds = 0; ///< Bits of the kinds whose captions have the word.
        quint32 events = 0; ///< Bits of the events whose names or captions have it.
        bool on = false; ///< Of switches.
    };

    void add(const QString &prefix, const QString &word, const QString &whole);
    static Verdict match(const Term &term, const ToolTexts &texts);

    std::vector<Term> m_terms;
};
