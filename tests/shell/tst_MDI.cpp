#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "platform/desktop/CommonDialog.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/desktop/Toolbar.h"
#include "platform/picture/PictureBox.h"
#include "platform/print/Printers.h"
#include "shell/BusyProgress.h"
#include "shell/CFileList.h"
#include "shell/MDI.h"
#include "shell/Settings.h"
#include "shell/mTSM.h"
#include "support/Answers.h"
#include "support/TestDrag.h"
#include "support/TestRunner.h"
#include "toolset/frmToolSet.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

/// The real frame with real tool set windows in it.
class MDI_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void untitledWindowsCountOn();
    void commandsRunInOrder();
    void commandLine();
    void openingTwice();
    void recentFiles();
    void recentEntryFindsItsFile();
    void openDialog();
    void filesFromTheDesktop();
    void progressOfLongWork();
    void dragGate();
    void toolbarFollowsTheWindows();
    void menusFollowTheWindows();
    void closingInTwoStages();
    void closingCancelled();
    void captionOfAMaximisedChild();
    void about();
    void filterStrings();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    QString file(const char *name);
    void makeFrame(const QString &commandLine = {});
    /// Queues a word and waits until the queue has run dry.
    void run(const QString &word);
    void waitForQueue();
    QStringList captions() const;
    QString menuTexts() const;
    QString enabledButtons() const;
    QMdiSubWindow *subWindow(int index) const
    {
        return qobject_cast<QMdiSubWindow *>(
            m_frame->openDocuments().at(index)->widget()->parentWidget());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ToolSetStorage> m_storage;
    Printers m_printers {[] { return QStringList(); }};
    std::unique_ptr<SettingsStore> m_store;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<mTSM> m_state;
    std::unique_ptr<MDI> m_frame;
};

void MDI_test::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_storage = std::make_unique<ToolSetStorage>(1252, path("scratch"), path("data"));
    m_store = std::make_unique<SettingsStore>(path("settings"));
    makeFrame();
}

void MDI_test::cleanup()
{
    m_frame.reset();
    m_state.reset();
}

void MDI_test::makeFrame(const QString &commandLine)
{
    m_frame.reset();
    m_state = std::make_unique<mTSM>();
    m_settings = std::make_unique<Settings>(m_folder->path());
    m_frame = std::make_unique<MDI>(
        *m_state, *m_settings, *m_store,
        [this](Frame &frame) -> DocumentWindow * {
            return new frmToolSet(frame, *m_state, *m_settings, *m_store, *m_storage, m_printers);
        },
        commandLine);
    m_frame->show();
    waitForQueue();
}

QString MDI_test::file(const char *name)
{
    CVBATools set(*m_storage);
    auto tool = std::make_shared<CVBATool>();
    tool->Description = u"tool"_qs;
    set.Add(tool);
    PictureBox box(Twips {275}, Twips {275});
    return set.Save(path(name), {u"tool"_qs}, box) ? path(name) : QString();
}

void MDI_test::waitForQueue()
{
    QTRY_VERIFY(!m_frame->findChild<QTimer *>(u"tmrAction"_qs)->isActive());
}

void MDI_test::run(const QString &word)
{
    m_frame->setAction(word);
    waitForQueue();
}

QStringList MDI_test::captions() const
{
    QStringList all;
    for (DocumentWindow *document : m_frame->openDocuments())
        all.append(document->Caption());
    return all;
}

QString MDI_test::menuTexts() const
{
    QStringList texts;
    for (const QAction *action : m_frame->menuBar()->actions())
        texts.append(action->text());
    return texts.join(u' ');
}

QString MDI_test::enabledButtons() const
{
    QStringList keys;
    for (const QAction *button : m_frame->findChild<Toolbar *>()->buttons()) {
        if (button->isEnabled())
            keys.append(Toolbar::key(button));
    }
    return keys.join(u' ');
}

void MDI_test::untitledWindowsCountOn()
{
    run(u"newtoolset"_qs);
    QCOMPARE(captions(), QStringList(u"Untitled 1"_qs));
    subWindow(0)->close();
    run(u"newtoolset"_qs);
    QCOMPARE(captions(), QStringList(u"Untitled 2"_qs));
}

void MDI_test::commandsRunInOrder()
{
    m_frame->setAction(u"newtoolset"_qs);
    m_frame->setAction(u"list"_qs);
    m_frame->setAction(u"no such word"_qs);
    m_frame->setAction(u"newtoolset"_qs);
    QVERIFY(captions().isEmpty()); // nothing runs inside the caller
    waitForQueue();
    QCOMPARE(captions(), QStringList({u"Untitled 1"_qs, u"Untitled 2"_qs}));
    QCOMPARE(m_frame->openDocuments().at(1)->View(), 2); // as the active window's
    // Taken from the queue by hand, a word is not run.
    m_frame->setAction(u"newtoolset"_qs);
    QCOMPARE(m_frame->Action(), u"newtoolset"_qs);
    QCOMPARE(m_frame->Action(), QString());
    waitForQueue();
    QCOMPARE(captions().size(), 2);
}

void MDI_test::commandLine()
{
    makeFrame(u"   "_qs);
    QVERIFY(captions().isEmpty());
    makeFrame(file("a.bmt"));
    QCOMPARE(captions(), QStringList(path("a.bmt")));
}

void MDI_test::openingTwice()
{
    m_frame->openFile(file("a.bmt"));
    waitForQueue();
    m_frame->openFile(file("b.bmt"));
    waitForQueue();
    subWindow(0)->showMinimized();
    m_frame->openFile(path("a.bmt"));
    waitForQueue();
    QCOMPARE(captions(), QStringList({path("a.bmt"), path("b.bmt")}));
    QCOMPARE(m_frame->activeDocument(), m_frame->openDocuments().at(0));
    QVERIFY(!subWindow(0)->isMinimized());
}

void MDI_test::recentFiles()
{
    m_frame->openFile(file("a & b.bmt"));
    waitForQueue();
    m_frame->openFile(file("c.bmt"));
    waitForQueue();
    // In the frame and in each window: item 0, the paths, a separator.
    QList<QMenu *> menus = m_frame->findChildren<QMenu *>();
    int found = 0;
    for (QMenu *menu : menus) {
        QAction *first = menu->findChild<QAction *>(u"mnuFileList(1)"_qs);
        if (!first)
            continue;
        ++found;
        QVERIFY(!menu->findChild<QAction *>(u"mnuFileList(0)"_qs)->isVisible());
        QCOMPARE(first->text(), path("c.bmt").toUpper());
        QCOMPARE(
            menu->findChild<QAction *>(u"mnuFileList(2)"_qs)->text(), path("a && b.bmt").toUpper());
        QVERIFY(menu->findChild<QAction *>(u"mnuFileList(3)"_qs)->isSeparator());
        QVERIFY(!menu->findChild<QAction *>(u"mnuFileList(4)"_qs));
    }
    QCOMPARE(found, 3);
}

void MDI_test::recentEntryFindsItsFile()
{
    m_frame->openFile(file("Mixed Case.bmt"));
    waitForQueue();
    subWindow(0)->close();
    m_frame->findChild<QAction *>(u"mnuFileList(1)"_qs)->trigger();
    waitForQueue();
    QCOMPARE(captions(), QStringList(path("Mixed Case.bmt"))); // its real spelling
    m_frame->findChild<QAction *>(u"mnuFileList(1)"_qs)->trigger();
    waitForQueue();
    QCOMPARE(captions().size(), 1);
}

void MDI_test::openDialog()
{
    Answers answers;
    answers.file(u"Open Tool Set"_qs, QString());
    run(u"open"_qs);
    QVERIFY(captions().isEmpty());
    answers.file(u"Open Tool Set"_qs, file("a.bmt"));
    run(u"open"_qs);
    QCOMPARE(captions(), QStringList(path("a.bmt")));
}

void MDI_test::filesFromTheDesktop()
{
    auto *area = m_frame->findChild<QMdiArea *>()->viewport();
    QCOMPARE(
        TestDrag::dropFiles(area, {file("a.bmt"), path("a.exe"), file("b.BMT")}), Qt::CopyAction);
    // Several at once; with a question open they wait, since it may be about the windows.
    Answers answers;
    answers.dialog(u"frmAbout"_qs, [this](QDialog *dialog) {
        QTest::qWait(50);
        QVERIFY(captions().isEmpty());
        dialog->accept();
    });
    m_frame->showAbout();
    waitForQueue();
    QCOMPARE(captions(), QStringList({path("a.bmt"), path("b.BMT")}));
    QCOMPARE(TestDrag::dropFiles(area, {path("a.exe"), path("none.bmt"), m_folder->path()}),
        Qt::IgnoreAction);
    // On a window's label, too; and opened before: it comes to the front.
    QCOMPARE(TestDrag::dropFiles(
                 m_frame->openDocuments().at(1)->widget(), {path("a.bmt")}, Qt::LinkAction),
        Qt::LinkAction);
    waitForQueue();
    QCOMPARE(m_frame->activeDocument()->Caption(), path("a.bmt"));
}

void MDI_test::progressOfLongWork()
{
    run(u"newtoolset"_qs);
    {
        BusyProgress quick(*m_frame, u"Opening"_qs);
        quick.show(1, 2);
        QVERIFY(!m_frame->findChild<QProgressBar *>()); // for quick work there is none
    }
    {
        BusyProgress progress(*m_frame, u"Saving"_qs, 0);
        progress.show(0, 0); // nothing to tell
        m_frame->setAction(u"newtoolset"_qs);
        m_frame->findChild<QTimer *>(u"tmrAction"_qs)->setInterval(0); // due while it paints
        progress.show(1, 4);
        QCOMPARE(captions().size(), 1); // no command runs in the midst of other work
        auto *bar = m_frame->findChild<QProgressBar *>();
        QVERIFY(bar && bar->isVisible());
        QCOMPARE(bar->value(), 25);
        QCOMPARE(bar->accessibleName(), u"Saving"_qs);
    }
    QVERIFY(!m_frame->findChild<QProgressBar *>()->isVisible());
    waitForQueue();
    QCOMPARE(captions().size(), 2); // what was asked for meanwhile happens afterwards
}

void MDI_test::dragGate()
{
    QVERIFY(!m_state->DragGate());
    m_frame->openFile(file("a.bmt"));
    waitForQueue();
    QVERIFY(!m_state->DragGate()); // not yet
    QTRY_VERIFY(m_state->DragGate());
    m_frame->openFile(path("a.bmt")); // already open: the gate stays closed
    waitForQueue();
    QVERIFY(!m_state->DragGate());
    Answers answers;
    answers.file(u"Open Tool Set"_qs, QString()); // given up: the windows go on as they were
    run(u"open"_qs);
    QTRY_VERIFY(m_state->DragGate());
    m_state->setDragGate(false);
    m_state->setDragGate(true);
    m_state->setDragGate(false); // closed before it has opened
    QVERIFY(!m_frame->findChild<QTimer *>(u"tmrDrag"_qs)->isActive());
}

void MDI_test::toolbarFollowsTheWindows()
{
    QCOMPARE(enabledButtons(), u"newtoolset open macro"_qs);
    run(u"newtoolset"_qs);
    QCOMPARE(
        enabledButtons(), u"newtoolset open save newtool print properties macro list details"_qs);
    Answers answers;
    answers.dialog(u"frmToolProps"_qs, &QDialog::reject);
    run(u"newtool"_qs);
    run(u"copy"_qs);
    QCOMPARE(enabledButtons().split(u' ').size(), 14);
    answers.message(u"Save changes to Untitled 1"_qs, QMessageBox::No);
    subWindow(0)->close();
    waitForQueue();
    QCOMPARE(enabledButtons(), u"newtoolset open macro"_qs);
}

void MDI_test::menusFollowTheWindows()
{
    QCOMPARE(menuTexts(), u"&File &Help"_qs);
    run(u"newtoolset"_qs);
    QCOMPARE(menuTexts(), u"&File &Edit &View &Window &Help"_qs);
    subWindow(0)->close();
    QCOMPARE(menuTexts(), u"&File &Help"_qs);
}

void MDI_test::closingInTwoStages()
{
    m_frame->openFile(file("a.bmt"));
    m_frame->setAction(u"newtoolset"_qs);
    waitForQueue();
    m_frame->setGeometry(40, 50, 500, 400);
    QVERIFY(!m_frame->close());
    QVERIFY(m_frame->isVisible());
    QVERIFY(captions().isEmpty());
    QCOMPARE(enabledButtons(), u"newtoolset open macro"_qs);
    QCOMPARE(menuTexts(), u"&File &Help"_qs);
    const QString application = u"VB Quillon For VB5"_qs;
    QVERIFY(m_store->GetAllSettings(application, u"FileList"_qs).isEmpty());
    QVERIFY(m_frame->close());
    QCOMPARE(m_store->GetSetting(application, u"FileList"_qs, u"Recent File 1"_qs),
        path("a.bmt").toUpper());
    makeFrame();
    QCOMPARE(m_frame->geometry(), QRect(40, 50, 500, 400));
    QCOMPARE(m_frame->FileListHandler().Count(), 1);
}

void MDI_test::closingCancelled()
{
    m_frame->openFile(file("a.bmt"));
    m_frame->setAction(u"newtoolset"_qs);
    m_frame->setAction(u"newtool"_qs);
    Answers answers;
    answers.dialog(u"frmToolProps"_qs, &QDialog::reject);
    waitForQueue();
    answers.message(u"Save changes to Untitled 1"_qs, QMessageBox::Cancel);
    QVERIFY(!m_frame->close());
    QCOMPARE(captions().size(), 2);
    // A save given up in its dialog lets the set go, as No does.
    answers.message(u"Save changes to Untitled 1"_qs, QMessageBox::Yes);
    answers.file(u"Save Tool Set"_qs, QString());
    QVERIFY(!m_frame->close());
    QVERIFY(captions().isEmpty());
    QCOMPARE(QDir(path("data/recovery")).entryList(QDir::Files).size(), 1);
}

void MDI_test::captionOfAMaximisedChild()
{
    run(u"newtoolset"_qs);
    subWindow(0)->showMaximized();
    QTRY_VERIFY(subWindow(0)->isMaximized());
    QCOMPARE(m_frame->windowTitle(), u"VB Quillon Tool Set Manager"_qs);
    m_frame->openFile(file("a.bmt"));
    waitForQueue();
    QCOMPARE(m_frame->windowTitle(), u"VB Quillon Tool Set Manager"_qs);
}

void MDI_test::about()
{
    Answers answers;
    QString texts;
    answers.dialog(u"frmAbout"_qs, [&texts](QDialog *dialog) {
        for (const QLabel *label : dialog->findChildren<QLabel *>())
            texts += label->text() + u'\n';
        dialog->accept();
    });
    m_frame->showAbout();
    for (const QString &part : {u"VB Quillon Tool Set Manager"_qs, u"Version"_qs,
             QString(u"Qt "_qs + QLatin1StringView(qVersion())), u"MIT"_qs}) {
        QVERIFY2(texts.contains(part), qPrintable(part));
    }
}

void MDI_test::filterStrings()
{
    using Entry = CommonDialog::FilterEntry;
    QCOMPARE(CommonDialog::filterEntries(u"Tool Sets (bmt)|*.bmt"_qs),
        QList<Entry>({{u"Tool Sets (bmt)"_qs, u"*.bmt"_qs}}));
    // A piece appended without a separator glues two entries together.
    QCOMPARE(CommonDialog::filterEntries(u"Help files(*.hlp)|*.hlpAll Files|*.*"_qs),
        QList<Entry>({{u"Help files(*.hlp)"_qs, u"*.hlpAll Files"_qs}, {u"*.*"_qs, u"*.*"_qs}}));
    QVERIFY(CommonDialog::filterEntries(QString()).isEmpty());
}

TSM_TEST(MDI_test);
#include "tst_MDI.moc"
