#pragma once

#include "model/BmtFormat.h"
#include "model/CVBATool.h"
#include "platform/VbError.h"
#include "platform/text/Twips.h"

#include <vector>

class CodePage;
class PictureBox;
struct ToolSetStorage;

/// Between a tool and its record in a tool set file.
namespace BmtTool {

/// Of the box that renders pictures for the file, both ways.
constexpr Twips pictureBoxSide {275};
/// Pixels. Larger pictures are scaled down while they are decoded: no button, list or dialog shows
/// more, and 1-bit pictures would grow to 32 times their size.
constexpr int longestPictureSide = 512;

/// The tool of a record of a file of that version. Its picture takes what it needs of
/// \a pictureMemory, in bytes. Throws VbError when the picture cannot be decoded or needs more.
ToolPtr decode(const BmtFormat::Record &record, qint16 fileVersion, ToolSetStorage &storage,
    qint64 &pictureMemory);

/// Of a record whose picture cannot be one.
VbError pictureError(const BmtFormat::Record &record, const CodePage &codePage);

// Sizes in the file, in bytes. Each throws VbError when a text cannot be stored: a character
// outside the code page, or more than its count can express.
qint64 storedHeaderSize(const BmtFormat::Header &header, const CodePage &codePage);
qint64 storedSize(const CVBATool &tool, const CodePage &codePage); ///< Without the picture.
qint64 storedPictureSize(PictureBox &ctlPic); ///< Of every tool, as the box renders it.

/// The record of a tool, with the bytes that it points to. The texts must be storable.
class Encoded
{
public:
    /// \a ctlPic renders the picture, which passes through the scratch file.
    Encoded(const CVBATool &tool, ToolSetStorage &storage, PictureBox &ctlPic);
    Encoded(const Encoded &) = delete;
    Encoded &operator=(const Encoded &) = delete;

    const BmtFormat::Record &record() const { return m_record; }

private:
    std::vector<QByteArray> m_texts;
    QByteArray m_picture;
    BmtFormat::Record m_record;
};

} // namespace BmtTool
