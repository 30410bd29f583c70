// The command line companion beside the work that each command cannot do without. The commands run
// in this process; only the start-up is that of processes.

#include "cli/Commands.h"
#include "cli/SetFile.h"
#include "model/ToolSetMerge.h"
#include "support/Ratios.h"
#include "support/SampleSet.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <chrono>

namespace {

SampleSet *samples = nullptr;

int countOf(const benchmark::State &state)
{
    return static_cast<int>(state.range(0));
}

template <class Work>
void timed(benchmark::State &state, Work work)
{
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        if (!work())
            state.SkipWithError("failed");
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
}

int run(const QStringList &arguments, QIODevice *out = nullptr)
{
    QBuffer in;
    in.open(QIODevice::ReadOnly);
    QBuffer sink;
    sink.open(QIODevice::WriteOnly);
    return Cli::run(arguments, {&in, out ? out : &sink, &sink}, QString());
}

std::unique_ptr<CVBATools> load(const QString &path)
{
    auto set = std::make_unique<CVBATools>(samples->storage());
    set->setAllowDupes(true);
    return set->Load(path) ? std::move(set) : nullptr;
}

/// Another set than file(): a hundredth of its tools is changed, moved or removed.
QString changedFile(int count)
{
    const QString path = samples->path(QStringLiteral("changed%1.bmt").arg(count));
    if (QFile::exists(path))
        return path;
    auto set = load(samples->file(count));
    QBuffer in;
    in.open(QIODevice::ReadOnly);
    QBuffer err;
    err.open(QIODevice::WriteOnly);
    Session session({&in, &err, &err}, 1252, QString());
    QStringList names;
    int at = 0;
    for (const ToolPtr &tool : *set) {
        if (++at % 100 == 0)
            tool->CommandLine += QStringLiteral(" changed");
        if (at % 300 == 0)
            continue;
        if (at % 200 == 0)
            names.prepend(tool->Description);
        else
            names.append(tool->Description);
    }
    SetFile::write(session, *set, names, path);
    return path;
}

// --- list ---

void list(benchmark::State &state)
{
    const QString path = samples->file(countOf(state));
    timed(state, [&] { return run({QStringLiteral("list"), path}) == 0; });
}

template <int times>
void bareLoad(benchmark::State &state)
{
    const QString path = samples->file(countOf(state));
    timed(state, [&] {
        bool ok = true;
        for (int i = 0; i < times; ++i)
            ok = load(path) != nullptr && ok;
        return ok;
    });
}

// --- unpack and pack ---

QString unpacked(int count)
{
    const QString folder = samples->path(QStringLiteral("unpacked%1").arg(count));
    if (!QFile::exists(folder))
        run({QStringLiteral("unpack"), samples->file(count), folder});
    return folder;
}

void unpack(benchmark::State &state)
{
    const QString path = samples->file(countOf(state));
    const QString folder = samples->path(QStringLiteral("fresh"));
    for (auto _ : state) {
        QDir(folder).removeRecursively();
        const auto start = std::chrono::steady_clock::now();
        if (run({QStringLiteral("unpack"), path, folder}) != 0)
            state.SkipWithError("not unpacked");
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
}

struct Content
{
    QString path; ///< Relative.
    QByteArray bytes;
};

std::vector<Content> contentsOf(const QString &folder)
{
    std::vector<Content> all;
    QDirIterator walk(folder, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        QFile file(walk.next());
        if (file.open(QIODevice::ReadOnly))
            all.push_back({QDir(folder).relativeFilePath(file.fileName()), file.readAll()});
    }
    return all;
}

void writeSame(benchmark::State &state)
{
    const std::vector<Content> contents = contentsOf(unpacked(countOf(state)));
    const QString folder = samples->path(QStringLiteral("fresh"));
    for (auto _ : state) {
        QDir(folder).removeRecursively();
        const auto start = std::chrono::steady_clock::now();
        QDir().mkpath(folder);
        for (const Content &content : contents) {
            const QString path = folder + u'/' + content.path;
            if (content.path.contains(u'/'))
                QDir().mkdir(path.left(path.lastIndexOf(u'/')));
            QFile file(path);
            if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
                || file.write(content.bytes) != content.bytes.size())
                state.SkipWithError("not written");
        }
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
}

void pack(benchmark::State &state)
{
    const QString folder = unpacked(countOf(state));
    const QString path = samples->path(QStringLiteral("packed.bmt"));
    timed(state, [&] {
        QFile::remove(path);
        return run({QStringLiteral("pack"), folder, path}) == 0;
    });
}

/// The files of the folder read, and a file of the set's size written.
void readSame(benchmark::State &state)
{
    const QString folder = unpacked(countOf(state));
    const std::vector<Content> contents = contentsOf(folder);
    QFile whole(samples->file(countOf(state)));
    const QByteArray bytes = whole.open(QIODevice::ReadOnly) ? whole.readAll() : QByteArray();
    timed(state, [&] {
        bool ok = true;
        for (const Content &content : contents) {
            QFile file(folder + u'/' + content.path);
            ok = file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)
                && file.readAll().size() == content.bytes.size() && ok;
        }
        QFile out(samples->path(QStringLiteral("plain.bmt")));
        return out.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
            && out.write(bytes) == bytes.size() && ok;
    });
}

// --- diff and merge ---

void diff(benchmark::State &state)
{
    const QString left = samples->file(countOf(state));
    const QString right = changedFile(countOf(state));
    timed(state, [&] { return run({QStringLiteral("diff"), left, right}) == 1; });
}

void merge(benchmark::State &state)
{
    const QString base = samples->file(countOf(state));
    const QString side = changedFile(countOf(state));
    const QString out = samples->path(QStringLiteral("merged.bmt"));
    timed(state, [&] {
        QFile::remove(out);
        return run({QStringLiteral("merge"), base, side, base, QStringLiteral("-o"), out}) == 0;
    });
}

void mergeAlone(benchmark::State &state)
{
    const auto base = load(samples->file(countOf(state)));
    const auto side = load(changedFile(countOf(state)));
    timed(state, [&] {
        const ToolSetMerge merged(
            SetFile::stateOf(*base), SetFile::stateOf(*side), SetFile::stateOf(*base));
        return merged.conflicts().empty();
    });
}

// --- Start-up ---

template <const char *program>
void start(benchmark::State &state)
{
    timed(state, [&] {
        QProcess process;
        process.start(QCoreApplication::applicationDirPath() + u'/' + QLatin1StringView(program),
            {QStringLiteral("list"), samples->file(1)});
        return process.waitForFinished(10000) && process.exitCode() == 0;
    });
}

constexpr char toolset[] = "toolset";
constexpr char empty[] = "startup_empty";

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    // Twenty thousand files in a run: the disk's own times would hide the program's.
    if (QFileInfo(QStringLiteral("/dev/shm")).isWritable())
        qputenv("TMPDIR", "/dev/shm");
    SampleSet set;
    samples = &set;
    Ratios ratios({1000, 10000}, 7, Ratios::Clock::Manual, 1);
    ratios.compare({"list", list}, {"bare load", bareLoad<1>}, 1.3);
    ratios.compare({"unpack", unpack}, {"plain write of the same files", writeSame}, 1.5);
    ratios.compare({"pack", pack}, {"plain read of the same files + plain write", readSame}, 1.5);
    ratios.compare({"diff, with its two loads", diff}, {"three bare loads", bareLoad<3>}, 1);
    ratios.compare({"merge of loaded sets", mergeAlone}, {"three bare loads", bareLoad<3>}, 1);
    ratios.compare(
        {"merge, with its three loads and its save", merge}, {"three bare loads", bareLoad<3>});
    ratios.compare({"start-up (list of one tool)", start<toolset>},
        {"empty program that links QtCore and QtGui", start<empty>}, 1.5);
    return ratios.run(argc, argv);
}
