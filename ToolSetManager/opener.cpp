// The opener: what the desktop starts for a double click on tool set files. It hands the paths to
// the running frame, which opens them as if the user had asked there, or starts the program first.
// The program itself opens nothing when it is started a second time.
//
//     ToolSetManager-open [FILE...]

#include "platform/desktop/FileNames.h"
#include "platform/desktop/FrameIdentity.h"
#include "platform/desktop/InformationOptions.h"
#include "platform/desktop/InstanceRequest.h"
#include "platform/desktop/InstanceSocket.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include <cstdio>

namespace {

constexpr char usage[] =
    R"(Usage: ToolSetManager-open [FILE...]
Opens tool sets (*.bmt) in the window of the Tool Set Manager, which is started when it does not run.

  --help     prints this text
  --version  prints the version)";

constexpr int busyMs = 3000;
constexpr int startMs = 15000; // the first start after the system's own, from a slow disk

void complain(const QString &text)
{
    std::fputs(qPrintable(QStringLiteral("ToolSetManager-open: %1\n").arg(text)), stderr);
}

/// All files that go to the frame are absolute: its folder is another one.
QString fileToOpen(const QString &argument)
{
    const QFileInfo file(argument);
    // The program's window explains why a name that is not UTF-8 cannot be opened.
    if (!file.isFile() && !FileNames::isUnreadable(argument)) {
        complain(QStringLiteral("there is no file \"%1\"").arg(argument));
        return {};
    }
    return file.absoluteFilePath();
}

bool startProgram()
{
    const QString program =
        QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("ToolSetManager"));
    if (QProcess::startDetached(program, {}, QDir::homePath()))
        return true;
    complain(QStringLiteral("cannot start \"%1\"").arg(program));
    return false;
}

} // namespace

int main(int argc, char *argv[])
{
    if (InformationOptions::answered(argc, argv, usage))
        return 0;
    const QCoreApplication application(argc, argv);
    QList<QByteArray> requests;
    bool ok = true;
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    for (const QString &argument : arguments) {
        const QString path = fileToOpen(argument);
        if (path.isEmpty())
            ok = false;
        else
            requests.append(InstanceRequest::open(path));
    }
    if (!ok && requests.isEmpty())
        return 1;
    if (requests.isEmpty())
        requests.append(InstanceRequest::comeForward());

    const InstanceSocket frame(
        QString::fromUtf16(FrameIdentity::windowClass), QString::fromUtf16(FrameIdentity::caption));
    using Outcome = InstanceSocket::Outcome;
    Outcome outcome = frame.send(requests.constFirst(), busyMs);
    if (outcome == Outcome::NobodyListens) {
        // The files go by the socket all the same: of two openers that come here together each
        // starts the program, and only one of these stays and would know its command line.
        if (!startProgram())
            return 1;
        outcome = frame.sendWhenReady(requests.constFirst(), startMs);
    }
    for (qsizetype i = 1; i < requests.size() && outcome == Outcome::Sent; ++i)
        outcome = frame.send(requests[i], busyMs);
    if (outcome != Outcome::Sent) {
        complain(QStringLiteral("the Tool Set Manager does not answer"));
        return 1;
    }
    return ok ? 0 : 1;
}
