#include "model/ToolFileRecognition.h"
#include "model/ToolSetDocument.h"
#include "model/ToolSetStorage.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureControl.h"
#include "platform/rtf/RichTextBox.h"
#include "shell/Settings.h"
#include "support/Answers.h"
#include "support/Files.h"
#include "support/Pictures.h"
#include "support/ProgramFile.h"
#include "support/SetDump.h"
#include "support/TestRunner.h"
#include "tooledit/EventsPage.h"
#include "tooledit/frmFileButton.h"
#include "tooledit/frmToolProps.h"

#include <QtWidgets>

using namespace Pictures;

namespace {

const QString question = u"Do you want to save your changes first?"_qs;

ToolPtr tool(const QString &name)
{
    auto made = std::make_shared<CVBATool>();
    made->Description = name;
    made->setLocation(u"c:\\tools\\"_qs + name + u".exe"_qs);
    made->ToolType = CVBATool::Macro;
    made->CommandLine = u"/x"_qs;
    made->Picture = filled(18, 18, red);
    made->Enabled = true;
    made->AccessOptions = 0x7E; // all but the tool bar, and bits without a meaning
    made->VBEvents = qint32(0x84000201);
    made->HelpString = u"help of "_qs + name;
    return made;
}

} // namespace

class frmToolProps_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        cleanup();
        m_folder = std::make_unique<QTemporaryDir>();
        m_store = std::make_unique<SettingsStore>(m_folder->path());
        QVERIFY(QDir(m_folder->path()).mkpath(u"macros"_qs));
        m_store->SaveSetting(QString::fromUtf16(Settings::application),
            QString::fromUtf16(Settings::section), u"Macro Path"_qs,
            m_folder->filePath(u"macros"_qs));
        m_settings = std::make_unique<Settings>(m_folder->path());
        m_settings->LoadSettings(*m_store);
        m_storage = std::make_unique<ToolSetStorage>(1252, m_folder->path(), m_folder->path());
        m_document = std::make_unique<ToolSetDocument>(*m_storage);
        m_dialog = std::make_unique<frmToolProps>(*m_document, *m_settings, *m_store);
        m_heard.clear();
        const auto hear = [this](const QString &what) { m_heard.append(what); };
        const frmToolProps *dialog = m_dialog.get();
        connect(dialog, &frmToolProps::Change, this, [=] { hear(u"Change"_qs); });
        connect(dialog, &frmToolProps::NameChange, this,
            [=](const QString &from, const QString &to) { hear(u"Name "_qs + from + u'>' + to); });
        connect(dialog, &frmToolProps::LocationChange, this,
            [=](const QString &from, const QString &to) {
                hear(u"Location "_qs + from + u'>' + to);
            });
        connect(dialog, &frmToolProps::UpdatePicture, this, [=, this](const QImage &picture) {
            hear(u"Picture %1, %2"_qs.arg(
                QString::number(picture.pixel(0, 0), 16), m_tool->CommandLine));
        });
        connect(dialog, &frmToolProps::RequestNextTool, this, [=] { hear(u"Next"_qs); });
        connect(dialog, &frmToolProps::RequestPriorTool, this, [=] { hear(u"Prior"_qs); });
        m_tool = tool(u"Alpha"_qs);
        m_document->append({m_tool});
        m_dialog->setTool(m_tool);
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
    }

    void cleanup() { m_dialog.reset(); }

    void showsTheTool()
    {
        QVERIFY(!canApply());
        QCOMPARE(shown(), u"Macro|Alpha|c:\\tools\\Alpha.exe|/x"_qs);
        QCOMPARE(picture(), filled(18, 18, red));
        QStringList checked;
        for (const QCheckBox *box : m_dialog->findChildren<QCheckBox *>()) {
            if (box->isChecked())
                checked.append(box->objectName());
        }
        checked.sort();
        QCOMPARE(checked.join(u' '), u"chkEnabled chkEvent0 chkEvent9 chkRunOutOfProcess"_qs);
        QCOMPARE(control<RichTextBox>("rtControl")->Text(), u"help of Alpha"_qs);
        QCOMPARE(m_dialog->CaptionText(), u"Alpha"_qs);
    }

    /// What has no control, and the keys that the captions do not name.
    void fieldsAndKeys()
    {
        const auto *stored = control<QLabel>("lblStored");
        QCOMPARE(stored->text(), u"In the add-in's list: yes\nEvents enabled: yes"_qs);
        m_tool->Hotkey = u"Ctrl+K"_qs;
        m_tool->AppName16 = QString(500, u'x');
        m_tool->AccessOptions = 0;
        m_tool->HelpId = -3;
        m_dialog->setTool(m_tool);
        QCOMPARE(stored->text(),
            u"Hot key (not in use): Ctrl+K\nApplication name (16 bits): "_qs + QString(80, u'x')
                + u"…\nHelp context: -3"_qs);
        m_dialog->setTool(std::make_shared<CVBATool>());
        QVERIFY(!stored->isVisible());

        QCOMPARE(m_dialog->focusWidget(), control<QLineEdit>("txtDescription"));
        QTest::keyClick(m_dialog.get(), Qt::Key_L, Qt::AltModifier);
        QCOMPARE(m_dialog->focusWidget(), control<QLineEdit>("txtLocation"));
        QTest::keyClick(m_dialog.get(), Qt::Key_E, Qt::AltModifier);
        QVERIFY(control<QCheckBox>("chkEnabled")->isChecked());
        control<QTabWidget>("sstAll")->setCurrentIndex(1);
        QTest::keyClick(m_dialog.get(), Qt::Key_E, Qt::AltModifier); // belongs to a hidden page
        QVERIFY(control<QCheckBox>("chkEnabled")->isChecked());
    }

    /// What is written is what the controls say; the rest of the tool stays.
    void applies()
    {
        auto *kinds = control<QComboBox>("cboToolType");
        kinds->setFocus();
        QTest::keyClick(kinds, Qt::Key_Down); // Help File
        type("txtCommandLine", u"/new"_qs);
        for (const char *box :
            {"chkEnabled", "chkInToolBar", "chkRunOutOfProcess", "chkEvent0", "chkEvent25"})
            press(box);
        QTest::keyClicks(control<RichTextBox>("rtControl"), u"More "_qs);
        QCOMPARE(m_tool->CommandLine, u"/x"_qs); // nothing before Apply
        QVERIFY(canApply());
        press("cmdApply");
        QVERIFY(!canApply());
        QVERIFY(m_tool->HelpString.startsWith(u"{\\rtf1"_qs));
        QVERIFY(m_tool->HelpString.contains(u"More help of Alpha"_qs));
        m_tool->HelpString.clear();
        QCOMPARE(SetDump::line(*m_tool),
            u"Alpha|c:\\tools\\Alpha.exe|||c:\\tools\\Alpha.exe|/new||3 6f 0 86000200 0 0"_qs);
        QCOMPARE(m_tool->Picture, filled(18, 18, red));
    }

    /// As long as a file can hold them.
    void longTexts()
    {
        const QString text(65535, u'x');
        m_tool->Description = m_tool->CommandLine = text;
        m_tool->setLocation(text);
        m_dialog->setTool(m_tool);
        press("cmdOK");
        QVERIFY(m_tool->Description == text && m_tool->CommandLine == text);
        QVERIFY(m_tool->Location() == text);
    }

    void signalsInOrder()
    {
        type("txtDescription", u"Beta"_qs);
        type("txtLocation", u"b.exe"_qs);
        type("txtCommandLine", u"/b"_qs); // stored after the picture is told
        press("cmdApply");
        QCOMPARE(m_heard,
            (QStringList {u"Name Alpha>Beta"_qs, u"Location c:\\tools\\Alpha.exe>b.exe"_qs,
                u"Picture ffff0000, /x"_qs, u"Change"_qs}));
        m_heard.clear();
        type("txtDescription", u"BETA"_qs); // letter case counts
        press("cmdApply");
        QCOMPARE(m_heard,
            (QStringList {u"Name Beta>BETA"_qs, u"Picture ffff0000, /b"_qs, u"Change"_qs}));
        QCOMPARE(m_tool->AppName32, u"b.exe"_qs);
        m_document->undo(); // each Apply is one step
        m_document->undo();
        QCOMPARE(m_tool->Description + m_tool->Location() + m_tool->CommandLine,
            u"Alphac:\\tools\\Alpha.exe/x"_qs);
    }

    void nameMadeUnique()
    {
        m_document->append({tool(u"Beta"_qs)});
        type("txtDescription", u"Beta"_qs);
        press("cmdApply");
        QCOMPARE(control<QLineEdit>("txtDescription")->text(), u"Beta(1)"_qs);
        QVERIFY(!canApply());
        QCOMPARE(m_dialog->CaptionText(), u"Beta(1)"_qs);
    }

    void everyControlMakesItDirty()
    {
        for (const char *name : {"txtCommandLine", "txtDescription", "txtLocation", "chkEnabled",
                 "chkInToolBar", "chkRunOutOfProcess", "chkEvent13", "rtControl", "cboToolType"}) {
            m_dialog->setTool(m_tool);
            QVERIFY(!canApply());
            auto *changed = control<QWidget>(name);
            if (auto *box = qobject_cast<QCheckBox *>(changed))
                box->click();
            else
                QTest::keyClick(
                    changed, Qt::Key_S); // a letter, or the first kind that starts with it
            QTRY_VERIFY2(canApply(), name); // the editor tells after a pause
        }
    }

    void separator()
    {
        auto *kinds = control<QComboBox>("cboToolType");
        kinds->setFocus();
        QTest::keyClick(kinds, Qt::Key_End);
        QCOMPARE(shown(), u"Separator|Separator|c:\\tools\\Alpha.exe|/x"_qs);
        QCOMPARE(picture(), filled(18, 18, grey));
        // All fields stay open, and what is typed later counts.
        type("txtDescription", u"Line"_qs);
        press("cmdApply");
        QCOMPARE(m_tool->Description, u"Line"_qs);
        QCOMPARE(m_tool->ToolType, qint16(CVBATool::Separator));
        // Shown again it keeps its own name and picture.
        m_tool->Picture = filled(18, 18, blue);
        const ToolPtr other = tool(u"Other"_qs);
        for (const qint16 kind : {2, 6, -2, 32767}) { // of which nobody knows the last three
            other->ToolType = kind;
            m_dialog->setTool(other);
            QCOMPARE(kinds->currentText(), u"Macro"_qs);
        }
        m_dialog->setTool(m_tool);
        QCOMPARE(control<QLineEdit>("txtDescription")->text(), u"Line"_qs);
        QCOMPARE(picture(), filled(18, 18, blue));
        QVERIFY(!canApply());
    }

    void closing()
    {
        constexpr auto unasked = QMessageBox::NoButton;
        const std::tuple<const char *, bool, QMessageBox::StandardButton, bool> rows[] = {
            // button (none: the window's own), changed, answer, saved
            {"cmdOK", true, unasked, true},
            {"cmdCancel", false, unasked, false},
            {"cmdCancel", true, QMessageBox::Yes, true},
            {"cmdCancel", true, QMessageBox::No, false},
            {nullptr, true, QMessageBox::Yes, true},
            {nullptr, true, QMessageBox::No, false},
        };
        for (const auto &[button, changed, answer, saved] : rows) {
            init();
            Answers answers;
            if (answer != unasked)
                answers.message(question, answer);
            if (changed)
                type("txtCommandLine", u"/new"_qs);
            if (button)
                press(button);
            else
                m_dialog->close();
            QVERIFY(!m_dialog->isVisible());
            QCOMPARE(m_dialog->OK(), QByteArrayView(button) == "cmdOK");
            QCOMPARE(m_tool->CommandLine, saved ? u"/new"_qs : u"/x"_qs);
            QCOMPARE(m_heard.contains(u"Change"_qs), saved);
        }
    }

    void stepping()
    {
        constexpr auto unasked = QMessageBox::NoButton;
        const std::tuple<QString, QMessageBox::StandardButton, int> rows[] = {
            // button, answer, page
            {u"Next"_qs, unasked, 0},
            {u"Prior"_qs, unasked, 0},
            {u"Next"_qs, QMessageBox::Yes, 0},
            {u"Prior"_qs, QMessageBox::No, 1},
            {u"Next"_qs, unasked, 2},
        };
        const ToolPtr other = tool(u"Other"_qs);
        for (const auto &[button, answer, tab] : rows) {
            init();
            const auto give = [&] { m_dialog->setTool(other); };
            connect(m_dialog.get(), &frmToolProps::RequestNextTool, this, give);
            connect(m_dialog.get(), &frmToolProps::RequestPriorTool, this, give);
            Answers answers;
            if (answer != unasked) {
                answers.message(question, answer);
                type("txtCommandLine", u"/new"_qs);
            }
            control<QTabWidget>("sstAll")->setCurrentIndex(tab);
            press(qPrintable(u"cmd"_qs + button));
            QCOMPARE(m_heard.constLast(), button);
            QCOMPARE(m_tool->CommandLine, answer == QMessageBox::Yes ? u"/new"_qs : u"/x"_qs);
            QCOMPARE(control<QLineEdit>("txtDescription")->text(), u"Other"_qs);
            QCOMPARE(m_dialog->Tool(), other);
            QVERIFY(!canApply());
            QCOMPARE(m_dialog->focusWidget() == control<RichTextBox>("rtControl"), tab == 2);
        }
    }

    void keys()
    {
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
        const auto pageAfter = [this](Qt::Key key) {
            QTest::keyClick(m_dialog->focusWidget(), key, Qt::ControlModifier);
            return control<QTabWidget>("sstAll")->currentIndex();
        };
        QCOMPARE(pageAfter(Qt::Key_Tab), 1);
        QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Tab); // to the groups of events
        QCOMPARE(pageAfter(Qt::Key_PageDown), 2);
        control<RichTextBox>("rtControl")->setFocus();
        QCOMPARE(pageAfter(Qt::Key_Tab), 2); // a tab in the text
        QCOMPARE(pageAfter(Qt::Key_PageDown), 0);
        QCOMPARE(pageAfter(Qt::Key_PageUp), 2);
        // Enter is for the button that has the focus, only without one for OK.
        Answers answers;
        answers.message(question, QMessageBox::No);
        control<QPushButton>("cmdNext")->setFocus();
        QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Return);
        QCOMPARE(m_heard, QStringList {u"Next"_qs});
        QVERIFY(m_dialog->isVisible());
    }

    void browseTool()
    {
        const QByteArray program = ProgramFile::pe({{{}, 1, {ProgramFile::plain(32, blue)}}});
        const std::tuple<QString, QByteArray, QString, QString, QRgb> rows[] = {
            // A program: its icon and name.
            {u"MyTool.exe"_qs, program, u"Tool(3)"_qs, u"Standard Executable|Mytool.exe|*|/x"_qs,
                blue},
            {u"none.exe"_qs, "nothing", u"Mine"_qs, u"Standard Executable|Mine|*|/x"_qs, red},
            // In the macro folder: a bare name.
            {u"macros/do.bas"_qs, "nothing", u"Alpha.exe"_qs, u"Macro|Do.bas|do.bas|/x"_qs, red},
            {u"macros/in.exe"_qs, program, u"Mine"_qs, u"Standard Executable|Mine|in.exe|/x"_qs,
                blue},
        };
        for (const auto &[name, content, description, expected, colour] : rows) {
            const QString path = QDir::toNativeSeparators(m_folder->filePath(name));
            QVERIFY(Files::put(path, content));
            m_dialog->setTool(m_tool);
            type("txtDescription", description);
            Answers answers;
            answers.file(u"Select Tool"_qs, path);
            press("cmdBrowseTool");
            QCOMPARE(shown(), QString(expected).replace(u'*', path));
            QCOMPARE(picture(), filled(18, 18, colour));
            QVERIFY(canApply());
        }
    }

    /// Only what exists is proposed or taken.
    void browseStart()
    {
        for (const char *name : {"macros/do.bmm", "macros/t.exe", "here.txt"})
            QVERIFY(Files::put(m_folder->filePath(QString::fromLatin1(name)), "text"));
        const QString macros = m_folder->filePath(u"macros"_qs);
        const QString here = m_folder->path();
        const QString current = QDir::currentPath();
        using Tool = CVBATool;
        const std::tuple<int, QString, QString> rows[] = {
            // kind, location, folder and proposed name and file type
            {Tool::Macro, u"do.bmm"_qs, macros + u"|do.bmm|1"_qs},
            {Tool::Macro, u"gone.bmm"_qs, macros + u"||1"_qs},
            {Tool::Macro, QString(), macros + u"||1"_qs},
            {Tool::StandardExecutable, u"t.exe"_qs, macros + u"|t.exe|0"_qs},
            {Tool::StandardExecutable, u"C:\\T\\T1.EXE"_qs, macros + u"||0"_qs},
            {Tool::TextFile, here + u"/here.txt"_qs, here + u"|here.txt|2"_qs},
            {Tool::HelpFile, here + u"/gone.hlp"_qs, here + u"||4"_qs},
            {Tool::NoKind, here, here + u"||0"_qs},
        };
        for (const auto &[kind, location, expected] : rows) {
            m_tool->ToolType = qint16(kind);
            m_tool->setLocation(location);
            m_dialog->setTool(m_tool);
            QString state;
            Answers answers;
            answers.dialog(u"QFileDialog"_qs, [&](QDialog *dialog) {
                auto *files = qobject_cast<QFileDialog *>(dialog);
                state = u"%1|%2|%3"_qs.arg(files->directory().path(),
                    files->findChild<QLineEdit *>(u"fileNameEdit"_qs)->text(),
                    QString::number(
                        files->findChild<QComboBox *>(u"fileTypeCombo"_qs)->currentIndex()));
                answers.message(u"*"_qs, QMessageBox::Ok); // no such file
                Answers::choose(files, u"C:\\none.txt"_qs);
                files->reject();
            });
            press("cmdBrowseTool");
            QCOMPARE(state, expected);
            QVERIFY(!canApply());
        }
    }

    void unrecognised()
    {
        const QString path = m_folder->filePath(u"readme.doc"_qs);
        QVERIFY(Files::put(path, "text"));
        Answers answers;
        answers.file(u"Select Tool"_qs, QString());
        press("cmdBrowseTool"); // cancelled
        answers.file(u"Select Tool"_qs, path);
        answers.message(u"Unable to recognize this type of file.\n\n"
                        "File types are recognized by their extensions.\n"
                        "The recognized extensions consist of:\n\n"
                        "exe, com, bat\t-  executables files\n"
                        "exe, dll\t\t-  OLE servers\n"
                        "bas, bmm\t-  macro files\n"
                        "hlp\t\t-  help files\n"
                        "txt, ini\t\t-  text files\n"_qs,
            QMessageBox::Ok);
        press("cmdBrowseTool");
        QVERIFY(!canApply());
        QCOMPARE(control<QLineEdit>("txtLocation")->text(), u"c:\\tools\\Alpha.exe"_qs);
    }

    void browseImage()
    {
        const QDir pictures(m_folder->filePath(u"pictures"_qs));
        const std::tuple<QByteArray, const char *, QRgb> rows[] = {
            // file, button, the tool's picture then
            {"no picture", "cmdOK", red},
            {Picture::encodeBitmap(filled(18, 18, blue)), "cmdCancel", red},
            {Picture::encodeBitmap(filled(18, 18, blue)), "cmdOK", blue},
        };
        for (const auto &[file, closing, colour] : rows) {
            QVERIFY(pictures.mkpath(u"."_qs) && Files::put(pictures.filePath(u"a.bmp"_qs), file));
            m_tool->Picture = filled(20, 20, red); // not what the button would make of it
            m_dialog->setTool(m_tool);
            Answers answers;
            answers.dialog(u"frmFileButton"_qs, [&](QDialog *dialog) {
                // It shows the tool's picture until another is chosen.
                auto *button = dialog->findChild<PictureControl *>(u"picButton"_qs);
                QCOMPARE(button->Image(), filled(18, 18, red));
                qobject_cast<frmFileButton *>(dialog)->setFolder(pictures.path());
                QTest::keyClick(dialog->findChild<QWidget *>(u"FileList"_qs), Qt::Key_Down);
                dialog->findChild<QPushButton *>(QLatin1StringView(closing))->click();
            });
            press("cmdBrowseImage");
            const int side = colour == red ? 20 : 18;
            QCOMPARE(picture(), filled(side, side, colour));
            QCOMPARE(canApply(), colour == blue);
        }
    }

    /// An unchanged text comes out as it went in; the tool's identification goes to the caret.
    void toolId()
    {
        const QString rtf = u"{\\rtf1\\ansi {\\b Bold}  and plain}"_qs;
        m_tool->HelpString = rtf;
        m_dialog->setTool(m_tool);
        type("txtCommandLine", u"/y"_qs);
        press("cmdApply");
        QCOMPARE(m_tool->HelpString, rtf);
        auto *help = control<RichTextBox>("rtControl");
        help->moveCursor(QTextCursor::End);
        press("cmdToolID");
        QCOMPARE(help->Text(), u"Bold  and plain\uFFFCAlpha "_qs);
        QCOMPARE(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32),
            filled(18, 18, red));
        QCOMPARE(m_dialog->focusWidget(), help);
        QTRY_VERIFY(canApply());
        press("cmdApply");
        QVERIFY(m_tool->HelpString.contains(u"\\pict"_qs));
    }

    void eventGroups()
    {
        const qint32 groups[] = {0x1FF, 0x600, 0x1800, 0xE000, 0x3F0000, 0x3C00000};
        for (int group = 0; group < 6; ++group) {
            m_tool->VBEvents = 0;
            m_dialog->setTool(m_tool);
            press(qPrintable(u"cmdSelectAll%1"_qs.arg(group)));
            QVERIFY(canApply());
            press("cmdApply");
            QCOMPARE(m_tool->VBEvents, groups[group]);
            press(qPrintable(u"cmdSelectAll%1"_qs.arg(group)));
            QVERIFY(!canApply()); // no box has changed
            m_tool->VBEvents = -1;
            m_dialog->setTool(m_tool);
            press(qPrintable(u"cmdSelectNone%1"_qs.arg(group)));
            press("cmdApply");
            QCOMPARE(m_tool->VBEvents, ~groups[group]);
        }
    }

private:
    template <class T>
    T *control(const char *name) const
    {
        return m_dialog->findChild<T *>(QString::fromLatin1(name));
    }
    void press(const char *name) const { control<QAbstractButton>(name)->click(); }
    void type(const char *name, const QString &text) const
    {
        control<QLineEdit>(name)->selectAll();
        QTest::keyClicks(control<QLineEdit>(name), text);
    }
    bool canApply() const { return control<QPushButton>("cmdApply")->isEnabled(); }
    QImage picture() const { return control<PictureControl>("picToolImage")->Picture(); }
    /// Kind, name, location, command line.
    QString shown() const
    {
        QStringList texts {control<QComboBox>("cboToolType")->currentText()};
        for (const char *name : {"txtDescription", "txtLocation", "txtCommandLine"})
            texts.append(control<QLineEdit>(name)->text());
        return texts.join(u'|');
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<SettingsStore> m_store;
    std::unique_ptr<ToolSetStorage> m_storage;
    std::unique_ptr<ToolSetDocument> m_document;
    std::unique_ptr<frmToolProps> m_dialog;
    ToolPtr m_tool;
    QStringList m_heard;
};

TSM_TEST(frmToolProps_test);
#include "tst_frmToolProps.moc"
