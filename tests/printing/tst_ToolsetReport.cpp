#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "model/VbEvents.h"
#include "platform/print/PageDocument.h"
#include "printing/ToolsetReport.h"
#include "support/PrintedPages.h"
#include "support/TestRunner.h"

#include <QTemporaryDir>
#include <QTest>

using PrintedPages::linesOf;

/// The report as lines of text with their columns.
class ToolsetReport_test : public QObject
{
    Q_OBJECT

    QTemporaryDir folder;
    ToolSetStorage storage {1252, folder.path(), folder.path()};
    PageDocument page;

    /// The body of the only page of a report of one tool, below the name's line.
    QStringList report(const CVBATool &tool);

private Q_SLOTS:
    void emptySet();
    void wholeTool();
    void lines_data();
    void lines();
    void events_data();
    void events();
    void pageBreaks();
    void longNamesAndFileNames();
    void givenUp();
};

QStringList ToolsetReport_test::report(const CVBATool &tool)
{
    CVBATools set(storage);
    auto added = std::make_shared<CVBATool>(tool);
    added->Description = u"Name"_qs;
    if (!set.Add(added))
        return {u"not added"_qs};
    page.StartDoc(Paper {});
    ToolsetReport::write(page, set, u"x.bmt"_qs);
    QStringList found;
    for (const QString &line : linesOf(page, 1)) {
        if (!line.contains(u"@1 "_qs) && !line.contains(u"@head"_qs) && !line.contains(u"@foot"_qs))
            found << line;
    }
    return found;
}

void ToolsetReport_test::emptySet()
{
    CVBATools set(storage);
    page.StartDoc(Paper {});
    QVERIFY(ToolsetReport::write(page, set, u"/sets/my.bmt"_qs));
    QCOMPARE(page.PageCount(), 1);
    const QStringList lines = linesOf(page, 1);
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines[0], u"1440@head File name: /sets/my.bmt"_qs);
    QVERIFY(lines[1].endsWith(u"@head Tool Set Report"_qs));
    QCOMPARE(lines[2], u"1440@foot VB Quillon"_qs);
    QVERIFY(lines[3].endsWith(u"@foot Page 1"_qs));
    const auto &header = std::get<PageDocument::Text>(page.steps(1).front());
    QVERIFY(page.fonts()[size_t(header.font)].bold());
}

void ToolsetReport_test::wholeTool()
{
    CVBATool tool;
    tool.Enabled = true;
    tool.FileName = u"C:\\A.EXE"_qs;
    tool.Picture = QImage(18, 18, QImage::Format_RGB32);
    tool.AccessOptions = 7;
    tool.Hotkey = u"Ctrl+A"_qs;
    tool.AppName32 = u"A.App"_qs;
    tool.CommandLine = u"/x %1"_qs;
    tool.VBEvents = VbEvents::bit(0) | VbEvents::bit(1) | VbEvents::bit(25);
    tool.HelpString = u"{\\rtf1{\\fonttbl{\\f0 Arial;}}\\f0\\fs20 Help}"_qs;
    CVBATools set(storage);
    for (const auto &name : {u"First"_qs, u"Second"_qs}) {
        auto added = std::make_shared<CVBATool>(tool);
        added->Description = name;
        QVERIFY(set.Add(added));
    }
    page.StartDoc(Paper {});
    ToolsetReport::write(page, set, QString());
    QStringList found = linesOf(page, 1);
    found.removeIf([](const QString &line) {
        return line.contains(u"@head"_qs) || line.contains(u"@foot"_qs);
    });
    const QStringList second = found.mid(found.size() / 2);
    found = found.mid(0, found.size() / 2);
    QCOMPARE(found,
        (QStringList {u"1440@1 [360 x 360]"_qs, u"2160@1 First"_qs, u"5760@1 C:\\A.EXE"_qs,
            u"2880@3 Tool type:"_qs, u"5760@3 Standard Exe"_qs, u"2880@4 Tool access:"_qs,
            u"5760@4 Toolbar, List, Use Ctrl+A for hot key"_qs, u"2880@5 OLE application name:"_qs,
            u"5760@5 A.App"_qs, u"2880@6 Command line arguments:"_qs, u"5760@6 /x %1"_qs,
            u"2880@7 File control events handled:"_qs, u"5760@7 AfterAddFile"_qs,
            u"5760@8 AfterChangeFileName"_qs, u"2880@9 Project events handled:"_qs,
            u"5760@9 ProjItemRenamed"_qs, u"2880@10 Tool Help:"_qs, u"5760@10 {Help}"_qs}));
    // One line of help and two blank ones lie between.
    QCOMPARE(second[0], u"1440@13 [360 x 360]"_qs);
    QCOMPARE(second[1], u"2160@13 Second"_qs);
}

void ToolsetReport_test::lines_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<int>("access");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("value");
    const auto none = QString();
    QTest::newRow("executable, in nothing") << 0 << true << 0 << u"Standard Exe"_qs << none;
    QTest::newRow("add-in, in the list") << 1 << true << 2 << u"Brelmark Exe"_qs << u"List"_qs;
    QTest::newRow("macro, hot key only")
        << 2 << true << 4 << u"Macro"_qs << u"Use F5 for hot key"_qs;
    QTest::newRow("help file, toolbar and hot key")
        << 3 << true << 5 << none << u"Toolbar, Use F5 for hot key"_qs;
    QTest::newRow("no kind, both") << -1 << true << 3 << none << u"Toolbar, List"_qs;
    QTest::newRow("separator, disabled") << 5 << false << 7 << none << u"Not enabled"_qs;
}

void ToolsetReport_test::lines()
{
    QFETCH(const int, kind);
    QFETCH(const bool, enabled);
    QFETCH(const int, access);
    QFETCH(const QString, type);
    QFETCH(const QString, value);
    CVBATool tool;
    tool.ToolType = static_cast<qint16>(kind);
    tool.Enabled = enabled;
    tool.AccessOptions = static_cast<qint16>(access);
    tool.Hotkey = u"F5"_qs;
    QStringList expected;
    int line = 3;
    if (!type.isEmpty())
        expected << u"2880@3 Tool type:"_qs << u"5760@%1 %2"_qs.arg(line++).arg(type);
    expected << u"2880@%1 Tool access:"_qs.arg(line);
    if (!value.isEmpty())
        expected << u"5760@%1 %2"_qs.arg(line).arg(value);
    ++line;
    expected << u"2880@%1 Tool Help:"_qs.arg(line);
    QStringList found = report(tool);
    // Right behind its label, unlike every other value.
    QCOMPARE(found.takeLast().section(u' ', 1), u"No help defined for this tool."_qs);
    const auto &last = std::get<PageDocument::Text>(*(page.steps(1).end() - 3));
    QCOMPARE(qRound(last.x),
        qRound(2880 + QFontMetricsF(page.fonts()[0]).horizontalAdvance(u"Tool Help:"_qs)));
    QCOMPARE(found, expected);
}

void ToolsetReport_test::events_data()
{
    QTest::addColumn<quint32>("mask");
    QTest::addColumn<QStringList>("headings");
    QTest::addColumn<int>("names");
    QTest::newRow("none") << 0u << QStringList() << 0;
    QTest::newRow("bits above") << 0xfc000000u << QStringList() << 0;
    QTest::newRow("last of a group")
        << 0x100u << QStringList {u"File control events handled:"_qs} << 1;
    QTest::newRow("all") << 0xffffffffu
                         << QStringList {u"File control events handled:"_qs,
                                u"Reference events handled:"_qs,
                                u"Selected control events handled:"_qs,
                                u"Control events handled:"_qs, u"Component events handled:"_qs,
                                u"Project events handled:"_qs}
                         << 26;
}

void ToolsetReport_test::events()
{
    QFETCH(const quint32, mask);
    QFETCH(const QStringList, headings);
    QFETCH(const int, names);
    page.StartDoc(Paper {});
    ToolsetReport::PrintToolEvents(static_cast<qint32>(mask), page);
    QStringList left;
    int right = 0;
    for (const QString &line : linesOf(page, 1)) {
        if (line.startsWith(u"2880@"_qs))
            left << line.section(u' ', 1);
        else if (line.startsWith(u"5760@%1 "_qs.arg(right)))
            ++right; // one a line
    }
    QCOMPARE(left, headings);
    QCOMPARE(right, names);
}

void ToolsetReport_test::pageBreaks()
{
    // Blocks of 7 lines: name, blank, access, help, two blank ones, and the type's.
    CVBATools set(storage);
    for (int i = 0; i < 20; ++i) {
        auto tool = std::make_shared<CVBATool>();
        tool->Description = u"T%1"_qs.arg(i);
        QVERIFY(set.Add(tool));
    }
    page.StartDoc(Paper {});
    ToolsetReport::write(page, set, QString());
    QStringList names;
    for (int i = 1; i <= page.PageCount(); ++i) {
        for (const QString &line : linesOf(page, i)) {
            if (line.startsWith(u"2160@"_qs))
                names << u"%1: %2"_qs.arg(i).arg(line);
        }
    }
    // 1 + 7 * 8 = 57 of 60 lines: the ninth block begins where 360 twips still fit, and runs over.
    QCOMPARE(names[8], u"1: 2160@57 T8"_qs);
    QCOMPARE(page.PageCount(), 3);
    QVERIFY2(names[9].startsWith(u"2: 2160@"_qs), qPrintable(names[9]));
    // A block that would begin lower than that starts the next page, at its top.
    CVBATool tool;
    page.StartDoc(Paper {});
    page.setCurrentY(16838 - 1440 - 359);
    page.setText(u"x"_qs);
    QCOMPARE(page.PageCount(), 1);
}

void ToolsetReport_test::longNamesAndFileNames()
{
    CVBATools set(storage);
    auto tool = std::make_shared<CVBATool>();
    tool->Description = u"A name that is longer than its column is wide"_qs;
    tool->FileName = u"location"_qs;
    QVERIFY(set.Add(tool));
    page.StartDoc(Paper {});
    ToolsetReport::write(page, set, u"/100%d|one.bmt"_qs);
    const QStringList lines = linesOf(page, 1);
    QVERIFY(lines.contains(u"5760@2 location"_qs)); // not on top of the name
    QVERIFY(lines.contains(u"1440@head File name: /100%d|one.bmt"_qs));
}

void ToolsetReport_test::givenUp()
{
    CVBATools set(storage);
    for (int i = 0; i < 5; ++i) {
        auto tool = std::make_shared<CVBATool>();
        tool->Description = QString::number(i);
        QVERIFY(set.Add(tool));
    }
    int told = 0;
    page.StartDoc(Paper {});
    QVERIFY(!ToolsetReport::write(page, set, QString(), [&told](int done) {
        told = done;
        return done < 3;
    }));
    QCOMPARE(told, 3);
}

TSM_TEST(ToolsetReport_test);
#include "tst_ToolsetReport.moc"
