#pragma once

#include <QByteArray>
#include <QImage>

/// Writes Windows bitmap files, one for each tool of a set that is saved. The toolkit's writer
/// makes the same bytes but needs several times as long, most of it to find its plug-in.
namespace BitmapWriter {

/// A file of 24 bits, bottom-up, with the 40-byte header and 96 dots per inch, whatever resolution
/// the image names. The image is of Format_RGB32.
QByteArray write(const QImage &image);

} // namespace BitmapWriter
