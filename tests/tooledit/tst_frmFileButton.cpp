#include "platform/desktop/DirListBox.h"
#include "platform/desktop/DriveListBox.h"
#include "platform/desktop/FileListBox.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureControl.h"
#include "shell/Settings.h"
#include "shell/frmHelp.h"
#include "support/Answers.h"
#include "support/Files.h"
#include "support/Pictures.h"
#include "support/ProgramFile.h"
#include "support/TestDrag.h"
#include "support/TestRunner.h"
#include "tooledit/PreviewFrame.h"
#include "tooledit/frmFileButton.h"

#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>

using namespace Pictures;

namespace {

const QList<QRgb> fiveColours {red, green, blue, white, black};
/// The colour of a picture that has only one.
QString colour(const QImage &image)
{
    if (image.isNull())
        return u"none"_qs;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != image.pixel(0, 0))
                return u"many"_qs;
        }
    }
    static const QMap<QRgb, QString> names {{red, u"red"_qs}, {green, u"green"_qs},
        {blue, u"blue"_qs}, {white, u"white"_qs}, {black, u"black"_qs}, {grey, u"grey"_qs}};
    return names.value(image.pixel(0, 0) | 0xFF000000, u"another"_qs);
}

QByteArray program(int icons, int firstColour = 0)
{
    std::vector<ProgramFile::Icon> all;
    for (int i = 0; i < icons; ++i)
        all.push_back(
            {{}, quint16(i + 1), {ProgramFile::plain(32, fiveColours[(firstColour + i) % 5])}});
    return ProgramFile::pe(std::move(all));
}

QByteArray bitmap(int width, int height, const std::function<QRgb(int, int)> &colour)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, colour(x, y));
    }
    return Picture::encodeBitmap(image);
}

} // namespace

class frmFileButton_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        const auto put = [this](const char *name, const QByteArray &content) {
            QVERIFY(Files::put(m_folder->filePath(QString::fromLatin1(name)), content));
        };
        put("five.exe", program(5));
        put("ONE.DLL", program(1, 1));
        put("none.exe", program(0));
        put("halves.bmp", bitmap(40, 40, [](int x, int) { return x < 20 ? red : blue; }));
        put("green.dib", Picture::encodeBitmap(filled(4, 4, green)));
        put("green.ico", ProgramFile::ico({ProgramFile::plain(32, green)}));
        put("text.txt", "no picture");
        QVERIFY(filled(40, 40, black).save(m_folder->filePath(u"black.png"_qs)));
        QVERIFY(QDir(m_folder->path()).mkpath(u"sub/deeper"_qs));
        m_settings = std::make_unique<SettingsStore>(m_folder->filePath(u"sub"_qs));
        m_scratch = m_folder->filePath(u"sub/$$$.bmp"_qs);
        open();
        m_dialog->setFolder(m_folder->path());
    }

    void cleanup() { m_dialog.reset(); }

    void files()
    {
        const std::pair<QString, QString> rows[] = {
            {u"five.exe"_qs, u"1 of 5, strip 0 of 5, red red red"_qs},
            {u"ONE.DLL"_qs, u"1 of 1, strip 0 of 1, green green green"_qs},
            {u"green.ico"_qs, u"no strip, green green green"_qs},
            {u"black.png"_qs, u"no strip, black black black"_qs},
            // These leave the preview as it was.
            {u"none.exe"_qs, u"no strip, white white white, no picture"_qs},
            {u"text.txt"_qs, u"no strip, white white white, no picture"_qs},
            {u"green.dib"_qs, u"no strip, white white white, no picture"_qs}, // although it has one
        };
        // Before the first picture the button keeps the tool's.
        m_dialog->setButtonPicture(filled(18, 18, blue));
        choose(u"text.txt"_qs);
        QTest::mouseClick(control<PictureControl>("picImage"), Qt::LeftButton);
        drag({10, 20}, {70, 100});
        QCOMPARE(state(), u"no strip, grey blue none, no picture"_qs);
        for (const auto &[name, expected] : rows) {
            control<PictureControl>("picImage")->setPicture(filled(4, 4, white));
            choose(name);
            QCOMPARE(name + u' ' + state(), name + u' ' + expected);
        }
    }

    /// Pictures of the button's size arrive as they are.
    void exactPixels()
    {
        for (const int side : {18, 36}) {
            const auto colour = [scale = side / 18](int x, int y) {
                return qRgb(13 * (x / scale), 14 * (y / scale), 7 * (x / scale ^ y / scale));
            };
            QVERIFY(Files::put(m_folder->filePath(u"halves.bmp"_qs), bitmap(side, side, colour)));
            choose(u"halves.bmp"_qs);
            QTest::mouseClick(control<QPushButton>("cmdOK"), Qt::LeftButton);
            for (int y = 0; y < 18; ++y) {
                for (int x = 0; x < 18; ++x)
                    QCOMPARE(scratch().pixel(x, y), colour(x * side / 18, y * side / 18));
            }
            init();
        }
    }

    void patterns()
    {
        auto *types = control<QComboBox>("cboFilter");
        QCOMPARE(types->currentText(), u"*.*"_qs);
        QStringList found;
        for (int type = 0; type < types->count(); ++type) {
            types->setCurrentIndex(type);
            QString line = types->currentText() + u':';
            const QAbstractItemModel *model = control<FileListBox>("FileList")->model();
            for (int i = 0; i < model->rowCount(); ++i)
                line += u' ' + model->index(i, 0).data().toString();
            found.append(line);
        }
        found.sort();
        QCOMPARE(found,
            QStringList(
                {u"*.*: black.png five.exe green.dib green.ico halves.bmp none.exe ONE.DLL text.txt"_qs,
                    u"*.bmp: halves.bmp"_qs, u"*.dll: ONE.DLL"_qs, u"*.exe : five.exe none.exe"_qs,
                    u"*.ico: green.ico"_qs, u"*.wmf:"_qs}));
    }

    void countIcons()
    {
        const ProgramFile::Frame good = ProgramFile::plain(32, red);
        ProgramFile::Frame missing = good;
        missing.bytes.clear();
        const std::pair<QByteArray, int> rows[] = {{program(5), 5}, {program(0), 0},
            {program(1003), 1000}, // not more
            {ProgramFile::pe(
                 {{{}, 1, {good}}, {{}, 2, {good}}, {{}, 3, {missing}}, {{}, 4, {good}}}),
                2},
            {"text", 0}};
        const QString path = m_folder->filePath(u"counted"_qs);
        for (const auto &[file, count] : rows) {
            QVERIFY(Files::put(path, file));
            QCOMPARE(frmFileButton::CountIcons(path), count);
        }
    }

    void stepping()
    {
        QCOMPARE(text("txtIcon"), u"1 of 16"_qs);
        for (const bool byKeys : {false, true}) {
            const auto step = [&](const char *name) {
                auto *stepper = control<QPushButton>(name);
                stepper->setFocus();
                if (byKeys)
                    QTest::keyClick(stepper, Qt::Key_Space);
                else
                    QTest::mouseClick(stepper, Qt::LeftButton);
                return state();
            };
            choose(u"text.txt"_qs);
            choose(u"five.exe"_qs);
            QCOMPARE(step("cmdIcon0"), u"5 of 5, strip 4 of 5, black black black"_qs);
            QCOMPARE(step("cmdIcon1"), u"1 of 5, strip 0 of 5, red red red"_qs);
            QCOMPARE(step("cmdIcon1"), u"2 of 5, strip 1 of 5, green green green"_qs);
            QCOMPARE(step("cmdIcon1"), u"3 of 5, strip 2 of 5, blue blue blue"_qs);
            choose(u"ONE.DLL"_qs);
            QFile::remove(m_scratch); // and not even written again
            for (const char *name : {"cmdIcon0", "cmdIcon1"})
                QCOMPARE(step(name), u"1 of 1, strip 0 of 1, green green none"_qs);
        }
        // By a shortcut among the files: letting go of Alt does not go back to the first icon.
        choose(u"five.exe"_qs);
        auto *files = control<FileListBox>("FileList");
        QTest::keyPress(files, Qt::Key_Alt);
        QTest::keyClick(files, Qt::Key_Right, Qt::AltModifier);
        QTest::keyRelease(files, Qt::Key_Alt, Qt::AltModifier);
        QCOMPARE(state(), u"2 of 5, strip 1 of 5, green green green"_qs);
    }

    /// An icon chosen in the strip is as good as one that was stepped to.
    void strip()
    {
        choose(u"five.exe"_qs);
        auto *strip = control<QListView>("lvIcons");
        QTest::mouseClick(strip->viewport(), Qt::LeftButton, {},
            strip->visualRect(strip->model()->index(3, 0)).center());
        QCOMPARE(state(), u"4 of 5, strip 3 of 5, white white white"_qs);
        QTest::keyClick(strip, Qt::Key_Left);
        QCOMPARE(state(), u"3 of 5, strip 2 of 5, blue blue blue"_qs);
        QTest::mouseClick(control<QPushButton>("cmdIcon1"), Qt::LeftButton);
        QCOMPARE(state(), u"4 of 5, strip 3 of 5, white white white"_qs);
        choose(u"ONE.DLL"_qs); // none of the former file
        QCOMPARE(state(), u"1 of 1, strip 0 of 1, green green green"_qs);
        choose(u"text.txt"_qs);
        QCOMPARE(strip->model()->rowCount(), 0);
    }

    /// What is typed, pasted or dropped is as good as a file that was clicked.
    void otherWays()
    {
        auto *path = control<QLineEdit>("txtPath");
        const auto type = [&](const QString &typed) {
            path->setFocus();
            path->selectAll();
            QTest::keyClicks(path, typed);
        };
        const auto enter = [&](const QString &typed) {
            type(typed);
            QTest::keyClick(path, Qt::Key_Return);
            return state();
        };
        control<QComboBox>("cboFilter")->setCurrentIndex(1); // which hides some of them
        QCOMPARE(enter(u"green.ico"_qs), u"no strip, green green green"_qs);
        QCOMPARE(enter(u"\"file://"_qs + m_folder->filePath(u"black.png"_qs) + u'"'),
            u"no strip, black black black"_qs);
        QCOMPARE(enter(u"/nowhere/at all"_qs), u"no strip, black black black, no picture"_qs);
        enter(u"sub"_qs);
        QCOMPARE(m_dialog->Folder(), QDir::toNativeSeparators(m_folder->filePath(u"sub"_qs)));
        type(u"../five.exe"_qs); // and OK: it is shown first
        QTest::mouseClick(control<QPushButton>("cmdOK"), Qt::LeftButton);
        QVERIFY(m_dialog->isVisible());
        QCOMPARE(state(), u"1 of 5, strip 0 of 5, red red red"_qs);

        QGuiApplication::clipboard()->setImage(filled(18, 18, blue));
        QTest::keyClick(control<FileListBox>("FileList"), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(state(), u"no strip, blue blue blue"_qs);
        QGuiApplication::clipboard()->setText(m_folder->filePath(u"green.ico"_qs));
        QTest::mouseClick(control<QPushButton>("cmdPaste"), Qt::LeftButton);
        QCOMPARE(state(), u"no strip, green green green"_qs);
        QCOMPARE(TestDrag::dropFiles(m_dialog.get(), {m_folder->filePath(u"ONE.DLL"_qs)}),
            Qt::CopyAction);
        QCOMPARE(state(), u"1 of 1, strip 0 of 1, green green green"_qs);
        QMimeData picture;
        picture.setImageData(filled(9, 9, white));
        QCOMPARE(TestDrag::drop(m_dialog.get(), picture, {5, 5}), Qt::CopyAction);
        QCOMPARE(state(), u"no strip, white white white"_qs);
        QMimeData text;
        text.setText(u"text"_qs);
        QCOMPARE(TestDrag::drop(m_dialog.get(), text, {5, 5}), Qt::IgnoreAction);
    }

    void sizes()
    {
        using ProgramFile::plain;
        const std::vector frames {plain(16, red), plain(48, blue), plain(32, green)};
        QVERIFY(Files::put(m_folder->filePath(u"five.exe"_qs), ProgramFile::pe({{{}, 1, frames}})));
        QVERIFY(Files::put(m_folder->filePath(u"green.ico"_qs), ProgramFile::ico(frames)));
        auto *sizes = control<QComboBox>("cboSize");
        for (const auto &file : {u"five.exe"_qs, u"green.ico"_qs}) {
            choose(file);
            QVERIFY(sizes->isVisible());
            QCOMPARE(sizes->count(), 3);
            sizes->setCurrentIndex(1);
            QTest::keyClick(sizes, Qt::Key_Up);
            QCOMPARE(colour(button()), u"red"_qs);
            QTest::keyClick(sizes, Qt::Key_End);
            QCOMPARE(colour(scratch()), u"blue"_qs);
        }
        choose(u"ONE.DLL"_qs); // has only one
        QVERIFY(!sizes->isVisible());
    }

    /// On a screen of 1024 by 768 with two pixels for one all of it is there, and can be used.
    void smallScreen()
    {
        m_dialog->resize(1, 1);
        QVERIFY2(m_dialog->width() <= 512 && m_dialog->height() <= 360,
            qPrintable(u"%1 x %2"_qs.arg(m_dialog->width()).arg(m_dialog->height())));
        choose(u"halves.bmp"_qs);
        QCOMPARE(preview().width() % 18, 0);
        QVERIFY(preview().width() < 288);
        drag({0, 0}, {40, 40});
        QCOMPARE(colour(button()), u"red"_qs);
    }

    void band()
    {
        const QPoint a(10, 20);
        const QPoint b(70, 100);
        const std::tuple<QPoint, QPoint, QSize, QString> rows[] = {
            {a, b, QSize(60, 80), u"red"_qs}, {b, a, QSize(60, 80), u"red"_qs},
            {QPoint(70, 20), QPoint(10, 100), QSize(60, 80), u"red"_qs},
            {a, QPoint(150, 100), QSize(140, 80), u"many"_qs},
            {QPoint(150, 0), QPoint(280, 285), QSize(130, 285), u"blue"_qs},
            {a, QPoint(70, 20), QSize(288, 288), u"many"_qs}, // a line: all of it
        };
        choose(u"halves.bmp"_qs);
        const QImage before = preview();
        for (const auto &[from, to, size, colour] : rows) {
            drag(from, to);
            QCOMPARE(scratch().size(), size);
            QCOMPARE(state(), u"no strip, many %1 %1"_qs.arg(colour));
            QCOMPARE(button().size(), QSize(18, 18));
            QCOMPARE(preview(), before); // another part can be marked
        }
        drag(a, b);
        const auto *frame = control<PreviewFrame>("previewFrame");
        QCOMPARE(frame->marked(), QRect(a, QSize(60, 80)));
        QTest::mouseClick(control<PictureControl>("picImage"), Qt::LeftButton, {}, {50, 50});
        QVERIFY(frame->marked().isEmpty());
        QCOMPARE(scratch(), preview()); // a click takes all
    }

    void bandByKeys()
    {
        choose(u"halves.bmp"_qs);
        auto *image = control<PictureControl>("picImage");
        image->setFocus();
        const auto press = [&](Qt::Key key, int times = 1, Qt::KeyboardModifiers with = {}) {
            for (int i = 0; i < times; ++i)
                QTest::keyClick(image, key, with);
        };
        press(Qt::Key_Right, 2);
        press(Qt::Key_Down, 1, Qt::ControlModifier);
        press(Qt::Key_Space);
        press(Qt::Key_Right, 5);
        press(Qt::Key_Down, 3);
        QCOMPARE(image->band(), QRect(16, 1, 41, 25));
        press(Qt::Key_Space);
        QVERIFY(image->band().isEmpty());
        QCOMPARE(scratch().size(), QSize(40, 24));
        QCOMPARE(colour(button()), u"red"_qs);
        // Escape gives up the band, not the dialog.
        press(Qt::Key_Space);
        press(Qt::Key_Right, 1000);
        press(Qt::Key_Escape);
        QVERIFY(m_dialog->isVisible());
        QVERIFY(image->band().isEmpty());
        QCOMPARE(scratch().size(), QSize(40, 24));
        press(Qt::Key_Space);
        press(Qt::Key_Right);
        control<FileListBox>("FileList")->setFocus();
        QVERIFY(image->band().isEmpty()); // given up, too
        image->setFocus();
        press(Qt::Key_Space, 2); // begun and ended at one place: all
        QCOMPARE(scratch().size(), QSize(288, 288));
        press(Qt::Key_Escape);
        QVERIFY(!m_dialog->isVisible());
    }

    /// The scratch file then holds exactly the button's 18 by 18 pixels.
    void okTakesTheButton()
    {
        choose(u"halves.bmp"_qs);
        QCOMPARE(scratch().size(), QSize(288, 288));
        const QImage expected = button();
        QTest::mouseClick(control<QPushButton>("cmdOK"), Qt::LeftButton);
        QVERIFY(m_dialog->OK());
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(scratch(), expected);
        QCOMPARE(scratch().pixel(0, 0), red);
        QCOMPARE(scratch().pixel(17, 17), blue);
        QCOMPARE(scratch().pixel(8, 9), red);
        QCOMPARE(scratch().pixel(9, 9), blue);
    }

    void okOpensAHighlightedFolder()
    {
        auto *folders = control<DirListBox>("DirList");
        QVERIFY(folders->isOpenFolderHighlighted());
        const auto entry = folders->findItems(u"sub"_qs, Qt::MatchExactly).constLast();
        folders->scrollToItem(entry);
        QTest::mouseClick(
            folders->viewport(), Qt::LeftButton, {}, folders->visualItemRect(entry).center());
        QVERIFY(!folders->isOpenFolderHighlighted());
        QTest::mouseClick(control<QPushButton>("cmdOK"), Qt::LeftButton);
        QVERIFY(m_dialog->isVisible());
        QVERIFY(!m_dialog->OK());
        QCOMPARE(m_dialog->Folder(), QDir::toNativeSeparators(m_folder->filePath(u"sub"_qs)));
        QTest::mouseClick(control<QPushButton>("cmdOK"), Qt::LeftButton);
        QVERIFY(m_dialog->OK());
        QCOMPARE(colour(scratch()), u"grey"_qs);
    }

    void doubleClickAndCancel()
    {
        auto *list = control<FileListBox>("FileList");
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Down);
        QCOMPARE(list->FileName(), u"black.png"_qs); // the first, not the one below it
        choose(u"green.ico"_qs);
        QTest::mouseDClick(
            list->viewport(), Qt::LeftButton, {}, list->visualRect(list->currentIndex()).center());
        QVERIFY(m_dialog->OK());
        QCOMPARE(colour(scratch()), u"green"_qs);
        open();
        QTest::ignoreMessage(QtWarningMsg, "QTextBrowser: No document for manual.md");
        QTest::mouseClick(control<QPushButton>("cmdHelp"), Qt::LeftButton);
        QVERIFY(m_dialog->findChild<frmHelp *>()->isVisible());
        QTest::mouseClick(control<QPushButton>("cmdCancel"), Qt::LeftButton);
        QVERIFY(!m_dialog->isVisible());
        QVERIFY(!m_dialog->OK());
    }

    void scratchThatCannotBeWritten()
    {
        m_dialog->setFileName(u"/nowhere/$$$.bmp"_qs);
        const QImage before = button();
        Answers answers;
        const QString told = u"The picture cannot be written to \"/nowhere/$$$.bmp\"."_qs;
        answers.message(told, QMessageBox::Ok);
        choose(u"green.ico"_qs);
        QTRY_COMPARE(answers.lastText(), told);
        QCOMPARE(button(), before);
        answers.message(told, QMessageBox::Ok);
        QTest::mouseClick(control<QPushButton>("cmdOK"), Qt::LeftButton);
        QVERIFY(!m_dialog->OK());
        QVERIFY(m_dialog->isVisible());
    }

    void folders()
    {
        auto *folders = control<DirListBox>("DirList");
        const QString sub = QDir::toNativeSeparators(m_folder->filePath(u"sub"_qs));
        // By keys: Return opens, Backspace goes up.
        folders->setFocus();
        folders->setCurrentItem(folders->findItems(u"sub"_qs, Qt::MatchExactly).constLast());
        QTest::keyClick(folders, Qt::Key_Return);
        QCOMPARE(m_dialog->Folder(), sub);
        QVERIFY(m_dialog->isVisible());
        QTest::keyClick(folders, Qt::Key_Backspace);
        QCOMPARE(m_dialog->Folder(), QDir::toNativeSeparators(m_folder->path()));
        // What cannot be opened is ignored.
        m_dialog->setFolder(u"/nowhere/at/all"_qs);
        QVERIFY(!m_dialog->Folder().startsWith(u"/nowhere"_qs));

        auto *drives = control<DriveListBox>("DriveList");
        m_dialog->setFolder(QDir::homePath());
        QCOMPARE(drives->Drive(), QDir::homePath());
        m_dialog->setFolder(QDir::rootPath());
        QCOMPARE(drives->Drive(), QDir::rootPath());
        drives->setCurrentIndex(drives->findText(u"Home"_qs));
        QCOMPARE(m_dialog->Folder(), QDir::toNativeSeparators(QDir::homePath()));
    }

    void rememberedFolder()
    {
        const QString application = QString::fromUtf16(Settings::application);
        m_dialog->close();
        QCOMPARE(m_settings->GetSetting(application, u"FileButton"_qs, u"Path"_qs),
            QDir::toNativeSeparators(m_folder->path()));
        open();
        QCOMPARE(m_dialog->Folder(), QDir::toNativeSeparators(m_folder->path()));
        m_settings->SaveSetting(application, u"FileButton"_qs, u"Path"_qs, u"/nowhere/at/all"_qs);
        open();
        QVERIFY(QFileInfo::exists(m_dialog->Folder()));
    }

    /// The captions are drawn, so they can be missing without any control missing.
    void tags()
    {
        QCOMPARE(m_dialog->windowTitle(), u"VB Quillon - Get Button Image From File"_qs);
        QPixmap grabbed = m_dialog->grab();
        const QImage picture = grabbed.toImage().scaled(
            m_dialog->size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        for (const char *name : {"DriveList", "DirList", "FileList", "cboFilter"}) {
            const auto *list = control<QWidget>(name);
            QVERIFY(!list->accessibleName().isEmpty());
            const QRect above(list->mapTo(m_dialog.get(), QPoint(0, -16)), QSize(30, 14));
            QVERIFY2(colour(picture.copy(above)) == u"many", name);
        }
    }

private:
    void open()
    {
        m_dialog = std::make_unique<frmFileButton>(*m_settings);
        m_dialog->setFileName(m_scratch);
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
    }

    template <class T>
    T *control(const char *name) const
    {
        return m_dialog->findChild<T *>(QString::fromLatin1(name));
    }
    /// With the mouse, as a user does.
    void choose(const QString &name)
    {
        auto *list = control<FileListBox>("FileList");
        const auto found = list->model()->match(
            list->model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
        QCOMPARE(found.size(), 1);
        list->scrollTo(found.constFirst());
        QTest::mouseClick(
            list->viewport(), Qt::LeftButton, {}, list->visualRect(found.constFirst()).center());
    }

    QString text(const char *name) const { return control<QLineEdit>(name)->text(); }
    QImage button() const { return control<PictureControl>("picButton")->Image(); }
    QImage preview() const { return control<PictureControl>("picImage")->Image(); }
    QImage scratch() const { return Picture::load(m_scratch); }
    /// Icon and how many; place in the strip; colours of preview, button and scratch file; whether
    /// the file is said to hold no picture.
    QString state() const
    {
        const auto *strip = control<QListView>("lvIcons");
        const QString icons = u"%1, strip %2 of %3"_qs.arg(text("txtIcon"))
                                  .arg(strip->currentIndex().row())
                                  .arg(strip->model()->rowCount());
        return u"%1, %2 %3 %4"_qs.arg(
                   control<QWidget>("picIcoCtrl")->isVisible() ? icons : u"no strip"_qs,
                   colour(preview()), colour(button()), colour(scratch()))
            + (control<QWidget>("lblNoPicture")->isVisible() ? u", no picture"_qs : QString());
    }

    void drag(QPoint from, QPoint to)
    {
        auto *image = control<PictureControl>("picImage");
        QTest::mousePress(image, Qt::LeftButton, {}, from);
        const QPoint half = (from + to) / 2;
        for (const QPoint &position : {half, to}) {
            QMouseEvent move(QEvent::MouseMove, position, image->mapToGlobal(position),
                Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(image, &move);
            QVERIFY(image->band().contains(position));
        }
        QTest::mouseRelease(image, Qt::LeftButton, {}, to);
        QVERIFY(image->band().isEmpty());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<frmFileButton> m_dialog;
    QString m_scratch;
};

TSM_TEST(frmFileButton_test);
#include "tst_frmFileButton.moc"
