#include "platform/desktop/mFileUtil.h"
#include "support/TestRunner.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class mFileUtil_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void realSpelling_data();
    void realSpelling();
    void usableFolder_data();
    void usableFolder();
    void addSeparator();

private:
    QTemporaryDir m_folder;
};

void mFileUtil_test::initTestCase()
{
    const QDir top(m_folder.path());
    for (const char *folder : {"Tools", "TOOLS", "tools/Deep", "Other"})
        QVERIFY(top.mkpath(QString::fromLatin1(folder)));
    for (const char *name : {"tools/Deep/Set.bmt", "Other/a.bmt", "Other/A.bmt", "Other/é x.bmt",
             "Other/.Hidden.bmt"}) {
        QFile file(top.filePath(QString::fromUtf8(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
}

void mFileUtil_test::realSpelling_data()
{
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QString>("found");
    QTest::newRow("only one of three folders holds the file")
        << u"TOOLS/DEEP/SET.BMT"_qs << u"tools/Deep/Set.bmt"_qs;
    QTest::newRow("a folder that matches exactly and does not hold the file")
        << u"Tools/deep/set.bmt"_qs << u"tools/Deep/Set.bmt"_qs;
    QTest::newRow("the exact spelling first") << u"Other/a.bmt"_qs << u"Other/a.bmt"_qs;
    QTest::newRow("the other exact spelling first") << u"Other/A.bmt"_qs << u"Other/A.bmt"_qs;
    QTest::newRow("letters beyond ASCII") << u"OTHER/É X.BMT"_qs << u"Other/é x.bmt"_qs;
    QTest::newRow("a hidden file") << u"OTHER/.HIDDEN.BMT"_qs << u"Other/.Hidden.bmt"_qs;
    QTest::newRow("a folder up and a double separator")
        << u"TOOLS//../OTHER/A.BMT"_qs << u"Other/A.bmt"_qs;
    QTest::newRow("a folder with a separator at its end") << u"OTHER/"_qs << u"Other"_qs;
    QTest::newRow("nothing of that name") << u"OTHER/B.BMT"_qs << QString();
    QTest::newRow("a file in place of a folder") << u"OTHER/A.BMT/X"_qs << QString();
}

void mFileUtil_test::realSpelling()
{
    QFETCH(QString, asked);
    QFETCH(QString, found);
    const QString top = m_folder.path() + u'/';
    const QString expected = found.isEmpty() ? found : top + found;
    QCOMPARE(mFileUtil::RealSpelling(top + asked), expected);
    QCOMPARE(mFileUtil::RealSpelling(top.toUpper() + asked), expected);
    QCOMPARE(
        mFileUtil::RealSpelling(asked), QString()); // from which folder would be anyone's guess
}

void mFileUtil_test::usableFolder_data()
{
    QTest::addColumn<QString>("asked");
    QTest::addColumn<bool>("itself");
    QTest::newRow("a folder that exists") << u"Other"_qs << true;
    QTest::newRow("a folder that can be made") << u"new/deeper"_qs << true;
    QTest::newRow("below a file") << u"Other/a.bmt/toolsets"_qs << false;
    QTest::newRow("below a file, with a separator at the end")
        << u"Other/a.bmt/toolsets/"_qs << false;
    QTest::newRow("a file") << u"Other/a.bmt"_qs << false;
}

void mFileUtil_test::usableFolder()
{
    QFETCH(QString, asked);
    QFETCH(bool, itself);
    const QString wanted = m_folder.path() + u'/' + asked;
    const QString usable = mFileUtil::UsableFolder(wanted);
    QVERIFY(QFileInfo(usable).isDir());
    if (itself) {
        QCOMPARE(usable, wanted);
        return;
    }
    QCOMPARE(QFileInfo(usable).fileName(), QDir(wanted).dirName());
    QVERIFY(usable.startsWith(qEnvironmentVariable("XDG_DATA_HOME")));
    constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
        | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    QCOMPARE(QFile::permissions(usable) & others, QFile::Permissions());
}

void mFileUtil_test::addSeparator()
{
    QCOMPARE(mFileUtil::AddSeparator(u"/a"_qs), u"/a/"_qs);
    QCOMPARE(mFileUtil::AddSeparator(u"/"_qs), u"/"_qs);
    QCOMPARE(mFileUtil::AddSeparator(QString()), QString());
}

TSM_TEST(mFileUtil_test);
#include "tst_mFileUtil.moc"
