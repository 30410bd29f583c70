#include "platform/picture/Picture.h"
#include "platform/picture/PictureBox.h"
#include "support/Bytes.h"
#include "support/Pictures.h"
#include "support/TestRunner.h"

#include <QBuffer>

using Bytes::dword;
using Bytes::word;
using Bytes::words;
using namespace Pictures;

namespace {

constexpr qint64 plenty = 1 << 24;
constexpr Twips box {275};

/// Odd in both directions, so that every depth has padded rows and the corners differ.
QImage sample()
{
    QImage image(9, 5, QImage::Format_RGB32);
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 9; ++x)
            image.setPixel(x, y, qRgb(x * 28, y * 60, (x + y) % 2 * 255));
    }
    return image;
}

QByteArray savedAs(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QByteArray bitmapFile(int width, int height, int bits, const QByteArray &pixels,
    quint32 compression = 0, const QByteArray &colours = {})
{
    const auto offset = 54 + colours.size();
    return "BM" + dword(offset + pixels.size()) + dword(0) + dword(offset) + dword(40)
        + dword(width) + dword(height) + words({1, bits}) + dword(compression)
        + QByteArray(12, '\0') + dword(colours.size() / 4) + dword(0) + colours + pixels;
}

/// Half transparent colours may be rounded either way.
bool near(QRgb a, QRgb b)
{
    return qAbs(qRed(a) - qRed(b)) <= 1 && qAbs(qGreen(a) - qGreen(b)) <= 1
        && qAbs(qBlue(a) - qBlue(b)) <= 1;
}

/// An icon file with one frame, which is said to be 16 by 16.
QByteArray iconFile(const QByteArray &frame)
{
    return words({0, 1, 1, 0x1010, 0, 1, 32}) + dword(frame.size()) + dword(22) + frame;
}

} // namespace

class Picture_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    /// In whatever depth: see Dib_test. Here it is what stands around the pixels.
    void bitmaps()
    {
        for (const auto format : {QImage::Format_RGB32, QImage::Format_Indexed8}) {
            const QImage expected = sample().convertToFormat(format);
            const QByteArray bytes = savedAs(expected, "bmp");
            for (const QByteArray &behind :
                {QByteArray(), QByteArray("\0", 1), QByteArray(100, 'x')}) {
                qint64 memoryLeft = plenty;
                const auto image = Picture::decode(QByteArray(bytes + behind), memoryLeft);
                QVERIFY(image.has_value());
                QCOMPARE(image->convertToFormat(QImage::Format_RGB32),
                    expected.convertToFormat(QImage::Format_RGB32));
                QCOMPARE(memoryLeft, plenty - image->sizeInBytes());
            }
            for (qsizetype length = 0; length < bytes.size(); ++length) {
                qint64 memoryLeft = plenty;
                QVERIFY2(!Picture::decode(bytes.left(length), memoryLeft),
                    qPrintable(u"cut off at %1 of %2"_qs.arg(length).arg(bytes.size())));
                QCOMPARE(memoryLeft, plenty);
            }
        }
    }

    /// Where the pixels are said to start inside the headers, they start behind the colours
    /// instead; what counts for a cut off bitmap is where they are read.
    void wrongPixelOffset()
    {
        const QImage indexed = sample().convertToFormat(QImage::Format_Indexed8);
        QByteArray bytes = savedAs(indexed, "bmp");
        bytes.replace(10, 4, dword(0));
        for (qsizetype length = 54; length <= bytes.size(); ++length) {
            qint64 memoryLeft = plenty;
            const auto image = Picture::decode(bytes.left(length), memoryLeft);
            QVERIFY2(!image || *image == indexed.convertToFormat(QImage::Format_RGB32),
                qPrintable(u"cut off at %1 of %2"_qs.arg(length).arg(bytes.size())));
        }
    }

    /// Runs may end early, that is their way to leave pixels out; those have the first colour then.
    void cutRunLengths()
    {
        const QByteArray colours = dword(0) + dword(0x112233);
        QByteArray runs;
        for (int y = 0; y < 20; ++y)
            runs += QByteArray("\x14\x01\x00\x00", 4);
        const QByteArray bytes = bitmapFile(20, 20, 8, runs + QByteArray("\0\1", 2), 1, colours);
        for (qsizetype length = 62; length <= bytes.size(); ++length) {
            qint64 memoryLeft = plenty;
            const auto image = Picture::decode(bytes.left(length), memoryLeft);
            for (int i = 0; image && i < 400; ++i) {
                const QRgb pixel = image->pixel(i % 20, i / 20);
                QVERIFY2(pixel == 0xFF112233 || (pixel == 0xFF000000 && length < bytes.size() - 2),
                    qPrintable(
                        u"cut off at %1: pixel %2 is %3"_qs.arg(length).arg(i).arg(pixel, 0, 16)));
            }
        }
    }

    /// A large picture takes no more memory than the small one that it becomes.
    void shrinking()
    {
        for (const int factor : {2, 7, 100}) {
            // The last row and column are cells that are not whole.
            const QImage large =
                sample().scaled(9 * factor, 5 * factor).copy(0, 0, 9 * factor - 1, 5 * factor - 1);
            qint64 memoryLeft = 9 * 5 * 4;
            QCOMPARE(Picture::decode(savedAs(large, "bmp"), memoryLeft, 9), sample());
            QCOMPARE(memoryLeft, 0);
        }
        const QByteArray colours = dword(0) + dword(0xFFFFFF);
        const std::tuple<QByteArray, int, QSize, QRgb> rows[] = {
            {bitmapFile(30000, 30000, 1, QByteArray(30000 * 3752, '\xFF'), 0, colours), 512,
                QSize(509, 509), white},
            {bitmapFile(2, 2, 8, QByteArray("\0\1\0\0\1\0\0\0", 8), 0, colours), 1, QSize(1, 1),
                qRgb(128, 128, 128)},
            {bitmapFile(255, 3, 8, QByteArray("\xFF\1\0\0", 4).repeated(3), 1, colours), 51,
                QSize(51, 1), white},
            {savedAs(filled(600, 300, red), "jpeg"), 100, QSize(100, 50), qRgb(254, 0, 0)},
        };
        for (const auto &[bytes, longestSide, size, colour] : rows) {
            qint64 memoryLeft = 1 << 20;
            const auto image = Picture::decode(bytes, memoryLeft, longestSide);
            QVERIFY(image.has_value());
            QCOMPARE(image->size(), size);
            QCOMPARE(image->pixel(size.width() - 1, 0), colour);
        }
    }

    void refused()
    {
        const QByteArray rest(1000, 'x');
        for (const QByteArray &bytes :
            QByteArrayList {QByteArray(), QByteArray("BM"), "BM" + QByteArray(200, '\0'),
                QByteArray("BMW is a car, this is a sentence about cars, no bitmap."),
                bitmapFile(60000, 60000, 1, rest), bitmapFile(0x7FFFFFFF, 1, 32, rest),
                bitmapFile(1, 0x7FFFFFFF, 32, rest), bitmapFile(9, 0, 24, rest),
                bitmapFile(9, 5, 7, rest), bitmapFile(2, 1, 24, QByteArray("\2\1\0\1", 4), 1),
                bitmapFile(65535, 65535, 8, QByteArray("\0\1", 2), 1, QByteArray(8, '\0'))}) {
            qint64 memoryLeft = plenty;
            QVERIFY2(!Picture::decode(bytes, memoryLeft), bytes.left(60).toHex().constData());
            QCOMPARE(memoryLeft, plenty);
        }
    }

    void memoryBudget()
    {
        QImage large(1000, 1000, QImage::Format_Mono);
        large.fill(0);
        const QByteArray bitmap = bitmapFile(9, 5, 32, QByteArray(180, 'x'));
        const std::tuple<const char *, QByteArray, qint64, bool> rows[] = {
            {"just enough", bitmap, 9 * 5 * 4, true},
            {"one byte short", bitmap, 9 * 5 * 4 - 1, false},
            {"an icon", savedAs(sample(), "ico"), 4096, true},
            {"an icon, too large", savedAs(sample(), "ico"), 100, false},
            {"a JPEG, too large", savedAs(sample(), "jpeg"), 100, false},
            {"an icon whose PNG frame is larger than it says", iconFile(savedAs(large, "png")),
                4096, false},
        };
        for (auto [what, bytes, memory, enough] : rows) {
            QVERIFY2(Picture::decode(bytes, memory).has_value() == enough, what);
            QVERIFY(memory >= 0);
        }
    }

    void encoding()
    {
        PictureBox pictureBox(box, box);
        pictureBox.setPicture(sample());
        QImage image = pictureBox.Image();
        const QByteArray bytes = Picture::encodeBitmap(image);
        QCOMPARE(bytes.size(), 1062);
        QCOMPARE(bytes.mid(14, 16).toHex(), QByteArray("28000000120000001200000001001800"));
        image.setDotsPerMeterX(5000);
        image.setDotsPerMeterY(1);
        QCOMPARE(Picture::encodeBitmap(image), bytes);
        QCOMPARE(Picture::encodeBitmap(image.convertToFormat(QImage::Format_ARGB32)), bytes);
        qint64 memoryLeft = plenty;
        QCOMPARE(Picture::decode(bytes, memoryLeft)->convertToFormat(QImage::Format_RGB32), image);
    }

    void rendering()
    {
        QImage sharp = filled(18, 18, red); // made for a sharp screen
        sharp.setDevicePixelRatio(2);
        const std::tuple<QImage, QSize, QRgb> rows[] = {
            {QImage(), QSize(0, 0), grey},
            {filled(18, 18, red), QSize(18, 18), red},
            {filled(9, 5, red), QSize(9, 5), red}, // at the top left
            {filled(36, 72, red), QSize(9, 18), red}, // scaled to fit
            {filled(54, 6, red), QSize(18, 2), red},
            {filled(360, 1, red), QSize(18, 1), red},
            {filled(18, 18, 0), QSize(18, 18), grey},
            {filled(18, 18, 0x80000000), QSize(18, 18), qRgb(96, 96, 96)},
            {sharp, QSize(18, 18), red},
        };
        for (const auto &[picture, covered, colour] : rows) {
            PictureBox pictureBox(box, box);
            pictureBox.setPicture(picture);
            const QImage image = pictureBox.Image();
            QCOMPARE(image.size(), QSize(18, 18));
            QCOMPARE(image.format(), QImage::Format_RGB32);
            for (int y = 0; y < 18; ++y) {
                for (int x = 0; x < 18; ++x) {
                    const bool inside = x < covered.width() && y < covered.height();
                    const QRgb found = image.pixel(x, y);
                    QVERIFY2(near(found, inside ? colour : grey),
                        qPrintable(u"%1 wide: pixel %2, %3 is %4"_qs.arg(picture.width())
                                       .arg(x)
                                       .arg(y)
                                       .arg(found, 0, 16)));
                }
            }
        }
    }
};

TSM_TEST(Picture_test);
#include "tst_Picture.moc"
