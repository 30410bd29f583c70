#include "platform/desktop/BackgroundFiles.h"
#include "platform/desktop/DiskFiles.h"
#include "platform/desktop/DosDrives.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

#include <QDir>
#include <QFile>
#include <QSemaphore>
#include <QTemporaryDir>

using State = FileLookup::State;

class FileLookup_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void drives_data()
    {
        rows<QString, QString>({
            {"drive of Wine", u"C:\\Tools\\a.exe"_qs, u"/wine/c/Tools/a.exe"_qs},
            {"letter case, slashes", u"d:/a.exe"_qs, u"/own/a.exe"_qs},
            {"root", u"Z:\\home\\..\\x"_qs, u"/x"_qs},
            {"unknown drive", u"E:\\a"_qs, {}},
            {"no root", u"C:a"_qs, {}},
            {"share", u"\\\\s\\a"_qs, {}},
            {"of this system", u"/x/a"_qs, u"/x/a"_qs},
            {"bare name", u"a.exe"_qs, {}},
        });
    }
    void drives()
    {
        const auto [path, expected] = row<QString, QString>();
        const QTemporaryDir devices;
        for (const auto &[letter, to] :
            {std::pair("c:", "/wine/c"), {"d:", "/wine/d"}, {"z:", "/"}})
            QFile::link(QLatin1StringView(to), devices.filePath(QLatin1StringView(letter)));
        DosDrives drives = DosDrives::ofWine(devices.path());
        drives.assign(u'd', u"/own/"_qs);
        QCOMPARE(drives.nativePath(path), expected);
    }

    void lettersAndFolders()
    {
        const QTemporaryDir dir;
        const QDir folder(dir.path());
        // Two folders whose names differ in letter case only: the file is in one of them.
        QVERIFY(folder.mkpath(u"Tools"_qs) && folder.mkpath(u"TOOLS/Sub"_qs));
        QFile file(folder.filePath(u"Tools/Ä.exe"_qs));
        QVERIFY(file.open(QIODevice::WriteOnly));
        DiskFiles files;
        const auto state = [&](const QString &path) { return files.state(folder.filePath(path)); };
        QCOMPARE(state(u"tools/ä.EXE"_qs), State::Found);
        QCOMPARE(state(u"tools/sub"_qs), State::Found);
        QCOMPARE(state(u"tools/b.exe"_qs), State::Missing);
        QCOMPARE(state(u"none/b.exe"_qs), State::Missing);
    }

    void stuckFolders()
    {
        auto release = std::make_shared<QSemaphore>();
        const auto makeProbe = [release] {
            return [release](const QString &path) {
                if (path.startsWith(u"/dead"_qs))
                    release->acquire();
                return path.endsWith(u'x') ? State::Found : State::Missing;
            };
        };
        {
            BackgroundFiles files(makeProbe, std::chrono::milliseconds(20));
            const QStringList paths {
                u"/x"_qs, u"/dead/x"_qs, u"/dead/y"_qs, u"/y"_qs, u"/live/x"_qs};
            const auto all = [&] {
                QList<State> states;
                for (const QString &path : paths)
                    states.append(files.state(path));
                return states;
            };
            QCOMPARE(all(), QList<State>(5, State::Pending));
            QTRY_COMPARE(all(),
                (QList<State> {
                    State::Found, State::Unknown, State::Unknown, State::Missing, State::Found}));
        }
        release->release(2); // the thread that was left
    }
};

TSM_TEST(FileLookup_test);
#include "tst_FileLookup.moc"
