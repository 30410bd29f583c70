#include "platform/picture/Dib.h"

#include "platform/picture/LittleEndian.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <vector>

using LittleEndian::at;

namespace Dib {

namespace {

constexpr quint32 coreHeaderSize = 12; ///< OS/2 1
constexpr quint32 shortestHeader = 16; ///< OS/2 2, cut after the number of bits
constexpr quint32 alphaInHeader = 56;
constexpr quint32 os2HeaderSize = 64;
constexpr quint32 longestHeader = 124;
constexpr qint64 largestSide = 65535;
constexpr quint32 mostColours = 65536;
constexpr quint32 opaque = 0xFF000000;
constexpr quint32 buttonGrey = 0x00C0C0C0;

/// One colour channel of a pixel, spread over 0..255.
class Channel
{
public:
    explicit Channel(quint32 mask)
        : m_mask(mask)
        , m_shift(mask == 0 ? 0 : std::countr_zero(mask))
        , m_largest(mask >> m_shift)
    {
    }
    quint32 of(quint32 pixel) const
    {
        if (m_largest == 0)
            return 0;
        const quint64 value = (pixel & m_mask) >> m_shift;
        return static_cast<quint32>((value * 255 + m_largest / 2) / m_largest);
    }

private:
    quint32 m_mask;
    int m_shift;
    quint32 m_largest;
};

using Palette = std::array<QRgb, 256>;

/// Colours that the table does not have are black.
Palette palette(QByteArrayView bytes, const Header &header, qsizetype pixels)
{
    Palette colours;
    colours.fill(opaque);
    qsizetype count = std::min<qsizetype>(header.colourCount, 256);
    if (pixels > header.colours) // a table shorter than the header says
        count = std::min(count, (pixels - header.colours) / header.colourSize);
    for (qsizetype i = 0; i < count; ++i) {
        const qsizetype entry = header.colours + i * header.colourSize;
        if (entry + 3 > bytes.size())
            break;
        const auto channel = [&](int n) { return at<quint8>(bytes, entry + n); };
        colours[static_cast<std::size_t>(i)] = qRgb(channel(2), channel(1), channel(0));
    }
    return colours;
}

void readIndexedRow(const uchar *from, QRgb *to, int width, int bits, const Palette &colours)
{
    if (bits == 8) {
        for (int x = 0; x < width; ++x)
            to[x] = colours[from[x]];
        return;
    }
    const int mask = (1 << bits) - 1;
    int shift = 8;
    for (int x = 0; x < width; ++x) {
        shift -= bits;
        to[x] = colours[static_cast<std::size_t>((*from >> shift) & mask)];
        if (shift == 0) {
            shift = 8;
            ++from;
        }
    }
}

void readMaskedRow(const uchar *from, QRgb *to, const Header &header)
{
    const Channel red(header.masks[0]);
    const Channel green(header.masks[1]);
    const Channel blue(header.masks[2]);
    const Channel alpha(header.masks[3]);
    const bool hasAlpha = header.masks[3] != 0;
    const int size = header.bitsPerPixel / 8;
    for (int x = 0; x < header.width; ++x, from += size) {
        const quint32 pixel =
            size == 2 ? qFromLittleEndian<quint16>(from) : qFromLittleEndian<quint32>(from);
        to[x] = (hasAlpha ? alpha.of(pixel) << 24 : opaque) | red.of(pixel) << 16
            | green.of(pixel) << 8 | blue.of(pixel);
    }
}

void readRow(const uchar *from, QRgb *to, const Header &header, const Palette &colours)
{
    static constexpr std::array<quint32, 4> usual {0xFF0000, 0xFF00, 0xFF, 0};
    static constexpr std::array<quint32, 4> usualWithAlpha {0xFF0000, 0xFF00, 0xFF, opaque};
    if (header.bitsPerPixel <= 8) {
        readIndexedRow(from, to, header.width, header.bitsPerPixel, colours);
    } else if (header.bitsPerPixel == 24) {
        for (int x = 0; x < header.width; ++x, from += 3)
            to[x] = opaque | quint32(from[2]) << 16 | quint32(from[1]) << 8 | from[0];
    } else if (header.bitsPerPixel == 32 && header.masks == usual) {
        for (int x = 0; x < header.width; ++x, from += 4)
            to[x] = opaque | qFromLittleEndian<quint32>(from);
    } else if (header.bitsPerPixel == 32 && header.masks == usualWithAlpha) {
        for (int x = 0; x < header.width; ++x, from += 4)
            to[x] = qFromLittleEndian<quint32>(from);
    } else {
        readMaskedRow(from, to, header);
    }
}

/// How many pixels of each direction become one.
int shrinkFactor(const Header &header, int longestSide)
{
    return (std::max(header.width, header.height) - 1) / longestSide + 1;
}

/// Takes the rows of a picture, one by one in the order of the file, and makes the image of them.
class RowTarget
{
public:
    RowTarget(const Header &header, int longestSide)
        : m_header(header)
        , m_factor(shrinkFactor(header, longestSide))
        , m_image(header.sizeWithin(longestSide),
              header.masks[3] != 0 ? QImage::Format_ARGB32 : QImage::Format_RGB32)
    {
        if (m_factor > 1 && isValid()) {
            m_row.resize(static_cast<std::size_t>(header.width));
            m_sums.resize(static_cast<std::size_t>(m_image.width()));
        }
    }
    bool isValid() const { return !m_image.isNull(); }
    bool isComplete() const { return m_y == m_header.height; }

    /// Four samples of each direction make a pixel that is close enough to the mean of all.
    bool needsRow() const { return imageRow() % m_factor % step() == 0; }
    /// The row to be filled before next(), one pixel after the other.
    QRgb *row()
    {
        return m_factor > 1 ? m_row.data() : reinterpret_cast<QRgb *>(m_image.scanLine(imageRow()));
    }
    void next()
    {
        if (m_factor > 1) {
            if (needsRow())
                addRow();
            const int cell = imageRow() / m_factor;
            ++m_y;
            if (isComplete() || imageRow() / m_factor != cell)
                finishCells(cell);
        } else {
            ++m_y;
        }
    }
    QImage image() const { return m_image; }

private:
    /// Colours are weighted by their alpha.
    struct Sums
    {
        quint32 red = 0;
        quint32 green = 0;
        quint32 blue = 0;
        quint32 alpha = 0;
        quint32 count = 0;
    };

    int step() const { return std::max(1, m_factor / 4); }
    int imageRow() const { return m_header.topDown ? m_y : m_header.height - 1 - m_y; }

    void addRow()
    {
        for (int x = 0; x < m_header.width; x += m_factor) {
            Sums &sums = m_sums[static_cast<std::size_t>(x / m_factor)];
            const int end = std::min(x + m_factor, m_header.width);
            for (int i = x; i < end; i += step()) {
                const QRgb pixel = m_row[static_cast<std::size_t>(i)];
                const auto alpha = static_cast<quint32>(qAlpha(pixel));
                sums.red += static_cast<quint32>(qRed(pixel)) * alpha;
                sums.green += static_cast<quint32>(qGreen(pixel)) * alpha;
                sums.blue += static_cast<quint32>(qBlue(pixel)) * alpha;
                sums.alpha += alpha;
                ++sums.count;
            }
        }
    }

    void finishCells(int cell)
    {
        auto *to = reinterpret_cast<QRgb *>(m_image.scanLine(cell));
        for (Sums &sums : m_sums) {
            const quint32 alpha = std::max(sums.alpha, 1U);
            const auto mean = [](quint32 sum, quint32 count) {
                return static_cast<int>((sum + count / 2) / count);
            };
            *to++ = qRgba(mean(sums.red, alpha), mean(sums.green, alpha), mean(sums.blue, alpha),
                mean(sums.alpha, std::max(sums.count, 1U)));
            sums = {};
        }
    }

    const Header &m_header;
    const int m_factor;
    QImage m_image;
    std::vector<QRgb> m_row;
    std::vector<Sums> m_sums; ///< One for each pixel of a row of the image.
    int m_y = 0; ///< In the order of the file.
};

/// Plays run lengths. What they leave out has the first colour.
class RunLengths
{
public:
    RunLengths(RowTarget &target, const Header &header, const Palette &colours)
        : m_target(target)
        , m_colours(colours)
        , m_width(header.width)
        , m_nibbles(header.compression == Header::Rle4)
    {
    }

    void play(QByteArrayView runs)
    {
        startRow();
        playRuns(runs);
        while (!m_target.isComplete())
            nextRow();
    }

private:
    void playRuns(QByteArrayView runs)
    {
        for (qsizetype i = 0; i + 2 <= runs.size() && !m_target.isComplete();) {
            const int count = at<quint8>(runs, i);
            const int value = at<quint8>(runs, i + 1);
            i += 2;
            if (count > 0) {
                for (int n = 0; n < count && m_x < m_width; ++n)
                    put(m_nibbles ? (n % 2 == 0 ? value >> 4 : value & 15) : value);
            } else if (value == 0) {
                m_x = 0;
                nextRow();
            } else if (value == 1) {
                return;
            } else if (value == 2) {
                m_x = std::min(m_x + at<quint8>(runs, i), m_width);
                for (int n = at<quint8>(runs, i + 1); n > 0 && !m_target.isComplete(); --n)
                    nextRow();
                i += 2;
            } else {
                i += playLiteral(runs.sliced(i), value);
            }
        }
    }

    /// \a count pixels one by one. Returns the bytes taken, padded to an even number.
    qsizetype playLiteral(QByteArrayView pixels, int count)
    {
        for (int n = 0; n < count && m_x < m_width; ++n) {
            const qsizetype offset = m_nibbles ? n / 2 : n;
            if (offset >= pixels.size())
                break;
            const int value = at<quint8>(pixels, offset);
            put(m_nibbles ? (n % 2 == 0 ? value >> 4 : value & 15) : value);
        }
        const qsizetype size = m_nibbles ? (count + 1) / 2 : count;
        return std::min((size + 1) / 2 * 2, pixels.size());
    }

    /// To be called only left of the edge.
    void put(int index) { m_row[m_x++] = m_colours[static_cast<std::size_t>(index)]; }

    void startRow()
    {
        m_row = m_target.row();
        std::fill_n(m_row, m_width, m_colours[0]);
    }

    void nextRow()
    {
        m_target.next();
        if (!m_target.isComplete())
            startRow();
    }

    RowTarget &m_target;
    const Palette &m_colours;
    QRgb *m_row = nullptr;
    int m_width;
    bool m_nibbles;
    int m_x = 0;
};

/// Fills in compression and masks; false for a kind that is not read.
bool readCompression(QByteArrayView bytes, quint32 headerSize, Header &header)
{
    constexpr quint32 alphaMasks = 6;
    const quint32 stored = headerSize >= 20 ? at<quint32>(bytes, 16) : 0;
    switch (stored) {
    case Header::Plain:
        if (header.bitsPerPixel == 16)
            header.masks = {0x7C00, 0x03E0, 0x001F, 0};
        else if (header.bitsPerPixel == 32)
            header.masks = {0xFF0000, 0xFF00, 0xFF, 0};
        return true;
    case Header::Rle8:
        header.compression = Header::Rle8;
        return header.bitsPerPixel == 8;
    case Header::Rle4:
        header.compression = Header::Rle4;
        return header.bitsPerPixel == 4;
    case Header::Masks:
    case alphaMasks: {
        // In the header of OS/2 the same number means a fax code.
        if ((header.bitsPerPixel != 16 && header.bitsPerPixel != 32) || headerSize == os2HeaderSize)
            return false;
        header.compression = Header::Masks;
        const bool alpha = stored == alphaMasks || headerSize >= alphaInHeader;
        for (std::size_t i = 0; i < (alpha ? 4U : 3U); ++i)
            header.masks[i] = at<quint32>(bytes, 40 + qsizetype(i) * 4);
        const qsizetype end = 40 + (alpha ? 16 : 12);
        header.colours = std::max(qsizetype(headerSize), end);
        return header.colours <= bytes.size();
    }
    default:
        return false;
    }
}

} // namespace

std::optional<Header> header(QByteArrayView bytes)
{
    Header header;
    const quint32 size = at<quint32>(bytes, 0);
    if (size > bytes.size() || size > longestHeader
        || (size != coreHeaderSize && size < shortestHeader))
        return std::nullopt;
    qint64 width = 0;
    qint64 height = 0;
    quint32 colourCount = 0;
    header.colours = size;
    if (size == coreHeaderSize) {
        width = at<quint16>(bytes, 4);
        height = at<quint16>(bytes, 6);
        header.bitsPerPixel = at<quint16>(bytes, 10);
        header.colourSize = 3;
        if (header.bitsPerPixel == 16 || header.bitsPerPixel == 32)
            return std::nullopt;
    } else {
        width = at<qint32>(bytes, 4);
        height = at<qint32>(bytes, 8);
        header.topDown = height < 0;
        height = std::abs(height);
        header.bitsPerPixel = at<quint16>(bytes, 14);
        if (!readCompression(bytes, size, header))
            return std::nullopt;
        colourCount = size >= 36 ? at<quint32>(bytes, 32) : 0;
    }
    static constexpr std::array depths {1, 2, 4, 8, 16, 24, 32};
    if (std::find(depths.begin(), depths.end(), header.bitsPerPixel) == depths.end() || width <= 0
        || height <= 0 || width > largestSide || height > largestSide)
        return std::nullopt;
    header.width = static_cast<int>(width);
    header.height = static_cast<int>(height);
    if (header.bitsPerPixel <= 8 && colourCount == 0)
        colourCount = 1U << header.bitsPerPixel;
    if (colourCount > mostColours)
        return std::nullopt;
    header.colourCount = colourCount;
    return header;
}

QSize Header::sizeWithin(int longestSide) const
{
    const int factor = shrinkFactor(*this, longestSide);
    return {(width - 1) / factor + 1, (height - 1) / factor + 1};
}

QImage decode(QByteArrayView bytes, const Header &header, qsizetype pixels, int longestSide)
{
    if (pixels < header.colours || pixels > bytes.size())
        return {};
    if (!header.runLengths() && header.pixelBytes() > bytes.size() - pixels)
        return {};
    RowTarget target(header, longestSide);
    if (!target.isValid())
        return {};
    const Palette colours = header.bitsPerPixel <= 8 ? palette(bytes, header, pixels) : Palette {};
    if (header.runLengths()) {
        RunLengths(target, header, colours).play(bytes.sliced(pixels));
        return target.image();
    }
    const qint64 stride = Header::stride(header.width, header.bitsPerPixel);
    const auto *from = reinterpret_cast<const uchar *>(bytes.data()) + pixels;
    for (; !target.isComplete(); from += stride, target.next()) {
        if (target.needsRow())
            readRow(from, target.row(), header, colours);
    }
    return target.image();
}

QImage decodeIcon(QByteArrayView bytes, const Header &header)
{
    Header picture = header;
    picture.height = header.height / 2;
    if (picture.height == 0 || header.runLengths())
        return {};
    if (picture.bitsPerPixel == 32)
        picture.masks[3] = ~(picture.masks[0] | picture.masks[1] | picture.masks[2]);
    const qsizetype pixels = header.endOfColours();
    QImage image = decode(bytes, picture, pixels);
    if (image.isNull())
        return {};

    bool ownAlpha = false;
    if (picture.masks[3] != 0) {
        for (int y = 0; y < image.height() && !ownAlpha; ++y) {
            const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
            ownAlpha = std::any_of(row, row + image.width(), [](QRgb p) { return qAlpha(p) != 0; });
        }
    }
    if (ownAlpha)
        return image;

    const qint64 stride = Header::stride(picture.width, 1);
    const qint64 mask = pixels + picture.pixelBytes();
    if (stride * picture.height > bytes.size() - mask)
        return {};
    image.reinterpretAsFormat(QImage::Format_ARGB32);
    const auto *from = reinterpret_cast<const uchar *>(bytes.data()) + mask;
    for (int y = 0; y < image.height(); ++y, from += stride) {
        auto *row =
            reinterpret_cast<QRgb *>(image.scanLine(picture.topDown ? y : image.height() - 1 - y));
        for (int x = 0; x < image.width(); ++x) {
            const bool showsThrough = (from[x / 8] >> (7 - x % 8) & 1) != 0;
            const QRgb colour = row[x] & ~opaque;
            if (!showsThrough)
                row[x] = opaque | colour;
            else
                row[x] = colour == 0 ? 0 : opaque | (colour ^ buttonGrey);
        }
    }
    return image;
}

} // namespace Dib
