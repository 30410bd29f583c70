#include "support/PrintQueue.h"

#include "support/Files.h"

#include <QDir>
#include <QStandardPaths>
#include <QTest>

namespace {

constexpr char driver[] = "/usr/share/ppd/cupsfilters/Generic-PDF_Printer-PDF.ppd";

QString service()
{
    const QString found = QStandardPaths::findExecutable(QStringLiteral("cupsd"));
    return found.isEmpty()
        ? QStandardPaths::findExecutable(QStringLiteral("cupsd"), {QStringLiteral("/usr/sbin")})
        : found;
}

} // namespace

PrintQueue::~PrintQueue()
{
    m_service.terminate();
    m_service.waitForFinished();
}

QString PrintQueue::start()
{
    if (service().isEmpty())
        return QStringLiteral("no print service (cupsd) is installed");
    if (!QFile::exists(QLatin1StringView(driver)))
        return QStringLiteral("the printer description %1 is not installed")
            .arg(QLatin1StringView(driver));
    for (const char *name : {"spool", "cache", "state", "tmp"})
        QDir(m_folder.path()).mkdir(QLatin1StringView(name));
    // The service may run its filters as another user.
    QFile::setPermissions(m_folder.path(), QFile::Permissions(0x7755));

    const QByteArray folder = m_folder.path().toUtf8();
    Files::put(path("cupsd.conf"),
        "Listen " + folder
            + "/cups.sock\n"
              "DefaultAuthType None\nWebInterface No\nBrowsing No\nLogLevel warn\n"
              "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
              "<Location /admin>\nOrder allow,deny\nAllow all\n</Location>\n"
              "<Policy default>\n<Limit All>\nOrder deny,allow\n</Limit>\n</Policy>\n");
    QByteArray files = "FileDevice Yes\n";
    for (const auto &[key, name] : {std::pair("ServerRoot", ""), {"RequestRoot", "/spool"},
             {"CacheDir", "/cache"}, {"StateDir", "/state"}, {"TempDir", "/tmp"},
             {"AccessLog", "/access_log"}, {"ErrorLog", "/error_log"}, {"PageLog", "/page_log"}})
        files += QByteArray(key) + ' ' + folder + name + '\n';
    Files::put(path("cups-files.conf"), files);

    qputenv("CUPS_SERVER", folder + "/cups.sock");
    m_service.setStandardErrorFile(path("service_errors"));
    m_service.start(service(),
        {QStringLiteral("-f"), QStringLiteral("-c"), path("cupsd.conf"), QStringLiteral("-s"),
            path("cups-files.conf")});
    const bool listens = QTest::qWaitFor(
        [this] {
            return m_service.state() == QProcess::NotRunning || QFile::exists(path("cups.sock"));
        },
        20000);
    if (!listens || m_service.state() == QProcess::NotRunning)
        return QStringLiteral("the print service does not start: ")
            + QString::fromUtf8(Files::contentOf(path("service_errors")));
    const QStringList queue {QStringLiteral("-p"), QStringLiteral("FILEPDF"), QStringLiteral("-E"),
        QStringLiteral("-v"), QStringLiteral("file:") + path("print.pdf"), QStringLiteral("-P"),
        QLatin1StringView(driver)};
    if (!QTest::qWaitFor([&] { return run(QStringLiteral("lpadmin"), queue); }, 20000))
        return QStringLiteral("the print service takes no queue");
    run(QStringLiteral("lpadmin"), {QStringLiteral("-d"), QStringLiteral("FILEPDF")});
    return {};
}

QString PrintQueue::finishedFile()
{
    const bool done = QTest::qWaitFor(
        [this] {
            QProcess jobs;
            jobs.start(QStringLiteral("lpstat"),
                {QStringLiteral("-W"), QStringLiteral("not-completed"), QStringLiteral("-o")});
            return jobs.waitForFinished() && jobs.readAllStandardOutput().isEmpty()
                && QFile::exists(path("print.pdf"));
        },
        30000);
    return done ? path("print.pdf") : QString();
}

void PrintQueue::forgetFile()
{
    QFile::remove(path("print.pdf"));
}

void PrintQueue::removeQueue()
{
    run(QStringLiteral("lpadmin"), {QStringLiteral("-x"), QStringLiteral("FILEPDF")});
}

bool PrintQueue::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished() && process.exitCode() == 0;
}
