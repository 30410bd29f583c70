#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/print/PrintJob.h"
#include "platform/print/Printers.h"
#include "platform/rtf/RichTextBox.h"
#include "printing/RTFPrinter.h"
#include "printing/ReportCommands.h"
#include "support/Answers.h"
#include "support/PrintQueue.h"
#include "support/PrintedPages.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

#include <QProcess>
#include <QWidget>

using PrintedPages::pagesOfPdf;

/// Real jobs on a real queue, read back from what the queue wrote.
class PrintQueue_test : public QObject
{
    Q_OBJECT

    PrintQueue queue;
    QTemporaryDir folder;
    Printers printers;

private Q_SLOTS:
    void initTestCase()
    {
        const QString problem = queue.start();
        if (!problem.isEmpty())
            QSKIP(qPrintable(problem));
    }

    void init() { queue.forgetFile(); }

    void choice()
    {
        QCOMPARE(printers.names(), (QStringList {u"FILEPDF"_qs, Printers::pdfFile()}));
        QCOMPARE(printers.name(), u"FILEPDF"_qs); // the default one
        QCOMPARE(printers.pageSize().key(), u"Letter"_qs); // as the queue has it, not the locale
        const auto paper = printers.paper();
        QVERIFY(paper);
        QCOMPARE(paper->size, QSize(12240, 15840));
        QCOMPARE(paper->unprintable, QMargins(360, 720, 360, 720)); // 18 and 36 points
        printers.choose(u"FILEPDF"_qs, printers.pageSize(), QPageLayout::Landscape);
        QCOMPARE(printers.paper()->size, QSize(15840, 12240));
        QCOMPARE(printers.paper()->unprintable, QMargins(720, 360, 720, 360));
    }

    void report_data()
    {
        // size: as the queue's paper goes through the printer
        rows<QString, bool, QByteArray>({
            {"Letter", u"Letter"_qs, false, QByteArray("612 x 792")},
            {"A4", u"A4"_qs, false, QByteArray("595 x 842")},
            {"A4 landscape", u"A4"_qs, true, QByteArray("595 x 842")},
        });
    }

    void report()
    {
        const auto [paper, landscape, size] = row<QString, bool, QByteArray>();
        const auto sizes = Printers::pageSizes(u"FILEPDF"_qs);
        const auto wanted = std::find_if(sizes.cbegin(), sizes.cend(),
            [&](const QPageSize &offered) { return offered.key() == paper; });
        QVERIFY(wanted != sizes.cend());
        printers.choose(
            u"FILEPDF"_qs, *wanted, landscape ? QPageLayout::Landscape : QPageLayout::Portrait);

        ToolSetStorage storage(1252, folder.path(), folder.path());
        SettingsStore store(folder.filePath(u"settings"_qs));
        CVBATools set(storage);
        for (int i = 1; i <= 20; ++i) {
            auto tool = std::make_shared<CVBATool>();
            tool->Description = u"Tool %1."_qs.arg(i);
            tool->HelpString = u"{\\rtf1 help of %1\\'e4}"_qs.arg(i);
            QVERIFY(set.Add(tool));
        }
        QWidget owner;
        Answers answers; // fails on any dialog
        ReportCommands(
            &owner, [](const QString &, const QString &) {}, store, printers)
            .print(set, u"/sets/printed.bmt"_qs);

        const QString file = queue.finishedFile();
        const QString text =
            pagesOfPdf(file).join(u' ').simplified(); // turned pages come word by word
        qsizetype at = 0;
        for (int i = 1; i <= 20; ++i) {
            at = text.indexOf(u"Tool %1."_qs.arg(i), at);
            QVERIFY2(at >= 0, qPrintable(text));
            QVERIFY(text.indexOf(u"help of %1ä"_qs.arg(i), at) > 0);
        }
        QVERIFY(text.contains(u"/sets/printed.bmt"_qs));
        QProcess information;
        information.start(u"pdfinfo"_qs, {file});
        QVERIFY(information.waitForFinished());
        const QByteArray told = information.readAllStandardOutput();
        QVERIFY2(told.simplified().contains(size), told.constData());
    }

    void richText()
    {
        printers.choose(u"FILEPDF"_qs, QPageSize(QPageSize::Letter), QPageLayout::Portrait);
        RichTextBox box(u"Arial"_qs, 10);
        box.setText(u"some text"_qs);
        RTFPrinter printer(printers);
        printer.DocumentBox = &box;
        printer.PrintRTF();
        // The margin counts from the paper's edge, whatever the printer cannot reach.
        QProcess reader;
        reader.start(u"pdftotext"_qs, {u"-bbox"_qs, queue.finishedFile(), u"-"_qs});
        QVERIFY(reader.waitForFinished());
        const QByteArray boxes = reader.readAllStandardOutput();
        const qsizetype x = boxes.indexOf("xMin=\"");
        QCOMPARE(qRound(boxes.mid(x + 6, 6).toDouble()), 72);
    }

    void givenUp()
    {
        const auto jobs = [] {
            QProcess list;
            list.start(u"lpstat"_qs, {u"-W"_qs, u"all"_qs, u"-o"_qs});
            return list.waitForFinished() ? list.readAllStandardOutput().count("FILEPDF-") : -1;
        };
        const auto before = jobs();
        {
            PrintJob job(printers, u"given up"_qs);
            QVERIFY(job.start());
            job.painter().drawText(1440, 1440, u"nothing"_qs);
            job.newPage();
        }
        QCOMPARE(jobs(), before);
    }

    /// the last: the queue is gone then
    void queueVanishes()
    {
        printers.choose(u"FILEPDF"_qs, QPageSize(QPageSize::Letter), QPageLayout::Portrait);
        PrintJob job(printers, u"late"_qs);
        QVERIFY(job.start());
        queue.removeQueue();
        QVERIFY(!job.end());
        QVERIFY(!job.errorText().isEmpty());
        QVERIFY(!job.start());
        QVERIFY(job.errorText().contains(u"FILEPDF"_qs));
    }
};

TSM_TEST(PrintQueue_test);
#include "tst_PrintQueue.moc"
