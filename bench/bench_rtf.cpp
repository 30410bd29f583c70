#include "platform/rtf/RichTextPages.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"

#include <QAbstractTextDocumentLayout>
#include <QGuiApplication>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr qint64 megabyte = 1'000'000;

/// A help text of that many bytes: headings, paragraphs with words in other formats, bullets, tab
/// stops, accents, a few Cyrillic words.
QByteArray sample(qint64 size)
{
    static constexpr const char *pieces[] = {
        "The tool reads its settings when it starts and again whenever you press ",
        "{\\b Refresh}",
        ". Values that are out of range are \\i ignored\\i0 , and the ",
        "\\cf1 default\\cf0  is taken. See \\ul Options\\ulnone  for the whole list, ",
        "caf\\'e9 and na\\'efve included; {\\f1\\fs18 sourceName = \"C:\\\\Work\\\\file.txt\"} ",
        "or \\u8364?\\u8211? in {\\f2 \\'cf\\'f0\\'e8\\'ec\\'e5\\'f0} text. ",
    };
    QByteArray rtf =
        "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss Arial;}{\\f1\\fmodern "
        "Courier New;}{\\f2\\fcharset204 Arial;}{\\f3\\fcharset2 Symbol;}}"
        "{\\colortbl ;\\red255\\green0\\blue0;}\r\n\\pard\\plain\\fs20 ";
    rtf.reserve(size + 1000);
    for (int paragraph = 0; rtf.size() < size; ++paragraph) {
        switch (paragraph % 8) {
        case 0:
            rtf += "\\pard\\qc\\b\\fs28 Chapter " + QByteArray::number(paragraph / 8)
                + "\\b0\\fs20\\par\r\n\\pard ";
            continue;
        case 5:
            rtf += "\\pard{\\pntext\\f3\\'b7\\tab}{\\*\\pn\\pnlvlblt\\pnf3{\\pntxtb\\'b7}}"
                   "\\fi-200\\li400 ";
            break;
        case 7:
            rtf += "\\pard\\li360\\tx1440\\tx2880 Name\\tab Value\\tab ";
            break;
        default:
            break;
        }
        for (int i = 0; i < 4 + paragraph % 5; ++i)
            rtf += pieces[static_cast<size_t>(paragraph + i) % std::size(pieces)];
        rtf += "\\par\r\n";
    }
    return rtf + '}';
}

const QByteArray &sampleOf(const benchmark::State &state)
{
    static std::map<qint64, QByteArray> samples;
    QByteArray &rtf = samples[state.range(0)];
    if (rtf.isEmpty())
        rtf = sample(state.range(0) * megabyte);
    return rtf;
}

struct Run
{
    QString text;
    QTextCharFormat format;
};

struct Paragraph
{
    QTextBlockFormat format;
    QTextCharFormat mark;
    std::vector<Run> runs;
};

/// The floor: the same document put together through a cursor from strings and formats at hand.
void cursor(benchmark::State &state)
{
    QTextDocument read;
    RtfReader().read(sampleOf(state), read);
    std::vector<Paragraph> paragraphs;
    for (QTextBlock block = read.begin(); block.isValid(); block = block.next()) {
        Paragraph paragraph {block.blockFormat(), block.charFormat(), {}};
        paragraph.format.setObjectIndex(-1);
        for (auto it = block.begin(); !it.atEnd(); ++it)
            paragraph.runs.push_back({it.fragment().text(), it.fragment().charFormat()});
        paragraphs.push_back(std::move(paragraph));
    }
    for (auto _ : state) {
        QTextDocument document;
        document.setUndoRedoEnabled(false);
        QTextCursor cursor(&document);
        cursor.beginEditBlock();
        for (const Paragraph &paragraph : paragraphs) {
            cursor.insertBlock(paragraph.format, paragraph.mark);
            for (const Run &run : paragraph.runs)
                cursor.insertText(run.text, run.format);
        }
        cursor.endEditBlock();
    }
}

void readRtf(benchmark::State &state)
{
    const QByteArray &rtf = sampleOf(state);
    RtfReader reader;
    for (auto _ : state) {
        QTextDocument document;
        reader.read(rtf, document);
    }
    state.SetBytesProcessed(state.iterations() * rtf.size());
}

void writeRtf(benchmark::State &state)
{
    QTextDocument document;
    RtfReader().read(sampleOf(state), document);
    qint64 size = 0;
    for (auto _ : state)
        size += RtfWriter::write(document).size();
    state.SetBytesProcessed(size);
}

/// A text that uses so many thousands of fonts; read, laid out and written.
void manyFonts(benchmark::State &state)
{
    QByteArray table;
    QByteArray body;
    for (qint64 i = 0; i < state.range(0) * 1000; ++i) {
        const QByteArray number = QByteArray::number(i);
        table += "{\\f" + number + " Font " + number + ";}";
        body += "\\f" + number + " x";
    }
    const QByteArray rtf = "{\\rtf1{\\fonttbl" + table + '}' + body + '}';
    for (auto _ : state) {
        QTextDocument document;
        RtfReader().read(rtf, document);
        benchmark::DoNotOptimize(document.documentLayout()->documentSize());
        benchmark::DoNotOptimize(RtfWriter::write(document));
    }
}

/// All pages of Letter paper with margins of an inch; the layout is made anew each time.
void cutPages(benchmark::State &state)
{
    QTextDocument document;
    RtfReader().read(sampleOf(state), document);
    constexpr QSize area(9360, 12960);
    const int length = document.characterCount() - 1;
    int pageCount = 0;
    for (auto _ : state) {
        RichTextPages pages(document);
        pageCount = 0;
        for (int first = 0; first < length; ++pageCount)
            first = pages.firstBeyond(first, area);
    }
    state.counters["pages"] = pageCount;
}

/// The floor of that: Qt's own layout of the document.
void layOut(benchmark::State &state)
{
    QTextDocument document;
    RtfReader().read(sampleOf(state), document);
    for (auto _ : state) {
        const std::unique_ptr<QTextDocument> copy(document.clone());
        copy->setTextWidth(624);
        benchmark::DoNotOptimize(copy->documentLayout()->documentSize());
    }
}

void readLines(QTextDocument &document, int pageCount)
{
    const QByteArray page = QByteArray("line\\par ").repeated(56); // of Letter paper
    const QByteArray rtf =
        "{\\rtf1{\\fonttbl{\\f0 Arial;}}\\fs20 " + page.repeated(pageCount) + '}';
    RtfReader().read(rtf, document);
}

/// So many pages of short lines: more than one layout of the toolkit can hold.
void manyPages(benchmark::State &state)
{
    QTextDocument document;
    readLines(document, static_cast<int>(state.range(0)));
    constexpr QSize area(9360, 12960);
    const int length = document.characterCount() - 1;
    for (auto _ : state) {
        RichTextPages pages(document);
        for (int first = 0; first < length;)
            first = pages.firstBeyond(first, area);
    }
}

/// The floor of that: Qt's own layout of as many pages, a hundred at a time.
void layOutHundreds(benchmark::State &state)
{
    QTextDocument document;
    readLines(document, 100);
    for (auto _ : state) {
        for (int i = 0; i < state.range(0) / 100; ++i) {
            const std::unique_ptr<QTextDocument> copy(document.clone());
            copy->setTextWidth(624);
            benchmark::DoNotOptimize(copy->documentLayout()->documentSize());
        }
    }
}

/// The usual output; then the ratios, of processor time: other programs may be running.
class Reporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.aggregate_name == "median")
                m_medians[run.run_name.function_name + '/' + run.run_name.args] =
                    run.GetAdjustedCPUTime();
        }
    }
    void printRatios()
    {
        for (const char *size : {"1", "10"}) {
            const double floor = m_medians[std::string("cursor/") + size];
            std::printf("%s MB: read %.2f of the floor, write %.2f\n", size,
                m_medians[std::string("readRtf/") + size] / floor,
                m_medians[std::string("writeRtf/") + size] / floor);
        }
        for (const char *pages : {"1000", "10000"}) {
            std::printf("%s pages of short lines: %.2f of the floor\n", pages,
                m_medians[std::string("manyPages/") + pages]
                    / m_medians[std::string("layOutHundreds/") + pages]);
        }
        for (const char *what :
            {"cursor", "readRtf", "writeRtf", "layOut", "cutPages", "manyFonts"}) {
            std::printf("%s: ten times the text takes %.1f times as long\n", what,
                m_medians[std::string(what) + "/10"] / m_medians[std::string(what) + "/1"]);
        }
    }

private:
    std::map<std::string, double> m_medians;
};

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    using Function = void (*)(benchmark::State &);
    constexpr std::pair<const char *, Function> functions[] = {{"cursor", cursor},
        {"readRtf", readRtf}, {"writeRtf", writeRtf}, {"layOut", layOut}, {"cutPages", cutPages},
        {"manyFonts", manyFonts}};
    for (const auto &[name, function] : functions) {
        benchmark::RegisterBenchmark(name, function)
            ->Arg(1)
            ->Arg(10)
            ->Unit(benchmark::kMillisecond)
            ->Repetitions(5)
            ->ReportAggregatesOnly();
    }
    constexpr std::pair<const char *, Function> ofPages[] = {
        {"manyPages", manyPages}, {"layOutHundreds", layOutHundreds}};
    for (const auto &[name, function] : ofPages) {
        benchmark::RegisterBenchmark(name, function)
            ->Arg(1000)
            ->Arg(10'000)
            ->Unit(benchmark::kMillisecond)
            ->Repetitions(3)
            ->ReportAggregatesOnly();
    }
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    return 0;
}
