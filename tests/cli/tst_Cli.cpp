#include "cli/Commands.h"
#include "model/BmtTool.h"
#include "model/OldHelp.h"
#include "platform/picture/PictureBox.h"
#include "support/FaultyDisk.h"
#include "support/Files.h"
#include "support/SetDump.h"
#include "support/TestRunner.h"

#include <QBuffer>
#include <QDirIterator>

using Files::contentOf;

/// The program's commands, in this process.
class Cli_test : public QObject
{
    Q_OBJECT

    struct Ran
    {
        int result;
        QByteArray out;
        QString err;
    };

    QTemporaryDir folder;
    int runs = 0;

    QString path(const QString &name) const { return folder.filePath(name); }
    QString fresh(const QString &name) { return path(QString::number(++runs) + name); }

    Ran run(const QStringList &arguments, const QByteArray &input = {}) const
    {
        QBuffer in;
        in.setData(input);
        in.open(QIODevice::ReadOnly);
        QBuffer out;
        out.open(QIODevice::WriteOnly);
        QBuffer err;
        err.open(QIODevice::WriteOnly);
        const int result = Cli::run(arguments, {&in, &out, &err}, path(u"data"_qs));
        return {result, out.data(), QString::fromUtf8(err.data())};
    }

    /// What the window makes of a file by loading and saving it; empty where it cannot be loaded.
    QByteArray resaved(const QString &file, int codePage) const
    {
        ToolSetStorage storage(codePage, {}, {});
        CVBATools set(storage);
        set.setAllowDupes(true);
        if (!set.Load(file) || set.fileEnd() == CVBATools::FileEnd::NotAToolSet)
            return {};
        OldHelp::update(set, codePage);
        QBuffer bytes;
        bytes.open(QIODevice::WriteOnly);
        PictureBox box(BmtTool::pictureBoxSide, BmtTool::pictureBoxSide);
        return set.SaveTo(bytes, SetDump::names(set), box) ? bytes.data() : QByteArray();
    }

    static bool put(const QString &file, const QList<CVBATool> &tools, int codePage = 1252)
    {
        ToolSetStorage storage(codePage, {}, {});
        CVBATools set(storage);
        set.setDescription(u"About"_qs);
        for (const CVBATool &tool : tools)
            set.Add(std::make_shared<CVBATool>(tool));
        PictureBox box(BmtTool::pictureBoxSide, BmtTool::pictureBoxSide);
        return set.Save(file, SetDump::names(set), box);
    }
    static CVBATool tool(const QString &name, const QString &location = {})
    {
        CVBATool made;
        made.Description = name;
        made.setLocation(location);
        return made;
    }

private Q_SLOTS:
    /// Every sample and every file that ever troubled a parser: as a window's load and save.
    void anyFile()
    {
        QStringList files;
        for (const char *place : {"/fuzz/corpus", "/samples"}) {
            QDirIterator walk(QStringLiteral(TSM_SOURCE) + QLatin1StringView(place), QDir::Files,
                QDirIterator::Subdirectories);
            while (walk.hasNext())
                files.append(walk.next());
        }
        int read = 0;
        for (const QString &file : std::as_const(files)) {
            const QByteArray expected = resaved(file, 1252);
            const QString unpacked = fresh(u"dir"_qs);
            const Ran ran = run({u"unpack"_qs, file, unpacked, u"--code-page"_qs, u"1252"_qs});
            QVERIFY2(ran.result == 0 || ran.result == 2, qPrintable(file + ran.err));
            for (const QString &command : {u"list"_qs, u"show"_qs, u"cat"_qs, u"check"_qs})
                QCOMPARE(run({command, file}).result == 2, ran.result == 2);
            QCOMPARE(run({u"diff"_qs, file, file}).result, ran.result);
            if (expected.isEmpty()) {
                QCOMPARE(ran.result, 2);
                QVERIFY2(!QFile::exists(unpacked), qPrintable(file));
                continue;
            }
            ++read;
            const Ran packed = run({u"pack"_qs, unpacked, u"-"_qs});
            QVERIFY2(packed.result == 0, qPrintable(file + packed.err));
            QVERIFY2(packed.out == expected, qPrintable(file));
            // Once more, from what the program has written and into the same folder.
            QVERIFY(Files::put(path(u"again.bmt"_qs), packed.out));
            QCOMPARE(run({u"unpack"_qs, path(u"again.bmt"_qs), unpacked}).err, QString());
            QVERIFY2(run({u"pack"_qs, unpacked, u"-"_qs}).out == expected, qPrintable(file));
        }
        QVERIFY(read > 5);
    }

    /// All bytes in all texts, odd numbers, and names that no file system would take.
    void everyByte_data()
    {
        QTest::addColumn<int>("codePage");
        for (const int number : {1252, 1253, 1255, 874})
            QTest::addRow("%d", number) << number;
    }
    void everyByte()
    {
        QFETCH(int, codePage);
        QByteArray bytes("x");
        for (int byte = 0; byte < 256; ++byte)
            bytes.append(char(byte));
        const QString text = CodePage(codePage).decode(QByteArray(bytes + 'x'));
        CVBATool odd = tool(text, text);
        odd.Hotkey = odd.AppName16 = odd.CommandLine = odd.HelpString = text;
        odd.Enabled = VbBool::fromRaw(5);
        odd.ToolType = 77;
        odd.AccessOptions = -2;
        odd.VBEvents = BmtFormat::storedEvents;
        odd.HelpId = -3;
        QList<CVBATool> tools {odd};
        for (const char16_t *name : {u"..", u".git", u"a/b", u"a:b", u"A?B", u"con.x",
                 u"toolset.json", u"../../up", u"end. ", u"-o", u"\\\\"})
            tools.append(tool(QString::fromUtf16(name)));
        const QString file = fresh(u"odd.bmt"_qs);
        QVERIFY(put(file, tools, codePage));
        const QString unpacked = fresh(u"odd"_qs);
        const QString option = u"--code-page=%1"_qs.arg(codePage);
        QCOMPARE(run({u"unpack"_qs, option, file, unpacked}).err, QString());
        QCOMPARE(QDir(unpacked).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden).size(),
            tools.size());
        QCOMPARE(run({u"pack"_qs, unpacked, u"-"_qs}).out, resaved(file, codePage));
        QCOMPARE(run({u"cat"_qs, option, file}).out.count('\n'),
            run({u"cat"_qs, option, u"-"_qs}, contentOf(file)).out.count('\n'));
    }

    void mistakesInAFolder_data()
    {
        QTest::addColumn<QString>("find");
        QTest::addColumn<QString>("replacement");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const QString &find, const QString &with,
                             const QString &message) {
            QTest::newRow(name) << find << with << message;
        };
        row("no comma", u"\"hotKey\": \"\","_qs, u"\"hotKey\": \"\""_qs, u"toolset.json:14: "_qs);
        row("another type", u"\"hotKey\": \"\""_qs, u"\"hotKey\": 5"_qs,
            u"toolset.json:13: tool \"a\": the hot key must be a text"_qs);
        row("unknown field", u"\"hotKey\""_qs, u"\"hotkey\""_qs,
            u"toolset.json:13: tool \"a\": there is no field \"hotkey\""_qs);
        row("unknown kind", u"Standard Executable"_qs, u"Program"_qs,
            u"toolset.json:11: tool \"a\": there is no kind \"Program\""_qs);
        row("same name", u"\"name\": \"b\""_qs, u"\"name\": \"A\""_qs,
            u"toolset.json:22: tool \"A\": the tool in line 8 has this name, too"_qs);
        row("not in the code page", u"C:\\\\a"_qs, u"C:\\\\Ж"_qs,
            u"tool \"a\": the location cannot be stored"_qs);
        row("folder elsewhere", u"\"folder\": \"a\""_qs, u"\"folder\": \"../a\""_qs,
            u"the folder must be the name of one beside this file"_qs);
        row("no folder", u"\"folder\": \"a\""_qs, u"\"folder\": \"c\""_qs,
            u"there is no folder \"c\""_qs);
    }
    void mistakesInAFolder()
    {
        QFETCH(QString, find);
        QFETCH(QString, replacement);
        QFETCH(QString, message);
        const QString file = fresh(u"set.bmt"_qs);
        QVERIFY(put(file, {tool(u"a"_qs, u"C:\\a"_qs), tool(u"b"_qs)}));
        const QString unpacked = fresh(u"dir"_qs);
        QCOMPARE(run({u"unpack"_qs, file, unpacked}).result, 0);
        QString list = QString::fromUtf8(contentOf(unpacked + u"/toolset.json"));
        const qsizetype at = list.indexOf(find);
        QVERIFY(at > 0);
        QVERIFY(Files::put(
            unpacked + u"/toolset.json", list.replace(at, find.size(), replacement).toUtf8()));
        const QByteArray before = contentOf(file);
        const Ran ran = run({u"pack"_qs, unpacked, file});
        QCOMPARE(ran.result, 2);
        QVERIFY2(ran.err.contains(message), qPrintable(ran.err));
        QCOMPARE(contentOf(file), before);
        // Nor is the unfinished work written over.
        QCOMPARE(run({u"unpack"_qs, file, unpacked}).result, 2);
        QCOMPARE(QString::fromUtf8(contentOf(unpacked + u"/toolset.json")), list);
    }

    /// A folder that is unpacked again follows the set and keeps what is not its own.
    void unpackAgain()
    {
        const QString file = fresh(u"set.bmt"_qs);
        CVBATool a = tool(u"a"_qs);
        a.HelpString = u"help"_qs;
        QVERIFY(put(file, {a, tool(u"b"_qs)}));
        const QString unpacked = fresh(u"dir"_qs);
        QCOMPARE(run({u"unpack"_qs, file, unpacked}).result, 0);
        QVERIFY(QFile::exists(unpacked + u"/a/help.rtf"));
        QVERIFY(Files::put(unpacked + u"/b/notes.txt", "mine"));
        a.HelpString.clear();
        QVERIFY(put(file, {a, tool(u"c"_qs)}));
        QCOMPARE(run({u"unpack"_qs, file, unpacked}).err, QString());
        QVERIFY(!QFile::exists(unpacked + u"/a/help.rtf"));
        QVERIFY(!QFile::exists(unpacked + u"/b/picture.bmp"));
        QVERIFY(QFile::exists(unpacked + u"/b/notes.txt"));
        QCOMPARE(run({u"pack"_qs, unpacked, u"-"_qs}).out, resaved(file, 1252));
        QVERIFY(Files::put(path(u"full"_qs) + u".txt", "x"));
        QCOMPARE(run({u"unpack"_qs, file, folder.path()}).result, 2);
    }

    void differences()
    {
        const QString left = fresh(u"left.bmt"_qs);
        const QString right = fresh(u"right.bmt"_qs);
        CVBATool a = tool(u"a"_qs, u"C:\\a"_qs);
        a.HelpString = u"{\\rtf1 one two}"_qs;
        QVERIFY(put(left, {a, tool(u"b"_qs), tool(u"c"_qs), tool(u"d"_qs)}));
        a.HelpString = u"{\\rtf1 one {\\b two}}"_qs;
        QVERIFY(put(right, {tool(u"d"_qs), a, tool(u"b"_qs, u"C:\\b"_qs), tool(u"e"_qs)}));
        const Ran ran = run({u"diff"_qs, left, right});
        QCOMPARE(ran.result, 1);
        QCOMPARE(QString::fromUtf8(ran.out), uR"(~ tool "d" moved from #4 to #1
~ tool "a"
    help text: 15 bytes -> 20 bytes
~ tool "b"
    location:  -> C:\b
    application name:  -> C:\b
+ tool "e" (#4)
- tool "c" (#3)
1 added, 1 removed, 2 changed, 1 moved
)"_qs);
        QVERIFY(!run({u"diff"_qs, u"--help-text"_qs, left, right}).out.contains("help text"));
        QVERIFY(run({u"diff"_qs, u"--json"_qs, left, right}).out.contains("\"moved\": true"));
        QCOMPARE(run({u"diff"_qs, left, u"-"_qs}, contentOf(left)).result, 0);
    }

    void relocating()
    {
        const QString file = fresh(u"set.bmt"_qs);
        QVERIFY(put(file, {tool(u"a"_qs, u"C:\\Tools\\a.exe"_qs), tool(u"b"_qs, u"D:\\b"_qs)}));
        const QByteArray before = contentOf(file);
        const QStringList command {u"relocate"_qs, u"c:/tools"_qs, u"E:\\New"_qs, file};
        QCOMPARE(run(command + QStringList {u"--dry-run"_qs}).out,
            QByteArray("a: C:\\Tools\\a.exe -> E:\\New\\a.exe\n"));
        QCOMPARE(contentOf(file), before);
        QCOMPARE(run({u"relocate"_qs, u"c:/tools"_qs, u"Ж"_qs, file}).result, 2);
        QCOMPARE(contentOf(file), before);
        QCOMPARE(run(command).err, QString());
        QCOMPARE(run({u"list"_qs, file}).out,
            QByteArray("a\t1\tStandard Executable\tE:\\New\\a.exe\n"
                       "b\t2\tStandard Executable\tD:\\b\n"));
        QDirIterator backups(
            path(u"data/backups"_qs), {u"*set.bmt"_qs}, QDir::Files, QDirIterator::Subdirectories);
        bool kept = false;
        while (backups.hasNext())
            kept |= contentOf(backups.next()) == before;
        QVERIFY(kept);
    }

    /// Whatever the disk refuses, the file has its whole old content or the whole new one.
    void disksThatFail()
    {
        const QString file = fresh(u"set.bmt"_qs);
        QVERIFY(put(file, {tool(u"a"_qs, u"C:\\a"_qs)}));
        const QByteArray before = contentOf(file);
        const QStringList command {u"relocate"_qs, u"C:"_qs, u"D:"_qs, file};
        const QByteArray after = run(command + QStringList {u"-o"_qs, u"-"_qs}).out;
        bool failed = false;
        for (int step = 1;; ++step) {
            QVERIFY(Files::put(file, before));
            int result = 0;
            bool hit = false;
            {
                const FaultyDisk disk(step, ENOSPC);
                result = run(command).result;
                hit = !FaultyDisk::hit().isEmpty();
            }
            failed |= result == 2;
            const QByteArray found = contentOf(file);
            QVERIFY2(found == after || (found == before && result == 2), found.constData());
            if (!hit)
                break;
        }
        QVERIFY(failed);
    }

    void checking()
    {
        const QString file = fresh(u"set.bmt"_qs);
        CVBATool missing = tool(u"missing"_qs, u"C:\\none.exe"_qs);
        missing.setInList(true);
        missing.Enabled = true;
        QVERIFY(put(file, {missing}));
        const Ran ran = run({u"check"_qs, u"--drive"_qs, u"C:="_qs + folder.path(), u"--level"_qs,
            u"warning"_qs, file});
        QCOMPARE(ran.result, 1);
        QVERIFY(ran.out.startsWith(
            QByteArray(file.toUtf8() + ": #1 \"missing\": warning: The file \"")));
        QCOMPARE(run({u"check"_qs, u"--level=error"_qs, file}).result, 0);
        QCOMPARE(run({u"check"_qs, u"--drive=C"_qs, file}).result, 2);
    }

    void misuse_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("nothing") << QStringList();
        QTest::newRow("no such command") << QStringList {u"lst"_qs};
        QTest::newRow("no such option") << QStringList {u"list"_qs, u"--jsn"_qs, u"x"_qs};
        QTest::newRow("too few") << QStringList {u"diff"_qs, u"x"_qs};
        QTest::newRow("too many") << QStringList {u"cat"_qs, u"x"_qs, u"y"_qs};
        QTest::newRow("no such file") << QStringList {u"cat"_qs, u"/no/such/file"_qs};
        QTest::newRow("code page") << QStringList {u"cat"_qs, u"--code-page=437"_qs, u"x"_qs};
        QTest::newRow("no output") << QStringList {u"merge"_qs, u"x"_qs, u"x"_qs, u"x"_qs};
    }
    void misuse()
    {
        QFETCH(QStringList, arguments);
        const Ran ran = run(arguments);
        QCOMPARE(ran.result, 2);
        QVERIFY(ran.err.startsWith(u"toolset: "_qs));
        QVERIFY(ran.out.isEmpty());
    }

    void reportAndPicture()
    {
        const QString file = fresh(u"set.bmt"_qs);
        QVERIFY(put(file, {tool(u"a"_qs)}));
        QVERIFY(run({u"report"_qs, file, u"-o"_qs, u"-"_qs}).out.startsWith("%PDF-"));
        const QString picture = path(u"a.png"_qs);
        QCOMPARE(run({u"show"_qs, file, u"#1"_qs, u"--picture"_qs, picture}).err, QString());
        QCOMPARE(QImage(picture).size(), QSize(18, 18));
    }
};

TSM_TEST(Cli_test);
#include "tst_Cli.moc"
