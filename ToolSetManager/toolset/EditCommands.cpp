#include "toolset/EditCommands.h"

#include "model/CVBATools.h"
#include "platform/desktop/Hourglass.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/MsgBox.h"
#include "shell/DocumentWindow.h"
#include "shell/Frame.h"
#include "shell/mTSM.h"
#include "toolset/ToolListModel.h"
#include "toolset/defaultPicture.xpm"

#include <QSet>

#include <utility>

EditCommands::EditCommands(DocumentWindow &document, QWidget *form, Frame &frame, mTSM &state,
    ToolSetStorage &storage, ListView &list, ToolListModel &model)
    : QObject(form)
    , m_document(document)
    , m_form(form)
    , m_frame(frame)
    , m_state(state)
    , m_storage(storage)
    , m_list(list)
    , m_model(model)
{
    connect(&m_model, &ToolListModel::noFreeName, this, [this](const QString &name) {
        m_frame.showWarning(QStringLiteral("There are too many tools called \"%1\": no number is "
                                          "free for one more.")
                               .arg(name));
    });
}

void EditCommands::newTool()
{
    auto tool = std::make_shared<CVBATool>();
    tool->Picture = QImage(defaultPicture);
    if (append({tool}))
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
    append(tools);
}

bool EditCommands::append(const QList<ToolPtr> &tools)
{
    const QList<int> rows = m_model.appendTools(tools);
    if (rows.isEmpty()) // no name was free
        return false;
    m_list.selectRows(rows);
    Q_EMIT changed();
    Q_EMIT commandStatesChanged();
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
    m_state.SourceCaption = m_document.Caption();
}

void EditCommands::copy()
{
    // A pending cut is given up with the clipboard that held it.
    if (m_state.ClipboardMode == mTSM::CutPending)
        ClearDragTools();
    fillClipboard(false);
    m_state.ClipboardMode = mTSM::CopyPending;
    Q_EMIT commandStatesChanged();
    Q_EMIT clipboardFilled();
}

void EditCommands::cut()
{
    if (m_state.ToolClipboard)
        ClearDragTools();
    fillClipboard(true);
    m_state.ClipboardMode = mTSM::CutPending;
    Q_EMIT commandStatesChanged();
    Q_EMIT clipboardFilled();
}

bool EditCommands::isSource() const
{
    return m_document.Caption() == m_state.SourceCaption;
}

void EditCommands::ClearDragTools()
{
    const auto documents = m_frame.openDocuments();
    bool found = false;
    for (DocumentWindow *document : documents) {
        if (document->Caption() == m_state.SourceCaption) {
            document->unghostTools();
            found = true;
        }
    }
    if (!found) // Kept: what a closed window has left on the clipboard stays there.
        return;
    m_state.ToolClipboard.reset();
    m_state.SourceCaption.clear();
    // With the clipboard goes the mode: a later drop must not complete an abandoned cut.
    m_state.ClipboardMode = mTSM::NothingPending;
    Q_EMIT commandStatesChanged();
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
        const QList<int> pasted = PasteTools();
        m_list.selectRows(pasted);
        // Tools for which no name was free would be nowhere.
        const bool all = pasted.size() == m_state.ToolClipboard->Count();
        if (m_state.ClipboardMode == mTSM::CutPending) {
            if (all)
                CompleteCut();
            else
                ClearDragTools();
            m_state.ClipboardMode = mTSM::NothingPending;
        }
    } else if (effect != MoveEffect) {
        PasteTools();
    } else {
        const int target = m_list.SelectedItem();
        if (target < 0)
            return;
        // By the names that they have now, which need not be those that they were cut under.
        QSet<QString> names;
        for (const ToolPtr &tool : *m_state.ToolClipboard)
            names.insert(tool->Description);
        QList<int> rows;
        for (int row = 0; row < m_model.rowCount(); ++row) {
            if (names.contains(m_model.toolAt(row)->Description))
                rows.append(row);
        }
        if (!rows.isEmpty())
            m_list.selectRows(m_model.MoveTools(rows, target));
        ClearDragTools();
    }
    Q_EMIT changed();
    Q_EMIT commandStatesChanged();
}

QList<int> EditCommands::PasteTools()
{
    QList<ToolPtr> copies;
    copies.reserve(m_state.ToolClipboard->Count());
    for (const ToolPtr &tool : *m_state.ToolClipboard)
        copies.append(std::make_shared<CVBATool>(*tool));
    return m_model.appendTools(copies);
}

void EditCommands::CompleteCut()
{
    const QString source = std::exchange(m_state.SourceCaption, {});
    m_state.ToolClipboard.reset();
    // None when it was closed meanwhile: its tools are pasted, there is nothing to take away.
    // Saving as the file of another window makes two of a name; only one has ghosted tools.
    const auto documents = m_frame.openDocuments();
    for (DocumentWindow *document : documents) {
        if (document->Caption() == source) {
            document->selectGhostedTools();
            document->setAction(QStringLiteral("silentdelete"));
        }
    }
}

void EditCommands::selectGhosted()
{
    m_list.selectRows(m_model.ghostedRows());
}

// --- Delete, move ---

void EditCommands::deleteTools(bool asking)
{
    const QList<int> rows = m_list.selectedRows();
    if (rows.isEmpty())
        return;
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
    m_model.removeTools(rows);
    // The keyboard goes on from the neighbour, which is not selected: a second Delete does nothing.
    m_list.setFocusedItem(qMin(rows.constFirst(), m_model.rowCount() - 1));
    Q_EMIT changed();
    Q_EMIT commandStatesChanged();
}

void EditCommands::moveSelection(Direction direction)
{
    if (m_list.selectedRows().isEmpty())
        return;
    const Hourglass hourglass;
    // Moved is what the Position column says; so that the user sees it, the list shows that order.
    sortByPosition();
    const QList<int> rows = m_list.selectedRows();
    const int last = m_model.rowCount() - 1;
    int target = 0;
    switch (direction) {
    case Direction::Up:
        target = qMax(rows.constFirst() - 1, 0);
        break;
    case Direction::Down:
        target = qMin(rows.constLast() + 1, last);
        break;
    case Direction::ToStart:
        target = 0;
        break;
    case Direction::ToEnd:
        target = last;
        break;
    }
    const QStringList before = m_model.keysInPositionOrder();
    m_list.selectRows(m_model.MoveTools(rows, target));
    if (m_model.keysInPositionOrder() != before)
        Q_EMIT changed();
}
