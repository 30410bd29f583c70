#include "platform/rtf/RichText.h"
#include "support/Answers.h"
#include "support/FakeFrame.h"
#include "support/Files.h"
#include "support/Find.h"
#include "support/Program.h"
#include "support/ProgramFile.h"
#include "support/Rows.h"
#include "support/TestDrag.h"
#include "support/TestRunner.h"
#include "toolset/EditCommands.h"
#include "toolset/ToolSetMenus.h"

#include <QSignalSpy>
#include <QtWidgets>

/// Real windows on a frame that only notes what they ask of it.
class frmToolSet_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_storage = std::make_unique<ToolSetStorage>(1252, path("scratch"), path("data"));
        m_state = std::make_unique<mTSM>();
        m_settings = std::make_unique<Settings>(m_folder->path());
        m_store = std::make_unique<SettingsStore>(path("settings"));
        m_frame = std::make_unique<FakeFrame>();
    }

    void cleanup()
    {
        const auto documents = m_frame->documents;
        for (DocumentWindow *document : documents)
            delete document->widget();
        m_state.reset();
    }

    void opening()
    {
        frmToolSet *form = window(file("a.bmt", u"xyz"_qs));
        QCOMPARE(form->Caption(), path("a.bmt"));
        QCOMPARE(child<QLabel>(form, "lblToolSet")->text(), u"About a.bmt"_qs);
        QCOMPARE(m_frame->files.Items().Item(1), path("a.bmt").toUpper());
        QVERIFY(!form->Dirty());
        const ToolListModel *model = modelOf(form);
        QStringList texts;
        for (int column = 0; column < model->columnCount(); ++column) {
            texts.append(model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
            texts.append(model->index(1, column).data(Qt::DisplayRole).toString());
        }
        QCOMPARE(texts.join(u'|'), u"Tool Description|y|Position|002|Tool Location|C:\\Y"_qs);
        QCOMPARE(m_frame->commands.needsTool, true);
    }

    /// Help texts of files below version 2 come out in the form that the rich-text box gives them.
    void openingAnOldFile()
    {
        QByteArray old = Files::contentOf(file("old.bmt", u"xy"_qs));
        old[0] = 1; // the version
        old.replace(QByteArray("\x09\0help of y", 11), QByteArray(2, '\0'));
        QVERIFY(Files::put(path("old.bmt"), old));
        frmToolSet *form = window(path("old.bmt"));
        for (const auto &[tool, text] : {std::pair(1, u"help of x"_qs), std::pair(2, QString())}) {
            const QString help = form->Tools().Item(tool)->HelpString;
            QCOMPARE(help, RichText::ownForm(text, u"MS Sans Serif"_qs, 8.5, 1252));
            QVERIFY(help.startsWith(u"{\\rtf1"_qs));
        }
        QCOMPARE(form->Tools().FLAGS() & 1, 1);
    }

    /// The status bar says of the active window whether its file was whole.
    void openingWhatIsNotWhole()
    {
        const QByteArray whole = Files::contentOf(file("a.bmt", u"xyz"_qs));
        QVERIFY(Files::put(path("cut.bmt"), whole.chopped(1)));
        QVERIFY(Files::put(path("one.bmt"), whole.left(whole.size() / 2)));
        QVERIFY(Files::put(path("foreign.bmt"), "no tools"));
        frmToolSet *form = window(path("a.bmt"));
        for (const auto &[name, notice] :
            {std::pair("cut.bmt", u"2 tools read; the file ends early."_qs),
                std::pair("one.bmt", u"1 tool read; the file ends early."_qs),
                std::pair("foreign.bmt", u"Not a tool set."_qs), std::pair("a.bmt", QString()),
                std::pair("cut.bmt", u"2 tools read; the file ends early."_qs)}) {
            form->setFileName(path(name));
            form->setAction(u"open"_qs);
            QCOMPARE(m_frame->panels[Frame::noticePanel], notice);
            QCOMPARE(form->notice(), notice);
        }
        form->setAction(u"save"_qs);
        QCOMPARE(form->notice(), QString());
    }

    void openingWhatCannotBeRead()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(u"folder.bmt"_qs));
        frmToolSet *form = window(file("a.bmt", u"xyz"_qs));
        for (const auto &[name, message] : {std::pair("none.bmt", u"was not found"_qs),
                 std::pair("folder.bmt", u"is a folder"_qs)}) {
            Answers answers;
            answers.message(u"Error loading tool set: *"_qs, QMessageBox::Ok);
            form->setFileName(path(name));
            form->setAction(u"open"_qs);
            // What it showed stays, and so does the file that a save goes to.
            QCOMPARE(text(form), u"x y z"_qs);
            QCOMPARE(form->FileName(), path("a.bmt"));
            QCOMPARE(m_frame->files.Count(), 1);
            QVERIFY2(answers.lastText().contains(message), qPrintable(answers.lastText()));
        }
    }

    void sortRules()
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
        QTest::mouseDClick(header->viewport(), Qt::LeftButton, {}, // a fast second click counts too
            QPoint(header->sectionViewportPosition(1) + 20, header->height() / 2));
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
        QCOMPARE(m_frame->commands.view, int(ListView::lvwList));
        form->setAction(u"details"_qs);
        QCOMPARE(form->View(), int(ListView::lvwReport));
        QCOMPARE(m_frame->commands.view, int(ListView::lvwReport));
    }

    void savingInPositionOrder()
    {
        frmToolSet *form = window(file("a.bmt", u"bca"_qs));
        modelOf(form)->sort(0, Qt::DescendingOrder);
        form->Document().renameInPlace(modelOf(form)->toolAt(0), u"z"_qs);
        form->setAction(u"save"_qs);
        QCOMPARE(inFile("a.bmt"), u"b z a"_qs);
    }

    void savingAnEmptySet()
    {
        const QString refusal =
            u"The toolset must contain at least one tool before it can be saved"_qs;
        frmToolSet *form = newWindow();
        {
            Answers answers;
            answers.message(refusal, QMessageBox::Ok);
            form->setAction(u"save"_qs);
            answers.file(u"Save Tool Set"_qs, path("new.bmt")); // Save As asks for a name first
            answers.message(refusal, QMessageBox::Ok);
            menusOf(form)->mnuFilex[ToolSetMenus::FileSaveAs]->trigger();
        }
        QVERIFY(!QFile::exists(path("new.bmt")));
        QCOMPARE(m_frame->files.Count(), 0);
        QCOMPARE(form->Caption(), u"Untitled"_qs);
        addTool(form);
        form->setAction(u"save"_qs); // goes to the file that was chosen before
        QCOMPARE(form->Caption(), path("new.bmt"));
    }

    void saveAs()
    {
        file("taken.bmt", u"q"_qs);
        frmToolSet *form = window(file("a.bmt", u"bca"_qs));
        QSignalSpy armed(m_state.get(), &mTSM::dragGateArmed);
        QSignalSpy closed(m_state.get(), &mTSM::dragGateClosed);
        const auto saveAs = [&](const QString &name) {
            Answers answers;
            // A folder that does not exist is no answer.
            answers.file(u"Save Tool Set"_qs, path("none/x.bmt"));
            answers.message(
                u"The folder \"%1\" does not exist."_qs.arg(path("none")), QMessageBox::Ok);
            answers.file(u"Save Tool Set"_qs, name);
            if (!name.isEmpty())
                answers.message(
                    u"taken.bmt already exists.\nDo you want to replace it?"_qs, QMessageBox::Yes);
            menusOf(form)->mnuFilex[ToolSetMenus::FileSaveAs]->trigger();
            return QStringList {form->Caption(), form->windowTitle(), form->FileName(),
                m_frame->files.Items().Item(1), QString::number(m_frame->files.Count()),
                QString::number(armed.size())};
        };
        const QString old = path("a.bmt");
        const QString taken = path("taken.bmt");
        QCOMPARE(saveAs(QString()), // given up
            QStringList({old, old, old, old.toUpper(), u"1"_qs, u"0"_qs}));
        closed.clear();
        QCOMPARE(saveAs(path("taken")),
            QStringList({taken, taken, taken, taken.toUpper(), u"2"_qs, u"1"_qs}));
        QCOMPARE(inFile("taken.bmt"), u"b c a"_qs);
        QCOMPARE(closed.size(), 1);
    }

    void questionBeforeClosing()
    {
        QVERIFY(window(file("a.bmt", u"xyz"_qs))->close()); // a clean one asks nothing
        QVERIFY(m_frame->documents.isEmpty());
        struct
        {
            QMessageBox::StandardButton button;
            bool closes;
            QString saved;
        } const rows[] = {{QMessageBox::Yes, true, u"x z"_qs}, {QMessageBox::No, true, u"x y z"_qs},
            {QMessageBox::Cancel, false, u"x y z"_qs}};
        for (const auto &[button, closes, saved] : rows) {
            frmToolSet *changed = window(file("a.bmt", u"xyz"_qs));
            run(changed, u"y"_qs, "silentdelete");
            m_frame->words.clear();
            Answers answers;
            answers.message(u"Save changes to "_qs + path("a.bmt"), button);
            QCOMPARE(changed->close(), closes);
            QCOMPARE(m_frame->words, closes ? QStringList(u"close"_qs) : QStringList());
            QCOMPARE(m_frame->documents.isEmpty(), closes);
            QCOMPARE(inFile("a.bmt"), saved);
        }
    }

    void renameInPlace()
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
        // Commands take what has been typed so far; a second one finds nothing being edited.
        const auto typed = [&](const QString &name) {
            list->StartLabelEdit();
            qobject_cast<QLineEdit *>(list->labelEditor())->setText(name);
        };
        typed(u"new"_qs);
        form->setAction(u"save"_qs);
        form->setAction(u"save"_qs);
        QCOMPARE(inFile("a.bmt"), u"x new z"_qs);
        {
            Answers answers;
            answers.message(u"Do you want to delete 'del'?"_qs, QMessageBox::No);
            typed(u"del"_qs);
            form->setAction(u"delete"_qs);
            answers.dialog(u"frmToolProps"_qs, [](QDialog *dialog) {
                QCOMPARE(child<QLineEdit>(dialog, "txtDescription")->text(), u"props"_qs);
                child<QAbstractButton>(dialog, "cmdOK")->click();
            });
            typed(u"props"_qs);
            form->setAction(u"toolproperties"_qs);
            typed(u"as"_qs);
            answers.file(u"Save Tool Set"_qs, path("b.bmt"));
            menusOf(form)->mnuFilex[ToolSetMenus::FileSaveAs]->trigger();
            QCOMPARE(inFile("b.bmt"), u"x as z"_qs);
        }
        list->StartLabelEdit();
        QVERIFY(form->close()); // nothing is asked, and an open editor goes with the window
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void commandGroups()
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
        QCOMPARE(m_frame->commands.needsClipboard, true);
        QTest::keyClick(listOf(form)->currentView(), Qt::Key_Escape);
        QCOMPARE(enabled(), u"xxx-xx"_qs);
        QCOMPARE(text(form), u"Tool(1)"_qs); // the release has cleared the selection
        for (const QString &word : {u"copy"_qs, u"cut"_qs}) { // of nothing: an empty clipboard
            form->setAction(word);
            QVERIFY(m_state->ToolClipboard && m_state->ToolClipboard->Count() == 0);
            QCOMPARE(enabled(), u"xxxxxx"_qs);
            form->ClearDragTools();
            QCOMPARE(enabled(), u"xxx-xx"_qs);
        }
    }

    void menuItems()
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

    void exitStopsAtACancel()
    {
        const QPointer<frmToolSet> clean(window(file("a.bmt", u"xyz"_qs)));
        frmToolSet *changed = window(file("b.bmt", u"xyz"_qs));
        addTool(changed);
        {
            Answers answers;
            answers.message(u"Save changes to "_qs + path("b.bmt"), QMessageBox::Cancel);
            menusOf(changed)->mnuFileExit->trigger();
        }
        QCOMPARE(
            m_frame->documents, QList<DocumentWindow *> {changed}); // the first has gone already
        QCOMPARE(m_frame->closes, 0);
        Answers answers;
        answers.message(u"Save changes to "_qs + path("b.bmt"), QMessageBox::No);
        menusOf(changed)->mnuFileExit->trigger();
        QCOMPARE(m_frame->closes, 1);
        QVERIFY(m_frame->documents.isEmpty());
    }

    void clipboard_data()
    {
        const QStringList one {u"abcde"_qs};
        const QStringList two {u"abc"_qs, u"xyz"_qs};
        const QStringList clash {u"abc"_qs, u"bx"_qs};
        // steps, and what play() shows then
        rows<QStringList, QString, QString>({
            {"copied, pasted twice", clash, u"1 b copy, 2 sort, 2 paste, 2 paste"_qs,
                u"a [b] c / b x b(1) [b(2)]! / b"_qs},
            {"cut", clash, u"1 b cut"_qs, u"a [b*] c / b x / b"_qs},
            {"cut: the second paste does nothing", clash, u"1 b cut, 2 paste, 2 paste"_qs,
                u"a c! / b x [b(1)]! / -"_qs},
            {"a second cut gives up the first", two, u"1 ab cut, 2 y cut"_qs,
                u"[a] [b] c / x [y*] z / y"_qs},
            {"and is pasted", two, u"1 ab cut, 2 y cut, 1 paste"_qs, u"a b c [y]! / x z! / -"_qs},
            {"so does a copy", two, u"1 ab cut, 2 x copy"_qs, u"[a] [b] c / [x] y z / x"_qs},
            // Also when the window gets another caption meanwhile.
            {"what was given up is not taken away later", two,
                u"1 ab cut, 2 x copy, 1 c cut, 1 caption, 2 paste"_qs, u"a b! / x y z [c]! / -"_qs},
            {"the source closed before the paste", two, u"1 bc cut, 1 close, 2 paste"_qs,
                u"closed / x y z [b] [c]! / -"_qs},
            {"given up where the source has closed: nothing is cleared", two,
                u"1 b copy, 1 close, 2 escape, 2 paste"_qs, u"closed / x y z [b]! / b"_qs},
            {"a cut tool deleted before the paste", two,
                u"1 ab cut, 1 b silentdelete, 1 c select, 2 paste"_qs,
                u"c! / x y z [a] [b]! / -"_qs},
            {"cut, pasted with nothing selected", one, u"1 ab cut, 1 - paste"_qs,
                u"a* b* c d e / a b"_qs},
            {"cut, pasted behind another", one, u"1 sort, 1 ab cut, 1 d paste"_qs,
                u"c d [a] [b] e! / -"_qs},
            {"the cut holds on to the tool, not to its name", one,
                u"1 sort, 1 ab cut, 1 b rename, 1 d paste"_qs, u"c d [a] [q] e! / -"_qs},
            {"copied into its own window", one, u"1 ab copy, 1 paste"_qs,
                u"[a] [b] c d e a(1) b(1)! / a b"_qs},
            {"a new tool", one, u"1 sort, 1 ab newtool"_qs, u"a b c d e [Tool(1)]! / -"_qs},
            // What find hides is in brackets.
            {"a new tool that does not match", one, u"1 name:b find, 1 newtool"_qs,
                u"a b c d e [Tool(1)]! / -"_qs},
            {"a copy that matches", one, u"1 name:b find, 1 b copy, 1 paste"_qs,
                u"(a) [b] (c) (d) (e) b(1)! / b"_qs},
            {"pasted tools that do not match", two, u"1 b copy, 2 name:x find, 2 paste"_qs,
                u"a [b] c / x y z [b]! / b"_qs},
            {"hidden cut tools, moved", one, u"1 ab cut, 1 name:d find, 1 d paste"_qs,
                u"c d [a] [b] e! / -"_qs},
            {"hidden cut tools, pasted elsewhere", two,
                u"1 b cut, 1 name:a find, 1 a select, 2 paste"_qs, u"a c! / x y z [b]! / -"_qs},
            {"undone where it is hidden", one,
                u"1 b silentdelete, 1 name:c find, 1 undo, 1 name:a find"_qs,
                u"a (b) (c) (d) (e) / -"_qs},
        });
    }

    void clipboard()
    {
        const auto [sets, steps, expected] = row<QStringList, QString, QString>();
        QCOMPARE(play(sets, steps), expected);
    }

    void copiesAreToolsOfTheirOwn()
    {
        frmToolSet *source = window(file("a.bmt", u"abc"_qs));
        frmToolSet *target = window(file("b.bmt", u"b"_qs));
        const ToolPtr original = source->Tools().Item(u"b"_qs);
        run(source, u"b"_qs, "copy");
        QCOMPARE(m_state->ToolClipboard->Item(1), original); // the very tool
        target->setAction(u"paste"_qs);
        const ToolPtr pasted = target->Tools().Item(u"b(1)"_qs);
        QVERIFY(pasted != original);
        QCOMPARE(pasted->HelpString, u"help of b"_qs);
        QCOMPARE(original->Description, u"b"_qs);
        run(source, u"a"_qs, "cut");
        QSignalSpy looks(modelOf(source), &QAbstractItemModel::dataChanged);
        run(target, u"b"_qs, "cut");
        QVERIFY(!looks.isEmpty()); // the first list does not look cut any more
        target->setAction(u"paste"_qs);
        QCOMPARE(m_state->ClipboardMode, qint16(mTSM::NothingPending));
    }

    void deleteAsks()
    {
        frmToolSet *form = window(file("a.bmt", u"abc"_qs));
        form->setAction(u"delete"_qs); // nothing selected: nothing shown
        Answers answers;
        answers.message(u"Do you want to delete 'b'?"_qs, QMessageBox::No);
        run(form, u"b"_qs, "delete");
        QCOMPARE(text(form), u"a [b] c"_qs);
        answers.message(u"Do you want to delete the 3 items selected?"_qs, QMessageBox::Yes);
        run(form, u"abc"_qs, "delete");
        QCOMPARE(modelOf(form)->rowCount(), 0);
        QCOMPARE(m_frame->commands.needsTool, false);
    }

    /// Each command is one step, whose text the menu shows; another one where it opens a dialog.
    void undo()
    {
        QVERIFY(Files::put(path("notes.txt"), "text") && Files::put(path("more.txt"), "text"));
        frmToolSet *form = nullptr;
        frmToolSet *other = nullptr;
        Answers answers;
        const auto inDialog = [&](const char *name, const char *field, const char *button) {
            answers.dialog(QLatin1String(name), [=](QDialog *dialog) {
                child<QLineEdit>(dialog, field)->setText(u"new"_qs);
                child<QAbstractButton>(dialog, button)->click();
                dialog->close();
            });
        };
        const auto drop = [&](frmToolSet *from, frmToolSet *on, int row) {
            from->findChild<EditCommands *>()->fillClipboard(true);
            m_state->DraggingTools = true;
            QAbstractItemView *view = listOf(on)->currentView();
            const QPoint place = row < 0 ? view->viewport()->rect().bottomLeft() + QPoint(5, -5)
                                         : view->visualRect(view->model()->index(row, 0)).center();
            TestDrag::drop(view->viewport(), QMimeData(), place);
            m_state->DraggingTools = false;
            from->ClearDragTools();
        };
        struct
        {
            QStringList steps; ///< Of the window, the newest first.
            QStringList othersSteps;
            QString selected;
            std::function<void()> act;
        } const rows[] = {
            {{u"Change of \"Tool(1)\""_qs, u"New Tool"_qs}, {}, u"b"_qs,
                [&] {
                    inDialog("frmToolProps", "txtLocation", "cmdOK");
                    form->setAction(u"newtool"_qs);
                }},
            {{u"Paste of 2 Tools"_qs}, {}, u"b"_qs,
                [&] {
                    run(other, u"xy"_qs, "copy");
                    form->setAction(u"paste"_qs);
                }},
            {{u"Drop of a Tool"_qs}, {}, u"b"_qs,
                [&] {
                    select(other, u"x"_qs);
                    drop(other, form, -1);
                }},
            {{u"Cut of 2 Tools"_qs}, {u"Paste of 2 Tools"_qs}, u"bd"_qs,
                [&] {
                    form->setAction(u"cut"_qs);
                    other->setAction(u"paste"_qs);
                }},
            {{u"Delete of 3 Tools"_qs}, {}, u"bde"_qs,
                [&] {
                    answers.message(
                        u"Do you want to delete the 3 items selected?"_qs, QMessageBox::Yes);
                    form->setAction(u"delete"_qs);
                }},
            {{u"Move of 2 Tools"_qs}, {}, u"bd"_qs,
                [&] {
                    form->findChild<EditCommands *>()->moveSelection(
                        EditCommands::Direction::ToStart);
                }},
            {{u"Move of 2 Tools"_qs}, {}, u"ab"_qs, [&] { drop(form, form, 3); }},
            {{u"Move of a Tool"_qs}, {}, u"d"_qs,
                [&] {
                    run(form, u"a"_qs, "cut");
                    run(form, u"d"_qs, "paste");
                }},
            {{u"Rename of \"b\""_qs}, {}, u"b"_qs,
                [&] {
                    listOf(form)->StartLabelEdit();
                    qobject_cast<QLineEdit *>(listOf(form)->labelEditor())->setText(u"A"_qs);
                    listOf(form)->finishLabelEdit();
                }},
            {{u"Change of \"c\""_qs}, {}, u"c"_qs,
                [&] {
                    inDialog("frmToolProps", "txtDescription", "cmdApply");
                    form->setAction(u"toolproperties"_qs);
                }},
            {{u"Change of Tool Set Properties"_qs}, {}, u"c"_qs,
                [&] {
                    inDialog("frmTSProps", "txtDescription", "cmdOK");
                    form->setAction(u"properties"_qs);
                }},
            {{u"New Tools"_qs}, {}, u"c"_qs,
                [&] {
                    TestDrag::dropFiles(listOf(form)->currentView()->viewport(),
                        {path("notes.txt"), path("more.txt")});
                }},
        };
        for (const auto &[steps, othersSteps, selected, act] : rows) {
            form = window(file("a.bmt", u"abcde"_qs));
            other = window(file("b.bmt", u"xyz"_qs));
            select(form, selected);
            const auto state = [&] { return stateOf(form) + stateOf(other); };
            const QStringList before = state();
            act();
            const QStringList after = state();
            const auto undo = [&](frmToolSet *in, const QStringList &expected) {
                const QAction *item = menusOf(in)->mnuEditUndo;
                for (const QString &text : expected) {
                    QCOMPARE(item->text(), u"Und&o "_qs + text);
                    QVERIFY(item->isEnabled());
                    in->setAction(u"undo"_qs);
                    QCOMPARE(menusOf(in)->mnuEditRedo->text(), u"&Redo "_qs + text);
                }
                QVERIFY(!item->isEnabled());
                QCOMPARE(item->text(), u"Und&o"_qs);
            };
            undo(form, steps);
            undo(other, othersSteps);
            // The other window's own selection is none of the commands' where they copy.
            QCOMPARE(stateOf(form), before.first(before.size() / 2));
            QCOMPARE(stateOf(other).sliced(1), before.sliced(before.size() / 2 + 1));
            for (qsizetype i = 0; i < steps.size(); ++i)
                form->setAction(u"redo"_qs);
            for (qsizetype i = 0; i < othersSteps.size(); ++i)
                other->setAction(u"redo"_qs);
            QVERIFY(!menusOf(form)->mnuEditRedo->isEnabled());
            QCOMPARE(state(), after);
            m_state->ToolClipboard.reset();
        }
    }

    void undoAndTheFile()
    {
        frmToolSet *form = window(file("a.bmt", u"abc"_qs));
        const auto play = [&](const QString &words) {
            for (const QString &word : words.split(u' '))
                form->setAction(word);
            const QString tools = text(form).remove(u'[').remove(u']');
            return form->Dirty() ? QString(tools + u'!') : tools;
        };
        select(form, u"b"_qs);
        QCOMPARE(play(u"silentdelete save"_qs), u"a c"_qs);
        QCOMPARE(play(u"undo"_qs), u"a b c!"_qs);
        QCOMPARE(play(u"redo"_qs), u"a c"_qs);
        QVERIFY(QDir(m_folder->path()).mkdir(u"folder.bmt"_qs));
        form->setFileName(path("folder.bmt"));
        {
            Answers answers;
            answers.message(u"Error saving tool set: *"_qs, QMessageBox::Ok);
            QCOMPARE(play(u"save"_qs), u"a c"_qs);
        }
        QCOMPARE(play(u"undo"_qs), u"a b c!"_qs);
        QCOMPARE(play(u"redo"_qs), u"a c!"_qs);
        QVERIFY(!Sets::files(path("data"), u"*.snapshot"_qs).isEmpty());
        form->setFileName(path("a.bmt"));
        QCOMPARE(play(u"open"_qs), u"a c"_qs);
        QVERIFY(
            !menusOf(form)->mnuEditUndo->isEnabled() && !menusOf(form)->mnuEditRedo->isEnabled());
    }

    void editKeysDuringARename()
    {
        frmToolSet *form = window(file("a.bmt", u"abc"_qs));
        QVERIFY(QTest::qWaitForWindowActive(form));
        listOf(form)->setFocus();
        listOf(form)->setSelectedItem(0);
        listOf(form)->StartLabelEdit();
        auto *line = listOf(form)->currentView()->findChild<QLineEdit *>();
        QVERIFY(line);
        QTRY_VERIFY(line->hasFocus());
        form->Document().move({1}, 2);
        QMenuBar bar(form);
        bar.addMenu(menusOf(form)->mnuEdit);
        bar.show();
        // Undo is about what was typed, by the key and by the menu.
        QTest::keyClicks(line, u"x"_qs);
        QTest::keyClick(line, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(line->text(), u"a"_qs);
        QVERIFY(m_frame->words.isEmpty());
        Q_EMIT menusOf(form)->mnuEdit->aboutToShow();
        QCOMPARE(menusOf(form)->mnuEditRedo->text(), u"&Redo"_qs);
        form->setAction(u"redo"_qs);
        QCOMPARE(line->text(), u"x"_qs);
        form->setAction(u"undo"_qs);
        QCOMPARE(line->text(), u"a"_qs);
        QCOMPARE(text(form), u"b [a] c"_qs);
        line->setText(u"name"_qs);
        line->selectAll();
        // As when a menu is opened by the keyboard.
        bar.setFocus(Qt::MenuBarFocusReason);
        QVERIFY(!line->hasFocus());
        form->setAction(u"copy"_qs);
        QVERIFY(!m_state->ToolClipboard);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"name"_qs);
        form->setAction(u"paste"_qs); // stays without effect
        QCOMPARE(line->text(), u"name"_qs);
        line->selectAll();
        form->setAction(u"cut"_qs);
        QCOMPARE(line->text(), QString());
        QVERIFY(!m_state->ToolClipboard);
        line->setText(u"new"_qs);
        listOf(form)->setFocus(); // not back to the edit box, as by a click
        QCOMPARE(text(form), u"b [new] c"_qs);
        QCOMPARE(menusOf(form)->mnuEditUndo->text(), u"Und&o Rename of \"a\""_qs);
        QTest::keyClick(listOf(form)->currentView(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(m_frame->words, QStringList(u"undo"_qs));
    }

    void mouseOnNames_data()
    {
        // tools selected before, the column clicked, whether it activates the window;
        // what is selected then, and whether a name is edited after the pause
        rows<QString, int, bool, QString, bool>({
            {"the selected tool", u"b"_qs, 0, false, u"a [b] c"_qs, true},
            {"one of several selected ones", u"ab"_qs, 0, false, u"a [b] c"_qs, false},
            {"a click that activates the window", u"b"_qs, 0, true, u"a [b] c"_qs, false},
            {"another column", u"b"_qs, 2, false, u"a [b] c"_qs, false},
        });
    }

    void mouseOnNames()
    {
        const auto [selected, column, activates, expected, edited] =
            row<QString, int, bool, QString, bool>();
        frmToolSet *form = window(file("a.bmt", u"abc"_qs));
        QWidget other;
        other.show();
        QWidget *active = activates ? &other : form;
        active->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(active));
        QAbstractItemView *view = listOf(form)->currentView();
        if (!activates) {
            view->clearFocus(); // which it got by the activation
            view->setFocus();
        }
        select(form, selected);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
            view->visualRect(view->model()->index(1, column)).center());
        QCOMPARE(text(form), expected);
        // The pause before an edit is a timer of the view; none is running where none will begin.
        const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(view);
        const bool waiting = std::any_of(timers.begin(), timers.end(), [](const auto &timer) {
            return timer.interval == QApplication::doubleClickInterval();
        });
        QCOMPARE(waiting, edited);
        if (!edited) { // wherever the click was
            QTest::keyClick(view, Qt::Key_C);
            QCOMPARE(text(form), u"a b [c]"_qs);
            QTest::keyClick(view, Qt::Key_F2);
        }
        QTRY_VERIFY(view->findChild<QLineEdit *>());
    }

    void mouseDrags_data()
    {
        rows<bool, Qt::MouseButton, bool>({
            {"the left button", true, Qt::LeftButton, true},
            {"the right button", true, Qt::RightButton, false},
            {"refused by the gate", false, Qt::LeftButton, false},
        });
    }

    /// Whatever becomes of the drag, nothing is selected on its way.
    void mouseDrags()
    {
        const auto [gate, button, drags] = row<bool, Qt::MouseButton, bool>();
        frmToolSet *form = window(file("a.bmt", u"abc"_qs));
        if (gate)
            m_state->openDragGate();
        QAbstractItemView *view = listOf(form)->currentView();
        QSignalSpy looks(modelOf(form), &QAbstractItemModel::dataChanged); // of a drag's tools
        const auto at = [view](int row) {
            return QPointF(view->visualRect(view->model()->index(row, 0)).center());
        };
        const auto send = [view](QEvent::Type type, const QPointF &place, Qt::MouseButton which,
                              Qt::MouseButtons held) {
            QMouseEvent event(
                type, place, view->viewport()->mapToGlobal(place), which, held, Qt::NoModifier);
            QCoreApplication::sendEvent(view->viewport(), &event);
        };
        send(QEvent::MouseButtonPress, at(0), button, button);
        for (const int row : {1, 2, 2, 1})
            send(QEvent::MouseMove, at(row), Qt::NoButton, button);
        send(QEvent::MouseButtonRelease, at(1), button, Qt::NoButton);
        QCOMPARE(!looks.isEmpty(), drags);
        QCOMPARE(text(form), u"[a] b c"_qs);
    }

    void movingByKeyboard()
    {
        frmToolSet *form = window(file("a.bmt", u"abcde"_qs));
        QVERIFY(QTest::qWaitForWindowActive(form));
        listOf(form)->setFocus();
        select(form, u"bd"_qs);
        const auto press = [&](Qt::Key key) {
            QTest::keyClick(
                listOf(form)->currentView(), key, Qt::ControlModifier | Qt::ShiftModifier);
            return text(form);
        };
        QCOMPARE(press(Qt::Key_Up), u"[b] [d] a c e"_qs);
        QCOMPARE(press(Qt::Key_Up), u"[b] [d] a c e"_qs);
        QCOMPARE(press(Qt::Key_Down), u"a [b] [d] c e"_qs);
        QCOMPARE(press(Qt::Key_End), u"a c e [b] [d]"_qs);
        QCOMPARE(press(Qt::Key_Home), u"[b] [d] a c e"_qs);
        QVERIFY(form->Dirty());
    }

    /// What places tools shows them where they are then, whatever the list was sorted by.
    void backToPositionOrder()
    {
        QVERIFY(Files::put(path("notes.txt"), "text"));
        const std::pair<QString, std::function<void(frmToolSet *)>> rows[] = {
            {u"c b a"_qs,
                [](frmToolSet *form) {
                    select(form, u"a"_qs);
                    form->findChild<EditCommands *>()->moveSelection(
                        EditCommands::Direction::ToEnd);
                }},
            {u"c a b b(1)"_qs,
                [](frmToolSet *form) {
                    run(form, u"b"_qs, "copy");
                    form->setAction(u"paste"_qs);
                }},
            {u"c a b Notes.txt"_qs,
                [this](frmToolSet *form) {
                    TestDrag::dropFiles(
                        listOf(form)->currentView()->viewport(), {path("notes.txt")});
                }},
        };
        for (const auto &[expected, act] : rows) {
            frmToolSet *form = window(file("a.bmt", u"cab"_qs));
            modelOf(form)->sort(ToolListModel::NameColumn, Qt::AscendingOrder);
            act(form);
            QStringList shown;
            for (int row = 0; row < modelOf(form)->rowCount(); ++row)
                shown.append(modelOf(form)->toolAt(row)->Description);
            QCOMPARE(shown.join(u' '), expected);
        }
    }

    void droppingFiles()
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
        QVERIFY(m_frame->commands.needsTool);
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

    void toolProperties()
    {
        frmToolSet *form = window(file("a.bmt", u"abc"_qs));
        modelOf(form)->sort(0, Qt::DescendingOrder); // c b a
        form->setAction(u"toolproperties"_qs); // nothing selected: nothing opens
        select(form, u"bc"_qs);
        listOf(form)->setFocusedItem(1);
        Answers answers;
        QStringList seen;
        answers.dialog(u"frmToolProps"_qs, [&](QDialog *dialog) {
            auto *name = child<QLineEdit>(dialog, "txtDescription");
            auto *next = child<QAbstractButton>(dialog, "cmdNext");
            auto *prior = child<QAbstractButton>(dialog, "cmdPrior");
            auto *apply = child<QAbstractButton>(dialog, "cmdApply");
            const auto note = [&] { seen.append(name->text() + u'/' + m_frame->panels[1]); };
            note();
            QVERIFY(m_frame->panels[2].contains(u"one of 2"_qs));
            prior->click(); // by position, whatever is shown
            prior->click(); // the first one already
            note();
            QCOMPARE(text(form), u"[a] b [c]"_qs); // of several only the one shown is unselected
            next->click();
            next->click();
            next->click(); // the last one already
            note();
            child<QLineEdit>(dialog, "txtLocation")->setText(u"new place"_qs);
            name->setText(u"A"_qs); // taken: the set makes it unique
            apply->click();
            note();
            child<QAbstractButton>(dialog, "cmdOK")->click();
        });
        form->setAction(u"toolproperties"_qs);
        QCOMPARE(seen.join(u' '), u"b/b a/a c/c A(1)/A(1)"_qs);
        QCOMPARE(text(form), u"a b [A(1)]"_qs);
        QCOMPARE(form->Tools().Item(u"A(1)"_qs)->Location(), u"new place"_qs);
        QVERIFY(form->Dirty());
        QCOMPARE(m_frame->panels[1] + m_frame->panels[2], QString());
        form->setAction(u"save"_qs);
        QCOMPARE(inFile("a.bmt"), u"a b A(1)"_qs);
    }

    void find()
    {
        frmToolSet *form = window(file("a.bmt", u"abcb"_qs)); // the last one becomes "b(1)"
        QVERIFY(QTest::qWaitForWindowActive(form));
        ListView *list = listOf(form);
        auto *field = child<QLineEdit>(form, "txtFind");
        auto *count = child<QLabel>(form, "lblFound");
        QVERIFY(!field->isVisible());
        const int top = list->y();
        menusOf(form)->mnuEditFind->trigger();
        QVERIFY(field->hasFocus() && list->y() > top);
        QTest::keyClicks(field, u"help:\"of b\""_qs); // the help texts are read later
        QTRY_COMPARE(count->text(), u"2 of 4"_qs);
        QCOMPARE(text(form), u"(a) b (c) b(1)"_qs);
        QTest::keyClick(field, Qt::Key_Return);
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(text(form), u"(a) b (c) [b(1)]"_qs);
        QTest::keyClick(field, Qt::Key_Down);
        QTest::keyClick(list->currentView(), Qt::Key_Up, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(text(form), u"(a) [b(1)] b (c)"_qs);
        menusOf(form)->mnuEditFindNext->trigger();
        Answers answers;
        answers.dialog(u"frmToolProps"_qs, [&](QDialog *dialog) {
            child<QAbstractButton>(dialog, "cmdNext")->click(); // there is none that is shown
            child<QLineEdit>(dialog, "txtDescription")->setText(u"q"_qs);
            child<QAbstractButton>(dialog, "cmdOK")->click();
        });
        form->setAction(u"toolproperties"_qs);
        field->setText(u"name:b"_qs);
        QCOMPARE(text(form), u"(a) b(1) (q) (c)"_qs); // hidden tools are not selected
        field->setText(u"name:z"_qs);
        QCOMPARE(count->text(), u"0 of 4"_qs);
        form->setAction(u"save"_qs);
        QCOMPARE(inFile("a.bmt"), u"a b(1) q c"_qs);
        QVERIFY(m_frame->commands.needsTool);
        field->setText(u"name:b"_qs);
        list->currentView()->selectAll();
        answers.message(u"Do you want to delete 'b(1)'?"_qs, QMessageBox::No);
        form->setAction(u"delete"_qs);
        form->setAction(u"cut"_qs);
        // Of the field's Escape the list sees neither the press nor the release.
        form->activateWindow(); // the questions have had the keyboard
        QVERIFY(QTest::qWaitForWindowActive(form));
        field->setFocus();
        QWindow *window = form->windowHandle();
        QTest::keyClick(window, Qt::Key_Escape);
        QVERIFY(!field->isVisible() && list->currentView()->hasFocus() && list->y() == top);
        QCOMPARE(text(form), u"a [b(1)*] q c"_qs);
        menusOf(form)->mnuEditFindNext->trigger(); // the last words once more
        QCOMPARE(text(form), u"(a) [b(1)*] (q) (c)"_qs);
        QVERIFY(field->isVisible() && !field->hasFocus());
    }

    void toolSetProperties()
    {
        frmToolSet *form = window(file("a.bmt", u"abc"_qs));
        auto *label = child<QLabel>(form, "lblToolSet");
        QTest::mouseDClick(label, Qt::LeftButton);
        QCOMPARE(m_frame->words, QStringList(u"properties"_qs));
        for (const bool changing : {false, true}) {
            Answers answers;
            answers.dialog(u"frmTSProps"_qs, [&](QDialog *dialog) {
                if (changing)
                    child<QLineEdit>(dialog, "txtDescription")->setText(u"<b>New"_qs);
                child<QAbstractButton>(dialog, "cmdOK")->click();
            });
            form->setAction(u"properties"_qs);
            QCOMPARE(form->Dirty(), changing);
            QCOMPARE(label->text(), changing ? u"<b>New"_qs : u"About a.bmt"_qs);
        }
    }

    void toolHelp()
    {
        frmToolSet *form = window(file("a.bmt", u"abc"_qs));
        select(form, u"c"_qs);
        for (QAction *door : {menusOf(form)->mnuEditX[ToolSetMenus::EditToolHelp],
                 menusOf(form)->mnuViewX[ToolSetMenus::ViewToolHelp]}) {
            door->trigger();
            QTRY_VERIFY(child<QWidget>(form, "frmToolHelp"));
            auto *help = child<QWidget>(form, "frmToolHelp");
            QCOMPARE(help->windowTitle(), u"Help For c"_qs);
            delete help;
        }
    }

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    QString file(const char *name, const QString &tools)
    {
        return Sets::put(path(name), tools, *m_storage) ? path(name) : QString();
    }
    QString inFile(const char *name) { return Sets::names(path(name), *m_storage); }

    frmToolSet *window(const QString &path)
    {
        frmToolSet *form = newWindow();
        form->setFileName(path);
        form->setAction(u"open"_qs);
        return form;
    }
    frmToolSet *newWindow()
    {
        auto *form =
            new frmToolSet(*m_frame, *m_state, *m_settings, *m_store, *m_storage, m_printers);
        m_frame->documents.append(form);
        form->resize(500, 300);
        form->show();
        return form;
    }

    /// Opens windows with these tools and takes steps in them, each "WINDOW
    /// [TOOLS TO SELECT] COMMAND". Returns the windows' texts, with "!" when changed, and what the
    /// clipboard has.
    QString play(const QStringList &sets, const QString &steps)
    {
        QList<QPointer<frmToolSet>> forms;
        for (const QString &tools : sets) {
            const QByteArray name = QByteArray::number(forms.size() + 1) + ".bmt";
            forms.append(window(file(name.constData(), tools)));
        }
        for (const QString &step : steps.split(u", "_qs)) {
            const QStringList words = step.split(u' ');
            frmToolSet *form = forms.at(words.constFirst().toInt() - 1);
            const bool finding = words.constLast() == u"find";
            if (finding) {
                menusOf(form)->mnuEditFind->trigger();
                child<QLineEdit>(form, "txtFind")->setText(words.at(1));
            } else if (words.size() == 3) {
                select(form, words.at(1));
            }
            if (words.constLast() == u"sort")
                modelOf(form)->sort(0, Qt::DescendingOrder);
            else if (words.constLast() == u"rename")
                form->Document().renameInPlace(
                    modelOf(form)->toolAt(listOf(form)->selectedRows().constFirst()), u"q"_qs);
            else if (words.constLast() == u"close")
                form->close();
            else if (words.constLast() == u"escape")
                form->ClearDragTools();
            else if (words.constLast() == u"caption")
                form->setCaption(u"another"_qs);
            else if (words.constLast() == u"newtool")
                addTool(form);
            else if (!finding)
                form->setAction(words.constLast());
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        QStringList shown;
        for (const auto &form : forms)
            shown.append(form ? text(form) + (form->Dirty() ? u"!"_qs : QString()) : u"closed"_qs);
        QStringList clipboard;
        for (int i = 1; m_state->ToolClipboard && i <= m_state->ToolClipboard->Count(); ++i)
            clipboard.append(m_state->ToolClipboard->Item(i)->Description);
        return shown.join(u" / "_qs) + u" / "_qs
            + (m_state->ToolClipboard ? clipboard.join(u' ') : u"-"_qs);
    }

    static ListView *listOf(frmToolSet *window) { return window->findChild<ListView *>(); }
    static ToolListModel *modelOf(frmToolSet *window)
    {
        return window->findChild<ToolListModel *>();
    }
    static ToolSetMenus *menusOf(frmToolSet *window) { return window->findChild<ToolSetMenus *>(); }
    /// Runs "newtool" and cancels the dialog that it opens.
    static void addTool(frmToolSet *window)
    {
        Answers answers;
        answers.dialog(u"frmToolProps"_qs, &QDialog::reject);
        window->setAction(u"newtool"_qs);
    }

    static void run(frmToolSet *window, const QString &selected, const char *word)
    {
        select(window, selected);
        window->setAction(QLatin1String(word));
    }
    static void select(frmToolSet *window, const QString &tools)
    {
        QList<int> rows;
        for (int row = 0; row < modelOf(window)->rowCount(); ++row) {
            if (tools.contains(modelOf(window)->toolAt(row)->Description))
                rows.append(row);
        }
        listOf(window)->selectRows(rows);
    }

    /// Names by position; "b*" is ghosted, "[b]" selected, "(b)" hidden.
    static QString text(frmToolSet *window)
    {
        const ToolListModel *model = modelOf(window);
        QStringList names = window->Document().keysInOrder();
        for (int position = 1; position <= names.size(); ++position) {
            QString &name = names[position - 1];
            const int row = model->rowOf(position);
            if (row < 0)
                name = u'(' + name + u')';
            else if (model->isGhosted(row))
                name += u'*';
            if (row >= 0 && listOf(window)->currentView()->selectionModel()->isRowSelected(row))
                name = u'[' + name + u']';
        }
        return names.join(u' ');
    }

    /// All that an undo brings back; the first line has the selection.
    QStringList stateOf(frmToolSet *window)
    {
        CVBATools copy(*m_storage);
        copy.setDescription(window->Tools().Description());
        QStringList keys;
        for (const ToolPtr &tool : window->Document().toolsInOrder()) {
            copy.Add(std::make_shared<CVBATool>(*tool));
            keys.append(tool->Description);
        }
        PictureBox box(Twips {275}, Twips {275});
        const bool saved = copy.Save(path("copy.bmt"), keys, box);
        QFile::remove(path("copy.bak"));
        return {text(window).remove(u'*'), window->Dirty() ? u"dirty"_qs : u"clean"_qs,
            child<QLabel>(window, "lblToolSet")->text(), SetDump::names(window->Tools()).join(u' '),
            saved ? QString::fromLatin1(Files::contentOf(path("copy.bmt")).toBase64())
                  : copy.ErrorDescription};
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ToolSetStorage> m_storage;
    std::unique_ptr<mTSM> m_state;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<SettingsStore> m_store;
    std::unique_ptr<FakeFrame> m_frame;
    Printers m_printers {[] { return QStringList(); }};
};

TSM_TEST(frmToolSet_test);
#include "tst_frmToolSet.moc"
