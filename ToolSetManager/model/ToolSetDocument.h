#pragma once

#include "model/ToolSetContents.h"

#include <QUndoStack>

#include <functional>

class ToolSetEdit;
class ToolSetStep;
struct ToolSetStorage;

/// One tool set that is being edited: the set, the order of its tools, the path of its file, the
/// dirty flag and the undo stack. Every change of a set that a window shows is an operation of this
/// class; views and dialogs read the set and hear of changes through the signals. No windows.
///
/// Positions count from 1 and have no gaps. Lists of positions are ascending. The order by position
/// is the order in which tools are written; the set keeps an order of its own beside it.
class ToolSetDocument : public QObject
{
    Q_OBJECT
public:
    using Properties = ToolSetContents::Properties;

    /// Makes one step of undo out of all operations between its construction and its destruction.
    /// Steps nest; the outermost one counts. Without an operation no step is made.
    class Step
    {
    public:
        /// \a text follows the words "Undo" and "Redo", as in "Undo Delete of 3 Tools".
        Step(ToolSetDocument &document, const QString &text);
        ~Step();
        Step(const Step &) = delete;
        Step &operator=(const Step &) = delete;

    private:
        ToolSetDocument &m_document;
    };

    /// The storage is borrowed. The set is a new one, without tools; its `FLAGS` are 1,
    /// and duplicate names are allowed.
    explicit ToolSetDocument(ToolSetStorage &storage, QObject *parent = nullptr);
    ~ToolSetDocument() override;

    // --- The set ---
    const CVBATools &Tools() const { return m_contents.tools(); } ///< Another one after reset().
    int count() const { return static_cast<int>(m_contents.order().size()); }
    const ToolPtr &toolAt(int position) const { return m_contents.toolAt(position); }
    /// 0 when the tool is not in the set. The cost grows with the set.
    int positionOf(const CVBATool *tool) const { return m_contents.positionOf(tool); }
    const std::vector<ToolPtr> &toolsInOrder() const { return m_contents.order(); }
    QStringList keysInOrder() const; ///< What the file is written by.
    Properties properties() const { return m_contents.properties(); }

    // --- State ---
    QString FileName() const { return m_fileName; } ///< Empty for a set never saved.
    void setFileName(const QString &path) { m_fileName = path; }
    /// Changed since it was loaded or saved, except by renames in place. Kept: clear after a save
    /// that failed, too.
    bool Dirty() const { return m_dirty; }
    void setDirty(); ///< Also without a change of the set.
    /// Something of the set is in no file: as Dirty(), but also after renames in place, and until a
    /// save has succeeded.
    bool isUnsaved() const;

    // --- Loading and saving ---
    /// Shows another set. One that was not \a loaded from its file is dirty. The undo stack is
    /// empty then.
    void setTools(std::unique_ptr<CVBATools> tools, bool loaded);
    /// For `Save` of the set; saved() or saveFailed() is to be called afterwards.
    CVBATools &file() { return m_contents.file(); }
    void saved(); ///< The set is in its file as it stands.
    /// Kept: clears the dirty flag. No state of the undo stack counts as saved any more.
    void saveFailed();

    // --- Operations: each is a step of undo of its own unless a Step is open ---
    /// Adds tools at the end; the set names them. One for which no name is free is left out.
    /// Returns the positions.
    QList<int> append(const QList<ToolPtr> &tools);
    void remove(const QList<int> &positions);
    /// Takes the tools out of the order and puts them in, in their order, at the place of
    /// \a target: below it when one of them comes from above it, else above it. Where the target is
    /// one of them they gather at its place. Returns their positions then.
    QList<int> move(const QList<int> &positions, int target);
    /// Gives the tools another order: the tool at the position order[i] gets the position i + 1.
    void arrange(const std::vector<int> &order);
    /// True when move() would put them below the target.
    static bool movesBelow(const QList<int> &positions, int target);
    /// Renames a tool; the set may make the name unique. False, and nothing has changed, when no
    /// name is free.
    bool rename(const ToolPtr &tool, const QString &newName);
    /// The same. Kept: does not make the set dirty.
    bool renameInPlace(const ToolPtr &tool, const QString &newName);
    /// Gives the tool all fields of \a after but the name.
    void change(const ToolPtr &tool, const CVBATool &after);
    /// Gives the tool all fields of \a after, the name included, which the set may make unique:
    /// what applying the properties dialog does. False, and nothing has changed, when no name is
    /// free.
    bool apply(const ToolPtr &tool, const CVBATool &after);
    void setProperties(const Properties &after);

    // --- Undo ---
    bool canUndo() const;
    bool canRedo() const;
    QString undoText() const; ///< Of the step that would be undone; empty for none.
    QString redoText() const;
    void undo();
    void redo();
    /// The number of steps that led to the present state: 0 after reset(), one more with each new
    /// step until keptSteps, one less with each undo.
    int stepIndex() const { return m_stack.index(); }
    /// Gives the positions that are selected; asked at both ends of each step, so that undo and
    /// redo can bring the selection back.
    using Selection = std::function<QList<int>()>;
    void setSelection(Selection selection) { m_selection = std::move(selection); }

    static constexpr int keptSteps = 1000;
    /// Of memory that only the undo stack holds, about. The newest step is kept whatever it takes.
    static constexpr qint64 keptBytes = 64LL * 1024 * 1024;

Q_SIGNALS:
    // Each comes when the document has its new state.
    void reset(); ///< It has another set.
    void toolsRemoved(const QList<int> &positions); ///< The positions that they had.
    void toolsInserted(const QList<int> &positions);
    void toolsMoved(const QList<int> &from, const QList<int> &to); ///< Of equal length.
    void toolChanged(int position);
    void propertiesChanged();
    void changed(); ///< By an operation, undo or redo: there is something new to keep.
    /// Dirty(), isUnsaved() or what can be undone may have changed.
    void stateChanged();
    /// By undo and redo: what was selected then.
    void selectionRestored(const QList<int> &positions);
    /// A tool was not renamed or not added: the name is taken, and so is each one made of it.
    void noFreeName(const QString &name);

private:
    enum Effect { Dirties, StaysClean };
    bool rename(const ToolPtr &tool, const QString &newName, Effect effect);

    void beginStep(const QString &text);
    void endStep();
    /// Takes the edit, which has been applied, into the open step.
    void keep(std::unique_ptr<ToolSetEdit> edit, Effect effect = Dirties);
    void forgetOldest();
    const ToolSetStep *stepAt(int index) const; ///< Null outside the stack.
    void stepped(const ToolSetStep &step, const QList<int> &selected);
    bool differsFromSaved() const;
    QList<int> selected() const;

    ToolSetContents m_contents;
    QString m_fileName;
    bool m_dirty = false;
    QUndoStack m_stack;
    std::unique_ptr<ToolSetStep> m_step; ///< The open one.
    int m_stepDepth = 0;
    Selection m_selection;
};
