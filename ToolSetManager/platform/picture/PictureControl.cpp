#include "platform/picture/PictureControl.h"

#include "platform/desktop/Accessible.h"

#include <QMouseEvent>
#include <QPainter>

namespace {

void paintPicture(QPainter &painter, const QRect &box, const QImage &picture, qreal pixelRatio)
{
    painter.fillRect(box, QColor(192, 192, 192));
    if (picture.isNull())
        return;
    const QSize target = box.size() * pixelRatio;
    if (picture.width() > target.width() || picture.height() > target.height()) {
        QImage smaller = picture.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        smaller.setDevicePixelRatio(pixelRatio);
        painter.drawImage(box.topLeft(), smaller);
    } else {
        painter.drawImage(box, picture);
    }
}

} // namespace

PictureControl::PictureControl(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    Accessible::setRole(*this, QAccessible::Graphic);
}

void PictureControl::setPicture(const QImage &picture)
{
    m_picture = picture;
    m_picture.setDevicePixelRatio(1);
    repaint();
}

void PictureControl::setBand(const QRect &band)
{
    if (band == m_band)
        return;
    m_band = band;
    repaint();
}

QImage PictureControl::Image() const
{
    QImage image(size(), QImage::Format_RGB32);
    QPainter painter(&image);
    paintPicture(painter, rect(), m_picture, 1);
    return image;
}

QSize PictureControl::sizeHint() const
{
    return m_picture.isNull() ? QSize(32, 32) : m_picture.size();
}

void PictureControl::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    paintPicture(painter, rect(), m_picture, devicePixelRatioF());
    if (m_band.isEmpty())
        return;
    painter.setCompositionMode(QPainter::CompositionMode_Difference);
    painter.setPen(QPen(Qt::white, 1));
    painter.drawRect(m_band.adjusted(0, 0, -1, -1));
}

void PictureControl::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT MouseDown(event->position().toPoint());
}

void PictureControl::mouseMoveEvent(QMouseEvent *event)
{
    if ((event->buttons() & Qt::LeftButton) != 0)
        Q_EMIT MouseMove(event->position().toPoint());
}

void PictureControl::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT MouseUp(event->position().toPoint());
}
