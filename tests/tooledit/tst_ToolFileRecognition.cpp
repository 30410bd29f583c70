#include "model/CVBATool.h"
#include "support/Rows.h"
#include "support/TestRunner.h"
#include "tooledit/ToolFileRecognition.h"

#include <QTest>

class ToolFileRecognition_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void kinds_data()
    {
        // kind: -100: unknown
        columns<QString, int, int>();
        const int none = CVBATool::NoKind;
        const auto row = [](const char *file, int current, int kind) {
            QTest::addRow("%s, was %d", file, current)
                << QString::fromLatin1(file) << current << kind;
        };
        row("c:\\x\\TOOL.EXE", none, CVBATool::StandardExecutable);
        row("c:\\x\\TOOL.EXE", CVBATool::AddInExecutable, CVBATool::AddInExecutable);
        row("c:\\x\\TOOL.EXE", CVBATool::Macro, CVBATool::StandardExecutable);
        row("tool.Bat", CVBATool::AddInExecutable, CVBATool::StandardExecutable);
        row("/home/a b/tool.com", none, CVBATool::StandardExecutable);
        row("tool.dll", CVBATool::StandardExecutable, CVBATool::AddInExecutable);
        row("tool.bas", none, CVBATool::Macro);
        row("tool.bmm", none, CVBATool::Macro);
        row("tool.hlp", none, CVBATool::HelpFile);
        row("tool.txt", CVBATool::Separator, CVBATool::TextFile);
        row("tool.ini", none, CVBATool::TextFile);
        row(".exe", none, CVBATool::StandardExecutable);
        row("readme.doc", CVBATool::Macro, -100);
        row("tool.exe.gz", none, -100);
        row("toolexe", none, -100);
        row("exe", none, -100);
        row("", none, -100);
    }

    void kinds()
    {
        const auto [file, current, kind] = row<QString, int, int>();
        const auto found = ToolFileRecognition::kindOf(file, static_cast<qint16>(current));
        QCOMPARE(found ? int(*found) : -100, kind);
    }

    void locations_data()
    {
        columns<QString, QString, QString>();
        const auto row = [](const char *name, const char *path, const char *folder,
                             const char *location) {
            QTest::newRow(name) << QString::fromLatin1(path) << QString::fromLatin1(folder)
                                << QString::fromLatin1(location);
        };
        row("in the macro folder", "/opt/macros/a.bas", "/opt/macros", "a.bas");
        row("in other letter case", "C:\\Macros\\A.bas", "c:\\MACROS", "A.bas");
        row("with separators at the end", "C:\\Macros\\a.bas", "c:\\macros\\\\", "a.bas");
        row("in a folder below", "/opt/macros/b/a.bas", "/opt/macros", "/opt/macros/b/a.bas");
        row("in a folder of similar name", "/opt/macros2/a.bas", "/opt/macros",
            "/opt/macros2/a.bas");
        row("in the root", "/a.bas", "/", "a.bas");
        row("no macro folder", "/opt/a.bas", "", "/opt/a.bas");
    }

    void locations()
    {
        const auto [path, folder, expectedLocation] = row<QString, QString, QString>();
        QCOMPARE(ToolFileRecognition::locationOf(path, folder), expectedLocation);
    }

    void names_data()
    {
        rows<QString, QString>({
            {"capitals", u"C:\\Tools\\MYTOOL.EXE"_qs, u"Mytool.exe"_qs},
            {"small letters", u"/usr/bin/my tool.bat"_qs, u"My tool.bat"_qs},
            {"a bare name", u"x"_qs, u"X"_qs},
            {"nothing", QString(), QString()},
        });
    }

    void names()
    {
        const auto [path, expectedName] = row<QString, QString>();
        QCOMPARE(ToolFileRecognition::nameOf(path), expectedName);
    }

    void replaceable_data()
    {
        const QString path = u"C:\\Tools\\MYTOOL.EXE"_qs;
        rows<QString, QString, bool>({
            {"a default name", u"Tool(3)"_qs, path, true},
            {"... of two digits", u"Tool(12)"_qs, path, true},
            {"... made unique", u"Tool(3)(1)"_qs, path, true},
            {"... in other letters", u"tool(3)"_qs, path, false},
            {"no digit", u"Tool()"_qs, path, false},
            {"a letter", u"Tool(a1)"_qs, path, false},
            {"text behind it", u"Tool(3) old"_qs, path, false},
            {"the former file's name", u"Mytool.exe"_qs, path, true},
            {"... in other letters, so the user's", u"MyTool.exe"_qs, path, false},
            {"the user's own", u"Editor"_qs, path, false},
            {"nothing yet", QString(), QString(), true},
        });
    }

    void replaceable()
    {
        const auto [description, location, expected] = row<QString, QString, bool>();
        QCOMPARE(ToolFileRecognition::isReplaceable(description, location), expected);
    }
};

TSM_TEST(ToolFileRecognition_test);
#include "tst_ToolFileRecognition.moc"
