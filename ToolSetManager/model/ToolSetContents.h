#pragma once

#include "model/CVBATools.h"

#include <QObject>

#include <memory>
#include <vector>

/// A tool set with the order of its tools, and the primitive changes that the edits of a document
/// (ToolSetEdit) are made of. Each keeps set and order in step and tells about itself.
///
/// Positions count from 1 and have no gaps. Lists of positions are ascending.
class ToolSetContents : public QObject
{
    Q_OBJECT
public:
    /// What the set has of its own, beside its tools.
    struct Properties
    {
        QString Description;
        QString LongDescription; ///< RTF, or empty.
        qint32 FLAGS = 0;
        bool operator==(const Properties &other) const = default;
    };
    using TakenTools = CVBATools::TakenTools;

    using QObject::QObject;

    const CVBATools &tools() const { return *m_tools; }
    const std::vector<ToolPtr> &order() const { return m_order; }
    const ToolPtr &toolAt(int position) const { return m_order[static_cast<size_t>(position) - 1]; }
    /// 0 when the tool is not in the set. The cost grows with the distance from the last answer, so
    /// that changing many tools in their order costs what changing each costs.
    int positionOf(const CVBATool *tool) const;
    Properties properties() const;

    /// Another set, in its own order. Emits nothing.
    void setTools(std::unique_ptr<CVBATools> tools);
    CVBATools &file() { return *m_tools; } ///< For loading and saving, not for edits.

    /// Adds tools at the end; the set names them. One for which no name is free is left out.
    /// Returns the positions.
    QList<int> append(const QList<ToolPtr> &tools);
    TakenTools takeOut(const QList<int> &positions);
    /// Puts tools in so that they have these positions then.
    void putIn(const QList<int> &positions, const TakenTools &taken);
    /// Takes the tools at the positions \a from and puts them in, in their order, so that they have
    /// the positions \a to then.
    void reorder(const QList<int> &from, const QList<int> &to);
    /// Gives the tool another name and place in the set's own order; the name must be free.
    void rename(const ToolPtr &tool, const QString &newName, KeyedCollection<ToolPtr>::Place place);
    /// The same as the set itself does it: with a free name like \a newName, at the end.
    void rename(const ToolPtr &tool, const QString &newName);
    KeyedCollection<ToolPtr>::Place placeOf(const ToolPtr &tool) const;
    /// Gives the tool the fields of \a fields, except the name.
    void writeFields(const ToolPtr &tool, const CVBATool &fields);
    void writeProperties(const Properties &properties);

Q_SIGNALS:
    // Each comes when the set has its new state.
    void toolsRemoved(const QList<int> &positions); ///< The positions that they had.
    void toolsInserted(const QList<int> &positions);
    void toolsMoved(const QList<int> &from, const QList<int> &to);
    void toolChanged(int position);
    void propertiesChanged();

private:
    std::unique_ptr<CVBATools> m_tools;
    std::vector<ToolPtr> m_order;
    mutable size_t m_lastFound = 0; ///< An index of m_order, or beyond it.
};
