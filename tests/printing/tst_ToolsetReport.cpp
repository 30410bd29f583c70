#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "model/VbEvents.h"
#include "platform/print/PageDocument.h"
#include "printing/CheckReport.h"
#include "report/ToolsetReport.h"
#include "support/PrintedPages.h"
#include "support/TestRunner.h"

#include <QTemporaryDir>

using PrintedPages::linesOf;

/// The report as lines of text with their columns.
class ToolsetReport_test : public QObject
{
    Q_OBJECT

    QTemporaryDir folder;
    ToolSetStorage storage {1252, folder.path(), folder.path()};
    PageDocument page;

    static ToolPtr add(CVBATools &set, const QString &name, const CVBATool &tool = CVBATool())
    {
        const auto added = std::make_shared<CVBATool>(tool);
        added->Description = name;
        return set.Add(added) ? added : nullptr;
    }
    /// The lines of the body of the first page.
    QStringList body(const CVBATools &set)
    {
        page.StartDoc(Paper {});
        ToolsetReport::write(page, set, u"x.bmt"_qs);
        QStringList lines = linesOf(page, 1);
        lines.removeIf([](const QString &line) {
            return line.contains(u"@head"_qs) || line.contains(u"@foot"_qs);
        });
        return lines;
    }

private Q_SLOTS:
    void emptySet()
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

    void findings()
    {
        const auto tool = std::make_shared<CVBATool>();
        tool->Description = u"Paint"_qs;
        const auto finding = [](ToolFinding::Severity severity, const QString &what) {
            return ToolFinding {
                severity, ToolFinding::Problem::FileMissing, "location", what, u"Do it."_qs};
        };
        page.StartDoc(Paper {});
        QVERIFY(CheckReport::write(page,
            {{tool, 2, finding(ToolFinding::Severity::Warning, u"It is gone."_qs)},
                {tool, 2, finding(ToolFinding::Severity::Note, u"Who knows."_qs)}},
            u"x.bmt"_qs));
        QCOMPARE(linesOf(page, 1).filter(QRegularExpression(u"@\\d"_qs)),
            (QStringList {u"1440@1 Found: 1 warning, 1 not checked."_qs, u"1440@3 002  Paint"_qs,
                u"1800@4 Warning "_qs, u"3240@4 It is gone. Do it."_qs, u"1800@5 Not checked "_qs,
                u"3240@5 Who knows. Do it."_qs}));
    }

    void wholeTool()
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
        for (const QString &name : {u"First"_qs, u"Second"_qs})
            QVERIFY(add(set, name, tool));
        const QStringList lines = body(set);
        QCOMPARE(lines.first(lines.size() / 2),
            (QStringList {u"1440@1 [360 x 360]"_qs, u"2160@1 First"_qs, u"5760@1 C:\\A.EXE"_qs,
                u"2880@3 Tool type:"_qs, u"5760@3 Standard Exe"_qs, u"2880@4 Tool access:"_qs,
                u"5760@4 Toolbar, List, Use Ctrl+A for hot key"_qs,
                u"2880@5 OLE application name:"_qs, u"5760@5 A.App"_qs,
                u"2880@6 Command line arguments:"_qs, u"5760@6 /x %1"_qs,
                u"2880@7 File control events handled:"_qs, u"5760@7 AfterAddFile"_qs,
                u"5760@8 AfterChangeFileName"_qs, u"2880@9 Project events handled:"_qs,
                u"5760@9 ProjItemRenamed"_qs, u"2880@10 Tool Help:"_qs, u"5760@10 {Help}"_qs}));
        // One line of help and two blank ones lie between.
        QCOMPARE(lines.mid(lines.size() / 2, 2),
            (QStringList {u"1440@13 [360 x 360]"_qs, u"2160@13 Second"_qs}));
    }

    /// The second column stands below the first, and nothing over anything.
    void narrowPaper()
    {
        CVBATool tool;
        tool.FileName = u"C:\\A.EXE"_qs;
        tool.VBEvents = VbEvents::bit(0) | VbEvents::bit(1);
        tool.HelpString = u"{\\rtf1 Help}"_qs;
        CVBATools set(storage);
        QVERIFY(add(set, u"Name"_qs, tool));
        page.StartDoc(Paper {QSize(5953, 8391), {}});
        ToolsetReport::write(page, set, u"x.bmt"_qs);
        QStringList lines = linesOf(page, 1);
        lines.removeIf([](const QString &line) { return line.contains(u"@head"_qs); });
        QCOMPARE(lines.mid(1, 5),
            (QStringList {u"2880@2 C:\\A.EXE"_qs, u"2880@4 Tool type:"_qs,
                u"2880@5 Standard Exe"_qs, u"2880@6 Tool access:"_qs, u"2880@7 Not enabled"_qs}));
        QSet<QString> places;
        for (const QString &line : lines)
            places.insert(line.section(u' ', 0, 0).section(u'@', 1));
        QCOMPARE(places.size(), lines.size() - 1); // but for the footer's two parts
        QVERIFY(lines.filter(u"{Help}"_qs).value(0).startsWith(u"2880@"_qs));
    }

    void kindAndAccess()
    {
        const std::tuple<int, bool, int, QString, QString> rows[] = {
            {0, true, 0, u"Standard Exe"_qs, QString()},
            {1, true, 2, u"Brelmark Exe"_qs, u"List"_qs},
            {2, true, 4, u"Macro"_qs, u"Use F5 for hot key"_qs},
            {3, true, 5, QString(), u"Toolbar, Use F5 for hot key"_qs},
            {-1, true, 3, QString(), u"Toolbar, List"_qs},
            {5, false, 7, QString(), u"Not enabled"_qs},
        };
        for (const auto &[kind, enabled, access, type, value] : rows) {
            CVBATool tool;
            tool.ToolType = static_cast<qint16>(kind);
            tool.Enabled = enabled;
            tool.AccessOptions = static_cast<qint16>(access);
            tool.Hotkey = u"F5"_qs;
            CVBATools set(storage);
            QVERIFY(add(set, u"Name"_qs, tool));
            QStringList found = body(set);
            found.removeIf([](const QString &each) { return each.contains(u"@1 "); });
            QStringList expected;
            int line = 3;
            if (!type.isEmpty())
                expected << u"2880@3 Tool type:"_qs << u"5760@%1 %2"_qs.arg(line++).arg(type);
            expected << u"2880@%1 Tool access:"_qs.arg(line);
            if (!value.isEmpty())
                expected << u"5760@%1 %2"_qs.arg(line).arg(value);
            // Right behind its label, unlike every other value.
            const int behind =
                qRound(2880 + QFontMetricsF(page.fonts()[0]).horizontalAdvance(u"Tool Help:"_qs));
            ++line;
            expected << u"2880@%1 Tool Help:"_qs.arg(line)
                     << u"%1@%2 No help defined for this tool."_qs.arg(behind).arg(line);
            QCOMPARE(found, expected);
        }
    }

    void events()
    {
        const std::tuple<quint32, QString, int> rows[] = {
            {0, QString(), 0},
            {0xfc000000, QString(), 0},
            {0x100, u"File control"_qs, 1}, // the last of a group
            {0xffffffff, u"File control|Reference|Selected control|Control|Component|Project"_qs,
                26},
        };
        for (const auto &[mask, headings, names] : rows) {
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
            QCOMPARE(left.join(u'|').remove(u" events handled:"_qs), headings);
            QCOMPARE(right, names);
        }
    }

    void pageBreaks()
    {
        // Blocks of 7 lines: name, blank, access, help, two blank ones, and the type's.
        CVBATools set(storage);
        for (int i = 0; i < 20; ++i) {
            QVERIFY(add(set, u"T%1"_qs.arg(i)));
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
        // 1 + 7 * 8 = 57 of 60 lines: the ninth block begins where 360 twips still fit, and runs
        // over.
        QCOMPARE(names[8], u"1: 2160@57 T8"_qs);
        QCOMPARE(page.PageCount(), 3);
        QVERIFY2(names[9].startsWith(u"2: 2160@"_qs), qPrintable(names[9]));
        // A block that would begin lower than that starts the next page, at its top.
        page.StartDoc(Paper {});
        page.setCurrentY(16838 - 1440 - 359);
        page.setText(u"x"_qs);
        QCOMPARE(page.PageCount(), 1);
    }

    void longNamesAndFileNames()
    {
        CVBATools set(storage);
        add(set, u"A name that is longer than its column is wide"_qs)->FileName = u"location"_qs;
        page.StartDoc(Paper {});
        ToolsetReport::write(page, set, u"/100%d|one.bmt"_qs);
        const QStringList lines = linesOf(page, 1);
        QVERIFY(lines.contains(u"5760@2 location"_qs)); // not on top of the name
        QVERIFY(lines.contains(u"1440@head File name: /100%d|one.bmt"_qs));
    }

    void givenUp()
    {
        CVBATools set(storage);
        for (int i = 0; i < 5; ++i) {
            QVERIFY(add(set, QString::number(i)));
        }
        int told = 0;
        page.StartDoc(Paper {});
        QVERIFY(!ToolsetReport::write(page, set, QString(), [&told](int done) {
            told = done;
            return done < 3;
        }));
        QCOMPARE(told, 3);
    }
};

TSM_TEST(ToolsetReport_test);
#include "tst_ToolsetReport.moc"
