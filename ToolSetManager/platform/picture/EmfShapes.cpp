#include "platform/picture/EmfShapes.h"

#include <QtMath>

#include <algorithm>

using EmfShapes::Shape;

namespace {

/// The points of a record: pairs of 32 or of 16 bits, as many as are there.
class Points
{
public:
    Points(const EmfRecord &record, qsizetype offset, quint32 count, bool shortOnes)
        : m_record(record)
        , m_offset(offset)
        , m_short(shortOnes)
        , m_size(std::clamp<qsizetype>((record.bytes.size() - offset) / pointSize(), 0, count))
    {
    }
    qsizetype size() const { return m_size; }
    qsizetype pointSize() const { return m_short ? 4 : 8; }
    QPointF operator[](qsizetype index) const
    {
        const qsizetype offset = m_offset + index * pointSize();
        if (m_short)
            return QPointF(m_record.at<qint16>(offset), m_record.at<qint16>(offset + 2));
        return m_record.point(offset);
    }

private:
    const EmfRecord &m_record;
    qsizetype m_offset;
    bool m_short;
    qsizetype m_size;
};

/// Adds logical points to a path of pixels.
class Tracer
{
public:
    explicit Tracer(const EmfState &state)
        : m_transform(state.toPicture())
    {
    }
    QPointF map(QPointF point) const { return EmfState::bounded(m_transform.map(point)); }
    void move(QPointF point) { path.moveTo(map(point)); }
    void line(QPointF point) { path.lineTo(map(point)); }
    void curve(QPointF a, QPointF b, QPointF c) { path.cubicTo(map(a), map(b), map(c)); }
    void add(const QPainterPath &logical)
    {
        const QPainterPath mapped = m_transform.map(logical);
        for (int i = 0; i < mapped.elementCount(); ++i) {
            const auto at = [&](int n) { return EmfState::bounded(mapped.elementAt(n)); };
            if (mapped.elementAt(i).isMoveTo()) {
                path.moveTo(at(i));
            } else if (mapped.elementAt(i).isLineTo()) {
                path.lineTo(at(i));
            } else if (i + 2 < mapped.elementCount()) {
                path.cubicTo(at(i), at(i + 1), at(i + 2));
                i += 2;
            }
        }
    }
    void lines(const Points &points, qsizetype from, qsizetype to)
    {
        for (qsizetype i = from; i < std::min(to, points.size()); ++i)
            line(points[i]);
    }

    QPainterPath path;

private:
    QTransform m_transform;
};

bool isShort(quint32 type)
{
    return type >= EmfRecord::PolyBezier16 && type <= EmfRecord::PolyDraw16;
}

constexpr qsizetype counts = 24; // behind type, size and bounds

Shape poly(const EmfRecord &record, EmfState &state, bool curves, bool closed, bool continues)
{
    const Points points(record, counts + 4, record.count(counts), isShort(record.type));
    Tracer tracer(state);
    if (points.size() == 0)
        return {};
    qsizetype next = 0;
    tracer.move(continues ? state.position : points[next++]);
    if (curves) {
        for (; next + 2 < points.size(); next += 3)
            tracer.curve(points[next], points[next + 1], points[next + 2]);
    } else {
        tracer.lines(points, next, points.size());
    }
    if (closed)
        tracer.path.closeSubpath();
    if (continues)
        state.position = points[points.size() - 1];
    return {tracer.path, closed, continues};
}

Shape polyPoly(const EmfRecord &record, const EmfState &state, bool closed)
{
    constexpr qsizetype lengths = counts + 8;
    const qsizetype polygons = record.count(counts);
    if (polygons > (record.bytes.size() - lengths) / 4)
        return {};
    const Points points(
        record, lengths + polygons * 4, record.count(counts + 4), isShort(record.type));
    Tracer tracer(state);
    qsizetype start = 0;
    for (qsizetype i = 0; i < polygons && start < points.size(); ++i) {
        const qsizetype length = record.count(lengths + i * 4);
        if (length == 0)
            continue;
        tracer.move(points[start]);
        tracer.lines(points, start + 1, start + length);
        if (closed)
            tracer.path.closeSubpath();
        start += length;
    }
    return {tracer.path, closed};
}

/// Points, and behind them a byte for each that tells how it is reached.
Shape polyDraw(const EmfRecord &record, EmfState &state)
{
    enum : quint8 { Close = 1, Line = 2, Curve = 4, Move = 6 };
    const Points points(record, counts + 4, record.count(counts), isShort(record.type));
    const qsizetype types = counts + 4 + points.size() * points.pointSize();
    Tracer tracer(state);
    tracer.move(state.position);
    for (qsizetype i = 0; i < points.size(); ++i) {
        auto type = record.at<quint8>(types + i);
        if ((type & ~Close) == Move) {
            tracer.move(points[i]);
        } else if ((type & ~Close) == Line) {
            tracer.line(points[i]);
        } else if (i + 2 < points.size()) {
            tracer.curve(points[i], points[i + 1], points[i + 2]);
            i += 2;
            type = record.at<quint8>(types + i);
        }
        if ((type & Close) != 0)
            tracer.path.closeSubpath();
        state.position = points[i];
    }
    return {tracer.path, false, true};
}

/// The part of an ellipse between the directions of two points, as the record has them.
Shape arc(const EmfRecord &record, EmfState &state)
{
    const QRectF box = record.rectangle(8).normalized();
    const auto angle = [&](qsizetype offset) {
        const QPointF away = QPointF(record.point(offset)) - box.center();
        return qRadiansToDegrees(std::atan2(-away.y() * box.width(), away.x() * box.height()));
    };
    const double from = angle(24);
    // Anticlockwise as it is seen: where one axis is reversed that is clockwise in the logical
    // plane.
    const bool reversed = state.toPicture().determinant() < 0;
    const bool backwards = state.clockwise != reversed;
    double sweep = angle(32) - from;
    if (backwards ? sweep >= 0 : sweep <= 0)
        sweep += backwards ? -360 : 360;
    QPainterPath path;
    const bool continues = record.type == EmfRecord::ArcTo;
    if (record.type == EmfRecord::Pie)
        path.moveTo(box.center());
    else if (continues)
        path.moveTo(state.position);
    else
        path.arcMoveTo(box, from);
    path.arcTo(box, from, sweep);
    if (continues)
        state.position = path.currentPosition();
    const bool area = record.type == EmfRecord::Pie || record.type == EmfRecord::Chord;
    if (area)
        path.closeSubpath();
    Tracer tracer(state);
    tracer.add(path);
    return {tracer.path, area, continues};
}

Shape angleArc(const EmfRecord &record, EmfState &state)
{
    const QPointF centre = record.point(8);
    const double radius = record.count(16);
    const double start = record.real(20);
    const double sweep = std::clamp(record.real(24), -360.0, 360.0);
    QPainterPath path(state.position);
    path.arcTo({centre.x() - radius, centre.y() - radius, radius * 2, radius * 2},
        std::fmod(start, 360), sweep);
    state.position = path.currentPosition();
    Tracer tracer(state);
    tracer.add(path);
    return {tracer.path, false, true};
}

Shape box(const EmfRecord &record, const EmfState &state)
{
    const QRectF rectangle = record.rectangle(8).normalized();
    QPainterPath path;
    if (record.type == EmfRecord::Ellipse)
        path.addEllipse(rectangle);
    else if (record.type == EmfRecord::RoundRect)
        path.addRoundedRect(rectangle, std::abs(double(record.number(24))) / 2,
            std::abs(double(record.number(28))) / 2);
    else
        path.addRect(rectangle);
    Tracer tracer(state);
    tracer.add(path);
    tracer.path.closeSubpath();
    return {tracer.path, true};
}

Shape lineTo(const EmfRecord &record, EmfState &state)
{
    Tracer tracer(state);
    tracer.move(state.position);
    state.position = record.point(8);
    tracer.line(state.position);
    return {tracer.path, false, true};
}

} // namespace

namespace EmfShapes {

Shape read(const EmfRecord &record, EmfState &state)
{
    using R = EmfRecord;
    switch (record.type) {
    case R::PolyBezier:
    case R::PolyBezier16:
        return poly(record, state, true, false, false);
    case R::Polygon:
    case R::Polygon16:
        return poly(record, state, false, true, false);
    case R::Polyline:
    case R::Polyline16:
        return poly(record, state, false, false, false);
    case R::PolyBezierTo:
    case R::PolyBezierTo16:
        return poly(record, state, true, false, true);
    case R::PolylineTo:
    case R::PolylineTo16:
        return poly(record, state, false, false, true);
    case R::PolyPolyline:
    case R::PolyPolyline16:
        return polyPoly(record, state, false);
    case R::PolyPolygon:
    case R::PolyPolygon16:
        return polyPoly(record, state, true);
    case R::PolyDraw:
    case R::PolyDraw16:
        return polyDraw(record, state);
    case R::LineTo:
        return lineTo(record, state);
    case R::AngleArc:
        return angleArc(record, state);
    case R::Arc:
    case R::ArcTo:
    case R::Chord:
    case R::Pie:
        return arc(record, state);
    case R::Ellipse:
    case R::Rectangle:
    case R::RoundRect:
        return box(record, state);
    default:
        return {};
    }
}

QRegion region(QByteArrayView bytes, const QTransform &transform, const QRegion &everything)
{
    constexpr qsizetype headerSize = 32;
    constexpr qsizetype rectangleSize = 16;
    constexpr qsizetype maximumRectangles = 4096;
    const EmfRecord data {0, bytes};
    const qsizetype count = std::min<qsizetype>(
        data.count(8), std::max<qsizetype>(bytes.size() - headerSize, 0) / rectangleSize);
    const auto mapped = [&](qsizetype offset) {
        const QRectF box = transform.mapRect(data.rectangle(offset));
        return QRectF(EmfState::bounded(box.topLeft()), EmfState::bounded(box.bottomRight()))
                   .toRect()
            & everything.boundingRect();
    };
    if (count > maximumRectangles)
        return mapped(16); // the box around them
    QRegion region;
    for (qsizetype i = 0; i < count; ++i)
        region |= mapped(headerSize + i * rectangleSize);
    return region;
}

QPainterPath rectangle(const QRectF &logical, const EmfState &state)
{
    Tracer tracer(state);
    QPainterPath path;
    path.addRect(logical);
    tracer.add(path);
    tracer.path.closeSubpath();
    return tracer.path;
}

} // namespace EmfShapes
