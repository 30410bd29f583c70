#pragma once

#include <QDir>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// A print service of the test's own with one queue, "FILEPDF", which writes each job to a file.
/// It must be started before anything in the process asks for printers.
class PrintQueue
{
public:
    ~PrintQueue();

    /// Empty when it runs; else why it cannot.
    QString start();
    /// Waits until no job is left; the path of what the last one wrote.
    QString finishedFile();
    void forgetFile();
    void removeQueue();

private:
    QString path(const char *name) const { return m_folder.filePath(QLatin1StringView(name)); }
    static bool run(const QString &program, const QStringList &arguments);

    /// Without blanks, which the service's addresses cannot hold.
    QTemporaryDir m_folder {QDir::temp().filePath(u"queue-XXXXXX"_qs)};
    QProcess m_service;
};
