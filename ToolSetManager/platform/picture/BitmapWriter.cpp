#include "platform/picture/BitmapWriter.h"

#include <QtEndian>

#include <span>

namespace {

constexpr qsizetype fileHeaderSize = 14;
constexpr qsizetype infoHeaderSize = 40;
constexpr qint32 classicDotsPerMeter = 3780; // 96 dots per inch

} // namespace

QByteArray BitmapWriter::write(const QImage &image)
{
    Q_ASSERT(image.format() == QImage::Format_RGB32);
    const qsizetype lineSize = (qsizetype(image.width()) * 3 + 3) / 4 * 4;
    const qsizetype pixelSize = lineSize * image.height();
    QByteArray bytes(fileHeaderSize + infoHeaderSize + pixelSize, '\0');
    const auto put = [&bytes](qsizetype offset, auto number) {
        qToLittleEndian(number, bytes.data() + offset);
    };
    bytes[0] = 'B';
    bytes[1] = 'M';
    put(2, static_cast<quint32>(bytes.size()));
    put(10, static_cast<quint32>(fileHeaderSize + infoHeaderSize));
    put(14, static_cast<quint32>(infoHeaderSize));
    put(18, static_cast<qint32>(image.width()));
    put(22, static_cast<qint32>(image.height()));
    put(26, quint16(1)); // planes
    put(28, quint16(24)); // bits of a pixel
    put(34, static_cast<quint32>(pixelSize));
    put(38, classicDotsPerMeter);
    put(42, classicDotsPerMeter);
    char *line = bytes.data() + fileHeaderSize + infoHeaderSize;
    for (int y = image.height() - 1; y >= 0; --y, line += lineSize) {
        char *to = line;
        for (const QRgb pixel : std::span(
                 reinterpret_cast<const QRgb *>(image.constScanLine(y)), size_t(image.width()))) {
            *to++ = static_cast<char>(qBlue(pixel));
            *to++ = static_cast<char>(qGreen(pixel));
            *to++ = static_cast<char>(qRed(pixel));
        }
    }
    return bytes;
}
