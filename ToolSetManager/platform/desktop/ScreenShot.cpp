#include "platform/desktop/ScreenShot.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <cmath>

namespace {

constexpr qint64 mostPixels = qint64(1) << 26;

/// The program's visible windows, the one in front last.
QWidgetList windows()
{
    QWidgetList all = QApplication::topLevelWidgets();
    const auto hidden = [](const QWidget *window) {
        return !window->isVisible() || window->isMinimized();
    };
    all.erase(std::remove_if(all.begin(), all.end(), hidden), all.end());
    // A modal window is in front before the system has made it the active one.
    const QWidget *front = QApplication::activeModalWidget();
    if (front == nullptr)
        front = QApplication::activeWindow();
    // A window stands above its owner; the front window and its own stand above all others.
    const auto height = [front](const QWidget *window) {
        int owners = 0;
        bool ownedByFront = window == front;
        for (const QWidget *w = window->parentWidget(); w != nullptr; w = w->parentWidget()) {
            ++owners;
            ownedByFront = ownedByFront || w == front;
        }
        const bool ownsFront = front != nullptr && window->isAncestorOf(front);
        return std::pair(ownedByFront ? 2 : ownsFront ? 1 : 0, owners);
    };
    std::stable_sort(all.begin(), all.end(),
        [&](const QWidget *a, const QWidget *b) { return height(a) < height(b); });
    return all;
}

QImage paintedWindows(const QRect &rectangle)
{
    QImage image(rectangle.size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    const QWidgetList all = windows();
    for (QWidget *window : all) {
        const QRect place(window->mapToGlobal(QPoint(0, 0)), window->size());
        const QRect part = place & rectangle;
        if (part.isEmpty())
            continue;
        window->render(&painter, part.topLeft() - rectangle.topLeft(),
            QRegion(part.translated(-place.topLeft())));
    }
    return image;
}

/// The window in which all of the rectangle lies; null when none of the program's does or another
/// of them is before it.
QWidget *windowAround(const QRect &rectangle)
{
    const QWidgetList all = windows();
    for (auto window = all.rbegin(); window != all.rend(); ++window) {
        const QRect place((*window)->mapToGlobal(QPoint(0, 0)), (*window)->size());
        if (place.contains(rectangle))
            return *window;
        if (place.intersects(rectangle))
            return nullptr;
    }
    return nullptr;
}

bool screenCanBeRead()
{
    // Under Wayland an X11 program sees an empty root window.
    return QGuiApplication::platformName() == QStringLiteral("windows")
        || (QGuiApplication::platformName() == QStringLiteral("xcb")
            && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY"));
}

QPixmap photograph(const QRect &rectangle, const QWidget *window)
{
    if (window != nullptr) {
        const QPoint origin = window->mapToGlobal(QPoint(0, 0));
        return window->screen()->grabWindow(window->winId(), rectangle.x() - origin.x(),
            rectangle.y() - origin.y(), rectangle.width(), rectangle.height());
    }
    QScreen *screen = QGuiApplication::screenAt(rectangle.center());
    if (screen == nullptr)
        screen = QGuiApplication::primaryScreen();
    const QPoint origin = screen->geometry().topLeft();
    return screen->grabWindow(0, rectangle.x() - origin.x(), rectangle.y() - origin.y(),
        rectangle.width(), rectangle.height());
}

} // namespace

namespace ScreenShot {

QImage take(const QRect &rectangle)
{
    if (rectangle.isEmpty() || qint64(rectangle.width()) * rectangle.height() > mostPixels)
        return {};
    if (!screenCanBeRead())
        return paintedWindows(rectangle);
    const QWidget *window = windowAround(rectangle);
    if (window != nullptr) {
        // Pixels of one and a half are not averaged back to what was drawn, but painted anew; so is
        // a window that has just been opened and is not on the screen yet.
        const qreal ratio = window->devicePixelRatioF();
        if (ratio != std::floor(ratio) || !window->windowHandle()->isExposed())
            return paintedWindows(rectangle);
    }
    QImage image = photograph(rectangle, window).toImage();
    if (image.isNull())
        return paintedWindows(rectangle);
    image.setDevicePixelRatio(1);
    if (image.size() != rectangle.size())
        image = image.scaled(rectangle.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image.convertToFormat(QImage::Format_RGB32);
}

} // namespace ScreenShot
