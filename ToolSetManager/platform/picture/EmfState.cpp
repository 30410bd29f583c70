#include "platform/picture/EmfState.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr int maximumRectangles = 4096; // of a clip region
constexpr qsizetype maximumPaths = 8;

double quotient(double a, double b)
{
    return b == 0 ? 1 : a / b;
}

} // namespace

void EmfClip::combine(const QRegion &other, int mode, const QRegion &everything)
{
    switch (mode) {
    case And:
        region &= other;
        break;
    case Or:
        region |= other;
        break;
    case Xor:
        region ^= other;
        break;
    case Diff:
        region -= other;
        break;
    default:
        region = other;
        break;
    }
    if (mode != And && mode != Diff)
        paths.clear();
    region &= everything;
    if (region.rectCount() > maximumRectangles)
        region = region.boundingRect();
}

void EmfClip::combine(const QPainterPath &path, int mode, const QRegion &everything)
{
    if (mode != And && mode != Diff) {
        paths.clear();
        region = everything;
    }
    if (mode == Or || mode == Xor || paths.size() >= maximumPaths)
        return; // rather shows too much
    if (mode == Diff) {
        QPainterPath outside;
        outside.addRect(everything.boundingRect());
        outside.addPath(path);
        outside.setFillRule(Qt::OddEvenFill);
        paths.append(outside);
    } else {
        paths.append(path);
    }
}

EmfState::EmfState(const EmfHeader &header, QSize size)
    : pixelsPerMillimetre(header.device.width() / header.millimetres.width(),
        header.device.height() / header.millimetres.height())
    , everything(QRect({0, 0}, size))
{
    const QRectF frame = header.frameOnDevice();
    deviceFrame = frame.size();
    deviceToPicture = QTransform::fromTranslate(-frame.x(), -frame.y())
        * QTransform::fromScale(
            quotient(size.width(), frame.width()), quotient(size.height(), frame.height()));
    clip.region = everything;
    outerClip.region = everything;
}

QTransform EmfState::page() const
{
    // Units of a millimetre, from the one of 0.1 mm to that of twips.
    static constexpr std::array unitsPerMillimetre {
        10.0, 100.0, 100 / 25.4, 1000 / 25.4, 1440 / 25.4};
    double x = 1;
    double y = 1;
    if (mapMode >= LowMetric && mapMode <= Twips) {
        const double units = unitsPerMillimetre[static_cast<std::size_t>(mapMode - LowMetric)];
        x = pixelsPerMillimetre.width() / units;
        y = -pixelsPerMillimetre.height() / units;
    } else if (mapMode == Isotropic || mapMode == Anisotropic) {
        const QSizeF viewport =
            viewportSet || windowExtent == QSizeF(1, 1) ? viewportExtent : deviceFrame;
        x = quotient(viewport.width(), windowExtent.width());
        y = quotient(viewport.height(), windowExtent.height());
        if (mapMode == Isotropic) {
            const double smaller = std::min(std::abs(x), std::abs(y));
            x = std::copysign(smaller, x);
            y = std::copysign(smaller, y);
        }
    }
    return {x, 0, 0, y, viewportOrigin.x() - windowOrigin.x() * x,
        viewportOrigin.y() - windowOrigin.y() * y};
}

QTransform EmfState::toPicture() const
{
    return world * page() * deviceToPicture;
}

QPointF EmfState::bounded(QPointF pixel)
{
    constexpr double farthest = 1 << 18;
    const auto near = [&](double value) {
        return std::isfinite(value) ? std::clamp(value, -farthest, farthest) : 0.0;
    };
    return {near(pixel.x()), near(pixel.y())};
}

QPointF EmfState::map(QPointF logical) const
{
    return bounded(toPicture().map(logical));
}

double EmfState::scale() const
{
    const double area = std::abs(toPicture().determinant());
    return std::isfinite(area) ? std::sqrt(area) : 1;
}
