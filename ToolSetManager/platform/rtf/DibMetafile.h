#pragma once

#include <QByteArray>
#include <QImage>

/// The simplest of Windows metafiles: those that paint a bitmap, which is how rich text of the
/// time carries pictures.
namespace DibMetafile {

/// A metafile (no placeable header) that paints the image; it is opaque, with 4, 8 or 24 bits a
/// pixel, whatever its colours need.
QByteArray encode(const QImage &image);

/// The first bitmap that a Windows metafile paints; null when there is none, or when its pixels
/// need more than \a memoryLeft, from which they are subtracted.
QImage decode(QByteArrayView metafile, qint64 &memoryLeft);

/// A bitmap as a metafile contains it: header, colours, pixels.
QImage decodeBitmap(QByteArrayView dib, qint64 &memoryLeft);

} // namespace DibMetafile
