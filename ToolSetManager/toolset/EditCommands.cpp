#include "toolset/EditCommands.h"

#include "model/ToolSetDocument.h"
#include "platform/desktop/Hourglass.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/MsgBox.h"
#include "shell/DocumentWindow.h"
#include "shell/Frame.h"
#include "shell/mTSM.h"
#include "toolset/ClipboardSource.h"
#include "toolset/ToolListModel.h"
#include "toolset/defaultPicture.xpm"

#include <QSet>

namespace {

QString describe(const QString &action, qsizetype tools)
{
    return tools == 1 ? action + QStringLiteral(" of a Tool")
                      : QStringLiteral("%1 of %L2 Tools").arg(action).arg(tools);
}

} // namespace

EditCommands::EditCommands(DocumentWindow &window, QWidget *form, Frame &frame, mTSM &state,
    ToolSetStorage &storage, ToolSetDocument &document, ListView &list, ToolListModel &model)
    : QObject(form)
    , m_window(window)
    , m_form(form)
    , m_frame(frame)
    , m_state(state)
    , m_storage(storage)
    , m_document(document)
    , m_list(list)
    , m_model(model)
{
    connect(&document, &ToolSetDocument::noFreeName, this, [this](const QString &name) {
        m_frame.showWarning(QStringLiteral("There are too many tools called \"%1\": no number is "
                                           "free for one more.")
                                .arg(name));
    });
    document.setSelection([this] { return selectedPositions(); });
    connect(&document, &ToolSetDocument::selectionRestored, this, &EditCommands::selectPositions);
}

QList<int> EditCommands::selectedPositions() const
{
    return m_model.positionsOf(m_list.selectedRows());
}

void EditCommands::selectPositions(const QList<int> &positions)
{
    m_model.reveal(positions);
    m_list.selectRows(m_model.rowsOf(positions));
}

void EditCommands::newTool()
{
    auto tool = std::make_shared<CVBATool>();
    tool->Picture = QImage(defaultPicture);
    if (append({tool}, QStringLiteral("New Tool")))
        Q_EMIT toolAdded();
}

void EditCommands::addTools(const QList<ToolPtr> &tools)
{
    const Hourglass hourglass;
    m_list.finishLabelEdit();
    sortByPosition();
    for (const ToolPtr &tool : tools) {
        if (tool->Picture.isNull())
            tool->Picture = QImage(defaultPicture);
    }
    append(tools, tools.size() == 1 ? QStringLiteral("New Tool") : QStringLiteral("New Tools"));
}

bool EditCommands::append(const QList<ToolPtr> &tools, const QString &step)
{
    const ToolSetDocument::Step whole(m_document, step);
    const QList<int> positions = m_document.append(tools);
    if (positions.isEmpty()) // no name was free
        return false;
    selectPositions(positions);
    return true;
}

void EditCommands::sortByPosition()
{
    m_model.sort(ToolListModel::PositionColumn, Qt::AscendingOrder);
    m_list.setSortIndicator(ToolListModel::PositionColumn, Qt::AscendingOrder);
}

// --- The tool clipboard ---

void EditCommands::fillClipboard(bool ghosted)
{
    const Hourglass hourglass;
    const QList<int> rows = m_list.selectedRows();
    auto tools = std::make_unique<CVBATools>(m_storage);
    // Without a new name for any of them: the clipboard holds the source's own tools, whose names
    // are unique already.
    for (const int row : rows)
        tools->Add(m_model.toolAt(row));
    // What is ghosted is what the end of a cut takes away: nothing but the clipboard's tools.
    m_model.clearGhosted();
    m_model.setGhosted(rows, ghosted);
    tools->setAllowDupes(true);
    m_state.ToolClipboard = std::move(tools);
    m_state.SourceCaption = m_window.Caption();
}

void EditCommands::copy()
{
    // A pending cut is given up with the clipboard that held it.
    if (m_state.ClipboardMode == mTSM::CutPending)
        ClearDragTools();
    fillClipboard(false);
    m_state.ClipboardMode = mTSM::CopyPending;
    Q_EMIT clipboardFilled();
}

void EditCommands::cut()
{
    if (m_state.ToolClipboard)
        ClearDragTools();
    fillClipboard(true);
    m_state.ClipboardMode = mTSM::CutPending;
    Q_EMIT clipboardFilled();
}

bool EditCommands::isSource() const
{
    return m_window.Caption() == m_state.SourceCaption;
}

QList<ClipboardSource *> EditCommands::sources() const
{
    QList<ClipboardSource *> found;
    const auto documents = m_frame.openDocuments();
    for (DocumentWindow *document : documents) {
        if (document->Caption() != m_state.SourceCaption)
            continue;
        if (auto *source = dynamic_cast<ClipboardSource *>(document))
            found.append(source);
    }
    return found;
}

void EditCommands::ClearDragTools()
{
    const auto found = sources();
    if (found.isEmpty()) // Kept: what a closed window has left on the clipboard stays there.
        return;
    for (ClipboardSource *source : found)
        source->unghostTools();
    m_state.ToolClipboard.reset();
    m_state.SourceCaption.clear();
    // With the clipboard goes the mode: a later drop must not complete an abandoned cut.
    m_state.ClipboardMode = mTSM::NothingPending;
    Q_EMIT m_state.toolClipboardEmptied();
}

int EditCommands::PasteEffect() const
{
    switch (m_state.ClipboardMode) {
    case mTSM::CopyPending:
        return CopyEffect;
    case mTSM::CutPending:
        return MoveEffect;
    default:
        return NoEffect;
    }
}

void EditCommands::paste(int effect)
{
    if (!m_state.ToolClipboard || m_state.ToolClipboard->Count() == 0)
        return;
    const Hourglass hourglass;
    sortByPosition();
    if (!isSource()) {
        m_list.setDropHighlight(-1);
        // Tools for which no name was free would be nowhere.
        bool all = false;
        {
            const ToolSetDocument::Step step(
                m_document, describe(QStringLiteral("Paste"), m_state.ToolClipboard->Count()));
            const QList<int> pasted = PasteTools();
            selectPositions(pasted);
            all = pasted.size() == m_state.ToolClipboard->Count();
        }
        if (m_state.ClipboardMode == mTSM::CutPending) {
            if (all)
                CompleteCut();
            else
                ClearDragTools();
            m_state.ClipboardMode = mTSM::NothingPending;
        }
    } else if (effect != MoveEffect) {
        const ToolSetDocument::Step step(
            m_document, describe(QStringLiteral("Paste"), m_state.ToolClipboard->Count()));
        m_model.reveal(PasteTools());
    } else {
        const int target = m_list.SelectedItem();
        if (target < 0)
            return;
        MoveTools(m_model.positionAt(target));
        ClearDragTools();
    }
    m_document.setDirty();
}

void EditCommands::drop(int effect, int row)
{
    // Around all of it, so that an undo brings back what was selected before the drop.
    const ToolSetDocument::Step step(m_document,
        describe(isSource() ? QStringLiteral("Move") : QStringLiteral("Drop"),
            m_state.ToolClipboard->Count()));
    m_list.UnselectAll();
    if (row >= 0)
        m_list.setSelectedItem(row);
    if (effect != NoEffect)
        paste(effect);
}

QList<int> EditCommands::PasteTools()
{
    QList<ToolPtr> copies;
    copies.reserve(m_state.ToolClipboard->Count());
    for (const ToolPtr &tool : *m_state.ToolClipboard)
        copies.append(std::make_shared<CVBATool>(*tool));
    return m_document.append(copies);
}

void EditCommands::MoveTools(int target)
{
    // By the names that they have now, which need not be those that they were cut under.
    QSet<QString> names;
    for (const ToolPtr &tool : *m_state.ToolClipboard)
        names.insert(tool->Description);
    QList<int> positions;
    for (int position = 1; position <= m_document.count(); ++position) {
        if (names.contains(m_document.toolAt(position)->Description))
            positions.append(position);
    }
    if (positions.isEmpty())
        return;
    const ToolSetDocument::Step step(
        m_document, describe(QStringLiteral("Move"), positions.size()));
    selectPositions(m_document.move(positions, target));
}

void EditCommands::CompleteCut()
{
    // None when it was closed meanwhile: its tools are pasted, there is nothing to take away. Where
    // there are two, only one has ghosted tools.
    const auto found = sources();
    m_state.SourceCaption.clear();
    m_state.ToolClipboard.reset();
    Q_EMIT m_state.toolClipboardEmptied();
    for (ClipboardSource *source : found)
        source->completeCut();
}

void EditCommands::selectGhosted()
{
    selectPositions(m_model.ghostedPositions());
}

// --- Delete, move ---

void EditCommands::deleteTools(bool asking)
{
    const QList<int> rows = m_list.selectedRows();
    if (rows.isEmpty())
        return;
    // Before the question: meanwhile, help texts that are read may bring more rows.
    const QList<int> positions = m_model.positionsOf(rows);
    if (asking) {
        const QString question = rows.size() == 1
            ? QStringLiteral("Do you want to delete '%1'?")
                  .arg(m_model.toolAt(rows.constFirst())->Description)
            : QStringLiteral("Do you want to delete the %1 items selected?").arg(rows.size());
        if (MsgBox::show(m_form, question, MsgBox::Buttons::NoYes, MsgBox::Icon::Question)
            != MsgBox::Answer::Yes) {
            return;
        }
    }
    const Hourglass hourglass;
    {
        const ToolSetDocument::Step step(m_document,
            describe(asking ? QStringLiteral("Delete") : QStringLiteral("Cut"), rows.size()));
        const int first = m_model.rowsOf(positions).constFirst();
        m_document.remove(positions);
        // The keyboard goes on from the neighbour, which is not selected: a second Delete does
        // nothing.
        m_list.setFocusedItem(qMin(first, m_model.rowCount() - 1));
    }
}

void EditCommands::moveSelection(Direction direction)
{
    if (m_list.selectedRows().isEmpty())
        return;
    const Hourglass hourglass;
    // Moved is what the Position column says; so that the user sees it, the list shows that order.
    sortByPosition();
    const QList<int> positions = selectedPositions();
    // Past hidden tools: the place is above or below a tool that is seen.
    int target = 0;
    switch (direction) {
    case Direction::Up:
        target = m_model.nextShown(positions.constFirst(), false);
        break;
    case Direction::Down:
        target = m_model.nextShown(positions.constLast(), true);
        break;
    case Direction::ToStart:
        target = m_model.nextShown(0, true);
        break;
    case Direction::ToEnd:
        target = m_model.nextShown(m_document.count() + 1, false);
        break;
    }
    if (target == 0) // they are at that end
        target = direction == Direction::Up ? positions.constFirst() : positions.constLast();
    const ToolSetDocument::Step step(
        m_document, describe(QStringLiteral("Move"), positions.size()));
    selectPositions(m_document.move(positions, target));
}

// --- Undo ---

void EditCommands::undo()
{
    const Hourglass hourglass;
    m_document.undo();
}

void EditCommands::redo()
{
    const Hourglass hourglass;
    m_document.redo();
}
