#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <limits>
#include <optional>

/// Reading and writing of small pictures as files hold them. A picture in memory is a QImage; a
/// null image is "no picture".
namespace Picture {

/// Reads a picture file's bytes: Windows bitmap (BMP; bytes behind its end are ignored), icon or
/// cursor, GIF, JPEG or PNG.
///
/// Empty when the bytes are none of these, when a bitmap's pixels are cut off, or when the decoded
/// picture would take more than \a memoryLeft bytes (a few bytes can claim gigabytes). On success
/// the bytes taken are subtracted from \a memoryLeft.
///
/// A picture with a side longer than \a longestSide comes out smaller. A bitmap is scaled while it
/// is decoded and counts with its smaller size, unless it has run lengths: these claim more pixels
/// than they have bytes, and the time for them is limited by what they claim.
std::optional<QImage> decode(
    QByteArrayView bytes, qint64 &memoryLeft, int longestSide = std::numeric_limits<int>::max());

/// The picture in a file, whatever its name: one of the kinds above or a metafile. Null when it is
/// none, cannot be read, or is too large for a picture (256 MiB, in the file or decoded).
QImage load(const QString &path);

/// A Windows bitmap file (40-byte header, 24 bits, bottom-up) of an opaque image. Equal pixels
/// give equal bytes, whatever the image's resolution says.
QByteArray encodeBitmap(const QImage &image);

} // namespace Picture
