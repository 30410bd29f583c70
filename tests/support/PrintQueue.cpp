#include "support/PrintQueue.h"

#include "support/Files.h"

#include <QStandardPaths>
#include <QTest>

namespace {

constexpr char driver[] = "/usr/share/ppd/cupsfilters/Generic-PDF_Printer-PDF.ppd";

QString service()
{
    const QString found = QStandardPaths::findExecutable(u"cupsd"_qs);
    return found.isEmpty() ? QStandardPaths::findExecutable(u"cupsd"_qs, {u"/usr/sbin"_qs}) : found;
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
        return u"no print service (cupsd) is installed"_qs;
    if (!QFile::exists(QLatin1StringView(driver)))
        return u"the printer description %1 is not installed"_qs.arg(QLatin1StringView(driver));
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
    m_service.start(
        service(), {u"-f"_qs, u"-c"_qs, path("cupsd.conf"), u"-s"_qs, path("cups-files.conf")});
    const bool listens = QTest::qWaitFor(
        [this] {
            return m_service.state() == QProcess::NotRunning || QFile::exists(path("cups.sock"));
        },
        20000);
    if (!listens || m_service.state() == QProcess::NotRunning)
        return u"the print service does not start: "_qs
            + QString::fromUtf8(Files::contentOf(path("service_errors")));
    const QStringList queue {u"-p"_qs, u"FILEPDF"_qs, u"-E"_qs, u"-v"_qs,
        u"file:"_qs + path("print.pdf"), u"-P"_qs, QLatin1StringView(driver)};
    if (!QTest::qWaitFor([&] { return run(u"lpadmin"_qs, queue); }, 20000))
        return u"the print service takes no queue"_qs;
    run(u"lpadmin"_qs, {u"-d"_qs, u"FILEPDF"_qs});
    return {};
}

QString PrintQueue::finishedFile()
{
    const bool done = QTest::qWaitFor(
        [this] {
            QProcess jobs;
            jobs.start(u"lpstat"_qs, {u"-W"_qs, u"not-completed"_qs, u"-o"_qs});
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
    run(u"lpadmin"_qs, {u"-x"_qs, u"FILEPDF"_qs});
}

bool PrintQueue::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished() && process.exitCode() == 0;
}
