#pragma once

#include "platform/picture/EmfRecords.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QList>
#include <QPainterPath>
#include <QPen>
#include <QRegion>
#include <QTransform>

/// The pen of an enhanced metafile. A null pen draws nothing.
struct EmfPen
{
    QPen pen {Qt::black, 0}; ///< Its width in logical units; 0 is one pixel of the device.
    bool cosmetic = false; ///< The width is in pixels of the device.
};

struct EmfBrush
{
    Qt::BrushStyle style = Qt::SolidPattern; ///< TexturePattern for an image.
    QColor colour = Qt::white;
    QImage texture {};
};

struct EmfFont
{
    QString family {};
    int height =
        0; ///< Logical units: positive for the cell, negative for the letters; 0 for usual.
    int width = 0; ///< Of an average letter; 0 for the font's own.
    int escapement = 0; ///< Tenths of a degree, anticlockwise.
    int weight = QFont::Normal;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
};

/// Where drawing is allowed, in pixels of the picture: inside of the region and of each path.
struct EmfClip
{
    enum Mode { And = 1, Or = 2, Xor = 3, Diff = 4, Copy = 5 };

    QRegion region {};
    QList<QPainterPath> paths {};

    bool operator==(const EmfClip &) const = default;

    void combine(const QRegion &other, int mode, const QRegion &everything);
    void combine(const QPainterPath &path, int mode, const QRegion &everything);
};

/// What the records of an enhanced metafile set and later ones use, saved and restored as one.
/// Maps logical coordinates by way of the world transform, the window and the viewport to the
/// device that the file was recorded for, and from there to the pixels of the picture.
struct EmfState
{
    enum MapMode { Text = 1, LowMetric = 2, Twips = 6, Isotropic = 7, Anisotropic = 8 };
    enum { BackgroundTransparent = 1, CopyPen = 13 };

    /// Draws the frame of the metafile over a picture of \a size.
    EmfState(const EmfHeader &header, QSize size);

    // --- Mapping ---
    int mapMode = Text;
    QPointF windowOrigin {0, 0};
    QSizeF windowExtent {1, 1};
    QPointF viewportOrigin {0, 0};
    QSizeF viewportExtent {1, 1};
    QTransform world {};
    bool viewportSet = false; ///< Otherwise the window is mapped to the frame.

    // --- Tools and modes ---
    EmfPen pen {};
    EmfBrush brush {};
    EmfFont font {};
    QColor textColour = Qt::black;
    QColor background = Qt::white;
    bool opaque = true; ///< Gaps of text and hatches show the background colour.
    Qt::FillRule fillRule = Qt::OddEvenFill;
    int rop2 = CopyPen;
    quint32 textAlign = 0;
    bool clockwise = false; ///< Direction of arcs.
    double miterLimit = 10;
    QPointF position {0, 0}; ///< Logical.
    EmfClip clip;
    EmfClip outerClip; ///< Of a SetMetaRgn: what no later selection widens.

    /// From logical coordinates to pixels of the picture.
    QTransform toPicture() const;
    /// As toPicture(), with coordinates far outside of the picture moved nearer to it.
    QPointF map(QPointF logical) const;
    static QPointF bounded(QPointF pixel);
    /// Pixels of the picture in a logical unit, as an average of both directions.
    double scale() const;

    // --- The device ---
    QTransform deviceToPicture; ///< Without rotation.
    QSizeF pixelsPerMillimetre; ///< Of the device.
    QSizeF deviceFrame;
    QRegion everything; ///< The picture.

private:
    QTransform page() const;
};
