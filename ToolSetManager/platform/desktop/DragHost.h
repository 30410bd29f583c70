#pragma once

class QDragMoveEvent;
class QDropEvent;
class QPainter;

/// The owner of views that leave drags to it, and that draw its marks above their rows.
class DragHost
{
public:
    DragHost() = default;
    DragHost(const DragHost &) = delete;
    DragHost &operator=(const DragHost &) = delete;

    /// The present press of the mouse has had its drag, whether or not it has been run; it starts
    /// no other one and selects nothing more.
    virtual bool isDragSpent() const = 0;
    virtual void startDrag() = 0;
    virtual void dragOver(QDragMoveEvent *event) = 0; ///< Ignored unless the host accepts it.
    virtual void dragLeave() = 0;
    virtual void dragDrop(QDropEvent *event) = 0; ///< Likewise.
    virtual void paintMarks(QPainter &painter) const = 0;

protected:
    ~DragHost() = default;
};
