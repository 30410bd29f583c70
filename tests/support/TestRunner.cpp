#include "support/TestRunner.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

struct Registered
{
    const char *className;
    TestRegistration::Maker maker;
};

std::vector<Registered> &registered()
{
    static std::vector<Registered> classes;
    return classes;
}

/// No test sees the user's own settings, data or running program.
void isolate(const QTemporaryDir &home)
{
    for (const char *name :
        {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(name, QFile::encodeName(home.path()));
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

} // namespace

TestRegistration::TestRegistration(const char *className, Maker maker)
{
    registered().push_back({className, std::move(maker)});
}

int main(int argc, char *argv[])
{
    const QTemporaryDir home;
    isolate(home);
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("VB Quillon Tool Set Manager"));
    QStringList arguments = QCoreApplication::arguments();
    QString only;
    if (arguments.size() > 1 && !arguments.at(1).startsWith(u'-'))
        only = arguments.takeAt(1);
    int failures = 0;
    int run = 0;
    for (const Registered &entry : registered()) {
        if (!only.isEmpty() && only != QLatin1StringView(entry.className))
            continue;
        const std::unique_ptr<QObject> test(entry.maker());
        failures += QTest::qExec(test.get(), arguments);
        ++run;
    }
    if (run == 0) {
        std::fprintf(stderr, "no such test class\n");
        return 1;
    }
    return qMin(failures, 125);
}
