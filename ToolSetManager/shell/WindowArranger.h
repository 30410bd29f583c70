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
/// The place of one more window when \a others are open: it fills \a area, less a step of \a title
/// (the height of a title bar) for each of the others, so that all titles can be seen. Where that
/// would leave too little, the steps begin anew.
QRect placeFor(const QRect &area, int others, int title);

/// The minimised windows in rows along the bottom.
void arrangeIcons(QMdiArea &area);

/// The places of \a count tiles that together cover \a area; \a horizontal as above.
QList<QRect> tiles(const QRect &area, int count, bool horizontal);

} // namespace WindowArranger
