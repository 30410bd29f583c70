#include "platform/picture/EncodedImage.h"

#include <QBuffer>
#include <QImageReader>

QImage EncodedImage::decode(const char *format, QByteArrayView bytes, qint64 &memoryLeft)
{
    // The toolkit complains on the console of other bytes.
    const QByteArrayView name(format);
    const bool starts = name == "jpeg" ? bytes.startsWith("\xFF\xD8\xFF")
        : name == "png"                ? bytes.startsWith("\x89PNG\r\n\x1a\n")
                                       : bytes.startsWith("GIF8");
    if (!starts)
        return {};
    QByteArray raw = QByteArray::fromRawData(bytes.data(), bytes.size());
    QBuffer buffer(&raw);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    QImage image;
    // Looked at again when it is read: a frame of a GIF can be larger than the size told before.
    if (size.isEmpty() || qint64(size.width()) * size.height() * 4 > memoryLeft
        || !reader.read(&image) || image.sizeInBytes() > memoryLeft)
        return {};
    memoryLeft -= image.sizeInBytes();
    return image;
}
