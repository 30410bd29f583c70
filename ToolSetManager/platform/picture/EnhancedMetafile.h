#pragma once

#include <QByteArrayView>
#include <QImage>
#include <QSize>

/// Enhanced Windows metafiles, played here (see EmfPlayer). Those that also carry their drawing in
/// a newer form inside of comments are drawn from their plain records.
namespace EnhancedMetafile {

/// True when the bytes start as an enhanced metafile does.
bool recognises(QByteArrayView bytes);

/// The size of the frame in pixels at 96 dpi; empty when there is no frame.
QSize size(QByteArrayView bytes);

/// The picture over white, Format_RGB32, stretched to \a size. Null when it is no enhanced metafile
/// or draws nothing. Of one that is cut off, what is there.
QImage render(QByteArrayView bytes, QSize size);

/// The first bitmap that it paints, without playing the rest; null when there is none, or when its
/// pixels need more than \a memoryLeft, from which they are subtracted.
QImage firstBitmap(QByteArrayView bytes, qint64 &memoryLeft);

} // namespace EnhancedMetafile
