#pragma once

#include "platform/rtf/RtfState.h"

#include <QString>

#include <optional>

class RtfTokenizer;

/// The fields of a word processor that are text even where no result of theirs is kept.
namespace RtfField {

struct Symbol
{
    int code = 0; ///< In the font, or in Unicode.
    bool isUnicode = false;
    QString family; ///< Empty: that of the text around it.
    RtfCharState look;
};

/// Reads the rest of the group of a field's instruction: `SYMBOL 74 \f "Wingdings" \s 12` is a
/// character. Empty for all other fields. \a look is that of the text around it.
std::optional<Symbol> read(RtfTokenizer &tokenizer, const RtfCharState &look);

} // namespace RtfField
