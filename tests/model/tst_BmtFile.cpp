#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "platform/picture/PictureBox.h"
#include "support/Files.h"
#include "support/TestRunner.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

// The bytes of files are put together here by hand, from the format's description and without the
// program's own writer, so that reader and writer cannot agree on the same mistake.
namespace {

using Files::contentOf;
using Files::put;

QByteArray u16(int value)
{
    return QByteArray(1, static_cast<char>(value)) + static_cast<char>(value >> 8);
}

QByteArray u32(quint32 value)
{
    return u16(static_cast<int>(value & 0xFFFF)) + u16(static_cast<int>(value >> 16));
}

QByteArray text(const QByteArray &bytes)
{
    return u16(static_cast<int>(bytes.size())) + bytes;
}

QByteArray array(const QByteArray &bytes)
{
    return u16(1) + u32(static_cast<quint32>(bytes.size())) + u32(0) + bytes;
}

/// Element count and lower bound of one dimension.
QByteArray extent(quint32 count)
{
    return u32(count) + u32(0);
}

/// The fields of a record, in the order of the file.
struct Fields
{
    QByteArray name = "Tool", location, hotkey, appName16;
    int kind = 0, accessOptions = 0;
    quint32 events = 0;
    QByteArray commandLine, help;
    int enabled = 0, helpId = 0, reserved = 0;
    QByteArray appName32, reservedText;
    QByteArray picture = u16(0); ///< With its counts.

    QByteArray bytes() const
    {
        return text(name) + text(location) + text(hotkey) + text(appName16) + u16(kind)
            + u16(accessOptions) + u32(events) + text(commandLine) + text(help) + u16(enabled)
            + u16(helpId) + u16(reserved) + text(appName32) + text(reservedText) + picture;
    }
};

QByteArray header(int version = 2, int marker = 140, int flags = 0, const QByteArray &longText = {},
    const QByteArray &description = {})
{
    return u16(version) + u16(marker) + u16(flags) + text(longText) + text(description);
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

QStringList namesOf(const CVBATools &set)
{
    QStringList names;
    for (const ToolPtr &tool : set)
        names.append(tool->Description);
    return names;
}

/// A write beyond so many bytes fails, as on a disk that is full; root is not exempt.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_former);
        rlimit limit = m_former;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_former);
        std::signal(SIGXFSZ, m_handler);
    }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    void (*m_handler)(int);
    rlimit m_former {};
};

} // namespace

class BmtFile_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void allFields();
    void oldLayouts_data();
    void oldLayouts();
    void loadAndSave_data();
    void loadAndSave();
    void cutOffAnywhere();
    void counts_data();
    void counts();
    void headers_data();
    void headers();
    void notLoaded_data();
    void notLoaded();
    void sameNames();
    void garbage();
    void savedBytes();
    void unstorable_data();
    void unstorable();
    void longestTexts();
    void missingTool();
    void failingWrites_data();
    void failingWrites();
    void recovery();

private:
    QString path(const QString &name = u"set.bmt"_qs) const { return m_folder->filePath(name); }
    /// Loads these bytes from a file; the result in \a loaded.
    std::unique_ptr<CVBATools> load(const QByteArray &bytes, bool *loaded = nullptr);
    QStringList backups() const;
    QByteArray scratch() const { return contentOf(path(u"XTemp.bmp"_qs)); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ToolSetStorage> m_storage;
    PictureBox m_box {Twips {275}, Twips {275}};
};

void BmtFile_test::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_storage = std::make_unique<ToolSetStorage>(1252, m_folder->path(), path(u"data"_qs));
}

std::unique_ptr<CVBATools> BmtFile_test::load(const QByteArray &bytes, bool *loaded)
{
    auto set = std::make_unique<CVBATools>(*m_storage);
    const bool ok = put(path(), bytes) && set->Load(path());
    if (loaded)
        *loaded = ok;
    return set;
}

QStringList BmtFile_test::backups() const
{
    QStringList paths;
    QDirIterator files(path(u"data/backups"_qs), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        paths.append(files.next());
    return paths;
}

void BmtFile_test::allFields()
{
    const QByteArray file =
        QByteArray::fromHex("0200 8c00 0480" // version, marker, flags
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
        + onePixel + '\0';
    bool loaded = false;
    const auto set = load(file, &loaded);
    QVERIFY(loaded);
    QCOMPARE(set->ToolSetName, path());
    QCOMPARE(int(set->FileVersion()), 2);
    QCOMPARE(set->FLAGS(), -32764);
    QCOMPARE(set->LongDescription(), u"{}"_qs);
    QCOMPARE(set->Description(), u"Set"_qs);
    QCOMPARE(set->Count(), 1);
    const CVBATool &tool = *set->Item(1);
    QCOMPARE(tool.Description, u"N e"_qs);
    QCOMPARE(tool.FileName, u"c:\\"_qs);
    QCOMPARE(tool.Hotkey, u"F5"_qs);
    QCOMPARE(tool.AppName16, u"A16"_qs);
    QCOMPARE(int(tool.ToolType), -1);
    QCOMPARE(int(tool.AccessOptions), 0x401F);
    QCOMPARE(tool.FLAGS, qint32(0xFC000001));
    QCOMPARE(tool.VBEvents, qint32(0xFC000001));
    QCOMPARE(tool.CommandLine, u"-a"_qs);
    QCOMPARE(tool.HelpString, u"  \\}  "_qs);
    QVERIFY(tool.Enabled);
    QCOMPARE(int(tool.HelpId), -32768);
    QCOMPARE(tool.AppName32, u"A32"_qs);
    QCOMPARE(tool.Picture.size(), QSize(1, 1));
    QCOMPARE(tool.Picture.pixel(0, 0), qRgb(0x30, 0x20, 0x10));
    QCOMPARE(scratch(), onePixel + '\0');
}

void BmtFile_test::oldLayouts_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("setFlags");
    QTest::addColumn<QString>("description");
    QTest::addColumn<qint32>("toolFlags");
    QTest::addColumn<qint32>("events");
    QTest::newRow("version 1") << QByteArray::fromHex("0100 8c00 0400 0200 7b7d 0300 536574") << 1
                               << 5 << u"Set"_qs << qint32(0x80000006) << 0;
    QTest::newRow("version 1 with another marker")
        << QByteArray::fromHex("0100 0000 0100 0200 7b7d 0300 536574") << 1 << 1 << u"Set"_qs
        << qint32(0x80000006) << 0;
    QTest::newRow("text header") << QByteArray("VB Quillon ToolSet v1.01") << 0 << 0 << QString()
                                 << qint32(0x80000007) << qint32(0x80000007);
    QTest::newRow("text header in another letter case")
        << QByteArray("vb QUILLON tOOLsET V1.01") << 0 << 0 << QString() << qint32(0x80000007)
        << qint32(0x80000007);
}

void BmtFile_test::oldLayouts()
{
    QFETCH(QByteArray, head);
    QFETCH(int, version);
    const QByteArray record = QByteArray::fromHex(
        "0100 61 0000 0000 0000 0200 0300 07000080 0000 0000 0100 0500 0000 0000 0000 0000");
    bool loaded = false;
    const auto set = load(head + record, &loaded);
    QVERIFY(loaded);
    QCOMPARE(int(set->FileVersion()), version);
    QTEST(set->FLAGS(), "setFlags");
    QTEST(set->Description(), "description");
    QCOMPARE(set->LongDescription(), QString());
    QCOMPARE(namesOf(*set), QStringList {u"a"_qs});
    QCOMPARE(int(set->Item(1)->ToolType), 2);
    QCOMPARE(int(set->Item(1)->HelpId), 5);
    QTEST(set->Item(1)->FLAGS, "toolFlags");
    QTEST(set->Item(1)->VBEvents, "events");
    QVERIFY(set->Item(1)->Picture.isNull());
}

void BmtFile_test::loadAndSave_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<int>("codePage");
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
    Fields before = tool;
    Fields after = tool;
    before.name = "  first ";
    before.location = " a ";
    before.hotkey = " b";
    before.appName16 = "c ";
    before.commandLine = "  ";
    before.appName32 = " d e ";
    after.name = "first";
    after.location = "a";
    after.hotkey = "b";
    after.appName16 = "c";
    after.commandLine = "";
    after.appName32 = "d e";
    row("blanks are trimmed", before, after);
    before = after = tool;
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
    before.picture = u16(0);
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

void BmtFile_test::loadAndSave()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(int, codePage);
    m_storage = std::make_unique<ToolSetStorage>(codePage, m_folder->path(), path(u"data"_qs));
    bool loaded = false;
    const auto set = load(before, &loaded);
    QVERIFY(loaded);
    QVERIFY2(set->Save(path(), namesOf(*set), m_box), qPrintable(set->ErrorDescription));
    QCOMPARE(contentOf(path()).toHex(), after.toHex());
    QCOMPARE(backups().size(), 1);
    QCOMPARE(contentOf(backups().at(0)), before);
    CVBATools again(*m_storage);
    QVERIFY(again.Load(path()));
    QVERIFY(again.Save(path(u"second.bmt"_qs), namesOf(again), m_box));
    QCOMPARE(contentOf(path(u"second.bmt"_qs)), after);
}

void BmtFile_test::cutOffAnywhere()
{
    Fields tool;
    tool.help = "help";
    tool.picture = pictureField(onePixel);
    QByteArray file = header(2, 140, 0, "long", "short");
    QList<qsizetype> ends;
    for (const char *name : {"first", "second", "third"}) {
        tool.name = name;
        file += tool.bytes();
        ends.append(file.size());
    }
    for (qsizetype length = 0; length <= file.size(); ++length) {
        bool loaded = false;
        const auto set = load(file.left(length), &loaded);
        const auto complete =
            std::count_if(ends.cbegin(), ends.cend(), [&](qsizetype end) { return end <= length; });
        QVERIFY2(loaded && set->Count() == complete && set->ErrorDescription.isEmpty(),
            qPrintable(u"cut off at %1"_qs.arg(length)));
    }
}

void BmtFile_test::counts_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<bool>("whole"); ///< The record counts, and so does the one behind it.
    QTest::addColumn<bool>("picture");
    const QByteArray empty = Fields().bytes();
    // Where the counts of the texts stand in a record with no text but its name.
    for (const int offset : {0, 6, 8, 10, 20, 22, 30, 32}) {
        QTest::addRow("text of 65535 bytes at %d", offset)
            << QByteArray(empty).replace(offset, 2, u16(65535)) << false << false;
    }
    const auto row = [&](const char *what, const QByteArray &picture, bool whole, bool hasPicture) {
        QTest::newRow(what) << empty.chopped(2) + picture << whole << hasPicture;
    };
    const QByteArray bitmap = onePixel + '\0';
    row("no dimension", u16(0), true, false);
    row("no element", u16(1) + u32(0) + u32(0), true, false);
    row("only the extra byte", array(QByteArray(1, '\0')), true, false);
    row("another lower bound", u16(1) + u32(59) + u32(7) + bitmap, true, true);
    row("two dimensions", u16(2) + u32(59) + u32(0) + extent(1) + bitmap, true, true);
    row("two dimensions, one without elements", u16(2) + u32(0) + u32(0) + u32(0x7FFFFFFF) + u32(0),
        true, false);
    row("65535 dimensions", u16(65535) + extent(1) + bitmap, false, false);
    row("65535 whole dimensions", u16(65535) + extent(1).repeated(65535) + "x", true, false);
    row("one element more than there are", u16(1) + extent(1000) + bitmap, false, false);
    row("-1 elements", u16(1) + extent(0xFFFFFFFF) + bitmap, false, false);
    row("the most elements", u16(1) + extent(0x7FFFFFFF) + bitmap, false, false);
    row("the fewest elements", u16(1) + extent(0x80000000) + bitmap, false, false);
    row("-1 times -1 elements", u16(2) + extent(0xFFFFFFFF).repeated(2) + bitmap, false, false);
    row("a product beyond 64 bits", u16(4) + extent(0x7FFFFFFF).repeated(4) + bitmap, false, false);
}

void BmtFile_test::counts()
{
    QFETCH(QByteArray, record);
    QFETCH(bool, whole);
    QFETCH(bool, picture);
    Fields next;
    next.name = "next";
    bool loaded = false;
    const auto set = load(header() + record + next.bytes(), &loaded);
    QVERIFY2(loaded, qPrintable(set->ErrorDescription));
    QCOMPARE(namesOf(*set), whole ? QStringList({u"Tool"_qs, u"next"_qs}) : QStringList());
    if (whole)
        QCOMPARE(!set->Item(1)->Picture.isNull(), picture);
}

void BmtFile_test::headers_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("description"); ///< Null when the header tells nothing.
    QTest::newRow("version 2") << header(2, 140, 0, "long", " short\x80 ") << u" short€ "_qs;
    QTest::newRow("version 1") << header(1, 140, 0, "long", "short") << u"short"_qs;
    QTest::newRow("the longest header, with something behind it")
        << header(2, 140, 0, QByteArray(65535, 'l'), QByteArray(65535, 's'))
            + QByteArray(100000, '\xFF')
        << QString(65535, u's');
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("another marker")
        << header(2, 141, 7, "long", "short") + Fields().bytes() << QString();
    QTest::newRow("a text") << QByteArray("VB Quillon ToolSet v1.02, or so it says") << QString();
    QTest::newRow("text header, cut off") << QByteArray("VB Quillon ToolSet v1.0") << QString();
    QTest::newRow("cut off") << header(2, 140, 7, "long", "short").chopped(1) << QString();
    QTest::newRow("version 1, cut off")
        << header(1, 140, 7, "long", "short").chopped(1) << QString();
    QTest::newRow("a description longer than the file")
        << header(2, 140, 7).chopped(2) + u16(65535) + "short" << QString();
}

void BmtFile_test::headers()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, description);
    bool loaded = false;
    const auto set = load(bytes, &loaded);
    QVERIFY(loaded);
    QCOMPARE(set->Count(), 0);
    QCOMPARE(set->ToolSetName, path());
    QCOMPARE(set->Description(), description);
    if (description.isNull()) {
        QCOMPARE(int(set->FileVersion()), 0);
        QCOMPARE(set->FLAGS(), 0);
        QCOMPARE(set->LongDescription(), QString());
    }
    CVBATools scratchSet(*m_storage);
    QCOMPARE(scratchSet.LoadDescription(path()), description);
    QCOMPARE(scratchSet.Description(), description);
    QCOMPARE(scratchSet.LoadDescription(path(u"none.bmt"_qs)), QString());
}

void BmtFile_test::notLoaded_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("mentioned");
    QTest::addColumn<int>("tools");
    QTest::newRow("no such file") << u"none.bmt"_qs << u"none.bmt"_qs << 0;
    QTest::newRow("a folder") << u"folder"_qs << u"folder"_qs << 0;
    QTest::newRow("a pipe, which would wait for a writer") << u"pipe"_qs << u"pipe"_qs << 0;
    QTest::newRow("a device") << u"/dev/zero"_qs << u"zero"_qs << 0;
    QTest::newRow("below a file") << u"pictures.bmt/x.bmt"_qs << u"x.bmt"_qs << 0;
    QTest::newRow("a picture that is none") << u"pictures.bmt"_qs << u"\"broken\""_qs << 1;
}

void BmtFile_test::notLoaded()
{
    QFETCH(QString, name);
    QFETCH(QString, mentioned);
    QFETCH(int, tools);
    QVERIFY(QDir(m_folder->path()).mkdir(u"folder"_qs));
    QCOMPARE(mkfifo(QFile::encodeName(path(u"pipe"_qs)).constData(), 0600), 0);
    Fields good;
    good.picture = pictureField(onePixel);
    Fields broken = good;
    broken.name = "broken";
    broken.picture = pictureField("BM, but no bitmap");
    Fields behind = good;
    behind.name = "behind";
    QVERIFY(
        put(path(u"pictures.bmt"_qs), header() + good.bytes() + broken.bytes() + behind.bytes()));
    CVBATools set(*m_storage);
    set.ToolSetName = u"before"_qs;
    QVERIFY(!set.Load(QDir::isRelativePath(name) ? path(name) : name));
    QVERIFY(!set.ErrorDescription.isEmpty());
    QVERIFY2(set.ErrorDescription.contains(mentioned), qPrintable(set.ErrorDescription));
    QCOMPARE(set.ToolSetName, u"before"_qs);
    QCOMPARE(set.Count(), tools);
}

void BmtFile_test::sameNames()
{
    Fields upper;
    upper.name = "TOOL ";
    QVERIFY(put(path(), header() + Fields().bytes() + upper.bytes()));
    CVBATools set(*m_storage);
    QVERIFY(set.Load(path()));
    QCOMPARE(namesOf(set), QStringList {u"Tool"_qs});
    CVBATools dupes(*m_storage);
    dupes.setAllowDupes(true);
    QVERIFY(dupes.Load(path()));
    QCOMPARE(namesOf(dupes), QStringList({u"Tool"_qs, u"TOOL(1)"_qs}));
}

/// Whatever the bytes, a load ends, says why when it fails, and leaves a set that can be saved.
void BmtFile_test::garbage()
{
    QRandomGenerator random(7);
    Fields tool;
    tool.help = "help";
    tool.picture = pictureField(onePixel);
    QByteArray valid = header(2, 140, 0, "long", "short");
    for (const char *name : {"first", "second"}) {
        tool.name = name;
        valid += tool.bytes();
    }
    for (int i = 0; i < 1500; ++i) {
        QByteArray bytes = i % 3 == 0 ? header() : valid;
        if (i % 3 == 0) {
            for (int n = random.bounded(300); n > 0; --n)
                bytes += static_cast<char>(random.bounded(i % 2 ? 256 : 3));
        } else {
            for (int n = 1 + random.bounded(4); n > 0; --n)
                bytes[random.bounded(int(bytes.size()))] = static_cast<char>(random.bounded(256));
        }
        bool loaded = false;
        const auto set = load(bytes, &loaded);
        QCOMPARE(set->ErrorDescription.isEmpty(), loaded);
        QVERIFY(QFile::remove(path()));
        QVERIFY2(set->Save(path(), namesOf(*set), m_box), qPrintable(set->ErrorDescription));
    }
}

void BmtFile_test::savedBytes()
{
    CVBATools set(*m_storage);
    QVERIFY(set.Save(path(), {}, m_box));
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
    Fields smaller;
    smaller.picture = pictureField(onePixel);
    load(header() + smaller.bytes());
    QCOMPARE(scratch(), onePixel + '\0'); // nothing of the larger picture is left behind it
}

namespace {

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

void BmtFile_test::unstorable_data()
{
    QTest::addColumn<int>("field"); ///< -1 and -2: the descriptions of the set.
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("mentioned");
    const QString tooLong(65536, u'x');
    for (int i = 0; i < toolTexts.size(); ++i) {
        const char *name = toolTexts[i].first;
        const QString field = QString::fromLatin1(name);
        QTest::addRow("a character of another script in the %s", name)
            << i << u"a€ж"_qs << QStringList {field, u"ж"_qs, i == 0 ? u"a€ж"_qs : u"\"Mine\""_qs};
        if (i > 0) {
            QTest::addRow("65,536 characters in the %s", name)
                << i << tooLong << QStringList {field, u"\"Mine\""_qs, u"65,536"_qs};
        }
    }
    QTest::newRow("a pair of surrogates")
        << 1 << u"\U0001F600"_qs << QStringList {u"\U0001F600"_qs};
    QTest::newRow("the set's description")
        << -1 << u"ж"_qs << QStringList {u"description of the tool set"_qs};
    QTest::newRow("the set's long description")
        << -2 << tooLong << QStringList {u"long description of the tool set"_qs};
}

void BmtFile_test::unstorable()
{
    QFETCH(int, field);
    QFETCH(QString, value);
    QFETCH(QStringList, mentioned);
    QVERIFY(put(path(), "former"));
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
    QVERIFY(!set.Save(path(), namesOf(set), m_box));
    for (const QString &part : std::as_const(mentioned))
        QVERIFY2(set.ErrorDescription.contains(part), qPrintable(set.ErrorDescription.left(300)));
    QCOMPARE(contentOf(path()), QByteArray("former"));
    QVERIFY(backups().isEmpty());
    QCOMPARE(set.ToolSetName, QString());
}

void BmtFile_test::longestTexts()
{
    CVBATools set(*m_storage);
    set.setLongDescription(QString(65535, u'l'));
    set.setDescription(QString(65535, u'd'));
    const auto tool = std::make_shared<CVBATool>();
    for (const auto &[name, field] : toolTexts)
        *tool.*field = QString(65535, u'€');
    QVERIFY(set.Add(tool));
    QVERIFY2(set.Save(path(), namesOf(set), m_box), qPrintable(set.ErrorDescription));
    QCOMPARE(QFileInfo(path()).size(), 6 + 9 * 65537 + 14 + 2 + 10 + 1063);
    CVBATools again(*m_storage);
    QVERIFY(again.Load(path()));
    QCOMPARE(again.Count(), 1);
    QCOMPARE(again.Item(1)->HelpString, tool->HelpString);
    QCOMPARE(again.LongDescription(), set.LongDescription());
}

/// The tools before the missing one are in the file, in the order asked for, as after any other
/// write that fails.
void BmtFile_test::missingTool()
{
    QByteArray records[3];
    for (int i = 0; i < 3; ++i) {
        Fields tool;
        tool.name = QByteArray::number(i);
        tool.picture = pictureField(renderedNothing());
        records[i] = tool.bytes();
    }
    const QByteArray former = header() + records[0] + records[1] + records[2];
    const auto set = load(former);
    QVERIFY(!set->Save(path(), {u"2"_qs, u"0"_qs, u"missing"_qs, u"1"_qs}, m_box));
    QVERIFY2(set->ErrorDescription.contains(u"\"missing\""), qPrintable(set->ErrorDescription));
    QCOMPARE(backups().size(), 1);
    QVERIFY(set->ErrorDescription.contains(QDir::toNativeSeparators(backups().at(0))));
    QCOMPARE(contentOf(backups().at(0)), former);
    QVERIFY(set->Save(path(), {u"2"_qs, u"0"_qs}, m_box));
    QCOMPARE(contentOf(path()), QByteArray(header() + records[2] + records[0]));
    QVERIFY(!set->Save(path(), {u"2"_qs, u"0"_qs, u"missing"_qs, u"1"_qs}, m_box));
    QCOMPARE(contentOf(path()).toHex(), QByteArray(header() + records[2] + records[0]).toHex());
}

void BmtFile_test::failingWrites_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("left"); ///< Empty for no file.
    Fields tool;
    tool.picture = pictureField(renderedNothing());
    const QByteArray file = header(2, 140, 0, QByteArray(1000, 'l')) + tool.bytes();
    QTest::newRow("no room behind 1500 bytes") << u"set.bmt"_qs << file.left(1500);
    QTest::newRow("no room in a new file") << u"new.bmt"_qs << file.left(1500);
    QTest::newRow("a folder") << u"folder"_qs << QByteArray();
    QTest::newRow("a pipe") << u"pipe"_qs << QByteArray();
    QTest::newRow("in a folder that is not there") << u"none/set.bmt"_qs << QByteArray();
    QTest::newRow("no name") << u""_qs << QByteArray();
}

void BmtFile_test::failingWrites()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, left);
    QVERIFY(QDir(m_folder->path()).mkdir(u"folder"_qs));
    QCOMPARE(mkfifo(QFile::encodeName(path(u"pipe"_qs)).constData(), 0600), 0);
    const QByteArray former = header() + Fields().bytes();
    const auto set = load(former);
    set->setLongDescription(QString(1000, u'l'));
    const QString target = name.isEmpty() ? name : path(name);
    bool saved = true;
    {
        const FileSizeLimit limit(1500);
        saved = set->Save(target, namesOf(*set), m_box);
    }
    QVERIFY(!saved);
    QVERIFY(!set->ErrorDescription.isEmpty());
    QVERIFY(set->ErrorDescription.contains(QFileInfo(target).fileName()));
    QCOMPARE(set->ToolSetName, path());
    if (!left.isEmpty())
        QCOMPARE(contentOf(target).toHex(), left.toHex());
    if (target == path()) {
        QCOMPARE(backups().size(), 1);
        QCOMPARE(contentOf(backups().at(0)), former);
        QVERIFY(set->ErrorDescription.contains(QDir::toNativeSeparators(backups().at(0))));
    } else {
        QCOMPARE(contentOf(path()), former);
        QVERIFY(backups().isEmpty());
    }
}

void BmtFile_test::recovery()
{
    Fields kept;
    kept.name = "b";
    kept.picture = pictureField(renderedNothing());
    const auto set = load(header() + kept.bytes());
    set->Item(1)->CommandLine = u"жé\U0001F600"_qs;
    set->Item(1)->HelpString = QString(70000, u'x');
    kept.commandLine = "?\xE9?";
    kept.help = QByteArray(65535, 'x');
    const QString saved = set->SaveRecovery({u"missing"_qs, u"b"_qs}, m_box);
    QVERIFY(saved.startsWith(path(u"data/recovery/"_qs)));
    QVERIFY(saved.endsWith(u"set.bmt"));
    QVERIFY(contentOf(saved) == header() + kept.bytes());
    QCOMPARE(set->ToolSetName, path());
    QCOMPARE(
        QFile::permissions(saved) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    QVERIFY(set->SaveRecovery({}, m_box) != saved);

    const FileSizeLimit limit(5000);
    QCOMPARE(set->SaveRecovery({u"b"_qs}, m_box), QString());
    QCOMPARE(QDir(path(u"data/recovery"_qs)).entryList(QDir::Files).size(), 2);
}

TSM_TEST(BmtFile_test);
#include "tst_BmtFile.moc"
