#pragma once

#include <QColor>
#include <QImage>

/// Button pictures as lists show them: they were drawn for grey buttons (192, 192, 192), which
/// modern lists do not have. The pictures themselves stay as they are.
namespace ButtonPicture {

/// The picture with the button grey that reaches its edge made transparent. Where what is left
/// would be dark on the dark \a background, it gets a light rim.
QImage onBackground(const QImage &picture, const QColor &background);

/// Whether nothing of it can be seen.
bool isEmpty(const QImage &picture);

/// A line as toolbars have between their buttons, in \a colour; \a size in pixels.
QImage separatorLine(const QSize &size, const QColor &colour);

} // namespace ButtonPicture
