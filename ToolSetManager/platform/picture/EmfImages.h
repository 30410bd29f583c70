#pragma once

#include "platform/picture/EmfCanvas.h"

/// The bitmaps, raster operations and colour gradients of enhanced metafiles.
namespace EmfImages {

/// Draws what a record of one of these kinds shows; does nothing for others.
void draw(const EmfRecord &record, const EmfState &state, EmfCanvas &canvas);

} // namespace EmfImages
