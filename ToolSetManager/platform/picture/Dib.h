#pragma once

#include <QByteArrayView>
#include <QImage>

#include <array>
#include <limits>
#include <optional>

/// Device-independent bitmaps: the header, colours and pixels that bitmap files, icons and
/// metafiles have in common.
///
/// Read are 1, 2, 4, 8, 16, 24 and 32 bits, run lengths (4 and 8 bits), channel masks, bottom-up
/// and top-down rows, and the headers of OS/2 and of all ages of Windows.
namespace Dib {

/// What a header says, checked as far as it can be without the pixels.
struct Header
{
    enum Compression : quint32 { Plain = 0, Rle8 = 1, Rle4 = 2, Masks = 3 };

    int width = 0; ///< 1..65535
    int height = 0; ///< 1..65535; of an icon: picture and mask together
    bool topDown = false;
    int bitsPerPixel = 0;
    Compression compression = Plain;
    qsizetype colours = 0; ///< Offset of the colour table.
    qsizetype colourCount = 0;
    int colourSize = 4; ///< Bytes of one colour; 3 in the oldest header.
    std::array<quint32, 4> masks {}; ///< Red, green, blue, alpha; for 16 and 32 bits.

    /// Where the pixels start when nothing else tells it.
    qsizetype endOfColours() const { return colours + colourCount * colourSize; }
    bool runLengths() const { return compression == Rle8 || compression == Rle4; }
    static qint64 stride(qint64 width, int bitsPerPixel)
    {
        return (width * bitsPerPixel + 31) / 32 * 4;
    }
    /// Bytes of pixels without run lengths.
    qint64 pixelBytes() const { return stride(width, bitsPerPixel) * height; }
    /// Bytes of the decoded picture at its full size.
    qint64 decodedBytes() const { return qint64(width) * height * 4; }
    /// Its size when no side may be longer than that.
    QSize sizeWithin(int longestSide) const;
};

/// The header at the start of \a bytes; empty when it is none, or of a kind that is not read.
std::optional<Header> header(QByteArrayView bytes);

/// The bitmap at the start of \a bytes, whose pixels start at offset \a pixels. Opaque unless the
/// header has a mask for alpha. Null when the pixels are cut off; run lengths may end early, what
/// they leave out has the first colour.
///
/// One with a side longer than \a longestSide is scaled down, by a whole number, while it is
/// decoded: it never takes more memory than the smaller picture.
QImage decode(QByteArrayView bytes, const Header &header, qsizetype pixels,
    int longestSide = std::numeric_limits<int>::max());

/// The bitmap of an icon: picture and below it, one bit a pixel, the mask of what shows through.
/// 32 bits carry their own alpha, unless it is 0 everywhere; then the mask counts. Where an icon
/// inverts what is below it, the picture has what that gives on button grey (192, 192, 192).
/// Format_ARGB32, or null.
QImage decodeIcon(QByteArrayView bytes, const Header &header);

} // namespace Dib
