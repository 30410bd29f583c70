#include "model/CVBATool.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

#include <QTest>

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

    void switches_data()
    {
        rows<int, int, bool, int>({
            {"toolbar off", 31, 1, false, 30},
            {"toolbar on", 0, 1, true, 1},
            {"list off leaves the unknown bits", 0x7FFF, 2, false, 0x7FFD},
            {"list on leaves the sign bit", -32768, 2, true, -32766},
            {"out of process on", 0, 16, true, 16},
            {"out of process off", -1, 16, false, -17},
        });
    }

    void switches()
    {
        const auto [before, which, on, after] = row<int, int, bool, int>();
        CVBATool tool;
        tool.AccessOptions = static_cast<qint16>(before);
        if (which == 1)
            tool.setIntoolBar(on);
        else if (which == 2)
            tool.setInList(on);
        else
            tool.setRunOutOfProcess(on);
        QCOMPARE(int(tool.AccessOptions), after);
        QCOMPARE(tool.IntoolBar(), (after & 1) != 0);
        QCOMPARE(tool.InList(), (after & 2) != 0);
        QCOMPARE(tool.UseHotKey(), (after & 4) != 0);
        QCOMPARE(tool.EnableVBEvents(), (after & 8) != 0);
        QCOMPARE(tool.RunOutOfProcess(), (after & 16) != 0);
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
