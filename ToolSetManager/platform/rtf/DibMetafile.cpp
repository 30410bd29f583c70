#include "platform/rtf/DibMetafile.h"

#include "platform/picture/Dib.h"
#include "platform/picture/LittleEndian.h"
#include "platform/picture/MetafileRecords.h"

#include <QHash>

#include <algorithm>

using LittleEndian::at;
using namespace MetafileRecords;

namespace {

constexpr int dropLines = 3; // when the picture is shrunk
constexpr int maximumSide = 0x7FFF;

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
    const auto number = [](qsizetype value) { return static_cast<quint32>(value); };
    QByteArray bytes;
    bytes.reserve(40 + 4 * colours.size() + stride * image.height());
    for (const quint32 field : {quint32(40), number(image.width()), number(image.height()),
             1 | number(bits) << 16, quint32(Dib::Header::Plain), number(stride * image.height()),
             0U, 0U, number(colours.size()), 0U})
        LittleEndian::append(bytes, field);
    for (const QRgb colour : colours)
        LittleEndian::append(bytes, colour & 0xFFFFFF);
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
        bytes.append(row);
    }
    return bytes;
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
    QByteArray records;
    records.reserve(dib.size() + 128);
    append(records, SetMapMode, {anisotropic});
    append(records, SetWindowOrg, {0, 0});
    append(records, SetWindowExt, {height, width});
    append(records, SetStretchMode, {dropLines});
    constexpr int copyLow = copyPixels & 0xFFFF;
    constexpr int copyHigh = copyPixels >> 16;
    const qsizetype before = records.size();
    append(
        records, StretchDib, {copyLow, copyHigh, 0, height, width, 0, 0, height, width, 0, 0}, dib);
    const qsizetype longest = records.size() - before;
    append(records, EndOfFile, {});

    QByteArray metafile;
    metafile.reserve(headerSize + records.size());
    for (const int word : {1, int(headerSize / 2), 0x0300})
        LittleEndian::append(metafile, static_cast<quint16>(word));
    LittleEndian::append(metafile, static_cast<quint32>((headerSize + records.size()) / 2));
    LittleEndian::append(metafile, quint16(0)); // objects
    LittleEndian::append(metafile, static_cast<quint32>(longest / 2));
    LittleEndian::append(metafile, quint16(0));
    return metafile + records;
}

QImage decodeBitmap(QByteArrayView dib, qint64 &memoryLeft)
{
    const auto header = Dib::header(dib);
    if (!header || header->decodedBytes() > memoryLeft)
        return {};
    QImage image = Dib::decode(dib, *header, header->endOfColours());
    memoryLeft -= image.sizeInBytes();
    return image;
}

QImage decode(QByteArrayView metafile, qint64 &memoryLeft)
{
    const bool placeable = at<quint32>(metafile, 0) == placeableMark;
    const qsizetype start = headerSize + (placeable ? placeableSize : 0);
    std::vector<Record> records;
    if (metafile.size() > start)
        MetafileRecords::read(metafile.sliced(start), records); // as far as it goes
    for (const Record &record : records) {
        QImage image = decodeBitmap(MetafileRecords::bitmap(record), memoryLeft);
        if (!image.isNull())
            return image;
    }
    return {};
}

} // namespace DibMetafile
