#include "model/ToolFinder.h"
#include "model/ToolSetDocument.h"
#include "model/ToolSetStorage.h"
#include "model/VbEvents.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

ToolPtr tool(const QString &name, const QString &location, qint16 kind, const QString &help)
{
    auto made = std::make_shared<CVBATool>();
    made->Description = name;
    made->setLocation(location);
    made->ToolType = kind;
    made->HelpString = help;
    return made;
}

QList<ToolPtr> someTools()
{
    auto editor = tool(u"Übung Editor"_qs, u"C:\\Tools\\EDIT.EXE"_qs, 0,
        u"{\\rtf1\\ansi Press {\\b Ref}resh\\par two times, na\\'efve\\u-4063?}"_qs);
    editor->Enabled = true;
    editor->setIntoolBar(true);
    editor->Hotkey = u"Ctrl+E"_qs;
    auto sorter = tool(u"Sorter"_qs, u"sort lines.bas"_qs, CVBATool::Macro, u"Plain help"_qs);
    sorter->VBEvents = VbEvents::bit(0);
    sorter->CommandLine = u"/a name:x"_qs;
    return {editor, sorter, tool(u"Gap"_qs, {}, CVBATool::Separator, {})};
}

} // namespace

class ToolFilter_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void choosing_data()
    {
        rows<QString, QString>({
            {"no word", u"  "_qs, u"123"_qs},
            {"name, folded", u"übung"_qs, u"1"_qs},
            {"all words must match", u"edit ctrl"_qs, u"1"_qs},
            {"one word does not", u"edit plain"_qs, u""_qs},
            {"no match across fields", u"\"editor c:\""_qs, u""_qs},
            {"the caption of the kind", u"separat"_qs, u"3"_qs},
            {"an event's name", u"afteradd"_qs, u"2"_qs},
            {"an event's caption", u"event:\"add file\""_qs, u"2"_qs},
            {"words of the help, not its RTF", u"refresh"_qs, u"1"_qs},
            {"no RTF words", u"help:ansi"_qs, u""_qs},
            {"a phrase across a paragraph", u"\"refresh two\""_qs, u"1"_qs},
            {"bytes and Unicode in help", u"naïve\uF021"_qs, u"1"_qs},
            {"plain help", u"help:plain"_qs, u"2"_qs},
            {"prefix of another field", u"name:sort lines"_qs, u"2"_qs},
            {"prefix alone is still typed", u"name:"_qs, u"123"_qs},
            {"letter case of a prefix", u"KIND:exec"_qs, u"1"_qs},
            {"unknown prefix is text", u"C:\\tools"_qs, u"1"_qs},
            {"quoted prefix is text", u"\"name:x\""_qs, u"2"_qs},
            {"open quote", u"location:\"sort l"_qs, u"2"_qs},
            {"switch on", u"enabled:yes"_qs, u"1"_qs},
            {"switch off, typed in part", u"toolbar:n"_qs, u"23"_qs},
            {"no value of a switch", u"enabled:maybe"_qs, u""_qs},
        });
    }
    void choosing()
    {
        const auto [text, expected] = row<QString, QString>();
        ToolSetDocument document(m_storage);
        document.append(someTools());
        ToolFinder finder(document, 1252);
        finder.setFilter(ToolFilter(text));
        finder.finish();
        QString shown;
        for (int position = 1; position <= document.count(); ++position) {
            if (finder.matches(position))
                shown += QString::number(position);
        }
        QCOMPARE(shown, expected);
        QCOMPARE(finder.matchCount(), expected.size());
    }

    void highlighting_data()
    {
        rows<QString, QString, QString>({
            {"each place, any case", u"ab"_qs, u"xABab-Ab"_qs, u"1+4 6+2"_qs},
            {"overlapping words", u"abc bcd"_qs, u"-abcd-"_qs, u"1+4"_qs},
            {"prefix of the field", u"name:x kind:m"_qs, u"mx"_qs, u"1+1"_qs},
            {"prefix of another", u"location:x"_qs, u"x"_qs, u""_qs},
        });
    }
    void highlighting()
    {
        const auto [filter, text, expected] = row<QString, QString, QString>();
        QStringList found;
        for (const auto &range : ToolFilter(filter).ranges(ToolFilter::Scope::Name, text))
            found.append(u"%1+%2"_qs.arg(range.start).arg(range.length));
        QCOMPARE(found.join(u' '), expected);
    }

    /// Typing, deleting and edits of the set give what a new search would give, also when help
    /// texts do not fit into memory.
    void followsTypingAndEdits()
    {
        QRandomGenerator random(7);
        ToolSetDocument document(m_storage);
        const QStringList words {u"sort"_qs, u"kind:mac"_qs, u"help:refr"_qs, u"plain"_qs,
            u"editor name:ü"_qs, u"toolbar:no"_qs, u"e"_qs};
        ToolFinder finder(document, 1252);
        finder.setKeptHelpBytes(60);
        QString typed;
        for (int i = 0; i < 400; ++i) {
            const int count = document.count();
            const int any = count == 0 ? 0 : random.bounded(count) + 1;
            switch (random.bounded(6)) {
            case 0:
                document.append(someTools());
                break;
            case 1:
                if (count > 9)
                    document.remove({any});
                break;
            case 2:
                if (any > 0)
                    document.move({any}, random.bounded(count) + 1);
                break;
            case 3:
                if (any > 0)
                    document.change(document.toolAt(any), *someTools()[random.bounded(3)]);
                break;
            default:
                typed = random.bounded(3) == 0
                    ? words[random.bounded(words.size())]
                    : typed.chopped(random.bounded(2)) + u"dpx "_qs[random.bounded(4)];
                finder.setFilter(ToolFilter(typed));
                break;
            }
            finder.finish();
            ToolFinder fresh(document, 1252);
            fresh.setFilter(ToolFilter(typed));
            fresh.finish();
            QCOMPARE(finder.matchCount(), fresh.matchCount());
            for (int position = 1; position <= document.count(); ++position)
                QCOMPARE(finder.matches(position), fresh.matches(position));
        }
    }

    void helpIsSearchedByTheEventLoop()
    {
        ToolSetDocument document(m_storage);
        document.append(someTools());
        ToolFinder finder(document, 1252);
        QSignalSpy changes(&finder, &ToolFinder::matchesChanged);
        finder.setFilter(ToolFilter(u"refresh"_qs));
        QVERIFY(!finder.isComplete() && finder.matchCount() == 0);
        QTRY_VERIFY(finder.isComplete());
        QVERIFY(changes.size() == 1 && finder.matches(1));
    }

private:
    QTemporaryDir m_folder;
    ToolSetStorage m_storage {1252, m_folder.path(), m_folder.path()};
};

TSM_TEST(ToolFilter_test);
#include "tst_ToolFilter.moc"
