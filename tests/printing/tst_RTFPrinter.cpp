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
    RichTextBox box {u"Arial"_qs, 10};
    std::unique_ptr<RTFPrinter> printer;

private Q_SLOTS:
    void init()
    {
        QFile::remove(path());
        printers.choose(Printers::pdfFile(), QPageSize(QPageSize::A4), QPageLayout::Portrait);
        printer = std::make_unique<RTFPrinter>(printers);
        printer->DocumentBox = &box;
        printer->FileName = path();
    }

    void bands()
    {
        printer->setLeftMargin(1000);
        printer->setTopMargin(2000);
        printer->setRightMargin(3000);
        printer->setBottomMargin(4000);
        const auto edges = [this] {
            const auto bands = printer->bands({QSize(12240, 15840), QMargins(300, 400, 500, 600)});
            QStringList all;
            for (const QRect &r : {bands.header, bands.body, bands.footer, bands.page})
                all << u"%1 %2 %3 %4"_qs.arg(r.x())
                           .arg(r.y())
                           .arg(r.x() + r.width())
                           .arg(r.y() + r.height());
            return all;
        };
        // The margins count from the paper's edge; the page ends at 15840 - 4000 - 400.
        QCOMPARE(edges(),
            QStringList({u"700 1600 8940 1600"_qs, u"700 1600 8940 11080"_qs,
                u"700 11440 8940 11440"_qs, u"0 0 11440 14840"_qs}));
        printer->setHeaderHeight(500);
        printer->setFooterHeight(700);
        QCOMPARE(edges(),
            QStringList({u"700 1600 8940 2100"_qs, u"700 2100 8940 10380"_qs,
                u"700 10740 8940 11440"_qs, u"0 0 11440 14840"_qs}));
    }

    void pages()
    {
        // 16838 - 2880 - 360 twips hold 59 lines.
        for (const auto &[lines, pages] :
            {std::pair(0, 1), std::pair(59, 1), std::pair(60, 2), std::pair(500, 9)}) {
            box.setTextRTF(paragraphs(lines));
            QSignalSpy begun(printer.get(), &RTFPrinter::BeginPage);
            QSignalSpy ended(printer.get(), &RTFPrinter::EndDocument);
            printer->PrintRTF();
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
        // No line of a paragraph that runs over pages is in the file twice, although cut off.
        QStringList words;
        for (int i = 0; i < 5000; ++i)
            words << u"word%1"_qs.arg(i);
        box.setTextRTF(u"{\\rtf1{\\fonttbl{\\f0 Arial;}}\\fs20 "_qs + words.join(u' ') + u'}');
        printer->PrintRTF();
        QCOMPARE(pagesOfPdf(path()).join(u' ').simplified().split(u' '), words);
    }

    void cancels()
    {
        box.setTextRTF(paragraphs(150));
        for (const int at : {1, 2, 3}) { // the last page too
            QSignalSpy ended(printer.get(), &RTFPrinter::EndDocument);
            QSignalSpy begun(printer.get(), &RTFPrinter::BeginPage);
            const auto stop = connect(printer.get(), &RTFPrinter::BeginPage, this, [&](int page) {
                if (page == at)
                    printer->Cancel();
            });
            printer->PrintRTF();
            disconnect(stop);
            QCOMPARE(begun.size(), at);
            QCOMPARE(ended.size(), 1);
            QVERIFY(!QFile::exists(path()));
        }
        printer->PrintRTF(); // the flag is that of one print
        QCOMPARE(pagesOfPdf(path()).size(), 3);
    }

    void refused()
    {
        QSignalSpy ended(printer.get(), &RTFPrinter::EndDocument);
        printer->FileName = folder.filePath(u"missing/out.pdf"_qs);
        QVERIFY_THROWS_EXCEPTION(VbError, printer->PrintRTF());
        printer->FileName = path();
        printer->setTopMargin(20000);
        QVERIFY_THROWS_EXCEPTION(VbError, printer->PrintRTF());
        printers.choose(u"gone"_qs, QPageSize(QPageSize::A4), QPageLayout::Portrait);
        QVERIFY_THROWS_EXCEPTION(VbError, printer->PrintRTF());
        QCOMPARE(ended.size(), 3);
        QVERIFY(!QFile::exists(path()));
    }

    void window()
    {
        for (const bool cancelled : {false, true}) {
            QFile::remove(path());
            Answers answers;
            answers.file(u"Print to PDF File"_qs, path());
            QPointer<frmRTF> form = new frmRTF(printers);
            form->setDocumentText(paragraphs(59000 / 50));
            form->findChild<RichTextBox *>(u"rtfHeader"_qs)->setText(u"The header"_qs);
            QStringList messages;
            connect(form->findChild<RTFPrinter *>(), &RTFPrinter::BeginPage, form, [&](int page) {
                messages << form->findChild<QLabel *>(u"lblMsg"_qs)->text();
                if (cancelled && page == 2) // the user presses the button just then
                    form->findChild<QPushButton *>(u"cmdCancel"_qs)->click();
            });
            form->PrintDocument();
            QTRY_VERIFY(!form);
            QCOMPARE(messages[1], u"Page 2"_qs);
            QCOMPARE(QFile::exists(path()), !cancelled);
            if (cancelled)
                continue;
            const QStringList pages = pagesOfPdf(path());
            QCOMPARE(pages.size(), messages.size());
            QVERIFY(pages[1].startsWith(u"The header\nline "_qs));
            QVERIFY(pages[1].trimmed().endsWith(u"\nPage 2"_qs));
        }
    }
};

TSM_TEST(RTFPrinter_test);
#include "tst_RTFPrinter.moc"
