#include "platform/picture/EmfBitmap.h"

#include "platform/picture/Dib.h"
#include "platform/picture/EncodedImage.h"

namespace {

/// The header's kinds of compression that mean a whole file in place of pixels.
QImage readFile(QByteArrayView header, QByteArrayView pixels, qint64 memory)
{
    constexpr quint32 jpeg = 4;
    constexpr quint32 png = 5;
    switch (LittleEndian::at<quint32>(header, 16)) {
    case jpeg:
        return EncodedImage::decode("jpeg", pixels, memory);
    case png:
        return EncodedImage::decode("png", pixels, memory);
    default:
        return {};
    }
}

} // namespace

QImage EmfBitmap::read(const EmfRecord &record, qsizetype field, qint64 memory, Alpha alpha)
{
    const QByteArrayView head = record.part(field);
    const QByteArrayView pixels = record.part(field + 8);
    if (head.isEmpty() || pixels.isEmpty())
        return {};
    auto header = Dib::header(head);
    if (!header)
        return readFile(head, pixels, memory);
    if (header->decodedBytes() > memory)
        return {};
    const bool withAlpha = alpha == Premultiplied && header->bitsPerPixel == 32;
    if (withAlpha && header->masks[3] == 0)
        header->masks[3] = ~(header->masks[0] | header->masks[1] | header->masks[2]);
    QByteArray dib;
    dib.reserve(head.size() + pixels.size());
    dib.append(head);
    dib.append(pixels);
    QImage image = Dib::decode(dib, *header, head.size());
    if (withAlpha && image.format() == QImage::Format_ARGB32)
        image.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied);
    return image;
}

qsizetype EmfBitmap::field(quint32 type)
{
    switch (type) {
    case EmfRecord::BitBlt:
    case EmfRecord::StretchBlt:
    case EmfRecord::MaskBlt:
    case EmfRecord::AlphaBlend:
    case EmfRecord::TransparentBlt:
        return 84;
    case EmfRecord::PlgBlt:
        return 96;
    case EmfRecord::SetDibToDevice:
    case EmfRecord::StretchDib:
        return 48;
    default:
        return -1;
    }
}
