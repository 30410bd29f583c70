#include "platform/desktop/SettingsStore.h"
#include "shell/CFileList.h"
#include "support/TestRunner.h"

#include <QSignalSpy>
#include <QTemporaryDir>

static const QString application = u"VB Quillon For VB5"_qs;
static const QString section = u"FileList"_qs;
static const QString prefix = u"Recent File "_qs;

static QString text(const CFileList &files)
{
    QStringList paths;
    for (const QString &path : files.Items())
        paths.append(path);
    return paths.join(u' ');
}

class CFileList_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void adding()
    {
        const std::pair<QString, QString> rows[] = {
            {u"/a /b"_qs, u"/B /A"_qs}, // the last one comes first, in upper case
            {u"/a /b /a"_qs, u"/A /B"_qs},
            {u"/a /b /A"_qs, u"/A /B"_qs},
            {u"/a /b /c /d /e"_qs, u"/E /D /C /B"_qs}, // the fifth drops the oldest
            {u"/a /a"_qs, u"/A"_qs},
            {u"/straße /strasse /STRAßE /ı /I"_qs, u"/I /STRAßE /STRASSE"_qs},
        };
        for (const auto &[added, expected] : rows) {
            CFileList files;
            QSignalSpy raised(&files, &CFileList::FileAdded);
            const QStringList paths = added.split(u' ');
            for (const QString &path : paths)
                files.Add(path);
            QCOMPARE(text(files), expected);
            QCOMPARE(raised.size(), paths.size());
        }
    }

    void storing()
    {
        const QTemporaryDir folder;
        SettingsStore store(folder.path());
        CFileList longer;
        for (const QString &path : {u"/1"_qs, u"/2"_qs, u"/3"_qs})
            longer.Add(path);
        longer.Save(store, application, section, prefix);
        CFileList shorter;
        shorter.Add(u"/a, ß.bmt"_qs);
        shorter.Save(store, application, section, prefix);
        QCOMPARE(store.GetSetting(application, section, u"Max Count"_qs), u"4"_qs);
        QCOMPARE(store.GetSetting(application, section, u"Recent File 1"_qs), u"/A, ß.BMT"_qs);
        // What a longer list has left behind stays, and comes back.
        CFileList loaded;
        loaded.Load(store, application, section, prefix);
        QCOMPARE(text(loaded), u"/A, ß.BMT /2 /1"_qs);
        loaded.Add(u"/a, ß.bmt"_qs);
        QCOMPARE(int(loaded.Count()), 3);
    }

    void oddStores()
    {
        const std::tuple<QString, int, QString> rows[] = {{QString(), 4, u"/X /Y"_qs},
            {u"many"_qs, 4, u"/X /Y"_qs}, {u"-1"_qs, 4, u"/X /Y"_qs}, {u"40000"_qs, 4, u"/X /Y"_qs},
            {u" &H1 "_qs, 1, u"/X"_qs}};
        for (const auto &[maxCount, max, expected] : rows) {
            const QTemporaryDir folder;
            SettingsStore store(folder.path());
            if (!maxCount.isNull())
                store.SaveSetting(application, section, u"Max Count"_qs, maxCount);
            int number = 0;
            for (const QString &path : {u"/x"_qs, QString(), u"/X"_qs, u"/y"_qs})
                store.SaveSetting(application, section, prefix + QString::number(++number), path);
            CFileList files;
            files.Load(store, application, section, prefix);
            QCOMPARE(int(files.Max()), max);
            QCOMPARE(text(files), expected);
        }
    }
};

TSM_TEST(CFileList_test);
#include "tst_CFileList.moc"
