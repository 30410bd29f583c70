#include "platform/desktop/SettingsStore.h"
#include "support/Errors.h"
#include "support/Files.h"
#include "support/TestRunner.h"

#include <QSettings>

#include <sys/stat.h>

class SettingsStore_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void valuesComeBack()
    {
        const std::tuple<QString, QString, QString> rows[] = {
            {u"Settings"_qs, u"Don't Load On Start Up"_qs, u"True"_qs},
            {u"Settings"_qs, u"Toolset Path"_qs, u"C:\\new\\tools\\x64\\"_qs},
            {u"FileList"_qs, u"File1"_qs, u"/a, b,c/,d"_qs},
            {u"FileList"_qs, u"2"_qs, u"\"a\"; b=c"_qs},
            {u"Printer"_qs, u"Left"_qs, u"  12 "_qs},
            {u"Printer"_qs, u"Top"_qs, u""_qs},
            {u"Größe"_qs, u"Höhe ж"_qs, u"é\u5DE5"_qs},
            {u"Settings"_qs, u"At"_qs, u"@Invalid()"_qs}, // which the format takes for a type
            {u"General"_qs, u"Key"_qs, u"x"_qs}, // a section with a meaning of its own
            {u"Settings"_qs, u"Macro Path"_qs, u"@@a\\;\n\u0001f"_qs},
        };
        for (const auto &[section, key, value] : rows) {
            init();
            {
                QSettings former(path(), QSettings::IniFormat);
                former.setValue(section + u'/' + key, value);
            }
            SettingsStore store(m_folder->path());
            QCOMPARE(store.GetSetting(m_application, section, key, u"fallback"_qs), value);
            store.SaveSetting(m_application, section, key, u"before"_qs);
            store.SaveSetting(m_application, section, key, value);
            QCOMPARE(store.GetAllSettings(m_application, section),
                (QList<QPair<QString, QString>> {{key, value}}));
        }
    }

    void sectionsAndKeysAreKeptApart()
    {
        SettingsStore store(m_folder->path());
        store.SaveSetting(m_application, u"Settings"_qs, u"Macro Mode"_qs, u"1"_qs);
        store.SaveSetting(m_application, u"Settings"_qs, u"macro mode"_qs, u"2"_qs);
        store.SaveSetting(m_application, u"Printer"_qs, u"Macro Mode"_qs, u"3"_qs);
        store.SaveSetting(u"Another"_qs, u"Settings"_qs, u"Macro Mode"_qs, u"4"_qs);
        auto all = store.GetAllSettings(m_application, u"Settings"_qs);
        std::sort(all.begin(), all.end());
        QCOMPARE(all,
            (QList<QPair<QString, QString>> {
                {u"Macro Mode"_qs, u"1"_qs}, {u"macro mode"_qs, u"2"_qs}}));
        QCOMPARE(store.GetSetting(m_application, u"Printer"_qs, u"Macro Mode"_qs), u"3"_qs);
        QCOMPARE(store.GetSetting(u"Another"_qs, u"Settings"_qs, u"Macro Mode"_qs), u"4"_qs);
    }

    void handWritten()
    {
        const QByteArray before = "\xEF\xBB\xBF; mine\r\n[Settings]\r\n"
                                  "Toolset Path = C:\\VB\\new ; or old\r\n"
                                  "Macro%20Path=\"C:\\new\\x64\"\r\nUnc=\\\\server\\new\r\n"
                                  "no value\r\n=no key\r\n[Odd\xFF section\r\nList=a;b, \"c\"\r\n"
                                  "Twice=1\r\n\r\n# of the printer\r\n[Printer]\r\nLeft=15\r\n"
                                  "[Settings]\r\nTwice=1\r\nTwice=2";
        QVERIFY(Files::put(path(), before));
        SettingsStore store(m_folder->path());
        QCOMPARE(store.GetAllSettings(m_application, u"Settings"_qs),
            (QList<QPair<QString, QString>> {{u"Toolset Path"_qs, u"C:\\VB\\new ; or old"_qs},
                {u"Macro Path"_qs, u"C:\\new\\x64"_qs}, {u"Unc"_qs, u"\\\\server\\new"_qs},
                {u"Twice"_qs, u"1"_qs}, {u"Twice"_qs, u"2"_qs}}));
        QCOMPARE(
            store.GetSetting(m_application, u"Odd\uFFFD section"_qs, u"List"_qs), u"a;b, \"c\""_qs);

        store.SaveSetting(m_application, u"Settings"_qs, u"Twice"_qs, u"2"_qs);
        QCOMPARE(Files::contentOf(path()), before); // nothing to change
        store.SaveSettings(m_application, u"Printer"_qs,
            {{u"Left"_qs, u"30"_qs}, {u"Top"_qs, u"-1"_qs}, {u"Path"_qs, u"C:\\a;b\\new"_qs}});
        store.SaveSetting(m_application, u"Settings"_qs, u"Twice"_qs, u"3"_qs);
        store.SaveSetting(m_application, u"File Button"_qs, u"Path"_qs, u" /x "_qs);
        QByteArray after = before;
        after.replace("Left=15\r\n", "Left=30\r\nTop=-1\r\nPath=C:\\a;b\\new\r\n");
        after.replace("Twice=2", "Twice=3\r\n\r\n[File Button]\r\nPath=\" /x \"\r\n");
        QCOMPARE(Files::contentOf(path()), after);
        QCOMPARE(QDir(m_folder->path()).count(), 3U); // the file, ".", "..": no lock is left
    }

    void nothingStored()
    {
        const SettingsStore store(m_folder->path());
        QCOMPARE(store.GetSetting(m_application, u"Settings"_qs, u"Height"_qs, u"7"_qs), u"7"_qs);
        QVERIFY(store.GetAllSettings(m_application, u"Settings"_qs).isEmpty());
        QVERIFY(QDir(m_folder->path()).isEmpty()); // reading makes no file
    }

    void cannotBeWritten()
    {
        QVERIFY(Files::put(m_folder->filePath(u"file"_qs), ""));
        for (const QString &place : {u"file/below"_qs, u"pipe"_qs, u"huge"_qs}) {
            const QString folder = m_folder->filePath(place);
            QFile file(folder + u'/' + m_application + u".conf"_qs);
            QDir().mkpath(folder);
            if (place == u"pipe") // opening it would wait for ever
                QCOMPARE(mkfifo(QFile::encodeName(file.fileName()).constData(), 0600), 0);
            else if (place == u"huge")
                QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(6LL << 30));
            SettingsStore store(folder);
            int number = 0;
            try {
                store.SaveSetting(m_application, u"Printer"_qs, u"Left"_qs, u"1"_qs);
            } catch (const VbError &error) {
                number = error.number();
                QVERIFY(error.description().contains(m_application));
            }
            QCOMPARE(number, int(VbError::DeviceError));
            QVERIFY(store.GetAllSettings(m_application, u"Printer"_qs).isEmpty());
            QCOMPARE(store.GetSetting(m_application, u"Printer"_qs, u"Left"_qs), QString());
        }
    }

private:
    QString path() const { return m_folder->filePath(m_application + u".conf"_qs); }

    std::unique_ptr<QTemporaryDir> m_folder;
    const QString m_application = u"VB Quillon For VB5"_qs;
};

TSM_TEST(SettingsStore_test);
#include "tst_SettingsStore.moc"
