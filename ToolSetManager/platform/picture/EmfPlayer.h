#pragma once

#include "platform/picture/EmfCanvas.h"
#include "platform/picture/EmfObjects.h"

/// Draws an enhanced metafile: lines, areas, paths, text, bitmaps and gradients, with their pens,
/// brushes, fonts, clipping and mapping. Records of other kinds are passed over, and so is what is
/// cut off. It reads files of doubtful origin: every record is bounded by its bytes, and the work
/// and the time are limited.
class EmfPlayer
{
public:
    /// Draws on \a image, which shows the frame of the header.
    EmfPlayer(const EmfHeader &header, QImage &image);

    /// True when the file drew anything.
    bool play(QByteArrayView metafile);

private:
    void play(const EmfRecord &record);
    bool setMapping(const EmfRecord &record);
    bool setMode(const EmfRecord &record);
    bool setClip(const EmfRecord &record);
    bool drawPath(const EmfRecord &record);
    bool drawRegion(const EmfRecord &record);
    void drawShape(const EmfRecord &record);
    void restore(qint32 level);
    QPainterPath takePath();

    EmfState m_state;
    std::vector<EmfState> m_saved;
    EmfObjects m_objects;
    EmfCanvas m_canvas;
    QPainterPath m_path; ///< Between BeginPath and what uses it; in pixels.
    bool m_pathOpen = false;
    bool m_newFigure = true; ///< The next line of the path does not continue the last one.
};
