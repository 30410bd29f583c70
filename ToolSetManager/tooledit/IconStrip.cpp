#include "tooledit/IconStrip.h"

#include "platform/desktop/EmptyHint.h"
#include "platform/picture/ProgramIcons.h"

#include <QPainter>

namespace {

constexpr int rowHeight = ProgramIcons::usualSize + 10;
constexpr int rowsShown = 3;

} // namespace

IconStrip::IconStrip(QWidget *parent)
    : QListView(parent)
{
    setFlow(QListView::LeftToRight);
    setWrapping(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setUniformItemSizes(true);
    setIconSize({ProgramIcons::usualSize, ProgramIcons::usualSize});
    setResizeMode(QListView::Adjust);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize IconStrip::sizeHint() const
{
    return {QListView::sizeHint().width(), rowsShown * rowHeight + 2 * frameWidth()};
}

QSize IconStrip::minimumSizeHint() const
{
    return {QListView::minimumSizeHint().width(), rowHeight + 2 * frameWidth()};
}

void IconStrip::resizeEvent(QResizeEvent *event)
{
    const bool grid = height() - 2 * frameWidth() >= 2 * rowHeight;
    if (grid != isWrapping()) {
        setWrapping(grid);
        setVerticalScrollBarPolicy(grid ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
        setHorizontalScrollBarPolicy(grid ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    }
    QListView::resizeEvent(event);
    scrollTo(currentIndex());
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
