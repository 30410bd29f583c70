#pragma once

#include "model/CVBATools.h"

#include <QObject>

#include <memory>

/// The state that all windows of the program share: the tool clipboard and the drag gate. One
/// object, made at the start and handed down.
class mTSM : public QObject
{
    Q_OBJECT
public:
    /// The values of `ClipboardMode`.
    enum Mode : qint16 { NothingPending = 0, CutPending = 1, CopyPending = 2 };

    using QObject::QObject;

    // --- The tool clipboard ---
    /// The very tools of the source set; null for none. Tools never go to the system clipboard.
    std::unique_ptr<CVBATools> ToolClipboard;
    qint16 ClipboardMode = NothingPending;
    /// Caption of the window that the tools come from; the window is found again by it.
    QString SourceCaption;
    /// A drag of the clipboard's tools is under way: no other drag is one of tools.
    bool DraggingTools = false;

    // --- The drag gate: a drag of tools may start only while it is open ---
    bool DragGate() const { return m_dragGate; }
    /// False closes the gate at once. True only arms it: whoever listens to dragGateArmed() calls
    /// openDragGate() a second later, so that the mouse release that ended a file dialog cannot
    /// start a drag in the list below it.
    void setDragGate(bool open);
    void openDragGate() { m_dragGate = true; }

    /// Of the list of tools that the user changed last, in logical pixels; a new window takes them.
    /// Empty: none yet.
    QList<int> ColumnWidths;

Q_SIGNALS:
    void toolClipboardEmptied(); ///< Emitted by what empties it.
    void dragGateArmed();
    void dragGateClosed();

private:
    bool m_dragGate = false;
};
