#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>

/// Reading and writing of small pictures as files hold them. A picture in memory is a QImage; a
/// null image is "no picture".
namespace Picture {

/// Reads a picture file's bytes: Windows bitmap (BMP; bytes behind its end are ignored), icon,
/// GIF or JPEG.
///
/// Empty when the bytes are none of these, when a bitmap's pixels are cut off, or when the decoded
/// picture would take more than \a memoryLeft bytes (a few bytes can claim gigabytes). On success
/// the bytes taken are subtracted from \a memoryLeft.
std::optional<QImage> decode(QByteArrayView bytes, qint64 &memoryLeft);

/// A Windows bitmap file (40-byte header, 24 bits, bottom-up) of an opaque image. Equal pixels
/// give equal bytes, whatever the image's resolution says.
QByteArray encodeBitmap(const QImage &image);

} // namespace Picture
