#include "tooledit/IconStrip.h"

#include "platform/desktop/EmptyHint.h"
#include "platform/picture/ProgramIcons.h"

#include <QPainter>
#include <QScrollBar>

IconStrip::IconStrip(QWidget *parent)
    : QListView(parent)
{
    setFlow(QListView::LeftToRight);
    setWrapping(false);
    setUniformItemSizes(true);
    setIconSize({ProgramIcons::usualSize, ProgramIcons::usualSize});
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize IconStrip::sizeHint() const
{
    constexpr int margins = 12;
    return {QListView::sizeHint().width(),
        ProgramIcons::usualSize + margins + 2 * frameWidth()
            + horizontalScrollBar()->sizeHint().height()};
}

void IconStrip::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    if (model() != nullptr && model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    const EmptyHint hint {{}, QStringLiteral("The icons of a program or library appear here.")};
    hint.paint(painter, viewport()->rect(), palette(), QPalette::Base);
}
