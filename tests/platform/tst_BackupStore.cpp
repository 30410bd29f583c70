#include "platform/desktop/BackupStore.h"
#include "support/Files.h"
#include "support/TestRunner.h"

#include <QDirIterator>

using Files::contentOf;
using Files::put;

class BackupStore_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(put(path(u"set.bmt"_qs), "content"));
    }

    /// Saves may follow each other within a millisecond.
    void everySaveIsKeptUpToTen()
    {
        constexpr int saves = 40;
        BackupStore store(path(u"backups"_qs));
        QStringList copies;
        for (int i = 0; i < saves; ++i) {
            QVERIFY(put(path(u"set.bmt"_qs), QByteArray::number(i)));
            copies.append(store.backup(path(u"set.bmt"_qs)));
            QVERIFY(!copies.last().isEmpty());
        }
        for (int i = saves - BackupStore::keptPerFile; i < saves; ++i)
            QCOMPARE(contentOf(copies[i]), QByteArray::number(i));
        QCOMPARE(
            QFileInfo(copies.last()).dir().entryList(QDir::Files).size(), BackupStore::keptPerFile);
        QCOMPARE(contentOf(path(u"set.bmt"_qs)), QByteArray::number(saves - 1));
    }

    void filesOfOneNameAreKeptApart()
    {
        BackupStore store(path(u"backups"_qs));
        QVERIFY(QDir(m_folder->path()).mkdir(u"other"_qs));
        QVERIFY(put(path(u"other/set.bmt"_qs), "the other"));
        const QString first = store.backup(path(u"other/set.bmt"_qs));
        for (int i = 0; i < BackupStore::keptPerFile; ++i)
            store.backup(path(u"set.bmt"_qs));
        QCOMPARE(contentOf(first), QByteArray("the other"));
    }

    void readableByTheUserAlone()
    {
        QVERIFY(QFile::setPermissions(path(u"set.bmt"_qs), QFile::Permissions(0x6666)));
        BackupStore store(path(u"backups"_qs));
        const QString copy = store.backup(path(u"set.bmt"_qs));
        const QFileInfo folder(QFileInfo(copy).path());
        for (const QString &kept : {copy, folder.filePath(), folder.path()})
            QVERIFY(Files::ofTheUserAlone(kept));
    }

    void longNames()
    {
        const QString wide(80, QChar(u'\u5DE5')); // three bytes each in a file system's name
        for (const QString &name : {QString(250, u'x'), wide}) {
            const QString file = path(name + u".bmt"_qs);
            QVERIFY(put(file, "content"));
            BackupStore store(path(u"backups"_qs));
            QCOMPARE(contentOf(store.backup(file)), QByteArray("content"));
            QVERIFY(put(store.newPathFor(name + u".bmt"_qs), "content"));
        }
    }

    void nothingToCopy()
    {
        QVERIFY(put(path(u"empty.bmt"_qs), QByteArray()));
        for (const auto &[file, folder] : {std::pair(u"none.bmt"_qs, u"backups"_qs),
                 std::pair(u"empty.bmt"_qs, u"backups"_qs), std::pair(u"."_qs, u"backups"_qs),
                 std::pair(u"set.bmt"_qs, u"empty.bmt/backups"_qs)}) {
            QCOMPARE(BackupStore(path(folder)).backup(path(file)), QString());
            QVERIFY(
                !QDirIterator(path(folder), QDir::Files, QDirIterator::Subdirectories).hasNext());
        }
    }

    void newPaths()
    {
        BackupStore store(path(u"recovery"_qs));
        QStringList paths;
        for (int i = 0; i < 20; ++i) {
            paths.append(store.newPathFor(u"set.bmt"_qs));
            QVERIFY(!QFile::exists(paths.last()));
            QVERIFY(put(paths.last(), "x"));
        }
        QCOMPARE(paths.removeDuplicates(), 0);
        QCOMPARE(BackupStore(path(u"set.bmt/below"_qs)).newPathFor(u"set.bmt"_qs), QString());
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

TSM_TEST(BackupStore_test);
#include "tst_BackupStore.moc"
