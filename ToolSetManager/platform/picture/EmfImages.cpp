#include "platform/picture/EmfImages.h"

#include "platform/picture/EmfBitmap.h"
#include "platform/picture/EmfShapes.h"

#include <QLinearGradient>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr qint64 maximumBytes = 64 << 20; // of a decoded bitmap

/// A raster operation combines the bitmap, the brush and what is there. It is read as one of the
/// sixteen that know only one of the first two.
struct RasterOperation
{
    explicit RasterOperation(quint32 code)
    {
        const int operation = (code >> 16) & 0xFF;
        const bool withoutBrush = (operation >> 4) == (operation & 0xF);
        withoutBitmap = ((operation >> 2) & 0x33) == (operation & 0x33);
        if (withoutBitmap)
            rop2 = ((operation & 3) | ((operation >> 4) & 3) << 2) + 1;
        else if (withoutBrush)
            rop2 = (operation & 0xF) + 1;
    }

    int rop2 = EmfState::CopyPen;
    bool withoutBitmap = false;
};

QPolygonF corners(const QRectF &logical, const EmfState &state)
{
    return {{state.map(logical.topLeft()), state.map(logical.topRight()),
        state.map(logical.bottomLeft())}};
}

void fillTarget(const QRectF &target, int rop2, const EmfState &state, EmfCanvas &canvas)
{
    enum { Black = 1, Invert = 6, White = 16 };
    EmfState combined = state;
    combined.rop2 = rop2;
    if (rop2 == Black || rop2 == Invert || rop2 == White)
        combined.brush = {}; // any will do
    canvas.fill(EmfShapes::rectangle(target, state), combined);
}

QImage withAlpha(const QImage &image, quint32 blend)
{
    const auto constant = static_cast<uint>((blend >> 16) & 0xFF);
    if (constant == 0xFF || image.isNull())
        return image;
    QImage faint(image.size(), QImage::Format_ARGB32_Premultiplied);
    faint.fill(Qt::transparent);
    QPainter painter(&faint);
    painter.setOpacity(constant / 255.0);
    painter.drawImage(0, 0, image);
    return faint;
}

QImage without(const QImage &image, QRgb colour)
{
    QImage result = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < result.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(result.scanLine(y));
        std::replace_if(
            row, row + result.width(),
            [colour](QRgb pixel) { return (pixel & RGB_MASK) == (colour & RGB_MASK); }, 0U);
    }
    return result;
}

/// Only what the monochrome mask has white.
QImage masked(const QImage &image, const QImage &mask, QPoint offset)
{
    QImage result = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < result.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            const QPoint place(x + offset.x(), y + offset.y());
            if (!mask.valid(place) || qGray(mask.pixel(place)) < 128)
                row[x] = 0;
        }
    }
    return result;
}

/// BitBlt and its kin: the target, a raster operation, the place of the source.
void drawBlt(const EmfRecord &record, const EmfState &state, EmfCanvas &canvas)
{
    constexpr qsizetype maskField = 112;
    const bool sized = record.type == EmfRecord::StretchBlt || record.type == EmfRecord::AlphaBlend
        || record.type == EmfRecord::TransparentBlt;
    const bool plain =
        record.type != EmfRecord::AlphaBlend && record.type != EmfRecord::TransparentBlt;
    const QRectF target(record.point(24), QSizeF(record.number(32), record.number(36)));
    const quint32 code = record.count(40);
    const RasterOperation operation(code);
    if (plain && operation.withoutBitmap) {
        fillTarget(target, operation.rop2, state, canvas);
        return;
    }
    const bool alpha = record.type == EmfRecord::AlphaBlend && (code >> 24) != 0;
    QImage image = EmfBitmap::read(record, EmfBitmap::field(record.type), maximumBytes,
        alpha ? EmfBitmap::Premultiplied : EmfBitmap::Ignored);
    if (image.isNull() || !canvas.spend(image.sizeInBytes() / EmfCanvas::bytesForOne))
        return;
    const QTransform source(record.real(52), record.real(56), record.real(60), record.real(64),
        record.real(68), record.real(72));
    const QSizeF size = sized ? QSizeF(record.number(100), record.number(104)) : target.size();
    const QRectF part =
        (source.isInvertible() ? source : QTransform()).mapRect(QRectF(record.point(44), size));
    if (record.type == EmfRecord::AlphaBlend)
        image = withAlpha(image, code);
    else if (record.type == EmfRecord::TransparentBlt)
        image = without(image, record.colour(40).rgb());
    else if (record.type == EmfRecord::MaskBlt) {
        const QImage mask = EmfBitmap::read(record, maskField, maximumBytes);
        if (!mask.isNull())
            image = masked(image, mask, record.point(100) - record.point(44));
    }
    const bool opaque = image.format() == QImage::Format_RGB32;
    canvas.drawImage(image, part, corners(target, state), state,
        plain && opaque ? operation.rop2 : EmfState::CopyPen);
}

void drawParallelogram(const EmfRecord &record, const EmfState &state, EmfCanvas &canvas)
{
    const QImage image = EmfBitmap::read(record, EmfBitmap::field(record.type), maximumBytes);
    const QRectF part(record.point(48), QSizeF(record.number(56), record.number(60)));
    canvas.drawImage(image, part,
        {{state.map(record.point(24)), state.map(record.point(32)), state.map(record.point(40))}},
        state);
}

void drawDib(const EmfRecord &record, const EmfState &state, EmfCanvas &canvas)
{
    const bool stretched = record.type == EmfRecord::StretchDib;
    const QSizeF size(record.number(40), record.number(44));
    const QRectF target(
        record.point(24), stretched ? QSizeF(record.number(72), record.number(76)) : size);
    const RasterOperation operation(stretched ? record.count(68) : 0x00CC0020);
    if (operation.withoutBitmap) {
        fillTarget(target, operation.rop2, state, canvas);
        return;
    }
    const QImage image = EmfBitmap::read(record, EmfBitmap::field(record.type), maximumBytes);
    // Source coordinates count from the bitmap's first row, which is the bottom one in most files.
    const bool topDown = LittleEndian::at<qint32>(record.part(48), 8) < 0;
    const double top =
        topDown ? record.number(36) : double(image.height()) - record.number(36) - size.height();
    canvas.drawImage(image, {QPointF(record.number(32), top), size}, corners(target, state), state,
        operation.rop2);
}

struct Vertex
{
    Vertex(const EmfRecord &record, qsizetype vertices, quint32 count, quint32 index,
        const EmfState &state)
    {
        if (index >= count)
            return;
        const qsizetype offset = vertices + qsizetype(index) * 16;
        logical = record.point(offset);
        pixel = state.map(logical);
        const auto channel = [&](int n) { return record.at<quint16>(offset + 8 + n * 2) >> 8; };
        colour = {channel(0), channel(1), channel(2)};
    }
    QPointF logical;
    QPointF pixel;
    QColor colour;
};

/// Each pixel has the three colours by how near it is to their corners.
void fillTriangle(const std::array<Vertex, 3> &corner, const EmfState &state, EmfCanvas &canvas)
{
    const QPointF a = corner[0].pixel;
    const QPointF b = corner[1].pixel - a;
    const QPointF c = corner[2].pixel - a;
    const double area = b.x() * c.y() - c.x() * b.y();
    const QRect box = QPolygonF({corner[0].pixel, corner[1].pixel, corner[2].pixel})
                          .boundingRect()
                          .intersected(canvas.rectangle())
                          .toAlignedRect();
    if (area == 0 || box.isEmpty() || !canvas.spend(double(box.width()) * box.height()))
        return;
    QImage image(box.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < box.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < box.width(); ++x) {
            const QPointF p = QPointF(box.x() + x + 0.5, box.y() + y + 0.5) - a;
            const double second = (p.x() * c.y() - c.x() * p.y()) / area;
            const double third = (b.x() * p.y() - p.x() * b.y()) / area;
            const double first = 1 - second - third;
            const auto mix = [&](int (QColor::*channel)() const) {
                return int(first * (corner[0].colour.*channel)()
                    + second * (corner[1].colour.*channel)()
                    + third * (corner[2].colour.*channel)());
            };
            const bool inside = first >= 0 && second >= 0 && third >= 0;
            row[x] = inside ? qRgb(mix(&QColor::red), mix(&QColor::green), mix(&QColor::blue)) : 0;
        }
    }
    canvas.painter(state).drawImage(box.topLeft(), image);
}

void fillGradients(const EmfRecord &record, const EmfState &state, EmfCanvas &canvas)
{
    enum Mode { Horizontal, Vertical, Triangles };
    constexpr qsizetype vertices = 36;
    const qint64 room = std::max<qint64>(record.bytes.size() - vertices, 0);
    const auto count = static_cast<quint32>(std::min<qint64>(record.count(24), room / 16));
    const quint32 mode = record.count(32);
    const qsizetype meshes = vertices + qsizetype(count) * 16;
    const qsizetype meshSize = mode == Triangles ? 12 : 8;
    const qint64 meshCount =
        std::min<qint64>(record.count(28), (record.bytes.size() - meshes) / meshSize);
    for (qint64 i = 0; i < meshCount && canvas.canContinue(); ++i) {
        const auto vertex = [&](int n) {
            return Vertex(
                record, vertices, count, record.count(meshes + i * meshSize + n * 4), state);
        };
        if (mode == Triangles) {
            fillTriangle({vertex(0), vertex(1), vertex(2)}, state, canvas);
            continue;
        }
        const Vertex first = vertex(0);
        const Vertex last = vertex(1);
        const QPainterPath path =
            EmfShapes::rectangle(QRectF(first.logical, last.logical).normalized(), state);
        QLinearGradient gradient(first.pixel,
            mode == Horizontal ? QPointF(last.pixel.x(), first.pixel.y())
                               : QPointF(first.pixel.x(), last.pixel.y()));
        gradient.setColorAt(0, first.colour);
        gradient.setColorAt(1, last.colour);
        if (canvas.spend(path.boundingRect().intersected(canvas.rectangle()).height() * 10))
            canvas.painter(state).fillPath(path, gradient);
    }
}

} // namespace

void EmfImages::draw(const EmfRecord &record, const EmfState &state, EmfCanvas &canvas)
{
    switch (record.type) {
    case EmfRecord::BitBlt:
    case EmfRecord::StretchBlt:
    case EmfRecord::MaskBlt:
    case EmfRecord::AlphaBlend:
    case EmfRecord::TransparentBlt:
        drawBlt(record, state, canvas);
        break;
    case EmfRecord::PlgBlt:
        drawParallelogram(record, state, canvas);
        break;
    case EmfRecord::SetDibToDevice:
    case EmfRecord::StretchDib:
        drawDib(record, state, canvas);
        break;
    case EmfRecord::GradientFill:
        fillGradients(record, state, canvas);
        break;
    case EmfRecord::SetPixel: {
        const QRectF pixel(record.point(8), QSizeF(1, 1));
        canvas.fillPlain(EmfShapes::rectangle(pixel, state), state, record.colour(16));
        break;
    }
    default:
        break;
    }
}
