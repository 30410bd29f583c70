#include "compare/CompareCommands.h"
#include "compare/frmVersions.h"
#include "model/ToolSetSnapshot.h"
#include "shell/Settings.h"
#include "support/Answers.h"
#include "support/Files.h"
#include "support/Find.h"
#include "support/Program.h"
#include "support/TestRunner.h"

#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

/// The earlier versions of a set that was saved several times in the real frame.
class frmVersions_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        m_program = std::make_unique<Program>(m_home->path());
        m_settings = std::make_unique<Settings>(m_home->path());
        new CompareCommands(m_program->frame, *m_settings, m_program->storage);
        m_path = m_home->filePath(u"set.bmt"_qs);
        QVERIFY(Sets::put(m_path, u"abc"_qs, m_program->storage));
        m_window = m_program->open(m_path);
        // Of "abc" there is a backup then, of "bc" another one, and the file has "bcx".
        m_window->Document().remove({1});
        m_program->run(u"save"_qs);
        m_window->Document().append({std::make_shared<CVBATool>()});
        m_program->run(u"save"_qs);
    }
    void cleanup() { m_program.reset(); }

    void differencesFromNow()
    {
        const auto snapshot = [this](const QString &session, const QString &path) {
            const QString folder = m_program->storage.snapshots.folder() + u'/' + session;
            ToolSetSnapshot taken {u"set.bmt"_qs, path, 0, {}, {}, {CVBATool()}};
            taken.tools.front().Description = u"z"_qs;
            return QDir().mkpath(folder)
                && SnapshotWriter(taken, folder + u"/1.snapshot"_qs).finish()
                == SnapshotWriter::State::Done;
        };
        QVERIFY(snapshot(u"left behind"_qs, m_path) && snapshot(u"another"_qs, u"/x.bmt"_qs));
        const QString damaged = copies().constFirst().path;
        QVERIFY(Files::put(damaged, "no tool set"));
        // This window's own snapshot is no earlier version.
        m_window->Document().remove({1});
        QStringList lines;
        show([&](frmVersions *dialog) { lines = linesOf(dialog); });
        lines.sort();
        QCOMPARE(lines,
            QStringList({u"Backup|3|1 tool fewer, 2 tools more|Compare Open Restore"_qs,
                u"Backup||Cannot be read: It is not a tool set.|"_qs,
                u"Unsaved changes|1|2 tools fewer, 1 tool more, other properties|"
                "Compare Open Restore"_qs}));
    }

    void allFromTheFrame()
    {
        qobject_cast<QWidget *>(m_window->parentWidget())->close();
        QStringList lines;
        show([&](frmVersions *dialog) {
            lines = linesOf(dialog);
            QVERIFY(!dialog->findChild<QTreeWidget *>()->isColumnHidden(5));
            QCOMPARE(dialog->findChild<QTreeWidget *>()->topLevelItem(0)->text(5), m_path);
        });
        QCOMPARE(lines,
            QStringList({u"Backup|2|1 tool fewer|Compare Open Restore"_qs,
                u"Backup|3|1 tool fewer, 1 tool more|Compare Open Restore"_qs}));
        // The set is opened for it.
        choose(1, "cmdRestore");
        QCOMPARE(names(m_program->window()), u"a b c"_qs);
    }

    void restore()
    {
        const QByteArray saved = Files::contentOf(m_path);
        choose(1, "cmdRestore");
        ToolSetDocument &set = m_window->Document();
        QCOMPARE(names(m_window), u"a b c"_qs);
        QVERIFY(set.Dirty() && Files::contentOf(m_path) == saved);
        QVERIFY(set.undoText().startsWith(u"Restore of the Version of "_qs));
        m_program->run(u"undo"_qs);
        QCOMPARE(names(m_window), u"b c Tool(1)"_qs);
        QVERIFY(!set.Dirty());
    }

    void openCopyAndCompare()
    {
        const QString version = copies().constLast().path;
        const QByteArray kept = Files::contentOf(version);
        choose(1, "cmdOpenCopy");
        frmToolSet *copy = m_program->window();
        QCOMPARE(names(copy), u"a b c"_qs);
        QVERIFY(copy != m_window && copy->Caption().startsWith(u"Copy - set.bmt, "_qs));
        copy->Document().remove({1, 2});
        {
            Answers answers;
            answers.file(u"Save Tool Set"_qs, m_home->filePath(u"new.bmt"_qs));
            m_program->run(u"save"_qs); // never over the version
        }
        QCOMPARE(Sets::names(m_home->filePath(u"new.bmt"_qs), m_program->storage), u"c"_qs);
        QCOMPARE(Files::contentOf(version), kept);

        m_program->frame.activateDocument(m_window);
        choose(1, "cmdCompare");
        DocumentWindow *comparison = m_program->frame.activeDocument();
        QCOMPARE(comparison->status().contents, u"1 only left, 1 only right"_qs);
        const auto *sets = child<QLabel>(comparison->widget(), "lblSets");
        QVERIFY(sets->text().contains(u"earlier version; stays as it is"_qs));
        QVERIFY(!child<QAction>(comparison->widget(), "copyleft")->isEnabled());
    }

private:
    QList<BackupStore::Copy> copies() { return m_program->storage.backups.copiesOf(m_path); }
    static QString names(frmToolSet *window) { return window->Document().keysInOrder().join(u' '); }
    /// Runs the command; \a act sees the dialog when all versions have been read.
    template <class Act>
    void show(Act act)
    {
        Answers answers;
        answers.dialog(u"frmVersions"_qs, [act](QDialog *dialog) {
            auto *timer = dialog->findChild<QTimer *>(u"tmrPieces"_qs);
            dialog->repaint();
            QTRY_VERIFY(timer->isActive());
            QTRY_VERIFY(!timer->isActive());
            act(static_cast<frmVersions *>(dialog));
            dialog->reject();
        });
        m_program->run(u"versions"_qs);
    }
    void choose(int row, const char *button)
    {
        show([=](frmVersions *dialog) {
            auto *list = dialog->findChild<QTreeWidget *>();
            list->setCurrentItem(list->topLevelItem(row));
            child<QPushButton>(dialog, button)->click();
        });
    }
    /// Kind, tools and difference of each version, and what can be done with it.
    static QStringList linesOf(frmVersions *dialog)
    {
        auto *list = dialog->findChild<QTreeWidget *>();
        QStringList lines;
        for (int row = 0; row < list->topLevelItemCount(); ++row) {
            QTreeWidgetItem *item = list->topLevelItem(row);
            list->setCurrentItem(item);
            QStringList buttons;
            for (const char *name : {"cmdCompare", "cmdOpenCopy", "cmdRestore"}) {
                const auto *button = child<QPushButton>(dialog, name);
                if (button->isEnabled())
                    buttons.append(button->text().remove(u'&').section(u' ', 0, 0));
            }
            lines.append(
                QStringList({item->text(1), item->text(2), item->text(4), buttons.join(u' ')})
                    .join(u'|'));
        }
        return lines;
    }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<Program> m_program;
    std::unique_ptr<Settings> m_settings;
    QString m_path;
    frmToolSet *m_window = nullptr;
};

TSM_TEST(frmVersions_test);
#include "tst_frmVersions.moc"
