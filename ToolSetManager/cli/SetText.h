#pragma once

#include "model/CVBATools.h"

class RtfPlainText;

/// Tools and sets as text, one fact on each line: equal tools give equal text.
namespace SetText {

/// What a set has of its own.
QString ofSet(const CVBATools &tools, RtfPlainText &plainText);
/// \a position is written when it is above 0.
QString ofTool(const CVBATool &tool, RtfPlainText &plainText, int position = 0);

} // namespace SetText
