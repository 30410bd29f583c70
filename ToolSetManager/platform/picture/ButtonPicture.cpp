#include "platform/picture/ButtonPicture.h"

#include <QPainter>

#include <vector>

namespace {

constexpr QRgb buttonGrey = 0xFFC0C0C0;

/// Makes the grey that is connected with the edge transparent.
void clearGround(QImage &picture)
{
    const int width = picture.width();
    const int height = picture.height();
    std::vector<QPoint> open;
    const auto visit = [&](int x, int y) {
        if (x < 0 || y < 0 || x >= width || y >= height)
            return;
        QRgb &pixel = reinterpret_cast<QRgb *>(picture.scanLine(y))[x];
        if (pixel != buttonGrey)
            return;
        pixel = 0;
        open.emplace_back(x, y);
    };
    for (int x = 0; x < width; ++x) {
        visit(x, 0);
        visit(x, height - 1);
    }
    for (int y = 0; y < height; ++y) {
        visit(0, y);
        visit(width - 1, y);
    }
    while (!open.empty()) {
        const QPoint at = open.back();
        open.pop_back();
        visit(at.x() - 1, at.y());
        visit(at.x() + 1, at.y());
        visit(at.x(), at.y() - 1);
        visit(at.x(), at.y() + 1);
    }
}

/// The mean lightness (0 to 255) of what can be seen; -1 where nothing can.
int lightness(const QImage &picture)
{
    qint64 sum = 0;
    qint64 count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(line[x]) == 0)
                continue;
            sum += qGray(line[x]);
            ++count;
        }
    }
    return count == 0 ? -1 : static_cast<int>(sum / count);
}

/// The picture above a light shadow of itself that stands out by one pixel all round.
QImage withRim(const QImage &picture)
{
    QImage shadow = picture;
    QPainter fill(&shadow);
    fill.setCompositionMode(QPainter::CompositionMode_SourceIn);
    fill.fillRect(shadow.rect(), QColor(235, 235, 235));
    fill.end();
    QImage rimmed(picture.size(), QImage::Format_ARGB32_Premultiplied);
    rimmed.fill(Qt::transparent);
    QPainter painter(&rimmed);
    for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx)
            painter.drawImage(dx, dy, shadow);
    }
    painter.drawImage(0, 0, picture);
    return rimmed;
}

} // namespace

QImage ButtonPicture::onBackground(const QImage &picture, const QColor &background)
{
    QImage shown = picture.convertToFormat(QImage::Format_ARGB32);
    clearGround(shown);
    constexpr int dark = 128;
    const int light = lightness(shown);
    return background.lightness() < dark && light >= 0 && light < dark ? withRim(shown) : shown;
}

bool ButtonPicture::isEmpty(const QImage &picture)
{
    return lightness(picture.convertToFormat(QImage::Format_ARGB32)) < 0;
}

QImage ButtonPicture::separatorLine(const QSize &size, const QColor &colour)
{
    QImage line(size, QImage::Format_ARGB32_Premultiplied);
    line.fill(Qt::transparent);
    QPainter painter(&line);
    painter.fillRect(size.width() / 2, size.height() / 8, 1, size.height() * 3 / 4, colour);
    return line;
}
