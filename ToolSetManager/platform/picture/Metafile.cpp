#include "platform/picture/Metafile.h"

#include "platform/picture/Dib.h"
#include "platform/picture/EnhancedMetafile.h"
#include "platform/picture/LittleEndian.h"
#include "platform/picture/MetafileRecords.h"
#include "platform/text/Twips.h"

#include <QCoreApplication>
#include <QProcess>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

using LittleEndian::at;
using namespace MetafileRecords;

namespace Metafile {

namespace {

constexpr int longestSide = 4096; ///< What the player takes.
constexpr int longestWithoutSize = 512;
constexpr int playingTime = 3000; ///< Milliseconds; a drawing takes some tens.

/// What is shown: a rectangle of logical units and its size in pixels.
struct Frame
{
    QPoint origin;
    QSize extent {0, 0}; ///< Of either sign; null when nothing tells it.
    QSize pixels {0, 0};
    bool upwards = false; ///< The vertical axis, where there is no extent.
};

/// A metafile taken apart. Views of the caller's bytes.
struct Parts
{
    QByteArrayView header;
    std::vector<Record> records; ///< Without the end.
    Frame frame;
};

bool recognisesPlain(QByteArrayView bytes)
{
    const int type = at<quint16>(bytes, 0);
    const int version = at<quint16>(bytes, 4);
    return (type == 1 || type == 2) && at<quint16>(bytes, 2) == headerSize / 2
        && (version == 0x100 || version == 0x300);
}

QSize fitted(double width, double height, int longest)
{
    const double factor = std::min(1.0, longest / std::max(width, height));
    return {std::max(1, qRound(width * factor)), std::max(1, qRound(height * factor))};
}

std::optional<Parts> takeApart(QByteArrayView bytes)
{
    Parts parts;
    const bool placeable = at<quint32>(bytes, 0) == placeableMark;
    if (placeable) {
        if (bytes.size() < placeableSize)
            return std::nullopt;
        const auto corner = [&](qsizetype n) { return int(at<qint16>(bytes, 6 + n * 2)); };
        const int unitsPerInch = at<quint16>(bytes, 14);
        parts.frame.origin = {corner(0), corner(1)};
        parts.frame.extent = {corner(2) - corner(0), corner(3) - corner(1)};
        const double scale =
            Twips::classicDpi / (unitsPerInch == 0 ? Twips::perInch : unitsPerInch);
        parts.frame.pixels = fitted(std::abs(parts.frame.extent.width()) * scale,
            std::abs(parts.frame.extent.height()) * scale, longestSide);
        if (parts.frame.extent.width() == 0 || parts.frame.extent.height() == 0)
            return std::nullopt;
        bytes = bytes.sliced(placeableSize);
    }
    if (!recognisesPlain(bytes) || bytes.size() < headerSize)
        return std::nullopt;
    parts.header = bytes.first(headerSize);
    if (!MetafileRecords::read(bytes.sliced(headerSize), parts.records))
        return std::nullopt;

    bool originSet = false;
    bool extentSet = false;
    for (const Record &record : parts.records) {
        // Parameters stand in reverse order.
        const int y = at<qint16>(record.parameters, 0);
        const int x = at<qint16>(record.parameters, 2);
        if (record.function == SetWindowOrg && !originSet && !placeable) {
            parts.frame.origin = {x, y};
            originSet = true;
        } else if (record.function == SetWindowExt && !extentSet && !placeable && x != 0
            && y != 0) {
            parts.frame.extent = {x, y};
            parts.frame.pixels = fitted(std::abs(x), std::abs(y), longestWithoutSize);
            extentSet = true;
        } else if (record.function == SetMapMode) {
            const int mode = at<quint16>(record.parameters, 0);
            parts.frame.upwards = mode >= firstUpwards && mode <= lastUpwards;
        }
    }
    return parts;
}

QImage soleBitmapOf(const Parts &parts)
{
    // Records that change how later ones draw, but draw nothing themselves.
    static constexpr std::array<quint16, 27> silent {0x001E, 0x0035, 0x0037, 0x00F7, 0x0102, 0x0103,
        0x0104, 0x0105, 0x0106, 0x0107, 0x0108, 0x0127, 0x012D, 0x012E, 0x01F0, 0x0201, 0x0209,
        0x020B, 0x020C, 0x020D, 0x020E, 0x0214, 0x0234, 0x02FA, 0x02FB, 0x02FC, 0x0626};
    const Record *shown = nullptr;
    for (const Record &record : parts.records) {
        if (std::binary_search(silent.begin(), silent.end(), record.function))
            continue;
        if (shown != nullptr)
            return {};
        shown = &record;
    }
    if (shown == nullptr)
        return {};
    // Behind the raster operation: heights and widths, then y and x, of the source and the target.
    qsizetype source = 4;
    if (shown->function == StretchDib)
        source = 6; // and how the colours are to be taken
    else if (shown->function != DibStretchBlt)
        return {};
    const QByteArrayView parameters = shown->parameters;
    const QByteArrayView dib = MetafileRecords::bitmap(*shown);
    if (dib.isEmpty() || at<quint32>(parameters, 0) != copyPixels)
        return {};
    const auto number = [&](qsizetype n) { return int(at<qint16>(parameters, source + n * 2)); };
    const auto header = Dib::header(dib);
    if (!header || header->decodedBytes() > (qint64(256) << 20))
        return {};
    const bool whole = number(0) == header->height && number(1) == header->width && number(2) == 0
        && number(3) == 0;
    const bool fills = parts.frame.extent.isEmpty()
        || (std::abs(number(4) - parts.frame.extent.height()) <= 1
            && std::abs(number(5) - parts.frame.extent.width()) <= 1
            && QPoint(number(7), number(6)) == parts.frame.origin);
    if (!whole || !fills)
        return {};
    return Dib::decode(dib, *header, header->endOfColours()).convertToFormat(QImage::Format_RGB32);
}

/// Where the parameters of a record have the bottom, right, top and left of a rectangle; -1 for
/// records without one.
qsizetype rectangleIn(quint16 function)
{
    switch (function) {
    case Rectangle:
    case Ellipse:
    case IntersectClipRect:
    case ExcludeClipRect:
        return 0;
    case RoundRect:
        return 4; // behind the size of the corners
    case Arc:
    case Pie:
    case Chord:
        return 8; // behind start and end
    default:
        return -1;
    }
}

/// WORKAROUND: libwmf draws no rectangle whose bottom is above its top on the screen, which is the
/// usual case where the vertical axis goes upwards.
QByteArray turned(const Record &record, QSize extent)
{
    QByteArray bytes = record.all.toByteArray();
    const qsizetype offset = rectangleIn(record.function);
    if (offset < 0 || record.parameters.size() < offset + 8)
        return bytes;
    const auto order = [&](qsizetype far, qsizetype near, bool backwards) {
        const auto a = at<qint16>(bytes, far);
        const auto b = at<qint16>(bytes, near);
        qToLittleEndian(backwards ? std::min(a, b) : std::max(a, b), bytes.data() + far);
        qToLittleEndian(backwards ? std::max(a, b) : std::min(a, b), bytes.data() + near);
    };
    const qsizetype bottom = record.all.size() - record.parameters.size() + offset;
    order(bottom, bottom + 4, extent.height() < 0);
    order(bottom + 2, bottom + 6, extent.width() < 0);
    return bytes;
}

/// The metafile with a window and a viewport that put its frame, if it has one, on pixels 0.. of
/// the picture. Those replace the file's own viewport and mapping mode; escapes draw nothing.
QByteArray framed(const Parts &parts, QSize pixels)
{
    constexpr int unscaled = 1000;
    const Frame &frame = parts.frame;
    const bool hasFrame = !frame.extent.isNull();
    QSize extent = hasFrame ? frame.extent : QSize(unscaled, frame.upwards ? -unscaled : unscaled);
    const QSize viewport = hasFrame ? pixels : QSize(unscaled, unscaled);
    QByteArray records;
    MetafileRecords::append(records, SetMapMode, {anisotropic});
    MetafileRecords::append(records, SetViewportOrg, {0, 0});
    MetafileRecords::append(records, SetViewportExt, {viewport.height(), viewport.width()});
    MetafileRecords::append(records, SetWindowOrg, {frame.origin.y(), frame.origin.x()});
    MetafileRecords::append(records, SetWindowExt, {extent.height(), extent.width()});
    quint32 longest = 5;
    for (const Record &record : parts.records) {
        if (record.function == SetViewportOrg || record.function == SetViewportExt
            || record.function == OffsetViewportOrg || record.function == ScaleViewportExt
            || record.function == SetMapMode || record.function == Escape)
            continue;
        if (record.function == SetWindowExt)
            extent = {at<qint16>(record.parameters, 2), at<qint16>(record.parameters, 0)};
        records.append(turned(record, extent));
        longest = std::max(longest, static_cast<quint32>(record.all.size() / 2));
    }
    MetafileRecords::append(records, EndOfFile, {});
    QByteArray bytes = parts.header.toByteArray();
    QByteArray sizes;
    LittleEndian::append(sizes, static_cast<quint32>((headerSize + records.size()) / 2));
    sizes.append(parts.header.sliced(10, 2)); // number of objects
    LittleEndian::append(sizes, longest);
    bytes.replace(6, sizes.size(), sizes);
    return bytes + records;
}

/// Has it played by the other process. Without a frame the box of what is drawn fills the picture,
/// and an empty size leaves the size to that box.
QImage play(const QByteArray &metafile, QSize pixels, bool hasFrame)
{
    QByteArray input;
    for (const int number : {pixels.width(), pixels.height(), int(hasFrame)}) {
        const auto value = static_cast<quint32>(std::max(number, 0));
        input.append(reinterpret_cast<const char *>(&value), sizeof(value));
    }
    QProcess player;
    player.start(QCoreApplication::applicationDirPath() + QStringLiteral("/metafile_player"), {});
    if (!player.waitForStarted(playingTime))
        return {};
    player.write(input + metafile);
    player.closeWriteChannel();
    if (!player.waitForFinished(playingTime)) {
        player.kill();
        player.waitForFinished();
        return {};
    }
    if (player.exitStatus() != QProcess::NormalExit || player.exitCode() != 0)
        return {};
    const QByteArray output = player.readAllStandardOutput();
    quint32 size[2] {};
    if (output.size() < qsizetype(sizeof(size)))
        return {};
    std::memcpy(size, output.constData(), sizeof(size));
    const qint64 bytes = qint64(size[0]) * size[1] * 4;
    if (size[0] > longestSide || size[1] > longestSide || bytes == 0
        || bytes != output.size() - qsizetype(sizeof(size)))
        return {};
    QImage image(static_cast<int>(size[0]), static_cast<int>(size[1]), QImage::Format_RGB32);
    std::memcpy(image.bits(), output.constData() + sizeof(size), static_cast<std::size_t>(bytes));
    return image;
}

} // namespace

bool recognises(QByteArrayView bytes)
{
    return recognisesPlain(bytes) || at<quint32>(bytes, 0) == placeableMark
        || EnhancedMetafile::recognises(bytes);
}

QSize size(QByteArrayView bytes)
{
    if (EnhancedMetafile::recognises(bytes))
        return EnhancedMetafile::size(bytes);
    const auto parts = takeApart(bytes);
    return parts ? parts->frame.pixels : QSize();
}

QImage soleBitmap(QByteArrayView bytes)
{
    const auto parts = takeApart(bytes);
    return parts ? soleBitmapOf(*parts) : QImage();
}

QImage render(QByteArrayView bytes, QSize size)
{
    const bool enhanced = EnhancedMetafile::recognises(bytes);
    const auto parts = enhanced ? std::nullopt : takeApart(bytes);
    if (!enhanced && !parts)
        return {};
    QImage image = parts ? soleBitmapOf(*parts) : QImage();
    if (image.isNull()) {
        QSize pixels = size.isEmpty() ? Metafile::size(bytes) : size;
        if (pixels.width() > longestSide || pixels.height() > longestSide)
            pixels.scale(longestSide, longestSide, Qt::KeepAspectRatio);
        image = enhanced ? EnhancedMetafile::render(bytes, pixels)
                         : play(framed(*parts, pixels), pixels, !parts->frame.extent.isNull());
    }
    if (image.isNull() || size.isEmpty() || image.size() == size)
        return image;
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

} // namespace Metafile
