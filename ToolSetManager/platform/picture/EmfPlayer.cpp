#include "platform/picture/EmfPlayer.h"

#include "platform/picture/EmfImages.h"
#include "platform/picture/EmfShapes.h"
#include "platform/picture/EmfText.h"

#include <algorithm>
#include <cmath>
#include <utility>

using R = EmfRecord;

namespace {

constexpr std::size_t maximumSaved = 256;
constexpr int maximumPathPoints = 1'000'000;

QTransform transformOf(const EmfRecord &record)
{
    return {record.real(8), record.real(12), record.real(16), record.real(20), record.real(24),
        record.real(28)};
}

QSizeF scaled(QSizeF extent, const EmfRecord &record)
{
    const auto ratio = [&](qsizetype offset) {
        const double divisor = record.number(offset + 4);
        return divisor == 0 ? 1 : record.number(offset) / divisor;
    };
    const QSizeF result(extent.width() * ratio(8), extent.height() * ratio(16));
    const auto usable = [](double side) { return std::isfinite(side) && side != 0; };
    return usable(result.width()) && usable(result.height()) ? result : extent;
}

} // namespace

EmfPlayer::EmfPlayer(const EmfHeader &header, QImage &image)
    : m_state(header, image.size())
    , m_objects(header.objects)
    , m_canvas(image)
{
}

bool EmfPlayer::play(QByteArrayView metafile)
{
    EmfReader reader(metafile);
    while (const auto record = reader.next()) {
        if (!m_canvas.canContinue())
            break;
        play(*record);
    }
    return m_canvas.hasDrawn();
}

void EmfPlayer::play(const EmfRecord &record)
{
    if (setMapping(record) || setMode(record) || setClip(record) || drawPath(record)
        || drawRegion(record))
        return;
    switch (record.type) {
    case R::SaveState:
        if (m_saved.size() < maximumSaved)
            m_saved.push_back(m_state);
        break;
    case R::RestoreState:
        restore(record.number(8));
        break;
    case R::SelectObject:
        m_objects.select(record.count(8), m_state);
        break;
    case R::DeleteObject:
        m_objects.remove(record.count(8));
        break;
    case R::CreatePen:
    case R::CreateExtendedPen:
    case R::CreateBrush:
    case R::CreateMonoBrush:
    case R::CreatePatternBrush:
    case R::CreateFont:
        m_objects.create(record, m_state);
        break;
    case R::MoveTo:
        m_state.position = record.point(8);
        m_newFigure = true;
        break;
    case R::TextOutA:
    case R::TextOutW:
    case R::SmallTextOut:
        EmfText::draw(record, m_state, m_canvas);
        break;
    default:
        drawShape(record);
        EmfImages::draw(record, m_state, m_canvas);
        break;
    }
}

/// Levels below zero count from the last one, others from the first.
void EmfPlayer::restore(qint32 level)
{
    const auto count = static_cast<qint64>(m_saved.size());
    const qint64 index = level < 0 ? count + level : qint64(level) - 1;
    if (index < 0 || index >= count)
        return;
    const auto found = m_saved.begin() + index;
    m_state = *found;
    m_saved.erase(found, m_saved.end());
}

bool EmfPlayer::setMapping(const EmfRecord &record)
{
    const auto extent = [&](QSizeF &size) {
        if (record.number(8) != 0 && record.number(12) != 0)
            size = QSizeF(record.number(8), record.number(12));
    };
    switch (record.type) {
    case R::SetMapMode:
        m_state.mapMode = record.number(8);
        return true;
    case R::SetWindowOrigin:
        m_state.windowOrigin = record.point(8);
        return true;
    case R::SetWindowExtent:
        extent(m_state.windowExtent);
        return true;
    case R::ScaleWindowExtent:
        m_state.windowExtent = scaled(m_state.windowExtent, record);
        return true;
    case R::SetViewportOrigin:
        m_state.viewportOrigin = record.point(8);
        return true;
    case R::SetViewportExtent:
        extent(m_state.viewportExtent);
        m_state.viewportSet = true;
        return true;
    case R::ScaleViewportExtent:
        m_state.viewportExtent = scaled(m_state.viewportExtent, record);
        return true;
    case R::SetWorldTransform:
        m_state.world = transformOf(record);
        return true;
    case R::ModifyWorldTransform: {
        enum { Identity = 1, Before, After, Set };
        const QTransform change = transformOf(record);
        switch (record.number(32)) {
        case Identity:
            m_state.world = {};
            break;
        case Before:
            m_state.world = change * m_state.world;
            break;
        case After:
            m_state.world = m_state.world * change;
            break;
        case Set:
            m_state.world = change;
            break;
        default:
            break;
        }
        return true;
    }
    default:
        return false;
    }
}

bool EmfPlayer::setMode(const EmfRecord &record)
{
    constexpr int winding = 2;
    constexpr int clockwise = 2;
    switch (record.type) {
    case R::SetBackgroundMode:
        m_state.opaque = record.number(8) != EmfState::BackgroundTransparent;
        return true;
    case R::SetPolyFillMode:
        m_state.fillRule = record.number(8) == winding ? Qt::WindingFill : Qt::OddEvenFill;
        return true;
    case R::SetRop2:
        m_state.rop2 = record.number(8);
        return true;
    case R::SetTextAlign:
        m_state.textAlign = record.count(8);
        return true;
    case R::SetTextColour:
        m_state.textColour = record.colour(8);
        return true;
    case R::SetBackgroundColour:
        m_state.background = record.colour(8);
        return true;
    case R::SetArcDirection:
        m_state.clockwise = record.number(8) == clockwise;
        return true;
    case R::SetMiterLimit:
        m_state.miterLimit = std::clamp(double(record.count(8)), 1.0, 100.0);
        return true;
    default:
        return false;
    }
}

bool EmfPlayer::setClip(const EmfRecord &record)
{
    EmfClip &clip = m_state.clip;
    const QRegion &everything = m_state.everything;
    switch (record.type) {
    case R::IntersectClipRect:
    case R::ExcludeClipRect: {
        const QRectF box =
            EmfShapes::rectangle(record.rectangle(8).normalized(), m_state).boundingRect();
        clip.combine(QRegion(box.toRect()),
            record.type == R::IntersectClipRect ? EmfClip::And : EmfClip::Diff, everything);
        return true;
    }
    case R::OffsetClipRegion: {
        const QPointF offset = m_state.map(record.point(8)) - m_state.map({0, 0});
        clip.region.translate(offset.toPoint());
        for (QPainterPath &path : clip.paths)
            path.translate(offset);
        return true;
    }
    case R::SelectClipRegion: {
        constexpr qsizetype data = 16;
        const int mode = record.number(12);
        const bool none = record.count(8) == 0 || record.bytes.size() <= data;
        if (!none && m_canvas.spend(double(record.bytes.size())))
            clip.combine(
                EmfShapes::region(record.bytes.sliced(data), m_state.deviceToPicture, everything),
                mode, everything);
        else if (mode == EmfClip::Copy)
            clip = {everything};
        return true;
    }
    case R::SelectClipPath:
        clip.combine(takePath(), record.number(8), everything);
        return true;
    case R::SetMetaRegion:
        m_state.outerClip.region &= clip.region;
        for (const QPainterPath &path : clip.paths)
            m_state.outerClip.combine(path, EmfClip::And, everything);
        clip = {everything};
        return true;
    default:
        return false;
    }
}

QPainterPath EmfPlayer::takePath()
{
    m_pathOpen = false;
    QPainterPath path = std::exchange(m_path, {});
    path.setFillRule(m_state.fillRule);
    return path;
}

bool EmfPlayer::drawPath(const EmfRecord &record)
{
    switch (record.type) {
    case R::BeginPath:
        m_path = {};
        m_pathOpen = true;
        m_newFigure = true;
        return true;
    case R::EndPath:
        m_pathOpen = false;
        return true;
    case R::AbortPath:
        takePath();
        return true;
    case R::CloseFigure:
        if (m_pathOpen)
            m_path.closeSubpath();
        m_newFigure = true;
        return true;
    case R::FillPath:
    case R::StrokePath:
    case R::StrokeAndFillPath: {
        const QPainterPath path = takePath();
        if (record.type != R::StrokePath)
            m_canvas.fill(path, m_state);
        if (record.type != R::FillPath)
            m_canvas.stroke(path, m_state);
        return true;
    }
    default:
        return false;
    }
}

bool EmfPlayer::drawRegion(const EmfRecord &record)
{
    const bool withBrush = record.type == R::FillRegion || record.type == R::FrameRegion;
    if (!withBrush && record.type != R::InvertRegion && record.type != R::PaintRegion)
        return false;
    constexpr int invert = 6;
    const qsizetype data = record.type == R::FrameRegion ? 40 : withBrush ? 32 : 28;
    if (record.bytes.size() <= data || !m_canvas.spend(double(record.bytes.size())))
        return true;
    const QRegion region =
        EmfShapes::region(record.bytes.sliced(data), m_state.toPicture(), m_state.everything);
    QPainterPath path;
    path.addRegion(region);
    EmfState state = m_state;
    if (withBrush)
        state.brush = m_objects.brush(record.count(28));
    if (record.type == R::InvertRegion) {
        state.brush = {};
        state.rop2 = invert;
    }
    if (record.type == R::FrameRegion) {
        state.pen = {QPen(state.brush.colour, record.number(32))};
        m_canvas.stroke(path, state);
    } else {
        m_canvas.fill(path, state);
    }
    return true;
}

void EmfPlayer::drawShape(const EmfRecord &record)
{
    const EmfShapes::Shape shape = EmfShapes::read(record, m_state);
    if (shape.path.isEmpty())
        return;
    if (!m_pathOpen) {
        if (shape.area)
            m_canvas.fill(shape.path, m_state);
        m_canvas.stroke(shape.path, m_state);
        return;
    }
    if (m_path.elementCount() + shape.path.elementCount() > maximumPathPoints)
        return;
    if (shape.continues && !m_newFigure)
        m_path.connectPath(shape.path);
    else
        m_path.addPath(shape.path);
    m_newFigure = !shape.continues;
}
