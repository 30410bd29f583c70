#include "platform/desktop/SingleInstance.h"
#include "safety/Program.h"
#include "support/Answers.h"
#include "support/Files.h"
#include "support/TestRunner.h"

#include <QProcess>
#include <QScopeGuard>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Root may write everywhere; so it becomes somebody else for a while.
class OrdinaryUser
{
public:
    OrdinaryUser() { m_active = geteuid() == 0 && seteuid(nobody) == 0; }
    ~OrdinaryUser()
    {
        if (m_active && seteuid(0) != 0)
            std::abort();
    }
    Q_DISABLE_COPY_MOVE(OrdinaryUser)

    static constexpr uid_t nobody = 65534;

private:
    bool m_active;
};

} // namespace

/// Disks that are full, folders that cannot be written, files that others change, and who may read
/// what the program writes.
class Disks_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void fullDisk_data();
    void fullDisk();
    void readOnlyFolder_data();
    void readOnlyFolder();
    void changedUnderTheWindow_data();
    void changedUnderTheWindow();
    void theUsersAlone_data();
    void theUsersAlone();

private:
    QString path(const QString &name) const { return m_home->filePath(name); }
    QByteArrayList backups(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_home;
};

void Disks_test::init()
{
    m_home = std::make_unique<QTemporaryDir>();
}

QByteArrayList Disks_test::backups(const QString &name) const
{
    QByteArrayList contents;
    for (const QString &copy : Sets::files(path(u"data/backups"_qs), u"*-"_qs + name))
        contents.append(Files::contentOf(copy));
    return contents;
}

void Disks_test::fullDisk_data()
{
    QTest::addColumn<QString>("full"); ///< What the full disk holds.
    QTest::newRow("the file") << u"disk"_qs;
    QTest::newRow("the program's data") << u"data"_qs;
}

void Disks_test::fullDisk()
{
    QFETCH(QString, full);
    const QByteArray mountPoint = QFile::encodeName(path(full));
    QVERIFY(QDir().mkpath(path(u"disk"_qs)) && QDir().mkpath(path(u"data"_qs)));
    // In a view of the disks of its own, which goes with the process.
    if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0
        || mount("none", mountPoint.constData(), "tmpfs", 0, "size=256k") != 0) {
        QSKIP("mounting a small disk is not allowed here");
    }
    const auto unmount = qScopeGuard([&] { umount2(mountPoint.constData(), MNT_DETACH); });
    const QString file = path(u"disk/a%2.bmt"_qs);
    const QString filler = path(full + u"/filler"_qs);
    Program program(m_home->path());
    QVERIFY(Sets::put(file, u"xyz"_qs, program.storage));
    const QByteArray former = Files::contentOf(file);
    QFile filling(filler);
    QVERIFY(filling.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filling.write(QByteArray(4096, 'f')) == 4096)
        ;
    filling.close();

    frmToolSet *form = program.open(file);
    Program::modelOf(form)->toolAt(0)->HelpString = QString(60000, u'h');
    Program::listOf(form)->selectRows({1});
    program.run(u"silentdelete"_qs);
    Answers answers;
    if (full == u"disk") {
        answers.message(u"Error saving tool set: *"_qs, QMessageBox::Ok);
        program.run(u"save"_qs);
        QVERIFY2(answers.lastText().contains(u"There is no room for \"%1\""_qs.arg(file)),
            qPrintable(answers.lastText()));
        QCOMPARE(Files::contentOf(file), former);
        QCOMPARE(Sets::files(path(u"data/recovery"_qs), u"*.bmt"_qs).size(), 1);
        QCOMPARE(Sets::files(path(u"data/snapshots"_qs), u"*.snapshot"_qs).size(), 1);
        QVERIFY(QFile::remove(filler)); // there is room again
        program.run(u"save"_qs);
    } else {
        // Neither copy nor snapshot is possible; neither keeps the file from being saved.
        program.run(u"save"_qs);
        QVERIFY(Sets::files(path(u"data"_qs), u"*.bmt"_qs).isEmpty());
        QVERIFY(Sets::files(path(u"data"_qs), u"*snapshot*"_qs).isEmpty());
        QVERIFY(QFile::remove(filler));
        program.run(u"silentdelete"_qs); // nothing selected
        Program::listOf(form)->selectRows({1});
        program.run(u"silentdelete"_qs);
        QTRY_COMPARE(Sets::files(path(u"data/snapshots"_qs), u"*.snapshot"_qs).size(), 1);
    }
    QCOMPARE(Sets::names(file, program.storage), u"xz"_qs);
}

void Disks_test::readOnlyFolder_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("target"); ///< Of the save.
    QTest::addColumn<bool>("saved");
    QTest::newRow("the file's: it is written in place") << u"sets"_qs << u"sets/a.bmt"_qs << true;
    QTest::newRow("a new file's") << u"sets"_qs << u"sets/new.bmt"_qs << false;
    QTest::newRow("the program's data: no copies") << u"data"_qs << u"sets/a.bmt"_qs << true;
}

void Disks_test::readOnlyFolder()
{
    QFETCH(QString, folder);
    QFETCH(QString, target);
    QFETCH(bool, saved);
    if (geteuid() == 0) {
        QCOMPARE(
            chown(QFile::encodeName(m_home->path()).constData(), OrdinaryUser::nobody, gid_t(-1)),
            0);
    }
    const OrdinaryUser user;
    QVERIFY(QDir().mkpath(path(u"sets"_qs)) && QDir().mkpath(path(u"data"_qs)));
    Program program(m_home->path());
    QVERIFY(Sets::put(path(u"sets/a.bmt"_qs), u"xyz"_qs, program.storage));
    frmToolSet *form = program.open(path(u"sets/a.bmt"_qs));
    constexpr auto readOnly = QFile::ReadOwner | QFile::ExeOwner;
    QVERIFY(QFile::setPermissions(path(folder), readOnly));
    const auto writable =
        qScopeGuard([&] { QFile::setPermissions(path(folder), readOnly | QFile::WriteOwner); });
    Program::listOf(form)->selectRows({1});
    program.run(u"silentdelete"_qs);
    form->setFileName(path(target));
    Answers answers;
    if (!saved)
        answers.message(u"Error saving tool set: *"_qs, QMessageBox::Ok);
    program.run(u"save"_qs);
    QCOMPARE(Sets::names(path(u"sets/a.bmt"_qs), program.storage), saved ? u"xz"_qs : u"xyz"_qs);
    QVERIFY(!QFile::exists(path(u"sets/new.bmt"_qs)));
    QCOMPARE(Sets::files(path(u"data/recovery"_qs), u"*"_qs).size(), saved ? 0 : 1);
}

void Disks_test::changedUnderTheWindow_data()
{
    QTest::addColumn<QString>("change");
    QTest::newRow("another content: it is kept before the save") << u"another"_qs;
    QTest::newRow("a file put in its place: likewise") << u"moved"_qs;
    QTest::newRow("removed: it is made anew") << u"removed"_qs;
    QTest::newRow("removed with its folder: the save fails") << u"folder"_qs;
}

/// The user asked to save, so nobody is asked; but nothing that was in the file is lost.
void Disks_test::changedUnderTheWindow()
{
    QFETCH(QString, change);
    const QString file = path(u"sets/a.bmt"_qs);
    QVERIFY(QDir().mkpath(path(u"sets"_qs)));
    Program program(m_home->path());
    QVERIFY(Sets::put(file, u"xyz"_qs, program.storage));
    frmToolSet *form = program.open(file);
    Program::listOf(form)->selectRows({1});
    program.run(u"silentdelete"_qs);
    const QByteArray other = "somebody else's";
    if (change == u"another") {
        QVERIFY(Files::put(file, other));
    } else if (change == u"moved") {
        QVERIFY(Files::put(path(u"other"_qs), other));
        QVERIFY(QFile::remove(file) && QFile::rename(path(u"other"_qs), file));
    } else if (change == u"removed") {
        QVERIFY(QFile::remove(file));
    } else {
        QVERIFY(QDir(path(u"sets"_qs)).removeRecursively());
    }
    Answers answers;
    if (change == u"folder")
        answers.message(u"Error saving tool set: *"_qs, QMessageBox::Ok);
    program.run(u"save"_qs);
    if (change == u"folder")
        QCOMPARE(Sets::files(path(u"data/recovery"_qs), u"*.bmt"_qs).size(), 1);
    else
        QCOMPARE(Sets::names(file, program.storage), u"xz"_qs);
    QCOMPARE(backups(u"a.bmt"_qs),
        change == u"another" || change == u"moved" ? QByteArrayList {other} : QByteArrayList());
}

void Disks_test::theUsersAlone_data()
{
    QTest::addColumn<QString>("folder"); ///< Below the home; what of it lies open is not looked at.
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("files");
    QTest::newRow("backups") << u"data/backups"_qs << u"*.bmt"_qs << 1;
    QTest::newRow("recovery") << u"data/recovery"_qs << u"*.bmt"_qs << 1;
    QTest::newRow("snapshots") << u"data/snapshots"_qs << u"*.snapshot"_qs << 1;
    QTest::newRow("lock of the snapshots") << u"data/snapshots"_qs << u"lock"_qs << 1;
    QTest::newRow("scratch picture") << u"cache"_qs << u"XTemp.bmp"_qs << 1;
    QTest::newRow("socket") << u"run"_qs << u"*.sock"_qs << 1;
    QTest::newRow("lock of the program") << u"run"_qs << u"*.lock"_qs << 1;
}

void Disks_test::theUsersAlone()
{
    QFETCH(QString, folder);
    QFETCH(QString, pattern);
    QFETCH(int, files);
    // Nothing may come from the caller's mask, nor from a folder that lay open before.
    const mode_t formerMask = umask(0);
    const auto mask = qScopeGuard([=] { umask(formerMask); });
    for (const QString &open : {u"data/backups"_qs, u"data/recovery"_qs, u"data/snapshots"_qs})
        QVERIFY(QDir().mkpath(path(open)));
    QVERIFY(QDir().mkpath(path(u"run"_qs)));
    const QByteArray formerRuntime = qgetenv("XDG_RUNTIME_DIR");
    QVERIFY(QFile::setPermissions(path(u"run"_qs), QFile::Permissions(0x7000)));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(path(u"run"_qs)));
    const auto runtime = qScopeGuard([&] { qputenv("XDG_RUNTIME_DIR", formerRuntime); });

    SingleInstance instance(u"Form"_qs, u"caption"_qs);
    QVERIFY(instance.claim());
    Program program(m_home->path());
    const QString file = path(u"a.bmt"_qs);
    QVERIFY(Sets::put(file, u"xyz"_qs, program.storage));
    frmToolSet *form = program.open(file);
    program.run(u"save"_qs);
    Program::modelOf(form)->toolAt(0)->Hotkey = u"ж"_qs;
    Program::listOf(form)->selectRows({1});
    program.run(u"silentdelete"_qs);
    Answers answers;
    answers.message(u"Error saving tool set: *"_qs, QMessageBox::Ok);
    program.run(u"save"_qs);

    constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
        | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    QDirIterator walk(
        path(folder), {pattern}, QDir::Files | QDir::System, QDirIterator::Subdirectories);
    int found = 0;
    while (walk.hasNext()) {
        QString name = walk.next();
        ++found;
        QCOMPARE(QFile::permissions(name) & others, QFile::Permissions());
        // And every folder on the way down from the program's own.
        while (folder.startsWith(u"data/") && name != path(folder)) {
            name = QFileInfo(name).path();
            QVERIFY2((QFile::permissions(name) & others) == QFile::Permissions(), qPrintable(name));
        }
    }
    QCOMPARE(found, files);
}

TSM_TEST(Disks_test);
#include "tst_Disks.moc"
