#include "Promise.h"
#include "model/BmtReader.h"
#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureBox.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

namespace {

/// The folder and storage of the run.
struct Place
{
    QTemporaryDir folder;
    ToolSetStorage storage {1252, folder.path(), folder.path()};
    PictureBox box {Twips {275}, Twips {275}};

    QString path(const char *name) const { return folder.filePath(QString::fromLatin1(name)); }
};

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Each record by itself, and its picture on a small budget. Through a window of a few bytes the
/// records are the same.
void readRecords(QByteArrayView bytes, const CodePage &codePage)
{
    BmtReader reader(bytes);
    QByteArray content = QByteArray::fromRawData(bytes.data(), bytes.size());
    QBuffer file(&content);
    file.open(QIODevice::ReadOnly);
    BmtReader windowed(file, 16);
    BmtFormat::Header header;
    BmtFormat::Header sameHeader;
    const bool isToolSet = reader.readHeader(header, codePage);
    require(windowed.readHeader(sameHeader, codePage) == isToolSet
            && sameHeader.Description == header.Description,
        "a window shows the same header");
    qint64 memoryLeft = 1 << 20;
    BmtFormat::Record record;
    BmtFormat::Record same;
    auto found = isToolSet ? BmtReader::Found::Record : BmtReader::Found::End;
    while (found == BmtReader::Found::Record) {
        found = reader.readRecord(record);
        require(windowed.readRecord(same) == found, "a window shows as many records");
        if (found != BmtReader::Found::Record)
            break;
        require(same.name == record.name && same.help == record.help
                && same.picture == record.picture && windowed.position() == reader.position(),
            "a window shows the same records");
        Picture::decode(record.picture, memoryLeft);
        require(memoryLeft >= 0, "a picture stays within its memory");
    }
}

bool sameTools(const CVBATools &a, const CVBATools &b)
{
    if (a.Count() != b.Count())
        return false;
    for (int i = 1; i <= a.Count(); ++i) {
        const CVBATool &x = *a.Item(i);
        const CVBATool &y = *b.Item(i);
        if (x.Description != y.Description || x.FileName != y.FileName || x.Hotkey != y.Hotkey
            || x.AppName16 != y.AppName16 || x.ToolType != y.ToolType
            || x.AccessOptions != y.AccessOptions || x.CommandLine != y.CommandLine
            || x.HelpString != y.HelpString || x.Enabled.raw() != y.Enabled.raw()
            || x.HelpId != y.HelpId || x.AppName32 != y.AppName32
            || (x.VBEvents & BmtFormat::storedEvents) != y.VBEvents) {
            return false;
        }
    }
    return true;
}

QStringList namesOf(const CVBATools &set)
{
    QStringList names;
    for (const ToolPtr &tool : set)
        names.append(tool->Description);
    return names;
}

void saveNew(Place &place, CVBATools &set, const char *name)
{
    QFile::remove(place.path(name)); // or each input would leave a backup
    require(set.Save(place.path(name), namesOf(set), place.box), "what was loaded can be saved");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz_bmt";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv); // finds the readers of other pictures
    static Place place;

    const QByteArrayView bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    readRecords(bytes, place.storage.codePage);

    QFile input(place.path("input.bmt"));
    require(
        input.open(QIODevice::WriteOnly) && input.write(bytes.data(), bytes.size()) == bytes.size(),
        "the input can be written");
    input.close();
    CVBATools first(place.storage);
    const bool loaded = first.Load(input.fileName());
    require(loaded == first.ErrorDescription.isEmpty(), "a failure has a text");
    saveNew(place, first, "first.bmt");

    CVBATools second(place.storage);
    require(second.Load(place.path("first.bmt")), "what was saved can be loaded");
    require(sameTools(first, second), "nothing is lost between save and load");
    saveNew(place, second, "second.bmt");
    require(contentOf(place.path("first.bmt")) == contentOf(place.path("second.bmt")),
        "a second save writes the same bytes");
    return 0;
}
