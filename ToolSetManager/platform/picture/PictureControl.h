#pragma once

#include <QImage>
#include <QWidget>

/// A picture box in a window: classic button grey (192, 192, 192), whatever the desktop's colours,
/// because what it shows is photographed into button pictures. The picture is stretched over the
/// box: enlarged pixel by pixel, made smaller smoothly. No frame: the whole box is picture.
class PictureControl : public QWidget
{
    Q_OBJECT
public:
    explicit PictureControl(QWidget *parent = nullptr);

    QImage Picture() const { return m_picture; }
    /// Shown at once, even where it is photographed before the next event.
    void setPicture(const QImage &picture);

    // --- The band: a rectangle drawn by inverting what is below it ---
    QRect band() const { return m_band; }
    /// An empty rectangle for none. Shown at once, too.
    void setBand(const QRect &band);

    /// The box as a picture of one pixel for each unit of its size, without the band.
    QImage Image() const;

    QSize sizeHint() const override;

Q_SIGNALS:
    void MouseDown(const QPoint &position);
    void MouseMove(const QPoint &position); ///< Only while the button is held.
    void MouseUp(const QPoint &position);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QImage m_picture;
    QRect m_band;
};
