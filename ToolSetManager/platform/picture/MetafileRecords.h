#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <initializer_list>
#include <vector>

/// Windows metafiles as bytes: a header, then records of a size, a function and parameters, both
/// counted in words of 16 bits. A placeable one has another header in front, which tells its frame.
namespace MetafileRecords {

constexpr quint32 placeableMark = 0x9AC6CDD7;
constexpr qsizetype placeableSize = 22;
constexpr qsizetype headerSize = 18;
constexpr qsizetype recordSize = 6; ///< Without parameters.

constexpr quint32 copyPixels = 0x00CC0020; ///< Raster operation.
constexpr int anisotropic = 8; ///< Mapping mode: each direction has a scale of its own.
constexpr int firstUpwards = 2; ///< The mapping modes of fixed units, whose vertical axis
constexpr int lastUpwards = 6; ///< goes upwards.

/// The functions that matter here.
enum Function : quint16 {
    EndOfFile = 0x0000,
    SetMapMode = 0x0103,
    SetStretchMode = 0x0107,
    SetWindowOrg = 0x020B,
    SetWindowExt = 0x020C,
    SetViewportOrg = 0x020D,
    SetViewportExt = 0x020E,
    OffsetViewportOrg = 0x0211,
    ScaleViewportExt = 0x0412,
    ExcludeClipRect = 0x0415,
    IntersectClipRect = 0x0416,
    Ellipse = 0x0418,
    Rectangle = 0x041B,
    RoundRect = 0x061C,
    Escape = 0x0626,
    Arc = 0x0817,
    Pie = 0x081A,
    Chord = 0x0830,
    DibBitBlt = 0x0940,
    DibStretchBlt = 0x0B41,
    SetDibToDevice = 0x0D33,
    StretchDib = 0x0F43
};

/// Views of the metafile's bytes.
struct Record
{
    quint16 function = 0;
    QByteArrayView parameters; ///< In reverse order.
    QByteArrayView all; ///< With size and function.
};

/// The records behind the header, without the end. False when one is cut off or the end is missing;
/// those before it are there all the same.
bool read(QByteArrayView bytes, std::vector<Record> &records);

/// The bitmap (header, colours, pixels) of a record that paints one; empty for others.
QByteArrayView bitmap(const Record &record);

/// Writes a record; \a data stands behind the words.
void append(QByteArray &bytes, quint16 function, std::initializer_list<int> words,
    QByteArrayView data = {});

} // namespace MetafileRecords
