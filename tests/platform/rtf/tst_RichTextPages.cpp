#include "platform/rtf/RichTextPages.h"
#include "platform/rtf/RtfReader.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

#include <QImage>
#include <QPainter>
#include <QTest>
#include <QTextDocument>

namespace {

constexpr QSize letter(12240 - 2880, 15840 - 2880);

void readInto(QTextDocument &document, const QByteArray &body)
{
    const QByteArray rtf = "{\\rtf1{\\fonttbl{\\f0 Arial;}}\\fs20 " + body + QByteArray("}");
    RtfReader().read(rtf, document);
}

QByteArray lines(int count)
{
    QByteArray body;
    for (int i = 0; i < count; ++i)
        body += "line\\par\r\n";
    return body;
}

QList<int> cut(RichTextPages &pages, QSize area, int length)
{
    QList<int> starts;
    for (int first = 0; first < length || starts.isEmpty();) {
        starts.append(first);
        first = pages.firstBeyond(first, area);
        if (starts.size() > 10000)
            break;
    }
    return starts;
}

/// Rows (in units of the scale) on which something is drawn.
QRect inked(const QImage &image)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 128)
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

} // namespace

class RichTextPages_test : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyText()
    {
        QTextDocument document;
        readInto(document, "");
        RichTextPages pages(document);
        QCOMPARE(pages.firstBeyond(0, letter), 0);
        QCOMPARE(pages.height(0, 0, letter.width()), 0);
    }

    void wholeLines()
    {
        QTextDocument document;
        readInto(document, lines(200));
        RichTextPages pages(document);
        const int lineHeight = pages.height(0, 4, letter.width());
        QVERIFY(lineHeight > 200 && lineHeight < 260); // 10 points and some
        // Ten lines fit, eleven do not; a page never ends inside a line.
        const int ten = pages.height(0, 50, letter.width());
        QCOMPARE(pages.firstBeyond(0, {letter.width(), ten}), 50);
        QCOMPARE(pages.firstBeyond(0, {letter.width(), ten + lineHeight / 2}), 50);
        const auto starts = cut(pages, {letter.width(), ten}, 200 * 5 - 1);
        QCOMPARE(starts.size(), 20);
        QCOMPARE(starts.last(), 950);
        QCOMPARE(pages.firstBeyond(950, {letter.width(), ten}), 200 * 5 - 1);
    }

    void lineHigherThanThePage()
    {
        QTextDocument document;
        readInto(document, "\\fs400 A\\par B");
        RichTextPages pages(document);
        QCOMPARE(pages.firstBeyond(0, {letter.width(), 100}), 2);
        QCOMPARE(pages.firstBeyond(2, {letter.width(), 100}), 3);
    }

    void widthsAndRelease()
    {
        QTextDocument document;
        readInto(document, QByteArray("word ").repeated(1000));
        RichTextPages pages(document);
        const auto wide = cut(pages, {9000, 3000}, 5000).size();
        const auto narrow = cut(pages, {3000, 3000}, 5000).size();
        QVERIFY(narrow > 2 * wide);
        pages.release();
        readInto(document, "word");
        QCOMPARE(pages.firstBeyond(0, {9000, 3000}), 4);
    }

    void indentsAreTwips_data()
    {
        rows<QByteArray, int>({
            {"none", QByteArray("I"), 0},
            {"left", QByteArray("\\li1440 I"), 1440},
            {"first line", QByteArray("\\li1440\\fi-720 I"), 720},
            {"tab stop", QByteArray("\\tx2880\\tab I"), 2880},
            {"tab stop behind an indent", QByteArray("\\li1440\\tx2880\\tab I"), 2880},
            {"hanging tab", QByteArray("\\li1440\\fi-720\\tab I"), 1440},
            {"default tab stop", QByteArray("\\tab I"), 720},
        });
    }

    void indentsAreTwips()
    {
        const auto [body, left] = row<QByteArray, int>();
        QTextDocument document;
        readInto(document, body);
        RichTextPages pages(document);
        QImage image(600, 60, QImage::Format_RGB32); // 10 twips a pixel
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(0.1, 0.1);
        pages.draw(painter, QRect(0, 0, 6000, 600), 0, document.characterCount() - 1);
        painter.end();
        const int offset = inked(image).left() * 10 - left;
        QVERIFY2(
            offset >= 0 && offset <= 60, qPrintable(QString::number(offset))); // the letter's own
    }

    void drawsOnlyThePage()
    {
        QTextDocument document;
        readInto(document, lines(30));
        RichTextPages pages(document);
        const int lineHeight = pages.height(0, 4, 6000);
        QImage image(600, 600, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(0.1, 0.1);
        pages.draw(painter, QRect(1000, 2000, 5000, 3000), 25, 40); // lines 6 to 8
        painter.end();
        const QRect box = inked(image);
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
        QTextDocument document;
        readInto(document, "\\fs100 X");
        RichTextPages pages(document);
        QImage image(200, 200, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(0.1, 0.1);
        pages.draw(painter, QRect(0, 0, 2000, 2000), 0, 1);
        painter.end();
        QGuiApplication::setPalette(before);
        QVERIFY(!inked(image).isEmpty());
    }
};

TSM_TEST(RichTextPages_test);
#include "tst_RichTextPages.moc"
