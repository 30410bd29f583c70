#include "platform/picture/Dib.h"
#include "support/Bytes.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

using namespace Bytes;
using namespace Pictures;

namespace {

/// A header of \a size bytes; what it has beyond its 40 bytes is in \a more.
QByteArray header(qint32 width, qint32 height, quint16 bits, quint32 compression = 0,
    quint32 colours = 0, quint32 size = 40, const QByteArray &more = {})
{
    QByteArray bytes = dword(size) + dword(width) + dword(height) + words({1, bits})
        + dwords({compression, 0, 0, 0, colours, 0}) + more;
    bytes.resize(size, '\0');
    return bytes;
}

QByteArray coreHeader(quint16 width, quint16 height, quint16 bits)
{
    return dword(12) + words({width, height, 1, bits});
}

} // namespace

class Dib_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    /// Pictures of two rows, given from the top: each colour by itself, so that a wrong bit,
    /// channel or row shows.
    void pixels_data()
    {
        columns<QByteArray, int, QList<QRgb>>();
        const QByteArray four = dwords({0x000000, 0xFFFFFF, 0xFF0000, 0x0000FF});
        const QByteArray fourOfThree("\0\0\0\xFF\xFF\xFF\0\0\xFF\xFF\0\0", 12);

        QTest::newRow("1 bit") << header(3, 2, 1, 0, 2) + four.first(8) + dwords({0x40, 0xA0}) << 3
                               << QList<QRgb> {white, black, white, black, white, black};
        QTest::newRow("2 bits") << header(3, 2, 2) + four + dwords({0x6C, 0x1B}) << 3
                                << QList<QRgb> {black, white, red, white, red, blue};
        QTest::newRow("4 bits") << header(3, 2, 4, 0, 4) + four + dwords({0x3012, 0x1023}) << 3
                                << QList<QRgb> {red, blue, white, white, red, blue};
        QTest::newRow("4 bits, an index beyond the colours") << header(2, 1, 4, 0, 2)
                + four.first(8) + dwords({0xF1}) << 2 << QList<QRgb> {black, white};
        QTest::newRow("8 bits") << header(2, 2, 8, 0, 4) + four + dwords({0x0203, 0x0001}) << 2
                                << QList<QRgb> {white, black, blue, red};
        QTest::newRow("8 bits, top-down")
            << header(2, -2, 8, 0, 4) + four + dwords({0x0203, 0x0001}) << 2
            << QList<QRgb> {blue, red, white, black};
        QTest::newRow("16 bits: 5 a channel, spread to the nearest of 8")
            << header(2, 2, 16) + words({0x7FFF, 0x7C00, 0x0421, 0x0C63}) << 2
            << QList<QRgb> {qRgb(8, 8, 8), qRgb(25, 25, 25), white, red};
        QTest::newRow("16 bits: 5, 6 and 5 by masks")
            << header(2, 2, 16, 3) + dwords({0xF800, 0x07E0, 0x001F})
                + words({0xFFFF, 0x07E0, 0x0020, 0xF800})
            << 2 << QList<QRgb> {qRgb(0, 4, 0), red, white, green};
        QTest::newRow("24 bits") << header(2, 1, 24) + QByteArray("\1\2\3\xFF\0\0\0\0", 8) << 2
                                 << QList<QRgb> {qRgb(3, 2, 1), blue};
        QTest::newRow("32 bits: the fourth byte is nothing") << header(2, 1, 32)
                + dwords({0x00123456, 0x80FF0000}) << 2 << QList<QRgb> {0xFF123456, red};
        QTest::newRow("32 bits: channels of 10 bits")
            << header(2, 1, 32, 3) + dwords({0x3FF00000, 0xFFC00, 0x3FF, 0x3FF00000, 0x200}) << 2
            << QList<QRgb> {red, qRgb(0, 0, 128)};
        QTest::newRow("32 bits with a mask for alpha")
            << header(2, 1, 32, 3, 0, 124, dwords({0xFF0000, 0xFF00, 0xFF, 0xFF000000}))
                + dwords({0x80FF0000, 0xFFFFFFFF})
            << 2 << QList<QRgb> {0x80FF0000, white};
        QTest::newRow("OS/2, first header, colours of three bytes")
            << coreHeader(2, 2, 1) + fourOfThree.first(6) + dwords({0x40, 0x80}) << 2
            << QList<QRgb> {white, black, black, white};
        QTest::newRow("OS/2, second header") << header(2, 1, 8, 0, 4, 64) + four + dwords({0x0103})
                                             << 2 << QList<QRgb> {blue, white};
        QTest::newRow("OS/2, second header of 16 bytes")
            << header(2, 1, 24, 0, 0, 16) + QByteArray("\0\0\xFF\0\xFF\0\0\0", 8) << 2
            << QList<QRgb> {red, green};
        QTest::newRow("colours before 24 bits are passed over") << header(1, 1, 24, 0, 2)
                + four.first(8) + dwords({0xFF0000}) << 1 << QList<QRgb> {red};
        // Both end at the end of the line and of the picture; an odd literal has a byte of padding.
        QTest::newRow("run lengths of 8 bits: a run, a literal, a jump") << header(4, 2, 8, 1, 4)
                + four
                + QByteArray("\2\1\0\0" // two white, end of line
                             "\0\3\2\3\1\0" // red, blue, white
                             "\0\1",
                    12) << 4 << QList<QRgb> {red, blue, white, black, white, white, black, black};
        QTest::newRow("run lengths of 8 bits: a jump up and right")
            << header(4, 2, 8, 1, 4) + four + QByteArray("\0\2\2\1\1\3\0\1", 8) << 4
            << QList<QRgb> {black, black, blue, black, black, black, black, black};
        QTest::newRow("run lengths of 4 bits")
            << header(5, 2, 4, 2, 4) + four + QByteArray("\5\x12\0\0\0\5\x23\x10\x30\0\0\1", 12)
            << 5 << QList<QRgb> {red, blue, white, black, blue, white, red, white, red, white};
        QTest::newRow("run lengths that reach over the edges") << header(2, 1, 8, 1, 4) + four
                + QByteArray("\xFF\3\0\0\xFF\2", 6) << 2 << QList<QRgb> {blue, blue};
    }

    void pixels()
    {
        const auto [bytes, width, expected] = row<QByteArray, int, QList<QRgb>>();
        const auto found = Dib::header(bytes);
        QVERIFY(found.has_value());
        QCOMPARE(found->width, width);
        const QImage image = Dib::decode(bytes, *found, found->endOfColours());
        QCOMPARE(image.width() * image.height(), int(expected.size()));
        for (int i = 0; i < expected.size(); ++i)
            QCOMPARE(QString::number(image.pixel(i % width, i / width), 16),
                QString::number(expected[i], 16));
    }

    void cutOff_data() { pixels_data(); }

    /// A picture that is cut off is none. Only run lengths may end early; what is missing then has
    /// the first colour.
    void cutOff()
    {
        const auto [bytes, width, expected] = row<QByteArray, int, QList<QRgb>>();
        for (qsizetype length = 0; length < bytes.size(); ++length) {
            // On the heap and of that very size, so that a sanitizer sees one byte too many.
            const std::vector<char> part(bytes.begin(), bytes.begin() + length);
            const QByteArrayView view(part.data(), length);
            const auto found = Dib::header(view);
            if (!found)
                continue;
            const QImage image = Dib::decode(view, *found, found->endOfColours());
            QVERIFY(image.isNull() || found->runLengths());
            for (int i = 0; i < expected.size() && !image.isNull(); ++i) {
                const QRgb pixel = image.pixel(i % width, i / width);
                QVERIFY(pixel == expected[i] || pixel == black);
            }
        }
    }

    void refused()
    {
        const QByteArray rest(200, '\0');
        const std::pair<const char *, QByteArray> rows[] = {
            {"an unknown depth", header(1, 1, 5)},
            {"no width", header(0, 1, 24)},
            {"a negative width", header(-1, 1, 24)},
            {"65,536 high", header(1, 65536, 24)},
            {"the lowest height", header(1, std::numeric_limits<qint32>::min(), 24)},
            {"8-bit run lengths of 4 bits", header(1, 1, 4, 1)},
            {"masks for 8 bits", header(1, 1, 8, 3)},
            {"fax codes of OS/2", header(1, 1, 1, 3, 0, 64)},
            {"a JPEG inside", header(1, 1, 24, 4)},
            {"more colours than there can be", header(1, 1, 8, 0, 0xFFFFFFFF)},
            {"a header of 13 bytes", header(1, 1, 24, 0, 0, 13)},
            {"a header longer than any", header(1, 1, 24, 0, 0, 125)},
        };
        for (const auto &[what, bytes] : rows)
            QVERIFY2(!Dib::header(QByteArray(bytes + rest)), what);
    }
};

TSM_TEST(Dib_test);
#include "tst_Dib.moc"
