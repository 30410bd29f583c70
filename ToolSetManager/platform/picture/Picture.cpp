#include "platform/picture/Picture.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

#include <cstdlib>
#include <span>

namespace {

constexpr qint64 fileHeaderSize = 14;
// Values of biCompression.
constexpr quint32 runLengths8 = 1;
constexpr quint32 runLengths4 = 2;
constexpr quint32 bitFields = 3;
// 96 dots per inch.
constexpr int classicDotsPerMeter = 3780;

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
    qint64 pixelOffset = 0; ///< Where they are read: never inside the headers or the colours.
    qint64 colourOffset = 0;
    int colourCount = 0;
    bool topDown = false;

    qint64 storedBytes() const { return (width * bitsPerPixel + 31) / 32 * 4 * height; }
};

/// BMP file header (14 bytes) and either the OS/2 core header (12 bytes) or one of the Windows
/// information headers (40 bytes and more).
std::optional<BitmapShape> bitmapShape(QByteArrayView bytes)
{
    if (bytes.size() < fileHeaderSize + 12)
        return std::nullopt;
    BitmapShape shape;
    const quint32 headerSize = numberAt<quint32>(bytes, 14);
    qint64 colourSize = 4;
    quint32 colours = 0;
    if (headerSize == 12) {
        shape.width = numberAt<quint16>(bytes, 18);
        shape.height = numberAt<quint16>(bytes, 20);
        shape.bitsPerPixel = numberAt<quint16>(bytes, 24);
        shape.colourOffset = fileHeaderSize + headerSize;
        colourSize = 3;
    } else {
        if (headerSize < 40 || bytes.size() < fileHeaderSize + 40)
            return std::nullopt;
        shape.width = numberAt<qint32>(bytes, 18);
        const qint64 height = numberAt<qint32>(bytes, 22);
        shape.topDown = height < 0;
        shape.height = std::abs(height);
        shape.bitsPerPixel = numberAt<quint16>(bytes, 28);
        const quint32 compression = numberAt<quint32>(bytes, 30);
        shape.compressed = compression == runLengths8 || compression == runLengths4;
        if (shape.compressed && shape.bitsPerPixel != (compression == runLengths8 ? 8 : 4))
            return std::nullopt;
        colours = numberAt<quint32>(bytes, 46);
        const qint64 masks = compression == bitFields && headerSize == 40 ? 12 : 0;
        shape.colourOffset = fileHeaderSize + headerSize + masks;
    }
    if (shape.bitsPerPixel <= 8) {
        const quint32 most = 1U << shape.bitsPerPixel;
        shape.colourCount = static_cast<int>(colours == 0 ? most : qMin(colours, most));
    }
    shape.pixelOffset = qMax<qint64>(
        numberAt<quint32>(bytes, 10), shape.colourOffset + shape.colourCount * colourSize);
    if (shape.width <= 0 || shape.height <= 0 || shape.width > 65535 || shape.height > 65535
        || shape.bitsPerPixel > 32) {
        return std::nullopt;
    }
    // Qt reads a bitmap whose pixels end early without a word and leaves the rest undefined.
    const qint64 needed = shape.compressed ? 0 : shape.storedBytes();
    if (shape.pixelOffset + needed > bytes.size())
        return std::nullopt;
    return shape;
}

/// Decodes RLE4 and RLE8. Pixels that the runs leave out, also by ending early, have the first
/// colour; Qt leaves them undefined.
QImage decodeRunLengths(QByteArrayView bytes, const BitmapShape &shape)
{
    QImage image(
        static_cast<int>(shape.width), static_cast<int>(shape.height), QImage::Format_Indexed8);
    if (image.isNull())
        return image;
    QList<QRgb> colours(256, qRgb(0, 0, 0));
    for (int i = 0; i < shape.colourCount; ++i) {
        const qsizetype at = shape.colourOffset + i * 4;
        colours[i] = qRgb(static_cast<uchar>(bytes[at + 2]), static_cast<uchar>(bytes[at + 1]),
            static_cast<uchar>(bytes[at]));
    }
    image.setColorTable(colours);
    image.fill(0);

    const bool half = shape.bitsPerPixel == 4;
    qint64 x = 0;
    qint64 y = 0; // counts in the order of the file
    // The pixels that fit the line; runs beyond its end cost nothing.
    const auto lineFrom = [&](int count) {
        const qint64 line = shape.topDown ? y : shape.height - 1 - y;
        uchar *const start = image.scanLine(static_cast<int>(line));
        const qint64 from = qMin(x, shape.width);
        x += count;
        return std::span(start + from, static_cast<size_t>(qMin(x, shape.width) - from));
    };
    const auto pixelOf = [half](uchar pair, int index) {
        if (!half)
            return int(pair);
        return index % 2 == 0 ? pair >> 4 : pair & 15;
    };
    qsizetype at = shape.pixelOffset;
    const auto next = [&] { return static_cast<uchar>(bytes[at++]); };
    while (at + 1 < bytes.size() && y < shape.height) {
        const int count = next();
        const uchar value = next();
        if (count > 0) {
            int i = 0;
            for (uchar &pixel : lineFrom(count))
                pixel = static_cast<uchar>(pixelOf(value, i++));
        } else if (value == 0) { // end of the line
            x = 0;
            ++y;
        } else if (value == 1) { // end of the picture
            break;
        } else if (value == 2) { // jump
            if (at + 1 >= bytes.size())
                break;
            x += next();
            y += next();
        } else { // as many pixels as they stand, filled up to an even number of bytes
            const qsizetype size = half ? (value + 1) / 2 : value;
            if (at + size > bytes.size())
                break;
            int i = 0;
            for (uchar &pixel : lineFrom(value)) {
                pixel = static_cast<uchar>(
                    pixelOf(static_cast<uchar>(bytes[at + (half ? i / 2 : i)]), i));
                ++i;
            }
            at += size + size % 2;
        }
    }
    return image;
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
        if (shape->compressed) {
            if ((shape->width + 3) / 4 * 4 * shape->height > memoryLeft)
                return std::nullopt;
            const QImage image = decodeRunLengths(bytes, *shape);
            if (image.isNull())
                return std::nullopt;
            memoryLeft -= image.sizeInBytes();
            return image;
        }
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
    // An icon's frame may be larger than the icon's directory says.
    if (!reader.read(&image) || image.isNull() || image.sizeInBytes() > memoryLeft)
        return std::nullopt;
    memoryLeft -= image.sizeInBytes();
    return image;
}

QByteArray encodeBitmap(const QImage &image)
{
    QImage plain = image.convertToFormat(QImage::Format_RGB32);
    plain.setDotsPerMeterX(classicDotsPerMeter);
    plain.setDotsPerMeterY(classicDotsPerMeter);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    plain.save(&buffer, "bmp");
    return bytes;
}

} // namespace Picture
