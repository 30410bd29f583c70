#include "platform/desktop/MWindowPosition.h"
#include "platform/desktop/SettingsStore.h"
#include "shell/Settings.h"
#include "shell/WindowArranger.h"
#include "support/TestRunner.h"

#include <QFile>
#include <QScreen>
#include <QTemporaryDir>
#include <QWidget>

static const QString application = u"VB Quillon For VB5"_qs;

/// The settings, and the window positions that lie beside them in the same file.
class Settings_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void defaults()
    {
        const QTemporaryDir empty;
        for (const QString &folder : {u"/opt/tsm"_qs, u"/opt/tsm/"_qs}) {
            Settings settings(folder);
            settings.LoadSettings(SettingsStore(empty.path()));
            QCOMPARE(settings.ToolsetPath(), u"/opt/tsm/toolsets"_qs);
            QCOMPARE(settings.MacroPath(), u"/opt/tsm/macros"_qs);
            QCOMPARE(settings.DefaultToolset(), u"/opt/tsm/toolsets/default.bmt"_qs);
            QVERIFY(settings.EnableHotkeys());
            QCOMPARE(settings.MacroMode(), qint16(1));
        }
        QVERIFY(QDir(empty.path()).isEmpty()); // nothing is written
    }

    void handWrittenFile()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(application + u".conf"_qs));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[Settings]\n"
                   "Toolset Path=/home/me/tool sets, old ones\n"
                   "macro path=/wrong/letter/case\n"
                   "Macro Mode=abc\n"
                   "Enable Hotkeys=0\n"
                   "VB Events=perhaps\n"
                   "Don't Load On Start Up=TRUE\n"
                   "Height=&H10\n"
                   "Width=99999\n"
                   "Unknown=1\n");
        file.close();
        Settings settings(u"/opt"_qs);
        settings.LoadSettings(SettingsStore(folder.path()));
        QCOMPARE(settings.ToolsetPath(), u"/home/me/tool sets, old ones"_qs);
        QCOMPARE(settings.MacroPath(), u"/opt/macros"_qs);
        QCOMPARE(settings.MacroMode(), qint16(1));
        QVERIFY(!settings.EnableHotkeys());
        QVERIFY(settings.VBEvents());
        QVERIFY(settings.DontLoadOnStartUp());
        QCOMPARE(settings.Height(), qint16(16));
        QCOMPARE(settings.Width(), qint16(0));
        QVERIFY(file.remove());
        settings.LoadSettings(SettingsStore(folder.path()));
        QCOMPARE(settings.Height(), qint16(0));
        QCOMPARE(settings.ToolsetPath(), u"/opt/toolsets"_qs);
    }

    void whereAWindowGoes()
    {
        using Stored = MWindowPosition::Stored;
        const std::pair<Stored, QRect> rows[] = {
            {{}, {350, 275, 300, 250}}, // centred
            {{100, 50, 400, 300}, {100, 50, 400, 300}},
            {{{}, 50, 400, {}}, {350, 50, 400, 250}}, // the centre is the present size's
            {{100, 50, 2000, 300}, {0, 50, 1000, 300}}, // wider than the screen
            {{900, 50, 400, 300}, {600, 50, 400, 300}},
            {{100, 790, 400, 300}, {100, 500, 400, 300}}, {{-500, -20, 400, 300}, {0, 0, 400, 300}},
            {{1000000, -1000000, 1000000, 1000000}, {0, 0, 1000, 800}},
            {{900, 700, 20, 10}, {800, 650, 200, 150}}, // it gets no smaller
        };
        for (const auto &[stored, expected] : rows)
            QCOMPARE(
                MWindowPosition::restored(stored, {300, 250}, {200, 150}, {1000, 800}), expected);
    }

    /// With whatever frame it has, and also from another state than the normal one.
    void placeComesBack()
    {
        const QTemporaryDir folder;
        SettingsStore store(folder.path());
        const QList<QPair<QString, QString>> expected {{u"Left"_qs, u"465"_qs},
            {u"Top"_qs, u"630"_qs}, {u"Height"_qs, u"3675"_qs}, {u"Width"_qs, u"4845"_qs}};
        store.SaveSettings(application, u"Main"_qs, expected);
        for (const auto state : {Qt::WindowNoState, Qt::WindowMaximized, Qt::WindowMinimized}) {
            QWidget window;
            MWindowPosition::RestoreWindowPosition(store, u"Main"_qs, window);
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            QCOMPARE(window.frameGeometry(), QRect(31, 42, 323, 245)); // 15 twips to the pixel
            QVERIFY(window.geometry() != window.frameGeometry());
            MWindowPosition::WriteWhenChanged(store, u"Main"_qs, window);
            const auto left = [&] { return store.GetSetting(application, u"Main"_qs, u"Left"_qs); };
            window.move(40, 42);
            QTRY_COMPARE(left(), u"600"_qs);
            window.move(31, 42);
            QTRY_COMPARE(left(), u"465"_qs);
            window.setWindowState(state);
            MWindowPosition::SaveWindowPosition(store, u"Main"_qs, window);
            QCOMPARE(store.GetAllSettings(application, u"Main"_qs), expected);
        }
    }

    void partOfAPlace()
    {
        const QTemporaryDir folder;
        SettingsStore store(folder.path());
        store.SaveSetting(application, u"Main"_qs, u"Left"_qs, u"150"_qs);
        store.SaveSetting(application, u"Main"_qs, u"Width"_qs, u"wide"_qs);
        store.SaveSetting(application, u"Main"_qs, u"Height"_qs, u"-4"_qs);
        QWidget window;
        window.resize(300, 200);
        store.SaveSetting(application, u"Main"_qs, u"Top"_qs, u"2000000"_qs);
        MWindowPosition::RestoreWindowPosition(store, u"Main"_qs, window);
        const int screenHeight = QGuiApplication::primaryScreen()->size().height();
        QCOMPARE(window.geometry(), QRect(10, screenHeight - 200, 300, 200));
    }

    void tiles()
    {
        const std::tuple<int, bool, QRect> rows[] = {// how many, one above the other, the second
            {2, true, QRect(0, 50, 90, 50)}, {2, false, QRect(45, 0, 45, 100)},
            {5, true, QRect(0, 50, 45, 50)}, {1, true, QRect()}, {100, true, QRect(0, 10, 9, 10)}};
        for (const auto &[count, horizontal, second] : rows) {
            const QList<QRect> places =
                WindowArranger::tiles(QRect(0, 0, 90, 100), count, horizontal);
            QCOMPARE(places.size(), count);
            QCOMPARE(places.value(1), second);
            int covered = 0;
            for (const QRect &place : places)
                covered += place.width() * place.height();
            QCOMPARE(covered, 90 * 100);
        }
    }
};

TSM_TEST(Settings_test);
#include "tst_Settings.moc"
