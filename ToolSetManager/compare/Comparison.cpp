#include "compare/Comparison.h"

#include "compare/ComparedSet.h"
#include "compare/DifferenceTexts.h"
#include "model/ToolFields.h"
#include "model/ToolSetDocument.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QStringList>
#include <QTimer>

#include <list>

namespace {

using Properties = ToolSetContents::Properties;

bool isSame(const Properties &a, const Properties &b, int field)
{
    switch (field) {
    case DifferenceTexts::Description:
        return a.Description == b.Description;
    case DifferenceTexts::LongDescription:
        return a.LongDescription == b.LongDescription;
    default:
        return a.FLAGS == b.FLAGS;
    }
}

void copyField(const Properties &from, Properties &to, int field)
{
    switch (field) {
    case DifferenceTexts::Description:
        to.Description = from.Description;
        break;
    case DifferenceTexts::LongDescription:
        to.LongDescription = from.LongDescription;
        break;
    default:
        to.FLAGS = from.FLAGS;
    }
}

const CVBATool *toolAt(const ToolSetState &state, int position)
{
    return position > 0 ? state.tools[size_t(position) - 1].get() : nullptr;
}

/// For each position of the state, from index 0, that of the same tool in the base; 0 for none.
std::vector<int> basePositions(const ToolSetState &base, const ToolSetState &state)
{
    std::vector<int> found(state.tools.size(), 0);
    const std::vector<int> matches = ToolSetDiff::match(base, state);
    for (size_t i = 0; i < matches.size(); ++i) {
        if (matches[i] > 0)
            found[size_t(matches[i]) - 1] = int(i) + 1;
    }
    return found;
}

} // namespace

Comparison::Comparison(std::unique_ptr<ComparedSet> left, std::unique_ptr<ComparedSet> right)
    : m_sets {std::move(left), std::move(right)}
    , m_later(new QTimer(this))
{
    m_later->setSingleShot(true);
    connect(m_later, &QTimer::timeout, this, &Comparison::compare);
    for (const auto &set : m_sets)
        follow(*set);
    compare();
}

Comparison::~Comparison() = default;

// --- The sets ---

void Comparison::follow(ComparedSet &set)
{
    connect(&set, &ComparedSet::changed, this, [this] {
        constexpr int shortest = 20;
        constexpr int restPerCost = 2;
        if (!m_later->isActive())
            m_later->start(int(qMax<qint64>(shortest, restPerCost * m_cost)));
    });
    connect(&set, &ComparedSet::titleChanged, this, &Comparison::titlesChanged);
}

void Comparison::setSet(Side side, std::unique_ptr<ComparedSet> set)
{
    m_sets[side] = std::move(set);
    follow(*m_sets[side]);
    compare();
    Q_EMIT titlesChanged();
}

void Comparison::setBase(std::unique_ptr<ComparedSet> base)
{
    m_base = std::move(base);
    if (m_base)
        follow(*m_base);
    compare();
    Q_EMIT titlesChanged();
}

void Comparison::swapSides()
{
    std::swap(m_sets[Left], m_sets[Right]);
    compare();
    Q_EMIT titlesChanged();
}

void Comparison::refresh()
{
    if (m_later->isActive())
        compare();
}

// --- The differences ---

void Comparison::compare()
{
    QElapsedTimer timer;
    timer.start();
    m_later->stop();
    for (ComparedSet *set : {m_sets[Left].get(), m_sets[Right].get(), m_base.get()}) {
        if (set)
            set->refresh();
    }
    const ToolSetDiff diff(m_sets[Left]->state(), m_sets[Right]->state());
    m_summary = diff.summary();
    m_rows.clear();
    m_rows.reserve(diff.rows().size() + 1);
    m_rows.push_back(rowOfSet());
    for (const ToolSetDiff::Row &row : diff.rows())
        m_rows.push_back({row, false, 0, {}, false});
    m_conflicts.clear();
    if (m_base) {
        addBaseTo(m_rows);
        m_conflicts = ToolSetMerge(m_base->state(), m_sets[Left]->state(), m_sets[Right]->state())
                          .conflicts();
    }
    m_cost = timer.elapsed();
    Q_EMIT refreshed();
}

Comparison::Row Comparison::rowOfSet() const
{
    Row row;
    row.ofSet = true;
    row.left = row.right = 1; // both sides have it
    const Properties &left = m_sets[Left]->state().properties;
    const Properties &right = m_sets[Right]->state().properties;
    for (int field = 0; field < DifferenceTexts::setFieldCount; ++field) {
        if (isSame(left, right, field))
            continue;
        row.fields.resize(DifferenceTexts::setFieldCount);
        row.fields.setBit(field);
    }
    return row;
}

void Comparison::addBaseTo(std::vector<Row> &rows) const
{
    const std::vector<int> ofLeft = basePositions(m_base->state(), m_sets[Left]->state());
    const std::vector<int> ofRight = basePositions(m_base->state(), m_sets[Right]->state());
    for (Row &row : rows) {
        if (!row.ofSet) {
            row.base = row.left > 0 ? ofLeft[size_t(row.left) - 1] : 0;
            if (row.base == 0 && row.right > 0)
                row.base = ofRight[size_t(row.right) - 1];
        }
        if (row.base > 0 && (row.onlyLeft() || row.onlyRight())) {
            const CVBATool *rest = tool(row, row.onlyLeft() ? Left : Right);
            row.removalConflict = !(*rest == *baseTool(row));
        }
        for (int field = 0; field < row.fields.size(); ++field) {
            if (row.fields.at(field) && !sameAsBase(row, Left, field)
                && !sameAsBase(row, Right, field)) {
                row.conflicts.resize(row.fields.size());
                row.conflicts.setBit(field);
            }
        }
    }
}

bool Comparison::sameAsBase(const Row &row, Side side, int field) const
{
    if (row.ofSet)
        return isSame(m_base->state().properties, m_sets[side]->state().properties, field);
    const CVBATool *base = baseTool(row);
    return base && ToolFields::isSame(*base, *tool(row, side), field);
}

const CVBATool *Comparison::tool(const Row &row, Side side) const
{
    return row.ofSet ? nullptr : toolAt(m_sets[side]->state(), row.position(side));
}

const CVBATool *Comparison::baseTool(const Row &row) const
{
    return m_base && !row.ofSet ? toolAt(m_base->state(), row.base) : nullptr;
}

QString Comparison::name(const Row &row) const
{
    if (row.ofSet)
        return QStringLiteral("Tool set properties");
    return tool(row, row.right > 0 ? Right : Left)->Description;
}

QString Comparison::changedFields(const Row &row) const
{
    QStringList names;
    for (int field = 0; field < row.fields.size(); ++field) {
        if (!row.fields.at(field))
            continue;
        QString name = row.ofSet ? DifferenceTexts::setFieldCaption(field).toLower()
                                 : ToolFields::nameOf(field);
        if (!row.conflicts.isEmpty() && row.conflicts.at(field))
            name += QStringLiteral(" (both sides: conflict)");
        else if (m_base)
            name += sameAsBase(row, Left, field) ? QStringLiteral(" (right)")
                                                 : QStringLiteral(" (left)");
        names.append(name);
    }
    return names.join(QStringLiteral(", "));
}

QString Comparison::difference(const Row &row) const
{
    if (row.onlyLeft() || row.onlyRight()) {
        const bool left = row.onlyLeft();
        QString text = left ? QStringLiteral("Only left") : QStringLiteral("Only right");
        if (row.removalConflict)
            text += left ? QStringLiteral(" (removed right, changed left: conflict)")
                         : QStringLiteral(" (removed left, changed right: conflict)");
        else if (row.base > 0)
            text += left ? QStringLiteral(" (removed right)") : QStringLiteral(" (removed left)");
        else if (m_base)
            text += QStringLiteral(" (new)");
        return text;
    }
    QStringList parts;
    if (!row.fields.isEmpty())
        parts.append(QStringLiteral("Changed: ") + changedFields(row));
    if (row.moved)
        parts.append(QStringLiteral("Moved: %1 left, %2 right").arg(row.left).arg(row.right));
    return parts.isEmpty() ? QStringLiteral("Same") : parts.join(QStringLiteral("; "));
}

QString Comparison::summary() const
{
    QStringList parts;
    const auto add = [&parts](int count, const QString &what) {
        if (count > 0)
            parts.append(QStringLiteral("%L1 %2").arg(count).arg(what));
    };
    add(m_summary.changed, QStringLiteral("changed"));
    add(m_summary.removed, QStringLiteral("only left"));
    add(m_summary.added, QStringLiteral("only right"));
    add(m_summary.moved, QStringLiteral("moved"));
    if (m_summary.properties)
        parts.append(QStringLiteral("other set properties"));
    const auto conflicts = int(m_conflicts.size());
    add(conflicts, conflicts == 1 ? QStringLiteral("conflict") : QStringLiteral("conflicts"));
    return parts.isEmpty() ? QStringLiteral("No differences") : parts.join(QStringLiteral(", "));
}

int Comparison::rowOf(const ToolSetMerge::Conflict &conflict) const
{
    const QString wanted = conflict.tool.toCaseFolded();
    int found = -1;
    for (size_t i = 0; i < m_rows.size(); ++i) {
        const Row &row = m_rows[i];
        if (row.ofSet) {
            if (conflict.tool.isEmpty())
                return int(i);
            continue;
        }
        for (const Side side : {Left, Right}) {
            const CVBATool *each = tool(row, side);
            if (each && each->Description.toCaseFolded() == wanted && (found < 0 || side == Left))
                found = int(i);
        }
    }
    return found;
}

// --- Changes ---

ToolSetUpdate::Target Comparison::withRows(const std::vector<size_t> &rows, Side to) const
{
    const Side from = other(to);
    const ToolSetState &source = m_sets[from]->originals();
    ToolSetUpdate::Target target = ToolSetUpdate::unchanged(*m_sets[to]->document());

    std::vector<bool> chosen(m_rows.size(), false);
    for (const size_t row : rows)
        chosen[row] = true;
    using Entries = std::list<ToolSetUpdate::Target::Entry>;
    Entries entries(target.tools.begin(), target.tools.end());
    std::vector<Entries::iterator> ofPosition; // of the side that changes
    for (auto it = entries.begin(); it != entries.end(); ++it)
        ofPosition.push_back(it);
    std::vector<size_t> rowOfSource(source.tools.size(), 0);
    for (size_t i = 0; i < m_rows.size(); ++i) {
        const Row &row = m_rows[i];
        if (row.ofSet) {
            if (chosen[i])
                target.properties = source.properties;
        } else if (row.position(from) > 0) {
            rowOfSource[size_t(row.position(from)) - 1] = i;
        } else if (chosen[i]) {
            entries.erase(ofPosition[size_t(row.position(to)) - 1]);
        }
    }
    // Each tool goes behind the one that it follows on its own side.
    auto last = entries.end();
    for (size_t position = 0; position < source.tools.size(); ++position) {
        const size_t index = rowOfSource[position];
        const Row &row = m_rows[index];
        const bool there = row.position(to) > 0;
        auto entry = there ? ofPosition[size_t(row.position(to)) - 1] : entries.end();
        if (chosen[index] && (!there || row.moved)) {
            const auto place = last == entries.end() ? entries.begin() : std::next(last);
            if (there)
                entries.splice(place, entries, entry);
            else
                entry = entries.insert(place, {0, nullptr});
        }
        if (chosen[index] && (!there || !row.fields.isEmpty()))
            entry->tool = source.tools[position];
        if (there ? !row.moved || chosen[index] : chosen[index])
            last = entry;
    }
    target.tools.assign(entries.begin(), entries.end());
    return target;
}

void Comparison::copy(const std::vector<size_t> &rows, Side to)
{
    const QString step = rows.size() == 1
        ? QStringLiteral("Copy of \"%1\"").arg(name(m_rows[rows.front()]))
        : QStringLiteral("Copy of %L1 Tools").arg(rows.size());
    ToolSetUpdate::apply(*m_sets[to]->document(), withRows(rows, to), step);
    refresh();
}

void Comparison::copyFields(size_t index, const QList<int> &fields, Side to)
{
    const Row row = m_rows[index];
    const Side from = other(to);
    ToolSetDocument &document = *m_sets[to]->document();
    ToolSetUpdate::Target target = ToolSetUpdate::unchanged(document);
    QStringList names;
    if (row.ofSet) {
        for (const int field : fields) {
            copyField(m_sets[from]->originals().properties, target.properties, field);
            names.append(DifferenceTexts::setFieldCaption(field));
        }
    } else {
        ToolSetUpdate::Target::Entry &entry = target.tools[size_t(row.position(to)) - 1];
        const CVBATool &source = *toolAt(m_sets[from]->originals(), row.position(from));
        entry.tool = std::make_shared<CVBATool>(*entry.tool);
        for (const int field : fields) {
            ToolFields::copy(source, *entry.tool, field);
            names.append(DifferenceTexts::fieldCaption(field));
        }
    }
    ToolSetUpdate::apply(document, target,
        QStringLiteral("Copy of %1 of \"%2\"").arg(names.join(QStringLiteral(", ")), name(row)));
    refresh();
}

void Comparison::copyAll(Side to)
{
    ToolSetDocument &document = *m_sets[to]->document();
    ToolSetUpdate::apply(document,
        ToolSetUpdate::replacement(document, m_sets[other(to)]->originals()),
        QStringLiteral("Copy of All from \"%1\"")
            .arg(QFileInfo(m_sets[other(to)]->title()).fileName()));
    refresh();
}

void Comparison::mergeInto(Side to)
{
    const ToolSetState &ours = m_sets[to]->state();
    const ToolSetState &originals = m_sets[to]->originals();
    const ToolSetState result =
        ToolSetMerge(m_base->state(), ours, m_sets[other(to)]->state()).result();
    ToolSetUpdate::Target target {result.properties, {}};
    const std::vector<int> positions = ToolSetDiff::match(result, ours);
    for (size_t i = 0; i < positions.size(); ++i) {
        ToolPtr merged = result.tools[i];
        if (positions[i] > 0) {
            // Only what the merge has changed: the set's own tools may not be in their stored form.
            const size_t at = size_t(positions[i]) - 1;
            const QBitArray differing = ToolFields::differing(*ours.tools[at], *merged);
            const auto kept = std::make_shared<CVBATool>(*originals.tools[at]);
            for (int field = 0; field < differing.size(); ++field) {
                if (differing.at(field))
                    ToolFields::copy(*merged, *kept, field);
            }
            merged = kept;
        }
        target.tools.push_back({positions[i], merged});
    }
    ToolSetUpdate::apply(*m_sets[to]->document(), target,
        QStringLiteral("Merge of \"%1\"").arg(QFileInfo(m_sets[other(to)]->title()).fileName()));
    refresh();
}
