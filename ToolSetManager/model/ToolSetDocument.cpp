#include "model/ToolSetDocument.h"

#include "model/ToolSetDiff.h"
#include "model/ToolSetEdit.h"

#include <algorithm>
#include <numeric>

namespace {

QString describe(
    const QString &action, const ToolSetContents &contents, const QList<int> &positions)
{
    if (positions.size() != 1)
        return QStringLiteral("%1 of %L2 Tools").arg(action).arg(positions.size());
    return QStringLiteral("%1 of \"%2\"")
        .arg(action, contents.toolAt(positions.constFirst())->Description);
}

} // namespace

ToolSetDocument::Step::Step(ToolSetDocument &document, const QString &text)
    : m_document(document)
{
    m_document.beginStep(text);
}

ToolSetDocument::Step::~Step()
{
    m_document.endStep();
}

ToolSetDocument::ToolSetDocument(ToolSetStorage &storage, QObject *parent)
    : QObject(parent)
{
    auto tools = std::make_unique<CVBATools>(storage);
    tools->setFLAGS(1); // the add-in does not list it in its menu
    tools->setAllowDupes(true);
    m_contents.setTools(std::move(tools));
    m_stack.setUndoLimit(keptSteps);
    connect(&m_contents, &ToolSetContents::toolsRemoved, this, &ToolSetDocument::toolsRemoved);
    connect(&m_contents, &ToolSetContents::toolsInserted, this, &ToolSetDocument::toolsInserted);
    connect(&m_contents, &ToolSetContents::toolsMoved, this, &ToolSetDocument::toolsMoved);
    connect(&m_contents, &ToolSetContents::toolChanged, this, &ToolSetDocument::toolChanged);
    connect(&m_contents, &ToolSetContents::propertiesChanged, this,
        &ToolSetDocument::propertiesChanged);
}

ToolSetDocument::~ToolSetDocument() = default;

QStringList ToolSetDocument::keysInOrder() const
{
    QStringList keys;
    keys.reserve(count());
    for (const ToolPtr &tool : m_contents.order())
        keys.append(tool->Description);
    return keys;
}

// --- State ---

void ToolSetDocument::setDirty()
{
    m_dirty = true;
    Q_EMIT stateChanged();
}

bool ToolSetDocument::isUnsaved() const
{
    return m_dirty || !m_stack.isClean() || (m_step && !m_step->isEmpty());
}

void ToolSetDocument::setTools(std::unique_ptr<CVBATools> tools, bool loaded)
{
    m_contents.setTools(std::move(tools));
    m_stack.clear();
    m_dirty = !loaded;
    if (!loaded)
        m_stack.resetClean();
    Q_EMIT reset();
    Q_EMIT stateChanged();
}

void ToolSetDocument::saved()
{
    m_dirty = false;
    m_stack.setClean();
    Q_EMIT stateChanged();
}

void ToolSetDocument::saveFailed()
{
    m_dirty = false;
    m_stack.resetClean();
    Q_EMIT stateChanged();
}

// --- Operations ---

QList<int> ToolSetDocument::append(const QList<ToolPtr> &tools)
{
    const Step step(*this, QStringLiteral("New Tools"));
    auto edit = std::make_unique<AppendEdit>(tools);
    edit->apply(m_contents);
    const QList<int> positions = edit->positions();
    if (!positions.isEmpty())
        keep(std::move(edit));
    if (positions.size() < tools.size())
        Q_EMIT noFreeName(tools.constLast()->Description);
    return positions;
}

void ToolSetDocument::remove(const QList<int> &positions)
{
    if (positions.isEmpty())
        return;
    const Step step(*this, describe(QStringLiteral("Delete"), m_contents, positions));
    auto edit = std::make_unique<RemoveEdit>(positions);
    edit->apply(m_contents);
    keep(std::move(edit));
}

bool ToolSetDocument::movesBelow(const QList<int> &positions, int target)
{
    return !positions.isEmpty() && positions.constFirst() < target
        && !std::binary_search(positions.begin(), positions.end(), target);
}

QList<int> ToolSetDocument::move(const QList<int> &positions, int target)
{
    if (positions.isEmpty())
        return {};
    // The tools that stay and stand before the place decide where it is.
    const int end = movesBelow(positions, target) ? target + 1 : target;
    const auto movedBefore =
        std::lower_bound(positions.begin(), positions.end(), end) - positions.begin();
    QList<int> to(positions.size());
    std::iota(to.begin(), to.end(), end - static_cast<int>(movedBefore));
    if (to == positions)
        return to;
    const Step step(*this, describe(QStringLiteral("Move"), m_contents, positions));
    auto edit = std::make_unique<MoveEdit>(positions, to);
    edit->apply(m_contents);
    keep(std::move(edit));
    return to;
}

void ToolSetDocument::arrange(const std::vector<int> &order)
{
    const std::vector<bool> stays = ToolSetDiff::inPlace(order);
    QList<int> targets; // of the tools that move
    for (size_t i = 0; i < order.size(); ++i) {
        if (!stays[i])
            targets.append(int(i) + 1);
    }
    if (targets.isEmpty())
        return;
    const Step step(*this, QStringLiteral("Move of %L1 Tools").arg(targets.size()));
    const auto reorder = [this](const QList<int> &from, const QList<int> &to) {
        if (from == to)
            return;
        auto edit = std::make_unique<MoveEdit>(from, to);
        edit->apply(m_contents);
        keep(std::move(edit));
    };
    // As they stand now, by the places that they get among themselves.
    std::vector<int> ranks(size_t(targets.size()));
    std::iota(ranks.begin(), ranks.end(), 0);
    const auto present = [&](int rank) { return order[size_t(targets[rank]) - 1]; };
    std::sort(ranks.begin(), ranks.end(), [&](int a, int b) { return present(a) < present(b); });
    QList<int> from;
    for (const int rank : ranks)
        from.append(present(rank));
    if (!std::is_sorted(ranks.begin(), ranks.end())) {
        // An edit keeps the order of what it moves. So they are sorted at the end of the set, bit
        // by bit of their ranks, which takes few edits for any order.
        const int first = count() - int(ranks.size()) + 1;
        QList<int> tail(from.size());
        std::iota(tail.begin(), tail.end(), first);
        reorder(from, tail);
        for (int bit = 1; bit <= int(ranks.size()); bit <<= 1) {
            QList<int> ones;
            for (size_t i = 0; i < ranks.size(); ++i) {
                if (ranks[i] & bit)
                    ones.append(first + int(i));
            }
            QList<int> end(ones.size());
            std::iota(end.begin(), end.end(), count() - int(ones.size()) + 1);
            reorder(ones, end);
            std::stable_partition(
                ranks.begin(), ranks.end(), [bit](int rank) { return (rank & bit) == 0; });
        }
        from = tail;
    }
    reorder(from, targets);
}

bool ToolSetDocument::rename(const ToolPtr &tool, const QString &newName)
{
    return rename(tool, newName, Dirties);
}

bool ToolSetDocument::renameInPlace(const ToolPtr &tool, const QString &newName)
{
    return rename(tool, newName, StaysClean);
}

bool ToolSetDocument::rename(const ToolPtr &tool, const QString &newName, Effect effect)
{
    if (newName == tool->Description)
        return true;
    if (!Tools().canRename(tool, newName)) {
        Q_EMIT noFreeName(newName);
        return false;
    }
    const Step step(*this, QStringLiteral("Rename of \"%1\"").arg(tool->Description));
    auto edit = std::make_unique<RenameEdit>(tool, newName);
    edit->apply(m_contents);
    keep(std::move(edit), effect);
    return true;
}

void ToolSetDocument::change(const ToolPtr &tool, const CVBATool &after)
{
    CVBATool wanted = after;
    wanted.Description = tool->Description;
    if (wanted == *tool)
        return;
    const Step step(*this, QStringLiteral("Change of \"%1\"").arg(tool->Description));
    auto edit = std::make_unique<ChangeEdit>(tool, wanted);
    edit->apply(m_contents);
    keep(std::move(edit));
}

bool ToolSetDocument::apply(const ToolPtr &tool, const CVBATool &after)
{
    const Step step(*this, QStringLiteral("Change of \"%1\"").arg(tool->Description));
    if (!rename(tool, after.Description))
        return false;
    change(tool, after);
    return true;
}

void ToolSetDocument::setProperties(const Properties &after)
{
    const Properties before = properties();
    if (after == before)
        return;
    const Step step(*this, QStringLiteral("Change of Tool Set Properties"));
    auto edit = std::make_unique<PropertiesEdit>(before, after);
    edit->apply(m_contents);
    keep(std::move(edit));
}

// --- Steps ---

QList<int> ToolSetDocument::selected() const
{
    return m_selection ? m_selection() : QList<int>();
}

void ToolSetDocument::beginStep(const QString &text)
{
    if (m_stepDepth++ == 0)
        m_step = std::make_unique<ToolSetStep>(m_contents, text, selected());
}

void ToolSetDocument::keep(std::unique_ptr<ToolSetEdit> edit, Effect effect)
{
    m_step->add(std::move(edit), effect == Dirties);
    if (effect == Dirties)
        m_dirty = true;
}

void ToolSetDocument::endStep()
{
    if (--m_stepDepth > 0)
        return;
    if (m_step->isEmpty()) {
        m_step.reset();
    } else {
        m_step->setSelectedAfter(selected());
        m_stack.push(m_step.release());
        forgetOldest();
        Q_EMIT changed();
    }
    Q_EMIT stateChanged(); // while a step is open nothing can be undone
}

const ToolSetStep *ToolSetDocument::stepAt(int index) const
{
    return static_cast<const ToolSetStep *>(m_stack.command(index));
}

void ToolSetDocument::forgetOldest()
{
    qint64 bytes = 0;
    for (int i = m_stack.index() - 1; i >= 0; --i) {
        // The stack hands its commands out as constant, but each was made here.
        auto *step =
            const_cast<ToolSetStep *>(stepAt(i)); // NOLINT(cppcoreguidelines-pro-type-const-cast)
        bytes += step->bytes();
        if (bytes > keptBytes && i < m_stack.index() - 1)
            step->forget();
    }
}

// --- Undo ---

bool ToolSetDocument::canUndo() const
{
    return !m_step && m_stack.canUndo() && !stepAt(m_stack.index() - 1)->isEmpty();
}

bool ToolSetDocument::canRedo() const
{
    return !m_step && m_stack.canRedo();
}

QString ToolSetDocument::undoText() const
{
    return canUndo() ? m_stack.undoText() : QString();
}

QString ToolSetDocument::redoText() const
{
    return canRedo() ? m_stack.redoText() : QString();
}

void ToolSetDocument::undo()
{
    if (!canUndo())
        return;
    const ToolSetStep *step = stepAt(m_stack.index() - 1);
    m_stack.undo();
    stepped(*step, step->selectedBefore());
}

void ToolSetDocument::redo()
{
    if (!canRedo())
        return;
    const ToolSetStep *step = stepAt(m_stack.index());
    m_stack.redo();
    stepped(*step, step->selectedAfter());
}

void ToolSetDocument::stepped(const ToolSetStep &step, const QList<int> &selected)
{
    m_dirty = m_stack.cleanIndex() < 0 ? m_dirty || step.dirties() : differsFromSaved();
    Q_EMIT selectionRestored(selected);
    Q_EMIT changed();
    Q_EMIT stateChanged();
}

bool ToolSetDocument::differsFromSaved() const
{
    const auto [first, last] = std::minmax({m_stack.cleanIndex(), m_stack.index()});
    for (int i = first; i < last; ++i) {
        if (stepAt(i)->dirties())
            return true;
    }
    return false;
}
