#pragma once

#include "platform/picture/LittleEndian.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QColor>
#include <QPoint>
#include <QRect>
#include <QSizeF>

#include <optional>

/// One record of an enhanced metafile: a type, a size and parameters, seen as a view of the file.
/// Whatever lies beyond the end of the record reads as 0 or as empty.
struct EmfRecord
{
    enum Type : quint32 {
        Header = 1,
        PolyBezier = 2,
        Polygon = 3,
        Polyline = 4,
        PolyBezierTo = 5,
        PolylineTo = 6,
        PolyPolyline = 7,
        PolyPolygon = 8,
        SetWindowExtent = 9,
        SetWindowOrigin = 10,
        SetViewportExtent = 11,
        SetViewportOrigin = 12,
        EndOfFile = 14,
        SetPixel = 15,
        SetMapMode = 17,
        SetBackgroundMode = 18,
        SetPolyFillMode = 19,
        SetRop2 = 20,
        SetTextAlign = 22,
        SetTextColour = 24,
        SetBackgroundColour = 25,
        OffsetClipRegion = 26,
        MoveTo = 27,
        SetMetaRegion = 28,
        ExcludeClipRect = 29,
        IntersectClipRect = 30,
        ScaleViewportExtent = 31,
        ScaleWindowExtent = 32,
        SaveState = 33,
        RestoreState = 34,
        SetWorldTransform = 35,
        ModifyWorldTransform = 36,
        SelectObject = 37,
        CreatePen = 38,
        CreateBrush = 39,
        DeleteObject = 40,
        AngleArc = 41,
        Ellipse = 42,
        Rectangle = 43,
        RoundRect = 44,
        Arc = 45,
        Chord = 46,
        Pie = 47,
        LineTo = 54,
        ArcTo = 55,
        PolyDraw = 56,
        SetArcDirection = 57,
        SetMiterLimit = 58,
        BeginPath = 59,
        EndPath = 60,
        CloseFigure = 61,
        FillPath = 62,
        StrokeAndFillPath = 63,
        StrokePath = 64,
        SelectClipPath = 67,
        AbortPath = 68,
        FillRegion = 71,
        FrameRegion = 72,
        InvertRegion = 73,
        PaintRegion = 74,
        SelectClipRegion = 75,
        BitBlt = 76,
        StretchBlt = 77,
        MaskBlt = 78,
        PlgBlt = 79,
        SetDibToDevice = 80,
        StretchDib = 81,
        CreateFont = 82,
        TextOutA = 83,
        TextOutW = 84,
        PolyBezier16 = 85,
        Polygon16 = 86,
        Polyline16 = 87,
        PolyBezierTo16 = 88,
        PolylineTo16 = 89,
        PolyPolyline16 = 90,
        PolyPolygon16 = 91,
        PolyDraw16 = 92,
        CreateMonoBrush = 93,
        CreatePatternBrush = 94,
        CreateExtendedPen = 95,
        SmallTextOut = 108,
        AlphaBlend = 114,
        TransparentBlt = 116,
        GradientFill = 118
    };

    quint32 type = 0;
    QByteArrayView bytes; ///< With type and size.

    template <class T>
    T at(qsizetype offset) const
    {
        return LittleEndian::at<T>(bytes, offset);
    }
    qint32 number(qsizetype offset) const { return at<qint32>(offset); }
    quint32 count(qsizetype offset) const { return at<quint32>(offset); }
    QPoint point(qsizetype offset) const { return {number(offset), number(offset + 4)}; }
    /// 0 for what is not a finite number.
    double real(qsizetype offset) const;
    QColor colour(qsizetype offset) const;
    /// Left, top, right and bottom, in this order, as a rectangle of right - left by bottom - top.
    QRectF rectangle(qsizetype offset) const;
    /// The part whose offset and size stand at \a field and behind it; empty when it is not inside.
    QByteArrayView part(qsizetype field) const;
};

/// What the header of an enhanced metafile says.
struct EmfHeader
{
    QRectF bounds; ///< Of what is drawn, in pixels of the device.
    QRectF frame; ///< Of the picture, in hundredths of a millimetre.
    QSizeF device; ///< What the file was recorded for, in pixels ...
    QSizeF millimetres; ///< ... and its size. Neither is ever empty.
    int objects = 0;

    /// The frame in pixels of the device; the bounds where it is empty.
    QRectF frameOnDevice() const;

    static bool recognises(QByteArrayView metafile);
    static std::optional<EmfHeader> read(QByteArrayView metafile);
};

/// Goes through the records of an enhanced metafile.
class EmfReader
{
public:
    explicit EmfReader(QByteArrayView metafile)
        : m_rest(metafile)
    {
    }

    /// Empty at the end, and where the next record is cut off.
    std::optional<EmfRecord> next();

private:
    QByteArrayView m_rest;
};
