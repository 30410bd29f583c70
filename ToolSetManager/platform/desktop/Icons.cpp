#include "platform/desktop/Icons.h"

#include <QApplication>
#include <QPalette>

namespace Icons {

void followPalette()
{
    const QPalette palette = QGuiApplication::palette();
    const bool dark = palette.color(QPalette::Window).lightness()
        < palette.color(QPalette::WindowText).lightness();
    QIcon::setThemeName(dark ? QStringLiteral("breeze-dark") : QStringLiteral("breeze"));
}

QIcon named(const QString &name, QStyle::StandardPixmap fallback)
{
    const QIcon icon = QIcon::fromTheme(name);
    return icon.isNull() ? QApplication::style()->standardIcon(fallback) : icon;
}

} // namespace Icons
