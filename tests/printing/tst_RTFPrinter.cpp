#include "platform/VbError.h"
#include "platform/print/Printers.h"
#include "platform/rtf/RichTextBox.h"
#include "printing/RTFPrinter.h"
#include "printing/frmRTF.h"
#include "support/Answers.h"
#include "support/PrintedPages.h"
#include "support/TestRunner.h"

#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using PrintedPages::pagesOfPdf;

namespace {

QString paragraphs(int count)
{
    QString rtf = u"{\\rtf1{\\fonttbl{\\f0 Arial;}}\\f0\\fs20 "_qs;
    for (int i = 1; i <= count; ++i)
        rtf += u"line %1\\par "_qs.arg(i);
    return rtf + u'}';
}

} // namespace

/// On the printer "PDF file", read back by another program.
class RTFPrinter_test : public QObject
{
    Q_OBJECT

    QTemporaryDir folder;
    Printers printers {[] { return QStringList {Printers::pdfFile()}; }};
    QString path() const { return folder.filePath(u"out.pdf"_qs); }

private Q_SLOTS:
    void init()
    {
        QFile::remove(path());
        printers.choose(Printers::pdfFile(), QPageSize(QPageSize::A4), QPageLayout::Portrait);
    }

    void bands();
    void pages_data();
    void pages();
    void cancels();
    void refused();
    void window();
    void windowCancelled();
};

void RTFPrinter_test::bands()
{
    RTFPrinter printer(printers);
    printer.setLeftMargin(1000);
    printer.setTopMargin(2000);
    printer.setRightMargin(3000);
    printer.setBottomMargin(4000);
    const Paper paper {QSize(12240, 15840), QMargins(300, 400, 500, 600)};
    const auto edges = [](const QRect &r) {
        return QList<int> {r.x(), r.y(), r.x() + r.width(), r.y() + r.height()};
    };
    auto bands = printer.bands(paper);
    const int pageBottom = 15840 - 4000 - 400;
    QCOMPARE(edges(bands.header), (QList<int> {700, 1600, 8940, 1600}));
    QCOMPARE(edges(bands.body), (QList<int> {700, 1600, 8940, pageBottom - 360}));
    QCOMPARE(edges(bands.footer), (QList<int> {700, pageBottom, 8940, pageBottom}));
    QCOMPARE(edges(bands.page), (QList<int> {0, 0, 12240 - 800, 15840 - 1000}));
    printer.setHeaderHeight(500);
    printer.setFooterHeight(700);
    bands = printer.bands(paper);
    QCOMPARE(edges(bands.header), (QList<int> {700, 1600, 8940, 2100}));
    QCOMPARE(edges(bands.body), (QList<int> {700, 2100, 8940, pageBottom - 1060}));
    QCOMPARE(edges(bands.footer), (QList<int> {700, pageBottom - 700, 8940, pageBottom}));
}

void RTFPrinter_test::pages_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("pages");
    // 16838 - 2880 - 360 twips hold 59 lines.
    QTest::newRow("empty") << 0 << 1;
    QTest::newRow("one page exactly") << 59 << 1;
    QTest::newRow("one line more") << 60 << 2;
    QTest::newRow("many") << 500 << 9;
}

void RTFPrinter_test::pages()
{
    QFETCH(const int, lines);
    QFETCH(const int, pages);
    RichTextBox box(u"Arial"_qs, 10);
    box.setTextRTF(paragraphs(lines));
    RTFPrinter printer(printers);
    printer.DocumentBox = &box;
    printer.FileName = path();
    QSignalSpy begun(&printer, &RTFPrinter::BeginPage);
    QSignalSpy ended(&printer, &RTFPrinter::EndDocument);
    printer.PrintRTF();
    QCOMPARE(begun.size(), pages);
    QCOMPARE(begun.last().at(0).toInt(), pages);
    QCOMPARE(ended.size(), 1);
    const QStringList printed = pagesOfPdf(path());
    QCOMPARE(printed.size(), pages);
    QStringList expected;
    for (int i = 1; i <= lines; ++i)
        expected << u"line %1"_qs.arg(i);
    QCOMPARE(printed.join(u'\n').split(u'\n', Qt::SkipEmptyParts), expected);
}

void RTFPrinter_test::cancels()
{
    RichTextBox box(u"Arial"_qs, 10);
    box.setTextRTF(paragraphs(150));
    RTFPrinter printer(printers);
    printer.DocumentBox = &box;
    printer.FileName = path();
    for (const int at : {1, 2, 3}) { // the last page too
        QSignalSpy ended(&printer, &RTFPrinter::EndDocument);
        QSignalSpy begun(&printer, &RTFPrinter::BeginPage);
        const auto stop = connect(&printer, &RTFPrinter::BeginPage, this, [&](int page) {
            if (page == at)
                printer.Cancel();
        });
        printer.PrintRTF();
        disconnect(stop);
        QCOMPARE(begun.size(), at);
        QCOMPARE(ended.size(), 1);
        QVERIFY(!QFile::exists(path()));
    }
    printer.PrintRTF(); // the flag is that of one print
    QCOMPARE(pagesOfPdf(path()).size(), 3);
}

void RTFPrinter_test::refused()
{
    RichTextBox box(u"Arial"_qs, 10);
    RTFPrinter printer(printers);
    printer.DocumentBox = &box;
    QSignalSpy ended(&printer, &RTFPrinter::EndDocument);
    printer.FileName = folder.filePath(u"missing/out.pdf"_qs);
    QVERIFY_THROWS_EXCEPTION(VbError, printer.PrintRTF());
    printer.FileName = path();
    printer.setTopMargin(20000);
    QVERIFY_THROWS_EXCEPTION(VbError, printer.PrintRTF());
    printers.choose(u"gone"_qs, QPageSize(QPageSize::A4), QPageLayout::Portrait);
    QVERIFY_THROWS_EXCEPTION(VbError, printer.PrintRTF());
    QCOMPARE(ended.size(), 3);
    QVERIFY(!QFile::exists(path()));
}

void RTFPrinter_test::window()
{
    Answers answers;
    answers.file(u"Print to PDF File"_qs, path());
    QPointer<frmRTF> form = new frmRTF(printers);
    form->setDocumentText(paragraphs(59000 / 50));
    auto *header = form->findChild<RichTextBox *>(u"rtfHeader"_qs);
    header->setText(u"The header"_qs);
    QStringList messages;
    connect(form->findChild<RTFPrinter *>(), &RTFPrinter::BeginPage, this,
        [&] { messages << form->findChild<QLabel *>(u"lblMsg"_qs)->text(); });
    form->PrintDocument();
    QTRY_VERIFY(!form);
    const QStringList pages = pagesOfPdf(path());
    QCOMPARE(pages.size(), messages.size());
    QCOMPARE(messages[1], u"Page 2"_qs);
    QVERIFY(pages[1].startsWith(u"The header\nline "_qs));
    QVERIFY(pages[1].trimmed().endsWith(u"\nPage 2"_qs));
}

void RTFPrinter_test::windowCancelled()
{
    Answers answers;
    answers.file(u"Print to PDF File"_qs, path());
    QPointer<frmRTF> form = new frmRTF(printers);
    form->setDocumentText(paragraphs(500));
    // The user presses the button while the second page is about to be printed.
    connect(form->findChild<RTFPrinter *>(), &RTFPrinter::BeginPage, form, [&](int page) {
        if (page == 2)
            form->findChild<QPushButton *>(u"cmdCancel"_qs)->click();
    });
    form->PrintDocument();
    QTRY_VERIFY(!form);
    QVERIFY(!QFile::exists(path()));
}

TSM_TEST(RTFPrinter_test);
#include "tst_RTFPrinter.moc"
