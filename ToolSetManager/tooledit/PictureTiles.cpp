#include "tooledit/PictureTiles.h"

#include "model/CVBATool.h"
#include "platform/desktop/Accessible.h"

#include <QPainter>

namespace {

constexpr int side = CVBATool::pictureSide;
constexpr int around = 4;
constexpr QSize panel(2 * side + 3 * around, side + 2 * around);

} // namespace

PictureTiles::PictureTiles(QWidget *parent)
    : QWidget(parent)
{
    Accessible::setRole(*this, QAccessible::Graphic);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PictureTiles::setPresent(const QImage &picture)
{
    m_present = picture;
    setChosen(picture);
}

void PictureTiles::setChosen(const QImage &picture)
{
    m_chosen = picture;
    update();
}

QSize PictureTiles::sizeHint() const
{
    return QSize(2 * panel.width(), panel.height());
}

void PictureTiles::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    int left = 0;
    for (const QColor &back : {QColor(0xF0, 0xF0, 0xF0), QColor(0x2A, 0x2E, 0x32)}) {
        painter.fillRect(QRect({left, 0}, panel), back);
        int x = left + around;
        for (const QImage &picture : {m_present, m_chosen}) {
            if (!picture.isNull())
                painter.drawImage(QRect(x, around, side, side), picture);
            x += side + around;
        }
        left += panel.width();
    }
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(QRect({0, 0}, sizeHint()).adjusted(0, 0, -1, -1));
}
