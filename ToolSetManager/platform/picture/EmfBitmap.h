#pragma once

#include "platform/picture/EmfRecords.h"

#include <QImage>

/// The bitmaps inside of the records of enhanced metafiles.
namespace EmfBitmap {

enum Alpha {
    Ignored,
    Premultiplied ///< 32 bits have an alpha channel.
};

/// The bitmap whose header and pixels are told by two pairs of offset and size at \a field; a PNG
/// or JPEG in place of pixels is read, too. Null when there is none, when it cannot be read, or
/// when it needs more than \a memory bytes.
QImage read(const EmfRecord &record, qsizetype field, qint64 memory, Alpha alpha = Ignored);

/// Of a record that draws one: the \a field of read(); -1 for others.
qsizetype field(quint32 type);

} // namespace EmfBitmap
