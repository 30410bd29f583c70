// The tool set report into a paper file, and one page of it on the screen, beside what the toolkit
// needs to print and draw the same text.

#include "model/CVBATools.h"
#include "platform/print/PagePreview.h"
#include "platform/print/PrintJob.h"
#include "platform/print/Printers.h"
#include "platform/rtf/RichText.h"
#include "platform/rtf/RtfWriter.h"
#include "report/ToolsetReport.h"
#include "support/Ratios.h"
#include "support/SampleSet.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QFile>
#include <QPainter>
#include <QPrinter>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>

#include <cstdio>
#include <map>

namespace {

SampleSet *samples = nullptr;
const Printers paperFile {[] { return QStringList {Printers::pdfFile()}; }};
std::map<QString, int> pageCounts; ///< For the remark below the table.

const CVBATools &set(int count)
{
    static std::map<int, std::unique_ptr<CVBATools>> sets;
    auto &made = sets[count];
    if (!made) {
        made = std::make_unique<CVBATools>(samples->storage());
        made->Load(samples->file(count));
    }
    return *made;
}

QString output()
{
    return samples->path(QStringLiteral("out.pdf"));
}

void layOut(PageDocument &document, int count)
{
    document.StartDoc(paperFile.paper());
    ToolsetReport::write(document, set(count), QStringLiteral("/sets/sample.bmt"));
    pageCounts[QStringLiteral("report of %1 tools").arg(count)] = document.PageCount();
}

void print(const PageDocument &document, benchmark::State &state)
{
    PrintJob job(paperFile, QStringLiteral("Report"));
    job.setFileName(output());
    if (!job.start()) {
        state.SkipWithError("not started");
        return;
    }
    for (int page = 1; page <= document.PageCount(); ++page) {
        if (page > 1)
            job.newPage();
        document.draw(job.painter(), page);
    }
    if (!job.end())
        state.SkipWithError("not printed");
}

int countOf(const benchmark::State &state)
{
    return static_cast<int>(state.range(0));
}

void reportIntoPdf(benchmark::State &state)
{
    const int count = countOf(state);
    set(count);
    for (auto _ : state) {
        PageDocument document;
        layOut(document, count);
        print(document, state);
    }
}

void layOutReport(benchmark::State &state)
{
    const int count = countOf(state);
    set(count);
    for (auto _ : state) {
        PageDocument document;
        layOut(document, count);
    }
}

/// The report's lines and help texts in one document, read beforehand.
const QTextDocument &sameText(int count)
{
    static std::map<int, std::unique_ptr<QTextDocument>> documents;
    auto &made = documents[count];
    if (made)
        return *made;
    made = std::make_unique<QTextDocument>();
    made->setUndoRedoEnabled(false);
    made->setDefaultFont(QFont(QStringLiteral("Arial"), 10));
    QTextCursor cursor(made.get());
    cursor.beginEditBlock();
    QTextBlockFormat value;
    value.setLeftMargin(4320 / 15.0);
    for (const ToolPtr &tool : set(count)) {
        cursor.setBlockFormat({});
        cursor.insertText(QStringLiteral("%1\t\t%2\n\n\tTool type:\tStandard Exe\n\tTool "
                                         "access:\tToolbar, List\n\tOLE application name:\t%2\n"
                                         "\tCommand line arguments:\t%3\n\tTool Help:\n")
                              .arg(tool->Description, tool->FileName, tool->CommandLine));
        QTextDocument help;
        RichText::read(tool->HelpString, help, RichText::reader(1252));
        cursor.setBlockFormat(value);
        cursor.insertFragment(QTextDocumentFragment(&help));
        cursor.insertText(QStringLiteral("\n\n"));
    }
    cursor.endEditBlock();
    return *made;
}

void sameTextIntoPdf(benchmark::State &state)
{
    const QTextDocument &text = sameText(countOf(state));
    for (auto _ : state) {
        state.PauseTiming();
        const std::unique_ptr<QTextDocument> fresh(text.clone());
        state.ResumeTiming();
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(output());
        printer.setPageSize(QPageSize(QPageSize::A4));
        fresh->print(&printer);
        state.PauseTiming();
        QFile file(output());
        if (!file.open(QIODevice::ReadOnly))
            state.SkipWithError("not printed");
        pageCounts[QStringLiteral("QTextDocument of %1 tools").arg(countOf(state))] =
            static_cast<int>(file.readAll().count("/Type /Page\n"));
        state.ResumeTiming();
    }
}

QImage screenImage(const QSize &size)
{
    return QImage(size, QImage::Format_RGB32);
}

/// One key: the next page shown and painted, in the middle of the report.
void pageFlip(benchmark::State &state)
{
    PagePreview preview;
    layOut(preview.document(), countOf(state));
    preview.resize(1000, 1160); // a whole page
    preview.setPreviewPage(1);
    QImage screen = screenImage(preview.size());
    const int middle = preview.PageCount() / 2;
    int turn = 0;
    for (auto _ : state) {
        preview.setPreviewPage(middle + ++turn % 2);
        preview.render(&screen);
    }
}

/// A page of the same text, drawn by its own document.
void drawPage(benchmark::State &state)
{
    const std::unique_ptr<QTextDocument> text(sameText(countOf(state)).clone());
    text->setTextWidth(602);
    const double top = text->size().height() / 2;
    QImage screen = screenImage({1000, 1160});
    int turn = 0;
    for (auto _ : state) {
        screen.fill(Qt::white);
        QPainter painter(&screen);
        const QRectF page(0, top + ++turn % 2 * 930, 602, 930);
        painter.translate(100, 100 - page.top());
        text->drawContents(&painter, page);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    QApplication application(argc, argv);
    SampleSet set;
    samples = &set;
    Ratios ratios({100, 1000}, 5);
    ratios.compare({"report into PDF", reportIntoPdf},
        {"QTextDocument::print of the same text", sameTextIntoPdf}, 1);
    ratios.compare({"report laid out", layOutReport},
        {"QTextDocument::print of the same text", sameTextIntoPdf});
    ratios.compare({"page flip in the preview", pageFlip}, {"the text's page drawn", drawPage});
    if (const QString path = qEnvironmentVariable("TSM_BENCH_RTF"); !path.isEmpty()) {
        // The same text for other programs to print.
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(RtfWriter::write(sameText(1000)));
        return 0;
    }
    const int result = ratios.run(argc, argv);
    for (const auto &[what, pages] : pageCounts)
        std::printf("| pages: %s | %d |\n", qPrintable(what), pages);
    return result;
}
