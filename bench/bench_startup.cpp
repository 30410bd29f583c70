// From the start of the program's process to its first painted frame, beside a bare window and
// beside one with text.

#include "support/Ratios.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <chrono>

namespace {

struct Start
{
    double real = -1; ///< Milliseconds.
    double cpu = -1;
};

Start startOnce(const QString &program, const QStringList &arguments = {})
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const auto before = std::chrono::steady_clock::now().time_since_epoch();
    process.start(QCoreApplication::applicationDirPath() + u'/' + program, arguments);
    if (!process.waitForFinished(10000) || process.exitCode() != 0)
        return {};
    const QList<QByteArray> words = process.readAllStandardOutput().simplified().split(' ');
    if (words.size() != 2)
        return {};
    using Milliseconds = std::chrono::duration<double, std::milli>;
    return {words[0].toDouble() - Milliseconds(before).count(), words[1].toDouble()};
}

template <double Start::*clock>
void measure(benchmark::State &state, const QString &program, const QStringList &arguments = {})
{
    for (auto _ : state) {
        const Start start = startOnce(program, arguments);
        if (start.real < 0)
            state.SkipWithError("the program did not come up");
        state.SetIterationTime(start.*clock / 1e3);
    }
}

template <double Start::*clock>
void program(benchmark::State &state)
{
    measure<clock>(state, QStringLiteral("startup_program"));
}

template <double Start::*clock>
void bareWindow(benchmark::State &state)
{
    measure<clock>(state, QStringLiteral("startup_bare_window"));
}

template <double Start::*clock>
void windowWithText(benchmark::State &state)
{
    measure<clock>(state, QStringLiteral("startup_bare_window"), {QStringLiteral("with text")});
}

/// Of a program that ends by itself.
template <const char *name>
void wholeRun(benchmark::State &state)
{
    for (auto _ : state) {
        QProcess process;
        const auto start = std::chrono::steady_clock::now();
        process.start(QCoreApplication::applicationDirPath() + u'/' + QLatin1StringView(name),
            {QStringLiteral("--version")});
        if (!process.waitForFinished(10000) || process.exitCode() != 0)
            state.SkipWithError("the program did not run");
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
}

constexpr char companion[] = "toolset";
constexpr char empty[] = "startup_empty";

} // namespace

int main(int argc, char *argv[])
{
    // Neither the user's settings nor a running program of theirs is to be met.
    // In memory, as the session's own folder is: the claim of the single instance is a file in it.
    const QString memory = QStringLiteral("/dev/shm");
    const QTemporaryDir home(
        (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + QStringLiteral("/XXXXXX"));
    for (const char *name :
        {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(name, QFile::encodeName(home.path()));
    // Without a session Qt would launch one, which costs as much as a small program's start.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    const QCoreApplication application(argc, argv);
    startOnce(QStringLiteral("startup_program")); // the first start ever makes its caches

    Ratios ratios({1}, 41, Ratios::Clock::Manual, 1);
    ratios.compare({"start-up", program<&Start::real>},
        {"bare window with an MDI area", bareWindow<&Start::real>}, 1.3);
    ratios.compare({"start-up, processor time", program<&Start::cpu>},
        {"bare window, processor time", bareWindow<&Start::cpu>}, 1.3);
    ratios.compare({"start-up", program<&Start::real>},
        {"the same with a menu and a status bar", windowWithText<&Start::real>});
    ratios.compare({"start-up, processor time", program<&Start::cpu>},
        {"the same with a menu and a status bar, processor time", windowWithText<&Start::cpu>});
    ratios.compare({"toolset --version", wholeRun<companion>},
        {"empty program that links QtCore and QtGui", wholeRun<empty>}, 1.5);
    return ratios.run(argc, argv);
}
