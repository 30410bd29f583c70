#pragma once

#include <QList>
#include <QRect>

class QMdiArea;

/// Arranges the child windows of a frame.
namespace WindowArranger {

/// Fills the area with the windows that are not minimised: one above the other, or side by side;
/// more than three stand in a grid, the odd ones out in its last row or column.
void tileHorizontally(QMdiArea &area);
void tileVertically(QMdiArea &area);
/// The minimised windows in rows along the bottom.
void arrangeIcons(QMdiArea &area);

/// The places of \a count tiles that together cover \a area; \a horizontal as above.
QList<QRect> tiles(const QRect &area, int count, bool horizontal);

} // namespace WindowArranger
