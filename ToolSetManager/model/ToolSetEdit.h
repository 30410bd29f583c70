#pragma once

#include "model/ToolSetContents.h"

#include <QUndoCommand>

#include <memory>
#include <vector>

/// One change of a set that can be taken back: what the steps of a document's undo stack are made
/// of. An edit holds what it needs for both ways and nothing of the tools that it leaves alone.
class ToolSetEdit
{
public:
    virtual ~ToolSetEdit() = default;
    virtual void apply(ToolSetContents &contents) = 0;
    virtual void revert(ToolSetContents &contents) = 0;
    /// Memory in bytes that is held by this edit alone once it was applied, about.
    virtual qint64 bytes() const { return 0; }
};

/// Tools at the end of the set. Applied again, they come back under the names that the set gave
/// them the first time.
class AppendEdit : public ToolSetEdit
{
public:
    explicit AppendEdit(const QList<ToolPtr> &tools);
    void apply(ToolSetContents &contents) override;
    void revert(ToolSetContents &contents) override;
    QList<int> positions() const { return m_positions; } ///< Empty when all were refused.

private:
    QList<ToolPtr> m_tools; ///< Until they were in the set.
    QList<int> m_positions;
    ToolSetContents::TakenTools m_taken; ///< While they are out.
};

class RemoveEdit : public ToolSetEdit
{
public:
    explicit RemoveEdit(const QList<int> &positions);
    void apply(ToolSetContents &contents) override;
    void revert(ToolSetContents &contents) override;
    qint64 bytes() const override;

private:
    QList<int> m_positions;
    ToolSetContents::TakenTools m_taken;
};

class MoveEdit : public ToolSetEdit
{
public:
    MoveEdit(const QList<int> &from, const QList<int> &to);
    void apply(ToolSetContents &contents) override;
    void revert(ToolSetContents &contents) override;
    qint64 bytes() const override;

private:
    QList<int> m_from;
    QList<int> m_to;
};

class RenameEdit : public ToolSetEdit
{
public:
    RenameEdit(const ToolPtr &tool, const QString &newName);
    void apply(ToolSetContents &contents) override;
    void revert(ToolSetContents &contents) override;

private:
    /// A name, and the place that the tool has in the set's own order while it bears that name.
    struct Entry
    {
        QString name;
        KeyedCollection<ToolPtr>::Place place = 0;
    };

    ToolPtr m_tool;
    Entry m_before;
    Entry m_after;
    bool m_applied = false; ///< Once: m_after is what the set made of the new name.
};

/// All fields of a tool but its name.
class ChangeEdit : public ToolSetEdit
{
public:
    ChangeEdit(const ToolPtr &tool, const CVBATool &after);
    void apply(ToolSetContents &contents) override;
    void revert(ToolSetContents &contents) override;
    qint64 bytes() const override;

private:
    ToolPtr m_tool;
    CVBATool m_before;
    CVBATool m_after;
};

class PropertiesEdit : public ToolSetEdit
{
public:
    PropertiesEdit(ToolSetContents::Properties before, ToolSetContents::Properties after);
    void apply(ToolSetContents &contents) override;
    void revert(ToolSetContents &contents) override;
    qint64 bytes() const override;

private:
    ToolSetContents::Properties m_before;
    ToolSetContents::Properties m_after;
};

/// What one command of the user changed: a step of the undo stack.
class ToolSetStep : public QUndoCommand
{
public:
    /// \a selected are the positions selected before it. The contents are borrowed.
    ToolSetStep(ToolSetContents &contents, const QString &text, const QList<int> &selected);

    /// Takes an edit that has been applied.
    void add(std::unique_ptr<ToolSetEdit> edit, bool dirties);
    bool isEmpty() const { return m_edits.empty(); } ///< Also after forget().
    bool dirties() const { return m_dirties; }
    QList<int> selectedBefore() const { return m_selectedBefore; }
    QList<int> selectedAfter() const { return m_selectedAfter; }
    void setSelectedAfter(const QList<int> &positions) { m_selectedAfter = positions; }
    qint64 bytes() const { return m_bytes; }
    /// Releases the memory of its edits. It can no longer be undone then.
    void forget();

    void undo() override;
    void redo() override;

private:
    ToolSetContents &m_contents;
    std::vector<std::unique_ptr<ToolSetEdit>> m_edits;
    QList<int> m_selectedBefore;
    QList<int> m_selectedAfter;
    qint64 m_bytes = 0;
    bool m_dirties = false;
    bool m_pushed = false; ///< The stack applies a command that it is given, once too often here.
};
