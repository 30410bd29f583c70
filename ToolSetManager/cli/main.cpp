#include "cli/Commands.h"
#include "platform/desktop/FrameIdentity.h"

#include <QFile>
#include <QGuiApplication>
#include <QStandardPaths>

#include <memory>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {

bool isTerminal([[maybe_unused]] int descriptor)
{
#ifdef Q_OS_UNIX
    return isatty(descriptor) != 0;
#else
    return false;
#endif
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QFile::decodeName(argv[i]));
    // What the toolkit has to say is not about the user's files.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    std::unique_ptr<QCoreApplication> application;
    if (Cli::needsFonts(arguments)) {
        qputenv("QT_QPA_PLATFORM", "offscreen"); // pages are laid out, nothing is shown
        application = std::make_unique<QGuiApplication>(argc, argv);
    } else {
        application = std::make_unique<QCoreApplication>(argc, argv);
    }
    // The backups are those of the window.
    QCoreApplication::setApplicationName(QString::fromUtf16(FrameIdentity::caption));
    QFile in;
    QFile out;
    QFile err;
    in.open(0, QIODevice::ReadOnly | QIODevice::Unbuffered);
    out.open(1, QIODevice::WriteOnly | QIODevice::Unbuffered);
    err.open(2, QIODevice::WriteOnly | QIODevice::Unbuffered);
    return Cli::run(arguments, {&in, &out, &err, isTerminal(1), isTerminal(2)},
        QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
}
