#include "platform/picture/EnhancedMetafile.h"

#include "platform/picture/EmfBitmap.h"
#include "platform/picture/EmfPlayer.h"
#include "platform/picture/EmfRecords.h"
#include "platform/text/Twips.h"

#include <algorithm>

namespace EnhancedMetafile {

bool recognises(QByteArrayView bytes)
{
    return EmfHeader::recognises(bytes);
}

QSize size(QByteArrayView bytes)
{
    constexpr double unitsPerInch = 2540;
    constexpr double longest = 4096;
    const auto header = EmfHeader::read(bytes);
    if (!header)
        return {};
    QSizeF pixels = header->frame.size() * (Twips::classicDpi / unitsPerInch);
    if (pixels.isEmpty())
        pixels = header->bounds.size();
    if (pixels.isEmpty())
        return {};
    const double factor = std::min(1.0, longest / std::max(pixels.width(), pixels.height()));
    return (pixels * factor).toSize().expandedTo({1, 1});
}

QImage render(QByteArrayView bytes, QSize size)
{
    const auto header = EmfHeader::read(bytes);
    if (!header || header->frameOnDevice().isEmpty() || size.isEmpty())
        return {};
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull())
        return {};
    image.fill(Qt::white);
    return EmfPlayer(*header, image).play(bytes) ? image : QImage();
}

QImage firstBitmap(QByteArrayView bytes, qint64 &memoryLeft)
{
    EmfReader reader(bytes);
    while (const auto record = reader.next()) {
        const qsizetype field = EmfBitmap::field(record->type);
        if (field < 0)
            continue;
        const QImage image = EmfBitmap::read(*record, field, memoryLeft);
        if (image.isNull())
            continue;
        memoryLeft -= image.sizeInBytes();
        return image;
    }
    return {};
}

} // namespace EnhancedMetafile
