#include "platform/picture/ProgramIcons.h"
#include "support/Pictures.h"
#include "support/ProgramFile.h"
#include "support/TestRunner.h"

#include <QBuffer>
#include <QtEndian>

using ProgramFile::bitmap;
using ProgramFile::Frame;
using ProgramFile::Icon;
using ProgramFile::plain;
using namespace Pictures;

namespace {

/// Counts what is read from a file.
class CountingBuffer : public QBuffer
{
public:
    explicit CountingBuffer(const QByteArray &bytes, qint64 &count)
        : m_count(count)
    {
        setData(bytes);
    }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        const qint64 got = QBuffer::readData(data, most);
        m_count += std::max<qint64>(got, 0);
        return got;
    }

private:
    qint64 &m_count;
};

ProgramIcons iconsIn(const QByteArray &file)
{
    auto buffer = std::make_unique<QBuffer>();
    buffer->setData(file);
    return ProgramIcons(std::move(buffer));
}

void patch(QByteArray &bytes, qsizetype offset, quint32 value)
{
    qToLittleEndian(value, bytes.data() + offset);
}

bool hole(int x, int y)
{
    return (x + 2 * y) % 5 == 0;
}

/// A picture whose colours are \a colours in turn, with holes.
QImage expectedPicture(int width, int height, const QList<QRgb> &colours)
{
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, hole(x, y) ? 0 : colours[(x * 3 + y * 7) % colours.size()]);
    }
    return image;
}

/// The frame of that picture in a depth that has no alpha. \a stored makes of a colour what the
/// file has for it; below a hole it is \a belowHole, black.
Frame frameOf(int width, int height, int bits, const QList<QRgb> &table,
    const QList<quint32> &stored, quint32 belowHole = 0)
{
    return bitmap(
        width, height, bits, table,
        [=](int x, int y) {
            return hole(x, y) ? belowHole : stored[(x * 3 + y * 7) % stored.size()];
        },
        hole);
}

QRgb colourOf(const QImage &image)
{
    return image.isNull() ? 0 : image.pixel(0, 0);
}

} // namespace

class ProgramIcons_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    /// Each depth in an icon file, which counts its bytes itself, and in a program.
    void pixels()
    {
        QList<QRgb> sixteen;
        QList<QRgb> many;
        QList<quint32> indexes;
        for (uint i = 0; i < 256; ++i) {
            if (i < 16)
                sixteen.append(qRgb(int(i * 17), int(255 - i * 17), int(i % 4 * 85)));
            many.append(qRgb(int(i), int(i * 7 % 256), int(255 - i)));
            indexes.append(i);
        }
        sixteen[0] = many[0] = 0xFF000000;
        // In 15 bits, and what they are in 24.
        const QList<quint32> fives {0x7FFF, 0x7C00, 0x03E0, 0x001F, 0x4210};
        const QList<QRgb> spread {white, red, green, blue, qRgb(132, 132, 132)};
        for (const auto &[w, h] : {std::pair(16, 16), std::pair(17, 13)}) {
            const QList<QRgb> clear {0x80123456, white, 0x01000000};
            QImage alpha = expectedPicture(w, h, clear);
            for (int i = 0; i < w * h; ++i) {
                if (hole(i % w, i / w))
                    alpha.setPixel(i % w, i / w, 0x00FFFFFF);
            }
            const std::pair<Frame, QImage> rows[] = {
                {frameOf(w, h, 1, {0xFF000000, white}, {1, 0}),
                    expectedPicture(w, h, {white, 0xFF000000})},
                {frameOf(w, h, 4, sixteen, indexes.first(16)), expectedPicture(w, h, sixteen)},
                {frameOf(w, h, 8, many, indexes), expectedPicture(w, h, many)},
                {frameOf(w, h, 16, {}, fives), expectedPicture(w, h, spread)},
                {frameOf(w, h, 24, {}, {0x123456, 0xFFFFFF, 0x00FF80}),
                    expectedPicture(w, h, {0xFF123456, white, 0xFF00FF80})},
                {frameOf(w, h, 32, {}, {0x123456, 0xFFFFFF}),
                    expectedPicture(w, h, {0xFF123456, white})},
                {frameOf(w, h, 32, {}, {0x80123456, 0xFFFFFFFF, 0x01000000}, 0x00FFFFFF), alpha},
                {ProgramFile::png(expectedPicture(w, h, clear)), expectedPicture(w, h, clear)},
            };
            for (const auto &[frame, expected] : rows) {
                const Icon icon {{}, 1, {frame}};
                for (const QByteArray &file : {ProgramFile::pe({icon}),
                         ProgramFile::pe({icon}, true), ProgramFile::ne({icon}),
                         ProgramFile::ico({frame}), ProgramFile::ico({frame}, 2)}) {
                    const ProgramIcons icons = iconsIn(file);
                    QCOMPARE(icons.count(), 1);
                    QVERIFY(icons.has(0));
                    QVERIFY2(icons.icon(0) == expected,
                        qPrintable(u"%1 bits, %2 wide, in %3"_qs.arg(frame.bits)
                                       .arg(w)
                                       .arg(QLatin1String(file.left(8).toHex()))));
                    QVERIFY(icons.icon(1).isNull());
                    QVERIFY(icons.icon(-1).isNull());
                }
            }
        }
    }

    /// What is masked and not black inverts what is below it.
    void invertedPixels()
    {
        const Frame frame = bitmap(
            2, 1, 1, {0xFF000000, white}, [](int x, int) { return static_cast<quint32>(x); },
            [](int, int) { return true; });
        const QImage image = iconsIn(ProgramFile::ico({frame})).icon(0);
        QCOMPARE(image.pixel(0, 0), QRgb(0));
        QCOMPARE(image.pixel(1, 0), qRgb(63, 63, 63));
    }

    void order()
    {
        const std::vector<Icon> icons {
            {{}, 300, {plain(16, red)}},
            {u"ZEBRA"_qs, 0, {plain(16, green)}},
            {{}, 2, {plain(16, blue)}},
            {u"APPLE"_qs, 0, {plain(16, white)}},
        };
        const QList<QRgb> namedFirst {white, green, blue, red};
        const std::pair<QByteArray, QList<QRgb>> rows[] = {{ProgramFile::pe(icons), namedFirst},
            {ProgramFile::pe(icons, true), namedFirst},
            {ProgramFile::ne(icons), {red, green, blue, white}}, // as written
            {ProgramFile::ico({plain(16, red), plain(32, blue)}), {blue}}, // one icon
            {ProgramFile::pe({}), {}}};
        for (const auto &[file, expected] : rows) {
            const ProgramIcons found = iconsIn(file);
            QList<QRgb> colours;
            for (int i = 0; i < found.count(); ++i)
                colours.append(colourOf(found.icon(i)));
            QCOMPARE(colours, expected);
        }
    }

    void choice()
    {
        const auto coarse = [](int side) {
            return frameOf(side, side, 1, {0xFF000000, white}, {1, 1});
        };
        const std::vector<Frame> frames {plain(16, green), coarse(32), plain(32, red), coarse(16),
            ProgramFile::png(filled(256, 256, blue))};
        std::vector<Frame> silent = frames; // directories that do not tell the depth
        for (Frame &frame : silent)
            frame.bits = 0;
        const std::tuple<int, int, QRgb> rows[] = {{32, 32, red}, // and of that its deepest
            {20, 32, red}, {300, 256, blue}, {4, 16, green}};
        for (const auto &[wanted, side, colour] : rows) {
            for (const QByteArray &file : {ProgramFile::pe({{{}, 1, frames}}),
                     ProgramFile::ne({{{}, 1, frames}}), ProgramFile::ico(frames),
                     ProgramFile::ico(frames, 2), ProgramFile::ico(silent)}) {
                const QImage image = iconsIn(file).icon(0, wanted);
                QCOMPARE(image.size(), QSize(side, side));
                QCOMPARE(colourOf(image), colour);
            }
        }
        // A thousand icons may share a directory of 65,535 frames: only the first are looked at.
        std::vector<Frame> all(256, plain(8, white));
        all.push_back(plain(32, red));
        QCOMPARE(colourOf(iconsIn(ProgramFile::ico(all)).icon(0)), white);
    }

    void nextBestWhenDamaged()
    {
        Frame damaged = plain(32, red);
        damaged.bytes.truncate(1000);
        Frame png = ProgramFile::png(filled(32, 32, blue));
        png.bytes.truncate(40);
        const ProgramIcons icons =
            iconsIn(ProgramFile::pe({{{}, 1, {plain(16, green), damaged, png}}}));
        QCOMPARE(colourOf(icons.icon(0, 32)), green);
    }

    void countingReadsTheDirectory()
    {
        std::vector<Icon> many;
        for (quint16 i = 1; i <= 200; ++i)
            many.push_back({{}, i, {plain(32, red), plain(48, blue)}});
        for (const QByteArray &file : {ProgramFile::pe(many), ProgramFile::ne(many)}) {
            qint64 read = 0;
            const ProgramIcons icons(std::make_unique<CountingBuffer>(file, read));
            QCOMPARE(icons.count(), 200);
            QVERIFY2(read < file.size() / 20, qPrintable(QString::number(read)));
        }
    }

    /// Cut off anywhere, and with any byte changed: an icon is right, or it is none (a changed byte
    /// may be one of its pixels).
    void cutOff()
    {
        const std::vector<Icon> all {
            {{}, 1, {plain(8, red), plain(16, green)}}, {u"A"_qs, 0, {plain(8, blue)}}};
        for (const QByteArray &file : {ProgramFile::pe(all), ProgramFile::pe(all, true),
                 ProgramFile::ne(all), ProgramFile::ico(all[0].frames)}) {
            const ProgramIcons whole = iconsIn(file);
            for (qsizetype length = 0; length < file.size(); ++length) {
                const ProgramIcons icons = iconsIn(file.left(length));
                QVERIFY(icons.count() == 0 || icons.count() == whole.count());
                for (int i = 0; i < icons.count(); ++i) {
                    const QImage image = icons.icon(i, 8);
                    QVERIFY2(
                        image.isNull() || image == whole.icon(i, 8) || image == whole.icon(i, 16),
                        qPrintable(u"cut off at %1"_qs.arg(length)));
                }
            }
            for (qsizetype i = 0; i < file.size(); ++i) {
                QByteArray changed = file;
                for (const char value : {'\0', '\1', '\x7F', '\x80', '\xFF'}) {
                    changed[i] = value;
                    const ProgramIcons icons = iconsIn(changed);
                    QVERIFY(icons.count() <= 0x1FFFE);
                    for (int n = 0; n < std::min(icons.count(), 3); ++n) {
                        const QImage image = icons.icon(n, 16);
                        QVERIFY(image.width() <= 1024 && image.height() <= 1024);
                    }
                }
            }
        }
    }

    void lies_data()
    {
        QTest::addColumn<QByteArray>("file");
        const QByteArray good = ProgramFile::pe({{{}, 1, {plain(8, red)}}});
        constexpr qsizetype directory = ProgramFile::peResources;
        constexpr qsizetype groupsNode = directory + 16 + 2 * 8 + 16 + 8;
        constexpr qsizetype iconLanguages = groupsNode + 16 + 8;
        constexpr qsizetype groupLanguages = iconLanguages + 16 + 8;
        constexpr quint32 branch = 0x80000000;
        const auto row = [&](const char *name,
                             std::initializer_list<std::pair<qsizetype, quint32>> lies) {
            QByteArray file = good;
            for (const auto &[offset, value] : lies)
                patch(file, offset, value);
            QTest::newRow(name) << file;
        };
        row("the type leads back to the root", {{directory + 16 + 8 + 4, branch}});
        row("the name leads back to the root", {{groupsNode + 16 + 4, branch}});
        row("the name leads to itself", {{groupsNode + 16 + 4, branch | (groupsNode - directory)}});
        row("the language leads back to the root", {{groupLanguages + 16 + 4, branch}});
        row("the language leads to itself",
            {{groupLanguages + 16 + 4, branch | (groupLanguages - directory)}});
        row("data in place of the names", {{directory + 16 + 8 + 4, 0x10}});
        row("a branch outside the section", {{groupsNode + 16 + 4, 0xFFFFFFF0}});
        row("65,535 names", {{groupsNode + 12, 0xFFFFFFFF}});
        row("65,535 types", {{directory + 12, 0xFFFFFFFF}});
        row("65,535 sections", {{0x84, 0xFFFF014C}});
        row("the new header far outside", {{60, 0xFFFFFFFF}});
        row("no data directories", {{0x80 + 24 + 92, 0}});
        row("the resources at the end of the address space", {{0x80 + 24 + 96 + 16, 0xFFFFFFFF}});
        QByteArray file = ProgramFile::ne({{{}, 1, {plain(8, red)}}});
        patch(file, 0x80 + 64, 0x800E00FF);
        QTest::newRow("NE: units of 2 to the power 255") << file;
        QTest::newRow("icon file: 65,535 frames") << QByteArray("\0\0\1\0\xFF\xFF", 6);
        for (const qint32 side : {65535, 0x7FFFFFFF, -1, 0}) {
            Frame huge = plain(8, red);
            patch(huge.bytes, 4, quint32(side));
            patch(huge.bytes, 8, quint32(side));
            QTest::addRow("an icon of %d squared", side) << ProgramFile::ico({huge});
        }
        QTest::newRow("a PNG larger than icons are")
            << ProgramFile::ico({ProgramFile::png(filled(1025, 1, red))});
        Frame cut = plain(8, red);
        cut.bytes.chop(1);
        QTest::newRow("a mask that is cut off") << ProgramFile::ico({cut});
    }

    void lies()
    {
        QFETCH(QByteArray, file);
        QVERIFY(iconsIn(file).icon(0).isNull());
    }

    void notAFile()
    {
        for (const char *path : {"", "/nowhere/at.exe", "/", "/dev/zero"})
            QCOMPARE(ProgramIcons(QString::fromLatin1(path)).count(), 0);
        QCOMPARE(iconsIn(QByteArray()).count(), 0);
        QCOMPARE(iconsIn(QByteArray(5000, 'M')).count(), 0);
        QCOMPARE(iconsIn("MZ" + QByteArray(5000, '\0')).count(), 0);
    }
};

TSM_TEST(ProgramIcons_test);
#include "tst_ProgramIcons.moc"
