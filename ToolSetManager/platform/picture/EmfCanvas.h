#pragma once

#include "platform/picture/EmfState.h"

#include <QElapsedTimer>
#include <QPainter>

/// The picture that an enhanced metafile is drawn on, with a limit to the work: what the file asks
/// for beyond it is left out.
class EmfCanvas
{
public:
    explicit EmfCanvas(QImage &image);

    /// False once the limit is reached.
    bool canContinue() const { return m_work < maximumWork && !m_timer.hasExpired(maximumTime); }
    /// True when anything has been drawn, within the picture or outside.
    bool hasDrawn() const { return m_drawn; }

    /// Fills with the brush and strokes with the pen of \a state. The path is in pixels.
    void fill(const QPainterPath &path, const EmfState &state);
    void stroke(const QPainterPath &path, const EmfState &state);
    void fillPlain(const QPainterPath &path, const EmfState &state, const QColor &colour);

    /// Draws the \a source of \a image over the parallelogram (in pixels) of the corners at its top
    /// left, top right and bottom left.
    void drawImage(const QImage &image, const QRectF &source, const QPolygonF &corners,
        const EmfState &state, int rop2 = EmfState::CopyPen);

    /// The painter with the clip of \a state set.
    QPainter &painter(const EmfState &state);
    QRectF rectangle() const { return m_image.rect(); }

    static constexpr double bytesForOne = 32; ///< Of a bitmap, for a unit of work.
    /// Counts work: about a step of an edge to the next row of pixels each. False when it is too
    /// much.
    bool spend(double work);

private:
    static constexpr double maximumWork = 1e8;
    static constexpr qint64 maximumTime = 3000; ///< ms

    /// \a edges are drawn for each line of the path.
    bool spendOn(const QPainterPath &path, double edges = 1);
    void setMode(int rop2);
    void fillWith(const QPainterPath &path, const EmfState &state, const QBrush &brush);

    QImage &m_image;
    QPainter m_painter;
    std::optional<EmfClip> m_clip; ///< As the painter has it.
    EmfClip m_outerClip;
    QElapsedTimer m_timer;
    double m_work = 0;
    bool m_drawn = false;
};
