#include "platform/picture/Metafile.h"
#include "platform/picture/Picture.h"
#include "support/Bytes.h"
#include "support/Files.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

using Bytes::dword;
using Bytes::dwords;
using Bytes::words;
using namespace Pictures;

namespace {

QByteArray record(int function, const QByteArray &parameters)
{
    return dword(static_cast<quint32>(3 + parameters.size() / 2)) + words({function}) + parameters;
}

/// Records of enhanced metafiles have numbers of 32 bits.
QByteArray enhancedRecord(quint32 type, std::initializer_list<int> numbers, QByteArray rest = {})
{
    QByteArray parameters;
    for (const int number : numbers)
        parameters += dword(number);
    rest.resize((rest.size() + 3) / 4 * 4, '\0');
    parameters += rest;
    return dword(type) + dword(8 + parameters.size()) + parameters;
}

/// One of 100 by 100 pixels, 96 to the inch.
QByteArray enhanced(const QByteArray &records)
{
    const QByteArray header = enhancedRecord(1,
        {0, 0, 99, 99, 0, 0, 2646, 2646, 0x464D4520, 0x10000, 0, 0, 20, 0, 0, 0, 960, 960, 254,
            254});
    return header + records + enhancedRecord(14, {0, 0, 20});
}

/// A red brush and a blue pen, 2 wide, as objects 1 and 2 of either kind.
QByteArray tools()
{
    return enhancedRecord(39, {1, 0, 0x0000FF, 0}) + enhancedRecord(38, {2, 0, 2, 0, 0xFF0000})
        + enhancedRecord(37, {1}) + enhancedRecord(37, {2});
}

QByteArray oldTools()
{
    return record(0x2FC, words({0, 0x00FF, 0, 0})) + record(0x2FA, words({0, 2, 0, 0, 0xFF}))
        + record(0x12D, words({0})) + record(0x12D, words({1}));
}

QByteArray plain(const QByteArray &records)
{
    const QByteArray all = records + record(0, {});
    return words({1, 9, 0x300}) + dword(static_cast<quint32>(9 + all.size() / 2)) + words({4})
        + dword(200) + words({0}) + all;
}

QByteArray placeable(int left, int top, int right, int bottom, int inch, const QByteArray &records)
{
    return dword(0x9AC6CDD7) + words({0, left, top, right, bottom, inch, 0, 0, 0}) + plain(records);
}

QByteArray window(int x, int y, int width, int height)
{
    return record(0x103, words({8})) + record(0x20B, words({y, x}))
        + record(0x20C, words({height, width}));
}

/// A red rectangle without an edge.
QByteArray redRectangle(int left, int top, int right, int bottom)
{
    return record(0x2FC, words({0, 0x00FF, 0, 0})) + record(0x2FA, words({5, 0, 0, 0, 0}))
        + record(0x12D, words({0})) + record(0x12D, words({1}))
        + record(0x41B, words({bottom, right, top, left}));
}

/// Shows a bitmap of 2 by 2 pixels, 24 bits, in that rectangle.
QByteArray bitmap(int width, int height)
{
    const QByteArray dib = dword(40) + dword(2) + dword(2) + words({1, 24}) + QByteArray(24, '\0')
        + QByteArray("\0\0\xFF\xFF\xFF\xFF\0\0", 8) + QByteArray("\xFF\0\0\0\xFF\0\0\0", 8);
    return record(0xF43, dword(0x00CC0020) + words({0, 2, 2, 0, 0, height, width, 0, 0}) + dib);
}

} // namespace

class Metafile_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void drawing_data()
    {
        // The frame is what counts, not what is drawn: a drawing in one corner stays there.
        rows<QByteArray, QSize, QRect>({
            {"placeable, 96 dpi",
                placeable(0, 0, 2880, 1440, 1440,
                    window(0, 0, 2880, 1440) + redRectangle(0, 0, 1440, 720)),
                QSize(192, 96), QRect(0, 0, 96, 48)},
            {"placeable, a window of other units",
                placeable(0, 0, 1440, 1440, 1440,
                    window(0, 0, 1000, 1000) + redRectangle(500, 500, 1000, 1000)),
                QSize(96, 96), QRect(48, 48, 48, 48)},
            {"placeable without a window of its own",
                placeable(1000, 1000, 2440, 2440, 1440, redRectangle(1000, 1000, 1720, 1720)),
                QSize(96, 96), QRect(0, 0, 48, 48)},
            {"placeable of no inch", placeable(0, 0, 1440, 1440, 0, redRectangle(0, 0, 720, 720)),
                QSize(96, 96), QRect(0, 0, 48, 48)},
            {"plain: the window",
                plain(window(-100, -100, 200, 100) + redRectangle(-100, -100, 0, -50)),
                QSize(200, 100), QRect(0, 0, 100, 50)},
            {"plain, upwards", plain(window(0, 100, 200, -100) + redRectangle(0, 100, 100, 50)),
                QSize(200, 100), QRect(0, 0, 100, 50)},
            {"plain, upwards, with round corners",
                plain(window(0, 100, 200, -100) + redRectangle(0, 100, 100, 50).chopped(14)
                    + record(0x61C, words({2, 2, 50, 100, 100, 0}))),
                QSize(200, 100), QRect(0, 0, 100, 50)},
            {"of the type for disks",
                plain(window(0, 0, 50, 50) + redRectangle(0, 0, 25, 25)).replace(0, 1, "\2"),
                QSize(50, 50), QRect(0, 0, 25, 25)},
            {"plain, a large window is made smaller",
                plain(window(0, 0, 10240, 5120) + redRectangle(5120, 0, 10240, 5120)),
                QSize(512, 256), QRect(256, 0, 256, 256)},
            {"a viewport of its own is passed over",
                plain(record(0x20E, words({7, 7})) + window(0, 0, 100, 100)
                    + record(0x20D, words({50, 50})) + redRectangle(0, 0, 50, 50)),
                QSize(100, 100), QRect(0, 0, 50, 50)},
        });
    }

    void drawing()
    {
        const auto [bytes, size, covered] = row<QByteArray, QSize, QRect>();
        QVERIFY(Metafile::recognises(bytes));
        QCOMPARE(Metafile::size(bytes), size);
        const QImage image = Metafile::render(bytes);
        QCOMPARE(image.size(), size);
        QCOMPARE(image.format(), QImage::Format_RGB32);
        // One pixel of play at the edges.
        const QRect inner = covered.adjusted(2, 2, -2, -2);
        const QRect outer = covered.adjusted(-2, -2, 2, 2);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                if (!inner.contains(x, y) && outer.contains(x, y))
                    continue;
                QCOMPARE(image.pixel(x, y), inner.contains(x, y) ? red : white);
            }
        }
        QCOMPARE(Metafile::render(bytes, {60, 40}).size(), QSize(60, 40));
    }

    void shapes_data()
    {
        const auto old = [](int function, std::initializer_list<int> parameters) {
            return plain(window(0, 0, 100, 100) + oldTools() + record(function, words(parameters)));
        };
        const auto drawn = [](quint32 type, std::initializer_list<int> numbers) {
            return enhanced(tools() + enhancedRecord(type, numbers));
        };
        const QByteArray triangle = words({10, 10, 90, 10, 90, 90});
        const QByteArray pixels("\0\0\xFF\xFF\xFF\xFF\0\0\xFF\0\0\0\xFF\0\0\0", 16);
        const auto dib = [&](quint32 type, std::initializer_list<int> numbers) {
            return enhancedRecord(type, numbers,
                dword(40) + dwords({2, 2}) + words({1, 24}) + QByteArray(24, '\0') + pixels);
        };
        // Four by four places, 25 pixels apart, from the middle of the first one: r, b or a dot.
        rows<QByteArray, QByteArray>({
            {"a filled ellipse", old(0x418, {100, 100, 0, 0}), ".rr. rrrr rrrr .rr."},
            {"a filled chord", old(0x830, {50, 0, 50, 100, 100, 100, 0, 0}), ".rr. rrrr .... ...."},
            {"a filled pie", old(0x81A, {50, 0, 0, 50, 100, 100, 0, 0}), ".r.. rr.. .... ...."},
            {"a filled rectangle, exchanged", old(0x41B, {0, 100, 50, 50}), "..rr ..rr .... ...."},
            {"a rectangle with round corners", old(0x61C, {100, 100, 100, 100, 0, 0}),
                ".rr. rrrr rrrr .rr."},
            {"no window: what is drawn",
                plain(oldTools() + record(0x418, words({700, 700, 300, 300}))),
                ".rr. rrrr rrrr .rr."},
            {"no window, upwards",
                plain(record(0x103, words({2})) + oldTools()
                    + record(0x41B, words({0, 700, 400, 0}))
                    + record(0x41B, words({0, 350, 700, 0}))),
                "rr.. rr.. rrrr rrrr"},
            {"enhanced: ellipse", drawn(42, {0, 0, 100, 100}), ".rr. rrrr rrrr .rr."},
            {"enhanced: chord", drawn(46, {0, 0, 100, 100, 100, 50, 0, 50}), ".rr. rrrr .... ...."},
            {"enhanced: pie, clockwise",
                enhanced(tools() + enhancedRecord(57, {2})
                    + enhancedRecord(47, {0, 0, 100, 100, 0, 50, 50, 0})),
                ".r.. rr.. .... ...."},
            {"enhanced: polygon", enhanced(tools() + enhancedRecord(86, {0, 0, 0, 0, 3}, triangle)),
                "brrr .brr ..br ...b"},
            {"enhanced: line",
                enhanced(tools() + enhancedRecord(27, {0, 12}) + enhancedRecord(54, {99, 12})),
                "bbbb .... .... ...."},
            {"enhanced: path",
                enhanced(tools() + enhancedRecord(59, {}) + enhancedRecord(27, {0, 0})
                    + enhancedRecord(54, {99, 0}) + enhancedRecord(54, {99, 50})
                    + enhancedRecord(54, {0, 50}) + enhancedRecord(61, {}) + enhancedRecord(60, {})
                    + enhancedRecord(62, {0, 0, 0, 0})),
                "rrrr rrrr .... ...."},
            {"enhanced: upwards, with a state saved and restored",
                enhanced(enhancedRecord(17, {8}) + enhancedRecord(9, {10, -10})
                    + enhancedRecord(11, {100, 100}) + enhancedRecord(12, {0, 100}) + tools()
                    + enhancedRecord(37, {-0x7FFFFFF8}) + enhancedRecord(33, {})
                    + enhancedRecord(10, {5, 0}) + enhancedRecord(34, {-1})
                    + enhancedRecord(43, {0, 0, 5, 5})),
                ".... .... rr.. rr.."},
            {"enhanced: clipped",
                enhanced(tools() + enhancedRecord(30, {50, 0, 100, 100})
                    + enhancedRecord(29, {0, 0, 100, 50}) + enhancedRecord(42, {0, 0, 100, 100})),
                ".... .... ..rr ..r."},
            {"enhanced: bitmap",
                enhanced(dib(
                    81, {0, 0, 0, 0, 0, 0, 0, 0, 2, 2, 80, 40, 120, 16, 0, 0xCC0020, 100, 100})),
                "bbgg bbgg rr.. rr.."},
            {"enhanced: bitmap of which a part is drawn, by exclusive or",
                enhanced(
                    dib(81, {0, 0, 0, 0, 0, 0, 1, 0, 1, 1, 80, 40, 120, 16, 0, 0x660046, 50, 50})
                    + tools() + enhancedRecord(43, {50, 50, 100, 100})),
                "kk.. kk.. ..rr ..rr"},
            {"enhanced: turned by a quarter",
                enhanced(tools()
                    + enhancedRecord(35, {0, 0x3F800000, -0x40800000, 0, 0x42C80000, 0})
                    + enhancedRecord(43, {0, 0, 100, 50})),
                "..rr ..rr ..rr ..rr"},
            {"enhanced: the background of a text",
                enhanced(enhancedRecord(25, {0x0000FF})
                    + enhancedRecord(
                        84, {0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 76, 2, 0, 50, 100, 100, 0})),
                ".... .... rrrr rrrr"},
            {"enhanced: gradient between equal colours",
                enhanced(enhancedRecord(
                    118, {0, 0, 0, 0, 2, 1, 0, 0, 0, 0xFF00, 0, 50, 100, 0xFF00, 0, 0, 1})),
                "rr.. rr.. rr.. rr.."},
            {"enhanced: records that are not there",
                enhanced(tools() + enhancedRecord(86, {0, 0, 0, 0, 0x7FFFFFFF}, triangle)
                    + dib(81,
                        {0, 0, 0, 0, 0, 0, 0, 0, 2, 2, 80, 40, 120, 0x7FFFFFFF, 0, 0xCC0020, 100,
                            100})
                    + enhancedRecord(37, {19}) + enhancedRecord(34, {-5})
                    + enhancedRecord(37, {0x7FFFFFFF})),
                "brrr .brr ..br ...b"},
        });
    }

    /// Areas are filled, with libwmf as with the player of enhanced metafiles.
    void shapes()
    {
        const auto [bytes, expected] = row<QByteArray, QByteArray>();
        const QImage image = Metafile::render(bytes, {100, 100});
        const std::pair<QRgb, char> names[] = {
            {red, 'r'}, {green, 'g'}, {blue, 'b'}, {white, '.'}, {black, 'k'}};
        QByteArray found;
        for (int i = 0; i < 16; ++i) {
            const QRgb pixel = image.pixel(12 + i % 4 * 25, 12 + i / 4 * 25);
            const auto *name = std::find_if(std::begin(names), std::end(names),
                [pixel](const auto &entry) { return entry.first == pixel; });
            found += name == std::end(names) ? '?' : name->second;
            if (i % 4 == 3 && i < 15)
                found += ' ';
        }
        QCOMPARE(found, expected);
    }

    /// Shown pixel by pixel, and not by the other process.
    void soleBitmap()
    {
        QImage expected(2, 2, QImage::Format_RGB32);
        expected.setPixel(0, 0, 0xFF0000FF);
        expected.setPixel(1, 0, 0xFF00FF00);
        expected.setPixel(0, 1, red);
        expected.setPixel(1, 1, white);
        const QByteArray all = plain(window(0, 0, 40, 40) + bitmap(40, 40));
        QCOMPARE(Metafile::soleBitmap(all), expected);
        QCOMPARE(Metafile::render(all), expected);
        QVERIFY(Metafile::soleBitmap(plain(window(0, 0, 80, 40) + bitmap(40, 40))).isNull());
        QVERIFY(Metafile::soleBitmap(
            plain(window(0, 0, 40, 40) + bitmap(40, 40) + redRectangle(0, 0, 9, 9)))
                    .isNull());
    }

    void damaged()
    {
        const QByteArray whole =
            placeable(0, 0, 960, 960, 960, window(0, 0, 96, 96) + bitmap(96, 96));
        for (qsizetype length = 0; length < whole.size(); ++length)
            QVERIFY(Metafile::render(whole.first(length)).isNull());
        QVERIFY(!Metafile::render(whole).isNull());
        QVERIFY(Metafile::render(placeable(5, 5, 5, 5, 96, redRectangle(0, 0, 9, 9))).isNull());
        QVERIFY(Metafile::render(QByteArray(500, 'x')).isNull());
        QVERIFY(
            Metafile::render(QByteArray(plain({}) + QByteArray(500, 'x'))).size().width() <= 512);
    }

    void badForThePlayer_data()
    {
        QTest::addColumn<QByteArray>("records");
        const auto select = record(0x12D, words({0}));
        const auto patternOf = [&](quint32 headerSize, int width, int height,
                                   int bits) -> QByteArray {
            const QByteArray dib = dword(headerSize) + dword(static_cast<quint32>(width))
                + dword(static_cast<quint32>(height)) + words({1, bits}) + QByteArray(60, '\0');
            return record(0x142, words({3, 0}) + dib) + select
                + record(0x61D, words({0x21, 0xF0, 90, 90, 0, 0}));
        };
        QTest::newRow("a font of width -32,768: reads outside its memory")
            << window(0, 0, 2000, 1000)
                + record(
                    0x2FB, words({-300, -32768, 0, 0, 400, 0, 0, 0, 0}) + QByteArray("Arial\0", 6))
                + select + record(0x521, words({5, 0x6548, 0x6C6C, 0x6F, 200, 100}));
        QTest::newRow("a pattern without height: divides by zero") << patternOf(40, 8, 0, 1);
        QTest::newRow("a pattern of 255 bits without a header: never ends")
            << patternOf(0, 8, 8, 255);
        QTest::newRow("a polygon of 32,767 points that are not there")
            << record(0x324, words({0x7FFF}));
    }

    /// Files at which the library crashes or does not come back: they have no picture, and the
    /// program goes on.
    void badForThePlayer()
    {
        QFETCH(QByteArray, records);
        QVERIFY(Metafile::render(plain(window(0, 0, 100, 100) + records)).isNull());
        QVERIFY(!Metafile::render(plain(window(0, 0, 9, 9) + redRectangle(0, 0, 9, 9))).isNull());
    }

    void files()
    {
        const std::tuple<QString, QByteArray, QSize> rows[] = {
            // larger, for what follows
            {u"a.wmf"_qs, placeable(0, 0, 200, 100, 96, redRectangle(0, 0, 50, 50)),
                QSize(256, 128)},
            {u"b.wmf"_qs, Picture::encodeBitmap(filled(40, 30, red)),
                QSize(40, 30)}, // whatever its name
            {u"c.bmp"_qs, "BMW is a car", QSize(0, 0)},
            {u"d.bmp"_qs, "", QSize(0, 0)},
        };
        const QTemporaryDir folder;
        for (const auto &[name, content, size] : rows) {
            QVERIFY(Files::put(folder.filePath(name), content));
            QCOMPARE(Picture::load(folder.filePath(name)).size(), size);
        }
        QVERIFY(Picture::load(folder.path()).isNull());
        QVERIFY(Picture::load(folder.filePath(u"none"_qs)).isNull());
    }
};

TSM_TEST(Metafile_test);
#include "tst_Metafile.moc"
