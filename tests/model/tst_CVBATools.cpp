#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "platform/VbError.h"
#include "support/Rows.h"
#include "support/SetDump.h"
#include "support/TestRunner.h"

#include <QTemporaryDir>
#include <QTest>

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
    void adding_data()
    {
        // names: "-" for none.; expected: "!" for refused.
        columns<bool, QStringList, QStringList>();
        const auto row = [](const char *what, bool allowDupes, const char *names,
                             const char *expected) {
            QTest::newRow(what) << allowDupes << words(names) << words(expected);
        };
        row("nameless tools", false, "- -", "Tool(1) Tool(2)");
        row("nameless tools beside duplicates", true, "- -", "Tool(1) Tool(2)");
        row("the number of a nameless tool is taken", false, "TOOL(1) -", "TOOL(1) Tool(2)");
        row("a number as a name", false, "7", "7");
        row("a number as a name beside duplicates", true, "7 &H1F 1e3 (5)",
            "Tool(1) Tool(2) Tool(3) Tool(4)");
        row("a taken name is refused", false, "Notepad Notepad Paint", "Notepad ! Paint");
        row("a taken name is made unique", true, "Notepad Notepad Notepad",
            "Notepad Notepad(1) Notepad(2)");
        row("letter case does not make a name", false, "Notepad notepad", "Notepad !");
        row("letter case does not make a name, but is kept", true, "Notepad notepad NOTEPAD",
            "Notepad notepad(1) NOTEPAD(2)");
        row("a name with a number gets another", true, "Notepad(1) Notepad(1) Notepad Notepad",
            "Notepad(1) Notepad(1)(1) Notepad Notepad(2)");
        row("the base is called Tool itself", true, "Tool - Tool -",
            "Tool Tool(1) Tool(2) Tool(3)");
    }

    void adding()
    {
        auto [allowDupes, names, expected] = row<bool, QStringList, QStringList>();
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

    void gapsAreRefilled_data()
    {
        // expected: Of the next three tools called "a".
        rows<QStringList, QStringList>({
            {"nothing removed", words(""), words("a(5) a(6) a(7)")},
            {"one in the middle", words("a(2)"), words("a(2) a(5) a(6)")},
            {"two, the higher one first", words("a(3) a(1)"), words("a(1) a(3) a(5)")},
            {"two, the lower one first", words("a(1) a(3)"), words("a(1) a(3) a(5)")},
            {"in another letter case", words("A(4)"), words("a(4) a(5) a(6)")},
            {"the bare name", words("a"), words("a a(5) a(6)")},
            {"not a number of the counter's", words("a(0) a(01)"), words("a(5) a(6) a(7)")},
            {"a key that was not there", words("a(77)"), words("a(5) a(6) a(7)")},
        });
    }

    void gapsAreRefilled()
    {
        const auto [removed, expected] = row<QStringList, QStringList>();
        CVBATools set(m_storage);
        set.setAllowDupes(true);
        for (int i = 0; i < 5; ++i)
            QVERIFY(set.Add(named(u"a"_qs)));
        for (const char *name : {"a(0)", "a(01)", "b"})
            QVERIFY(set.Add(named(QString::fromLatin1(name))));
        for (const QString &name : std::as_const(removed))
            set.Remove(name);
        QStringList made;
        for (int i = 0; i < 3; ++i) {
            const ToolPtr tool = named(u"a"_qs);
            QVERIFY(set.Add(tool));
            made.append(tool->Description);
        }
        QCOMPARE(made, expected);
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

    void renaming_data()
    {
        rows<bool, QString, QStringList>({
            {"moves to the end", false, u"d"_qs, words("b c d")},
            {"to its own name", false, u"a"_qs, words("b c a")},
            {"to another letter case", false, u"A"_qs, words("b c A")},
            {"a taken name drops the tool", false, u"C"_qs, words("b c")},
            {"a taken name is made unique", true, u"C"_qs, words("b c C(1)")},
            {"no name", false, u""_qs, words("b c Tool(1)")},
        });
    }

    void renaming()
    {
        const auto [allowDupes, newName, expected] = row<bool, QString, QStringList>();
        CVBATools set(m_storage);
        for (const char *name : {"a", "b", "c"})
            set.Add(named(QString::fromLatin1(name)));
        set.setAllowDupes(allowDupes);
        set.Rename(set.Item(1), newName); // the set's own reference, which goes away meanwhile
        QCOMPARE(SetDump::names(set), expected);
        QCOMPARE(set.Count(), int(expected.size()));
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
        const auto numberOf = [](const auto &call) {
            try {
                call();
            } catch (const VbError &error) {
                return error.number();
            }
            return 0;
        };
        QCOMPARE(numberOf([&] { set.Item(u"2"_qs); }), int(VbError::InvalidCall));
        QCOMPARE(numberOf([&] { set.Item(0); }), int(VbError::SubscriptOutOfRange));
        QCOMPARE(numberOf([&] { set.Item(2); }), int(VbError::SubscriptOutOfRange));
        for (const qint32 flags : {32768, -32769, 0x10000}) {
            set.setFLAGS(5);
            QCOMPARE(numberOf([&] { set.setFLAGS(flags); }), int(VbError::Overflow));
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
