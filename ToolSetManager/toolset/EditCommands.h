#pragma once

#include "model/CVBATool.h"

#include <QObject>

class ClipboardSource;
class DocumentWindow;
class Frame;
class ListView;
class QWidget;
class ToolListModel;
class ToolSetDocument;
class mTSM;
struct ToolSetStorage;

/// The edit commands of one tool set window: new tool, cut, copy, paste and delete, the moving of
/// tools within the list, undo and redo. They turn what is selected in the list into operations of
/// the window's document. Tools go from window to window by the program's own tool clipboard, which
/// a drag uses too.
class EditCommands : public QObject
{
    Q_OBJECT
public:
    /// The effects of a paste, with the values of drag and drop.
    enum Effect { NoEffect = 0, CopyEffect = 1, MoveEffect = 2 };
    enum class Direction { Up, Down, ToStart, ToEnd };

    /// What is handed in is borrowed; \a form is the window itself, for questions.
    EditCommands(DocumentWindow &window, QWidget *form, Frame &frame, mTSM &state,
        ToolSetStorage &storage, ToolSetDocument &document, ListView &list, ToolListModel &model);

    /// Adds a tool with the default picture and selects exactly its item.
    void newTool();
    /// Adds tools that were made elsewhere at the end and selects exactly these; one without a
    /// picture gets the default one.
    void addTools(const QList<ToolPtr> &tools);
    void copy();
    void cut();
    /// What a paste from the menu does, by what the clipboard holds: an Effect.
    int PasteEffect() const;
    /// Tools from another window are appended; tools of this window are appended as copies too, or
    /// with MoveEffect moved to the selected item.
    void paste(int effect);
    /// Ends a drag at \a row, or below all when that is -1, with a paste of that effect.
    void drop(int effect, int row);
    /// Deletes the selected tools, with \a asking after a question; without it they have been cut.
    void deleteTools(bool asking);
    /// Moves the selected tools by one position or to an end.
    void moveSelection(Direction direction);
    void undo();
    void redo();

    /// Fills the tool clipboard with the selected tools and names this window as their source.
    void fillClipboard(bool ghosted);
    /// Ends a pending cut, copy or drag: the source window's items are no longer ghosted, the
    /// clipboard is empty. Does nothing when no window has the source's caption any more.
    void ClearDragTools();
    bool isSource() const; ///< Going by the caption, this is the window they come from.
    void selectGhosted();

Q_SIGNALS:
    void clipboardFilled(); ///< By a copy or a cut, also of nothing.
    void toolAdded(); ///< The new tool's item is selected.

private:
    /// Adds the tools and selects exactly these; false when the set took none of them.
    bool append(const QList<ToolPtr> &tools, const QString &step);
    void sortByPosition(); ///< What the list shows is then the order that an edit changes.
    QList<int> selectedPositions() const;
    void selectPositions(const QList<int> &positions);
    /// The windows that the clipboard's tools come from, going by the caption: one, but two when a
    /// set was saved as the file of another window, and none when it was closed.
    QList<ClipboardSource *> sources() const;
    QList<int> PasteTools();
    void MoveTools(int target);
    void CompleteCut();

    DocumentWindow &m_window;
    QWidget *m_form;
    Frame &m_frame;
    mTSM &m_state;
    ToolSetStorage &m_storage;
    ToolSetDocument &m_document;
    ListView &m_list;
    ToolListModel &m_model;
};
