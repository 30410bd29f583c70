#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/picture/PictureBox.h"
#include "platform/print/Printers.h"
#include "platform/rtf/RichTextBox.h"
#include "shell/Settings.h"
#include "shell/mTSM.h"
#include "support/Answers.h"
#include "support/FakeFrame.h"
#include "support/Files.h"
#include "support/ProgramFile.h"
#include "support/TestDrag.h"
#include "support/TestRunner.h"
#include "toolset/ToolListModel.h"
#include "toolset/ToolSetMenus.h"
#include "toolset/frmToolSet.h"

#include <QAbstractButton>
#include <QAction>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

/// Real windows on a frame that only notes what they ask of it.
class frmToolSet_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void opening();
    void openingAnOldFile();
    void openingWhatCannotBeRead_data();
    void openingWhatCannotBeRead();
    void sortRules();
    void savingInPositionOrder();
    void savingAnEmptySet();
    void saveAs();
    void saveAsGivenUp();
    void questionBeforeClosing_data();
    void questionBeforeClosing();
    void nothingIsLostWhenSavingFails();
    void renameInPlace();
    void commandGroups();
    void menuItems();
    void exitStopsAtACancel();

    void pasteIntoAnotherWindow_data();
    void pasteIntoAnotherWindow();
    void secondCutGivesUpTheFirst();
    void moveWithinTheWindow();
    void sourceClosedBeforeThePaste();
    void deleteWhileACutIsPending();
    void deleteAsks();
    void newTool();
    void clipboardKeysDuringARename();
    void movingByKeyboard();
    void droppingFiles();

    void toolProperties();
    void toolSetProperties();
    void toolHelp();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    /// A file with tools of these one-letter names.
    QString file(const char *name, const QString &tools);
    frmToolSet *window(const QString &path);
    frmToolSet *newWindow();
    static ListView *listOf(frmToolSet *window) { return window->findChild<ListView *>(); }
    static ToolListModel *modelOf(frmToolSet *window)
    {
        return window->findChild<ToolListModel *>();
    }
    static ToolSetMenus *menusOf(frmToolSet *window) { return window->findChild<ToolSetMenus *>(); }
    /// Runs "newtool" and cancels the dialog that it opens.
    static void addTool(frmToolSet *window);
    static void select(frmToolSet *window, const QString &tools);
    /// Names by position; "b*" is ghosted, "[b]" selected.
    static QString text(frmToolSet *window);
    /// The names in a file, in its order.
    QString inFile(const QString &path);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ToolSetStorage> m_storage;
    std::unique_ptr<mTSM> m_state;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<SettingsStore> m_store;
    std::unique_ptr<FakeFrame> m_frame;
    Printers m_printers {[] { return QStringList(); }};
};

void frmToolSet_test::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_storage = std::make_unique<ToolSetStorage>(1252, path("scratch"), path("data"));
    m_state = std::make_unique<mTSM>();
    m_settings = std::make_unique<Settings>(m_folder->path());
    m_store = std::make_unique<SettingsStore>(path("settings"));
    m_frame = std::make_unique<FakeFrame>();
}

void frmToolSet_test::cleanup()
{
    const auto documents = m_frame->documents;
    for (DocumentWindow *document : documents)
        delete document->widget();
    m_state.reset();
}

QString frmToolSet_test::file(const char *name, const QString &tools)
{
    CVBATools set(*m_storage);
    set.setDescription(u"About "_qs + QLatin1String(name));
    QStringList names;
    for (const QChar letter : tools) {
        auto tool = std::make_shared<CVBATool>();
        tool->Description = letter;
        tool->setLocation(u"C:\\"_qs + letter.toUpper());
        tool->HelpString = u"help of "_qs + letter;
        set.Add(tool);
        names.append(letter);
    }
    PictureBox box(Twips {275}, Twips {275});
    return set.Save(path(name), names, box) ? path(name) : QString();
}

frmToolSet *frmToolSet_test::newWindow()
{
    auto *form = new frmToolSet(*m_frame, *m_state, *m_settings, *m_store, *m_storage, m_printers);
    m_frame->documents.append(form);
    form->resize(500, 300);
    form->show();
    return form;
}

frmToolSet *frmToolSet_test::window(const QString &filePath)
{
    frmToolSet *form = newWindow();
    form->setFileName(filePath);
    form->setAction(u"open"_qs);
    return form;
}

void frmToolSet_test::addTool(frmToolSet *window)
{
    Answers answers;
    answers.dialog(u"frmToolProps"_qs, &QDialog::reject);
    window->setAction(u"newtool"_qs);
}

void frmToolSet_test::select(frmToolSet *window, const QString &tools)
{
    QList<int> rows;
    for (int row = 0; row < modelOf(window)->rowCount(); ++row) {
        if (tools.contains(modelOf(window)->toolAt(row)->Description))
            rows.append(row);
    }
    listOf(window)->selectRows(rows);
}

QString frmToolSet_test::text(frmToolSet *window)
{
    const ToolListModel *model = modelOf(window);
    QStringList names(model->rowCount());
    for (int row = 0; row < model->rowCount(); ++row) {
        QString &name = names[model->positionAt(row) - 1];
        name = model->toolAt(row)->Description;
        if (model->isGhosted(row))
            name += u'*';
        if (listOf(window)->selectedRows().contains(row))
            name = u'[' + name + u']';
    }
    return names.join(u' ');
}

QString frmToolSet_test::inFile(const QString &filePath)
{
    CVBATools set(*m_storage);
    set.Load(filePath);
    QStringList names;
    for (const ToolPtr &tool : set)
        names.append(tool->Description);
    return names.join(u' ');
}

// --- The document ---

void frmToolSet_test::opening()
{
    frmToolSet *form = window(file("a.bmt", u"xyz"_qs));
    QCOMPARE(form->Caption(), path("a.bmt"));
    QCOMPARE(form->findChild<QLabel *>(u"lblToolSet"_qs)->text(), u"About a.bmt"_qs);
    QCOMPARE(m_frame->files.Items().Item(1), path("a.bmt").toUpper());
    QVERIFY(!form->Dirty());
    const ToolListModel *model = modelOf(form);
    QStringList texts;
    for (int column = 0; column < model->columnCount(); ++column) {
        texts.append(model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
        texts.append(model->index(1, column).data(Qt::DisplayRole).toString());
    }
    QCOMPARE(texts.join(u'|'), u"Tool Description|y|Position|002|Tool Location|C:\\Y"_qs);
    QCOMPARE(m_frame->groups[u"P"_qs], true);
}

/// Help texts of files below version 2 come out in the form that the rich-text box gives them.
void frmToolSet_test::openingAnOldFile()
{
    QFile old(file("old.bmt", u"x"_qs));
    QVERIFY(old.open(QIODevice::ReadWrite));
    old.write("\1"); // the version, little-endian
    old.close();
    frmToolSet *form = window(path("old.bmt"));
    const QString help = form->Tools().Item(1)->HelpString;
    QCOMPARE(help, RichTextBox::ownForm(u"help of x"_qs, u"MS Sans Serif"_qs, 8.5));
    QVERIFY(help.startsWith(u"{\\rtf1"_qs));
    QCOMPARE(form->Tools().FLAGS() & 1, 1);
}

void frmToolSet_test::openingWhatCannotBeRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");
    QTest::newRow("a file that is not there") << u"none.bmt"_qs << u"was not found"_qs;
    QTest::newRow("a folder") << u"folder.bmt"_qs << u"is a folder"_qs;
}

void frmToolSet_test::openingWhatCannotBeRead()
{
    QFETCH(QString, name);
    QFETCH(QString, message);
    QVERIFY(QDir(m_folder->path()).mkdir(u"folder.bmt"_qs));
    frmToolSet *form = window(file("a.bmt", u"xyz"_qs));
    Answers answers;
    answers.message(u"Error loading tool set: *"_qs, QMessageBox::Ok);
    form->setFileName(m_folder->filePath(name));
    form->setAction(u"open"_qs);
    // What it showed stays, and so does the file that a save goes to.
    QCOMPARE(text(form), u"x y z"_qs);
    QCOMPARE(form->FileName(), path("a.bmt"));
    QCOMPARE(m_frame->files.Count(), 1);
    QVERIFY2(answers.lastText().contains(message), qPrintable(answers.lastText()));
}

void frmToolSet_test::sortRules()
{
    frmToolSet *form = window(file("a.bmt", u"bca"_qs));
    const QHeaderView *header = listOf(form)->reportView()->header();
    const auto click = [&](int column) {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
            QPoint(header->sectionViewportPosition(column) + 20, header->height() / 2));
    };
    const auto order = [&] {
        QString names;
        for (int row = 0; row < modelOf(form)->rowCount(); ++row)
            names += modelOf(form)->toolAt(row)->Description;
        return names;
    };
    click(1);
    QCOMPARE(order(), u"bca"_qs);
    click(1);
    QCOMPARE(order(), u"acb"_qs);
    click(0); // another column keeps the order
    QCOMPARE(order(), u"cba"_qs);
    QCOMPARE(header->sortIndicatorSection(), 0);
    QCOMPARE(header->sortIndicatorOrder(), Qt::DescendingOrder);
    click(0);
    QCOMPARE(order(), u"abc"_qs);
    form->setAction(u"list"_qs); // has no headers, so it shows positions
    QCOMPARE(order(), u"bca"_qs);
    QCOMPARE(form->View(), int(ListView::lvwList));
    QVERIFY(m_frame->pressed[u"list"_qs] && !m_frame->pressed[u"details"_qs]);
    form->setAction(u"details"_qs);
    QCOMPARE(form->View(), int(ListView::lvwReport));
    QVERIFY(!m_frame->pressed[u"list"_qs] && m_frame->pressed[u"details"_qs]);
}

void frmToolSet_test::savingInPositionOrder()
{
    frmToolSet *form = window(file("a.bmt", u"bca"_qs));
    modelOf(form)->sort(0, Qt::DescendingOrder);
    modelOf(form)->renameTool(0, u"z"_qs);
    form->setAction(u"save"_qs);
    QCOMPARE(inFile(path("a.bmt")), u"b z a"_qs);
}

void frmToolSet_test::savingAnEmptySet()
{
    const QString refusal = u"The toolset must contain at least one tool before it can be saved"_qs;
    frmToolSet *form = newWindow();
    Answers answers;
    answers.message(refusal, QMessageBox::Ok);
    form->setAction(u"save"_qs);
    // Through Save As the dialog comes first.
    answers.file(u"Save Tool Set"_qs, path("new.bmt"));
    answers.message(refusal, QMessageBox::Ok);
    menusOf(form)->mnuFilex[ToolSetMenus::FileSaveAs]->trigger();
    QVERIFY(!QFile::exists(path("new.bmt")));
    QCOMPARE(m_frame->files.Count(), 0);
}

void frmToolSet_test::saveAs()
{
    file("taken.bmt", u"q"_qs);
    frmToolSet *form = window(file("a.bmt", u"bca"_qs));
    QSignalSpy armed(m_state.get(), &mTSM::dragGateArmed);
    QSignalSpy closed(m_state.get(), &mTSM::dragGateClosed);
    Answers answers;
    answers.file(u"Save Tool Set"_qs, path("taken"));
    answers.message(u"%1 already exists.\nDo you want to replace it?"_qs.arg(u"taken.bmt"_qs),
        QMessageBox::Yes);
    menusOf(form)->mnuFilex[ToolSetMenus::FileSaveAs]->trigger();
    QCOMPARE(form->Caption(), path("taken.bmt"));
    QCOMPARE(form->windowTitle(), form->Caption());
    QCOMPARE(form->FileName(), path("taken.bmt"));
    QCOMPARE(inFile(path("taken.bmt")), u"b c a"_qs);
    QCOMPARE(m_frame->files.Items().Item(1), path("taken.bmt").toUpper());
    QCOMPARE(closed.size(), 1);
    QCOMPARE(armed.size(), 1);
}

void frmToolSet_test::saveAsGivenUp()
{
    frmToolSet *form = window(file("a.bmt", u"bca"_qs));
    QSignalSpy armed(m_state.get(), &mTSM::dragGateArmed);
    Answers answers;
    answers.file(u"Save Tool Set"_qs, QString());
    menusOf(form)->mnuFilex[ToolSetMenus::FileSaveAs]->trigger();
    QCOMPARE(form->Caption(), path("a.bmt"));
    QCOMPARE(m_frame->files.Count(), 1);
    QCOMPARE(armed.size(), 0);
}

void frmToolSet_test::questionBeforeClosing_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("closes");
    QTest::addColumn<QString>("saved");
    QTest::newRow("Yes saves and closes") << int(QMessageBox::Yes) << true << u"x z"_qs;
    QTest::newRow("No closes") << int(QMessageBox::No) << true << u"x y z"_qs;
    QTest::newRow("Cancel keeps it open") << int(QMessageBox::Cancel) << false << u"x y z"_qs;
}

void frmToolSet_test::questionBeforeClosing()
{
    QFETCH(int, button);
    QFETCH(bool, closes);
    const QPointer<frmToolSet> form(window(file("a.bmt", u"xyz"_qs)));
    form->close(); // a clean one asks nothing
    QVERIFY(m_frame->documents.isEmpty());
    frmToolSet *changed = window(path("a.bmt"));
    select(changed, u"y"_qs);
    changed->setAction(u"silentdelete"_qs);
    m_frame->words.clear();
    Answers answers;
    answers.message(
        u"Save changes to "_qs + path("a.bmt"), static_cast<QMessageBox::StandardButton>(button));
    QCOMPARE(changed->close(), closes);
    QCOMPARE(m_frame->words, closes ? QStringList(u"close"_qs) : QStringList());
    QCOMPARE(m_frame->documents.isEmpty(), closes);
    QTEST(inFile(path("a.bmt")), "saved");
}

/// The flag is cleared by the failed save and the window closes without a word; so the set must
/// be somewhere.
void frmToolSet_test::nothingIsLostWhenSavingFails()
{
    frmToolSet *form = window(file("a.bmt", u"xyz"_qs));
    select(form, u"y"_qs);
    form->setAction(u"silentdelete"_qs);
    form->setFileName(path("missing folder/a.bmt"));
    {
        Answers answers;
        answers.message(u"Error saving tool set: *"_qs, QMessageBox::Ok);
        form->setAction(u"save"_qs);
    }
    QVERIFY(!form->Dirty());
    QVERIFY(form->close());
    const QDir recovery(path("data/recovery"));
    const QStringList kept = recovery.entryList(QDir::Files);
    QCOMPARE(kept.size(), 1);
    QCOMPARE(inFile(recovery.filePath(kept.constFirst())), u"x z"_qs);
    QCOMPARE(inFile(path("a.bmt")), u"x y z"_qs);

    // Given up in the dialog, after the user has asked for it.
    frmToolSet *untitled = newWindow();
    addTool(untitled);
    Answers answers;
    answers.message(u"Save changes to Untitled"_qs, QMessageBox::Yes);
    answers.file(u"Save Tool Set"_qs, QString());
    QVERIFY(untitled->close());
    QCOMPARE(recovery.entryList(QDir::Files).size(), 2);
}

void frmToolSet_test::renameInPlace()
{
    frmToolSet *form = window(file("a.bmt", u"xyz"_qs));
    ListView *list = listOf(form);
    const auto edit = [&](const QString &newName, Qt::Key end) {
        list->setSelectedItem(1);
        QTest::keyClick(list->currentView(), Qt::Key_F2);
        auto *line = list->currentView()->findChild<QLineEdit *>();
        QVERIFY(line);
        QTest::keyClicks(line, newName);
        QTest::keyClick(line, end);
        QTRY_VERIFY(!list->currentView()->findChild<QLineEdit *>());
    };
    edit(u"X"_qs, Qt::Key_Return);
    QCOMPARE(text(form), u"x [X(1)] z"_qs);
    edit(u"other"_qs, Qt::Key_Escape);
    QCOMPARE(text(form), u"x [X(1)] z"_qs);
    // A copy works again: every end of the editing clears its flag.
    form->setAction(u"copy"_qs);
    QVERIFY(m_state->ToolClipboard);
    QVERIFY(!form->Dirty());
    // A save takes what has been typed so far; a second one finds nothing being edited.
    list->StartLabelEdit();
    list->currentView()->findChild<QLineEdit *>()->setText(u"new"_qs);
    form->setAction(u"save"_qs);
    form->setAction(u"save"_qs);
    QCOMPARE(inFile(path("a.bmt")), u"x new z"_qs);
    list->StartLabelEdit();
    QVERIFY(form->close()); // nothing is asked, and an open editor goes with the window
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void frmToolSet_test::commandGroups()
{
    frmToolSet *form = newWindow();
    const auto &edit = menusOf(form)->mnuEditX;
    const auto enabled = [&] {
        QStringList items;
        for (const QAction *item :
            {edit[1], edit[5], edit[6], edit[7], edit[8], menusOf(form)->mnuViewX[2]}) {
            items.append(item->isEnabled() ? u"x"_qs : u"-"_qs);
        }
        return items.join(QString());
    };
    form->Form_Activate();
    QCOMPARE(enabled(), u"------"_qs);
    addTool(form);
    QCOMPARE(enabled(), u"xxx-xx"_qs);
    form->setAction(u"copy"_qs);
    QCOMPARE(enabled(), u"xxxxxx"_qs);
    QCOMPARE(m_frame->enabled[u"paste"_qs], true);
    QTest::keyClick(listOf(form)->currentView(), Qt::Key_Escape);
    QCOMPARE(enabled(), u"xxx-xx"_qs);
    QCOMPARE(text(form), u"Tool(1)"_qs); // the release has cleared the selection
}

void frmToolSet_test::menuItems()
{
    frmToolSet *form = window(file("a.bmt", u"xyz"_qs));
    ToolSetMenus *menus = menusOf(form);
    QAction *help = menus->mnuEditX[ToolSetMenus::EditToolHelp];
    QVERIFY(!help->isVisible());
    QTest::mousePress(listOf(form)->currentView()->viewport(), Qt::RightButton);
    QTRY_VERIFY(menus->mnuEdit->isVisible());
    QVERIFY(help->isVisible());
    menus->mnuEdit->close();
    QTRY_VERIFY(!help->isVisible());

    menus->mnuFilex[ToolSetMenus::FileSave]->trigger();
    menus->mnuViewX[ToolSetMenus::ViewList]->trigger();
    QCOMPARE(m_frame->words, QStringList({u"save"_qs, u"list"_qs}));
    menus->mnuWindowX[ToolSetMenus::TileVertically]->trigger();
    QCOMPARE(m_frame->arranged.constLast(), Frame::Arrangement::TileVertically);
    Q_EMIT menus->mnuWindow->aboutToShow();
    QCOMPARE(menus->mnuWindow->actions().constLast()->text(), u"&1 "_qs + path("a.bmt"));
    QVERIFY(menus->mnuWindow->actions().constLast()->isChecked());
}

void frmToolSet_test::exitStopsAtACancel()
{
    const QPointer<frmToolSet> clean(window(file("a.bmt", u"xyz"_qs)));
    frmToolSet *changed = window(file("b.bmt", u"xyz"_qs));
    addTool(changed);
    {
        Answers answers;
        answers.message(u"Save changes to "_qs + path("b.bmt"), QMessageBox::Cancel);
        menusOf(changed)->mnuFileExit->trigger();
    }
    QCOMPARE(m_frame->documents, QList<DocumentWindow *> {changed}); // the first has gone already
    QCOMPARE(m_frame->closes, 0);
    Answers answers;
    answers.message(u"Save changes to "_qs + path("b.bmt"), QMessageBox::No);
    menusOf(changed)->mnuFileExit->trigger();
    QCOMPARE(m_frame->closes, 1);
    QVERIFY(m_frame->documents.isEmpty());
}

// --- Edits ---

void frmToolSet_test::pasteIntoAnotherWindow_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::newRow("copied, twice") << u"copy"_qs << u"a [b] c"_qs << u"b x b(1) [b(2)]"_qs;
    QTest::newRow("cut: the second paste does nothing")
        << u"cut"_qs << u"a c"_qs << u"b x [b(1)]"_qs;
}

void frmToolSet_test::pasteIntoAnotherWindow()
{
    QFETCH(QString, command);
    frmToolSet *source = window(file("a.bmt", u"abc"_qs));
    frmToolSet *target = window(file("b.bmt", u"bx"_qs));
    modelOf(target)->sort(0, Qt::DescendingOrder);
    select(source, u"b"_qs);
    const ToolPtr original = source->Tools().Item(u"b"_qs);
    source->setAction(command);
    QCOMPARE(m_state->ToolClipboard->Item(1), original); // the very tool
    QCOMPARE(text(source), command == u"cut"_qs ? u"a [b*] c"_qs : u"a [b] c"_qs);
    target->setAction(u"paste"_qs);
    const ToolPtr pasted = target->Tools().Item(u"b(1)"_qs);
    QVERIFY(pasted != original);
    QCOMPARE(pasted->HelpString, u"help of b"_qs);
    QCOMPARE(original->Description, u"b"_qs);
    target->setAction(u"paste"_qs);
    QTEST(text(source), "source");
    QTEST(text(target), "target");
    QVERIFY(target->Dirty());
    QCOMPARE(source->Dirty(), command == u"cut"_qs);
    QCOMPARE(m_state->ToolClipboard == nullptr, command == u"cut"_qs);
}

void frmToolSet_test::secondCutGivesUpTheFirst()
{
    frmToolSet *first = window(file("a.bmt", u"abc"_qs));
    frmToolSet *second = window(file("b.bmt", u"xyz"_qs));
    select(first, u"ab"_qs);
    first->setAction(u"cut"_qs);
    select(second, u"y"_qs);
    QSignalSpy looks(modelOf(first), &QAbstractItemModel::dataChanged);
    second->setAction(u"cut"_qs);
    QVERIFY(!looks.isEmpty()); // the list does not look cut any more
    QCOMPARE(text(first), u"[a] [b] c"_qs);
    first->setAction(u"paste"_qs);
    QCOMPARE(text(first), u"a b c [y]"_qs);
    QCOMPARE(text(second), u"x z"_qs);
    // So does a copy; else the next cut would take away what was given up.
    select(first, u"ab"_qs);
    first->setAction(u"cut"_qs);
    select(second, u"x"_qs);
    second->setAction(u"copy"_qs);
    QCOMPARE(text(first), u"[a] [b] c y"_qs);
    // A cut is completed also when its window gets another caption meanwhile.
    select(first, u"c"_qs);
    first->setAction(u"cut"_qs);
    first->setCaption(u"other"_qs);
    second->setAction(u"paste"_qs);
    QCOMPARE(text(first), u"a b y"_qs);
}

void frmToolSet_test::moveWithinTheWindow()
{
    frmToolSet *form = window(file("a.bmt", u"abcde"_qs));
    modelOf(form)->sort(0, Qt::DescendingOrder);
    select(form, u"ab"_qs);
    form->setAction(u"cut"_qs);
    listOf(form)->UnselectAll();
    form->setAction(u"paste"_qs);
    QCOMPARE(text(form), u"a* b* c d e"_qs); // nothing selected: nothing changes
    QVERIFY(!form->Dirty());
    modelOf(form)->renameTool(1, u"z"_qs); // the cut holds on to the tool, not to its name
    select(form, u"d"_qs);
    form->setAction(u"paste"_qs);
    QCOMPARE(text(form), u"c d [a] [z] e"_qs);
    QVERIFY(form->Dirty());
    QVERIFY(!m_state->ToolClipboard);
    QCOMPARE(m_state->ClipboardMode, qint16(mTSM::NothingPending));
    // A copy into its own window makes copies at the end.
    form->setAction(u"copy"_qs);
    form->setAction(u"paste"_qs);
    QCOMPARE(text(form), u"c d [a] [z] e a(1) z(1)"_qs);
}

void frmToolSet_test::sourceClosedBeforeThePaste()
{
    frmToolSet *source = window(file("a.bmt", u"abc"_qs));
    frmToolSet *target = window(file("b.bmt", u"x"_qs));
    select(source, u"bc"_qs);
    source->setAction(u"cut"_qs);
    QVERIFY(source->close());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    target->setAction(u"paste"_qs);
    QCOMPARE(text(target), u"x [b] [c]"_qs);
    QCOMPARE(inFile(path("a.bmt")), u"a b c"_qs);
}

void frmToolSet_test::deleteWhileACutIsPending()
{
    frmToolSet *source = window(file("a.bmt", u"abc"_qs));
    frmToolSet *target = window(file("b.bmt", u"x"_qs));
    select(source, u"ab"_qs);
    source->setAction(u"cut"_qs);
    select(source, u"b"_qs);
    source->setAction(u"silentdelete"_qs);
    select(source, u"c"_qs);
    target->setAction(u"paste"_qs);
    QCOMPARE(text(target), u"x [a] [b]"_qs);
    QCOMPARE(text(source), u"c"_qs); // only what was still there and cut
}

void frmToolSet_test::deleteAsks()
{
    frmToolSet *form = window(file("a.bmt", u"abc"_qs));
    form->setAction(u"delete"_qs); // nothing selected: nothing shown
    Answers answers;
    answers.message(u"Do you want to delete 'b'?"_qs, QMessageBox::No);
    select(form, u"b"_qs);
    form->setAction(u"delete"_qs);
    QCOMPARE(text(form), u"a [b] c"_qs);
    answers.message(u"Do you want to delete the 3 items selected?"_qs, QMessageBox::Yes);
    select(form, u"abc"_qs);
    form->setAction(u"delete"_qs);
    QCOMPARE(modelOf(form)->rowCount(), 0);
    QCOMPARE(m_frame->groups[u"P"_qs], false);
}

void frmToolSet_test::newTool()
{
    frmToolSet *form = window(file("a.bmt", u"ab"_qs));
    select(form, u"ab"_qs);
    modelOf(form)->sort(0, Qt::DescendingOrder);
    addTool(form);
    QCOMPARE(text(form), u"a b [Tool(1)]"_qs);
    QCOMPARE(form->Tools().Item(u"Tool(1)"_qs)->Picture.size(), QSize(18, 18));
    QVERIFY(form->Dirty());
}

void frmToolSet_test::clipboardKeysDuringARename()
{
    frmToolSet *form = window(file("a.bmt", u"abc"_qs));
    QVERIFY(QTest::qWaitForWindowActive(form));
    listOf(form)->setFocus();
    listOf(form)->setSelectedItem(0);
    listOf(form)->StartLabelEdit();
    auto *line = listOf(form)->currentView()->findChild<QLineEdit *>();
    QVERIFY(line);
    QTRY_VERIFY(line->hasFocus());
    line->setText(u"name"_qs);
    line->selectAll();
    form->setAction(u"copy"_qs);
    QVERIFY(!m_state->ToolClipboard);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"name"_qs);
    form->setAction(u"paste"_qs); // stays without effect
    QCOMPARE(line->text(), u"name"_qs);
    line->selectAll();
    form->setAction(u"cut"_qs);
    QCOMPARE(line->text(), QString());
    QVERIFY(!m_state->ToolClipboard);
}

void frmToolSet_test::movingByKeyboard()
{
    frmToolSet *form = window(file("a.bmt", u"abcde"_qs));
    QVERIFY(QTest::qWaitForWindowActive(form));
    listOf(form)->setFocus();
    select(form, u"bd"_qs);
    const auto press = [&](Qt::Key key) {
        QTest::keyClick(listOf(form)->currentView(), key, Qt::ControlModifier | Qt::ShiftModifier);
        return text(form);
    };
    QCOMPARE(press(Qt::Key_Up), u"[b] [d] a c e"_qs);
    QCOMPARE(press(Qt::Key_Up), u"[b] [d] a c e"_qs);
    QCOMPARE(press(Qt::Key_Down), u"a [b] [d] c e"_qs);
    QCOMPARE(press(Qt::Key_End), u"a c e [b] [d]"_qs);
    QCOMPARE(press(Qt::Key_Home), u"[b] [d] a c e"_qs);
    QVERIFY(form->Dirty());
}

// --- Dialogs ---

void frmToolSet_test::droppingFiles()
{
    const QByteArray program =
        ProgramFile::pe({{{}, 1, {ProgramFile::plain(32, qRgb(0, 0, 255))}}});
    QVERIFY(Files::put(path("EDIT.EXE"), program));
    QVERIFY(QDir(m_folder->path()).mkdir(u"macros"_qs));
    for (const char *name : {"macros/sort.bas", "notes.txt", "readme.doc"})
        QVERIFY(Files::put(path(name), "text"));
    frmToolSet *form = window(file("a.bmt", u"ab"_qs));
    form->setAction(u"list"_qs); // both views take files
    QWidget *list = listOf(form)->currentView()->viewport();

    using TestDrag::dropFiles;
    QCOMPARE(dropFiles(list, {path("readme.doc"), path("none.exe"), u"http://x/y.exe"_qs}),
        Qt::IgnoreAction);
    // A move would have the file manager delete its files.
    QCOMPARE(dropFiles(list, {path("EDIT.EXE")}, Qt::MoveAction), Qt::IgnoreAction);
    QVERIFY(!form->Dirty());
    QCOMPARE(text(form), u"a b"_qs);

    QCOMPARE(dropFiles(list,
                 {path("EDIT.EXE"), path("readme.doc"), path("macros/sort.bas"), path("a.bmt"),
                     path("notes.txt")}),
        Qt::CopyAction);
    QCOMPARE(text(form), u"a b [Edit.exe] [Sort.bas] [Notes.txt]"_qs);
    QCOMPARE(m_frame->opened, QStringList(path("a.bmt")));
    QVERIFY(form->Dirty());
    QVERIFY(m_frame->groups.value(u"P"_qs));
    QVERIFY(m_frame->panels.value(1).isEmpty() && m_frame->panels.value(2).isEmpty());
    const auto tool = [&](int row) { return *modelOf(form)->toolAt(row); };
    QCOMPARE(tool(2).Location(), path("EDIT.EXE"));
    QCOMPARE(tool(2).Picture.size(), QSize(18, 18));
    QCOMPARE(tool(2).Picture.pixelColor(9, 9), QColor(Qt::blue));
    QCOMPARE(tool(3).Location(), u"sort.bas"_qs); // it lies in the macro folder
    QCOMPARE(QList<int>({tool(2).ToolType, tool(3).ToolType, tool(4).ToolType}),
        QList<int>({CVBATool::StandardExecutable, CVBATool::Macro, CVBATool::TextFile}));
    QVERIFY(!tool(4).Picture.isNull());

    constexpr auto any = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    QCOMPARE(dropFiles(list, {path("EDIT.EXE")}, any, Qt::ShiftModifier), Qt::CopyAction);
    QCOMPARE(text(form), u"a b Edit.exe Sort.bas Notes.txt [Edit.exe(1)]"_qs);
}

void frmToolSet_test::toolProperties()
{
    frmToolSet *form = window(file("a.bmt", u"abc"_qs));
    modelOf(form)->sort(0, Qt::DescendingOrder); // c b a
    form->setAction(u"toolproperties"_qs); // nothing selected: nothing opens
    select(form, u"b"_qs);
    Answers answers;
    QStringList seen;
    answers.dialog(u"frmToolProps"_qs, [&](QDialog *dialog) {
        auto *name = dialog->findChild<QLineEdit *>(u"txtDescription"_qs);
        auto *next = dialog->findChild<QAbstractButton *>(u"cmdNext"_qs);
        auto *prior = dialog->findChild<QAbstractButton *>(u"cmdPrior"_qs);
        auto *apply = dialog->findChild<QAbstractButton *>(u"cmdApply"_qs);
        const auto note = [&] { seen.append(name->text() + u'/' + m_frame->panels[1]); };
        note();
        next->click();
        note();
        next->click(); // the last one already
        note();
        prior->click();
        prior->click();
        prior->click(); // the first one already
        note();
        dialog->findChild<QLineEdit *>(u"txtLocation"_qs)->setText(u"new place"_qs);
        name->setText(u"A"_qs); // taken: the set makes it unique
        apply->click();
        note();
        dialog->findChild<QAbstractButton *>(u"cmdOK"_qs)->click();
    });
    form->setAction(u"toolproperties"_qs);
    QCOMPARE(seen.join(u' '), u"b/b a/a a/a c/c A(1)/A(1)"_qs);
    QCOMPARE(text(form), u"a b [A(1)]"_qs);
    QCOMPARE(form->Tools().Item(u"A(1)"_qs)->Location(), u"new place"_qs);
    QVERIFY(form->Dirty());
    QCOMPARE(m_frame->panels[1], QString());
    form->setAction(u"save"_qs);
    QCOMPARE(inFile(path("a.bmt")), u"a b A(1)"_qs);
}

void frmToolSet_test::toolSetProperties()
{
    frmToolSet *form = window(file("a.bmt", u"abc"_qs));
    auto *label = form->findChild<QLabel *>(u"lblToolSet"_qs);
    QTest::mouseDClick(label, Qt::LeftButton);
    QCOMPARE(m_frame->words, QStringList(u"properties"_qs));
    for (const bool changing : {false, true}) {
        Answers answers;
        answers.dialog(u"frmTSProps"_qs, [&](QDialog *dialog) {
            if (changing)
                dialog->findChild<QLineEdit *>(u"txtDescription"_qs)->setText(u"<b>New"_qs);
            dialog->findChild<QAbstractButton *>(u"cmdOK"_qs)->click();
        });
        form->setAction(u"properties"_qs);
        QCOMPARE(form->Dirty(), changing);
        QCOMPARE(label->text(), changing ? u"<b>New"_qs : u"About a.bmt"_qs);
    }
}

void frmToolSet_test::toolHelp()
{
    frmToolSet *form = window(file("a.bmt", u"abc"_qs));
    select(form, u"c"_qs);
    for (QAction *door : {menusOf(form)->mnuEditX[ToolSetMenus::EditToolHelp],
             menusOf(form)->mnuViewX[ToolSetMenus::ViewToolHelp]}) {
        door->trigger();
        QTRY_VERIFY(form->findChild<QWidget *>(u"frmToolHelp"_qs));
        auto *help = form->findChild<QWidget *>(u"frmToolHelp"_qs);
        QCOMPARE(help->windowTitle(), u"Help For c"_qs);
        delete help;
    }
}

TSM_TEST(frmToolSet_test);
#include "tst_frmToolSet.moc"
