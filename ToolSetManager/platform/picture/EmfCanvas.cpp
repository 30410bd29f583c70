#include "platform/picture/EmfCanvas.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double maximumForOne = 8e6; // of the work
constexpr int maximumDashedSide = 20000; // pixels

QTransform deviceScale(const EmfState &state)
{
    return QTransform::fromScale(
        std::max(1.0, state.deviceToPicture.m11()), std::max(1.0, state.deviceToPicture.m22()));
}

/// A hatch as an image: the painter scales no other patterns.
QImage hatchTile(const EmfBrush &brush)
{
    QImage tile(8, 8, QImage::Format_ARGB32_Premultiplied);
    tile.fill(Qt::transparent);
    QPainter(&tile).fillRect(tile.rect(), QBrush(brush.colour, brush.style));
    return tile;
}

/// The pen in pixels of the picture, never thinner than one.
QPen penFor(const EmfState &state)
{
    QPen pen = state.pen.pen;
    const QTransform &device = state.deviceToPicture;
    const double devicePixel = (device.m11() + device.m22()) / 2;
    double width = pen.widthF() * (state.pen.cosmetic ? devicePixel : state.scale());
    if (pen.widthF() == 0)
        width = devicePixel;
    constexpr double widest = 1 << 14;
    pen.setWidthF(std::clamp(width, 1.0, widest));
    pen.setMiterLimit(state.miterLimit);
    return pen;
}

} // namespace

EmfCanvas::EmfCanvas(QImage &image)
    : m_image(image)
    , m_painter(&image)
{
    m_timer.start();
}

bool EmfCanvas::spend(double work)
{
    if (!canContinue() || !(work <= maximumForOne))
        return false;
    m_work += work + 1;
    return canContinue();
}

/// Filling takes a step for each edge in each row of pixels, and more where a row has many of them,
/// because they are sorted.
bool EmfCanvas::spendOn(const QPainterPath &path, double edges)
{
    constexpr double forPoint = 10;
    constexpr double cheapInRow = 50;
    const double height = m_image.height();
    double steps = 0;
    double last = 0;
    for (int i = 0; i < path.elementCount(); ++i) {
        const double y = std::clamp(path.elementAt(i).y, 0.0, height);
        steps += edges * std::abs(y - last);
        last = y;
    }
    return spend(path.elementCount() * forPoint + steps * (1 + steps / height / cheapInRow));
}

QPainter &EmfCanvas::painter(const EmfState &state)
{
    m_drawn = true;
    m_painter.resetTransform();
    m_painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    m_painter.setRenderHints(
        QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    if (m_clip && *m_clip == state.clip && m_outerClip == state.outerClip)
        return m_painter;
    m_clip = state.clip;
    m_outerClip = state.outerClip;
    m_painter.setClipRegion(state.clip.region & state.outerClip.region);
    for (const EmfClip &clip : {state.outerClip, state.clip}) {
        for (const QPainterPath &path : clip.paths) {
            if (spendOn(path))
                m_painter.setClipPath(path, Qt::IntersectClip);
        }
    }
    return m_painter;
}

/// Sets one of the sixteen ways to combine what is drawn with what is there.
void EmfCanvas::setMode(int rop2)
{
    using P = QPainter;
    static constexpr std::array modes {P::RasterOp_ClearDestination,
        P::RasterOp_NotSourceAndNotDestination, P::RasterOp_NotSourceAndDestination,
        P::RasterOp_NotSource, P::RasterOp_SourceAndNotDestination, P::RasterOp_NotDestination,
        P::RasterOp_SourceXorDestination, P::RasterOp_NotSourceOrNotDestination,
        P::RasterOp_SourceAndDestination, P::RasterOp_NotSourceXorDestination,
        P::CompositionMode_Destination, P::RasterOp_NotSourceOrDestination,
        P::CompositionMode_SourceOver, P::RasterOp_SourceOrNotDestination,
        P::RasterOp_SourceOrDestination, P::RasterOp_SetDestination};
    if (rop2 < 1 || rop2 > int(modes.size()) || rop2 == EmfState::CopyPen)
        return;
    m_painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform, false);
    m_painter.setCompositionMode(modes[static_cast<std::size_t>(rop2 - 1)]);
}

void EmfCanvas::fillWith(const QPainterPath &path, const EmfState &state, const QBrush &brush)
{
    QPainterPath filled = path;
    filled.setFillRule(state.fillRule);
    painter(state);
    setMode(state.rop2);
    m_painter.fillPath(filled, brush);
}

void EmfCanvas::fillPlain(const QPainterPath &path, const EmfState &state, const QColor &colour)
{
    if (spendOn(path))
        fillWith(path, state, colour);
}

void EmfCanvas::fill(const QPainterPath &path, const EmfState &state)
{
    if (state.brush.style == Qt::NoBrush || !spendOn(path))
        return;
    const bool hatched =
        state.brush.style != Qt::SolidPattern && state.brush.style != Qt::TexturePattern;
    QBrush brush(state.brush.colour);
    if (state.brush.style == Qt::TexturePattern)
        brush = QBrush(state.brush.texture);
    else if (hatched)
        brush = QBrush(hatchTile(state.brush));
    if (hatched && state.opaque)
        fillWith(path, state, state.background);
    brush.setTransform(deviceScale(state));
    fillWith(path, state, brush);
}

void EmfCanvas::stroke(const QPainterPath &path, const EmfState &state)
{
    if (state.pen.pen.style() == Qt::NoPen || !spendOn(path, 2))
        return;
    QPen pen = penFor(state);
    // The longest lines would have millions of dashes.
    const QRectF bounds = path.controlPointRect();
    if (bounds.width() > maximumDashedSide || bounds.height() > maximumDashedSide
        || (pen.style() != Qt::SolidLine && !spend(path.elementCount() * 1000.0)))
        pen.setStyle(Qt::SolidLine);
    painter(state);
    setMode(state.rop2);
    // A line of the device runs through the centres of its pixels.
    m_painter.translate(state.deviceToPicture.m11() / 2, state.deviceToPicture.m22() / 2);
    m_painter.strokePath(path, pen);
}

void EmfCanvas::drawImage(const QImage &image, const QRectF &source, const QPolygonF &corners,
    const EmfState &state, int rop2)
{
    const QRectF inside = source & QRectF(image.rect());
    if (corners.size() != 3 || inside.isEmpty()
        || !spend(
            image.sizeInBytes() / bytesForOne + inside.width() * inside.height() / bytesForOne))
        return;
    const QPointF right = (corners[1] - corners[0]) / source.width();
    const QPointF down = (corners[2] - corners[0]) / source.height();
    const double sideX = std::hypot(right.x(), right.y());
    const double sideY = std::hypot(down.x(), down.y());
    if (sideX == 0 || sideY == 0)
        return;
    // Much smaller pictures are averaged first. That keeps the scale moderate, too.
    const auto steps = [](double length, double scale) {
        return scale < 0.5 ? std::max(1, qRound(length * scale)) : qRound(length);
    };
    QImage part = image.copy(inside.toAlignedRect());
    const QSize size(steps(part.width(), sideX), steps(part.height(), sideY));
    const QPointF origin = corners[0] + right * (inside.toAlignedRect().x() - source.x())
        + down * (inside.toAlignedRect().y() - source.y());
    const QTransform transform = QTransform::fromScale(double(part.width()) / size.width(),
                                     double(part.height()) / size.height())
        * QTransform(right.x(), right.y(), down.x(), down.y(), origin.x(), origin.y());
    if (size != part.size())
        part = part.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    painter(state);
    setMode(rop2);
    // Only what shows: a huge scale would overflow the painter's fixed-point numbers.
    const QRectF shown =
        transform.inverted().mapRect(rectangle().adjusted(-2, -2, 2, 2)) & QRectF(part.rect());
    const QRect pixels = shown.toAlignedRect() & part.rect();
    if (pixels.isEmpty())
        return;
    // Enlarged pixels stay squares, as the device has them.
    if (std::min(sideX, sideY) >= 2)
        m_painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    m_painter.setTransform(transform);
    m_painter.drawImage(pixels.topLeft(), part, pixels);
}
