#pragma once

#include <QRect>

/// The part of a preview that is being marked: from where it began to where the mouse or the keys
/// have come.
class RubberBand
{
public:
    /// What a key did.
    enum class Effect {
        None, ///< It is no key for marking.
        Moved,
        Ended, ///< The part is complete.
        GivenUp
    };

    QPoint start() const { return m_start; }
    QPoint end() const { return m_end; }
    /// The part, right and bottom exclusive.
    QRect part() const { return rectangle().adjusted(0, 0, -1, -1); }
    /// True for a part with a width and a height.
    bool hasArea() const { return m_start.x() != m_end.x() && m_start.y() != m_end.y(); }

    // --- With the mouse ---
    void begin(QPoint at);
    void moveTo(QPoint at) { m_end = at; }

    // --- With the keys: arrows move (with Ctrl by one pixel), Space begins and ends, Escape gives
    // up ---
    Effect pressed(int key, Qt::KeyboardModifiers modifiers, QSize preview);
    bool isMarking() const { return m_marking; }
    void giveUp() { m_marking = false; }

    /// What is to be drawn: the part with its edges; while the keys have not begun one, a small
    /// square at the place where it would begin.
    QRect shown() const;

private:
    QRect rectangle() const;

    QPoint m_start;
    QPoint m_end;
    bool m_marking = false; ///< With the keys.
    bool m_byKeys = false;
};
