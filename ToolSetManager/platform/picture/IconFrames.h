#pragma once

#include <QByteArrayView>
#include <QImage>

#include <vector>

/// One of the pictures of an icon, as the icon's directory describes it.
struct IconFrame
{
    int size = 0; ///< The longer side in pixels.
    int bitsPerPixel = 0; ///< 0 when the directory does not tell.
    quint32 place = 0; ///< In a program file the number of the resource, else the offset.
    quint32 bytes = 0;
};

/// An icon is a directory of frames, the same drawing in several sizes and depths. Directories
/// stand in icon and cursor files and, as a resource, in program files.
namespace IconFrames {

enum class Directory { Resource, File };

constexpr int largestSide = 1024; ///< Of a frame; one that claims more is not read.
constexpr qint64 mostBytes = 16 << 20; ///< Of a frame.

/// The frames in the order of the directory; none when it is no directory of icons (\a bytes of a
/// file may be one of cursors, too). A directory that is cut off ends earlier, and frames behind
/// the 256th are passed over.
std::vector<IconFrame> read(QByteArrayView bytes, Directory kind);

/// Bits of a pixel that the frame itself tells; 0 when it is no frame.
int depth(QByteArrayView frame);

/// Puts the frames that serve best for \a wanted pixels first: that size itself, else the next
/// larger, else the next smaller one; of one size the deepest.
void sortByFitness(std::vector<IconFrame> &frames, int wanted);

/// True when the bytes start as a frame does whose size can be read; costs no decoding.
bool plausible(QByteArrayView frame);

/// A frame: a bitmap with its mask, or a PNG. Format_ARGB32 with straight alpha; null when it
/// cannot be read or is larger than it may be (`largestSide`, or \a memory bytes decoded).
QImage decode(QByteArrayView frame, qint64 memory = qint64(largestSide) * largestSide * 4);

} // namespace IconFrames
