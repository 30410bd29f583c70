#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "platform/picture/PictureBox.h"
#include "support/Bytes.h"
#include "support/FaultyDisk.h"
#include "support/Files.h"
#include "support/Rows.h"
#include "support/SetDump.h"
#include "support/TestRunner.h"

#include <QDirIterator>
#include <QRandomGenerator>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// The bytes of files are put together here by hand, from the format's description and without the
// program's own writer, so that reader and writer cannot agree on the same mistake.
namespace {

using Bytes::dword;
using Bytes::word;
using Files::contentOf;
using Files::put;
using SetDump::names;

QByteArray text(const QByteArray &bytes)
{
    return word(bytes.size()) + bytes;
}

QByteArray array(const QByteArray &bytes)
{
    return word(1) + dword(bytes.size()) + dword(0) + bytes;
}

/// Element count and lower bound of one dimension.
QByteArray extent(quint32 count)
{
    return dword(count) + dword(0);
}

/// The fields of a record, in the order of the file.
struct Fields
{
    QByteArray name = "Tool", location = {}, hotkey = {}, appName16 = {};
    int kind = 0, accessOptions = 0;
    quint32 events = 0;
    QByteArray commandLine = {}, help = {};
    int enabled = 0, helpId = 0, reserved = 0;
    QByteArray appName32 = {}, reservedText = {};
    QByteArray picture = word(0); ///< With its counts.

    QByteArray bytes() const
    {
        return text(name) + text(location) + text(hotkey) + text(appName16) + word(kind)
            + word(accessOptions) + dword(events) + text(commandLine) + text(help) + word(enabled)
            + word(helpId) + word(reserved) + text(appName32) + text(reservedText) + picture;
    }
};

QByteArray header(int version = 2, int marker = 140, int flags = 0, const QByteArray &longText = {},
    const QByteArray &description = {})
{
    return word(version) + word(marker) + word(flags) + text(longText) + text(description);
}

/// 1 by 1 pixel, blue 10, green 20, red 30; 24 bits.
const QByteArray onePixel =
    QByteArray::fromHex("424d3a000000000000003600000028000000010000000100000001001800"
                        "00000000040000000000000000000000000000000000000010203000");

/// That pixel in the top left corner of a grey picture of 18 by 18, as the writer stores it: rows
/// from the bottom up, each of 54 bytes and two for padding.
QByteArray renderedPixel()
{
    QByteArray grey =
        QByteArray::fromHex("424d26040000000000003600000028000000120000001200000001001800"
                            "00000000f0030000c40e0000c40e00000000000000000000");
    for (int row = 0; row < 18; ++row)
        grey += QByteArray(54, '\xC0') + QByteArray(2, '\0');
    return grey.replace(54 + 17 * 56, 3, QByteArray::fromHex("102030"));
}

/// No picture, as the writer stores it.
QByteArray renderedNothing()
{
    return renderedPixel().replace(54 + 17 * 56, 3, QByteArray("\xC0\xC0\xC0"));
}

QByteArray pictureField(const QByteArray &bitmap)
{
    return array(bitmap + '\0');
}

QByteArray everyByte()
{
    QByteArray bytes("x");
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    return bytes + 'x'; // no blank at the ends
}

/// The process has no more than so much of a resource; root is not exempt.
class Limit
{
public:
    Limit(__rlimit_resource resource, rlim_t bytes)
        : m_resource(resource)
        , m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(resource, &m_former);
        rlimit limit = m_former;
        limit.rlim_cur = bytes;
        setrlimit(resource, &limit);
    }
    ~Limit()
    {
        setrlimit(m_resource, &m_former);
        std::signal(SIGXFSZ, m_handler);
    }
    Q_DISABLE_COPY_MOVE(Limit)

private:
    __rlimit_resource m_resource;
    void (*m_handler)(int);
    rlimit m_former {};
};

/// A write beyond so many bytes fails, as on a disk that is full.
struct FileSizeLimit : Limit
{
    explicit FileSizeLimit(rlim_t bytes)
        : Limit(RLIMIT_FSIZE, bytes)
    {
    }
};

/// No more memory than there is now and \a more bytes.
struct MemoryLimit : Limit
{
    explicit MemoryLimit(rlim_t more)
        : Limit(
            RLIMIT_AS, contentOf(u"/proc/self/statm"_qs).split(' ')[0].toULongLong() * 4096 + more)
    {
    }
};

const QList<QPair<const char *, QString CVBATool::*>> toolTexts {
    {"name", &CVBATool::Description},
    {"location", &CVBATool::FileName},
    {"hot key", &CVBATool::Hotkey},
    {"second application name", &CVBATool::AppName16},
    {"application name", &CVBATool::AppName32},
    {"command line", &CVBATool::CommandLine},
    {"help text", &CVBATool::HelpString},
};

} // namespace

class BmtFile_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_storage = std::make_unique<ToolSetStorage>(1252, m_folder->path(), path(u"data"_qs));
    }

    void allFields()
    {
        const auto set =
            load(QByteArray::fromHex("0200 8c00 0480" // version, marker, flags
                                     "0200 7b7d 0300 536574" // {} Set
                                     "0600 20204e206520" // name
                                     "0500 20633a5c20" // location
                                     "0300 2046 35"
                                     "0300 413136"
                                     "ffff 1f40" // kind, access switches
                                     "010000fc" // event word
                                     "0400 202d6120"
                                     "0600 20205c7d2020" // help
                                     "ffff 0080 3412" // enabled, help context, reserved
                                     "0400 41333220"
                                     "0300 787878" // reserved
                                     "0100 3b000000 00000000") // one dimension, 59 elements from 0
                + onePixel + '\0');
        QCOMPARE(set->ToolSetName, path());
        QCOMPARE(SetDump::lines(*set),
            QStringList({u"2 -32764|{}|Set"_qs,
                u"N e|c:\\|F5|A16|A32|-a|  \\}  |-1 401f fc000001 fc000001 -1 -32768"_qs}));
        const QImage &picture = set->Item(1)->Picture;
        QCOMPARE(picture.size(), QSize(1, 1));
        QCOMPARE(picture.pixel(0, 0), qRgb(0x30, 0x20, 0x10));
        QCOMPARE(scratch(), onePixel + '\0');
    }

    void oldLayouts()
    {
        const QByteArray record = QByteArray::fromHex(
            "0100 61 0000 0000 0000 0200 0300 07000080 0000 0000 0100 0500 0000 0000 0000 0000");
        const QString version1 = u"a|||||||2 3 80000006 0 1 5"_qs;
        const QString version0 = u"a|||||||2 3 80000007 80000007 1 5"_qs;
        const std::tuple<QByteArray, QString, QString> rows[] = {
            {QByteArray::fromHex("0100 8c00 0400 0200 7b7d 0300 536574"), u"1 5||Set"_qs, version1},
            // another marker
            {QByteArray::fromHex("0100 0000 0100 0200 7b7d 0300 536574"), u"1 1||Set"_qs, version1},
            {"VB Quillon ToolSet v1.01", u"0 0||"_qs, version0},
            {"vb QUILLON tOOLsET V1.01", u"0 0||"_qs, version0},
        };
        for (const auto &[head, set, tool] : rows) {
            const auto loaded = load(head + record);
            QCOMPARE(SetDump::lines(*loaded), QStringList({set, tool}));
            QVERIFY(loaded->Item(1)->Picture.isNull());
        }
    }

    void loadAndSave_data()
    {
        columns<QByteArray, QByteArray, int>();
        const QByteArray head = header(2, 140, -3, "{\\rtf1 long}", "short");
        Fields tool;
        tool.location = "c:\\program files\\x.exe";
        tool.hotkey = "Ctrl+F5";
        tool.appName16 = "a b";
        tool.kind = 77;
        tool.accessOptions = -1;
        tool.events = 0x03FFFFFF;
        tool.commandLine = "\"%1\" /x";
        tool.help = " {\\rtf1 \0help}\r\n ";
        tool.enabled = -1;
        tool.helpId = -2;
        tool.appName32 = "x.exe";
        tool.picture = pictureField(renderedPixel());
        const QByteArray plain = head + tool.bytes();
        QTest::newRow("nothing to change") << plain << plain << 1252;
        QTest::newRow("no tools") << head << head << 1252;

        const auto row = [&](const char *what, const Fields &before, const Fields &after) {
            QTest::newRow(what) << head + before.bytes() + tool.bytes()
                                << head + after.bytes() + tool.bytes() << 1252;
        };
        row("blanks are trimmed",
            {.name = "  first ",
                .location = " a ",
                .hotkey = " b",
                .appName16 = "c ",
                .commandLine = "  ",
                .appName32 = " d e ",
                .picture = tool.picture},
            {.name = "first",
                .location = "a",
                .hotkey = "b",
                .appName16 = "c",
                .appName32 = "d e",
                .picture = tool.picture});
        Fields before = tool;
        Fields after = tool;
        before.name = after.name = "\tfirst\xA0";
        before.location = after.location = "\n";
        row("other white space is kept", before, after);
        before = after = tool;
        before.name = after.name = "first";
        before.events = 0xFC000001;
        after.events = 1;
        row("event bits beyond the 26 events are written as 0", before, after);
        before.events = after.events;
        before.enabled = after.enabled = 1;
        row("another kind of true stays", before, after);
        before.reserved = 5;
        before.reservedText = "reserved";
        row("reserved fields are emptied", before, after);
        before.picture = pictureField(onePixel);
        row("a picture is rendered into the box", before, after);
        before.picture = word(0);
        after.picture = pictureField(renderedNothing());
        row("no picture becomes a grey one", before, after);
        before.name = "";
        after.name = "Tool(1)";
        row("a nameless tool gets a name", before, after);

        tool.name = tool.location = tool.hotkey = tool.appName16 = tool.commandLine = tool.help =
            tool.appName32 = everyByte();
        const QByteArray allBytes = header(2, 140, 0, everyByte(), everyByte()) + tool.bytes();
        for (const int number : {874, 1252, 1255})
            QTest::addRow("every byte in code page %d", number) << allBytes << allBytes << number;

        after = tool;
        after.events = 0;
        QTest::newRow("version 1 becomes version 2")
            << header(1, 9, -4, "{\\rtf1 long}", "short") + tool.bytes()
            << header(2, 140, -3, "", "short") + after.bytes() << 1252;
        QTest::newRow("the text header becomes version 2")
            << "VB Quillon ToolSet v1.01" + tool.bytes() << header() + tool.bytes() << 1252;
    }

    void loadAndSave()
    {
        const auto [before, after, codePage] = row<QByteArray, QByteArray, int>();
        m_storage = std::make_unique<ToolSetStorage>(codePage, m_folder->path(), path(u"data"_qs));
        const auto set = load(before);
        QCOMPARE(set->ErrorDescription, QString());
        QVERIFY2(save(*set), qPrintable(set->ErrorDescription));
        QCOMPARE(contentOf(path()).toHex(), after.toHex());
        QCOMPARE(backups().size(), 1);
        QCOMPARE(contentOf(backups().at(0)), before);
        CVBATools again(*m_storage);
        QVERIFY(again.Load(path()));
        QVERIFY(save(again, path(u"second.bmt"_qs)));
        QCOMPARE(contentOf(path(u"second.bmt"_qs)), after);
    }

    void cutOffAnywhere()
    {
        QByteArray file = header(2, 140, 0, "long", "short");
        const qsizetype headerSize = file.size();
        QList<qsizetype> ends;
        for (const char *name : {"first", "second", "third"}) {
            file +=
                Fields {.name = name, .help = "help", .picture = pictureField(onePixel)}.bytes();
            ends.append(file.size());
        }
        for (qsizetype length = 0; length <= file.size(); ++length) {
            const auto set = load(file.left(length));
            const auto complete = std::count_if(
                ends.cbegin(), ends.cend(), [&](qsizetype end) { return end <= length; });
            using End = CVBATools::FileEnd;
            const End end = length < headerSize ? End::NotAToolSet
                : length == headerSize || (complete && ends[complete - 1] == length) ? End::Complete
                                                                                     : End::Early;
            QVERIFY2(set->Count() == complete && set->ErrorDescription.isEmpty()
                    && set->fileEnd() == end,
                qPrintable(u"cut off at %1"_qs.arg(length)));
        }
    }

    void counts_data()
    {
        // names: Of the tools, and an error's description.
        columns<QByteArray, QStringList, bool>();
        const QStringList whole {u"Tool"_qs, u"next"_qs};
        const QStringList early;
        const QStringList error {
            u"The button picture of the tool \"Tool\" is not a bitmap that can be read."_qs};
        const QByteArray empty = Fields().bytes();
        // Where the counts of the texts stand in a record with no text but its name.
        for (const int offset : {0, 6, 8, 10, 20, 22, 30, 32}) {
            QTest::addRow("text of 65535 bytes at %d", offset)
                << QByteArray(empty).replace(offset, 2, word(65535)) << early << false;
        }
        const auto row = [&](const char *what, const QByteArray &picture, const QStringList &names,
                             bool hasPicture) {
            QTest::newRow(what) << empty.chopped(2) + picture << names << hasPicture;
        };
        const QByteArray bitmap = onePixel + '\0';
        row("no dimension", word(0), whole, false);
        row("no element", word(1) + dword(0) + dword(0), whole, false);
        row("only the extra byte", array(QByteArray(1, '\0')), whole, false);
        row("another lower bound", word(1) + dword(59) + dword(7) + bitmap, whole, true);
        row("two dimensions", word(2) + dword(59) + dword(0) + extent(1) + bitmap, whole, true);
        row("two dimensions, one without elements",
            word(2) + dword(0) + dword(0) + dword(0x7FFFFFFF) + dword(0), whole, false);
        row("65535 dimensions", word(65535) + extent(1) + bitmap, early, false);
        row("65535 whole dimensions", word(65535) + extent(1).repeated(65535) + "x", whole, false);
        row("one element more than there are", word(1) + extent(1000) + bitmap, early, false);
        row("-1 elements", word(1) + extent(0xFFFFFFFF) + bitmap, error, false);
        row("the most elements", word(1) + extent(0x7FFFFFFF) + bitmap, early, false);
        row("the fewest elements", word(1) + extent(0x80000000) + bitmap, error, false);
        row("-1 elements of a part that is not read", word(2) + extent(0) + extent(-1), error,
            false);
        row("-1 times -1 elements", word(2) + extent(0xFFFFFFFF).repeated(2) + bitmap, error,
            false);
        row("a product beyond 64 bits", word(4) + extent(0x7FFFFFFF).repeated(4) + bitmap, early,
            false);
    }

    void counts()
    {
        const auto [record, expected, picture] = row<QByteArray, QStringList, bool>();
        const auto set = load(header() + record + Fields {.name = "next"}.bytes());
        QStringList found = names(*set);
        if (!set->ErrorDescription.isEmpty())
            found.append(set->ErrorDescription);
        QCOMPARE(found, expected);
        if (set->Count() > 0)
            QCOMPARE(!set->Item(1)->Picture.isNull(), picture);
    }

    void largerThanMemory_data()
    {
        // start of the file, its size, names of the tools, mentioned in the error
        rows<QByteArray, qint64, QStringList, QString>({
            {"foreign", QByteArray(), 1LL << 40, {}, {}},
            {"a foreign start", "xyz", 6LL << 30, {}, {}},
            {"one tool, then nameless ones for ever", header() + Fields().bytes(), 1LL << 40,
                {u"Tool"_qs}, u"too many"_qs},
            {"a picture of 2 GB",
                header() + Fields().bytes()
                    + Fields {.name = "b", .picture = word(1) + extent(0x7FFFFFFF)}.bytes(),
                6LL << 30, {u"Tool"_qs}, u"\"b\""_qs},
            {"a picture that memory cannot hold",
                header() + Fields().bytes()
                    + Fields {.picture = word(1) + extent(250 << 20)}.bytes(),
                300LL << 20, {u"Tool"_qs}, u"not enough memory for \""_qs},
        });
    }

    void largerThanMemory()
    {
#if defined(__SANITIZE_ADDRESS__)
        QSKIP("the sanitizer ends the program when memory runs out");
#endif
        const auto [start, size, tools, mentioned] =
            row<QByteArray, qint64, QStringList, QString>();
        QVERIFY(put(path(), start) && QFile(path()).resize(size));
        CVBATools set(*m_storage);
        set.setAllowDupes(true);
        const MemoryLimit limit(100 << 20);
        QCOMPARE(set.Load(path()), mentioned.isEmpty());
        QVERIFY2(set.ErrorDescription.contains(mentioned), qPrintable(set.ErrorDescription));
        QCOMPARE(names(set).mid(0, 1), tools);
        if (mentioned.isEmpty())
            QCOMPARE(set.fileEnd(), CVBATools::FileEnd::NotAToolSet);
    }

    void headers()
    {
        const std::pair<QByteArray, QString> rows[] = {
            // null when the header tells nothing
            {header(2, 140, 0, "long", " short\x80 "), u" short€ "_qs},
            {header(1, 140, 0, "long", "short"), u"short"_qs},
            {header(2, 140, 0, QByteArray(65535, 'l'), QByteArray(65535, 's')) // the longest one
                    + QByteArray(100000, '\xFF'),
                QString(65535, u's')},
            {QByteArray(), QString()},
            {header(2, 141, 7, "long", "short") + Fields().bytes(), QString()}, // another marker
            {"VB Quillon ToolSet v1.02, or so it says", QString()},
            {"VB Quillon ToolSet v1.0", QString()},
            {header(2, 140, 7, "long", "short").chopped(1), QString()},
            {header(1, 140, 7, "long", "short").chopped(1), QString()},
            {header(2, 140, 7).chopped(2) + word(65535) + "short", QString()},
        };
        for (const auto &[bytes, description] : rows) {
            const auto set = load(bytes);
            QCOMPARE(set->ErrorDescription, QString());
            QCOMPARE(set->Count(), 0);
            QCOMPARE(set->ToolSetName, path());
            QCOMPARE(set->Description(), description);
            if (description.isNull())
                QCOMPARE(SetDump::lines(*set), QStringList(u"0 0||"_qs));
            CVBATools scratchSet(*m_storage);
            QCOMPARE(scratchSet.LoadDescription(path()), description);
            QCOMPARE(scratchSet.Description(), description);
            QCOMPARE(scratchSet.LoadDescription(path(u"none.bmt"_qs)), QString());
        }
    }

    void notLoaded()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(u"folder"_qs));
        QCOMPARE(mkfifo(QFile::encodeName(path(u"pipe"_qs)).constData(), 0600), 0);
        const QByteArray picture = pictureField(onePixel);
        QVERIFY(put(path(u"pictures.bmt"_qs),
            header() + Fields {.picture = picture}.bytes()
                + Fields {.name = "broken", .picture = pictureField("BM, but no bitmap")}.bytes()
                + Fields {.name = "behind", .picture = picture}.bytes()));
        const std::tuple<QString, QString, int> rows[] = {
            {path(u"none.bmt"_qs), u"none.bmt"_qs, 0},
            {path(u"folder"_qs), u"folder"_qs, 0},
            {path(u"pipe"_qs), u"pipe"_qs, 0}, // would wait for a writer
            {u"/dev/zero"_qs, u"zero"_qs, 0},
            {path(u"pictures.bmt/x.bmt"_qs), u"x.bmt"_qs, 0},
            {path(QFile::decodeName("caf\xE9.bmt")), u"UTF-8"_qs, 0},
            {path(u"pictures.bmt"_qs), u"\"broken\""_qs, 1},
        };
        for (const auto &[name, mentioned, tools] : rows) {
            CVBATools set(*m_storage);
            set.ToolSetName = u"before"_qs;
            QVERIFY(!set.Load(name));
            QVERIFY2(set.ErrorDescription.contains(mentioned), qPrintable(set.ErrorDescription));
            QCOMPARE(set.ToolSetName, u"before"_qs);
            QCOMPARE(set.Count(), tools);
        }
    }

    void sameNames()
    {
        QCOMPARE(names(*load(header() + Fields().bytes() + Fields {.name = "TOOL "}.bytes())),
            QStringList {u"Tool"_qs});
        CVBATools dupes(*m_storage);
        dupes.setAllowDupes(true);
        QVERIFY(dupes.Load(path()));
        QCOMPARE(names(dupes), QStringList({u"Tool"_qs, u"TOOL(1)"_qs}));
    }

    /// Whatever the bytes, a load ends, says why when it fails, and leaves a set that can be saved.
    void garbage()
    {
        QRandomGenerator random(7);
        const auto byte = [&](int below) { return static_cast<char>(random.bounded(below)); };
        Fields tool;
        tool.help = "help";
        tool.picture = pictureField(onePixel);
        const QByteArray valid = header(2, 140, 0, "long", "short") + tool.bytes() + tool.bytes();
        for (int i = 0; i < 1500; ++i) {
            QByteArray bytes = i % 3 == 0 ? header() : valid;
            if (i % 3 == 0) {
                for (int n = random.bounded(300); n > 0; --n)
                    bytes += byte(i % 2 ? 256 : 3);
            } else {
                for (int n = 1 + random.bounded(4); n > 0; --n)
                    bytes[random.bounded(int(bytes.size()))] = byte(256);
            }
            const auto set = load(bytes);
            QVERIFY(QFile::remove(path()));
            QVERIFY2(save(*set), qPrintable(set->ErrorDescription));
        }
    }

    void savedBytes()
    {
        CVBATools set(*m_storage);
        QVERIFY(save(set));
        QCOMPARE(contentOf(path()).toHex(' '), QByteArray("02 00 8c 00 00 00 00 00 00 00"));
        QCOMPARE(set.ToolSetName, path());
        QCOMPARE(int(set.FileVersion()), 2);
        QVERIFY(backups().isEmpty());
        QVERIFY(!QFile::exists(path(u"XTemp.bmp"_qs)));

        const auto tool = std::make_shared<CVBATool>();
        tool->Description = u"N€"_qs;
        tool->FileName = u" f "_qs;
        tool->ToolType = CVBATool::NoKind;
        tool->AccessOptions = 12;
        tool->VBEvents = -1;
        tool->Enabled = true;
        tool->HelpId = 258;
        tool->Picture = QImage(1, 1, QImage::Format_RGB32);
        tool->Picture.fill(QColor(0x30, 0x20, 0x10));
        set.Add(tool);
        set.setFLAGS(-2);
        set.setDescription(u"d"_qs);
        QVERIFY(set.Save(path(), {u"n€"_qs}, m_box));
        const QByteArray expected =
            QByteArray::fromHex("0200 8c00 feff 0000 0100 64"
                                "0200 4e80 0300 206620 0000 0000 ffff 0c00 ffffff03 0000 0000"
                                "ffff 0201 0000 0000 0000 0100 27040000 00000000")
            + renderedPixel() + '\0';
        QCOMPARE(contentOf(path()).toHex(), expected.toHex());
        QCOMPARE(tool->VBEvents, -1); // in memory they stay
        QCOMPARE(scratch(), renderedPixel());
        load(header() + Fields {.picture = pictureField(onePixel)}.bytes());
        QCOMPARE(scratch(), onePixel + '\0'); // nothing of the larger picture is left behind it
    }

    void unstorable()
    {
        struct Case
        {
            int field; ///< -1 and -2: the descriptions of the set.
            QString value;
            QStringList mentioned;
        };
        const QString tooLong(65536, u'x');
        QList<Case> cases {{1, u"\U0001F600"_qs, {u"\U0001F600"_qs}},
            {-1, u"ж"_qs, {u"description of the tool set"_qs}},
            {-2, tooLong, {u"long description of the tool set"_qs}},
            {0, u"a€ж"_qs, {u"name"_qs, u"ж"_qs, u"a€ж"_qs}}};
        for (int i = 1; i < toolTexts.size(); ++i) {
            const QString field = QString::fromLatin1(toolTexts[i].first);
            cases.append({i, u"a€ж"_qs, {field, u"ж"_qs, u"\"Mine\""_qs}});
            cases.append({i, tooLong, {field, u"\"Mine\""_qs, u"65,536"_qs}});
        }
        QVERIFY(put(path(), "former"));
        for (const auto &[field, value, mentioned] : cases) {
            CVBATools set(*m_storage);
            const auto tool = std::make_shared<CVBATool>();
            tool->Description = u"Mine"_qs;
            if (field == -1)
                set.setDescription(value);
            else if (field == -2)
                set.setLongDescription(value);
            else
                *tool.*toolTexts[field].second = value;
            QVERIFY(set.Add(tool));
            QVERIFY(!save(set));
            for (const QString &part : mentioned)
                QVERIFY2(set.ErrorDescription.contains(part),
                    qPrintable(set.ErrorDescription.left(300)));
            QCOMPARE(contentOf(path()), QByteArray("former"));
            QVERIFY(backups().isEmpty());
            QCOMPARE(set.ToolSetName, QString());
        }
    }

    void longestTexts()
    {
        CVBATools set(*m_storage);
        set.setLongDescription(QString(65535, u'l'));
        set.setDescription(QString(65535, u'd'));
        const auto tool = std::make_shared<CVBATool>();
        for (const auto &[name, field] : toolTexts)
            *tool.*field = QString(65535, u'€');
        QVERIFY(set.Add(tool));
        QVERIFY2(save(set), qPrintable(set.ErrorDescription));
        QCOMPARE(QFileInfo(path()).size(), 6 + 9 * 65537 + 14 + 2 + 10 + 1063);
        CVBATools again(*m_storage);
        QVERIFY(again.Load(path()));
        QCOMPARE(again.Count(), 1);
        QCOMPARE(again.Item(1)->HelpString, tool->HelpString);
        QCOMPARE(again.LongDescription(), set.LongDescription());
    }

    /// The tools before the missing one are in the file, in the order asked for, as after any other
    /// write that fails.
    void missingTool()
    {
        QByteArray records[3];
        for (int i = 0; i < 3; ++i)
            records[i] =
                Fields {.name = QByteArray::number(i), .picture = pictureField(renderedNothing())}
                    .bytes();
        const QByteArray former = header() + records[0] + records[1] + records[2];
        const QByteArray written = header() + records[2] + records[0];
        const auto set = load(former);
        QVERIFY(!set->Save(path(), {u"2"_qs, u"0"_qs, u"missing"_qs, u"1"_qs}, m_box));
        QVERIFY2(set->ErrorDescription.contains(u"\"missing\""), qPrintable(set->ErrorDescription));
        QCOMPARE(contentOf(path()).toHex(), written.toHex());
        QCOMPARE(backups().size(), 1);
        QVERIFY(set->ErrorDescription.contains(QDir::toNativeSeparators(backups().at(0))));
        QCOMPARE(contentOf(backups().at(0)), former);
        QVERIFY(set->Save(path(), {u"2"_qs, u"0"_qs}, m_box));
        QCOMPARE(contentOf(path()), written);
    }

    void killedWhileSaving_data()
    {
        ways();
    }

    /// Ended at each step of a save, the former or the new content is there.
    void killedWhileSaving()
    {
        for (int step = 1;; ++step) {
            init();
            const auto set = changedSet();
            const pid_t child = ::fork();
            if (child == 0) {
                const FaultyDisk disk(step, FaultyDisk::killed);
                save(*set);
                ::_exit(0);
            }
            int status = 0;
            QCOMPARE(::waitpid(child, &status, 0), child);
            const bool done = WIFEXITED(status);
            QVERIFY2(done ? contentOf(path()) == m_new : aWholeCopyExists(),
                qPrintable(QString::number(step)));
            if (done) {
                QVERIFY(step > 3);
                return;
            }
        }
    }

    void failingDisk_data()
    {
        ways();
    }

    /// Where any step fails, a copy is whole, and what is not certainly on the disk is no success.
    void failingDisk()
    {
        for (const int error : {EIO, ENOSPC, EDQUOT, EINTR}) {
            for (int step = 1;; ++step) {
                init();
                const auto set = changedSet();
                bool saved = false;
                {
                    const FaultyDisk disk(step, error);
                    saved = save(*set);
                }
                const QByteArray hit = FaultyDisk::hit();
                QVERIFY2(saved ? contentOf(path()) == m_new : aWholeCopyExists(), hit.constData());
                QCOMPARE(saved, set->ErrorDescription.isEmpty());
                QVERIFY2(!hit.contains("write") || !hit.contains(".unfinished-")
                        || contentOf(path()) == m_former,
                    hit.constData()); // refused
                QVERIFY2(!saved || !hit.endsWith(QFile::encodeName(path())), hit.constData());
                if (hit.isEmpty())
                    break;
            }
        }
    }

    /// Another program writes the file, and is waited for.
    void savedByTwo()
    {
        const QByteArray former = header() + Fields().bytes();
        const auto set = load(former);
        const QByteArray other = former + Fields {.name = "Other"}.bytes();
        int writing = ::open(QFile::encodeName(path()).constData(), O_RDWR | O_CLOEXEC);
        QCOMPARE(::flock(writing, LOCK_EX), 0);
        set->Progress = [&](qint64, qint64) {
            if (writing >= 0) {
                QVERIFY(put(path(), other));
                ::close(std::exchange(writing, -1));
            }
        };
        QVERIFY(save(*set));
        QCOMPARE(writing, -1);
        QVERIFY(set->ChangedByOthers);
        QCOMPARE(contentOf(backups().value(0)), other);
        QVERIFY(save(*set));
        QVERIFY(!set->ChangedByOthers);
        QVERIFY(put(path(), other));
        QVERIFY(save(*set));
        QVERIFY(set->ChangedByOthers);
    }

    void failingWrites()
    {
        const QByteArray file = header(2, 140, 0, QByteArray(1000, 'l'))
            + Fields {.picture = pictureField(renderedNothing())}.bytes();
        const QByteArray former = header() + Fields().bytes();
        const std::pair<QString, QByteArray> rows[] = {
            // what is left, empty for no file
            {u"set.bmt"_qs, file.left(1500)}, // no room behind
            {u"new.bmt"_qs, file.left(1500)},
            {u"folder"_qs, QByteArray()},
            {u"pipe"_qs, QByteArray()},
            {u"none/set.bmt"_qs, QByteArray()},
            {QString(), QByteArray()},
        };
        for (const auto &[name, left] : rows) {
            init();
            QVERIFY(QDir(m_folder->path()).mkdir(u"folder"_qs));
            QCOMPARE(mkfifo(QFile::encodeName(path(u"pipe"_qs)).constData(), 0600), 0);
            const auto set = load(former);
            set->setLongDescription(QString(1000, u'l'));
            const QString target = name.isEmpty() ? name : path(name);
            {
                const FileSizeLimit limit(1500);
                QVERIFY(!set->Save(target, names(*set), m_box));
            }
            QVERIFY(!set->ErrorDescription.isEmpty());
            QVERIFY(set->ErrorDescription.contains(QFileInfo(target).fileName()));
            QCOMPARE(set->ToolSetName, path());
            if (!left.isEmpty())
                QCOMPARE(contentOf(target).toHex(), left.toHex());
            const bool over = target == path();
            QCOMPARE(contentOf(over ? backups().value(0) : path()), former);
            QCOMPARE(backups().size(), over ? 1 : 0);
            QVERIFY(set->ErrorDescription.contains(QDir::toNativeSeparators(backups().value(0))));
        }
    }

private:
    /// The ways to write over a file: with a copy of its former content, with the new content kept
    /// elsewhere, and with neither, over the file and into it.
    static void ways()
    {
        // backup, kept elsewhere, a second name
        rows<bool, bool, bool>({
            {"with a backup", true, false, false},
            {"with a snapshot", false, true, false},
            {"moved over the file", false, false, false},
            {"copied into the file, which has a second name", false, false, true},
        });
    }
    /// A set loaded from the file, with something new, in the row's way of saving.
    std::unique_ptr<CVBATools> changedSet()
    {
        const auto [backup, kept, linked] = row<bool, bool, bool>();
        m_former = header(2, 140, 0, QByteArray(5000, 'f')) + Fields().bytes();
        auto set = load(m_former);
        set->setLongDescription(QString(9000, u'n'));
        m_new = header(2, 140, 0, QByteArray(9000, 'n'))
            + Fields {.picture = pictureField(renderedNothing())}.bytes();
        if (!backup)
            put(path(u"data"_qs), "no folder");
        if (kept) {
            put(path(u"kept"_qs), m_new);
            set->KeptElsewhere = [] { return true; };
        }
        if (linked)
            ::link(QFile::encodeName(path()).constData(),
                QFile::encodeName(path(u"second"_qs)).constData());
        return set;
    }
    bool aWholeCopyExists() const
    {
        QDirIterator files(
            m_folder->path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QByteArray content = contentOf(files.next());
            if (content == m_former || content == m_new)
                return true;
        }
        return false;
    }
    QString path(const QString &name = u"set.bmt"_qs) const
    {
        return m_folder->filePath(name);
    }
    /// A set loaded from a file of these bytes.
    std::unique_ptr<CVBATools> load(const QByteArray &bytes)
    {
        auto set = std::make_unique<CVBATools>(*m_storage);
        const bool loaded = put(path(), bytes) && set->Load(path());
        if (loaded != set->ErrorDescription.isEmpty())
            QTest::qFail("failed without a word, or succeeded with one", __FILE__, __LINE__);
        return set;
    }
    bool save(CVBATools &set, const QString &target = QString())
    {
        return set.Save(target.isEmpty() ? path() : target, names(set), m_box);
    }

    QStringList backups() const
    {
        QStringList paths;
        QDirIterator files(path(u"data/backups"_qs), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            paths.append(files.next());
        return paths;
    }

    QByteArray scratch() const
    {
        return contentOf(path(u"XTemp.bmp"_qs));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ToolSetStorage> m_storage;
    QByteArray m_former; ///< The file's content before a save, and what is to be saved.
    QByteArray m_new;
    PictureBox m_box {Twips {275}, Twips {275}};
};

TSM_TEST(BmtFile_test);
#include "tst_BmtFile.moc"
