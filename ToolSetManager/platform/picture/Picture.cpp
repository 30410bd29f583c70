#include "platform/picture/Picture.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

#include <cstdlib>

namespace {

constexpr qint64 fileHeaderSize = 14;

template <class T>
T numberAt(QByteArrayView bytes, qsizetype offset)
{
    return qFromLittleEndian<T>(bytes.data() + offset);
}

/// What a bitmap's headers say; the pixels themselves are left to Qt.
struct BitmapShape
{
    qint64 width = 0;
    qint64 height = 0;
    int bitsPerPixel = 0;
    bool compressed = false;
    qint64 pixelOffset = 0;

    qint64 storedBytes() const { return (width * bitsPerPixel + 31) / 32 * 4 * height; }
};

/// BMP file header (14 bytes) and either the OS/2 core header (12 bytes) or one of the Windows
/// information headers (40 bytes and more).
std::optional<BitmapShape> bitmapShape(QByteArrayView bytes)
{
    if (bytes.size() < fileHeaderSize + 12)
        return std::nullopt;
    BitmapShape shape;
    shape.pixelOffset = numberAt<quint32>(bytes, 10);
    const quint32 headerSize = numberAt<quint32>(bytes, 14);
    if (headerSize == 12) {
        shape.width = numberAt<quint16>(bytes, 18);
        shape.height = numberAt<quint16>(bytes, 20);
        shape.bitsPerPixel = numberAt<quint16>(bytes, 24);
    } else {
        if (headerSize < 40 || bytes.size() < fileHeaderSize + 40)
            return std::nullopt;
        shape.width = numberAt<qint32>(bytes, 18);
        shape.height = std::abs(qint64(numberAt<qint32>(bytes, 22))); // negative: top-down
        shape.bitsPerPixel = numberAt<quint16>(bytes, 28);
        const quint32 compression = numberAt<quint32>(bytes, 30);
        shape.compressed = compression == 1 || compression == 2; // RLE8, RLE4
    }
    if (shape.width <= 0 || shape.height <= 0 || shape.width > 65535 || shape.height > 65535
        || shape.bitsPerPixel > 32) {
        return std::nullopt;
    }
    // Qt reads a bitmap whose pixels end early without a word and leaves the rest undefined.
    if (!shape.compressed && shape.pixelOffset + shape.storedBytes() > bytes.size())
        return std::nullopt;
    return shape;
}

bool looksLikeBitmap(QByteArrayView bytes)
{
    return bytes.size() > 2 && bytes[0] == 'B' && bytes[1] == 'M';
}

} // namespace

namespace Picture {

std::optional<QImage> decode(QByteArrayView bytes, qint64 &memoryLeft)
{
    QByteArray raw = QByteArray::fromRawData(bytes.data(), bytes.size());
    QBuffer buffer(&raw);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader;
    reader.setDevice(&buffer);
    qint64 needed = 0;
    if (looksLikeBitmap(bytes)) {
        const auto shape = bitmapShape(bytes);
        if (!shape)
            return std::nullopt;
        needed = shape->width * shape->height * 4;
        reader.setFormat("bmp");
        reader.setAutoDetectImageFormat(false);
    } else {
        static const QList<QByteArray> others {"ico", "cur", "gif", "jpeg"};
        reader.setDecideFormatFromContent(true);
        if (!others.contains(reader.format()))
            return std::nullopt;
        const QSize size = reader.size();
        if (size.isEmpty())
            return std::nullopt;
        needed = qint64(size.width()) * size.height() * 4;
    }
    if (needed > memoryLeft)
        return std::nullopt;
    QImage image;
    if (!reader.read(&image) || image.isNull())
        return std::nullopt;
    memoryLeft -= image.sizeInBytes();
    return image;
}

QByteArray encodeBitmap(const QImage &image)
{
    QImage plain = image.convertToFormat(QImage::Format_RGB32);
    plain.setDotsPerMeterX(0); // the writer puts its own constant in place of 0
    plain.setDotsPerMeterY(0);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    plain.save(&buffer, "bmp");
    return bytes;
}

} // namespace Picture
