#include "model/CVBATool.h"
#include "model/ToolFileRecognition.h"
#include "support/TestRunner.h"

class ToolFileRecognition_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void kinds()
    {
        using Tool = CVBATool;
        constexpr int unknown = -100;
        const std::tuple<const char *, int, int> rows[] = {
            // file, kind before, kind then
            {"c:\\x\\TOOL.EXE", Tool::NoKind, Tool::StandardExecutable},
            {"c:\\x\\TOOL.EXE", Tool::AddInExecutable, Tool::AddInExecutable},
            {"c:\\x\\TOOL.EXE", Tool::Macro, Tool::StandardExecutable},
            {"tool.Bat", Tool::AddInExecutable, Tool::StandardExecutable},
            {"/home/a b/tool.com", Tool::NoKind, Tool::StandardExecutable},
            {"tool.dll", Tool::StandardExecutable, Tool::AddInExecutable},
            {"tool.bas", Tool::NoKind, Tool::Macro},
            {"tool.bmm", Tool::NoKind, Tool::Macro},
            {"tool.hlp", Tool::NoKind, Tool::HelpFile},
            {"tool.txt", Tool::Separator, Tool::TextFile},
            {"tool.ini", Tool::NoKind, Tool::TextFile},
            {".exe", Tool::NoKind, Tool::StandardExecutable},
            {"readme.doc", Tool::Macro, unknown},
            {"tool.exe.gz", Tool::NoKind, unknown},
            {"toolexe", Tool::NoKind, unknown},
            {"exe", Tool::NoKind, unknown},
            {"", Tool::NoKind, unknown},
        };
        for (const auto &[file, current, kind] : rows) {
            const auto found = ToolFileRecognition::kindOf(
                QString::fromLatin1(file), static_cast<qint16>(current));
            QVERIFY2((found ? int(*found) : unknown) == kind, file);
        }
    }

    void locations()
    {
        const std::tuple<QString, QString, QString> rows[] = {
            {u"/opt/macros/a.bas"_qs, u"/opt/macros"_qs, u"a.bas"_qs},
            {u"C:\\Macros\\A.bas"_qs, u"c:\\MACROS"_qs, u"A.bas"_qs},
            {u"C:\\Macros\\a.bas"_qs, u"c:\\macros\\\\"_qs, u"a.bas"_qs},
            {u"/opt/macros/b/a.bas"_qs, u"/opt/macros"_qs, u"/opt/macros/b/a.bas"_qs},
            {u"/opt/macros2/a.bas"_qs, u"/opt/macros"_qs, u"/opt/macros2/a.bas"_qs},
            {u"/a.bas"_qs, u"/"_qs, u"a.bas"_qs},
            {u"/opt/a.bas"_qs, QString(), u"/opt/a.bas"_qs}, // no macro folder
        };
        for (const auto &[path, folder, location] : rows)
            QCOMPARE(ToolFileRecognition::locationOf(path, folder), location);
    }

    void names()
    {
        QStringList found;
        for (const QString &path :
            {u"C:\\Tools\\MYTOOL.EXE"_qs, u"/usr/bin/my tool.bat"_qs, u"x"_qs, QString()})
            found.append(ToolFileRecognition::nameOf(path));
        QCOMPARE(found.join(u'|'), u"Mytool.exe|My tool.bat|X|"_qs);
    }

    void replaceable()
    {
        const std::pair<const char *, bool> rows[] = {{"Tool(3)", true}, {"Tool(12)", true},
            {"Tool(3)(1)", true}, // made unique
            {"tool(3)", false}, {"Tool()", false}, {"Tool(a1)", false}, {"Tool(3) old", false},
            {"Mytool.exe", true}, // the former file's name
            {"MyTool.exe", false}, {"Editor", false}}; // the user's own
        for (const auto &[name, expected] : rows) {
            QVERIFY2(ToolFileRecognition::isReplaceable(
                         QString::fromLatin1(name), u"C:\\Tools\\MYTOOL.EXE"_qs)
                    == expected,
                name);
        }
        QVERIFY(ToolFileRecognition::isReplaceable(QString(), QString()));
    }
};

TSM_TEST(ToolFileRecognition_test);
#include "tst_ToolFileRecognition.moc"
