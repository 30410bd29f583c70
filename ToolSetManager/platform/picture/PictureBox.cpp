#include "platform/picture/PictureBox.h"

#include <QPainter>

PictureBox::PictureBox(Twips width, Twips height)
    : m_size(width.toPixels(), height.toPixels())
{
}

QImage PictureBox::Image() const
{
    // The usual case, a picture that came out of such a box, needs no painting.
    if (m_picture.size() == m_size && !m_picture.hasAlphaChannel())
        return m_picture.convertToFormat(QImage::Format_RGB32);

    QImage rendered(m_size, QImage::Format_RGB32);
    rendered.fill(QColor(192, 192, 192));
    if (!m_picture.isNull()) {
        QImage picture = m_picture;
        picture.setDevicePixelRatio(1);
        if (picture.width() > m_size.width() || picture.height() > m_size.height())
            picture = picture.scaled(m_size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        QPainter painter(&rendered);
        painter.drawImage(QPoint(0, 0), picture);
    }
    return rendered;
}
