#pragma once

#include <QColor>

/// Backgrounds for what differs, of the light or the dark colours that the program has. Only an
/// addition: what they say is always there in words or in the form of the letters, too.
namespace Tint {

enum Kind { Changed, OnlyLeft, OnlyRight, Conflict };

QColor of(Kind kind);

} // namespace Tint
