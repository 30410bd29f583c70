#include "model/CVBATools.h"

#include "model/BmtReader.h"
#include "model/BmtTool.h"
#include "model/BmtWriter.h"
#include "model/ToolSetStorage.h"
#include "platform/desktop/FileNames.h"
#include "platform/desktop/SafeWriter.h"

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

bool CVBATools::canRename(const ToolPtr &tool, const QString &newName) const
{
    // The name that it has is free then.
    const auto taken = [&](const QString &key) {
        return m_tools.contains(key) && m_tools.Item(key) != tool;
    };
    if (!newName.isEmpty() && !m_allowDupes)
        return !taken(newName);
    if (Count() <= std::numeric_limits<qint16>::max())
        return true; // the counter has more numbers than there are names
    FreeNames names = m_freeNames;
    names.released(tool->Description);
    try {
        names.nameFor(newName, taken);
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
    const FileStamp stamp = FileStamp::of(FileName); // before the reading: a later change is one
    const auto read = [&] {
        QFile file(FileName);
        openForReading(file);
        readTools(file, FileName);
    };
    if (!guarded(FileName, read))
        return false;
    ToolSetName = FileName;
    m_stamp = stamp;
    return true;
}

bool CVBATools::LoadFrom(QIODevice &device)
{
    return guarded({}, [&] { readTools(device, {}); });
}

bool CVBATools::guarded(const QString &name, const std::function<void()> &read)
{
    ErrorDescription.clear();
    // Given back when memory runs out, so that there is some for the message.
    QByteArray reserve(memoryReserve, Qt::Uninitialized);
    try {
        read();
    } catch (const VbError &error) {
        ErrorDescription = error.description();
        return false;
    } catch (const std::bad_alloc &) {
        reserve = QByteArray();
        ErrorDescription =
            QStringLiteral("There is not enough memory for \"%1\".").arg(shown(name));
        return false;
    }
    return true;
}

void CVBATools::readTools(QIODevice &device, const QString &name)
{
    BmtReader reader(device);
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
            throw BmtTool::pictureError(record, m_storage.codePage);
        m_fileEnd = found == Found::End ? FileEnd::Complete : FileEnd::Early;
    }
    const auto *file = qobject_cast<QFileDevice *>(&device);
    if (file && file->error() != QFileDevice::NoError) {
        throw fileError(
            QStringLiteral("\"%1\" cannot be read: %2.").arg(shown(name), file->errorString()));
    }
}

void CVBATools::addRecord(const BmtFormat::Record &record, qint64 &pictureMemory)
{
    const ToolPtr tool = BmtTool::decode(record, m_header.FileVersion, m_storage, pictureMemory);
    const QString name = tool->Description;
    // With AllowDupes false a second tool of one name is dropped, as required. Otherwise the tool
    // would be lost without a word.
    if (!Add(tool) && m_allowDupes) {
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
    writer.AlwaysBeside = WritesBeside;
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
    writer.write(size, [&](QIODevice &device) { return writeTo(device, ToolNames, ctlPic); });
    written = true;
}

bool CVBATools::writeTo(QIODevice &device, const QStringList &ToolNames, PictureBox &ctlPic) const
{
    BmtWriter bytes(device);
    // Also when a name is missing: what stands before it is in the file then.
    const auto flushed = qScopeGuard([&bytes] { bytes.flush(); });
    writeTools(bytes, ToolNames, ctlPic);
    return bytes.flush();
}

bool CVBATools::SaveTo(QIODevice &device, const QStringList &ToolNames, PictureBox &ctlPic)
{
    ErrorDescription.clear();
    try {
        checkStorable(ToolNames, ctlPic);
        if (!writeTo(device, ToolNames, ctlPic))
            ErrorDescription = device.errorString();
    } catch (const VbError &error) {
        ErrorDescription = error.description();
    }
    return ErrorDescription.isEmpty();
}

qint64 CVBATools::checkStorable(const QStringList &ToolNames, PictureBox &ctlPic) const
{
    qint64 size = BmtTool::storedHeaderSize(m_header, m_storage.codePage);
    const qint64 pictureSize = BmtTool::storedPictureSize(ctlPic);
    for (const QString &name : ToolNames) {
        if (m_tools.contains(name)) // else found out in its turn, while writing
            size += BmtTool::storedSize(*m_tools.Item(name), m_storage.codePage) + pictureSize;
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
        const BmtTool::Encoded encoded(*m_tools.Item(name), m_storage, ctlPic);
        writer.writeRecord(encoded.record());
        if (!writer.ok())
            return;
    }
}
