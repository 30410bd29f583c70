#include "model/ToolFilter.h"

#include "model/ToolKinds.h"
#include "model/VbEvents.h"

#include <algorithm>
#include <optional>

namespace {

constexpr char fieldEnd = '\n'; // not in folded text

using Scope = ToolFilter::Scope;

bool isSwitch(Scope scope)
{
    return scope >= Scope::Enabled;
}

/// What a word says of a switch while it is being typed, too; empty for neither.
std::optional<bool> switchValue(const QString &word)
{
    for (const char16_t *on : {u"yes", u"true", u"1", u"on"}) {
        if (QStringView(on).startsWith(word, Qt::CaseInsensitive))
            return true;
    }
    for (const char16_t *off : {u"no", u"false", u"0", u"off"}) {
        if (QStringView(off).startsWith(word, Qt::CaseInsensitive))
            return false;
    }
    return std::nullopt;
}

quint32 kindsWith(const FoldedText::Needle &needle)
{
    quint32 bits = 0;
    for (size_t i = 0; i < ToolKinds::captions.size(); ++i) {
        if (needle.isIn(FoldedText::of(ToolKinds::captions[i])))
            bits |= 1U << i;
    }
    return bits;
}

quint32 eventsWith(const FoldedText::Needle &needle)
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> folded;
        for (const VbEvents::Event &event : VbEvents::events)
            folded.push_back(FoldedText::of(event.name) + fieldEnd + FoldedText::of(event.caption));
        return folded;
    }();
    quint32 bits = 0;
    for (size_t i = 0; i < names.size(); ++i) {
        if (needle.isIn(names[i]))
            bits |= 1U << i;
    }
    return bits;
}

} // namespace

// --- Texts ---

ToolTexts::ToolTexts(const CVBATool &tool)
    : m_kindBit(ToolKinds::isKnown(tool.ToolType) ? 1U << (tool.ToolType - CVBATool::NoKind) : 0)
    , m_events(static_cast<quint32>(tool.VBEvents))
    , m_options(tool.AccessOptions)
    , m_enabled(tool.Enabled)
{
    static thread_local std::string scratch;
    scratch.clear();
    size_t field = 0;
    for (const QString &text : {tool.Description, tool.Location(), tool.CommandLine, tool.Hotkey}) {
        FoldedText::append(scratch, text);
        m_ends[field++] = static_cast<quint32>(scratch.size());
        scratch.push_back(fieldEnd);
    }
    m_text.assign(scratch);
}

std::string_view ToolTexts::field(Field field) const
{
    const size_t start = field == Name ? 0 : m_ends[static_cast<size_t>(field) - 1] + 1;
    return std::string_view(m_text).substr(start, m_ends[field] - start);
}

// --- Parsing ---

ToolFilter::ToolFilter(const QString &text)
{
    // Words of printable characters; within quotes blanks count as well. A quote that is not
    // closed yet reaches to the end.
    QString prefix; // what stands before the first colon outside quotes
    QString word;
    QString whole;
    bool quoted = false;
    bool hasPrefix = false;
    const auto finish = [&] {
        if (!whole.isEmpty())
            add(hasPrefix ? prefix : QString(), word, whole);
        prefix.clear();
        word.clear();
        whole.clear();
        hasPrefix = false;
    };
    bool wasQuoted = false; // a quoted word has no prefix
    for (const QChar c : text) {
        if (c == u'"') {
            quoted = !quoted;
            wasQuoted = true;
            continue;
        }
        if (c.isSpace() && !quoted) {
            finish();
            wasQuoted = false;
            continue;
        }
        whole.append(c);
        if (c == u':' && !quoted && !wasQuoted && !hasPrefix) {
            prefix = std::exchange(word, {});
            hasPrefix = true;
        } else {
            word.append(c);
        }
    }
    finish();
}

void ToolFilter::add(const QString &prefix, const QString &word, const QString &whole)
{
    const auto known = std::find_if(prefixes().begin(), prefixes().end(), [&](const Prefix &entry) {
        return prefix.compare(QStringView(entry.word), Qt::CaseInsensitive) == 0;
    });
    Term term;
    term.text = whole;
    if (!prefix.isEmpty() && known != prefixes().end()) {
        if (word.isEmpty())
            return; // still being typed
        const auto value = isSwitch(known->scope) ? switchValue(word) : std::nullopt;
        if (!isSwitch(known->scope) || value) {
            term.scope = known->scope;
            term.text = word;
            term.on = value.value_or(false);
        }
    }
    term.needle = FoldedText::Needle(term.text);
    if (term.scope == Scope::Anywhere || term.scope == Scope::Kind)
        term.kinds = kindsWith(term.needle);
    if (term.scope == Scope::Anywhere || term.scope == Scope::Event)
        term.events = eventsWith(term.needle);
    m_terms.push_back(std::move(term));
}

// --- Matching ---

ToolFilter::Verdict ToolFilter::match(const Term &term, const ToolTexts &texts)
{
    const auto verdict = [](bool yes) { return yes ? Verdict::Yes : Verdict::No; };
    const auto isIn = [&](ToolTexts::Field field) {
        return verdict(term.needle.isIn(texts.field(field)));
    };
    switch (term.scope) {
    case Scope::Name:
        return isIn(ToolTexts::Name);
    case Scope::Location:
        return isIn(ToolTexts::Location);
    case Scope::CommandLine:
        return isIn(ToolTexts::CommandLine);
    case Scope::HotKey:
        return isIn(ToolTexts::HotKey);
    case Scope::Help:
        return Verdict::DependsOnHelp;
    case Scope::Kind:
        return verdict((term.kinds & texts.kindBit()) != 0);
    case Scope::Event:
        return verdict((term.events & texts.events()) != 0);
    case Scope::Enabled:
        return verdict(texts.isEnabled() == term.on);
    case Scope::ToolBar:
        return verdict(texts.hasOption(CVBATool::InToolBarOption) == term.on);
    case Scope::List:
        return verdict(texts.hasOption(CVBATool::InListOption) == term.on);
    case Scope::Process:
        return verdict(texts.hasOption(CVBATool::OutOfProcessOption) == term.on);
    case Scope::Anywhere:
        break;
    }
    const bool found = (term.kinds & texts.kindBit()) != 0 || (term.events & texts.events()) != 0
        || term.needle.isIn(texts.all());
    return found ? Verdict::Yes : Verdict::DependsOnHelp;
}

ToolFilter::Verdict ToolFilter::match(const ToolTexts &texts) const
{
    Verdict all = Verdict::Yes;
    for (const Term &term : m_terms) {
        const Verdict verdict = match(term, texts);
        if (verdict == Verdict::No)
            return verdict;
        if (verdict == Verdict::DependsOnHelp)
            all = verdict;
    }
    return all;
}

bool ToolFilter::match(const ToolTexts &texts, std::string_view help) const
{
    return std::all_of(m_terms.begin(), m_terms.end(), [&](const Term &term) {
        const Verdict verdict = match(term, texts);
        return verdict == Verdict::DependsOnHelp ? term.needle.isIn(help) : verdict == Verdict::Yes;
    });
}

bool ToolFilter::matches(const CVBATool &tool, const QString &help) const
{
    const ToolTexts texts(tool);
    const Verdict verdict = match(texts);
    return verdict == Verdict::DependsOnHelp ? match(texts, FoldedText::of(help))
                                             : verdict == Verdict::Yes;
}

bool ToolFilter::narrows(const ToolFilter &former) const
{
    // Each of the former words is within one of these, in the same place or in one of many.
    return std::all_of(former.m_terms.begin(), former.m_terms.end(), [this](const Term &old) {
        return std::any_of(m_terms.begin(), m_terms.end(), [&old](const Term &term) {
            if (isSwitch(old.scope))
                return term.scope == old.scope && term.on == old.on;
            const bool covers = old.scope == Scope::Anywhere && !isSwitch(term.scope);
            return (covers || old.scope == term.scope)
                && term.needle.text().contains(old.needle.text());
        });
    });
}

QList<ToolFilter::Range> ToolFilter::ranges(Scope scope, const QString &text) const
{
    QList<Range> found;
    for (const Term &term : m_terms) {
        if (term.scope != Scope::Anywhere && term.scope != scope)
            continue;
        for (qsizetype at = 0; (at = text.indexOf(term.text, at, Qt::CaseInsensitive)) >= 0;
             at += term.text.size()) {
            found.append({at, term.text.size()});
        }
    }
    std::sort(found.begin(), found.end(),
        [](const Range &a, const Range &b) { return a.start < b.start; });
    QList<Range> merged;
    for (const Range &range : std::as_const(found)) {
        if (merged.isEmpty() || range.start > merged.back().start + merged.back().length)
            merged.append(range);
        else
            merged.back().length =
                qMax(merged.back().length, range.start + range.length - merged.back().start);
    }
    return merged;
}

// --- Explanations ---

const std::array<ToolFilter::Prefix, 11> &ToolFilter::prefixes()
{
    static constexpr std::array<Prefix, 11> table {{
        {u"name", Scope::Name, u"name:note", u"in the name"},
        {u"location", Scope::Location, u"location:c:\\tools", u"in the location"},
        {u"command", Scope::CommandLine, u"command:/quiet", u"in the command line"},
        {u"kind", Scope::Kind, u"kind:macro", u"in the caption of the tool type"},
        {u"hotkey", Scope::HotKey, u"hotkey:ctrl", u"in the hot key"},
        {u"event", Scope::Event, u"event:AfterAddFile", u"in the name of a subscribed event"},
        {u"help", Scope::Help, u"help:\"press Refresh\"", u"in the help text"},
        {u"enabled", Scope::Enabled, u"enabled:no", u"enabled, yes or no"},
        {u"toolbar", Scope::ToolBar, u"toolbar:yes", u"shown in the tool bar, yes or no"},
        {u"list", Scope::List, u"list:no", u"shown in the list, yes or no"},
        {u"process", Scope::Process, u"process:yes", u"run out of process, yes or no"},
    }};
    return table;
}

QString ToolFilter::hint()
{
    QString text = QStringLiteral(
        "Shows the tools that have all of these words, in any letter case, anywhere.\n"
        "Quotes hold words together: \"two words\".\nA prefix tells where to look:");
    for (const Prefix &prefix : prefixes()) {
        text += QStringLiteral("\n    %1  (%2)")
                    .arg(QStringView(prefix.example), QStringView(prefix.explanation));
    }
    return text;
}
