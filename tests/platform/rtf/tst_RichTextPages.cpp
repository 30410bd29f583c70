#include "platform/rtf/RichTextPages.h"
#include "platform/rtf/RtfReader.h"
#include "support/TestRunner.h"

#include <QImage>
#include <QPainter>
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
