#pragma once

#include <QByteArrayView>
#include <QImage>
#include <QSize>

/// Windows metafiles: placeable, plain and enhanced (see EnhancedMetafile).
///
/// A plain or placeable metafile that does no more than show one bitmap, as rich text has its
/// pictures, is read here, pixel by pixel. All others of these are played by libwmf in a process of
/// its own ("metafile_player", which lies beside the program): it takes some milliseconds to start,
/// and a file that crashes the library or keeps it busy for more than a few seconds only costs its
/// picture.
namespace Metafile {

/// True when the bytes start as a metafile does.
bool recognises(QByteArrayView bytes);

/// The size that the file asks for, in pixels at 96 dpi. A plain metafile has none: then its
/// window's extent, not larger than 512 pixels. Empty when it has no window either; then the box of
/// what it draws is all that is shown.
QSize size(QByteArrayView bytes);

/// The bitmap of a metafile that does no more than show it in all of its frame, in the bitmap's own
/// size, Format_RGB32; null for any other.
QImage soleBitmap(QByteArrayView bytes);

/// The picture over white, Format_RGB32, stretched to \a size; an empty size stands for the file's
/// own. Null when it is no metafile or cannot be played, and when a plain one is cut off.
QImage render(QByteArrayView bytes, QSize size = {});

} // namespace Metafile
