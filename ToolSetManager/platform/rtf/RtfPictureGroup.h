#pragma once

#include "platform/rtf/RtfPicture.h"

#include <optional>

class RtfTokenizer;

/// The group of words and bytes that stands for a picture in a rich text.
namespace RtfPictureGroup {

/// Takes the rest of a `\pict` group. Empty when there is no picture in it, or one whose kind
/// neither the text nor its bytes show.
std::optional<RtfPicture> read(RtfTokenizer &tokenizer);

} // namespace RtfPictureGroup
