#include "platform/desktop/InstanceRequest.h"
#include "platform/desktop/SafeFiles.h"
#include "platform/desktop/SingleInstance.h"
#include "support/Files.h"
#include "support/TestRunner.h"

#include <QSignalSpy>

static const QString windowClass = u"TestForm"_qs;
static const QString caption = u"Test caption"_qs;

class SingleInstance_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void secondOneIsToldTheFirstAsked()
    {
        SingleInstance first(windowClass, caption);
        QVERIFY(first.claim());
        SingleInstance other(windowClass, u"Another caption"_qs);
        QVERIFY(other.claim());
        SingleInstance second(windowClass, caption);
        QVERIFY(!second.claim());
        QSignalSpy asked(&first, &SingleInstance::comeForward);
        QSignalSpy otherAsked(&other, &SingleInstance::comeForward);
        QVERIFY(second.askFirstToComeForward());
        QTRY_COMPARE(asked.size(), 1);
        QCOMPARE(otherAsked.size(), 0);

        const QDir folder(qEnvironmentVariable("XDG_RUNTIME_DIR"));
        const auto sockets = folder.entryInfoList({windowClass + u"*.sock"_qs}, QDir::System);
        QCOMPARE(sockets.size(), 2);
        for (const QFileInfo &socket : sockets)
            QVERIFY(Files::ofTheUserAlone(socket.filePath()));
    }

    void nothingKeepsTheNextAway()
    {
        QVERIFY(SingleInstance(windowClass, caption).claim());
        SingleInstance next(windowClass, caption);
        QVERIFY(next.claim());
        SingleInstance second(windowClass, caption);
        QVERIFY(!second.claim());
        QVERIFY(second.askFirstToComeForward());
    }

    /// A socket's own address has room for about a hundred bytes.
    void inADeepFolder()
    {
        const QTemporaryDir folder;
        const QString deep = folder.filePath(QString(150, u'd'));
        QVERIFY(QDir().mkdir(deep));
        QVERIFY(QFile::setPermissions(deep, SafeFiles::folderPermissions));
        const QByteArray former = qgetenv("XDG_RUNTIME_DIR");
        const auto restore = qScopeGuard([&] { qputenv("XDG_RUNTIME_DIR", former); });
        qputenv("XDG_RUNTIME_DIR", deep.toUtf8());
        nothingKeepsTheNextAway();
        QCOMPARE(QDir(deep).entryList(QDir::Files | QDir::System), QStringList());
    }

    void filesToOpen()
    {
        const QTemporaryDir folder;
        const QString one = folder.filePath(u"One of Zoë.bmt"_qs);
        const QString two = folder.filePath(u"two.bmt"_qs);
        QVERIFY(Files::put(one, "1") && Files::put(two, "2"));
        const InstanceSocket sender(windowClass, caption);
        using Outcome = InstanceSocket::Outcome;
        QVERIFY(sender.send(InstanceRequest::open(one), 0) == Outcome::NobodyListens);
        SingleInstance first(windowClass, caption);
        QVERIFY(first.claim());
        QSignalSpy opened(&first, &SingleInstance::openRequested);
        QSignalSpy forward(&first, &SingleInstance::comeForward);
        // Nothing but whole requests for files that can be opened is heard.
        const QByteArray good = InstanceRequest::open(one);
        for (const QByteArray &bad :
            {InstanceRequest::open(folder.path()), InstanceRequest::open(u"two.bmt"_qs),
                InstanceRequest::open(folder.filePath(u"none.bmt"_qs)), InstanceRequest::open({}),
                InstanceRequest::open(u"/dev/null"_qs), QByteArray(good + '\0'), QByteArray("open"),
                QByteArray(), QByteArray(InstanceSocket::longestMessage, '/')}) {
            QVERIFY(sender.send(bad, 0) == Outcome::Sent);
        }
        QVERIFY(sender.send(good + QByteArray(InstanceSocket::longestMessage, 'x'), 0)
            == Outcome::Failed);
        QVERIFY(sender.send(good, 0) == Outcome::Sent);
        QVERIFY(sender.send(InstanceRequest::open(two), 0) == Outcome::Sent);
        QTRY_COMPARE(opened.size(), 2);
        QVERIFY(sender.send("open /caf\xE9.bmt", 0) == Outcome::Sent);
        QTRY_COMPARE(opened.size(), 3);
        QCOMPARE(opened.at(0).at(0).toString(), one);
        QCOMPARE(opened.at(1).at(0).toString(), two);
        QCOMPARE(opened.at(2).at(0).toString(), u"/caf\uFFFD.bmt"_qs);
        QVERIFY(!forward.isEmpty());
    }
};

TSM_TEST(SingleInstance_test);
#include "tst_SingleInstance.moc"
