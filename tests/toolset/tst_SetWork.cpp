#include "support/Answers.h"
#include "support/Files.h"
#include "support/Find.h"
#include "support/Program.h"
#include "support/ProgramFile.h"
#include "support/TestRunner.h"
#include "tooledit/ToolFromFile.h"
#include "toolset/ChangePreview.h"

#include <QtWidgets>

/// The windows that look at many tools: the check and the change of several tools. The drive C: is
/// a folder of the test's own.
class SetWork_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_folder->path()).mkdir(u"c"_qs));
        m_program = std::make_unique<Program>(m_folder->path(), QStringList {Printers::pdfFile()});
        m_program->store.SaveSetting(QString::fromUtf16(Settings::application), u"Drives"_qs,
            u"C:"_qs, m_folder->filePath(u"c"_qs));
        QVERIFY(Sets::put(path("a.bmt"), u"abc"_qs, m_program->storage));
        m_form = m_program->open(path("a.bmt"));
        m_program->frame.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_program->frame));
    }

    void cleanup() { m_program.reset(); }

    void check()
    {
        QVERIFY(Files::put(path("c/A"), {})); // its location is in capitals
        QVERIFY(Files::put(path("c/c"), {}));
        m_program->run(u"check"_qs);
        auto *label = child<QLabel>(m_form, "lblFindings");
        QTRY_COMPARE(label->text(), u"Check: 1 warning, 6 hints"_qs);
        auto *view = child<QTreeView>(m_form, "tvwFindings");
        QVERIFY(view->hasFocus());
        const QString missing = u"The file \"%1\" does not exist."_qs.arg(path("c/B"));
        QCOMPARE(rowOf(view, 0),
            u"Warning|b|Location|"_qs + missing
                + u"|Correct the location, or put the file back."_qs);
        QVERIFY(mark(1).startsWith(
            u"Warning: %1 Correct the location, or put the file back.\nHint: "_qs.arg(missing)));
        QVERIFY(mark(0).startsWith(u"Hint: "_qs));

        // The field is at hand; what is applied there is checked at once.
        Answers answers;
        answers.dialog(u"frmToolProps"_qs, [](QDialog *dialog) {
            auto *location = qobject_cast<QLineEdit *>(dialog->focusWidget());
            QVERIFY(location);
            QCOMPARE(location->objectName(), u"txtLocation"_qs);
            QTest::keyClicks(location, u"C:/a"_qs);
            child<QPushButton>(dialog, "cmdOK")->click();
        });
        QTest::keyClick(view, Qt::Key_Return);
        QTRY_COMPARE(label->text(), u"Check: 6 hints"_qs);
        QTRY_VERIFY(view->hasFocus());
        bool shown = false;
        answers.dialog(u"frmToolProps"_qs, [&shown](QDialog *dialog) {
            shown = true;
            QCOMPARE(dialog->focusWidget()->objectName(), u"rtControl"_qs);
            dialog->close();
        });
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
            view->visualRect(view->model()->index(0, 1)).center());
        QTRY_VERIFY(shown);

        answers.file(u"Print to PDF File"_qs, path("found.pdf"));
        child<QToolButton>(m_form, "cmdPrintFindings")->click();
        QVERIFY(Files::contentOf(path("found.pdf")).startsWith("%PDF"));

        QFile::remove(path("c/c"));
        m_program->run(u"check"_qs); // looks at the disk anew
        QTRY_VERIFY(label->text().startsWith(u"Check: 1 warning"_qs));
        QTest::keyClick(view, Qt::Key_Escape);
        QVERIFY(!view->isVisible() && mark(0) == u"Not enabled"_qs);
        QVERIFY(Program::listOf(m_form)->currentView()->hasFocus());
        QCOMPARE(m_form->Document().stepIndex(), 1); // that of the dialog
    }

    void changingTools()
    {
        Program::listOf(m_form)->selectRows({0, 1});
        change([this](QDialog *dialog) {
            child<QComboBox>(dialog, "cboField")->setCurrentText(u"Name"_qs);
            child<QComboBox>(dialog, "cboSearch")->setCurrentText(u"Regular expression"_qs);
            enter(dialog, "txtFind", u"["_qs);
            QVERIFY(child<QLabel>(dialog, "lblHint")->text().contains(u"is wrong at"_qs));
            enter(dialog, "txtFind", u"[abc]"_qs); // c is not selected
            enter(dialog, "txtReplace", u"n"_qs);
            auto *view = child<QTreeView>(dialog, "tvwChanges");
            QCOMPARE(rowOf(view, 0), u"a|Name|a|n|"_qs);
            QCOMPARE(rowOf(view, 1), u"b|Name|b|n(1)|The name \"n\" is taken."_qs);
            view->setCurrentIndex(view->model()->index(0, 0));
            QTest::keyClick(view, Qt::Key_Space);
            complete(dialog);
            QCOMPARE(rowOf(view, 1), u"b|Name|b|n|"_qs); // a keeps its name
            enter(dialog, "txtReplace", u"\u0416"_qs);
            QVERIFY(!child<QPushButton>(dialog, "cmdApply")->isEnabled());
            enter(dialog, "txtReplace", u"n"_qs);
            child<QComboBox>(dialog, "cboEnabled")->setCurrentText(u"on"_qs);
            complete(dialog);
            child<QPushButton>(dialog, "cmdApply")->click();
        });
        const ToolSetDocument &set = m_form->Document();
        QCOMPARE(set.keysInOrder().join(u' '), u"a n c"_qs);
        QVERIFY(set.toolAt(2)->Enabled && !set.toolAt(1)->Enabled && set.Dirty());
        QCOMPARE(set.undoText(), u"Change of \"b\""_qs);

        QVERIFY(Files::put(path("c/p.exe"),
            ProgramFile::pe({{{}, 1, {ProgramFile::plain(32, qRgb(0, 0, 255))}}})));
        Program::listOf(m_form)->UnselectAll();
        for (const char *button : {"cmdCancel", "cmdApply"}) {
            QCOMPARE(set.stepIndex(), 1);
            change([&](QDialog *dialog) {
                enter(dialog, "txtFind", u"c:/C"_qs);
                enter(dialog, "txtReplace", u"c:\\P.EXE"_qs);
                child<QCheckBox>(dialog, "chkPictures")->setChecked(true);
                auto *events = child<QTreeWidget>(dialog, "tvwEvents");
                events->setCurrentItem(events->topLevelItem(0)->child(0));
                QTest::keyClick(events, Qt::Key_Space);
                complete(dialog);
                auto *view = child<QTreeView>(dialog, "tvwChanges");
                QCOMPARE(view->model()->rowCount(), 5); // three events, location and picture of c
                child<QPushButton>(dialog, button)->click();
            });
        }
        QCOMPARE(set.stepIndex(), 2);
        QCOMPARE(set.toolAt(3)->Location(), u"c:\\P.EXE"_qs);
        QCOMPARE(set.toolAt(3)->Picture, ToolFromFile::make(path("c/p.exe"), {})->Picture);
        QCOMPARE(set.toolAt(1)->VBEvents, 1);
    }

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1StringView(name)); }
    QString mark(int row) const
    {
        return Program::modelOf(m_form)
            ->index(row, 0)
            .data(Qt::AccessibleDescriptionRole)
            .toString();
    }
    static QString rowOf(const QTreeView *view, int row)
    {
        QStringList texts;
        for (int column = 0; column < view->model()->columnCount(); ++column)
            texts.append(view->model()->index(row, column).data().toString());
        return texts.join(u'|');
    }
    void change(const std::function<void(QDialog *)> &act)
    {
        Answers answers;
        answers.dialog(u"frmChangeTools"_qs, [&](QDialog *dialog) {
            act(dialog);
            dialog->close(); // if it is still open, the test has failed
        });
        m_program->run(u"changetools"_qs);
    }
    static void complete(QDialog *dialog)
    {
        QTRY_VERIFY(!child<QTimer>(dialog, "tmrTyping")->isActive());
        QTRY_VERIFY(dialog->findChild<ChangePreview *>()->isComplete());
    }
    static void enter(QDialog *dialog, const char *field, const QString &text)
    {
        child<QLineEdit>(dialog, field)->setText(text);
        complete(dialog);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Program> m_program;
    frmToolSet *m_form = nullptr;
};

TSM_TEST(SetWork_test);
#include "tst_SetWork.moc"
