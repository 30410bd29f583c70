#include "platform/rtf/RtfDump.h"
#include "platform/rtf/RtfPicture.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfStyle.h"
#include "platform/rtf/RtfWriter.h"
#include "support/Bytes.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

#include <QBuffer>
#include <QFont>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>
#include <QUrl>

using Bytes::dword;
using Bytes::dwords;

namespace {

void prepare(QTextDocument &document)
{
    document.setDefaultFont(QFont(u"Arial"_qs, 12));
}

void readInto(QTextDocument &document, const QByteArray &rtf)
{
    prepare(document);
    RtfReader().read(rtf, document);
}

/// What stands behind the font and colour tables.
QByteArray bodyOf(const QByteArray &rtf)
{
    return rtf.mid(rtf.indexOf("\\pard"));
}

QImage photo(int colours)
{
    QImage image(20, 10, QImage::Format_RGB32);
    for (int i = 0; i < image.width() * image.height(); ++i)
        image.setPixel(i % 20, i / 20, qRgb(i % colours, 255 - i % colours, i % colours / 2));
    return image;
}

QByteArray fileOf(const QImage &image, const char *format)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

QImage pictureIn(const QTextDocument &document)
{
    const QTextCharFormat format = document.begin().begin().fragment().charFormat();
    const QString name = format.toImageFormat().name();
    return document.resource(QTextDocument::ImageResource, QUrl(name)).value<QImage>();
}

} // namespace

class RtfWriter_test : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void words()
    {
        const std::pair<QByteArray, QByteArray> rows[] = {
            {"a", "\\pard\\f0\\fs20 a\\par\r\n}"},
            {"", "\\pard\\f0\\fs20\\par\r\n}"},
            {"\\b a\\i b\\b0\\i0 c\\par d",
                "\\pard\\f0\\fs20\\b a\\i b\\b0\\i0 c\\par\r\nd\\par\r\n}"},
            {"\\qc a\\par b\\par\\pard c",
                "\\pard\\qc\\f0\\fs20 a\\par\r\nb\\par\r\n\\pard c\\par\r\n}"},
            {"\\qj\\fi-360\\li720\\ri360\\sb60\\sa60\\sl360\\slmult1\\tx720\\tqr"
             "\\tx1440 a",
                "\\pard\\qj\\fi-"
                "360\\li720\\ri360\\sb60\\sa60\\sl360\\slmult1\\tx720\\tqr\\tx1440\\f0\\fs20 "
                "a\\par\r\n}"},
            {"{\\*\\pn\\pnlvlblt}\\fi-200\\li200 a\\par b\\par\\pard c",
                "\\pard{\\pntext\\f0\\'b7\\tab}{\\*\\pn\\pnlvlblt\\pnf0\\pnindent200{\\pntxtb\\'b7}"
                "}"
                "\\fi-200\\li200\\f1\\fs20 a\\par\r\n{\\pntext\\f0\\'b7\\tab}b\\par\r\n\\pard "
                "c\\par\r\n}"},
            {"\\\\\\{\\}\\tab a\\line\\~\\-\\_",
                "\\pard\\f0\\fs20\\\\\\{\\}\\tab a\\line\\~\\-\\_\\par\r\n}"},
            {"\\u228?\\u8364?", "\\pard\\f0\\fs20\\'e4\\'80\\par\r\n}"},
            {"a\\u1071?b", "\\pard\\f0\\fs20 a\\f1\\'dfb\\par\r\n}"},
            {"\\f2\\u8756?\\{b\\u61632?", "\\pard\\f0\\fs20\\'5c\\'7bb\\'c0\\par\r\n}"},
            {"\\f2 a", "\\pard\\f0\\fs20 a\\par\r\n}"},
            {"\\u-10179?\\u-8704?1", "\\pard\\f0\\fs20\\u-10179?\\u-8704?1\\par\r\n}"},
            {"\\up6 a\\dn4 b\\up0\\super c\\nosupersub\\protect\\v\\cf1 d",
                "\\pard\\f0\\fs20\\up6 a\\dn4 b\\up0\\super c\\cf1\\protect\\v\\nosupersub "
                "d\\par\r\n}"},
            {"\\b a\\b0\\par\\i\\par\\i0 b",
                "\\pard\\f0\\fs20\\b a\\par\r\n\\b0\\i\\par\r\n\\i0 b\\par\r\n}"},
        };
        for (const auto &[rtf, body] : rows) {
            QTextDocument document;
            readInto(document,
                "{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset204 Arial;}{\\f2\\fcharset2 Symbol;}}"
                "{\\colortbl;\\red1\\green2\\blue3;}\\fs20 "
                    + rtf + '}');
            QCOMPARE(bodyOf(RtfWriter::write(document)), body);
        }
    }

    void tables()
    {
        QTextDocument document;
        readInto(document,
            "{\\rtf1{\\fonttbl{\\f0 A\\{;}{\\f1\\fcharset2 Wingdings;}{\\f2 Courier;}}"
            "{\\colortbl;\\red1\\green2\\blue3;\\red255\\green0\\blue0;}"
            "\\cf2 a\\cf0\\f1 J\\f2\\cf1 c}");
        const QByteArray rtf = RtfWriter::write(document);
        QCOMPARE(rtf.left(rtf.indexOf("\\pard")),
            QByteArray("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 A\\{;}"
                       "{\\f1\\fnil\\fcharset2 Wingdings;}{\\f2\\fnil\\fcharset0 Courier;}}\r\n"
                       "{\\colortbl ;\\red255\\green0\\blue0;\\red1\\green2\\blue3;}\r\n"));
    }

    void roundTrip_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("formats") << QByteArray(
            "\\b a\\b0\\i b\\i0\\ul c\\ulnone\\strike d\\strike0\\cf1 "
            "e\\cf0\\fs17 f\\f1 g\\up8\\fs30 h\\dn3 i\\up0\\caps j"
            "\\caps0\\scaps k\\scaps0\\highlight1 l\\highlight0 m");
        QTest::newRow("protected and hidden")
            << QByteArray("a\\protect b\\protect0\\cf1\\fs31\\v c\\v0 d\\v\\par e\\v0 f");
        QTest::newRow("paragraphs") << QByteArray(
            "\\qr\\li100\\ri200\\fi-50\\tx300\\tqc\\tx500 a\\par\\pard\\sb7\\sa9\\sl-333 "
            "b\\par\\sl333\\slmult1 c\\par\\pard\\rtlpar d\\par\\qr e\\par\\pagebb f");
        QTest::newRow("bullets") << QByteArray(
            "{\\*\\pn\\pnlvlblt}\\li360\\fi-360 a\\par b\\par\\pard "
            "c\\par{\\*\\pn\\pnlvlblt}d\\par\\fi100 e\\par\\par");
        QTest::newRow("characters")
            << QByteArray("\\u228?\\u1071?\\u937?\\u1488?\\u1575?\\u3585?\\u8363?\\u26085?\\u-3913?"
                          "\\u321?\\u287?\\u257?\\'81\\'8d\\u127?\\u-10179?\\u-8704?");
        QTest::newRow("default tab stops") << QByteArray("\\deftab300 a\\tab b");
        QTest::newRow("symbols") << QByteArray(
            "\\f3 abc\\'b7\\'f1 \\u65?\\f4 abcJ\\'b7\\'fc\\'5c\\{");
        QTest::newRow("table") << QByteArray(
            "\\trowd\\cellx500\\cellx900\\intbl a\\cell b\\cell\\row");
        QTest::newRow("row whose last cell is empty")
            << QByteArray("\\trowd\\cellx500\\cellx900\\intbl "
                          "a\\cell{\\b\\cell}\\row\\intbl{\\i\\cell}\\cell\\row");
        QTest::newRow("empty paragraphs") << QByteArray("\\par\\b\\par\\i a\\par\\par\\qc\\par");
        QTest::newRow("blanks at edges") << QByteArray(" a \\par  b\\b  c \\b0  ");
    }

    void roundTrip()
    {
        QFETCH(const QByteArray, body);
        QTextDocument first;
        readInto(first,
            "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}{\\f1 Courier New;}{\\f3\\fcharset2 Symbol;}"
            "{\\f4\\fcharset2 Wingdings;}}{\\colortbl;\\red9\\green8\\blue7;}"
                + body + '}');
        const QByteArray written = RtfWriter::write(first);
        for (const char c : written)
            QVERIFY(uchar(c) < 128);
        QTextDocument second;
        readInto(second, written);
        QCOMPARE(rtfDump(second), rtfDump(first));
        QCOMPARE(RtfParagraphStyle::defaultTab(second), RtfParagraphStyle::defaultTab(first));
        // Not only what the dump shows.
        QTextBlock b = second.begin();
        for (QTextBlock a = first.begin(); a.isValid(); a = a.next(), b = b.next()) {
            QCOMPARE(b.charFormat(), a.charFormat());
            QTextBlockFormat aFormat = a.blockFormat();
            QTextBlockFormat bFormat = b.blockFormat();
            aFormat.setObjectIndex(-1);
            bFormat.setObjectIndex(-1);
            QCOMPARE(bFormat, aFormat);
        }
        QCOMPARE(RtfWriter::write(second), written);
    }

    void selection()
    {
        const std::tuple<int, int, QByteArray> rows[] = {
            // of ab[bold cd]|ef
            {1, 2, "\\pard\\f0\\fs24 b}"},
            {1, 3, "\\pard\\f0\\fs24 b\\b c}"},
            {3, 5, "\\pard\\f0\\fs24\\b d\\par\r\n}"},
            {3, 6, "\\pard\\f0\\fs24\\b d\\par\r\n\\b0 e}"},
            {3, 3, "\\pard}"},
        };
        QTextDocument document;
        readInto(document, "{\\rtf1{\\fonttbl{\\f0 Arial;}}ab\\b cd\\par\\b0 ef}");
        for (const auto &[from, to, body] : rows) {
            QTextCursor cursor(&document);
            cursor.setPosition(from);
            cursor.setPosition(to, QTextCursor::KeepAnchor);
            QCOMPARE(bodyOf(RtfWriter::writeSelection(cursor)), body);
        }
    }

    void pictures_data()
    {
        columns<QByteArray, QString, bool>();

        const QImage image = photo(16);
        const QByteArray png = fileOf(image, "png");
        const QByteArray jpeg = fileOf(image, "jpeg");
        const QByteArray bmp = fileOf(image, "bmp");
        const QByteArray dib = bmp.mid(14);
        const auto head = qFromLittleEndian<quint32>(bmp.constData() + 10) - 14;
        const QByteArray emf = dwords({1, 88}) + QByteArray(32, '\0') + dword(0x464D4520)
            + QByteArray(44, '\0') + dwords({81, quint32(80 + dib.size())}) + QByteArray(40, '\0')
            + dwords({80, head, 80 + head, quint32(dib.size()) - head}) + QByteArray(16, '\0')
            + dib;
        const QByteArray gif("GIF89a\x14\0\x0A\0\x80\0\0\xFF\0\0\xFF\xFF\xFF,\0\0\0\0\1\0\1\0\0"
                             "\2\2\x44\1\0;",
            35);
        const QByteArray wmf = RtfPicture::fromImage(image).data;
        const auto group = [](const char *kind, const QByteArray &data) {
            return QByteArray(QByteArray("{\\pict\\") + kind
                + "\\picw20\\pich10\\picwgoal600\\pichgoal300\n" + data.toHex() + '}');
        };
        const auto row =
            [](const char *name, const QByteArray &rtf, const char *kind, const QByteArray &data,
                bool decodes) {
                QTest::newRow(name)
                    << rtf << u"[%1 600x300, %2]"_qs.arg(QLatin1StringView(kind)).arg(data.size())
                    << decodes;
            };
        row("metafile", group("wmetafile8", wmf), "wmf", wmf, true);
        row("bitmap", group("dibitmap0", dib), "dib", dib, true);
        row("PNG", group("pngblip", png), "png", png, true);
        row("JPEG", group("jpegblip", jpeg), "jpeg", jpeg, true);
        row("PNG cut off in its header", group("pngblip", png.left(20)), "png", png.left(20),
            false);
        row("bitmap cut off", group("dibitmap0", dib.left(100)), "dib", dib.left(100), false);
        row("metafile cut off", group("wmetafile8", wmf.left(100)), "wmf", wmf.left(100), false);
        row("metafile without a bitmap", group("wmetafile8", wmf.left(54)), "wmf", wmf.left(54),
            false);
        row("GIF under a PNG's name", group("pngblip", gif), "png", gif, true);
        row("bitmap file under a JPEG's name", group("jpegblip", bmp), "jpeg", bmp, true);
        row("PNG under no name", group("picscalex100", png), "png", png, true);
        row("enhanced metafile", group("emfblip", emf), "emf", emf, true);
        row("enhanced metafile under the plain one's name", group("wmetafile8", emf), "wmf", emf,
            true);
        row("bitmap of a device", group("wbitmap0", "\1\2"), "ddb", "\1\2", false);
        row("picture of a Macintosh", group("macpict", "\1\2"), "mac", "\1\2", false);
        row("unknown enhanced metafile", group("emfblip", "\1\2"), "emf", "\1\2", false);
        row("both forms",
            "{\\*\\shppict" + group("pngblip", png) + "}{\\nonshppict" + group("wmetafile8", wmf)
                + '}',
            "png", png, true);
        row("the older form where the newer one does not show",
            "{\\*\\shppict" + group("emfblip", "\1\2") + "}{\\nonshppict" + group("wmetafile8", wmf)
                + '}',
            "wmf", wmf, true);
        row("the newer form where none shows",
            "{\\*\\shppict" + group("emfblip", "\1\2") + "}{\\nonshppict"
                + group("wmetafile8", "\1") + '}',
            "emf", "\1\2", false);
    }

    void pictures()
    {
        const auto [group, dump, decodes] = row<QByteArray, QString, bool>();
        QTextDocument first;
        readInto(first, "{\\rtf1 " + group + '}');
        QCOMPARE(rtfDump(first), dump);
        const QImage shown = pictureIn(first);
        if (decodes)
            QCOMPARE(shown.size(), QSize(20, 10));
        else
            QCOMPARE(shown.size(), QSize(64, 64)); // the frame
        const QByteArray written = RtfWriter::write(first);
        QTextDocument second;
        readInto(second, written);
        QCOMPARE(rtfDump(second), dump);
        QCOMPARE(pictureIn(second), shown);
        QCOMPARE(RtfWriter::write(second), written);
    }

    void pictureFromAnImage()
    {
        QImage many(64, 64, QImage::Format_RGB32);
        for (int i = 0; i < 64 * 64; ++i)
            many.setPixel(i % 64, i / 64, qRgb(i % 64, i / 64, 7));
        for (const auto &[image, bits] :
            {std::pair(photo(16), 4), {photo(200), 8}, {many, 24}, {many.copy(0, 0, 3, 5), 4}}) {
            const RtfPicture picture = RtfPicture::fromImage(image);
            QCOMPARE(int(picture.data.at(82 + 14)), bits); // the bitmap's header is at 82
            QCOMPARE(picture.goal, image.size() * 15);
            qint64 memory = 1 << 20;
            const QImage decoded = picture.decode({}, memory);
            QCOMPARE(decoded.convertToFormat(QImage::Format_RGB32), image);
            qint64 little = 10;
            QVERIFY(picture.decode({}, little).isNull());
        }
    }

    /// Spelled by hand: a reader of our own would pass over a wrong size.
    void metafileBytes()
    {
        QCOMPARE(RtfPicture::fromImage(Pictures::filled(1, 1, Pictures::red)).data.toHex(' '),
            QByteArray::fromHex(
                "0100 0900 0003 44000000 0000 26000000 0000"
                "04000000 0301 0800"
                "05000000 0b02 0000 0000"
                "05000000 0c02 0100 0100"
                "04000000 0701 0300"
                "26000000 430f 2000cc00 0000 0100 0100 0000 0000 0100 0100 0000 0000"
                "28000000 01000000 01000000 0100 0400 00000000 04000000"
                "00000000 00000000 01000000 00000000 0000ff00 00000000"
                "03000000 0000")
                .toHex(' '));
    }

    /// Readers that do not know the newer form find a metafile behind it.
    void olderPicture()
    {
        const QImage image = photo(8);
        QTextDocument document;
        readInto(document,
            "{\\rtf1{\\pict\\pngblip\\picwgoal150\\pichgoal75 " + fileOf(image, "png").toHex()
                + "}}");
        QByteArray older = RtfWriter::write(document);
        const qsizetype newer = older.indexOf("{\\*\\shppict");
        QVERIFY(newer > 0);
        older.replace(newer, 11, "{\\*\\foo");
        readInto(document, older);
        QVERIFY(rtfDump(document).startsWith(u"[wmf 150x75, "_qs));
        QCOMPARE(pictureIn(document).convertToFormat(QImage::Format_RGB32), image);
    }

    /// Pictures beyond the limit are framed, but kept.
    void pictureMemory()
    {
        const QByteArray png = fileOf(Pictures::filled(1000, 1000, Pictures::red), "png");
        QTextDocument document;
        RtfReader reader;
        reader.options.pictureMemory = 3'000'000;
        const QByteArray rtf = "{\\rtf1{\\pict\\pngblip\\picw1000\\pich1000 " + png.toHex() + "}}";
        reader.read(rtf, document);
        QCOMPARE(pictureIn(document).size(), QSize(64, 64));
        QVERIFY(RtfWriter::write(document).contains(png.toHex().first(128)));
    }

    /// Formats that did not come from here: from a web page, say.
    void foreignFormats()
    {
        QTextDocument document;
        prepare(document);
        document.setHtml(u"<p>a<b>b</b><font size=+2>c</font></p><ul><li>d</ul>"
                         "<table><tr><td>e<td>f</table><blockquote>g</blockquote>"_qs);
        QTextDocument read;
        readInto(read, RtfWriter::write(document));
        QCOMPARE(read.toPlainText(), document.toPlainText());
        const QString dump = rtfDump(read);
        QVERIFY(dump.contains(u"{b:b}"_qs));
        QVERIFY(dump.contains(u"<bullet"_qs));
        QVERIFY(dump.contains(u"li600"_qs));
    }
};

TSM_TEST(RtfWriter_test);
#include "tst_RtfWriter.moc"
