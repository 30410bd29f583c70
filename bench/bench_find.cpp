// Find and check over whole sets, beside one plain pass over the same bytes.

#include "model/ToolCheck.h"
#include "model/ToolFinder.h"
#include "model/ToolSetDocument.h"
#include "platform/desktop/DiskFiles.h"
#include "support/Ratios.h"
#include "support/SampleSet.h"

#include <QFile>
#include <QGuiApplication>

#include <map>

namespace {

SampleSet *samples = nullptr;

/// A document with so many tools, made when first asked for.
ToolSetDocument &document(const benchmark::State &state)
{
    static std::map<int64_t, std::unique_ptr<ToolSetDocument>> documents;
    auto &made = documents[state.range(0)];
    if (!made) {
        made = std::make_unique<ToolSetDocument>(samples->storage());
        made->append(SampleSet::tools(static_cast<int>(state.range(0))));
    }
    return *made;
}

/// A keystroke that no former result helps, in texts that are at hand: two filters in turns, none
/// of which is narrower than the other.
void keystroke(benchmark::State &state, const QString &one, const QString &other)
{
    ToolFinder finder(document(state), 1252);
    for (const QString &text : {one, other}) {
        finder.setFilter(ToolFilter(text));
        finder.finish();
    }
    bool first = true;
    for (auto _ : state) {
        finder.setFilter(ToolFilter(first ? one : other));
        finder.finish();
        first = !first;
    }
    benchmark::DoNotOptimize(finder.matchCount());
}

void names(benchmark::State &state)
{
    keystroke(state, u"name:99 location:9"_qs, u"name:88 location:8"_qs);
}

void helps(benchmark::State &state)
{
    keystroke(state, u"refresher"_qs, u"settinx"_qs);
}

void firstKeystroke(benchmark::State &state)
{
    for (auto _ : state) {
        ToolFinder finder(document(state), 1252);
        finder.setFilter(ToolFilter(u"name:9"_qs));
        benchmark::DoNotOptimize(finder.matchCount());
    }
}

void readHelps(benchmark::State &state)
{
    for (auto _ : state) {
        ToolFinder finder(document(state), 1252);
        finder.setFilter(ToolFilter(u"refresher"_qs));
        finder.finish();
        benchmark::DoNotOptimize(finder.matchCount());
    }
}

/// One search through all the texts in one piece.
void plainSearch(benchmark::State &state, bool inHelp)
{
    std::string all;
    RtfPlainText plain(1252);
    for (const ToolPtr &tool : document(state).toolsInOrder()) {
        all += inHelp ? FoldedText::of(plain.read(tool->HelpString))
                      : FoldedText::of(QString(tool->Description + tool->Location()));
    }
    const FoldedText::Needle needle(u"refresher");
    for (auto _ : state)
        benchmark::DoNotOptimize(needle.isIn(all));
}

void searchNames(benchmark::State &state)
{
    plainSearch(state, false);
}

void searchHelps(benchmark::State &state)
{
    plainSearch(state, true);
}

void foldNames(benchmark::State &state)
{
    for (auto _ : state) {
        for (const ToolPtr &tool : document(state).toolsInOrder()) {
            benchmark::DoNotOptimize(tool->Description.toCaseFolded());
            benchmark::DoNotOptimize(tool->Location().toCaseFolded());
        }
    }
}

void copyHelps(benchmark::State &state)
{
    for (auto _ : state) {
        for (const ToolPtr &tool : document(state).toolsInOrder())
            benchmark::DoNotOptimize(tool->HelpString.toLatin1());
    }
}

void check(benchmark::State &state)
{
    DiskFiles files;
    ToolCheck::Rules rules;
    rules.drives.assign(u'C', samples->path(QString()));
    rules.files = &files;
    for (auto _ : state) {
        ToolCheck check(document(state), rules);
        check.finish();
        benchmark::DoNotOptimize(check.allFindings().size());
    }
}

/// Every character of every text has to be looked up in the code page, and every file on the disk.
void encodeAll(benchmark::State &state)
{
    const CodePage codePage;
    for (auto _ : state) {
        for (const ToolPtr &tool : document(state).toolsInOrder()) {
            for (const QString &text : {tool->Description, tool->FileName, tool->AppName32,
                     tool->CommandLine, tool->HelpString})
                benchmark::DoNotOptimize(codePage.firstUnencodable(text));
            benchmark::DoNotOptimize(QFile::exists(samples->path(tool->FileName)));
        }
    }
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    SampleSet set;
    samples = &set;
    Ratios ratios({1000, 10000});
    ratios.compare(
        {"keystroke on names and locations", names}, {"one search in one text", searchNames});
    ratios.compare(
        {"keystroke on help texts", helps}, {"one search in one help text", searchHelps});
    ratios.compare(
        {"first keystroke on names", firstKeystroke}, {"names and locations folded", foldNames});
    ratios.compare({"words read out of help texts", readHelps}, {"help texts as bytes", copyHelps});
    ratios.compare({"check", check}, {"characters and files looked up", encodeAll}, 3);
    return ratios.run(argc, argv);
}
