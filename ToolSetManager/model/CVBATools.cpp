#include "model/CVBATools.h"

#include "model/BmtReader.h"
#include "model/BmtWriter.h"
#include "model/ToolSetStorage.h"
#include "platform/desktop/FileNames.h"
#include "platform/desktop/SafeWriter.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureBox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <limits>
#include <new>

namespace {

/// Bytes. Less would not help where the system's heap itself cannot grow any more.
constexpr qsizetype memoryReserve = 4 << 20;

/// The memory that the pictures of a file may take: a little for every file, and in proportion to
/// what has been read of it. Uncompressed bitmaps, the usual form, need a third more than they have
/// in the file.
constexpr qint64 pictureMemoryOfAnyFile = 64LL << 20;
constexpr qint64 pictureMemoryPerByte = 32;

/// Pixels. Larger pictures are scaled down while they are decoded: no button, list or dialog shows
/// more, and 1-bit pictures would grow to 32 times their size.
constexpr int longestPictureSide = 512;

VbError fileError(const QString &text)
{
    return {VbError::DeviceError, QStringLiteral("CVBATools"), text};
}

QString shown(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

/// Opens a regular file for reading.
void openForReading(QFile &file)
{
    const QString path = file.fileName();
    const QFileInfo info(path);
    if (!info.exists() && FileNames::isUnreadable(path)) {
        throw fileError(QStringLiteral("The file \"%1\" cannot be opened, because its name is not "
                                       "valid UTF-8. Give it another name first.")
                            .arg(shown(path)));
    }
    if (!info.exists())
        throw fileError(QStringLiteral("The file \"%1\" was not found.").arg(shown(path)));
    if (info.isDir())
        throw fileError(QStringLiteral("\"%1\" is a folder, not a file.").arg(shown(path)));
    if (!info.isFile()) // a device or a pipe could be read for ever
        throw fileError(QStringLiteral("\"%1\" is not an ordinary file.").arg(shown(path)));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        throw fileError(
            QStringLiteral("\"%1\" cannot be opened: %2.").arg(shown(path), file.errorString()));
    }
}

VbError pictureError(const QString &toolName)
{
    return fileError(QStringLiteral("The button picture of the tool \"%1\" is not a bitmap "
                                    "that can be read.")
                         .arg(toolName));
}

/// Only blanks are trimmed, not every white space.
QByteArrayView trimmedBlanks(QByteArrayView text)
{
    while (!text.isEmpty() && text.front() == ' ')
        text = text.sliced(1);
    while (!text.isEmpty() && text.back() == ' ')
        text.chop(1);
    return text;
}

/// A picture's bytes have one extra byte behind the bitmap; without more there is no bitmap.
bool hasBitmap(QByteArrayView bytes)
{
    return bytes.size() > 1;
}

struct NamedText
{
    QLatin1StringView field;
    const QString &text;
};

QString lengthProblem(qsizetype length)
{
    return QStringLiteral("it has %L1 characters, and the file can hold %L2 at most")
        .arg(length)
        .arg(BmtFormat::longestString);
}

} // namespace

CVBATools::CVBATools(ToolSetStorage &storage)
    : m_storage(storage)
{
}

void CVBATools::setFLAGS(qint32 flags)
{
    if (flags < std::numeric_limits<qint16>::min() || flags > std::numeric_limits<qint16>::max())
        throw VbError(VbError::Overflow, QStringLiteral("CVBATools"), QStringLiteral("Overflow"));
    m_header.FLAGS = static_cast<qint16>(flags);
}

bool CVBATools::Add(const ToolPtr &tool)
{
    try {
        const QString name = tool->Description.isEmpty() || m_allowDupes
            ? m_freeNames.nameFor(
                tool->Description, [this](const QString &key) { return m_tools.contains(key); })
            : tool->Description;
        m_tools.Add(tool, name);
        tool->Description = name;
        return true;
    } catch (const VbError &) {
        return false; // a taken name, or no free number left: the set is as it was
    }
}

void CVBATools::Remove(const QString &key)
{
    if (m_tools.Remove(key))
        m_freeNames.released(key);
}

void CVBATools::RemoveAllItems()
{
    while (Count() >= 1)
        m_tools.RemoveAt(1);
    m_freeNames.clear();
}

bool CVBATools::CanRename(const ToolPtr &tool, const QString &newName)
{
    // The name that it has is free then.
    const auto taken = [&](const QString &key) {
        return m_tools.contains(key) && m_tools.Item(key) != tool;
    };
    if (!newName.isEmpty() && !m_allowDupes)
        return !taken(newName);
    try {
        m_freeNames.nameFor(newName, taken);
        return true;
    } catch (const VbError &) {
        return false;
    }
}

void CVBATools::Rename(const ToolPtr &tool, const QString &newName)
{
    // The argument may be the collection's own reference.
    const ToolPtr kept = tool; // NOLINT(performance-unnecessary-copy-initialization)
    Remove(kept->Description);
    kept->Description = newName;
    Add(kept);
}

bool CVBATools::canRename(const CVBATool &tool, const QString &newName) const
{
    const QString own = tool.Description.toCaseFolded();
    const auto taken = [&](const QString &key) {
        return m_tools.contains(key) && key.toCaseFolded() != own;
    };
    if (!m_allowDupes && !newName.isEmpty())
        return !taken(newName);
    if (Count() <= std::numeric_limits<qint16>::max())
        return true; // the counter has more numbers than there are names
    FreeNames names = m_freeNames;
    names.released(tool.Description);
    try {
        names.nameFor(newName, taken);
        return true;
    } catch (const VbError &) {
        return false;
    }
}

CVBATools::TakenTools CVBATools::TakeOut(const QStringList &keys)
{
    TakenTools taken = m_tools.TakeOut(keys);
    for (const auto &placed : taken)
        m_freeNames.released(placed.item->Description);
    return taken;
}

void CVBATools::PutBack(const TakenTools &taken)
{
    m_tools.PutBack(taken, [](const ToolPtr &tool) { return tool->Description; });
}

bool CVBATools::Load(const QString &FileName)
{
    ErrorDescription.clear();
    // Given back when memory runs out, so that there is some for the message.
    QByteArray reserve(memoryReserve, Qt::Uninitialized);
    const FileStamp stamp = FileStamp::of(FileName); // before the reading: a later change is one
    try {
        readTools(FileName);
    } catch (const VbError &error) {
        ErrorDescription = error.description();
        return false;
    } catch (const std::bad_alloc &) {
        reserve = QByteArray();
        ErrorDescription =
            QStringLiteral("There is not enough memory for \"%1\".").arg(shown(FileName));
        return false;
    }
    ToolSetName = FileName;
    m_stamp = stamp;
    return true;
}

void CVBATools::readTools(const QString &FileName)
{
    QFile file(FileName);
    openForReading(file);
    BmtReader reader(file);
    m_fileEnd = FileEnd::NotAToolSet;
    if (reader.readHeader(m_header, m_storage.codePage)) {
        using Found = BmtReader::Found;
        qint64 pictureMemory = pictureMemoryOfAnyFile;
        BmtFormat::Record record;
        Found found = Found::Record;
        for (;;) {
            const qint64 before = reader.position();
            found = reader.readRecord(record);
            if (found != Found::Record)
                break;
            pictureMemory += pictureMemoryPerByte * (reader.position() - before);
            addRecord(record, pictureMemory);
            if (Progress)
                Progress(reader.position(), reader.size());
        }
        if (found == Found::ImpossiblePicture)
            throw pictureError(m_storage.codePage.decode(trimmedBlanks(record.name)));
        m_fileEnd = found == Found::End ? FileEnd::Complete : FileEnd::Early;
    }
    if (file.error() != QFileDevice::NoError) {
        throw fileError(
            QStringLiteral("\"%1\" cannot be read: %2.").arg(shown(FileName), file.errorString()));
    }
}

void CVBATools::addRecord(const BmtFormat::Record &record, qint64 &pictureMemory)
{
    const CodePage &codePage = m_storage.codePage;
    const auto trimmed = [&](QByteArrayView text) { return codePage.decode(trimmedBlanks(text)); };
    auto tool = std::make_shared<CVBATool>();
    tool->Description = trimmed(record.name);
    tool->FileName = trimmed(record.location);
    tool->ToolType = record.kind;
    tool->AccessOptions = record.accessOptions;
    tool->Hotkey = trimmed(record.hotkey);
    tool->AppName16 = trimmed(record.appName16);
    tool->AppName32 = trimmed(record.appName32);
    tool->FLAGS = record.events;
    if (m_header.FileVersion != BmtFormat::oldVersion)
        tool->VBEvents = record.events;
    else
        tool->FLAGS &= ~1;
    tool->CommandLine = trimmed(record.commandLine);
    tool->Enabled = VbBool::fromRaw(record.enabled);
    tool->HelpString = codePage.decode(record.help);
    tool->HelpId = record.helpId;
    if (hasBitmap(record.picture)) {
        // The scratch file is what other programs expect to find; the picture itself is taken from
        // the bytes at hand, so a scratch file that cannot be written costs nothing.
        m_storage.scratch.write(record.picture);
        const auto picture = Picture::decode(record.picture, pictureMemory, longestPictureSide);
        if (!picture)
            throw pictureError(tool->Description);
        tool->Picture = *picture;
    }
    // With AllowDupes false a second tool of one name is dropped, as required. Otherwise the tool
    // would be lost without a word.
    if (!Add(tool) && m_allowDupes) {
        const QString name = trimmed(record.name);
        throw fileError(name.isEmpty()
                ? QStringLiteral("There are too many tools without a name.")
                : QStringLiteral("There are too many tools called \"%1\".").arg(name));
    }
}

QString CVBATools::LoadDescription(const QString &FileName)
{
    try {
        QFile file(FileName);
        openForReading(file);
        if (BmtReader(file).readHeader(m_header, m_storage.codePage))
            return m_header.Description;
    } catch (const VbError &) {
        // A file that cannot be read has no description.
    }
    return {};
}

bool CVBATools::Save(const QString &FileName, const QStringList &ToolNames, PictureBox &ctlPic)
{
    ErrorDescription.clear();
    BackupPath.clear();
    ChangedByOthers = false;
    try {
        write(FileName, ToolNames, ctlPic);
    } catch (const VbError &error) {
        ErrorDescription = error.description();
        return false;
    }
    m_header.FileVersion = BmtFormat::currentVersion;
    m_header.Marker = BmtFormat::marker;
    ToolSetName = FileName;
    return true;
}

void CVBATools::write(const QString &FileName, const QStringList &ToolNames, PictureBox &ctlPic)
{
    const qint64 size = checkStorable(ToolNames, ctlPic);
    const QFileInfo info(FileName);
    if (FileName.isEmpty())
        throw fileError(QStringLiteral("The tool set has no file name."));
    if (info.isDir())
        throw fileError(QStringLiteral("\"%1\" is a folder, not a file.").arg(shown(FileName)));
    if (info.exists() && !info.isFile())
        throw fileError(QStringLiteral("\"%1\" is not an ordinary file.").arg(shown(FileName)));

    SafeWriter writer(FileName, m_storage.backups);
    writer.KeptElsewhere = KeptElsewhere;
    writer.Waiting = [this] {
        if (Progress)
            Progress(0, 1);
    };
    bool written = false;
    const auto noteFound = qScopeGuard([&] {
        BackupPath = writer.backup();
        const FileStamp &found = writer.found();
        ChangedByOthers = found.size >= 0
            && (writer.hasWaited() || (FileName == ToolSetName && found != m_stamp));
        if (written || (FileName == ToolSetName && writer.left().size >= 0))
            m_stamp = writer.left(); // what a failure has left is this program's own doing
    });
    writer.write(size, [&](QIODevice &device) {
        BmtWriter bytes(device);
        // Also when a name is missing: what stands before it is in the file then.
        const auto flushed = qScopeGuard([&bytes] { bytes.flush(); });
        writeTools(bytes, ToolNames, ctlPic);
        return bytes.flush();
    });
    written = true;
}

qint64 CVBATools::checkStorable(const QStringList &ToolNames, PictureBox &ctlPic) const
{
    const CodePage &codePage = m_storage.codePage;
    const auto check = [&](const NamedText &item, const QString &toolName) {
        const qsizetype bad = codePage.firstUnencodable(item.text);
        QString problem;
        if (bad >= 0) {
            const QString rest = item.text.mid(bad, 2);
            problem = QStringLiteral("the code page %1 has no character \"%2\"")
                          .arg(codePage.number())
                          .arg(rest.left(rest.at(0).isHighSurrogate() ? 2 : 1));
        } else if (item.text.size() > BmtFormat::longestString) {
            problem = lengthProblem(item.text.size());
        } else {
            return item.text.size() + 2;
        }
        const QString owner = toolName.isNull() ? QStringLiteral("the tool set")
                                                : QStringLiteral("the tool \"%1\"").arg(toolName);
        throw fileError(QStringLiteral("The %1 of %2 cannot be stored: %3.")
                            .arg(QString(item.field), owner, problem));
    };

    qint64 size = 6;
    size += check({QLatin1StringView("long description"), m_header.LongDescription}, QString());
    size += check({QLatin1StringView("description"), m_header.Description}, QString());
    ctlPic.setPicture(QImage());
    const qint64 pictureSize = 10 + Picture::encodeBitmap(ctlPic.Image()).size() + 1;
    constexpr qint64 numbersSize = 2 + 2 + 4 + 2 + 2 + 2;
    constexpr qint64 reservedTextSize = 2;
    for (const QString &name : ToolNames) {
        if (!m_tools.contains(name))
            continue; // found out in its turn, while writing
        const CVBATool &tool = *m_tools.Item(name);
        // Not the empty name, which stands for the set.
        const QString owner = tool.Description.isNull() ? QStringLiteral("") : tool.Description;
        const NamedText texts[] = {
            {QLatin1StringView("name"), tool.Description},
            {QLatin1StringView("location"), tool.FileName},
            {QLatin1StringView("hot key"), tool.Hotkey},
            {QLatin1StringView("second application name"), tool.AppName16},
            {QLatin1StringView("command line"), tool.CommandLine},
            {QLatin1StringView("help text"), tool.HelpString},
            {QLatin1StringView("application name"), tool.AppName32},
        };
        for (const NamedText &text : texts)
            size += check(text, owner);
        size += numbersSize + reservedTextSize + pictureSize;
    }
    return size;
}

void CVBATools::writeTools(
    BmtWriter &writer, const QStringList &ToolNames, PictureBox &ctlPic) const
{
    const auto encode = [this](const QString &text) {
        return m_storage.codePage.encode(text).value_or(QByteArray());
    };
    writer.writeHeader(
        m_header.FLAGS, encode(m_header.LongDescription), encode(m_header.Description));
    qsizetype done = 0;
    for (const QString &name : ToolNames) {
        if (Progress)
            Progress(done++, ToolNames.size());
        const CVBATool &tool = *m_tools.Item(name);
        const QByteArray texts[] = {encode(tool.Description), encode(tool.FileName),
            encode(tool.Hotkey), encode(tool.AppName16), encode(tool.CommandLine),
            encode(tool.HelpString), encode(tool.AppName32)};
        ctlPic.setPicture(tool.Picture);
        QByteArray picture = Picture::encodeBitmap(ctlPic.Image());
        m_storage.scratch.write(picture);
        picture.append('\0'); // Kept: the array runs from 0 to the file's length inclusive.
        BmtFormat::Record record;
        record.name = texts[0];
        record.location = texts[1];
        record.hotkey = texts[2];
        record.appName16 = texts[3];
        record.kind = tool.ToolType;
        record.accessOptions = tool.AccessOptions;
        record.events = tool.VBEvents & BmtFormat::storedEvents;
        record.commandLine = texts[4];
        record.help = texts[5];
        record.enabled = tool.Enabled.raw();
        record.helpId = tool.HelpId;
        record.appName32 = texts[6];
        record.picture = picture;
        writer.writeRecord(record);
        if (!writer.ok())
            return;
    }
}
