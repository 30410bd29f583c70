#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "support/Errors.h"
#include "support/SetDump.h"
#include "support/TestRunner.h"

#include <QTemporaryDir>

namespace {

ToolPtr named(const QString &name)
{
    auto tool = std::make_shared<CVBATool>();
    tool->Description = name;
    return tool;
}

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
}

} // namespace

class CVBATools_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void adding()
    {
        // "-" for no name, "!" for refused
        const std::tuple<bool, const char *, const char *> rows[] = {
            {false, "- -", "Tool(1) Tool(2)"},
            {true, "- -", "Tool(1) Tool(2)"},
            {false, "TOOL(1) -", "TOOL(1) Tool(2)"},
            {false, "7", "7"},
            {true, "7 &H1F 1e3 (5)",
                "Tool(1) Tool(2) Tool(3) Tool(4)"}, // numbers are no names then
            {false, "Notepad Notepad Paint", "Notepad ! Paint"},
            {true, "Notepad Notepad Notepad", "Notepad Notepad(1) Notepad(2)"},
            {false, "Notepad notepad", "Notepad !"},
            {true, "Notepad notepad NOTEPAD", "Notepad notepad(1) NOTEPAD(2)"},
            {true, "Notepad(1) Notepad(1) Notepad Notepad",
                "Notepad(1) Notepad(1)(1) Notepad Notepad(2)"},
            {true, "Tool - Tool -", "Tool Tool(1) Tool(2) Tool(3)"},
        };
        for (const auto &[allowDupes, given, outcome] : rows) {
            const QStringList names = words(given);
            QStringList expected = words(outcome);
            CVBATools set(m_storage);
            set.setAllowDupes(allowDupes);
            for (qsizetype i = 0; i < names.size(); ++i) {
                const QString name = names[i] == u"-" ? QString() : names[i];
                const ToolPtr tool = named(name);
                const bool added = expected[i] != u"!";
                QCOMPARE(set.Add(tool), added);
                QCOMPARE(tool->Description, added ? expected[i] : name);
                if (added)
                    QCOMPARE(set.Item(expected[i].toUpper()), tool);
            }
            expected.removeAll(u"!"_qs);
            QCOMPARE(SetDump::names(set), expected);
        }
    }

    void gapsAreRefilled()
    {
        const std::pair<const char *, const char *> rows[] = {
            // removed from a, a(1) to a(4), a(0), a(01), b; the next three tools called "a"
            {"", "a(5) a(6) a(7)"}, {"a(2)", "a(2) a(5) a(6)"}, {"a(3) a(1)", "a(1) a(3) a(5)"},
            {"a(1) a(3)", "a(1) a(3) a(5)"}, {"A(4)", "a(4) a(5) a(6)"}, {"a", "a a(5) a(6)"},
            {"a(0) a(01)", "a(5) a(6) a(7)"}, // no numbers of the counter's
            {"a(77)", "a(5) a(6) a(7)"}, // was not there
        };
        for (const auto &[removed, expected] : rows) {
            CVBATools set(m_storage);
            set.setAllowDupes(true);
            for (const char *name : {"a", "a", "a", "a", "a", "a(0)", "a(01)", "b"})
                QVERIFY(set.Add(named(QString::fromLatin1(name))));
            for (const QString &name : words(removed))
                set.Remove(name);
            for (int i = 0; i < 3; ++i)
                QVERIFY(set.Add(named(u"a"_qs)));
            QCOMPARE(SetDump::names(set).last(3), words(expected));
        }
    }

    /// 32,767 is the last number; as nothing is searched from the start each time, this is quick.
    void numbersRunOut()
    {
        CVBATools set(m_storage);
        for (int i = 0; i < 32767; ++i)
            set.Add(std::make_shared<CVBATool>());
        QCOMPARE(set.Count(), 32767);
        QCOMPARE(set.Item(32767)->Description, u"Tool(32767)"_qs);
        for (int i = 0; i < 1000; ++i) {
            const auto tool = std::make_shared<CVBATool>();
            QVERIFY(!set.Add(tool));
            QCOMPARE(tool->Description, QString());
        }
        set.setAllowDupes(true);
        const ToolPtr numeric = named(u"12"_qs);
        QVERIFY(!set.Add(numeric));
        QCOMPARE(numeric->Description, u"12"_qs);
        set.Remove(u"tool(20000)"_qs);
        QVERIFY(set.Add(numeric));
        QCOMPARE(numeric->Description, u"Tool(20000)"_qs);
        QVERIFY(set.Add(named(u"Another"_qs)));
    }

    void renaming()
    {
        const std::tuple<bool, QString, const char *> rows[] = {
            {false, u"d"_qs, "b c d"}, // moves to the end
            {false, u"a"_qs, "b c a"},
            {false, u"A"_qs, "b c A"},
            {false, u"C"_qs, "b c"}, // a taken name drops the tool
            {true, u"C"_qs, "b c C(1)"},
            {false, u""_qs, "b c Tool(1)"},
        };
        for (const auto &[allowDupes, newName, expected] : rows) {
            CVBATools set(m_storage);
            for (const QString &name : words("a b c"))
                set.Add(named(name));
            set.setAllowDupes(allowDupes);
            set.Rename(set.Item(1), newName); // the set's own reference, which goes away meanwhile
            QCOMPARE(SetDump::names(set), words(expected));
            QCOMPARE(set.Count(), int(words(expected).size()));
        }
    }

    void removing()
    {
        CVBATools set(m_storage);
        set.RemoveAllItems();
        set.Remove(u"a"_qs);
        QCOMPARE(set.Count(), 0);
        for (int i = 0; i < 3; ++i)
            set.Add(std::make_shared<CVBATool>());
        set.RemoveAllItems();
        QCOMPARE(set.Count(), 0);
        set.Add(std::make_shared<CVBATool>());
        QCOMPARE(SetDump::names(set), words("Tool(1)"));
    }

    void errors()
    {
        CVBATools set(m_storage);
        set.Add(named(u"1"_qs));
        QCOMPARE(errorOf([&] { set.Item(u"2"_qs); }), int(VbError::InvalidCall));
        QCOMPARE(errorOf([&] { set.Item(0); }), int(VbError::SubscriptOutOfRange));
        QCOMPARE(errorOf([&] { set.Item(2); }), int(VbError::SubscriptOutOfRange));
        for (const qint32 flags : {32768, -32769, 0x10000}) {
            set.setFLAGS(5);
            QCOMPARE(errorOf([&] { set.setFLAGS(flags); }), int(VbError::Overflow));
            QCOMPARE(set.FLAGS(), 5);
        }
        set.setFLAGS(-32768);
        QCOMPARE(set.FLAGS(), -32768);
    }

    /// A window, a dialog and the clipboard hold the very same tool; a set that goes away leaves
    /// it.
    void sharedTools()
    {
        const ToolPtr tool = named(u"a"_qs);
        {
            CVBATools set(m_storage);
            set.Add(tool);
            tool->Description = u"b"_qs; // the key stays the one under which it was added
            QCOMPARE(set.Item(u"a"_qs), tool);
            QVERIFY(!set.Items().contains(u"b"_qs));
        }
        QCOMPARE(tool.use_count(), 1L);
    }

private:
    QTemporaryDir m_folder;
    ToolSetStorage m_storage {1252, m_folder.path(), m_folder.path()};
};

TSM_TEST(CVBATools_test);
#include "tst_CVBATools.moc"
