#include "platform/desktop/SettingsStore.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureControl.h"
#include "platform/rtf/RichTextBox.h"
#include "shell/Settings.h"
#include "support/Answers.h"
#include "support/Files.h"
#include "support/ProgramFile.h"
#include "support/TestRunner.h"
#include "tooledit/EventsPage.h"
#include "tooledit/ToolFileRecognition.h"
#include "tooledit/frmFileButton.h"
#include "tooledit/frmToolProps.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

namespace {

constexpr QRgb red = 0xFFFF0000;
constexpr QRgb blue = 0xFF0000FF;
const QString question = QStringLiteral("Do you want to save your changes first?");

QImage filled(QRgb colour)
{
    QImage image(18, 18, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

ToolPtr tool(const QString &name)
{
    auto made = std::make_shared<CVBATool>();
    made->Description = name;
    made->setLocation(QStringLiteral("c:\\tools\\") + name + QStringLiteral(".exe"));
    made->ToolType = CVBATool::Macro;
    made->CommandLine = QStringLiteral("/x");
    made->Picture = filled(red);
    made->Enabled = true;
    made->AccessOptions = 0x7E; // all but the tool bar, and bits without a meaning
    made->VBEvents = qint32(0x84000201);
    made->HelpString = QStringLiteral("help of ") + name;
    return made;
}

} // namespace

class frmToolProps_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void showsTheTool();
    void applies();
    void longTexts();
    void signalsInOrder();
    void nameMadeUnique();
    void everyControlMakesItDirty_data();
    void everyControlMakesItDirty();
    void separator();
    void unknownKind();
    void closing_data();
    void closing();
    void stepping_data();
    void stepping();
    void browseTool_data();
    void browseTool();
    void unrecognised();
    void browseImage_data();
    void browseImage();
    void toolId();
    void eventGroups_data();
    void eventGroups();

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

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<SettingsStore> m_store;
    std::unique_ptr<frmToolProps> m_dialog;
    ToolPtr m_tool;
    QStringList m_heard;
};

void frmToolProps_test::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<SettingsStore>(m_folder->path());
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("macros")));
    m_store->SaveSetting(QString::fromUtf16(Settings::application),
        QString::fromUtf16(Settings::section), QStringLiteral("Macro Path"),
        m_folder->filePath(QStringLiteral("macros")));
    m_settings = std::make_unique<Settings>(m_folder->path());
    m_settings->LoadSettings(*m_store);
    m_dialog = std::make_unique<frmToolProps>(*m_settings, *m_store);
    m_heard.clear();
    const auto hear = [this](const QString &what) { m_heard.append(what); };
    const frmToolProps *dialog = m_dialog.get();
    connect(dialog, &frmToolProps::Change, this, [=] { hear(QStringLiteral("Change")); });
    connect(dialog, &frmToolProps::NameChange, this, [=](const QString &from, const QString &to) {
        hear(QStringLiteral("Name ") + from + u'>' + to);
    });
    connect(
        dialog, &frmToolProps::LocationChange, this, [=](const QString &from, const QString &to) {
            hear(QStringLiteral("Location ") + from + u'>' + to);
        });
    connect(dialog, &frmToolProps::UpdatePicture, this, [=, this](const QImage &picture) {
        hear(QStringLiteral("Picture %1, %2")
                 .arg(QString::number(picture.pixel(0, 0), 16), m_tool->CommandLine));
    });
    connect(dialog, &frmToolProps::RequestNextTool, this, [=] { hear(QStringLiteral("Next")); });
    connect(dialog, &frmToolProps::RequestPriorTool, this, [=] { hear(QStringLiteral("Prior")); });
    m_tool = tool(QStringLiteral("Alpha"));
    m_dialog->setTool(m_tool);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
}

void frmToolProps_test::cleanup()
{
    m_dialog.reset();
}

void frmToolProps_test::showsTheTool()
{
    QVERIFY(!canApply());
    QCOMPARE(control<QComboBox>("cboToolType")->currentText(), QStringLiteral("Macro"));
    QCOMPARE(control<QLineEdit>("txtDescription")->text(), QStringLiteral("Alpha"));
    QCOMPARE(control<QLineEdit>("txtLocation")->text(), QStringLiteral("c:\\tools\\Alpha.exe"));
    QCOMPARE(control<QLineEdit>("txtCommandLine")->text(), QStringLiteral("/x"));
    QCOMPARE(control<PictureControl>("picToolImage")->Picture(), filled(red));
    QVERIFY(control<QCheckBox>("chkEnabled")->isChecked());
    QVERIFY(!control<QCheckBox>("chkInToolBar")->isChecked());
    QVERIFY(control<QCheckBox>("chkRunOutOfProcess")->isChecked());
    for (int i = 0; i < VbEvents::eventCount; ++i) {
        const auto *box = m_dialog->findChild<QCheckBox *>(QStringLiteral("chkEvent%1").arg(i));
        QCOMPARE(box->isChecked(), i == 0 || i == 9);
    }
    QCOMPARE(control<RichTextBox>("rtControl")->Text(), QStringLiteral("help of Alpha"));
    QCOMPARE(m_dialog->CaptionText(), QStringLiteral("Alpha"));
}

/// What is written is what the controls say; the rest of the tool stays.
void frmToolProps_test::applies()
{
    auto *kinds = control<QComboBox>("cboToolType");
    kinds->setFocus();
    QTest::keyClick(kinds, Qt::Key_Down); // Help File
    type("txtCommandLine", QStringLiteral("/new"));
    control<QCheckBox>("chkEnabled")->click();
    control<QCheckBox>("chkInToolBar")->click();
    control<QCheckBox>("chkRunOutOfProcess")->click();
    control<QCheckBox>("chkEvent0")->click();
    control<QCheckBox>("chkEvent25")->click();
    QTest::keyClicks(control<RichTextBox>("rtControl"), QStringLiteral("More "));
    QCOMPARE(m_tool->CommandLine, QStringLiteral("/x")); // nothing before Apply
    QVERIFY(canApply());
    press("cmdApply");
    QVERIFY(!canApply());
    QCOMPARE(m_tool->ToolType, qint16(CVBATool::HelpFile));
    QCOMPARE(m_tool->CommandLine, QStringLiteral("/new"));
    QVERIFY(!m_tool->Enabled);
    QCOMPARE(m_tool->AccessOptions, qint16(0x6F));
    QCOMPARE(m_tool->VBEvents, qint32(0x86000200));
    QVERIFY(m_tool->HelpString.startsWith(QStringLiteral("{\\rtf1")));
    QVERIFY(m_tool->HelpString.contains(QStringLiteral("More help of Alpha")));
    QCOMPARE(m_tool->Picture, filled(red));
}

/// As long as a file can hold them.
void frmToolProps_test::longTexts()
{
    const QString text(65535, u'x');
    m_tool->Description = m_tool->CommandLine = text;
    m_tool->setLocation(text);
    m_dialog->setTool(m_tool);
    press("cmdOK");
    QVERIFY(m_tool->Description == text && m_tool->CommandLine == text);
    QVERIFY(m_tool->Location() == text);
}

void frmToolProps_test::signalsInOrder()
{
    type("txtDescription", QStringLiteral("Beta"));
    type("txtLocation", QStringLiteral("b.exe"));
    type("txtCommandLine", QStringLiteral("/b")); // stored after the picture is told
    press("cmdApply");
    QCOMPARE(m_heard,
        (QStringList {QStringLiteral("Name Alpha>Beta"),
            QStringLiteral("Location c:\\tools\\Alpha.exe>b.exe"),
            QStringLiteral("Picture ffff0000, /x"), QStringLiteral("Change")}));
    m_heard.clear();
    type("txtDescription", QStringLiteral("BETA")); // letter case counts
    press("cmdApply");
    QCOMPARE(m_heard,
        (QStringList {QStringLiteral("Name Beta>BETA"), QStringLiteral("Picture ffff0000, /b"),
            QStringLiteral("Change")}));
    QCOMPARE(m_tool->AppName32, QStringLiteral("b.exe"));
}

void frmToolProps_test::nameMadeUnique()
{
    connect(m_dialog.get(), &frmToolProps::NameChange, this,
        [this] { m_tool->Description = QStringLiteral("Beta(1)"); });
    type("txtDescription", QStringLiteral("Beta"));
    press("cmdApply");
    QCOMPARE(control<QLineEdit>("txtDescription")->text(), QStringLiteral("Beta(1)"));
    QVERIFY(!canApply());
    QCOMPARE(m_dialog->CaptionText(), QStringLiteral("Beta(1)"));
}

void frmToolProps_test::everyControlMakesItDirty_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"txtCommandLine", "txtDescription", "txtLocation", "chkEnabled",
             "chkInToolBar", "chkRunOutOfProcess", "chkEvent13", "rtControl", "cboToolType"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void frmToolProps_test::everyControlMakesItDirty()
{
    QFETCH(QString, name);
    auto *changed = m_dialog->findChild<QWidget *>(name);
    if (auto *box = qobject_cast<QCheckBox *>(changed))
        box->click();
    else
        QTest::keyClick(changed, Qt::Key_S); // a letter, or the first kind that starts with it
    QTRY_VERIFY(canApply()); // the editor tells after a pause
}

void frmToolProps_test::separator()
{
    auto *kinds = control<QComboBox>("cboToolType");
    kinds->setFocus();
    QTest::keyClick(kinds, Qt::Key_End);
    QCOMPARE(kinds->currentText(), QStringLiteral("Separator"));
    QCOMPARE(control<QLineEdit>("txtDescription")->text(), QStringLiteral("Separator"));
    QCOMPARE(control<PictureControl>("picToolImage")->Picture(), filled(0xFFC0C0C0));
    // All fields stay open, and what is typed later counts.
    type("txtDescription", QStringLiteral("Line"));
    press("cmdApply");
    QCOMPARE(m_tool->Description, QStringLiteral("Line"));
    QCOMPARE(m_tool->ToolType, qint16(CVBATool::Separator));
    // Shown again it keeps its own name and picture.
    m_tool->Picture = filled(blue);
    m_dialog->setTool(tool(QStringLiteral("Other")));
    m_dialog->setTool(m_tool);
    QCOMPARE(control<QLineEdit>("txtDescription")->text(), QStringLiteral("Line"));
    QCOMPARE(control<PictureControl>("picToolImage")->Picture(), filled(blue));
    QVERIFY(!canApply());
}

void frmToolProps_test::unknownKind()
{
    const ToolPtr strange = tool(QStringLiteral("Strange"));
    for (const qint16 kind : {6, -2, 32767}) {
        strange->ToolType = kind;
        m_dialog->setTool(strange);
        QCOMPARE(control<QComboBox>("cboToolType")->currentText(), QStringLiteral("Macro"));
    }
}

void frmToolProps_test::closing_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<int>("answer"); // 0: no question
    QTest::addColumn<bool>("saved");
    QTest::newRow("OK") << QStringLiteral("cmdOK") << true << 0 << true;
    QTest::newRow("Cancel, nothing changed") << QStringLiteral("cmdCancel") << false << 0 << false;
    QTest::newRow("Cancel, Yes") << QStringLiteral("cmdCancel") << true << int(QMessageBox::Yes)
                                 << true;
    QTest::newRow("Cancel, No") << QStringLiteral("cmdCancel") << true << int(QMessageBox::No)
                                << false;
    QTest::newRow("closed, Yes") << QString() << true << int(QMessageBox::Yes) << true;
    QTest::newRow("closed, No") << QString() << true << int(QMessageBox::No) << false;
}

void frmToolProps_test::closing()
{
    QFETCH(QString, button);
    QFETCH(bool, changed);
    QFETCH(int, answer);
    QFETCH(bool, saved);
    Answers answers;
    if (answer != 0)
        answers.message(question, static_cast<QMessageBox::StandardButton>(answer));
    if (changed)
        type("txtCommandLine", QStringLiteral("/new"));
    if (button.isEmpty())
        m_dialog->close();
    else
        press(qPrintable(button));
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->OK(), button == QStringLiteral("cmdOK"));
    QCOMPARE(m_tool->CommandLine, saved ? QStringLiteral("/new") : QStringLiteral("/x"));
    QCOMPARE(m_heard.contains(QStringLiteral("Change")), saved);
}

void frmToolProps_test::stepping_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("answer");
    QTest::addColumn<int>("tab");
    QTest::newRow("next, nothing changed") << QStringLiteral("cmdNext") << 0 << 0;
    QTest::newRow("prior, nothing changed") << QStringLiteral("cmdPrior") << 0 << 0;
    QTest::newRow("next, Yes") << QStringLiteral("cmdNext") << int(QMessageBox::Yes) << 0;
    QTest::newRow("prior, No") << QStringLiteral("cmdPrior") << int(QMessageBox::No) << 1;
    QTest::newRow("next on the help page") << QStringLiteral("cmdNext") << 0 << 2;
}

void frmToolProps_test::stepping()
{
    QFETCH(QString, button);
    QFETCH(int, answer);
    QFETCH(int, tab);
    const ToolPtr other = tool(QStringLiteral("Other"));
    const auto give = [&] { m_dialog->setTool(other); };
    connect(m_dialog.get(), &frmToolProps::RequestNextTool, this, give);
    connect(m_dialog.get(), &frmToolProps::RequestPriorTool, this, give);
    Answers answers;
    if (answer != 0) {
        answers.message(question, static_cast<QMessageBox::StandardButton>(answer));
        type("txtCommandLine", QStringLiteral("/new"));
    }
    control<QTabWidget>("sstAll")->setCurrentIndex(tab);
    press(qPrintable(button));
    QCOMPARE(m_heard.constLast(),
        button == QStringLiteral("cmdNext") ? QStringLiteral("Next") : QStringLiteral("Prior"));
    QCOMPARE(m_tool->CommandLine,
        answer == QMessageBox::Yes ? QStringLiteral("/new") : QStringLiteral("/x"));
    QCOMPARE(control<QLineEdit>("txtDescription")->text(), QStringLiteral("Other"));
    QCOMPARE(m_dialog->Tool(), other);
    QVERIFY(!canApply());
    QCOMPARE(m_dialog->focusWidget() == control<RichTextBox>("rtControl"), tab == 2);
    disconnect(m_dialog.get(), nullptr, this, nullptr);
}

void frmToolProps_test::browseTool_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("description"); // before
    QTest::addColumn<QString>("newDescription");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("location"); // empty: the whole path
    QTest::addColumn<QRgb>("picture");
    QTest::newRow("a program: its icon and name")
        << QStringLiteral("MyTool.exe") << QStringLiteral("Tool(3)") << QStringLiteral("Mytool.exe")
        << QStringLiteral("Standard Executable") << QString() << blue;
    QTest::newRow("a program without icons")
        << QStringLiteral("none.exe") << QStringLiteral("Mine") << QStringLiteral("Mine")
        << QStringLiteral("Standard Executable") << QString() << red;
    QTest::newRow("a macro in the macro folder: its bare name")
        << QStringLiteral("macros/do.bas") << QStringLiteral("Alpha.exe")
        << QStringLiteral("Do.bas") << QStringLiteral("Macro") << QStringLiteral("do.bas") << red;
    QTest::newRow("a program in the macro folder")
        << QStringLiteral("macros/in.exe") << QStringLiteral("Mine") << QStringLiteral("Mine")
        << QStringLiteral("Standard Executable") << QStringLiteral("in.exe") << blue;
}

void frmToolProps_test::browseTool()
{
    QFETCH(QString, name);
    QFETCH(QString, description);
    const QByteArray program = ProgramFile::pe({{{}, 1, {ProgramFile::plain(32, blue)}}});
    for (const char *file : {"MyTool.exe", "macros/in.exe"})
        QVERIFY(Files::put(m_folder->filePath(QString::fromLatin1(file)), program));
    for (const char *file : {"none.exe", "macros/do.bas"})
        QVERIFY(Files::put(m_folder->filePath(QString::fromLatin1(file)), "nothing"));
    type("txtDescription", description);
    const QString path = QDir::toNativeSeparators(m_folder->filePath(name));
    Answers answers;
    answers.file(QStringLiteral("Select Tool"), path);
    press("cmdBrowseTool");
    QTEST(control<QLineEdit>("txtDescription")->text(), "newDescription");
    QTEST(control<QComboBox>("cboToolType")->currentText(), "kind");
    QFETCH(QString, location);
    QCOMPARE(control<QLineEdit>("txtLocation")->text(), location.isEmpty() ? path : location);
    QFETCH(QRgb, picture);
    QCOMPARE(control<PictureControl>("picToolImage")->Picture(), filled(picture));
    QVERIFY(canApply());
}

void frmToolProps_test::unrecognised()
{
    const QString path = m_folder->filePath(QStringLiteral("readme.doc"));
    QVERIFY(Files::put(path, "text"));
    Answers answers;
    answers.file(QStringLiteral("Select Tool"), QString());
    press("cmdBrowseTool"); // cancelled
    answers.file(QStringLiteral("Select Tool"), path);
    answers.message(QStringLiteral("Unable to recognize this type of file.\n\n"
                                   "File types are recognized by their extensions.\n"
                                   "The recognized extensions consist of:\n\n"
                                   "exe, com, bat\t-  executables files\n"
                                   "exe, dll\t\t-  OLE servers\n"
                                   "bas, bmm\t-  macro files\n"
                                   "hlp\t\t-  help files\n"
                                   "txt, ini\t\t-  text files\n"),
        QMessageBox::Ok);
    press("cmdBrowseTool");
    QVERIFY(!canApply());
    QCOMPARE(control<QLineEdit>("txtLocation")->text(), QStringLiteral("c:\\tools\\Alpha.exe"));
}

void frmToolProps_test::browseImage_data()
{
    QTest::addColumn<bool>("ok");
    QTest::newRow("OK") << true;
    QTest::newRow("Cancel") << false;
}

void frmToolProps_test::browseImage()
{
    QFETCH(bool, ok);
    Answers answers;
    answers.dialog(QStringLiteral("frmFileButton"), [&](QDialog *dialog) {
        // It shows the tool's picture until another is chosen.
        auto *button = dialog->findChild<PictureControl *>(QStringLiteral("picButton"));
        QCOMPARE(button->Image(), filled(red));
        button->setPicture(filled(blue));
        dialog->findChild<QPushButton *>(ok ? QStringLiteral("cmdOK") : QStringLiteral("cmdCancel"))
            ->click();
    });
    press("cmdBrowseImage");
    QCOMPARE(control<PictureControl>("picToolImage")->Picture(), filled(ok ? blue : red));
    QCOMPARE(canApply(), ok);
    QCOMPARE(QFile::exists(m_folder->filePath(QStringLiteral("macros/$$$.bmp"))), ok);
}

/// An unchanged text comes out as it went in; the tool's identification goes to the caret.
void frmToolProps_test::toolId()
{
    const QString rtf = QStringLiteral("{\\rtf1\\ansi {\\b Bold}  and plain}");
    m_tool->HelpString = rtf;
    m_dialog->setTool(m_tool);
    type("txtCommandLine", QStringLiteral("/y"));
    press("cmdApply");
    QCOMPARE(m_tool->HelpString, rtf);
    auto *help = control<RichTextBox>("rtControl");
    help->moveCursor(QTextCursor::End);
    press("cmdToolID");
    QCOMPARE(help->Text(), QStringLiteral("Bold  and plain\uFFFCAlpha "));
    QCOMPARE(
        QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32), filled(red));
    QCOMPARE(m_dialog->focusWidget(), help);
    QTRY_VERIFY(canApply());
    press("cmdApply");
    QVERIFY(m_tool->HelpString.contains(QStringLiteral("\\pict")));
}

void frmToolProps_test::eventGroups_data()
{
    QTest::addColumn<int>("group");
    QTest::addColumn<qint32>("bits");
    QTest::newRow("File Events") << 0 << 0x000001FF;
    QTest::newRow("Reference Events") << 1 << 0x00000600;
    QTest::newRow("Selected Control Events") << 2 << 0x00001800;
    QTest::newRow("Control Events") << 3 << 0x0000E000;
    QTest::newRow("Component Events") << 4 << 0x003F0000;
    QTest::newRow("Project Events") << 5 << 0x03C00000;
}

void frmToolProps_test::eventGroups()
{
    QFETCH(int, group);
    QFETCH(qint32, bits);
    m_tool->VBEvents = 0;
    m_dialog->setTool(m_tool);
    press(qPrintable(QStringLiteral("cmdSelectAll%1").arg(group)));
    QVERIFY(canApply());
    press("cmdApply");
    QCOMPARE(m_tool->VBEvents, bits);
    press(qPrintable(QStringLiteral("cmdSelectAll%1").arg(group)));
    QVERIFY(!canApply()); // no box has changed
    m_tool->VBEvents = -1;
    m_dialog->setTool(m_tool);
    press(qPrintable(QStringLiteral("cmdSelectNone%1").arg(group)));
    press("cmdApply");
    QCOMPARE(m_tool->VBEvents, ~bits);
}

TSM_TEST(frmToolProps_test);
#include "tst_frmToolProps.moc"
