#pragma once

#include <QIcon>
#include <QStyle>

/// The icons of the program's own buttons, from the Breeze theme.
namespace Icons {

/// Chooses the light or the dark variant of the theme by the application's colours. To be called
/// at the start and whenever the palette changes, before icons are asked for (again).
void followPalette();

/// The theme's icon of that name, else the style's standard one.
QIcon named(const QString &name, QStyle::StandardPixmap fallback = QStyle::SP_FileIcon);

/// The same with its own colours where it is selected: for signs of several colours.
QIcon emblem(const QString &name, QStyle::StandardPixmap fallback);

/// The same icon, faint where it is disabled.
QIcon dimming(const QIcon &icon);

} // namespace Icons
