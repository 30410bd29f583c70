#include "platform/print/PageDocument.h"
#include "support/PrintedPages.h"
#include "support/TestRunner.h"

#include <QPainter>

using PrintedPages::linesOf;

/// A4 with margins of an inch: 9026 twips between left and right, 60 lines of Arial 10.
class PageDocument_test : public QObject
{
    Q_OBJECT

    PageDocument page;
    int lineHeight = 0;

    QStringList lastPage() const { return linesOf(page, page.PageCount()); }
    /// A page as it is drawn, 20 twips a pixel.
    QImage drawn(int number) const
    {
        QImage image(page.PageWidth() / 20, page.PageHeight() / 20, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(0.05, 0.05);
        page.draw(painter, number);
        return image;
    }

private Q_SLOTS:
    void init()
    {
        page.StartDoc(Paper {});
        lineHeight = qRound(QFontMetricsF(page.fonts().front()).lineSpacing());
    }

    void positions()
    {
        page.setText(u"a\r\nb\nc\rd"_qs);
        page.setCurrentX(5760);
        page.setText(u"e"_qs);
        page.setText(u"\r\n\r\n"_qs);
        page.setIndentLeft(720);
        page.setText(u"f\r\ng"_qs);
        QCOMPARE(page.CurrentX(),
            1440 + 720 + qRound(QFontMetricsF(page.fonts()[0]).horizontalAdvance(u'g')));
        QCOMPARE(page.CurrentY(), 1440 + qRound(6 * QFontMetricsF(page.fonts()[0]).lineSpacing()));
        QCOMPARE(lastPage(),
            (QStringList {u"1440@0 a"_qs, u"1440@1 b"_qs, u"1440@2 c"_qs, u"1440@3 d"_qs,
                u"5760@3 e"_qs, u"1440@5 f"_qs, u"2160@6 g"_qs}));
    }

    void wrapsBelowItsColumn()
    {
        page.setCurrentX(5760);
        page.setText(u"word "_qs.repeated(30));
        for (const QString &line : lastPage())
            QVERIFY2(line.startsWith(u"5760@"_qs), qPrintable(line));
        QVERIFY(page.CurrentY() > 1440);
        // Where a column is too narrow to write in, the text goes to the next line's start.
        page.StartDoc(Paper {});
        page.setCurrentX(10400);
        page.setText(u"a word"_qs);
        QCOMPARE(lastPage(), QStringList {u"1440@1 a word"_qs});
    }

    void endlessWord()
    {
        const QString word = u"W"_qs.repeated(65000);
        page.setCurrentX(5760);
        page.setText(word);
        page.EndDoc();
        QString all;
        for (int i = 1; i <= page.PageCount(); ++i) {
            for (const PageDocument::Step &step : page.steps(i)) {
                const auto &text = std::get<PageDocument::Text>(step);
                QVERIFY(
                    text.x + QFontMetricsF(page.fonts()[0]).horizontalAdvance(text.text) < 10470);
                QVERIFY(text.baseline < 16838 - 1440);
                all += text.text;
            }
        }
        QCOMPARE(all, word);
        // In rich text as well: 47 to a line, 60 lines to a page.
        page.StartDoc(Paper {});
        page.setTextRTF(u"{\\rtf1{\\fonttbl{\\f0 Arial;}}\\f0\\fs20 "_qs + word + u'}');
        page.EndDoc();
        QCOMPARE(page.PageCount(), 65000 / 47 / 60 + 1);
    }

    void breaksPages()
    {
        const int lines = (16838 - 2880) / lineHeight;
        page.setText(u"x\r\n"_qs.repeated(lines));
        QCOMPARE(page.PageCount(), 1);
        page.setText(u"\r\n\r\n"_qs); // blank lines at the end take no page of their own
        QCOMPARE(page.PageCount(), 1);
        page.setCurrentX(5760);
        page.setText(u"y"_qs);
        QCOMPARE(page.PageCount(), 2);
        QCOMPARE(lastPage(), QStringList {u"5760@0 y"_qs});
        page.NewPage();
        page.setText(u"z"_qs);
        page.EndDoc();
        QCOMPARE(page.PageCount(), 3);
        QCOMPARE(lastPage(), QStringList {u"1440@0 z"_qs});
    }

    void headerParts()
    {
        const std::pair<QString, QString> rows[] = {
            {u"a"_qs, u"1440 a"_qs},
            {u"a||b"_qs, u"1440 a, r b"_qs},
            {u"a|m|b"_qs, u"1440 a, c m, r b"_qs},
            {u"|m"_qs, u"c m"_qs},
            {u"a|x||b"_qs, u"1440 a|x, r b"_qs}, // a bar in the left part
            {u"%d%|Page %d|%%d"_qs, u"1440 2%, c Page 2, r %d"_qs},
        };
        for (const auto &[header, parts] : rows) {
            page.StartDoc(Paper {});
            page.NewPage();
            page.setFooter(header);
            page.EndDoc();
            QStringList found;
            for (const PageDocument::Step &step : page.steps(2)) {
                const auto &text = std::get<PageDocument::Text>(step);
                const double width = QFontMetricsF(page.fonts()[0]).horizontalAdvance(text.text);
                QString place = QString::number(text.x);
                if (qAbs(text.x + width - (11906 - 1440)) < 1)
                    place = u"r"_qs;
                else if (qAbs(text.x + width / 2 - 11906 / 2) < 1)
                    place = u"c"_qs;
                found << place + u' ' + text.text;
                QVERIFY(text.baseline > 16838 - 1440 && text.baseline < 16838 - 720);
            }
            QCOMPARE(found.join(u", "_qs), parts);
        }
    }

    void longHeader()
    {
        page.setHeader(u"/a/very/long/path"_qs.repeated(30) + u"||Right"_qs);
        page.EndDoc();
        const QStringList lines = lastPage();
        QVERIFY(lines.size() > 2); // the path goes on below itself, beside the right part, ...
        for (const QString &line : lines)
            QVERIFY2(line.contains(u"@head "_qs), qPrintable(line)); // ... and never into the text
    }

    void richText()
    {
        page.setCurrentX(2880);
        page.setText(u"Label"_qs);
        page.setIndentLeft(4320);
        page.setTextRTF(u"\r\n{\\rtf1{\\fonttbl{\\f0 Arial;}}\\f0\\fs20 one\\par two}\r\n"_qs);
        page.setIndentLeft(0);
        page.setText(u"\r\n"_qs);
        page.setTextRTF(u"\nplain\ntext\n"_qs);
        page.setText(u"end"_qs);
        const QStringList lines = lastPage();
        QCOMPARE(lines.size(), 4);
        QCOMPARE(lines[0], u"2880@0 Label"_qs);
        QCOMPARE(lines[1], u"5760@0 {one\ntwo}"_qs);
        QVERIFY2(lines[2].startsWith(u"1440@"_qs) && lines[2].endsWith(u"{plain\ntext}"_qs),
            qPrintable(lines[2]));
        QVERIFY(page.CurrentY() > 1440 + 4 * lineHeight);

        // A text without characters takes a line of its own, as the label beside it does.
        page.StartDoc(Paper {});
        page.setTextRTF(u"{\\rtf1}"_qs);
        QCOMPARE(page.CurrentY(), 1440 + lineHeight);
    }

    void richTextOverPages()
    {
        QString body;
        for (int i = 1; i <= 300; ++i)
            body += u"line %1\\par "_qs.arg(i);
        page.setText(u"\r\n"_qs.repeated(30));
        page.setIndentLeft(4320);
        page.setTextRTF(u"{\\rtf1\\fs20 "_qs + body + u"end}"_qs);
        page.EndDoc();
        QVERIFY(page.PageCount() == 6 || page.PageCount() == 5);
        QStringList all;
        for (int i = 1; i <= page.PageCount(); ++i) {
            QCOMPARE(page.steps(i).size(), size_t(1));
            const auto &part = std::get<PageDocument::RichTextPart>(page.steps(i).front());
            all += part.text().split(u'\n', Qt::SkipEmptyParts);
            QCOMPARE(part.area.left(), 5760);
            QVERIFY(part.area.bottom() <= 16838 - 1440);
            if (i > 1)
                QCOMPARE(part.area.top(), 1440);
        }
        QCOMPARE(all.size(), 301);
        QCOMPARE(all[299], u"line 300"_qs);
    }

    void pictureLargerThanThePage()
    {
        // A black bitmap of 1 by 1 pixel, shown 10 inches wide and 20 inches high: made as narrow
        // as the text it is 18,052 twips high, and the page has room for 13,958.
        const QString picture =
            u"{\\pict\\dibitmap0\\picw1\\pich1\\picwgoal14400\\pichgoal28800 "
            "28000000010000000100000001001800000000000400000000000000000000000000000000000000"
            "00000000}"_qs;
        page.setText(u"above\r\n"_qs);
        page.setTextRTF(u"{\\rtf1 "_qs + picture + u"\\par below}"_qs);
        page.EndDoc();
        QCOMPARE(page.PageCount(), 3);
        const QImage image = drawn(2);
        // It stands whole within the margins.
        const auto black = [&image](
                               int x, int y) { return qGray(image.pixel(x / 20, y / 20)) < 64; };
        QVERIFY(black(1500, 1500) && black(8300, 1500) && black(1500, 15300) && black(8300, 15300));
        QVERIFY(!black(1400, 5000) && !black(8500, 5000) && !black(5000, 15500));
    }

    void papers()
    {
        const QMargins inch(1440, 1440, 1440, 1440);
        const std::tuple<QSize, QMargins, QMargins, int> rows[] = {
            {QSize(12240, 15840), QMargins(360, 720, 360, 720), inch, 0}, // Letter
            {QSize(12240, 15840), QMargins(1600, 1500, 0, 0), QMargins(1600, 1500, 1440, 1440), 0},
            {QSize(3000, 2000), QMargins(), QMargins(600, 400, 600, 400), 0}, // a label
            {QSize(3000, 2000), QMargins(1400, 0, 1400, 0), QMargins(1400, 400, 1400, 400), 4},
        };
        for (const auto &[size, unprintable, margins, error] : rows) {
            page.StartDoc(Paper {size, unprintable});
            QCOMPARE(page.margins(), margins);
            QCOMPARE(page.Error(), error);
            // Columns made for a larger sheet still lose nothing.
            page.setCurrentX(5760);
            page.setText(u"some words"_qs);
            page.setIndentLeft(4320);
            page.setTextRTF(u"{\\rtf1 rich}"_qs);
            page.EndDoc();
            QString all;
            for (int i = 1; i <= page.PageCount(); ++i)
                all += page.pageText(i);
            all.remove(u'\n').remove(u' ');
            QCOMPARE(all, error ? QString() : u"somewordsrich"_qs);
        }
        page.StartDoc(std::nullopt);
        QCOMPARE(page.Error(), int(PageDocument::NoPrinter));
        page.setText(u"text"_qs);
        page.setTextRTF(u"text"_qs);
        page.DrawPicture(QImage(1, 1, QImage::Format_RGB32), QRect(0, 0, 1, 1));
        page.EndDoc();
        QCOMPARE(page.PageCount(), 0);
    }

    void drawsWhereItSays()
    {
        QImage red(2, 2, QImage::Format_RGB32);
        red.fill(Qt::red);
        page.DrawPicture(red, QRect(2880, 2880, 1440, 1440));
        page.setCurrentX(5760);
        page.setFont(u"Arial"_qs, 72, true);
        page.setText(u"I"_qs);
        page.EndDoc();
        const QImage image = drawn(1);
        QCOMPARE(image.pixelColor(180, 180), QColor(Qt::red));
        QCOMPARE(image.pixelColor(140, 180), QColor(Qt::white));
        QCOMPARE(image.pixelColor(220, 180), QColor(Qt::white));
        // The letter's stem lies in the middle of its width.
        const int middle = (5760 + page.CurrentX()) / 2 / 20;
        QVERIFY(image.pixelColor(middle, (1440 + 900) / 20).lightness() < 40);
        QCOMPARE(image.pixelColor(middle + 30, (1440 + 900) / 20), QColor(Qt::white));
    }
};

TSM_TEST(PageDocument_test);
#include "tst_PageDocument.moc"
