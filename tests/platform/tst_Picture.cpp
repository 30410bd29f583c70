#include "platform/picture/Picture.h"
#include "platform/picture/PictureBox.h"
#include "support/TestRunner.h"

#include <QBuffer>
#include <QTest>
#include <QtEndian>

namespace {

constexpr qint64 plenty = 1 << 24;
constexpr QRgb grey = 0xFFC0C0C0;
constexpr Twips box {275};

template <class T>
QByteArray little(T value)
{
    QByteArray bytes(sizeof(T), '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

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
    const quint32 offset = 54 + static_cast<quint32>(colours.size());
    return "BM" + little<quint32>(offset + static_cast<quint32>(pixels.size())) + little<quint32>(0)
        + little<quint32>(offset) + little<quint32>(40) + little<qint32>(width)
        + little<qint32>(height) + little<quint16>(1) + little<quint16>(static_cast<quint16>(bits))
        + little<quint32>(compression) + little<quint32>(0) + little<quint64>(0)
        + little<quint32>(static_cast<quint32>(colours.size() / 4)) + little<quint32>(0) + colours
        + pixels;
}

/// 32 bits a pixel, bottom-up or (negative height) top-down.
QByteArray bitmap32(bool topDown)
{
    const QImage image = sample();
    QByteArray pixels;
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 9; ++x)
            pixels += little<quint32>(image.pixel(x, topDown ? y : 4 - y) & 0xFFFFFF);
    }
    return bitmapFile(9, topDown ? -5 : 5, 32, pixels);
}

/// The header of OS/2: 12 bytes, sizes of 16 bits.
QByteArray coreBitmap()
{
    const QByteArray pixels = savedAs(sample(), "bmp").mid(54);
    return "BM" + little<quint32>(static_cast<quint32>(26 + pixels.size())) + little<quint32>(0)
        + little<quint32>(26) + little<quint32>(12) + little<quint16>(9) + little<quint16>(5)
        + little<quint16>(1) + little<quint16>(24) + pixels;
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
    return little<quint16>(0) + little<quint16>(1) + little<quint16>(1)
        + QByteArray("\x10\x10\0\0", 4) + little<quint16>(1) + little<quint16>(32)
        + little<quint32>(static_cast<quint32>(frame.size())) + little<quint32>(22) + frame;
}

} // namespace

class Picture_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void bitmaps_data();
    void bitmaps();
    void wrongPixelOffset();
    void cutRunLengths();
    void refused_data();
    void refused();
    void memoryBudget_data();
    void memoryBudget();
    void encoding();
    void rendering_data();
    void rendering();
};

void Picture_test::bitmaps_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QImage>("expected");
    const QImage indexed = sample().convertToFormat(QImage::Format_Indexed8);
    QImage few(9, 5, QImage::Format_Indexed8);
    few.setColorTable({0xFFFF0000, 0xFF00FF00, 0xFF0000FF});
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 9; ++x)
            few.setPixel(x, y, static_cast<uint>((x + y) % 3));
    }
    const QImage mono = sample().convertToFormat(QImage::Format_Mono, Qt::ThresholdDither);
    QTest::newRow("1 bit") << savedAs(mono, "bmp") << mono;
    QTest::newRow("4 bits") << savedAs(few, "bmp") << few;
    QTest::newRow("8 bits") << savedAs(indexed, "bmp") << indexed;
    QTest::newRow("24 bits") << savedAs(sample(), "bmp") << sample();
    QTest::newRow("32 bits") << bitmap32(false) << sample();
    QTest::newRow("top-down") << bitmap32(true) << sample();
    QTest::newRow("OS/2 header") << coreBitmap() << sample();
}

void Picture_test::bitmaps()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QImage, expected);
    for (const QByteArray &behind : {QByteArray(), QByteArray("\0", 1), QByteArray(100, 'x')}) {
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

/// Where the pixels are said to start inside the headers, they start behind the colours instead;
/// what counts for a cut off bitmap is where they are read.
void Picture_test::wrongPixelOffset()
{
    const QImage indexed = sample().convertToFormat(QImage::Format_Indexed8);
    QByteArray bytes = savedAs(indexed, "bmp");
    bytes.replace(10, 4, little<quint32>(0));
    for (qsizetype length = 54; length <= bytes.size(); ++length) {
        qint64 memoryLeft = plenty;
        const auto image = Picture::decode(bytes.left(length), memoryLeft);
        QVERIFY2(!image || *image == indexed.convertToFormat(QImage::Format_RGB32),
            qPrintable(u"cut off at %1 of %2"_qs.arg(length).arg(bytes.size())));
    }
}

/// Runs may end early, that is their way to leave pixels out; those have the first colour then.
void Picture_test::cutRunLengths()
{
    const QByteArray colours = little<quint32>(0) + little<quint32>(0x112233);
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

void Picture_test::refused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("only the mark") << QByteArray("BM");
    QTest::newRow("only zeros behind the mark") << "BM" + QByteArray(200, '\0');
    QTest::newRow("a text") << QByteArray(
        "BMW is a car, this is a sentence about cars, no bitmap.");
    QTest::newRow("a PNG") << savedAs(sample(), "png");
    QTest::newRow("a huge width and height") << bitmapFile(60000, 60000, 1, QByteArray(1000, 'x'));
    QTest::newRow("the largest width") << bitmapFile(0x7FFFFFFF, 1, 32, QByteArray(1000, 'x'));
    QTest::newRow("the largest height") << bitmapFile(1, 0x7FFFFFFF, 32, QByteArray(1000, 'x'));
    QTest::newRow("the lowest height")
        << bitmapFile(1, std::numeric_limits<int>::min(), 32, QByteArray(1000, 'x'));
    QTest::newRow("a negative width") << bitmapFile(-9, 5, 24, QByteArray(1000, 'x'));
    QTest::newRow("no height") << bitmapFile(9, 0, 24, QByteArray(1000, 'x'));
    QTest::newRow("no bits") << bitmapFile(9, 5, 0, QByteArray(1000, 'x'));
    QTest::newRow("an unknown depth") << bitmapFile(9, 5, 7, QByteArray(1000, 'x'));
    QTest::newRow("run lengths of 24 bits") << bitmapFile(2, 1, 24, QByteArray("\2\1\0\1", 4), 1);
    QTest::newRow("run lengths of 65535 by 65535")
        << bitmapFile(65535, 65535, 8, QByteArray("\0\1", 2), 1, QByteArray(8, '\0'));
}

void Picture_test::refused()
{
    QFETCH(QByteArray, bytes);
    qint64 memoryLeft = plenty;
    QVERIFY(!Picture::decode(bytes, memoryLeft));
    QCOMPARE(memoryLeft, plenty);
}

void Picture_test::memoryBudget_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("memory");
    QTest::addColumn<bool>("enough");
    QImage large(1000, 1000, QImage::Format_Mono);
    large.fill(0);
    QTest::newRow("just enough") << bitmap32(false) << qint64(9 * 5 * 4) << true;
    QTest::newRow("one byte short") << bitmap32(false) << qint64(9 * 5 * 4 - 1) << false;
    QTest::newRow("an icon") << savedAs(sample(), "ico") << qint64(4096) << true;
    QTest::newRow("an icon, too large") << savedAs(sample(), "ico") << qint64(100) << false;
    QTest::newRow("a JPEG, too large") << savedAs(sample(), "jpeg") << qint64(100) << false;
    QTest::newRow("an icon whose PNG frame is larger than it says")
        << iconFile(savedAs(large, "png")) << qint64(4096) << false;
}

void Picture_test::memoryBudget()
{
    QFETCH(QByteArray, bytes);
    QFETCH(qint64, memory);
    QFETCH(bool, enough);
    QCOMPARE(Picture::decode(bytes, memory).has_value(), enough);
    QVERIFY(memory >= 0);
}

void Picture_test::encoding()
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

void Picture_test::rendering_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<QSize>("covered");
    QTest::addColumn<QRgb>("colour");
    const auto filled = [](QSize size, QImage::Format format, QColor colour) {
        QImage image(size, format);
        image.fill(colour);
        return image;
    };
    const QColor red(255, 0, 0);
    const auto plain = QImage::Format_RGB32;
    QTest::newRow("no picture") << QImage() << QSize(0, 0) << grey;
    QTest::newRow("as large as the box")
        << filled({18, 18}, plain, red) << QSize(18, 18) << red.rgb();
    QTest::newRow("smaller: at the top left")
        << filled({9, 5}, plain, red) << QSize(9, 5) << red.rgb();
    QTest::newRow("larger: scaled to fit")
        << filled({36, 72}, plain, red) << QSize(9, 18) << red.rgb();
    QTest::newRow("larger in one direction")
        << filled({54, 6}, plain, red) << QSize(18, 2) << red.rgb();
    QTest::newRow("a line of one pixel")
        << filled({360, 1}, plain, red) << QSize(18, 1) << red.rgb();
    QTest::newRow("transparent") << filled({18, 18}, QImage::Format_ARGB32, Qt::transparent)
                                 << QSize(18, 18) << grey;
    QTest::newRow("half transparent over grey") << filled({18, 18}, QImage::Format_ARGB32,
        QColor(0, 0, 0, 128)) << QSize(18, 18) << qRgb(96, 96, 96);
    QImage sharp = filled({18, 18}, plain, red);
    sharp.setDevicePixelRatio(2);
    QTest::newRow("made for a sharp screen") << sharp << QSize(18, 18) << red.rgb();
}

void Picture_test::rendering()
{
    QFETCH(QImage, picture);
    QFETCH(QSize, covered);
    QFETCH(QRgb, colour);
    PictureBox pictureBox(box, box);
    pictureBox.setPicture(picture);
    const QImage image = pictureBox.Image();
    QCOMPARE(image.size(), QSize(18, 18));
    QCOMPARE(image.format(), QImage::Format_RGB32);
    for (int y = 0; y < 18; ++y) {
        for (int x = 0; x < 18; ++x) {
            const bool inside = x < covered.width() && y < covered.height();
            const QRgb found = image.pixel(x, y);
            const QRgb expected = inside ? colour : grey;
            QVERIFY2(near(found, expected),
                qPrintable(u"pixel %1, %2 is %3"_qs.arg(x).arg(y).arg(found, 0, 16)));
        }
    }
}

TSM_TEST(Picture_test);
#include "tst_Picture.moc"
