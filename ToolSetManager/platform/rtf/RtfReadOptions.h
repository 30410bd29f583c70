#pragma once

#include "platform/rtf/RtfPicture.h"

/// What a reader of rich text has to know from outside the text.
struct RtfReadOptions
{
    /// Plays metafiles; without it only those are shown that paint a bitmap.
    RtfPicture::MetafileDecoder metafileDecoder;
    /// Number of the code page of texts that do not tell theirs: that of the system.
    int defaultCodePage = 1252;
    /// Bytes for decoded pictures; 0 for a limit by the size of the text. Pictures beyond it are
    /// shown as a frame and are kept all the same.
    qint64 pictureMemory = 0;
};
