#include "model/ToolSetDiff.h"
#include "model/ToolSetDocument.h"
#include "model/ToolSetMerge.h"
#include "model/ToolSetStorage.h"
#include "model/ToolSetUpdate.h"
#include "support/SetDump.h"
#include "support/TestRunner.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>

namespace {

/// "A B=x C": tools with these names, of which B has the location x.
ToolSetState state(const QString &text)
{
    ToolSetState made;
    const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    for (const QString &word : words) {
        auto tool = std::make_shared<CVBATool>();
        tool->Description = word.section(u'=', 0, 0);
        tool->FileName = word.section(u'=', 1);
        made.tools.push_back(tool);
    }
    return made;
}

QStringList lines(const ToolSetState &set)
{
    QStringList all {set.properties.Description};
    for (const ToolPtr &tool : set.tools)
        all.append(SetDump::line(*tool));
    return all;
}

QString text(const ToolSetState &set)
{
    QStringList words;
    for (const ToolPtr &tool : set.tools)
        words.append(
            tool->Description + (tool->FileName.isEmpty() ? QString() : u'=' + tool->FileName));
    return words.join(u' ');
}

QString text(const ToolSetDiff &diff, const ToolSetState &left, const ToolSetState &right)
{
    QStringList words;
    for (const ToolSetDiff::Row &row : diff.rows()) {
        if (!row.differs())
            continue;
        const ToolSetState &side = row.onlyLeft() ? left : right;
        const QString name =
            side.tools[size_t(row.onlyLeft() ? row.left : row.right) - 1]->Description;
        words.append((row.onlyLeft()           ? u"-"_qs
                             : row.onlyRight() ? u"+"_qs
                                               : QString())
            + (row.moved ? u">"_qs : QString()) + (row.fields.isEmpty() ? QString() : u"*"_qs)
            + name);
    }
    return words.join(u' ');
}

ToolSetState varied(const ToolSetState &from, QRandomGenerator &random)
{
    ToolSetState made = from;
    for (int edits = random.bounded(6); edits > 0; --edits) {
        auto &tools = made.tools;
        const size_t at = tools.empty() ? 0 : random.bounded(int(tools.size()));
        auto tool =
            tools.empty() ? std::make_shared<CVBATool>() : std::make_shared<CVBATool>(*tools[at]);
        switch (tools.empty() ? 0 : random.bounded(5)) {
        case 0:
            tool->Description = u"new%1"_qs.arg(random.bounded(1'000'000));
            tools.insert(tools.begin() + int(at), tool);
            break;
        case 1:
            tools.erase(tools.begin() + int(at));
            break;
        case 2:
            tool->CommandLine = QString::number(random.bounded(3));
            tools[at] = tool;
            break;
        case 3:
            tool->Description += u'x';
            tools[at] = tool;
            break;
        default: {
            const ToolPtr moved = tools[at];
            tools.erase(tools.begin() + int(at));
            tools.insert(tools.begin() + random.bounded(int(tools.size()) + 1), moved);
        }
        }
    }
    return made;
}

} // namespace

class ToolSetDiff_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void differences()
    {
        const std::tuple<const char *, const char *, const char *> rows[] = {
            {"A B C", "a B C", "*a"}, // another letter case is the same tool
            {"A B C", "A C", "-B"},
            {"A C", "A B C", "+B"},
            {"A B C D E", "A E B C D", ">E"}, // one moved, not three
            {"A B C D E", "B C D E A", ">A"},
            {"A=1 B=2", "X=1 B=2", "*X"}, // renamed
            {"A=1 B=2", "B=2 X=1", ">*X"},
            {"A B", "X Y", "+X +Y -A -B"}, // nothing to recognise them by
            {"A=1 B=1", "X=1", "+X -A -B"}, // it could be either
            {"A B C", "D A C", "+D -B"},
            {"", "", ""},
        };
        for (const auto &[before, after, expected] : rows) {
            const ToolSetState left = state(QString::fromLatin1(before));
            const ToolSetState right = state(QString::fromLatin1(after));
            QCOMPARE(text(ToolSetDiff(left, right), left, right), QString::fromLatin1(expected));
        }
    }

    void merges()
    {
        struct Row
        {
            const char *base, *ours, *theirs, *result;
            QStringList conflicts;
        };
        const Row rows[] = {
            {"A B C", "A=1 B C", "A B C=2", "A=1 B C=2", {}},
            {"A B C", "A C", "A B C D", "A C D", {}},
            {"A B C", "C A B", "A B C=2", "C=2 A B", {}},
            {"A B C D", "B A C D", "A B D C", "B A D C", {}},
            {"A B", "A X B", "A Y B", "A X Y B", {}},
            {"A=1 B=2", "X=1 B=2", "A=1 B=3", "X=1 B=3", {}}, // renamed and changed
            {"A=1", "A=2", "A=3", "A=2", {u"A"_qs}},
            {"A=1 B", "B", "A=2 B", "A=2 B", {u"A"_qs}},
            {"A B C", "B C A", "C A B", "C B A", {}}, // each has moved another one
            {"A B C D", "B A C D", "B C A D", "B A C D", {u"A"_qs}},
            {"A=1", "Y=1", "A=1 Y=5", "Y=1 Y(1)=5", {u"Y(1)"_qs}},
            {"A", "A N=1", "A N=2", "A N=1", {u"N"_qs}},
            {"A", "A N=1", "A N=1", "A N=1", {}},
        };
        for (const Row &row : rows) {
            const ToolSetMerge merge(state(QString::fromLatin1(row.base)),
                state(QString::fromLatin1(row.ours)), state(QString::fromLatin1(row.theirs)));
            QCOMPARE(text(merge.result()), QString::fromLatin1(row.result));
            QStringList conflicts;
            for (const auto &conflict : merge.conflicts())
                conflicts.append(conflict.tool);
            QVERIFY2(conflicts == row.conflicts,
                qPrintable(QString::fromLatin1(row.result) + u": "_qs + conflicts.join(u' ')));
        }
    }

    /// From any state to any other one in one step, and back, with names and places exchanged.
    void updates()
    {
        const QTemporaryDir home;
        ToolSetStorage storage(1252, home.path(), home.path());
        QRandomGenerator random(77);
        for (int round = 0; round < 300; ++round) {
            ToolSetState before;
            for (int i = random.bounded(40); i > 0; --i)
                before.tools.push_back(state(u"T%1=%1"_qs.arg(i)).tools.front());
            ToolSetState after = varied(before, random);
            after.properties.Description = QString::number(round);
            if (round % 3 == 0)
                std::shuffle(after.tools.begin(), after.tools.end(), random);
            for (size_t i = 1; round % 2 == 0 && i < after.tools.size(); i += 2) {
                auto &one = after.tools[i - 1];
                auto &other = after.tools[i];
                one = std::make_shared<CVBATool>(*one);
                other = std::make_shared<CVBATool>(*other);
                std::swap(one->Description, other->Description);
            }
            ToolSetDocument document(storage);
            QList<ToolPtr> tools;
            for (const ToolPtr &tool : before.tools)
                tools.append(std::make_shared<CVBATool>(*tool));
            document.append(tools);
            before.properties = document.properties();
            ToolSetUpdate::apply(
                document, ToolSetUpdate::replacement(document, after), u"Restore"_qs);
            QCOMPARE(lines(ToolSetUpdate::stateOf(document)), lines(after));
            QCOMPARE(document.undoText(), u"Restore"_qs);
            document.undo();
            QCOMPARE(lines(ToolSetUpdate::stateOf(document)), lines(before));
            // What is there already makes no step.
            ToolSetUpdate::apply(document, ToolSetUpdate::unchanged(document), u"Nothing"_qs);
            QVERIFY(document.canRedo());
        }
    }

    void lawsOfMerging()
    {
        QRandomGenerator random(31);
        ToolSetState base = state(u"A=1 B=2 C=3 D=4 E=5 F G H I J"_qs);
        for (int round = 0; round < 2000; ++round) {
            const ToolSetState a = varied(base, random);
            const ToolSetState b = varied(base, random);
            QCOMPARE(lines(ToolSetMerge(base, a, base).result()), lines(a));
            QCOMPARE(lines(ToolSetMerge(base, base, a).result()), lines(a));
            QCOMPARE(lines(ToolSetMerge(base, a, a).result()), lines(a));
            const ToolSetMerge ab(base, a, b);
            const ToolSetMerge ba(base, b, a);
            QCOMPARE(ab.conflicts().size(), ba.conflicts().size());
            if (ab.conflicts().empty())
                QCOMPARE(lines(ab.result()), lines(ba.result()));
            QSet<QString> names;
            for (const ToolPtr &tool : ab.result().tools)
                names.insert(tool->Description.toCaseFolded());
            QCOMPARE(size_t(names.size()), ab.result().tools.size());
        }
    }
};

TSM_TEST(ToolSetDiff_test);
#include "tst_ToolSetDiff.moc"
