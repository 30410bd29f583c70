#include "platform/picture/Picture.h"

#include "platform/picture/BitmapWriter.h"
#include "platform/picture/Dib.h"
#include "platform/picture/EncodedImage.h"
#include "platform/picture/LittleEndian.h"
#include "platform/picture/Metafile.h"
#include "platform/picture/ProgramIcons.h"

#include <QBuffer>
#include <QFileInfo>

#include <algorithm>
#include <new>

namespace {

constexpr qint64 mostBytes = qint64(256) << 20;

QImage decodeBitmap(QByteArrayView bytes, qint64 &memoryLeft, int longestSide)
{
    constexpr qsizetype fileHeaderSize = 14;
    constexpr qsizetype pixelsField = 10;
    if (bytes.size() <= fileHeaderSize)
        return {};
    const QByteArrayView dib = bytes.sliced(fileHeaderSize);
    const auto header = Dib::header(dib);
    if (!header)
        return {};
    const QSize size = header->sizeWithin(longestSide);
    const qint64 memory =
        header->runLengths() ? header->decodedBytes() : qint64(size.width()) * size.height() * 4;
    if (memory > memoryLeft)
        return {};
    qint64 pixels = LittleEndian::at<quint32>(bytes, pixelsField) - fileHeaderSize;
    if (pixels < header->colours) // no offset at all: some writers leave the field empty
        pixels = header->endOfColours();
    QImage image = Dib::decode(dib, *header, pixels, longestSide);
    if (!image.isNull())
        memoryLeft -= memory;
    return image;
}

QImage decodeIcon(QByteArrayView bytes, qint64 &memoryLeft)
{
    auto buffer = std::make_unique<QBuffer>();
    buffer->setData(QByteArray::fromRawData(bytes.data(), bytes.size()));
    QImage image = ProgramIcons(std::move(buffer)).icon(0, ProgramIcons::usualSize, memoryLeft);
    if (image.sizeInBytes() > memoryLeft)
        return {};
    memoryLeft -= image.sizeInBytes();
    return image;
}

} // namespace

namespace Picture {

std::optional<QImage> decode(QByteArrayView bytes, qint64 &memoryLeft, int longestSide)
{
    QImage image;
    if (bytes.startsWith("BM"))
        image = decodeBitmap(bytes, memoryLeft, longestSide);
    else if (bytes.startsWith("GIF8"))
        image = EncodedImage::decode("gif", bytes, memoryLeft);
    else if (bytes.startsWith("\xFF\xD8\xFF"))
        image = EncodedImage::decode("jpeg", bytes, memoryLeft);
    else if (bytes.startsWith("\x89PNG"))
        image = EncodedImage::decode("png", bytes, memoryLeft);
    else if (bytes.startsWith(QByteArrayView("\0\0", 2)))
        image = decodeIcon(bytes, memoryLeft);
    if (image.isNull())
        return std::nullopt;
    if (std::max(image.width(), image.height()) <= longestSide)
        return image;
    return image.scaled(longestSide, longestSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QImage load(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || file.size() > mostBytes || !file.open(QIODevice::ReadOnly))
        return {};
    QByteArray bytes;
    try {
        bytes = file.readAll();
    } catch (const std::bad_alloc &) {
        return {};
    }
    if (Metafile::recognises(bytes)) {
        // A drawing is stretched later on: it should not start from a dozen pixels.
        constexpr int smallest = 256;
        QSize size = Metafile::size(bytes);
        if (!size.isEmpty() && size.width() < smallest && size.height() < smallest)
            size.scale(smallest, smallest, Qt::KeepAspectRatio);
        return Metafile::render(bytes, size);
    }
    qint64 memoryLeft = mostBytes;
    return decode(bytes, memoryLeft).value_or(QImage());
}

QByteArray encodeBitmap(const QImage &image)
{
    return BitmapWriter::write(image.convertToFormat(QImage::Format_RGB32));
}

} // namespace Picture
