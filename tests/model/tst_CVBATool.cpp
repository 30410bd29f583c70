#include "model/CVBATool.h"
#include "support/TestRunner.h"

class CVBATool_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void location()
    {
        CVBATool tool;
        QCOMPARE(tool.Location(), QString());
        tool.setLocation(u"c:\\x.exe"_qs);
        QCOMPARE(tool.AppName(), u"c:\\x.exe"_qs);
        tool.FileName.clear();
        QCOMPARE(tool.Location(), u"c:\\x.exe"_qs);
        tool.FileName = u"c:\\y.exe"_qs;
        tool.setAppName(u"Server.Class"_qs);
        QCOMPARE(tool.Location(), u"c:\\y.exe"_qs);
    }

    void switches()
    {
        const std::tuple<int, void (CVBATool::*)(bool), bool, int> rows[] = {
            {31, &CVBATool::setIntoolBar, false, 30},
            {0, &CVBATool::setIntoolBar, true, 1},
            {0x7FFF, &CVBATool::setInList, false, 0x7FFD}, // the unknown bits stay
            {-32768, &CVBATool::setInList, true, -32766},
            {0, &CVBATool::setRunOutOfProcess, true, 16},
            {-1, &CVBATool::setRunOutOfProcess, false, -17},
        };
        for (const auto &[before, set, on, after] : rows) {
            CVBATool tool;
            tool.AccessOptions = static_cast<qint16>(before);
            (tool.*set)(on);
            QCOMPARE(int(tool.AccessOptions), after);
            const bool switches[] = {tool.IntoolBar(), tool.InList(), tool.UseHotKey(),
                tool.EnableVBEvents(), tool.RunOutOfProcess()};
            for (int bit = 0; bit < 5; ++bit)
                QCOMPARE(switches[bit], (after >> bit & 1) != 0);
        }
    }

    void truthValues()
    {
        VbBool value = VbBool::fromRaw(1);
        QVERIFY(value);
        QCOMPARE(value.raw(), qint16(1));
        value = true;
        QCOMPARE(value.raw(), qint16(-1));
        value = false;
        QCOMPARE(value.raw(), qint16(0));
    }
};

TSM_TEST(CVBATool_test);
#include "tst_CVBATool.moc"
