#include "platform/desktop/mFileUtil.h"
#include "support/Files.h"
#include "support/TestRunner.h"

#include <QRegularExpression>

class mFileUtil_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        const QDir top(m_folder.path());
        for (const char *folder : {"Tools", "TOOLS", "tools/Deep", "Other"})
            QVERIFY(top.mkpath(QString::fromLatin1(folder)));
        for (const char *name :
            {"tools/Deep/Set.bmt", "Other/a.bmt", "Other/A.bmt", "Other/é x.bmt",
                "Other/.Hidden.bmt", "Other/Maß.bmt", "Other/Mass.bmt", "Other/Fuß.bmt"}) {
            QFile file(top.filePath(QString::fromUtf8(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
    }

    void realSpelling()
    {
        const std::pair<QString, QString> rows[] = {
            // Only one of three folders holds the file.
            {u"TOOLS/DEEP/SET.BMT"_qs, u"tools/Deep/Set.bmt"_qs},
            {u"Tools/deep/set.bmt"_qs, u"tools/Deep/Set.bmt"_qs},
            {u"Other/a.bmt"_qs, u"Other/a.bmt"_qs}, // the exact spelling first
            {u"Other/A.bmt"_qs, u"Other/A.bmt"_qs}, {u"OTHER/É X.BMT"_qs, u"Other/é x.bmt"_qs},
            {u"OTHER/MAßE.BMT"_qs, QString()}, {u"OTHER/MAß.BMT"_qs, u"Other/Maß.bmt"_qs},
            {u"OTHER/MASS.BMT"_qs, u"Other/Mass.bmt"_qs},
            {u"OTHER/FUSS.BMT"_qs, u"Other/Fuß.bmt"_qs}, // as it was kept once
            {u"OTHER/.HIDDEN.BMT"_qs, u"Other/.Hidden.bmt"_qs},
            {u"TOOLS//../OTHER/A.BMT"_qs, u"Other/A.bmt"_qs}, {u"OTHER/"_qs, u"Other"_qs},
            {u"OTHER/B.BMT"_qs, QString()},
            {u"OTHER/A.BMT/X"_qs, QString()}, // a file in place of a folder
        };
        const QString top = m_folder.path() + u'/';
        for (const auto &[asked, found] : rows) {
            const QString expected = found.isEmpty() ? found : top + found;
            QCOMPARE(mFileUtil::RealSpelling(top + asked), expected);
            QCOMPARE(mFileUtil::RealSpelling(top.toUpper() + asked), expected);
            // From which folder would be anyone's guess.
            QCOMPARE(mFileUtil::RealSpelling(asked), QString());
        }
    }

    void usableFolder()
    {
        for (const QString &itself : {u"Other"_qs, u"new/deeper"_qs}) {
            const QString wanted = m_folder.filePath(itself);
            QCOMPARE(mFileUtil::UsableFolder(wanted), wanted);
            QVERIFY(QFileInfo(wanted).isDir());
        }
        const QString beside = mFileUtil::ProgramFolder() + u"toolsets"_qs;
        for (const QString &wanted : {m_folder.filePath(u"Other/a.bmt/toolsets"_qs), // below a file
                 m_folder.filePath(u"Other/a.bmt/"_qs), u"C:\\VB\\macros\\"_qs, beside}) {
            const QString data = mFileUtil::UsableFolder(wanted);
            QVERIFY(QFileInfo(data).isDir());
            QCOMPARE(QFileInfo(data).fileName(),
                wanted.split(QRegularExpression(u"[/\\\\]"_qs), Qt::SkipEmptyParts).constLast());
            QVERIFY(data.startsWith(qEnvironmentVariable("XDG_DATA_HOME")));
            QVERIFY(Files::ofTheUserAlone(data));
            const QString documents =
                mFileUtil::UsableFolder(wanted, mFileUtil::UserFolder::Documents);
            QCOMPARE(documents, QDir::homePath() + u"/Documents/"_qs + QFileInfo(data).fileName());
            QVERIFY(QFileInfo(documents).isDir());
        }
        QVERIFY(!QFileInfo::exists(beside));
    }

    void addSeparator()
    {
        QCOMPARE(mFileUtil::AddSeparator(u"/a"_qs), u"/a/"_qs);
        QCOMPARE(mFileUtil::AddSeparator(u"/"_qs), u"/"_qs);
        QCOMPARE(mFileUtil::AddSeparator(QString()), QString());
    }

private:
    QTemporaryDir m_folder;
};

TSM_TEST(mFileUtil_test);
#include "tst_mFileUtil.moc"
