#include "platform/desktop/DirListBox.h"
#include "platform/desktop/DriveListBox.h"
#include "platform/desktop/FileListBox.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureControl.h"
#include "shell/Settings.h"
#include "support/Answers.h"
#include "support/Files.h"
#include "support/ProgramFile.h"
#include "support/TestRunner.h"
#include "tooledit/frmFileButton.h"

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

namespace {

constexpr QRgb grey = 0xFFC0C0C0;
constexpr QRgb red = 0xFFFF0000;
constexpr QRgb green = 0xFF00FF00;
constexpr QRgb blue = 0xFF0000FF;
constexpr QRgb white = 0xFFFFFFFF;
constexpr QRgb black = 0xFF000000;
const QList<QRgb> fiveColours {red, green, blue, white, black};

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

/// The colour of a picture that has only one; 0 for any other.
QRgb onlyColour(const QImage &image)
{
    if (image.isNull())
        return 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != image.pixel(0, 0))
                return 0;
        }
    }
    return image.pixel(0, 0) | 0xFF000000;
}

} // namespace

class frmFileButton_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void files_data();
    void files();
    void patterns_data();
    void patterns();
    void countIcons_data();
    void countIcons();
    void stepping_data();
    void stepping();
    void steppingWithOneIcon();
    void strip();
    void band_data();
    void band();
    void bandByKeys();
    void clickTakesAll();
    void okTakesTheButton();
    void okOpensAHighlightedFolder();
    void doubleClick();
    void cancel();
    void scratchThatCannotBeWritten();
    void folders();
    void rememberedFolder();
    void tags();

private:
    void open();
    template <class T>
    T *control(const char *name) const
    {
        return m_dialog->findChild<T *>(QString::fromLatin1(name));
    }
    void choose(const QString &name);
    QString text(const char *name) const { return control<QLineEdit>(name)->text(); }
    QImage button() const { return control<PictureControl>("picButton")->Image(); }
    QImage preview() const { return control<PictureControl>("picImage")->Image(); }
    QImage scratch() const { return Picture::load(m_scratch); }
    bool shown(const char *name) const { return control<QWidget>(name)->isVisible(); }
    void drag(QPoint from, QPoint to);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<frmFileButton> m_dialog;
    QString m_scratch;
};

void frmFileButton_test::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    const auto put = [this](const char *name, const QByteArray &content) {
        QVERIFY(Files::put(m_folder->filePath(QString::fromLatin1(name)), content));
    };
    put("five.exe", program(5));
    put("ONE.DLL", program(1, 1));
    put("none.exe", program(0));
    put("halves.bmp", bitmap(40, 40, [](int x, int) { return x < 20 ? red : blue; }));
    put("green.dib", bitmap(4, 4, [](int, int) { return green; }));
    put("green.ico", ProgramFile::ico({ProgramFile::plain(32, green)}));
    put("text.txt", "no picture");
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("sub/deeper")));
    m_settings = std::make_unique<SettingsStore>(m_folder->filePath(QStringLiteral("sub")));
    m_scratch = m_folder->filePath(QStringLiteral("sub/$$$.bmp"));
    open();
    m_dialog->setFolder(m_folder->path());
}

void frmFileButton_test::open()
{
    m_dialog = std::make_unique<frmFileButton>(*m_settings);
    m_dialog->setFileName(m_scratch);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
}

void frmFileButton_test::cleanup()
{
    m_dialog.reset();
}

/// With the mouse, as a user does.
void frmFileButton_test::choose(const QString &name)
{
    auto *list = control<FileListBox>("FileList");
    const auto found = list->model()->match(
        list->model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    list->scrollTo(found.constFirst());
    QTest::mouseClick(
        list->viewport(), Qt::LeftButton, {}, list->visualRect(found.constFirst()).center());
}

void frmFileButton_test::drag(QPoint from, QPoint to)
{
    auto *image = control<PictureControl>("picImage");
    QTest::mousePress(image, Qt::LeftButton, {}, from);
    const QPoint half = (from + to) / 2;
    for (const QPoint &position : {half, to}) {
        QMouseEvent move(QEvent::MouseMove, position, image->mapToGlobal(position), Qt::NoButton,
            Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(image, &move);
        QVERIFY(image->band().contains(position));
    }
    QTest::mouseRelease(image, Qt::LeftButton, {}, to);
    QVERIFY(image->band().isEmpty());
}

void frmFileButton_test::files_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QRgb>("colour");
    QTest::addColumn<bool>("icons");
    QTest::newRow("an executable: its first icon") << QStringLiteral("five.exe") << red << true;
    QTest::newRow("a library in capitals") << QStringLiteral("ONE.DLL") << green << true;
    QTest::newRow("an icon file") << QStringLiteral("green.ico") << green << false;
    // These leave the preview as it was.
    QTest::newRow("a program without icons") << QStringLiteral("none.exe") << white << false;
    QTest::newRow("no picture") << QStringLiteral("text.txt") << white << false;
    QTest::newRow("a .dib, though it is a bitmap") << QStringLiteral("green.dib") << white << false;
}

void frmFileButton_test::files()
{
    QFETCH(QString, name);
    QFETCH(QRgb, colour);
    QFETCH(bool, icons);
    QImage former(4, 4, QImage::Format_RGB32);
    former.fill(white);
    control<PictureControl>("picImage")->setPicture(former);
    choose(name);
    QCOMPARE(onlyColour(preview()), colour);
    QCOMPARE(shown("picIcoCtrl"), icons);
    QCOMPARE(control<QListView>("lvIcons")->model()->rowCount() > 0, icons);
    QCOMPARE(onlyColour(button()), colour);
    QCOMPARE(onlyColour(scratch()), colour);
}

void frmFileButton_test::patterns_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QStringList>("names");
    const QStringList all {QStringLiteral("five.exe"), QStringLiteral("green.dib"),
        QStringLiteral("green.ico"), QStringLiteral("halves.bmp"), QStringLiteral("none.exe"),
        QStringLiteral("ONE.DLL"), QStringLiteral("text.txt")};
    QTest::newRow("all") << QStringLiteral("*.*") << all;
    QTest::newRow("bitmaps") << QStringLiteral("*.bmp") << QStringList {all[3]};
    QTest::newRow("libraries, in capitals") << QStringLiteral("*.dll") << QStringList {all[5]};
    QTest::newRow("programs, with the blank")
        << QStringLiteral("*.exe ") << QStringList {all[0], all[4]};
    QTest::newRow("icons") << QStringLiteral("*.ico") << QStringList {all[2]};
    QTest::newRow("metafiles") << QStringLiteral("*.wmf") << QStringList();
}

void frmFileButton_test::patterns()
{
    QFETCH(QString, filter);
    QFETCH(QStringList, names);
    auto *types = control<QComboBox>("cboFilter");
    QCOMPARE(types->currentText(), QStringLiteral("*.*"));
    QCOMPARE(types->count(), 6);
    types->setCurrentIndex(types->findText(filter, Qt::MatchFixedString | Qt::MatchCaseSensitive));
    QCOMPARE(types->currentText(), filter);
    QStringList found;
    const QAbstractItemModel *model = control<FileListBox>("FileList")->model();
    for (int i = 0; i < model->rowCount(); ++i)
        found.append(model->index(i, 0).data().toString());
    QCOMPARE(found, names);
}

void frmFileButton_test::countIcons_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("count");
    QTest::newRow("five") << program(5) << 5;
    QTest::newRow("none") << program(0) << 0;
    QTest::newRow("not more than 1,000") << program(1003) << 1000;
    ProgramFile::Frame missing = ProgramFile::plain(32, red);
    missing.bytes.clear();
    const ProgramFile::Frame good = ProgramFile::plain(32, red);
    QTest::newRow("up to the first that is missing")
        << ProgramFile::pe({{{}, 1, {good}}, {{}, 2, {good}}, {{}, 3, {missing}}, {{}, 4, {good}}})
        << 2;
    QTest::newRow("no program at all") << QByteArray("text") << 0;
}

void frmFileButton_test::countIcons()
{
    QFETCH(QByteArray, file);
    QFETCH(int, count);
    const QString path = m_folder->filePath(QStringLiteral("counted"));
    QVERIFY(Files::put(path, file));
    QCOMPARE(frmFileButton::CountIcons(path), count);
}

void frmFileButton_test::stepping_data()
{
    QTest::addColumn<bool>("byKeys");
    QTest::newRow("with the mouse") << false;
    QTest::newRow("with the keys") << true;
}

void frmFileButton_test::stepping()
{
    QFETCH(bool, byKeys);
    const auto step = [&](int index) {
        auto *stepper = control<QToolButton>(index == 1 ? "cmdIcon1" : "cmdIcon0");
        if (byKeys) {
            stepper->setFocus();
            QTest::keyClick(stepper, Qt::Key_Space);
        } else {
            QTest::mouseClick(stepper, Qt::LeftButton);
        }
    };
    QCOMPARE(text("txtIcon"), QStringLiteral("1 of 16"));
    choose(QStringLiteral("five.exe"));
    QCOMPARE(text("txtIcon"), QStringLiteral("1 of 5"));
    step(0);
    QCOMPARE(text("txtIcon"), QStringLiteral("5 of 5"));
    QCOMPARE(onlyColour(button()), black);
    for (int i = 1; i <= 5; ++i) {
        step(1);
        QCOMPARE(text("txtIcon"), QStringLiteral("%1 of 5").arg(i));
        QCOMPARE(onlyColour(preview()), fiveColours[i - 1]);
        QCOMPARE(onlyColour(button()), fiveColours[i - 1]);
        QCOMPARE(onlyColour(scratch()), fiveColours[i - 1]);
        QCOMPARE(control<QListView>("lvIcons")->currentIndex().row(), i - 1);
    }
    step(1);
    QCOMPARE(text("txtIcon"), QStringLiteral("1 of 5"));
}

void frmFileButton_test::steppingWithOneIcon()
{
    choose(QStringLiteral("ONE.DLL"));
    QCOMPARE(text("txtIcon"), QStringLiteral("1 of 1"));
    QFile::remove(m_scratch);
    for (const char *name : {"cmdIcon0", "cmdIcon1"})
        QTest::mouseClick(control<QToolButton>(name), Qt::LeftButton);
    QCOMPARE(text("txtIcon"), QStringLiteral("1 of 1"));
    QVERIFY(!QFile::exists(m_scratch)); // not even a snapshot
}

/// An icon chosen in the strip is as good as one that was stepped to.
void frmFileButton_test::strip()
{
    choose(QStringLiteral("five.exe"));
    auto *strip = control<QListView>("lvIcons");
    QCOMPARE(strip->model()->rowCount(), 5);
    const auto clickOn = [&](int row) {
        QTest::mouseClick(strip->viewport(), Qt::LeftButton, {},
            strip->visualRect(strip->model()->index(row, 0)).center());
    };
    clickOn(3);
    QCOMPARE(text("txtIcon"), QStringLiteral("4 of 5"));
    QCOMPARE(onlyColour(button()), white);
    QTest::keyClick(strip, Qt::Key_Left);
    QCOMPARE(text("txtIcon"), QStringLiteral("3 of 5"));
    QCOMPARE(onlyColour(scratch()), blue);
    QTest::mouseClick(control<QToolButton>("cmdIcon1"), Qt::LeftButton);
    QCOMPARE(text("txtIcon"), QStringLiteral("4 of 5"));
    choose(QStringLiteral("ONE.DLL"));
    QCOMPARE(strip->model()->rowCount(), 1);
    QCOMPARE(onlyColour(preview()), green); // none of the former file
    QCOMPARE(text("txtIcon"), QStringLiteral("1 of 1"));
    choose(QStringLiteral("text.txt"));
    QCOMPARE(strip->model()->rowCount(), 0);
}

void frmFileButton_test::band_data()
{
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRgb>("colour"); // 0: both
    const QPoint a(10, 20);
    const QPoint b(70, 100);
    QTest::newRow("from the top left") << a << b << QSize(60, 80) << red;
    QTest::newRow("from the bottom right") << b << a << QSize(60, 80) << red;
    QTest::newRow("from the top right")
        << QPoint(70, 20) << QPoint(10, 100) << QSize(60, 80) << red;
    QTest::newRow("over both halves") << a << QPoint(150, 100) << QSize(140, 80) << QRgb(0);
    QTest::newRow("the right half") << QPoint(100, 0) << QPoint(190, 190) << QSize(90, 190) << blue;
    QTest::newRow("a line: all of it") << a << QPoint(70, 20) << QSize(192, 192) << QRgb(0);
}

void frmFileButton_test::band()
{
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QFETCH(QSize, size);
    QFETCH(QRgb, colour);
    choose(QStringLiteral("halves.bmp"));
    const QImage before = preview();
    drag(from, to);
    QCOMPARE(scratch().size(), size);
    QCOMPARE(onlyColour(scratch()), colour);
    QCOMPARE(onlyColour(button()), colour);
    QCOMPARE(button().size(), QSize(18, 18));
    QCOMPARE(preview(), before); // another part can be marked
}

void frmFileButton_test::bandByKeys()
{
    choose(QStringLiteral("halves.bmp"));
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
    QCOMPARE(onlyColour(button()), red);
    // Escape gives up the band, not the dialog.
    press(Qt::Key_Space);
    press(Qt::Key_Right, 1000);
    press(Qt::Key_Escape);
    QVERIFY(m_dialog->isVisible());
    QVERIFY(image->band().isEmpty());
    QCOMPARE(scratch().size(), QSize(40, 24));
    press(Qt::Key_Space, 2); // begun and ended at one place: all
    QCOMPARE(scratch().size(), QSize(192, 192));
    press(Qt::Key_Escape);
    QVERIFY(!m_dialog->isVisible());
}

void frmFileButton_test::clickTakesAll()
{
    choose(QStringLiteral("halves.bmp"));
    drag({10, 20}, {70, 100});
    QTest::mouseClick(control<PictureControl>("picImage"), Qt::LeftButton, {}, {50, 50});
    QCOMPARE(scratch(), preview());
}

/// The scratch file then holds exactly the button's 18 by 18 pixels.
void frmFileButton_test::okTakesTheButton()
{
    choose(QStringLiteral("halves.bmp"));
    QCOMPARE(scratch().size(), QSize(192, 192));
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

void frmFileButton_test::okOpensAHighlightedFolder()
{
    auto *folders = control<DirListBox>("DirList");
    QVERIFY(folders->isOpenFolderHighlighted());
    const auto entry = folders->findItems(QStringLiteral("sub"), Qt::MatchExactly).constLast();
    folders->scrollToItem(entry);
    QTest::mouseClick(
        folders->viewport(), Qt::LeftButton, {}, folders->visualItemRect(entry).center());
    QVERIFY(!folders->isOpenFolderHighlighted());
    QTest::mouseClick(control<QPushButton>("cmdOK"), Qt::LeftButton);
    QVERIFY(m_dialog->isVisible());
    QVERIFY(!m_dialog->OK());
    QCOMPARE(
        m_dialog->Folder(), QDir::toNativeSeparators(m_folder->filePath(QStringLiteral("sub"))));
    QTest::mouseClick(control<QPushButton>("cmdOK"), Qt::LeftButton);
    QVERIFY(m_dialog->OK());
    QCOMPARE(onlyColour(scratch()), grey);
}

void frmFileButton_test::doubleClick()
{
    choose(QStringLiteral("green.ico"));
    auto *list = control<FileListBox>("FileList");
    QTest::mouseDClick(
        list->viewport(), Qt::LeftButton, {}, list->visualRect(list->currentIndex()).center());
    QVERIFY(m_dialog->OK());
    QCOMPARE(onlyColour(scratch()), green);
}

void frmFileButton_test::cancel()
{
    choose(QStringLiteral("green.ico"));
    QTest::mouseClick(control<QPushButton>("cmdCancel"), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(!m_dialog->OK());
}

void frmFileButton_test::scratchThatCannotBeWritten()
{
    m_dialog->setFileName(QStringLiteral("/nowhere/$$$.bmp"));
    const QImage before = button();
    Answers answers;
    const QString told = QStringLiteral("The picture cannot be written to \"/nowhere/$$$.bmp\".");
    answers.message(told, QMessageBox::Ok);
    choose(QStringLiteral("green.ico"));
    QTRY_COMPARE(answers.lastText(), told);
    QCOMPARE(button(), before);
    answers.message(told, QMessageBox::Ok);
    QTest::mouseClick(control<QPushButton>("cmdOK"), Qt::LeftButton);
    QVERIFY(!m_dialog->OK());
    QVERIFY(m_dialog->isVisible());
}

void frmFileButton_test::folders()
{
    auto *folders = control<DirListBox>("DirList");
    const QString sub = QDir::toNativeSeparators(m_folder->filePath(QStringLiteral("sub")));
    // By keys: Return opens, Backspace goes up.
    folders->setFocus();
    folders->setCurrentItem(
        folders->findItems(QStringLiteral("sub"), Qt::MatchExactly).constLast());
    QTest::keyClick(folders, Qt::Key_Return);
    QCOMPARE(m_dialog->Folder(), sub);
    QVERIFY(m_dialog->isVisible());
    QTest::keyClick(folders, Qt::Key_Backspace);
    QCOMPARE(m_dialog->Folder(), QDir::toNativeSeparators(m_folder->path()));
    // What cannot be opened is ignored.
    m_dialog->setFolder(QStringLiteral("/nowhere/at/all"));
    QVERIFY(!m_dialog->Folder().startsWith(QStringLiteral("/nowhere")));

    auto *drives = control<DriveListBox>("DriveList");
    m_dialog->setFolder(QDir::homePath());
    QCOMPARE(drives->Drive(), QDir::homePath());
    m_dialog->setFolder(QDir::rootPath());
    QCOMPARE(drives->Drive(), QDir::rootPath());
    drives->setCurrentIndex(drives->findText(QStringLiteral("Home")));
    QCOMPARE(m_dialog->Folder(), QDir::toNativeSeparators(QDir::homePath()));
}

void frmFileButton_test::rememberedFolder()
{
    const QString application = QString::fromUtf16(Settings::application);
    m_dialog->close();
    QCOMPARE(
        m_settings->GetSetting(application, QStringLiteral("FileButton"), QStringLiteral("Path")),
        QDir::toNativeSeparators(m_folder->path()));
    open();
    QCOMPARE(m_dialog->Folder(), QDir::toNativeSeparators(m_folder->path()));
    m_settings->SaveSetting(application, QStringLiteral("FileButton"), QStringLiteral("Path"),
        QStringLiteral("/nowhere/at/all"));
    open();
    QVERIFY(QFileInfo::exists(m_dialog->Folder()));
}

/// The captions are drawn, so they can be missing without any control missing.
void frmFileButton_test::tags()
{
    QCOMPARE(m_dialog->windowTitle(), QStringLiteral("VB Quillon - Get Button Image From File"));
    QPixmap grabbed = m_dialog->grab();
    const QImage picture =
        grabbed.toImage().scaled(m_dialog->size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    for (const char *name : {"DriveList", "DirList", "FileList", "cboFilter"}) {
        const auto *list = control<QWidget>(name);
        QVERIFY(!list->accessibleName().isEmpty());
        const QRect above(list->mapTo(m_dialog.get(), QPoint(0, -16)), QSize(30, 14));
        QVERIFY2(onlyColour(picture.copy(above)) == 0, name);
    }
}

TSM_TEST(frmFileButton_test);
#include "tst_frmFileButton.moc"
