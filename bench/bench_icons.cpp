#include "platform/picture/Picture.h"
#include "platform/picture/ProgramIcons.h"
#include "support/ProgramFile.h"

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

namespace {

/// A file to read; the first argument of a benchmark is its number.
struct Subject
{
    std::string name;
    QString path;
};

std::vector<Subject> &subjects()
{
    static std::vector<Subject> all;
    return all;
}

/// Each icon in three sizes, 32 bits, as programs have them.
QByteArray library(quint16 icons)
{
    std::vector<ProgramFile::Frame> frames;
    for (const int side : {16, 32, 48}) {
        frames.push_back(ProgramFile::bitmap(
            side, side, 32, {},
            [](int x, int y) { return 0xFF000000U | quint32(x * 5 << 8 | y * 5); },
            [](int, int) { return false; }));
    }
    std::vector<ProgramFile::Icon> all;
    for (quint16 i = 1; i <= icons; ++i)
        all.push_back({{}, i, frames});
    return ProgramFile::pe(std::move(all));
}

const Subject &subject(const benchmark::State &state)
{
    return subjects()[static_cast<std::size_t>(state.range(0))];
}

void plainRead(benchmark::State &state)
{
    for (auto _ : state) {
        QFile file(subject(state).path);
        if (!file.open(QIODevice::ReadOnly))
            state.SkipWithError("cannot be read");
        benchmark::DoNotOptimize(file.readAll());
    }
}

void count(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ProgramIcons(subject(state).path).count());
}

void allIcons(benchmark::State &state)
{
    const int wanted = static_cast<int>(state.range(1));
    int read = 0;
    for (auto _ : state) {
        const ProgramIcons icons(subject(state).path);
        read = 0;
        for (int i = 0; i < icons.count(); ++i)
            read += icons.icon(i, wanted).isNull() ? 0 : 1;
    }
    state.counters["icons"] = read;
}

QByteArray buttonPicture()
{
    QImage image(18, 18, QImage::Format_RGB32);
    image.fill(QColor(10, 20, 30));
    return Picture::encodeBitmap(image);
}

void toolkitBitmaps(benchmark::State &state)
{
    const QByteArray bytes = buttonPicture();
    for (auto _ : state) {
        for (int i = 0; i < state.range(0); ++i)
            benchmark::DoNotOptimize(QImage::fromData(bytes, "bmp"));
    }
}

void bitmaps(benchmark::State &state)
{
    const QByteArray bytes = buttonPicture();
    for (auto _ : state) {
        qint64 memoryLeft = qint64(1) << 30;
        for (int i = 0; i < state.range(0); ++i)
            benchmark::DoNotOptimize(Picture::decode(bytes, memoryLeft));
    }
}

/// Prints as usual, and keeps the times for the ratios.
class Reporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median")
                continue;
            m_times[run.run_name.function_name + '/' + run.run_name.args] =
                run.GetAdjustedRealTime();
        }
    }
    double ratio(const std::string &a, const std::string &b) const
    {
        return m_times.at(a) / m_times.at(b);
    }

private:
    std::map<std::string, double> m_times;
};

} // namespace

/// `bench_icons [FILE...]`: generated libraries of 100 and 1,000 icons, and real ones.
int main(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    const QGuiApplication application(argc, argv);
    const QTemporaryDir folder;
    for (const quint16 icons : {100, 1000}) {
        const QString path = folder.filePath(QString::number(icons));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(library(icons)) < 0)
            return 1;
        subjects().push_back({"generated, " + std::to_string(icons) + " icons", path});
    }
    for (int i = 1; i < argc; ++i)
        subjects().push_back({argv[i], QString::fromLocal8Bit(argv[i])});
    const auto unit = benchmark::kMicrosecond;
    for (std::size_t i = 0; i < subjects().size(); ++i) {
        const auto n = static_cast<std::int64_t>(i);
        benchmark::RegisterBenchmark("plainRead", plainRead)->Arg(n)->Unit(unit);
        benchmark::RegisterBenchmark("count", count)->Arg(n)->Unit(unit);
        benchmark::RegisterBenchmark("allIcons", allIcons)
            ->Args({n, 18})
            ->Args({n, 32})
            ->Unit(unit);
    }
    for (const int n : {1000, 10000}) {
        benchmark::RegisterBenchmark("toolkitBitmaps", toolkitBitmaps)->Arg(n)->Unit(unit);
        benchmark::RegisterBenchmark("bitmaps", bitmaps)->Arg(n)->Unit(unit);
    }
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    std::printf("\nRatios to the plain read of the file\n");
    for (std::size_t i = 0; i < subjects().size(); ++i) {
        const std::string n = std::to_string(i);
        const std::string floor = "plainRead/" + n;
        std::printf("%-60s count %.4f, all at 18 pixels %.2f, at 32 %.2f\n",
            subjects()[i].name.c_str(), reporter.ratio("count/" + n, floor),
            reporter.ratio("allIcons/" + n + "/18", floor),
            reporter.ratio("allIcons/" + n + "/32", floor));
    }
    for (const char *n : {"1000", "10000"}) {
        std::printf("%s button pictures: %.2f of the toolkit's reader\n", n,
            reporter.ratio(std::string("bitmaps/") + n, std::string("toolkitBitmaps/") + n));
    }
    std::printf("ten times the icons: count %.1f, all at 32 pixels %.1f times as long\n",
        reporter.ratio("count/1", "count/0"), reporter.ratio("allIcons/1/32", "allIcons/0/32"));
    return 0;
}
