#include "model/CVBATool.h"
#include "support/TestRunner.h"
#include "tooledit/ToolFileRecognition.h"

#include <QTest>

class ToolFileRecognition_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void kinds_data();
    void kinds();
    void locations_data();
    void locations();
    void names_data();
    void names();
    void replaceable_data();
    void replaceable();
};

void ToolFileRecognition_test::kinds_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("kind"); // -100: unknown
    const int none = CVBATool::NoKind;
    const auto row = [](const char *file, int current, int kind) {
        QTest::addRow("%s, was %d", file, current) << QString::fromLatin1(file) << current << kind;
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

void ToolFileRecognition_test::kinds()
{
    QFETCH(QString, file);
    QFETCH(int, current);
    QFETCH(int, kind);
    const auto found = ToolFileRecognition::kindOf(file, static_cast<qint16>(current));
    QCOMPARE(found ? int(*found) : -100, kind);
}

void ToolFileRecognition_test::locations_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("location");
    const auto row = [](const char *name, const char *path, const char *folder,
                         const char *location) {
        QTest::newRow(name) << QString::fromLatin1(path) << QString::fromLatin1(folder)
                            << QString::fromLatin1(location);
    };
    row("in the macro folder", "/opt/macros/a.bas", "/opt/macros", "a.bas");
    row("in other letter case", "C:\\Macros\\A.bas", "c:\\MACROS", "A.bas");
    row("with separators at the end", "C:\\Macros\\a.bas", "c:\\macros\\\\", "a.bas");
    row("in a folder below", "/opt/macros/b/a.bas", "/opt/macros", "/opt/macros/b/a.bas");
    row("in a folder of similar name", "/opt/macros2/a.bas", "/opt/macros", "/opt/macros2/a.bas");
    row("in the root", "/a.bas", "/", "a.bas");
    row("no macro folder", "/opt/a.bas", "", "/opt/a.bas");
}

void ToolFileRecognition_test::locations()
{
    QFETCH(QString, path);
    QFETCH(QString, folder);
    QTEST(ToolFileRecognition::locationOf(path, folder), "location");
}

void ToolFileRecognition_test::names_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("capitals") << QStringLiteral("C:\\Tools\\MYTOOL.EXE")
                              << QStringLiteral("Mytool.exe");
    QTest::newRow("small letters")
        << QStringLiteral("/usr/bin/my tool.bat") << QStringLiteral("My tool.bat");
    QTest::newRow("a bare name") << QStringLiteral("x") << QStringLiteral("X");
    QTest::newRow("nothing") << QString() << QString();
}

void ToolFileRecognition_test::names()
{
    QFETCH(QString, path);
    QTEST(ToolFileRecognition::nameOf(path), "name");
}

void ToolFileRecognition_test::replaceable_data()
{
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("location");
    QTest::addColumn<bool>("expected");
    const QString path = QStringLiteral("C:\\Tools\\MYTOOL.EXE");
    QTest::newRow("a default name") << QStringLiteral("Tool(3)") << path << true;
    QTest::newRow("... of two digits") << QStringLiteral("Tool(12)") << path << true;
    QTest::newRow("... made unique") << QStringLiteral("Tool(3)(1)") << path << true;
    QTest::newRow("... in other letters") << QStringLiteral("tool(3)") << path << false;
    QTest::newRow("no digit") << QStringLiteral("Tool()") << path << false;
    QTest::newRow("a letter") << QStringLiteral("Tool(a1)") << path << false;
    QTest::newRow("text behind it") << QStringLiteral("Tool(3) old") << path << false;
    QTest::newRow("the former file's name") << QStringLiteral("Mytool.exe") << path << true;
    QTest::newRow("... in other letters, so the user's")
        << QStringLiteral("MyTool.exe") << path << false;
    QTest::newRow("the user's own") << QStringLiteral("Editor") << path << false;
    QTest::newRow("nothing yet") << QString() << QString() << true;
}

void ToolFileRecognition_test::replaceable()
{
    QFETCH(QString, description);
    QFETCH(QString, location);
    QTEST(ToolFileRecognition::isReplaceable(description, location), "expected");
}

TSM_TEST(ToolFileRecognition_test);
#include "tst_ToolFileRecognition.moc"
