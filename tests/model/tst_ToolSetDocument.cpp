#include "model/ToolSetDocument.h"
#include "model/ToolSetStorage.h"
#include "support/SetDump.h"
#include "support/TestRunner.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

namespace {

ToolPtr named(const QString &name)
{
    auto tool = std::make_shared<CVBATool>();
    tool->Description = name;
    tool->HelpString = u"{\\rtf1 Help of %1}"_qs.arg(name);
    tool->Picture = QImage(18, 18, QImage::Format_RGB32);
    tool->Picture.fill(qHash(name));
    return tool;
}

/// All of a document that undo must bring back, with the identity of each tool.
QStringList state(const ToolSetDocument &document)
{
    QStringList all = SetDump::lines(document.Tools()); // in the set's own order
    for (const ToolPtr &tool : document.toolsInOrder()) {
        all.append(u"%1 %2 %3"_qs.arg(quintptr(tool.get()))
                       .arg(tool->Picture.isNull() ? 0 : tool->Picture.pixel(0, 0))
                       .arg(tool->Description));
        if (document.Tools().Item(tool->Description) != tool)
            all.append(u"OUT OF STEP: "_qs + tool->Description);
    }
    return all;
}

/// A view as it might be written: kept up to date by the signals alone.
class Mirror : public QObject
{
public:
    explicit Mirror(ToolSetDocument &document)
    {
        connect(
            &document, &ToolSetDocument::toolsRemoved, this, [this](const QList<int> &positions) {
                for (qsizetype i = positions.size(); i-- > 0;)
                    tools.removeAt(positions[i] - 1);
            });
        connect(&document, &ToolSetDocument::toolsInserted, this,
            [this, &document](const QList<int> &positions) {
                for (const int position : positions)
                    tools.insert(position - 1, document.toolAt(position));
            });
        connect(&document, &ToolSetDocument::toolsMoved, this,
            [this](const QList<int> &from, const QList<int> &to) {
                QList<ToolPtr> moved;
                for (qsizetype i = from.size(); i-- > 0;)
                    moved.prepend(tools.takeAt(from[i] - 1));
                for (qsizetype i = 0; i < to.size(); ++i)
                    tools.insert(to[i] - 1, moved[i]);
            });
    }
    QList<ToolPtr> tools;
};

} // namespace

class ToolSetDocument_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void undoBringsEverythingBack()
    {
        QRandomGenerator random(4242);
        ToolSetDocument document(m_storage);
        const Mirror mirror(document);
        QList<int> selection;
        document.setSelection([&] { return selection; });
        QList<int> restored;
        connect(&document, &ToolSetDocument::selectionRestored, this,
            [&](const QList<int> &positions) { restored = positions; });
        const auto somePositions = [&] {
            QList<int> positions;
            for (int position = 1; position <= document.count(); ++position) {
                if (random.bounded(3) == 0)
                    positions.append(position);
            }
            return positions;
        };

        QList<QStringList> states {state(document)};
        QList<QList<int>> selectedBefore;
        while (states.size() < 300) {
            selection = somePositions();
            const QList<int> before = selection;
            {
                const ToolSetDocument::Step step(document, u"Step"_qs);
                for (int edits = random.bounded(1, 4); edits > 0; --edits) {
                    if (document.count() == 0 || random.bounded(4) == 0) {
                        document.append({named(u"X"_qs), named(QString()), named(u"y(1)"_qs)});
                        continue;
                    }
                    const int position = random.bounded(document.count()) + 1;
                    const ToolPtr tool = document.toolAt(position);
                    switch (random.bounded(5)) {
                    case 0:
                        document.remove(somePositions());
                        break;
                    case 1:
                        document.move(somePositions(), position);
                        break;
                    case 2: // to a taken name as well, and to its own in other letters
                        document.rename(tool,
                            random.bounded(2) ? tool->Description.toUpper()
                                              : document.toolAt(1)->Description);
                        break;
                    case 3: {
                        CVBATool after = *tool;
                        after.setLocation(QString::number(random.generate()));
                        after.Picture = QImage();
                        document.change(tool, after);
                        break;
                    }
                    default:
                        document.setProperties({QString::number(random.generate()), {}, 1});
                    }
                }
                selection = somePositions();
            }
            if (!document.undoText().isEmpty() && state(document) != states.constLast()) {
                states.append(state(document));
                selectedBefore.append(before);
            }
        }
        for (const int back : {1, 7, 290, 3}) {
            for (int i = 0; i < back; ++i) {
                document.undo();
                QCOMPARE(state(document), states[states.size() - 2 - i]);
                QCOMPARE(restored, selectedBefore[selectedBefore.size() - 1 - i]);
            }
            for (int i = back; i-- > 0;) {
                document.redo();
                QCOMPARE(state(document), states[states.size() - 1 - i]);
            }
            QVERIFY(!document.canRedo());
        }
        QCOMPARE(std::vector<ToolPtr>(mirror.tools.begin(), mirror.tools.end()),
            document.toolsInOrder());
    }

    void dirty()
    {
        // Letters: a append, r rename, s saved, f save failed, u undo, e redo, d a change in a
        // dialog that changed nothing. After it: dirty or clean, unsaved or in the file.
        const std::tuple<const char *, bool, bool> rows[] = {
            {"", false, false},
            {"a", true, true},
            {"as", false, false},
            {"asr", false, true}, // a rename in place does not count
            {"asru", false, false},
            {"asrau", false, true},
            {"asrauu", false, false},
            {"asu", true, true},
            {"asue", false, false},
            {"asua", true, true}, // the saved state is gone
            {"asuauu", true, true},
            {"af", false, true}, // a failed save clears the flag, and no state counts as saved
            {"afu", true, true},
            {"afue", true, true},
            {"asru", false, false},
            {"asrsu", false, true},
            {"asd", true, false},
            {"asdau", false, false},
        };
        for (const auto &[letters, dirty, unsaved] : rows) {
            ToolSetDocument document(m_storage);
            for (const char *letter = letters; *letter; ++letter) {
                switch (*letter) {
                case 'a':
                    document.append({named(u"A"_qs)});
                    break;
                case 'r':
                    QVERIFY(document.renameInPlace(document.toolAt(1), u"B"_qs));
                    break;
                case 's':
                    document.saved();
                    break;
                case 'f':
                    document.saveFailed();
                    break;
                case 'u':
                    document.undo();
                    break;
                case 'e':
                    document.redo();
                    break;
                default:
                    document.setDirty();
                }
            }
            QVERIFY2(document.Dirty() == dirty, letters);
            QVERIFY2(document.isUnsaved() == (unsaved || dirty), letters);
        }
    }

    void theOldestStepsGoFirst()
    {
        ToolSetDocument document(m_storage);
        document.append({named(u"A"_qs)});
        const ToolPtr tool = document.toolAt(1);
        constexpr int steps = 12; // each leaves 8 MB of a former help text to the stack
        for (int i = 0; i < steps; ++i) {
            CVBATool after = *tool;
            after.HelpString = QString(4 << 20, QChar(u'a' + i));
            document.change(tool, after);
        }
        int undone = 0;
        for (; document.canUndo(); ++undone)
            document.undo();
        QVERIFY2(undone >= 7 && undone <= 9, qPrintable(QString::number(undone)));
        QCOMPARE(tool->HelpString.at(0), QChar(u'a' + steps - 1 - undone));
    }

    void noFreeName()
    {
        ToolSetDocument document(m_storage);
        QList<ToolPtr> tools;
        for (int i = 0; i <= 32'768; ++i)
            tools.append(named(i < 32'768 ? u"X"_qs : u"Y"_qs));
        document.append(tools);
        const ToolPtr last = document.toolAt(document.count());
        QVERIFY(!document.rename(last, u"x"_qs));
        QCOMPARE(document.Tools().Item(u"Y"_qs), last);
        QCOMPARE(document.append({named(u"X"_qs)}), QList<int>());
        QVERIFY(document.rename(document.toolAt(5), u"x"_qs)); // its own place is free
    }

private:
    QTemporaryDir m_folder;
    ToolSetStorage m_storage {1252, m_folder.path(), m_folder.path()};
};

TSM_TEST(ToolSetDocument_test);
#include "tst_ToolSetDocument.moc"
