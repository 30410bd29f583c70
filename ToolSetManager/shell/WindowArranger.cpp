#include "shell/WindowArranger.h"

#include <QMdiArea>
#include <QMdiSubWindow>

#include <cmath>

namespace {

void tile(QMdiArea &area, bool horizontal)
{
    QList<QMdiSubWindow *> windows;
    const auto all = area.subWindowList(QMdiArea::ActivationHistoryOrder);
    for (auto window = all.crbegin(); window != all.crend(); ++window) {
        if (!(*window)->isMinimized() && (*window)->isVisible())
            windows.append(*window); // the active one first
    }
    const auto places = WindowArranger::tiles(
        area.viewport()->rect(), static_cast<int>(windows.size()), horizontal);
    for (qsizetype i = 0; i < windows.size(); ++i) {
        windows[i]->showNormal();
        windows[i]->setGeometry(places[i]);
    }
}

} // namespace

namespace WindowArranger {

void tileHorizontally(QMdiArea &area)
{
    tile(area, true);
}

void tileVertically(QMdiArea &area)
{
    tile(area, false);
}

QList<QRect> tiles(const QRect &area, int count, bool horizontal)
{
    QList<QRect> places;
    if (count < 1)
        return places;
    // Lines run across the direction in which the tiles of a small number follow each other.
    const int lines = count <= 3 ? 1 : static_cast<int>(std::sqrt(count));
    const int length = horizontal ? area.height() : area.width();
    const int breadth = horizontal ? area.width() : area.height();
    int placed = 0;
    for (int line = 0; line < lines; ++line) {
        const int inLine = (count - placed) / (lines - line);
        const int acrossFrom = breadth * line / lines;
        const int acrossTo = breadth * (line + 1) / lines;
        for (int i = 0; i < inLine; ++i) {
            const int from = length * i / inLine;
            const int to = length * (i + 1) / inLine;
            const QRect place = horizontal
                ? QRect(acrossFrom, from, acrossTo - acrossFrom, to - from)
                : QRect(from, acrossFrom, to - from, acrossTo - acrossFrom);
            places.append(place.translated(area.topLeft()));
        }
        placed += inLine;
    }
    return places;
}

QRect placeFor(const QRect &area, int others, int title)
{
    // At least two thirds of the area's height are left to each window.
    const int steps = qMax(1, area.height() / 3 / qMax(1, title));
    const int inset = others % (steps + 1) * title;
    return area.adjusted(inset, inset, 0, 0);
}

void arrangeIcons(QMdiArea &area)
{
    const QRect room = area.viewport()->rect();
    int x = room.left();
    int bottom = room.bottom() + 1;
    const auto windows = area.subWindowList(QMdiArea::CreationOrder);
    for (QMdiSubWindow *window : windows) {
        if (!window->isMinimized())
            continue;
        if (x > room.left() && x + window->width() > room.right() + 1) {
            x = room.left();
            bottom -= window->height();
        }
        window->move(x, bottom - window->height());
        x += window->width();
    }
}

} // namespace WindowArranger
