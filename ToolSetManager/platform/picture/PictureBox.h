#pragma once

#include "platform/text/Twips.h"

#include <QImage>

/// The drawing behaviour of a picture box, without a window: a box of classic button grey
/// (192, 192, 192), 15 twips to the pixel on every screen, in which a picture stands at the top
/// left, scaled down to fit when it is larger than the box.
class PictureBox
{
public:
    PictureBox(Twips width, Twips height);

    QImage Picture() const { return m_picture; }
    void setPicture(const QImage &picture) { m_picture = picture; }

    /// The whole rendered content: opaque, Format_RGB32, the box's size in pixels.
    QImage Image() const;

private:
    QSize m_size;
    QImage m_picture;
};
