#pragma once

#include <QImage>
#include <QRect>

/// Photographs of the screen.
namespace ScreenShot {

/// What a rectangle of the screen shows, one pixel for each unit of the rectangle: where the
/// desktop is scaled, a unit has several of the screen's pixels, which are averaged.
///
/// A window of the program's own in which the rectangle lies is asked itself, because a compositor
/// brings onto the screen only later what was painted just now. Where the system lets nobody
/// photograph the screen (Wayland), only the program's own windows are seen, over black. Null for
/// an empty rectangle and for one of more than 2^26 pixels.
QImage take(const QRect &rectangle);

} // namespace ScreenShot
