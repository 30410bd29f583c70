#include "platform/picture/IconFrames.h"

#include "platform/picture/Dib.h"
#include "platform/picture/EncodedImage.h"
#include "platform/picture/LittleEndian.h"

#include <QtEndian>

#include <algorithm>
#include <tuple>

using LittleEndian::at;

namespace IconFrames {

namespace {

constexpr qsizetype pngHeaderSize = 26; ///< Up to the colour type.

bool isPng(QByteArrayView frame)
{
    return frame.size() >= pngHeaderSize && frame.startsWith("\x89PNG\r\n\x1a\n");
}

QSize pngSize(QByteArrayView frame)
{
    return {qFromBigEndian<qint32>(frame.data() + 16), qFromBigEndian<qint32>(frame.data() + 20)};
}

bool fits(qint64 width, qint64 height)
{
    return width > 0 && height > 0 && width <= largestSide && height <= largestSide;
}

QImage decodePng(QByteArrayView frame, qint64 memory)
{
    const QSize size = pngSize(frame);
    if (!fits(size.width(), size.height()) || qint64(size.width()) * size.height() * 4 > memory)
        return {};
    QImage image = EncodedImage::decode("png", frame, memory);
    if (image.isNull())
        return {};
    image.convertTo(QImage::Format_ARGB32);
    image.setDotsPerMeterX(0);
    image.setDotsPerMeterY(0);
    return image;
}

} // namespace

std::vector<IconFrame> read(QByteArrayView bytes, Directory kind)
{
    constexpr qsizetype headerSize = 6;
    constexpr int icon = 1;
    constexpr int cursor = 2;
    constexpr qsizetype mostFrames = 256; // real icons have a dozen, foreign files 65,535
    const int type = at<quint16>(bytes, 2);
    std::vector<IconFrame> frames;
    if (bytes.size() < headerSize || at<quint16>(bytes, 0) != 0
        || (type != icon && (type != cursor || kind != Directory::File)))
        return frames;
    const qsizetype entrySize = kind == Directory::File ? 16 : 14;
    const qsizetype count = std::min(
        {qsizetype(at<quint16>(bytes, 4)), (bytes.size() - headerSize) / entrySize, mostFrames});
    frames.reserve(static_cast<std::size_t>(count));
    for (qsizetype i = 0; i < count; ++i) {
        const QByteArrayView entry = bytes.sliced(headerSize + i * entrySize, entrySize);
        const auto side = [&](int n) {
            const int stored = at<quint8>(entry, n);
            return stored == 0 ? 256 : stored;
        };
        IconFrame frame;
        frame.size = std::max(side(0), side(1));
        if (type == icon) // a cursor has its hot spot there
            frame.bitsPerPixel = at<quint16>(entry, 6);
        frame.bytes = at<quint32>(entry, 8);
        frame.place = kind == Directory::File ? at<quint32>(entry, 12) : at<quint16>(entry, 12);
        frames.push_back(frame);
    }
    return frames;
}

int depth(QByteArrayView frame)
{
    if (isPng(frame))
        return 32;
    const quint32 headerSize = at<quint32>(frame, 0);
    return headerSize == 12 ? at<quint16>(frame, 10) : at<quint16>(frame, 14);
}

void sortByFitness(std::vector<IconFrame> &frames, int wanted)
{
    const auto fitness = [wanted](const IconFrame &frame) {
        const bool tooSmall = frame.size < wanted;
        return std::tuple(tooSmall, std::abs(frame.size - wanted), -frame.bitsPerPixel);
    };
    std::stable_sort(frames.begin(), frames.end(),
        [&](const IconFrame &a, const IconFrame &b) { return fitness(a) < fitness(b); });
}

bool plausible(QByteArrayView frame)
{
    if (isPng(frame)) {
        const QSize size = pngSize(frame);
        return fits(size.width(), size.height());
    }
    const auto header = Dib::header(frame);
    return header && fits(header->width, header->height / 2) && !header->runLengths();
}

QImage decode(QByteArrayView frame, qint64 memory)
{
    if (isPng(frame))
        return decodePng(frame, memory);
    const auto header = Dib::header(frame);
    if (!header || !fits(header->width, header->height / 2) || header->decodedBytes() / 2 > memory)
        return {};
    return Dib::decodeIcon(frame, *header);
}

} // namespace IconFrames
