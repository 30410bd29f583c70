#include "platform/rtf/RichTextPages.h"
#include "platform/rtf/RtfReader.h"
#include "support/TestRunner.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

namespace {

constexpr QSize letter(12240 - 2880, 15840 - 2880);

QByteArray lines(int count)
{
    QByteArray body;
    for (int i = 0; i < count; ++i)
        body += "line\\par\r\n";
    return body;
}

} // namespace

class RichTextPages_test : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTextDocument> document;
    std::unique_ptr<RichTextPages> pages;

    void read(const QByteArray &body)
    {
        const QByteArray rtf = "{\\rtf1{\\fonttbl{\\f0 Arial;}}\\fs20 " + body + "}";
        RtfReader().read(rtf, *document);
    }
    QList<int> cut(QSize area, int length)
    {
        QList<int> starts;
        for (int first = 0; (first < length || starts.isEmpty()) && starts.size() < 10000;
             first = pages->firstBeyond(first, area))
            starts.append(first);
        return starts;
    }
    /// What a part of the text covers when it is drawn, in tens of twips.
    QRect inked(const QRect &area, int first, int beyond)
    {
        QImage image(600, 600, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(0.1, 0.1);
        pages->draw(painter, area, first, beyond);
        painter.end();
        QRect box;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (qGray(image.pixel(x, y)) < 128)
                    box |= QRect(x, y, 1, 1);
            }
        }
        return box;
    }

private Q_SLOTS:
    void init()
    {
        pages.reset();
        document = std::make_unique<QTextDocument>();
        pages = std::make_unique<RichTextPages>(*document);
    }

    void wholeLines()
    {
        read("");
        QCOMPARE(pages->firstBeyond(0, letter), 0);
        QCOMPARE(pages->height(0, 0, letter.width()), 0);
        pages->release();
        read(lines(200));
        const int lineHeight = pages->height(0, 4, letter.width());
        QVERIFY(lineHeight > 200 && lineHeight < 260); // 10 points and some
        // Ten lines fit, eleven do not; a page never ends inside a line.
        const int ten = pages->height(0, 50, letter.width());
        QCOMPARE(pages->firstBeyond(0, {letter.width(), ten}), 50);
        QCOMPARE(pages->firstBeyond(0, {letter.width(), ten + lineHeight / 2}), 50);
        const auto starts = cut({letter.width(), ten}, 200 * 5 - 1);
        QCOMPARE(starts.size(), 20);
        QCOMPARE(starts.last(), 950);
        QCOMPARE(pages->firstBeyond(950, {letter.width(), ten}), 200 * 5 - 1);
    }

    void piecesMakeOneLayout_data()
    {
        QTest::addColumn<QByteArray>("body");
        const QByteArray words("some words and more ");
        QByteArray row("\\trowd");
        for (int i = 1; i <= 60; ++i)
            row += "\\cellx" + QByteArray::number(i * 500);
        row += "\\intbl " + QByteArray("c\\cell ").repeated(20'000) + "\\row ";
        QTest::newRow("paragraphs")
            << QByteArray("\\sb60\\fi-300\\li300 " + words.repeated(20) + "\\par ").repeated(400);
        QTest::newRow("one paragraph") << "\\fi700\\sl300\\slmult1 " + words.repeated(5000);
        QTest::newRow("one word") << QByteArray(30'000, 'x');
        QTest::newRow("broken lines") << QByteArray("a\\line ").repeated(20'000);
        QTest::newRow("row of 20,000 cells") << row;
    }
    void piecesMakeOneLayout()
    {
        QFETCH(QByteArray, body);
        read(body);
        QImage device(1, 1, QImage::Format_RGB32);
        device.setDotsPerMeterX(56693);
        device.setDotsPerMeterY(56693);
        const std::unique_ptr<QTextDocument> whole(document->clone());
        whole->documentLayout()->setPaintDevice(&device);
        whole->setDocumentMargin(0);
        QTextCursor all(whole.get());
        all.select(QTextCursor::Document);
        QTextBlockFormat lengths = all.blockFormat(); // Qt does not scale these
        lengths.setLeftMargin(lengths.leftMargin() * 15);
        lengths.setTextIndent(lengths.textIndent() * 15);
        all.setBlockFormat(lengths);
        whole->setTextWidth(letter.width());
        whole->documentLayout()->documentSize();
        QList<int> expected;
        double top = -letter.height();
        for (QTextBlock block = whole->begin(); block.isValid(); block = block.next()) {
            for (int i = 0; i < block.layout()->lineCount(); ++i) {
                const QTextLine line = block.layout()->lineAt(i);
                const double y = block.layout()->position().y() + line.y();
                if (y + line.height() <= top + letter.height() + 0.5)
                    continue;
                expected.append(block.position() + line.textStart());
                top = y;
            }
        }
        QCOMPARE(cut(letter, document->characterCount() - 1), expected);
    }

    void tallerThanALayout()
    {
        read("\\fs400 " + QByteArray("x\\par ").repeated(2500));
        const int onPage = pages->firstBeyond(0, letter) / 2;
        const QRect first = inked(QRect(QPoint(0, 0), letter), 0, 2);
        QCOMPARE(cut(letter, 4999).size(), (2500 + onPage - 1) / onPage);
        QCOMPARE(inked(QRect(QPoint(0, 0), letter), 0, 2), first); // its layout is not kept
    }

    void lineHigherThanThePage()
    {
        read("\\fs400 A\\par B");
        QCOMPARE(pages->firstBeyond(0, {letter.width(), 100}), 2);
        QCOMPARE(pages->firstBeyond(2, {letter.width(), 100}), 3);
    }

    void widthsAndRelease()
    {
        read(QByteArray("word ").repeated(1000));
        const auto wide = cut({9000, 3000}, 5000).size();
        const auto narrow = cut({3000, 3000}, 5000).size();
        QVERIFY(narrow > 2 * wide);
        pages->release();
        read("word");
        QCOMPARE(pages->firstBeyond(0, {9000, 3000}), 4);
    }

    void indentsAreTwips()
    {
        for (const auto &[body, left] :
            {std::pair("I", 0), {"\\li1440 I", 1440}, {"\\li1440\\fi-720 I", 720},
                {"\\tx2880\\tab I", 2880}, {"\\li1440\\tx2880\\tab I", 2880},
                {"\\li1440\\fi-720\\tab I", 1440}, {"\\tab I", 720}}) {
            init();
            read(body);
            const QRect box = inked(QRect(0, 0, 6000, 600), 0, document->characterCount() - 1);
            const int offset = box.left() * 10 - left; // the letter's own
            QVERIFY2(offset >= 0 && offset <= 60, body);
        }
    }

    void drawsOnlyThePage()
    {
        read(lines(30));
        const int lineHeight = pages->height(0, 4, 6000);
        const QRect box = inked(QRect(1000, 2000, 5000, 3000), 25, 40); // lines 6 to 8
        QVERIFY(box.left() >= 100);
        QVERIFY(box.top() >= 200);
        QVERIFY(box.bottom() <= 200 + 3 * lineHeight / 10);
        QVERIFY(box.bottom() >= 200 + 2 * lineHeight / 10);
    }

    void blackOnAnyDesktop()
    {
        QPalette dark;
        dark.setColor(QPalette::Text, Qt::white);
        const QPalette before = QGuiApplication::palette();
        QGuiApplication::setPalette(dark);
        init();
        read("\\fs100 X");
        const QRect box = inked(QRect(0, 0, 2000, 2000), 0, 1);
        QGuiApplication::setPalette(before);
        QVERIFY(!box.isEmpty());
    }
};

TSM_TEST(RichTextPages_test);
#include "tst_RichTextPages.moc"
