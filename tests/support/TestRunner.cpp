#include "support/TestRunner.h"

#include <QApplication>
#include <QRegularExpression>
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
        {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(name, QFile::encodeName(home.path()));
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Nor the desktop's looks: theme packages that are merely installed bring styles, which come
    // first where no style is chosen. Programs that a test starts have the same ones.
    for (const char *name : {"QT_QPA_PLATFORMTHEME", "XDG_CURRENT_DESKTOP", "DESKTOP_SESSION",
             "KDE_FULL_SESSION", "GNOME_DESKTOP_SESSION_ID"})
        qunsetenv(name);
    qputenv("QT_STYLE_OVERRIDE", "Fusion");
}

QtMessageHandler &testHandler()
{
    static QtMessageHandler handler = nullptr;
    return handler;
}

/// A warning that no test has announced (QTest::ignoreMessage) fails the test in which it is
/// printed.
void failOnWarnings(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    // The offscreen platform has no window manager and tells so; a desktop has one.
    static const QRegularExpression told(
        u"^(?!This plugin does not support (propagateSizeHints|raise|grabbing))"_qs);
    if (type == QtWarningMsg)
        QTest::failOnWarning(told); // Qt forgets it at the end of each function
    else if (type == QtCriticalMsg)
        QTest::qFail(qPrintable(text), __FILE__, __LINE__);
    testHandler()(type, context, text);
}

int runTests(QObject &test, const QStringList &arguments)
{
    std::vector<QByteArray> texts;
    std::vector<char *> pointers;
    for (const QString &argument : arguments)
        texts.push_back(argument.toLocal8Bit());
    for (QByteArray &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    QTest::qInit(&test, static_cast<int>(texts.size()), pointers.data());
    testHandler() = qInstallMessageHandler(failOnWarnings);
    const int failures = QTest::qRun();
    qInstallMessageHandler(testHandler());
    QTest::qCleanup();
    return failures;
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
    QApplication::setFont(QFont(u"DejaVu Sans"_qs, 9));
    QCoreApplication::setApplicationName(u"VB Quillon Tool Set Manager"_qs);
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
        failures += runTests(*test, arguments);
        ++run;
    }
    if (run == 0) {
        std::fprintf(stderr, "no such test class\n");
        return 1;
    }
    return qMin(failures, 125);
}
