#pragma once

#include "tooledit/RubberBand.h"

#include <QFrame>

class PictureControl;

/// The frame around the picker's preview. It gives the picture the largest of some sizes that fits,
/// lets the user mark a part of it with the mouse or the keys, and shows along the picture's edges
/// which part is taken: on the picture itself a mark would be photographed.
class PreviewFrame : public QFrame
{
    Q_OBJECT
public:
    /// Takes the picture over, and its tag.
    explicit PreviewFrame(PictureControl *picture, QWidget *parent = nullptr);

    /// The part that is taken, in pixels of the picture; empty for all of it.
    QRect marked() const { return m_marked; }
    void setMarked(const QRect &part);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user has marked a part, which may lie partly outside of the picture; an empty one stands
    /// for the whole. No band is on the picture any more.
    void taken(const QRect &part);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void picImage_MouseDown(const QPoint &position);
    void picImage_MouseMove(const QPoint &position);
    void picImage_MouseUp(const QPoint &position);

private:
    bool imageKeyPressed(int key, Qt::KeyboardModifiers modifiers);

    PictureControl *picImage;
    RubberBand m_band;
    QRect m_marked;
};
