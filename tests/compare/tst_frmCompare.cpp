#include "compare/CompareCommands.h"
#include "compare/frmCompare.h"
#include "platform/desktop/Toolbar.h"
#include "platform/text/WordDiff.h"
#include "shell/Settings.h"
#include "support/Answers.h"
#include "support/Files.h"
#include "support/Find.h"
#include "support/Program.h"
#include "support/TestRunner.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTextEdit>
#include <QToolBar>
#include <QTreeView>

/// The comparison window in the real frame.
class frmCompare_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        m_program = std::make_unique<Program>(m_home->path());
        m_settings = std::make_unique<Settings>(m_home->path());
        new CompareCommands(m_program->frame, *m_settings, m_program->storage);
    }
    void cleanup() { m_program.reset(); }

    void words()
    {
        const auto text = [](const QString &whole, const QList<WordDiff::Range> &ranges) {
            QStringList parts;
            for (const WordDiff::Range &range : ranges)
                parts.append(whole.mid(range.start, range.length));
            return parts.join(u'|');
        };
        const std::array<QString, 4> rows[] = {
            {u"a quick brown fox"_qs, u"a slow brown fox runs"_qs, u"quick"_qs, u"slow| runs"_qs},
            {u"same"_qs, u"same"_qs, QString(), QString()},
            {QString(), u"all new"_qs, QString(), u"all new"_qs},
            {u"one two three"_qs, u"three one two"_qs, u" three"_qs, u"three "_qs},
            {u"a-b\nc"_qs, u"a+b\nc"_qs, u"-"_qs, u"+"_qs},
        };
        for (const auto &[left, right, onlyLeft, onlyRight] : rows) {
            const WordDiff::Ranges ranges = WordDiff::between(left, right);
            QCOMPARE(text(left, ranges.left), onlyLeft);
            QCOMPARE(text(right, ranges.right), onlyRight);
        }
        QString left;
        QString right;
        for (int i = 0; i < 20000; ++i) {
            left += u"l%1 "_qs.arg(i);
            right += u"r%1 "_qs.arg(i);
        }
        QCOMPARE(WordDiff::between(left, right).left.size(), 1); // at once, as one difference
    }

    void drivesTheFrame()
    {
        frmToolSet *left = open("left", "abcde");
        open("right", "axcebd");
        frmCompare *form = compare(left);
        QCOMPARE(shown(form),
            QStringList({u"Tool set properties|≠ Changed: short description|Tool set properties"_qs,
                u"a|= Same|a"_qs, u"|→ Only right|x"_qs, u"c|= Same|c"_qs, u"e|= Same|e"_qs,
                u"b|↕ Moved: 2 left, 5 right|b"_qs, u"d|↕ Moved: 4 left, 6 right|d"_qs}));
        QCOMPARE(form->status().contents, u"1 only right, 2 moved, other set properties"_qs);
        // None of the list's commands is left, and the words of the others do nothing.
        for (const QAction *button : child<QToolBar>(&frame(), "tbTools")->actions()) {
            const QString key = Toolbar::key(button);
            if (!button->isSeparator())
                QCOMPARE(button->isEnabled(),
                    key == u"newtoolset"_qs || key == u"open"_qs || key == u"macro"_qs);
        }
        for (const char *word : {"save", "delete", "list", "paste", "properties"})
            m_program->run(QString::fromLatin1(word));
        // The keys of its menus reach it.
        QVERIFY(activate());
        QTreeView *rows = table(form, "tvRows");
        rows->setFocus();
        QTest::keyClick(rows, Qt::Key_F8);
        m_program->waitForQueue();
        QCOMPARE(rows->currentIndex().row(), 2);
        QTest::keyClick(rows, Qt::Key_F8, Qt::ShiftModifier);
        m_program->waitForQueue();
        QCOMPARE(rows->currentIndex().row(), 0);
        m_program->run(u"changesonly"_qs);
        QCOMPARE(shown(form).size(), 4);
        // Exit takes it along and ends the program.
        child<QAction>(form, "mnuFileExit")->trigger();
        QTRY_VERIFY(frame().openDocuments().isEmpty() && !frame().isVisible());
    }

    void copies()
    {
        frmToolSet *left = open("left", "abcd");
        frmToolSet *right = open("right", "acdx");
        ToolSetDocument &set = left->Document();
        change(set, 3, [](CVBATool &tool) {
            tool.CommandLine = u"/new"_qs;
            tool.HelpString = u"help of changed c"_qs;
        });
        frmCompare *form = compare(left);
        ToolSetDocument &target = right->Document();

        select(form, "b");
        m_program->run(u"copyright"_qs);
        QCOMPARE(names(target), u"abcdx"_qs);
        QCOMPARE(target.undoText(), u"Copy of \"b\""_qs);
        QVERIFY(target.Dirty());
        select(form, "c");
        QCOMPARE(child<QTextEdit>(form, "txtLeft")->toPlainText(), u"help of changed c"_qs);
        // A single field, by the focus.
        QVERIFY(activate());
        QTreeView *fields = table(form, "tvFields");
        fields->setFocus();
        QCOMPARE(fields->currentIndex().data().toString(), u"≠ Command line"_qs);
        QTest::keyClick(fields, Qt::Key_Right, Qt::AltModifier);
        m_program->waitForQueue();
        QCOMPARE(target.toolAt(3)->CommandLine, u"/new"_qs);
        QCOMPARE(target.toolAt(3)->HelpString, u"help of c"_qs);
        QCOMPARE(target.undoText(), u"Copy of Command line of \"c\""_qs);
        table(form, "tvRows")->setFocus();
        select(form, "x");
        m_program->run(u"copyright"_qs); // what is not on the left goes
        QCOMPARE(names(target), u"abcd"_qs);
        // Edits in a window are followed, and undo from here is of the set that changed last.
        set.remove({1});
        QTRY_VERIFY(shown(form).contains(u"|→ Only right|a"_qs));
        m_program->run(u"undo"_qs);
        QCOMPARE(names(target), u"abcdx"_qs);
        m_program->run(u"copyallright"_qs);
        QCOMPARE(child<QLabel>(form, "lblSummary")->text(), u"No differences"_qs);
        QCOMPARE(names(target), u"bcd"_qs);
        m_program->run(u"undo"_qs);
        QCOMPARE(names(target), u"abcdx"_qs);
        // What a closed window had is still there to be looked at.
        drop(left);
        QTRY_VERIFY(child<QLabel>(form, "lblSets")->text().contains(u"left.bmt (file; opens"_qs));
        QVERIFY(shown(form).contains(u"b|= Same|b"_qs));
    }

    void filesOpenWhenTheyChange()
    {
        open("left", "abc");
        const QString path = file("other", "ac");
        const QByteArray before = Files::contentOf(path);
        Answers answers;
        answers.file(u"Compare With"_qs, path);
        m_program->run(u"compare"_qs);
        auto *form = static_cast<frmCompare *>(frame().openDocuments().constLast());
        QVERIFY(child<QLabel>(form, "lblSets")->text().contains(u"opens in a window"_qs));
        select(form, "b");
        m_program->run(u"copyright"_qs);
        QCOMPARE(frame().openDocuments().size(), 3);
        QCOMPARE(frame().activeDocument(), form);
        ToolSetDocument &opened = *frame().openDocuments().constLast()->toolSet();
        QCOMPARE(names(opened), u"abc"_qs);
        QVERIFY(opened.Dirty() && Files::contentOf(path) == before);
        // A file that has become another one is shown and left alone.
        drop(frame().openDocuments().constLast());
        frame().activateDocument(form);
        QVERIFY(QFile::remove(path) && Sets::put(path, u"xyz"_qs, m_program->storage));
        select(form, "Tool set properties");
        answers.message(u"\"%1\" is not as it was*"_qs.arg(path), QMessageBox::Ok);
        m_program->run(u"copyright"_qs);
        QCOMPARE(names(*frame().openDocuments().constLast()->toolSet()), u"xyz"_qs);
    }

    void merges()
    {
        frmToolSet *ours = open("ours", "abc");
        frmToolSet *theirs = open("theirs", "abd");
        const QString base = file("base", "abc");
        change(ours->Document(), 1, [](CVBATool &tool) { tool.CommandLine = u"ours"_qs; });
        change(ours->Document(), 2, [](CVBATool &tool) { tool.HelpString = u"ours"_qs; });
        change(theirs->Document(), 2, [](CVBATool &tool) {
            tool.HelpString = u"theirs"_qs;
            tool.CommandLine = u"theirs"_qs;
        });
        frmCompare *form = compare(ours);
        Answers answers;
        answers.dialog(u"frmCompareWith"_qs,
            [](QDialog *dialog) { child<QPushButton>(dialog, "cmdFile")->click(); });
        answers.file(u"Choose Base"_qs, base);
        m_program->run(u"choosebase"_qs);
        const QStringList rows = shown(form);
        QVERIFY(rows.contains(u"a|≠ Changed: command line (left)|a"_qs));
        QVERIFY(rows.contains(
            u"b|! Changed: command line (right), help text (both sides: conflict)|b"_qs));
        QVERIFY(rows.contains(u"c|← Only left (removed right)|"_qs));
        QVERIFY(rows.contains(u"|→ Only right (new)|d"_qs));
        auto *conflicts = child<QListWidget>(form, "lstConflicts");
        QCOMPARE(conflicts->count(), 2); // of b, and of the set's description
        ToolSetDocument &set = ours->Document();
        const int steps = set.stepIndex();
        m_program->run(u"mergeleft"_qs);
        QCOMPARE(set.stepIndex(), steps + 1);
        QCOMPARE(set.undoText(), u"Merge of \"theirs.bmt\""_qs);
        QCOMPARE(names(set), u"abd"_qs);
        QCOMPARE(set.toolAt(1)->CommandLine, u"ours"_qs);
        QCOMPARE(set.toolAt(2)->CommandLine, u"theirs"_qs);
        QCOMPARE(set.toolAt(2)->HelpString, u"ours"_qs);
        Q_EMIT conflicts->itemActivated(conflicts->item(conflicts->count() - 1));
        QCOMPARE(
            table(form, "tvRows")->currentIndex().siblingAtColumn(0).data().toString(), u"b"_qs);
    }

private:
    bool activate()
    {
        frame().activateWindow(); // from where the dialog was
        return QTest::qWaitForWindowActive(&frame());
    }
    static void drop(DocumentWindow *window)
    {
        window->toolSet()->saved(); // nobody is asked
        window->Unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    MDI &frame() { return m_program->frame; }
    QString file(const char *name, const char *tools)
    {
        const QString path = m_home->filePath(QLatin1String(name) + u".bmt"_qs);
        return Sets::put(path, QLatin1String(tools), m_program->storage) ? path : QString();
    }
    frmToolSet *open(const char *name, const char *tools)
    {
        return m_program->open(file(name, tools));
    }
    /// With the other set that is open.
    frmCompare *compare(frmToolSet *left)
    {
        frame().activateDocument(left);
        Answers answers;
        answers.dialog(u"frmCompareWith"_qs,
            [](QDialog *dialog) { child<QPushButton>(dialog, "cmdOK")->click(); });
        m_program->run(u"compare"_qs);
        return static_cast<frmCompare *>(frame().openDocuments().constLast());
    }
    static QTreeView *table(frmCompare *form, const char *name)
    {
        return child<QTreeView>(form, name);
    }
    static QStringList shown(frmCompare *form)
    {
        const QAbstractItemModel *model = table(form, "tvRows")->model();
        QStringList lines;
        for (int row = 0; row < model->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < model->columnCount(); ++column)
                cells.append(model->index(row, column).data().toString());
            lines.append(cells.join(u'|'));
        }
        return lines;
    }
    static void select(frmCompare *form, const char *name)
    {
        const QAbstractItemModel *model = table(form, "tvRows")->model();
        for (int row = 0; row < model->rowCount(); ++row) {
            for (const int column : {0, 2}) {
                if (model->index(row, column).data().toString() == QLatin1String(name))
                    table(form, "tvRows")->setCurrentIndex(model->index(row, 1));
            }
        }
    }
    static QString names(const ToolSetDocument &set) { return set.keysInOrder().join(QString()); }
    template <class Change>
    static void change(ToolSetDocument &set, int position, Change change)
    {
        CVBATool after = *set.toolAt(position);
        change(after);
        set.change(set.toolAt(position), after);
    }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<Program> m_program;
    std::unique_ptr<Settings> m_settings;
};

TSM_TEST(frmCompare_test);
#include "tst_frmCompare.moc"
