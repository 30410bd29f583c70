#include "platform/rtf/DibMetafile.h"

#include "platform/picture/Picture.h"

#include <QHash>
#include <QtEndian>

#include <algorithm>

namespace {

// Records of a metafile, by their function numbers.
enum Function : quint16 {
    SetMapMode = 0x0103,
    SetStretchMode = 0x0107,
    SetWindowOrigin = 0x020B,
    SetWindowExtent = 0x020C,
    DibBitBlt = 0x0940,
    DibStretchBlt = 0x0B41,
    SetDibToDevice = 0x0D33,
    StretchDib = 0x0F43
};
constexpr quint16 anisotropic = 8;
constexpr quint16 dropLines = 3; // when the picture is shrunk
constexpr quint32 copyPixels = 0x00CC0020;

constexpr qsizetype metafileHeader = 18;
constexpr qsizetype placeableHeader = 22;
constexpr quint32 placeableKey = 0x9AC6CDD7;
constexpr qsizetype recordHeader = 6;
constexpr int maximumSide = 0x7FFF;

enum EnhancedRecord : quint32 {
    EnhancedBitBlt = 76,
    EnhancedStretchBlt = 77,
    EnhancedSetDibToDevice = 80,
    EnhancedStretchDib = 81
};

template <class T>
T numberAt(QByteArrayView bytes, qsizetype offset)
{
    return qFromLittleEndian<T>(bytes.data() + offset);
}

class Writer
{
public:
    explicit Writer(qsizetype size) { m_bytes.reserve(size); }
    void words(std::initializer_list<int> values)
    {
        for (const int value : values)
            put(static_cast<quint16>(value));
    }
    void doubleWord(quint32 value) { put(value); }
    void bytes(QByteArrayView data) { m_bytes.append(data); }
    QByteArray take() { return std::move(m_bytes); }

private:
    template <class T>
    void put(T value)
    {
        char raw[sizeof(T)];
        qToLittleEndian(value, raw);
        m_bytes.append(raw, sizeof(T));
    }
    QByteArray m_bytes;
};

/// An opaque image with as few bits a pixel as its colours need: 8 or 32 (which means 24 in the
/// file). The colours are in the order of their first pixels, so equal pixels give equal bytes.
QImage fewestBits(const QImage &opaque)
{
    QHash<QRgb, uchar> indexes;
    QList<QRgb> colours;
    QImage indexed(opaque.size(), QImage::Format_Indexed8);
    for (int y = 0; y < opaque.height(); ++y) {
        const auto *from = reinterpret_cast<const QRgb *>(opaque.constScanLine(y));
        uchar *to = indexed.scanLine(y);
        for (int x = 0; x < opaque.width(); ++x) {
            const QRgb colour = from[x] | 0xFF000000;
            auto found = indexes.constFind(colour);
            if (found == indexes.cend()) {
                if (colours.size() == 256)
                    return opaque;
                found = indexes.insert(colour, static_cast<uchar>(colours.size()));
                colours.append(colour);
            }
            to[x] = *found;
        }
    }
    indexed.setColorTable(colours);
    return indexed;
}

/// Header (40 bytes), colours and pixels, bottom-up.
QByteArray encodeDib(const QImage &image)
{
    const bool indexed = image.format() == QImage::Format_Indexed8;
    const auto colours = image.colorTable();
    const int bits = !indexed ? 24 : colours.size() <= 16 ? 4 : 8;
    const qsizetype stride = (qsizetype(image.width()) * bits + 31) / 32 * 4;
    Writer writer(40 + 4 * colours.size() + stride * image.height());
    writer.doubleWord(40);
    writer.doubleWord(static_cast<quint32>(image.width()));
    writer.doubleWord(static_cast<quint32>(image.height()));
    writer.words({1, bits});
    writer.doubleWord(0); // plain
    writer.doubleWord(static_cast<quint32>(stride * image.height()));
    writer.doubleWord(0);
    writer.doubleWord(0);
    writer.doubleWord(static_cast<quint32>(colours.size()));
    writer.doubleWord(0);
    for (const QRgb colour : colours)
        writer.doubleWord(colour & 0xFFFFFF);
    QByteArray row(stride, '\0');
    for (int y = image.height() - 1; y >= 0; --y) {
        const uchar *from = image.constScanLine(y);
        auto *to = reinterpret_cast<uchar *>(row.data());
        if (bits == 8) {
            std::copy_n(from, image.width(), to);
        } else if (bits == 4) {
            std::fill_n(to, stride, uchar(0));
            for (int x = 0; x < image.width(); ++x)
                to[x / 2] = static_cast<uchar>(to[x / 2] | from[x] << (x % 2 ? 0 : 4));
        } else {
            const auto *pixels = reinterpret_cast<const QRgb *>(from);
            for (int x = 0; x < image.width(); ++x) {
                *to++ = static_cast<uchar>(qBlue(pixels[x]));
                *to++ = static_cast<uchar>(qGreen(pixels[x]));
                *to++ = static_cast<uchar>(qRed(pixels[x]));
            }
        }
        writer.bytes(row);
    }
    return writer.take();
}

/// Where the bitmap of a painting record starts, counted from the record's start; 0 for others.
qsizetype bitmapOffset(quint16 function)
{
    switch (function) {
    case DibBitBlt:
        return recordHeader + 16;
    case DibStretchBlt:
        return recordHeader + 20;
    case SetDibToDevice:
        return recordHeader + 18;
    case StretchDib:
        return recordHeader + 22;
    default:
        return 0;
    }
}

/// Offset of the pixels behind header and colours; 0 when the header is none.
qsizetype pixelOffset(QByteArrayView dib)
{
    if (dib.size() < 12)
        return 0;
    const quint32 headerSize = numberAt<quint32>(dib, 0);
    if (headerSize == 12) {
        const int bits = numberAt<quint16>(dib, 10);
        return 12 + (bits <= 8 ? 3 << bits : 0);
    }
    if (headerSize < 40 || headerSize > 256 || dib.size() < 40)
        return 0;
    const int bits = numberAt<quint16>(dib, 14);
    const quint32 compression = numberAt<quint32>(dib, 16);
    qsizetype colours = qMin(numberAt<quint32>(dib, 32), quint32(256));
    if (colours == 0 && bits <= 8)
        colours = qsizetype(1) << bits;
    const bool masksBehind = compression == 3 && headerSize == 40;
    return static_cast<qsizetype>(headerSize) + 4 * colours + (masksBehind ? 12 : 0);
}

} // namespace

namespace DibMetafile {

QByteArray encode(const QImage &image)
{
    QImage opaque = image.convertToFormat(QImage::Format_RGB32);
    if (opaque.width() > maximumSide || opaque.height() > maximumSide)
        opaque = opaque.scaled(maximumSide, maximumSide, Qt::KeepAspectRatio);
    const QByteArray dib = encodeDib(fewestBits(opaque));
    const int width = opaque.width();
    const int height = opaque.height();
    const qsizetype paintSize = recordHeader + 22 + dib.size();
    const qsizetype fixedSize = metafileHeader + 8 + 8 + 10 + 10 + recordHeader;

    Writer writer(fixedSize + paintSize);
    writer.words({1, metafileHeader / 2, 0x0300});
    writer.doubleWord(static_cast<quint32>((fixedSize + paintSize) / 2));
    writer.words({0});
    writer.doubleWord(static_cast<quint32>(paintSize / 2));
    writer.words({0});
    writer.doubleWord(4);
    writer.words({SetMapMode, anisotropic});
    writer.doubleWord(5);
    writer.words({SetWindowOrigin, 0, 0});
    writer.doubleWord(5);
    writer.words({SetWindowExtent, height, width});
    writer.doubleWord(4);
    writer.words({SetStretchMode, dropLines});
    writer.doubleWord(static_cast<quint32>(paintSize / 2));
    writer.words({StretchDib});
    writer.doubleWord(copyPixels);
    writer.words({0, height, width, 0, 0, height, width, 0, 0});
    writer.bytes(dib);
    writer.doubleWord(3); // the end
    writer.words({0});
    return writer.take();
}

QImage decodeBitmap(QByteArrayView dib, qint64 &memoryLeft)
{
    const qsizetype pixels = pixelOffset(dib);
    if (pixels == 0 || pixels > dib.size())
        return {};
    // The file's header, which tells where the pixels are.
    Writer writer(14 + dib.size());
    writer.bytes("BM");
    writer.doubleWord(static_cast<quint32>(14 + dib.size()));
    writer.doubleWord(0);
    writer.doubleWord(static_cast<quint32>(14 + pixels));
    writer.bytes(dib);
    return Picture::decode(writer.take(), memoryLeft).value_or(QImage());
}

QImage decode(QByteArrayView metafile, qint64 &memoryLeft)
{
    qsizetype at = 0;
    if (metafile.size() >= 4 && numberAt<quint32>(metafile, 0) == placeableKey)
        at += placeableHeader;
    at += metafileHeader;
    while (metafile.size() - at >= recordHeader) {
        const qsizetype size = qsizetype(numberAt<quint32>(metafile, at)) * 2;
        if (size < recordHeader || size > metafile.size() - at)
            break;
        const qsizetype bitmap = bitmapOffset(numberAt<quint16>(metafile, at + 4));
        if (bitmap > 0 && bitmap < size) {
            const QImage image =
                decodeBitmap(metafile.sliced(at + bitmap, size - bitmap), memoryLeft);
            if (!image.isNull())
                return image;
        }
        at += size;
    }
    return {};
}

QImage decodeEnhanced(QByteArrayView metafile, qint64 &memoryLeft)
{
    qsizetype at = 0;
    while (metafile.size() - at >= 8) {
        const quint32 type = numberAt<quint32>(metafile, at);
        const qsizetype size = numberAt<quint32>(metafile, at + 4);
        if (size < 8 || size > metafile.size() - at)
            break;
        const bool blt = type == EnhancedBitBlt || type == EnhancedStretchBlt;
        const bool dib = type == EnhancedSetDibToDevice || type == EnhancedStretchDib;
        const qsizetype places = blt ? 84 : 48; // of the offsets and sizes of header and pixels
        if ((blt || dib) && size >= places + 16) {
            const QByteArrayView record = metafile.sliced(at, size);
            const qsizetype header = numberAt<quint32>(record, places);
            const qsizetype headerSize = numberAt<quint32>(record, places + 4);
            const qsizetype pixels = numberAt<quint32>(record, places + 8);
            const qsizetype pixelsSize = numberAt<quint32>(record, places + 12);
            if (header >= places && pixels >= places && header + headerSize <= size
                && pixels + pixelsSize <= size && headerSize > 0) {
                QByteArray bitmap;
                bitmap.append(record.sliced(header, headerSize));
                bitmap.append(record.sliced(pixels, pixelsSize));
                const QImage image = decodeBitmap(bitmap, memoryLeft);
                if (!image.isNull())
                    return image;
            }
        }
        at += size;
    }
    return {};
}

} // namespace DibMetafile
