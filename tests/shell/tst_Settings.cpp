#include "platform/desktop/SettingsStore.h"
#include "shell/MWindowPosition.h"
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

    void keptOnScreen()
    {
        const std::pair<QRect, QRect> rows[] = {
            {{100, 50, 400, 300}, {100, 50, 400, 300}},
            {{100, 50, 2000, 300}, {0, 50, 1000, 300}}, // wider than the screen
            {{900, 50, 400, 300}, {600, 50, 400, 300}},
            {{100, 790, 400, 300}, {100, 500, 400, 300}},
            {{-500, -20, 400, 300}, {0, 0, 400, 300}},
        };
        for (const auto &[stored, expected] : rows)
            QCOMPARE(MWindowPosition::keptOnScreen(stored, QSize(1000, 800)), expected);
    }

    void placeAndSize()
    {
        const QTemporaryDir folder;
        SettingsStore store(folder.path());
        QWidget window;
        window.setGeometry(31, 42, 323, 245);
        MWindowPosition::SaveWindowPosition(store, u"Main"_qs, window);
        QStringList stored;
        for (const char16_t *key : {u"Left", u"Top", u"Height", u"Width"})
            stored.append(store.GetSetting(application, u"Main"_qs, QString::fromUtf16(key)));
        QCOMPARE(stored.join(u' '), u"465 630 3675 4845"_qs); // twips, 15 to the pixel
        QWidget again;
        MWindowPosition::RestoreWindowPosition(store, u"Main"_qs, again);
        QCOMPARE(again.geometry(), QRect(31, 42, 323, 245));
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
        MWindowPosition::RestoreWindowPosition(store, u"Main"_qs, window);
        const int screenHeight = QGuiApplication::primaryScreen()->size().height();
        QCOMPARE(window.geometry(), QRect(10, (screenHeight - 200) / 2, 300, 200));
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
