#pragma once

#include <QPalette>
#include <QString>

class QPainter;
class QRect;

/// What an empty view shows in its middle: what is not there yet, and what to do. It is only drawn;
/// the view gives the same words to screen readers as its accessible description.
struct EmptyHint
{
    QString title; ///< Larger; may be empty.
    QString text;

    QString spoken() const;
    /// Draws it into \a room, which has the colour \a back of the palette.
    void paint(QPainter &painter, const QRect &room, const QPalette &palette,
        QPalette::ColorRole back) const;
};
