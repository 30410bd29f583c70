#include "platform/desktop/SingleInstance.h"
#include "support/TestRunner.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

class SingleInstance_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void secondOneIsToldTheFirstAsked();
    void nothingKeepsTheNextAway();
};

static const QString windowClass = u"TestForm"_qs;
static const QString caption = u"Test caption"_qs;

void SingleInstance_test::secondOneIsToldTheFirstAsked()
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
    for (const QFileInfo &socket : sockets) {
        QCOMPARE(socket.permissions()
                & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
            QFile::Permissions());
    }
}

void SingleInstance_test::nothingKeepsTheNextAway()
{
    {
        SingleInstance gone(windowClass, caption);
        QVERIFY(gone.claim());
    }
    SingleInstance next(windowClass, caption);
    QVERIFY(next.claim());
    SingleInstance second(windowClass, caption);
    QVERIFY(!second.claim());
    QVERIFY(second.askFirstToComeForward());
}

TSM_TEST(SingleInstance_test);
#include "tst_SingleInstance.moc"
