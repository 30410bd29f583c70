#pragma once

#include "platform/picture/EmfCanvas.h"

/// The text of enhanced metafiles.
namespace EmfText {

/// Draws the text of a record; moves the current position where the alignment asks for it.
void draw(const EmfRecord &record, EmfState &state, EmfCanvas &canvas);

} // namespace EmfText
