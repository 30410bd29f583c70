#include "load/Monkey.h"
#include "support/TestRunner.h"

#include <QApplication>
#include <QDesktopServices>
#include <QTemporaryDir>

/// Actions in a row that are random but for their seed. The environment sets MONKEY_SEED and
/// MONKEY_STEPS; MONKEY_TRACE prints each action.
class Monkey_test : public QObject
{
    Q_OBJECT
public Q_SLOTS:
    void openFile(const QUrl & /*url*/) { } ///< Instead of a program of the desktop.

private Q_SLOTS:
    void initTestCase() { QDesktopServices::setUrlHandler(u"file"_qs, this, "openFile"); }
    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(u"file"_qs); }

    void anything_data()
    {
        QTest::addColumn<quint32>("seed");
        bool set = false;
        const auto given = static_cast<quint32>(qEnvironmentVariableIntValue("MONKEY_SEED", &set));
        const QList<quint32> seeds = set ? QList<quint32> {given} : QList<quint32> {1, 2};
        for (const quint32 seed : seeds)
            QTest::addRow("seed %u", seed) << seed;
    }

    void anything()
    {
        QFETCH(quint32, seed);
        bool set = false;
        int steps = qEnvironmentVariableIntValue("MONKEY_STEPS", &set);
        steps = set ? steps : 500;
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        QGuiApplication::setQuitOnLastWindowClosed(false);
        const QTemporaryDir home;
        QRandomGenerator random(seed);
        {
            ToolSetStorage storage(1252, home.filePath(u"c"_qs), home.filePath(u"d"_qs));
            QVERIFY(Sets::put(home.filePath(u"0.bmt"_qs), u"abc"_qs, storage));
            QVERIFY(
                Sets::put(home.filePath(u"1.bmt"_qs), u"0123456789klmnopqrstuvwxyz"_qs, storage));
            QVERIFY(QFile::copy(QStringLiteral(TSM_SAMPLE), home.filePath(u"2.bmt"_qs)));
            for (const QString &name : {u"3.bmt"_qs, u"a program.exe"_qs}) {
                QFile file(home.filePath(name));
                QVERIFY(file.open(QIODevice::WriteOnly) && file.write("no tool set") > 0);
            }
        }
        while (steps > 0) { // the monkey may end the program, which is then started again
            Program program(home.path(), {Printers::pdfFile()});
            Monkey monkey(program, home.path(), random);
            steps = monkey.run(steps);
            const bool failed = !monkey.fault().isEmpty() || QTest::currentTestFailed();
            QVERIFY2(!failed,
                qPrintable(u"seed %1: %2\n%3"_qs.arg(seed).arg(
                    monkey.fault(), monkey.trace().join(u'\n'))));
        }
    }
};

TSM_TEST(Monkey_test);
#include "tst_Monkey.moc"
