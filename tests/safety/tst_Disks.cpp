#include "platform/desktop/BackupStore.h"
#include "platform/desktop/SafeWriter.h"
#include "platform/desktop/SingleInstance.h"
#include "shell/NoticeBar.h"
#include "support/Answers.h"
#include "support/Errors.h"
#include "support/Files.h"
#include "support/Program.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

#include <QProcess>
#include <QScopeGuard>
#include <QStorageInfo>

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

/// In a view of the disks of its own, which goes with the process.
bool mountSmallDisk(const QByteArray &mountPoint)
{
    return unshare(CLONE_NEWNS) == 0
        && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
        && mount("none", mountPoint.constData(), "tmpfs", 0, "size=256k") == 0;
}

} // namespace

/// Disks that are full, folders that cannot be written, files that others change, and who may read
/// what the program writes.
class Disks_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { m_home = std::make_unique<QTemporaryDir>(); }

    void fullDisk_data()
    {
        // what the full disk holds
        rows<QString>({{"the file", u"disk"_qs}, {"the program's data", u"data"_qs}});
    }

    void fullDisk()
    {
        const auto [full] = row<QString>();
        const QByteArray mountPoint = QFile::encodeName(path(full));
        QVERIFY(QDir().mkpath(path(u"disk"_qs)) && QDir().mkpath(path(u"data"_qs)));
        if (!mountSmallDisk(mountPoint))
            QSKIP("mounting a small disk is not allowed here");
        const auto unmount = qScopeGuard([&] { umount2(mountPoint.constData(), MNT_DETACH); });
        const QString file = path(u"disk/a%2.bmt"_qs);
        Program program(m_home->path());
        QVERIFY(Sets::put(file, u"xyz"_qs, program.storage));
        const QByteArray former = Files::contentOf(file);
        QFile filling(path(full + u"/filler"_qs));
        QVERIFY(filling.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (filling.write(QByteArray(4096, 'f')) == 4096)
            ;
        filling.close();

        frmToolSet *form = program.open(file);
        Program::modelOf(form)->toolAt(0)->HelpString = QString(60000, u'h');
        program.remove(form, 1);
        Answers answers;
        if (full == u"disk") {
            answers.message(u"Error saving tool set: *"_qs, QMessageBox::Ok);
            program.run(u"save"_qs);
            QVERIFY2(answers.lastText().contains(u"There is no room for \"%1\""_qs.arg(file)),
                qPrintable(answers.lastText()));
            QCOMPARE(Files::contentOf(file), former);
            QCOMPARE(Sets::files(path(u"data/snapshots"_qs), u"*.snapshot"_qs).size(), 1);
            QVERIFY(filling.remove()); // there is room again
            program.run(u"save"_qs);
        } else {
            // Neither backup nor snapshot is possible; neither keeps the file from being saved.
            program.run(u"save"_qs);
            QVERIFY(Sets::files(path(u"data"_qs), u"*.bmt"_qs).isEmpty());
            QVERIFY(Sets::files(path(u"data"_qs), u"*snapshot*"_qs).isEmpty());
            QCOMPARE(program.frame.findChildren<NoticeBar *>().size(), 1);
            program.remove(form, 1);
            auto *retry = form->findChild<QTimer *>(u"tmrSnapshot"_qs);
            QTRY_VERIFY(retry->isActive() && retry->interval() > 40); // later each time
            QVERIFY(filling.remove());
            QTRY_COMPARE(Sets::files(path(u"data/snapshots"_qs), u"*.snapshot"_qs).size(), 1);
        }
        QCOMPARE(Sets::names(file, program.storage), u"x z"_qs);
    }

    /// The copy for the backup takes some of the room that is free.
    void roomForFileAndBackup()
    {
        const QByteArray mountPoint = QFile::encodeName(path(u"disk"_qs));
        QVERIFY(QDir().mkpath(path(u"disk"_qs)));
        if (!mountSmallDisk(mountPoint))
            QSKIP("mounting a small disk is not allowed here");
        const auto unmount = qScopeGuard([&] { umount2(mountPoint.constData(), MNT_DETACH); });
        const QString file = path(u"disk/a.bmt"_qs);
        const QByteArray former(100 << 10, 'a');
        const QByteArray content(200 << 10, 'b');
        QVERIFY(Files::put(file, former));
        BackupStore backups(path(u"disk/backups"_qs));
        for (const bool keptElsewhere : {false, true}) {
            SafeWriter writer(file, backups);
            writer.KeptElsewhere = [=] { return keptElsewhere; };
            const int error = errorOf([&] {
                writer.write(content.size(),
                    [&](QIODevice &device) { return device.write(content) == content.size(); });
            });
            QCOMPARE(error, keptElsewhere ? 0 : int(VbError::DeviceError));
            QCOMPARE(Files::contentOf(file), keptElsewhere ? content : former);
        }
    }

    void readOnlyFolder_data()
    {
        // target: Of the save.
        rows<QString, QString, bool>({
            {"the file's: it is written in place", u"sets"_qs, u"sets/a.bmt"_qs, true},
            {"a new file's", u"sets"_qs, u"sets/new.bmt"_qs, false},
            {"the program's data: no copies", u"data"_qs, u"sets/a.bmt"_qs, true},
        });
    }

    void readOnlyFolder()
    {
        const auto [folder, target, saved] = row<QString, QString, bool>();
        if (geteuid() == 0) {
            QCOMPARE(chown(QFile::encodeName(m_home->path()).constData(), OrdinaryUser::nobody,
                         gid_t(-1)),
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
        program.remove(form, 1);
        form->setFileName(path(target));
        Answers answers;
        if (!saved)
            answers.message(u"Error saving tool set: *"_qs, QMessageBox::Ok);
        program.run(u"save"_qs);
        QCOMPARE(
            Sets::names(path(u"sets/a.bmt"_qs), program.storage), saved ? u"x z"_qs : u"x y z"_qs);
        QVERIFY(!QFile::exists(path(u"sets/new.bmt"_qs)));
        QCOMPARE(Sets::files(path(u"data/snapshots"_qs), u"*.snapshot"_qs).size(), saved ? 0 : 1);
    }

    /// The user asked to save, so nobody is asked; but nothing that was in the file is lost.
    void changedUnderTheWindow()
    {
        const QByteArray other = "somebody else's";
        // Written over, replaced, removed (and made anew), removed with its folder (and not saved).
        for (const char *change : {"another", "moved", "removed", "folder"}) {
            init();
            const QString file = path(u"sets/a.bmt"_qs);
            QVERIFY(QDir().mkpath(path(u"sets"_qs)));
            Program program(m_home->path());
            QVERIFY(Sets::put(file, u"xyz"_qs, program.storage));
            program.remove(program.open(file), 1);
            const QByteArrayView what(change);
            if (what == "folder")
                QVERIFY(QDir(path(u"sets"_qs)).removeRecursively());
            else if (what != "another")
                QVERIFY(QFile::remove(file));
            if (what == "another" || what == "moved")
                QVERIFY(Files::put(file, other));
            Answers answers;
            if (what == "folder")
                answers.message(u"Error saving tool set: *"_qs, QMessageBox::Ok);
            program.run(u"save"_qs);
            QCOMPARE(program.frame.panelText(Frame::noticePanel).contains(u"somebody else"),
                what == "another" || what == "moved");
            QCOMPARE(Sets::files(path(u"data/snapshots"_qs), u"*.snapshot"_qs).size(),
                what == "folder" ? 1 : 0);
            QCOMPARE(Sets::names(file, program.storage),
                what == "folder" ? u"(unreadable)"_qs : u"x z"_qs);
            QByteArrayList backups;
            for (const QString &copy : Sets::files(path(u"data/backups"_qs), u"*-a.bmt"_qs))
                backups.append(Files::contentOf(copy));
            QCOMPARE(backups,
                what == "another" || what == "moved" ? QByteArrayList {other} : QByteArrayList());
        }
    }

    void theUsersAlone()
    {
        // Nothing may come from the caller's mask, nor from a folder that lay open before.
        const mode_t formerMask = umask(0);
        const auto mask = qScopeGuard([=] { umask(formerMask); });
        for (const QString &open : {u"data/backups"_qs, u"data/snapshots"_qs, u"cache"_qs})
            QVERIFY(QDir().mkpath(path(open)));
        QVERIFY(Files::put(path(u"cache/XTemp.bmp"_qs), "open to all"));
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
        program.remove(form, 1);
        Answers answers;
        answers.message(u"Error saving tool set: *"_qs, QMessageBox::Ok);
        program.run(u"save"_qs);

        for (const auto &[folder, pattern] :
            {std::pair(u"data/backups"_qs, u"*.bmt"_qs), {u"data/snapshots"_qs, u"*.snapshot"_qs},
                {u"data/snapshots"_qs, u"lock"_qs}, {u"cache"_qs, u"XTemp.bmp"_qs},
                {u"run"_qs, u"*.sock"_qs}, {u"run"_qs, u"*.lock"_qs}}) {
            QDirIterator walk(
                path(folder), {pattern}, QDir::Files | QDir::System, QDirIterator::Subdirectories);
            QVERIFY2(walk.hasNext(), qPrintable(pattern));
            QString name = walk.next();
            QVERIFY2(!walk.hasNext(), qPrintable(pattern));
            QVERIFY2(Files::ofTheUserAlone(name), qPrintable(name));
            // And every folder on the way down from the program's own.
            while (folder != u"run" && name != path(folder)) {
                name = QFileInfo(name).path();
                QVERIFY2(Files::ofTheUserAlone(name), qPrintable(name));
            }
        }
    }

    /// What another user may have put in place while a folder was open: the set is saved without
    /// the scratch file, and nothing else is touched.
    void plantedByOthers()
    {
        for (const char *planted : {"link", "second name", "pipe", "linked folder", "its owner"}) {
            init();
            const QByteArrayView what(planted);
            const QByteArray target = QFile::encodeName(path(u"target"_qs));
            const QByteArray scratch = QFile::encodeName(path(u"cache/XTemp.bmp"_qs));
            const QByteArray cache = QFile::encodeName(path(u"cache"_qs));
            QVERIFY(Files::put(path(u"target"_qs), "former") && QDir().mkpath(path(u"other"_qs)));
            if (what == "linked folder")
                QVERIFY(QFile::link(path(u"other"_qs), path(u"cache"_qs)));
            else
                QVERIFY(QDir().mkpath(path(u"cache"_qs)));
            if (what == "link")
                QVERIFY(symlink(target.constData(), scratch.constData()) == 0);
            else if (what == "second name")
                QVERIFY(::link(target.constData(), scratch.constData()) == 0);
            else if (what == "pipe")
                QVERIFY(mkfifo(scratch.constData(), 0666) == 0);
            else if (what == "its owner" && geteuid() == 0)
                QVERIFY(chown(cache.constData(), OrdinaryUser::nobody, gid_t(-1)) == 0);
            else if (what == "its owner")
                continue;
            ToolSetStorage storage(1252, path(u"cache"_qs), path(u"data"_qs));
            QVERIFY(Sets::put(path(u"a.bmt"_qs), u"xyz"_qs, storage));
            QCOMPARE(Files::contentOf(path(u"target"_qs)), QByteArray("former"));
            QCOMPARE(Sets::files(path(u"other"_qs)), QStringList());
            if (what == "its owner")
                QCOMPARE(Sets::files(path(u"cache"_qs)), QStringList());
        }
    }

private:
    QString path(const QString &name) const { return m_home->filePath(name); }
    std::unique_ptr<QTemporaryDir> m_home;
};

TSM_TEST(Disks_test);
#include "tst_Disks.moc"
