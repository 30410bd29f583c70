#include "platform/desktop/CommonDialog.h"
#include "platform/desktop/Toolbar.h"
#include "richtext/frmToolHelp.h"
#include "shell/BusyProgress.h"
#include "shell/CFileList.h"
#include "shell/RecentFileMenu.h"
#include "support/Answers.h"
#include "support/Files.h"
#include "support/Program.h"
#include "support/TestDrag.h"
#include "support/TestRunner.h"

#include <QtWidgets>

/// The real frame with real tool set windows in it.
class MDI_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        start();
    }
    void cleanup() { m_program.reset(); }

    void commandsRunInOrder()
    {
        for (const QString &word :
            {u"newtoolset"_qs, u"list"_qs, u"no such word"_qs, u"newtoolset"_qs})
            frame().setAction(word);
        QCOMPARE(captions(), QString()); // nothing runs inside the caller
        m_program->waitForQueue();
        QCOMPARE(captions(), u"Untitled 1|Untitled 2"_qs);
        QCOMPARE(frame().openDocuments().at(1)->View(), 2); // as the active window's
        // Taken from the queue by hand, a word is not run.
        frame().setAction(u"newtoolset"_qs);
        QCOMPARE(frame().Action(), u"newtoolset"_qs);
        QCOMPARE(frame().Action(), QString());
        m_program->waitForQueue();
        QCOMPARE(captions(), u"Untitled 1|Untitled 2"_qs);
        subWindow(1)->close();
        m_program->run(u"newtoolset"_qs);
        QCOMPARE(captions(), u"Untitled 1|Untitled 3"_qs); // numbers are not used again
    }

    void commandLine()
    {
        start(u"   "_qs);
        QCOMPARE(captions(), QString());
        Answers answers;
        answers.message(u"Error loading tool set: *"_qs, QMessageBox::Ok);
        start(u" \t"_qs); // not of blanks alone
        start(file("a.bmt"));
        QCOMPARE(captions(), path("a.bmt"));
    }

    void openingTwice()
    {
        for (const char *name : {"a.bmt", "b.bmt"})
            m_program->open(file(name));
        QVERIFY(Files::put(path("foreign.bmt"), "no tools"));
        m_program->open(path("foreign.bmt"));
        QCOMPARE(frame().panelText(Frame::noticePanel), u"Not a tool set."_qs);
        subWindow(2)->close();
        subWindow(0)->showMinimized();
        m_program->open(path("a.bmt"));
        QCOMPARE(frame().panelText(Frame::noticePanel), QString());
        QCOMPARE(captions(), path("a.bmt") + u'|' + path("b.bmt"));
        QCOMPARE(frame().activeDocument(), frame().openDocuments().at(0));
        QVERIFY(!subWindow(0)->isMinimized());
        subWindow(1)->showMaximized();
        m_program->open(path("a.bmt")); // in its normal state, also from a maximised window
        QCOMPARE(frame().activeDocument(), frame().openDocuments().at(0));
        QVERIFY(!subWindow(0)->isMaximized());
    }

    void recentFiles()
    {
        m_program->open(file("a & b.bmt"));
        m_program->open(file("c.bmt"));
        // In the frame and in each window: a line that nobody sees, the paths, a separator.
        const QStringList expected {u"-"_qs, path("c.bmt").toUpper(), path("a && b.bmt").toUpper()};
        int found = 0;
        for (const QMenu *menu : frame().findChildren<QMenu *>()) {
            QStringList items;
            for (int i = 0; i < 3; ++i) {
                const auto *item = menu->findChild<QAction *>(u"mnuFileList(%1)"_qs.arg(i));
                items.append(item && item->isVisible() ? item->text() : u"-"_qs);
            }
            if (!menu->findChild<QAction *>(u"mnuFileList(0)"_qs))
                continue;
            ++found;
            QCOMPARE(items, expected);
            QVERIFY(menu->findChild<QAction *>(u"mnuFileList(3)"_qs)->isSeparator());
            QVERIFY(!menu->findChild<QAction *>(u"mnuFileList(4)"_qs));
        }
        QCOMPARE(found, 3);
    }

    /// The list keeps what the file has; the menus show what a screen has room for.
    void manyRecentFiles()
    {
        QByteArray settings = "[FileList]\nMax%20Count=4000\n";
        for (int i = 1; i <= 4000; ++i)
            settings += u"Recent%20File%20%1=/SET%1.BMT\n"_qs.arg(i).toUtf8();
        const QString folder = path("settings");
        QVERIFY(
            QDir().mkpath(folder) && Files::put(folder + u"/VB Quillon For VB5.conf"_qs, settings));
        start();
        QCOMPARE(int(frame().FileListHandler().Count()), 4000);
        const auto item = [this](int i) {
            return frame().findChild<QAction *>(u"mnuFileList(%1)"_qs.arg(i));
        };
        QCOMPARE(item(RecentFileMenu::longest)->text(), u"/SET50.BMT"_qs);
        QVERIFY(item(RecentFileMenu::longest + 1)->isSeparator());
        QVERIFY(!item(RecentFileMenu::longest + 2));
    }

    void recentEntryFindsItsFile()
    {
        m_program->open(file("Mixed Case.bmt"));
        subWindow(0)->close();
        for (int time = 0; time < 2; ++time) {
            frame().findChild<QAction *>(u"mnuFileList(1)"_qs)->trigger();
            m_program->waitForQueue();
            QCOMPARE(captions(), path("Mixed Case.bmt")); // its real spelling, and once
        }
    }

    void openDialog()
    {
        Answers answers;
        answers.file(u"Open Tool Set"_qs, QString());
        m_program->run(u"open"_qs);
        QCOMPARE(captions(), QString());
        answers.file(u"Open Tool Set"_qs, file("a.bmt"));
        m_program->run(u"open"_qs);
        QCOMPARE(captions(), path("a.bmt"));
    }

    void filesFromTheDesktop()
    {
        auto *area = frame().findChild<QMdiArea *>()->viewport();
        QCOMPARE(TestDrag::dropFiles(area, {file("a.bmt"), path("a.exe"), file("b.BMT")}),
            Qt::CopyAction);
        // Several at once; with a question open they wait, since it may be about the windows.
        Answers answers;
        answers.dialog(u"frmAbout"_qs, [this](QDialog *dialog) {
            QTest::qWait(50);
            QCOMPARE(captions(), QString());
            dialog->accept();
        });
        frame().showAbout();
        m_program->waitForQueue();
        QCOMPARE(captions(), path("a.bmt") + u'|' + path("b.BMT"));
        QCOMPARE(TestDrag::dropFiles(area, {path("a.exe"), path("none.bmt"), m_home->path()}),
            Qt::IgnoreAction);
        // On a window's label, too; and opened before: it comes to the front.
        QCOMPARE(TestDrag::dropFiles(
                     frame().openDocuments().at(1)->widget(), {path("a.bmt")}, Qt::LinkAction),
            Qt::LinkAction);
        m_program->waitForQueue();
        QCOMPARE(frame().activeDocument()->Caption(), path("a.bmt"));
    }

    void progressOfLongWork()
    {
        m_program->run(u"newtoolset"_qs);
        const int height = frame().statusBar()->sizeHint().height();
        {
            BusyProgress quick(frame(), u"Opening"_qs);
            quick.show(1, 2);
            QVERIFY(!frame().findChild<QProgressBar *>()); // for quick work there is none
        }
        {
            BusyProgress progress(frame(), u"Saving"_qs, 0);
            progress.show(0, 0); // nothing to tell
            frame().setAction(u"newtoolset"_qs);
            frame().findChild<QTimer *>(u"tmrAction"_qs)->setInterval(0); // due while it paints
            progress.show(1, 4);
            QCOMPARE(captions(), u"Untitled 1"_qs); // no command runs in the midst of other work
            auto *bar = frame().findChild<QProgressBar *>();
            QVERIFY(bar && bar->isVisible());
            QCOMPARE(bar->value(), 25);
            QCOMPARE(frame().statusBar()->sizeHint().height(), height);
            QCOMPARE(bar->accessibleName(), u"Saving"_qs);
        }
        QVERIFY(!frame().findChild<QProgressBar *>()->isVisible());
        m_program->waitForQueue();
        QCOMPARE(captions(), u"Untitled 1|Untitled 2"_qs); // asked for meanwhile, done afterwards
    }

    void dragGate()
    {
        mTSM &state = m_program->state;
        QVERIFY(!state.DragGate());
        m_program->open(file("a.bmt"));
        QVERIFY(!state.DragGate()); // not yet
        QTRY_VERIFY(state.DragGate());
        m_program->open(path("a.bmt")); // already open: the gate stays closed
        QVERIFY(!state.DragGate());
        Answers answers;
        answers.file(u"Open Tool Set"_qs, QString()); // given up: the windows go on as they were
        m_program->run(u"open"_qs);
        QTRY_VERIFY(state.DragGate());
        for (const bool open : {false, true, false}) // closed before it has opened
            state.setDragGate(open);
        QVERIFY(!frame().findChild<QTimer *>(u"tmrDrag"_qs)->isActive());
    }

    void toolbarAndMenusFollowTheWindows()
    {
        QCOMPARE(enabledButtons(), u"newtoolset open macro"_qs);
        QCOMPARE(menuTexts(), u"&File &Help"_qs);
        m_program->run(u"newtoolset"_qs);
        QCOMPARE(enabledButtons(),
            u"newtoolset open save newtool print properties macro list details"_qs);
        QCOMPARE(menuTexts(), u"&File &Edit &View &Window &Help"_qs);
        Answers answers;
        answers.dialog(u"frmToolProps"_qs, &QDialog::reject);
        m_program->run(u"newtool"_qs);
        m_program->run(u"copy"_qs);
        QCOMPARE(enabledButtons().split(u' ').size(), 14);
        answers.message(u"Save changes to Untitled 1"_qs, QMessageBox::No);
        subWindow(0)->close();
        m_program->waitForQueue();
        QCOMPARE(enabledButtons(), u"newtoolset open macro"_qs);
        QCOMPARE(menuTexts(), u"&File &Help"_qs);
    }

    /// Screen readers toggle the view buttons, where the mouse clicks them.
    void viewButtons()
    {
        m_program->run(u"newtoolset"_qs);
        const auto button = [&](const char *name) {
            const auto *bar = frame().findChild<Toolbar *>();
            return qobject_cast<QToolButton *>(
                bar->widgetForAction(bar->button(QLatin1String(name))));
        };
        const auto view = [&] {
            m_program->waitForQueue();
            const bool list = button("list")->isChecked();
            return button("details")->isChecked() == list ? 0 : m_program->window()->View();
        };
        QAccessible::queryAccessibleInterface(button("list"))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::toggleAction());
        QCOMPARE(view(), int(ListView::lvwList));
        button("list")->click(); // stays pressed
        QCOMPARE(view(), int(ListView::lvwList));
        button("details")->click();
        QCOMPARE(view(), int(ListView::lvwReport));
        QVERIFY(!frame().close()); // takes the window only
        QVERIFY(!button("list")->isChecked() && !button("details")->isChecked());
    }

    void closingInTwoStages()
    {
        m_program->open(file("a.bmt"));
        m_program->run(u"newtoolset"_qs);
        frame().setGeometry(40, 50, 500, 400);
        // The help of a tool counts as a window other than the frame.
        QPointer<frmToolHelp> help = new frmToolHelp(&frame());
        help->ShowHelp(QString(), 0, 0, u"A"_qs);
        QVERIFY(!frame().close());
        QVERIFY(frame().isVisible() && !(help && help->isVisible()));
        QCOMPARE(captions(), QString());
        QCOMPARE(enabledButtons(), u"newtoolset open macro"_qs);
        QCOMPARE(menuTexts(), u"&File &Help"_qs);
        const QString application = u"VB Quillon For VB5"_qs;
        QCOMPARE(m_program->store.GetSetting(application, u"FileList"_qs, u"Recent File 1"_qs),
            path("a.bmt").toUpper()); // before the program ends
        frame().FileListHandler().setMax(3);
        QVERIFY(frame().close());
        QCOMPARE(
            m_program->store.GetSetting(application, u"FileList"_qs, u"Max Count"_qs), u"3"_qs);
        start();
        QCOMPARE(frame().geometry(), QRect(40, 50, 500, 400));
        QCOMPARE(frame().FileListHandler().Count(), 1);
    }

    void closingCancelled()
    {
        m_program->open(file("a.bmt"));
        Answers answers;
        answers.dialog(u"frmToolProps"_qs, &QDialog::reject);
        m_program->run(u"newtoolset"_qs);
        m_program->run(u"newtool"_qs);
        answers.message(u"Save changes to Untitled 1"_qs, QMessageBox::Cancel);
        QVERIFY(!frame().close());
        QCOMPARE(captions(), path("a.bmt") + u"|Untitled 1"_qs);
        // A save given up in its dialog lets the window go, and keeps the set.
        answers.message(u"Save changes to Untitled 1"_qs, QMessageBox::Yes);
        answers.file(u"Save Tool Set"_qs, QString());
        QVERIFY(!frame().close());
        QCOMPARE(captions(), QString());
        QCOMPARE(Sets::files(path("data/snapshots"), u"*.snapshot"_qs).size(), 1);
    }

    void keysOfTheWindows()
    {
        for (int i = 0; i < 3; ++i)
            m_program->run(u"newtoolset"_qs);
        QVERIFY(QTest::qWaitForWindowActive(&frame()));
        QStringList order;
        for (int i = 0; i < 4; ++i) {
            QTest::keyClick(&frame(), Qt::Key_F6, Qt::ControlModifier);
            order.append(frame().activeDocument()->Caption().right(1));
        }
        QCOMPARE(order.join(QString()), u"1231"_qs);
        // The one used before comes to the front, not the next one.
        frame().activateDocument(frame().openDocuments().at(2));
        frame().activateDocument(frame().openDocuments().at(0));
        QTest::keyClick(&frame(), Qt::Key_F4, Qt::ControlModifier);
        m_program->waitForQueue();
        QCOMPARE(captions(), u"Untitled 2|Untitled 3"_qs);
        QCOMPARE(frame().activeDocument()->Caption(), u"Untitled 3"_qs);
    }

    /// The program's icon is drawn when the frame stands; a window may have come before.
    void iconsOfTheWindows()
    {
        m_program->run(u"newtoolset"_qs);
        QPixmap green(64, 64);
        green.fill(Qt::green);
        frame().setWindowIcon(green);
        m_program->run(u"newtoolset"_qs);
        for (int i = 0; i < 2; ++i) {
            const QImage title = subWindow(i)->grab(QRect(0, 0, 40, 30)).toImage();
            const auto *pixels = reinterpret_cast<const QRgb *>(title.constBits());
            QVERIFY(std::count(pixels, pixels + title.width() * title.height(), 0xFF00FF00) > 50);
        }
    }

    void captionOfAMaximisedChild()
    {
        m_program->run(u"newtoolset"_qs);
        subWindow(0)->showMaximized();
        QTRY_VERIFY(subWindow(0)->isMaximized());
        QCOMPARE(frame().windowTitle(), u"VB Quillon Tool Set Manager"_qs);
        m_program->open(file("a.bmt"));
        QCOMPARE(frame().windowTitle(), u"VB Quillon Tool Set Manager"_qs);
    }

    void about()
    {
        Answers answers;
        QString texts;
        answers.dialog(u"frmAbout"_qs, [&texts](QDialog *dialog) {
            for (const QLabel *label : dialog->findChildren<QLabel *>())
                texts += label->text() + u'\n';
            dialog->accept();
        });
        frame().showAbout();
        for (const QString &part : {u"VB Quillon Tool Set Manager"_qs, u"Version"_qs,
                 QString(u"Qt "_qs + QLatin1StringView(qVersion())), u"MIT"_qs})
            QVERIFY2(texts.contains(part), qPrintable(part));
    }

    void filterStrings()
    {
        using Entry = CommonDialog::FilterEntry;
        QCOMPARE(CommonDialog::filterEntries(u"Tool Sets (bmt)|*.bmt"_qs),
            QList<Entry>({{u"Tool Sets (bmt)"_qs, u"*.bmt"_qs}}));
        // A piece appended without a separator glues two entries together.
        QCOMPARE(CommonDialog::filterEntries(u"Help files(*.hlp)|*.hlpAll Files|*.*"_qs),
            QList<Entry>(
                {{u"Help files(*.hlp)"_qs, u"*.hlpAll Files"_qs}, {u"*.*"_qs, u"*.*"_qs}}));
        QVERIFY(CommonDialog::filterEntries(QString()).isEmpty());
    }

private:
    QString path(const char *name) const { return m_home->filePath(QLatin1String(name)); }
    QString file(const char *name)
    {
        return Sets::put(path(name), u"x"_qs, m_program->storage) ? path(name) : QString();
    }
    void start(const QString &commandLine = QString())
    {
        m_program.reset();
        m_program = std::make_unique<Program>(m_home->path(), QStringList(), commandLine);
        m_program->waitForQueue();
    }
    MDI &frame() { return m_program->frame; }
    QString captions()
    {
        QStringList all;
        for (const DocumentWindow *document : frame().openDocuments())
            all.append(document->Caption());
        return all.join(u'|');
    }
    QString menuTexts()
    {
        QStringList texts;
        for (const QAction *action : frame().menuBar()->actions())
            texts.append(action->text());
        return texts.join(u' ');
    }
    QString enabledButtons()
    {
        QStringList keys;
        for (const QAction *button : frame().findChild<Toolbar *>()->buttons()) {
            if (button->isEnabled())
                keys.append(Toolbar::key(button));
        }
        return keys.join(u' ');
    }
    QMdiSubWindow *subWindow(int index)
    {
        return qobject_cast<QMdiSubWindow *>(
            frame().openDocuments().at(index)->widget()->parentWidget());
    }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<Program> m_program;
};

TSM_TEST(MDI_test);
#include "tst_MDI.moc"
