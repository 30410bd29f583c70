#pragma once

#include <QImage>

/// Colours and plain pictures.
namespace Pictures {

constexpr QRgb black = 0xFF000000;
constexpr QRgb white = 0xFFFFFFFF;
constexpr QRgb grey = 0xFFC0C0C0;
constexpr QRgb red = 0xFFFF0000;
constexpr QRgb green = 0xFF00FF00;
constexpr QRgb blue = 0xFF0000FF;

inline QImage filled(int width, int height, QRgb colour)
{
    QImage image(
        width, height, qAlpha(colour) < 255 ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

} // namespace Pictures
