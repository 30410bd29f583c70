#include "model/ToolSetSnapshot.h"
#include "platform/desktop/SnapshotStore.h"
#include "shell/RecoveryBar.h"
#include "support/Answers.h"
#include "support/Files.h"
#include "support/Find.h"
#include "support/Program.h"
#include "support/Rows.h"
#include "support/TestRunner.h"
#include "toolset/ToolSetMenus.h"

#include <QAbstractItemView>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

/// What is kept of unsaved changes, and how it comes back.

static ToolSetSnapshot everything()
{
    ToolSetSnapshot snapshot {
        u"title"_qs, u"/a path/ж"_qs, -5, u"text"_qs, u"{\\rtf1 long}"_qs, {}};
    QImage translucent(3, 2, QImage::Format_ARGB32);
    translucent.fill(QColor(10, 20, 30, 40));
    QImage indexed(5, 5, QImage::Format_Indexed8);
    indexed.setColorTable({qRgb(1, 2, 3), qRgba(4, 5, 6, 0)});
    indexed.fill(1);
    for (const QImage &picture :
        {QImage(), translucent, indexed, translucent.convertToFormat(QImage::Format_RGB888)}) {
        CVBATool tool;
        tool.Enabled = VbBool::fromRaw(7);
        tool.Description = u"name \U0001F600"_qs;
        tool.FileName = u" blanks "_qs;
        tool.Picture = picture;
        tool.ToolType = 77;
        tool.AccessOptions = -1;
        tool.Hotkey = QString(QChar(0xD800)) + u'x'; // half a character
        tool.AppName16 = u"16\0x"_qs;
        tool.AppName32 = u"32"_qs;
        tool.FLAGS = 1 << 30;
        tool.VBEvents = -1;
        tool.CommandLine = u"\uF781"_qs;
        tool.HelpString = QString(70000, u'é');
        tool.HelpId = -3;
        snapshot.tools.push_back(tool);
    }
    return snapshot;
}

class Snapshots_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { m_home = std::make_unique<QTemporaryDir>(); }

    void holdEverything()
    {
        const ToolSetSnapshot put = everything();
        QVERIFY(SnapshotWriter(put, path(u"s"_qs)).finish() == SnapshotWriter::State::Done);
        QCOMPARE(ToolSetSnapshot::readOrigin(path(u"s"_qs)).title, put.title);
        const auto got = ToolSetSnapshot::read(path(u"s"_qs));
        QVERIFY(got);
        QCOMPARE(std::tuple(got->title, got->path, got->Description, got->LongDescription,
                     got->FLAGS, got->tools.size()),
            std::tuple(put.title, put.path, put.Description, put.LongDescription, put.FLAGS,
                put.tools.size()));
        for (size_t i = 0; i < put.tools.size(); ++i) {
            QCOMPARE(SetDump::line(got->tools[i]), SetDump::line(put.tools[i]));
            QCOMPARE(got->tools[i].Picture.convertToFormat(QImage::Format_ARGB32),
                put.tools[i].Picture.convertToFormat(QImage::Format_ARGB32));
        }
    }

    void damaged()
    {
        QVERIFY(
            SnapshotWriter(everything(), path(u"s"_qs)).finish() == SnapshotWriter::State::Done);
        const QByteArray whole = Files::contentOf(path(u"s"_qs));
        for (qsizetype size = 0; size < whole.size(); size += size < 300 ? 1 : 49999) {
            QVERIFY(Files::put(path(u"s"_qs), whole.left(size)));
            QVERIFY(!ToolSetSnapshot::read(path(u"s"_qs)));
            QByteArray wrong = whole;
            for (qsizetype i = size; i < size + 8; ++i)
                wrong[i] = '\xFF'; // a count, a size, a number of tools
            QVERIFY(Files::put(path(u"s"_qs), wrong));
            ToolSetSnapshot::read(path(u"s"_qs));
        }
    }

    /// The former snapshot is whole until the next one is.
    void largeSetsAreWrittenInPieces()
    {
        ToolSetSnapshot snapshot;
        snapshot.tools.resize(5);
        QVERIFY(SnapshotWriter(snapshot, path(u"s"_qs)).finish() == SnapshotWriter::State::Done);
        snapshot.tools.resize(5000);
        for (CVBATool &tool : snapshot.tools)
            tool.HelpString = QString(1000, u'x');
        {
            SnapshotWriter cut(snapshot, path(u"s"_qs));
            QVERIFY(cut.writeFor(std::chrono::milliseconds(1)) == SnapshotWriter::State::Writing);
            QCOMPARE(ToolSetSnapshot::read(path(u"s"_qs))->tools.size(), size_t(5));
        }
        QCOMPARE(Sets::files(m_home->path(), u"s*"_qs).size(), 1);
        SnapshotWriter writer(snapshot, path(u"s"_qs));
        int pieces = 1;
        while (writer.writeFor(std::chrono::milliseconds(1)) == SnapshotWriter::State::Writing)
            ++pieces;
        QVERIFY(pieces > 1);
        QCOMPARE(ToolSetSnapshot::read(path(u"s"_qs))->tools.size(), size_t(5000));
    }

    void ofOneProgramAtATime()
    {
        auto first = std::make_unique<SnapshotStore>(path(u"s"_qs));
        const QString kept = first->newPath();
        QVERIFY(Files::put(kept, "1") && Files::put(first->newPath() + u".part", "2"));
        auto second = std::make_unique<SnapshotStore>(path(u"s"_qs));
        QVERIFY(!second->newPath().isEmpty());
        QVERIFY(second->abandoned().isEmpty()); // the first one lives
        first.reset();
        QCOMPARE(second->abandoned(), QStringList(kept));
        SnapshotStore third(path(u"s"_qs));
        QVERIFY(third.abandoned().isEmpty()); // offered by the second one
        second.reset();
        QCOMPARE(third.abandoned(), QStringList(kept)); // who did not answer
        QCOMPARE(Sets::files(path(u"s"_qs), u"*"_qs).size(), 2); // it and a lock
    }

    void keptAndDropped_data()
    {
        // change, what the snapshot has then; end, what the file has then, and the snapshot
        rows<QString, QString, QString, QString, QString>({
            {"deleted, saved", u"delete"_qs, u"x z"_qs, u"save"_qs, u"x z"_qs, u""_qs},
            {"deleted, given up", u"delete"_qs, u"x z"_qs, u"no"_qs, u"x y z"_qs, u""_qs},
            {"deleted, closed with saving", u"delete"_qs, u"x z"_qs, u"yes"_qs, u"x z"_qs, u""_qs},
            {"all deleted, which is not saved", u"all"_qs, u""_qs, u"refused"_qs, u"x y z"_qs,
                u"About a.bmt"_qs},
            {"renamed in place, closed unasked", u"n"_qs, u"x n z"_qs, u"close"_qs, u"x y z"_qs,
                u"x n z"_qs},
            {"renamed in place, saved", u"n"_qs, u"x n z"_qs, u"save"_qs, u"x n z"_qs, u""_qs},
            {"typed into the properties, given up", u"draft"_qs, u"x Y! z"_qs, u""_qs, u"x y z"_qs,
                u""_qs},
            {"saving failed, closed unasked", u"ж"_qs, u"x ж z"_qs, u"close"_qs, u"x y z"_qs,
                u"x ж z"_qs},
        });
    }

    void keptAndDropped()
    {
        const auto [change, kept, end, expectedFile, left] =
            row<QString, QString, QString, QString, QString>();
        Program program(m_home->path());
        frmToolSet *form = program.open(file(u"xyz"_qs));
        ListView *list = Program::listOf(form);
        list->selectRows({1});
        const auto inSnapshot = [&] {
            const auto snapshot = snapshots().isEmpty()
                ? std::nullopt
                : ToolSetSnapshot::read(snapshots().constFirst());
            QStringList names;
            for (size_t i = 0; snapshot && i < snapshot->tools.size(); ++i)
                names += snapshot->tools[i].Description;
            if (snapshot && names.isEmpty())
                names += snapshot->Description;
            return names.join(u' ');
        };
        QVERIFY(snapshots().isEmpty());
        Answers answers;
        if (change == u"delete") {
            program.remove(form, 1);
            QTRY_COMPARE(inSnapshot(), kept);
        } else if (change == u"all") {
            list->selectRows({0, 1, 2});
            program.run(u"silentdelete"_qs);
        } else if (change == u"draft") {
            answers.dialog(u"frmToolProps"_qs, [&, expected = kept](QDialog *dialog) {
                dialog->findChild<QLineEdit *>(u"txtDescription"_qs)->setText(u"Y!"_qs);
                QTRY_COMPARE(inSnapshot(), expected);
                dialog->reject();
            });
            answers.message(u"Do you want to save your changes first?"_qs, QMessageBox::No);
            program.run(u"toolproperties"_qs);
        } else {
            list->StartLabelEdit();
            auto *line = list->currentView()->findChild<QLineEdit *>();
            line->setText(change);
            QTest::keyClick(line, Qt::Key_Return);
            QTRY_COMPARE(inSnapshot(), kept);
            if (change == u"ж") {
                answers.message(u"Error saving tool set: *"_qs, QMessageBox::Ok);
                program.run(u"save"_qs);
                QCOMPARE(inSnapshot(), kept);
            }
        }
        if (end == u"yes" || end == u"no" || end == u"refused")
            answers.message(
                u"Save changes to *"_qs, end == u"no" ? QMessageBox::No : QMessageBox::Yes);
        if (end == u"refused")
            answers.message(u"The toolset must contain*"_qs, QMessageBox::Ok);
        if (end == u"save")
            program.run(u"save"_qs);
        else if (!end.isEmpty())
            QVERIFY(form->parentWidget()->close());
        QCOMPARE(inSnapshot(), left);
        QCOMPARE(snapshots().isEmpty(), left.isEmpty());
        QCOMPARE(Sets::names(path(u"a.bmt"_qs), program.storage), expectedFile);
    }

    void recovering()
    {
        interrupt();
        Program program(m_home->path());
        frmToolSet *opened = program.open(path(u"a.bmt"_qs));
        program.frame.offerRecovery(program.storage.snapshots.abandoned());
        auto *bar = program.frame.findChild<RecoveryBar *>();
        QVERIFY(bar);
        QTRY_VERIFY(bar->isVisible());
        QVERIFY2(bar->text().endsWith(u"a.bmt, Untitled 1"_qs)
                || bar->text().endsWith(u"Untitled 1, a.bmt"_qs),
            qPrintable(bar->text()));
        QCOMPARE(bar->accessibleName(), bar->text());
        QVERIFY(opened->isVisible()); // nothing waited for the answer
        QTest::mouseClick(bar->findChild<QPushButton *>(u"cmdRecover"_qs), Qt::LeftButton);
        program.run(u"newtoolset"_qs);
        QStringList captions;
        frmToolSet *recovered = nullptr;
        for (DocumentWindow *document : program.frame.openDocuments()) {
            captions.append(document->Caption());
            if (document->Caption() == u"Recovered - a.bmt")
                recovered = static_cast<frmToolSet *>(document);
        }
        captions.sort();
        QCOMPARE(captions.join(u'|'),
            path(u"a.bmt"_qs) + u"|Recovered - Untitled 1|Recovered - a.bmt|Untitled 1"_qs);
        QVERIFY(recovered->Dirty());
        QCOMPARE(recovered->Tools().Item(1)->Description, u"ж"_qs);
        QCOMPARE(recovered->Tools().Count(), 2);
        QCOMPARE(snapshots().size(), 2); // still kept, now by this program
        QTRY_VERIFY(!program.frame.findChild<RecoveryBar *>());

        // Its first save asks for a name, and proposes none that would replace the file.
        recovered->Document().renameInPlace(recovered->Document().toolAt(1), u"n"_qs);
        program.frame.activateDocument(recovered);
        Answers answers;
        QString proposed;
        answers.dialog(u"QFileDialog"_qs, [&](QDialog *dialog) {
            proposed = dialog->findChild<QLineEdit *>(u"fileNameEdit"_qs)->text();
            Answers::choose(qobject_cast<QFileDialog *>(dialog), path(u"b.bmt"_qs));
        });
        program.run(u"save"_qs);
        QCOMPARE(proposed, u"Recovered - a.bmt"_qs);
        QCOMPARE(Sets::names(path(u"b.bmt"_qs), program.storage), u"n z"_qs);
        QCOMPARE(Sets::names(path(u"a.bmt"_qs), program.storage), u"x y z"_qs);
        QCOMPARE(recovered->Caption(), path(u"b.bmt"_qs));
        QCOMPARE(snapshots().size(), 1);
    }

    void discarding()
    {
        interrupt();
        Program program(m_home->path());
        program.frame.offerRecovery(program.storage.snapshots.abandoned());
        Answers answers;
        for (const auto button : {QMessageBox::No, QMessageBox::Yes}) {
            QCOMPARE(snapshots().size(), 2);
            answers.message(u"Do you want to delete the changes that were not saved?"_qs, button);
            press(program, "cmdDiscard");
        }
        QVERIFY(snapshots().isEmpty());
        QTRY_VERIFY(!program.frame.findChild<RecoveryBar *>());
    }

    void unreadable()
    {
        interrupt();
        for (const QString &snapshot : snapshots())
            QVERIFY(Files::put(snapshot, "no snapshot"));
        Program program(m_home->path());
        program.frame.offerRecovery(program.storage.snapshots.abandoned());
        Answers answers;
        for (int i = 0; i < 2; ++i)
            answers.message(u"The unsaved changes in *"_qs, QMessageBox::Ok);
        press(program, "cmdRecover");
        QVERIFY(program.frame.openDocuments().isEmpty());
        QCOMPARE(Sets::files(path(u"data/recovery"_qs)).size(), 2); // not thrown away
        QVERIFY(snapshots().isEmpty());
    }

private:
    QString path(const QString &name) const { return m_home->filePath(name); }
    QString file(const QString &names)
    {
        ToolSetStorage storage(1252, m_home->path(), m_home->path());
        return Sets::put(path(u"a.bmt"_qs), names, storage) ? path(u"a.bmt"_qs) : QString();
    }
    QStringList snapshots() const
    {
        return Sets::files(path(u"data/snapshots"_qs), u"*.snapshot"_qs);
    }
    /// A button of the bar that offers recovery.
    static void press(Program &program, const char *button)
    {
        auto *bar = program.frame.findChild<RecoveryBar *>();
        QVERIFY(bar);
        QTRY_VERIFY(bar->isVisible());
        QTest::mouseClick(child<QPushButton>(bar, button), Qt::LeftButton);
        program.run(QString());
    }

    /// Leaves snapshots behind as a program does that is killed.
    void interrupt()
    {
        Program program(m_home->path());
        frmToolSet *form = program.open(file(u"xyz"_qs));
        form->Document().renameInPlace(form->Document().toolAt(1), u"ж"_qs);
        program.remove(form, 1);
        program.run(u"newtoolset"_qs);
        {
            Answers answers;
            answers.dialog(u"frmToolProps"_qs, &QDialog::reject);
            program.run(u"newtool"_qs);
        }
        QTRY_COMPARE(snapshots().size(), 2);
    }

    std::unique_ptr<QTemporaryDir> m_home;
};

TSM_TEST(Snapshots_test);
#include "tst_Snapshots.moc"
