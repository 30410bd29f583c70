#pragma once

#include "platform/picture/EmfState.h"

#include <QPainterPath>

/// The lines and areas of enhanced metafiles as paths.
namespace EmfShapes {

struct Shape
{
    QPainterPath path {}; ///< In pixels of the picture.
    bool area = false; ///< Has an inside to fill.
    bool continues = false; ///< Starts at the current position, which it moved to its end.
};

/// The shape of a record; an empty one for records that draw none.
Shape read(const EmfRecord &record, EmfState &state);

/// The rectangles of a region, which takes \a bytes; \a transform maps them to pixels.
QRegion region(QByteArrayView bytes, const QTransform &transform, const QRegion &everything);

/// A rectangle of logical coordinates, in pixels.
QPainterPath rectangle(const QRectF &logical, const EmfState &state);

} // namespace EmfShapes
