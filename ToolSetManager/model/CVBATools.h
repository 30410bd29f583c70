#pragma once

#include "model/BmtFormat.h"
#include "model/CVBATool.h"
#include "model/FreeNames.h"
#include "platform/KeyedCollection.h"
#include "platform/desktop/DiskFile.h"

#include <QStringList>

#include <functional>
#include <vector>

class BmtWriter;
class QIODevice;
class PictureBox;
struct ToolSetStorage;

/// One tool set: tools in order, each found by its name without regard to letter case, with the
/// set's own values and the reading and writing of its file. Positions are 1-based.
class CVBATools
{
public:
    /// The storage is borrowed.
    explicit CVBATools(ToolSetStorage &storage);

    // --- Fields ---
    QString ToolSetName; ///< Path of the file last loaded or saved; empty for a new set.
    QString ErrorDescription; ///< Why the last Load or Save failed.

    // --- Properties ---
    /// When true, Add renames a tool whose name is taken instead of refusing it.
    bool AllowDupes() const { return m_allowDupes; }
    void setAllowDupes(bool on) { m_allowDupes = on; }
    int Count() const { return m_tools.Count(); }
    QString Description() const { return m_header.Description; }
    void setDescription(const QString &text) { m_header.Description = text; }
    QString LongDescription() const { return m_header.LongDescription; } ///< RTF, or empty.
    void setLongDescription(const QString &rtf) { m_header.LongDescription = rtf; }
    /// 0 for a set never loaded and for one in the oldest layout.
    qint16 FileVersion() const { return m_header.FileVersion; }
    qint32 FLAGS() const { return m_header.FLAGS; }
    /// Throws VbError::Overflow outside -32768..32767, the range of the file.
    void setFLAGS(qint32 flags);

    // --- The tools ---
    /// Appends the tool. A tool without a name, or any tool while AllowDupes is true, gets a free
    /// name first. False when the name is taken or no free one was found; nothing changed then.
    bool Add(const ToolPtr &tool);
    /// Both throw VbError: InvalidCall for a missing key, SubscriptOutOfRange for a position.
    const ToolPtr &Item(const QString &key) const { return m_tools.Item(key); }
    const ToolPtr &Item(int position) const { return m_tools.Item(position); }
    const KeyedCollection<ToolPtr> &Items() const { return m_tools; }
    auto begin() const { return m_tools.begin(); }
    auto end() const { return m_tools.end(); }
    /// A missing key is ignored.
    void Remove(const QString &key);
    void RemoveAllItems();
    /// Whether Rename would find a name for the tool: with AllowDupes false the new one itself.
    bool canRename(const ToolPtr &tool, const QString &newName) const;
    /// Takes the tool out under its current name, names it anew and adds it again, at the end.
    /// The result of adding is not looked at: with AllowDupes false and a taken name the tool
    /// drops out of the set.
    void Rename(const ToolPtr &tool, const QString &newName);

    // --- Taking tools out for a while, as undo does ---
    /// Tools that were taken out, each with its place in the set's own order.
    using TakenTools = std::vector<KeyedCollection<ToolPtr>::Placed>;
    /// Keys that are not there are ignored.
    TakenTools TakeOut(const QStringList &keys);
    /// Puts tools back to their places, under the names that they have now; none of these may be
    /// taken (VbError::DuplicateKey, and the set is as it was).
    void PutBack(const TakenTools &taken);

    // --- The file ---
    /// Told during Load and Save how much of the work is done; it must not touch the set.
    std::function<void(qint64 done, qint64 total)> Progress;
    /// Adds the file's tools to the set and takes over its header. A file that is no tool set
    /// counts as loaded, with no tools; a record cut off at the end is dropped. False sets
    /// `ErrorDescription`, also where memory does not suffice; tools added before the error stay.
    bool Load(const QString &FileName);
    /// The same from a device of fixed size at its start, for which `ToolSetName` then stays empty.
    bool LoadFrom(QIODevice &device);
    enum class FileEnd {
        Complete, ///< Behind a tool or the header.
        Early, ///< Within a tool, which was dropped.
        NotAToolSet ///< There is no whole header.
    };
    /// How the file ended that was loaded last.
    FileEnd fileEnd() const { return m_fileEnd; }
    /// The description in the file's header, which is read into this very set; empty when it
    /// cannot be read.
    QString LoadDescription(const QString &FileName);
    /// Writes the tools named by \a ToolNames, in that order; \a ctlPic renders their pictures.
    /// What cannot be stored (a character outside the code page, a string longer than its count
    /// can express, more than the disk has room for) is refused before an existing file is touched.
    /// Then the former content is backed up and the file written in place; a failure leaves it as
    /// far as it was written. Where there is no second copy, SafeWriter says what happens instead.
    /// False sets `ErrorDescription`, which says where the former content is.
    bool Save(const QString &FileName, const QStringList &ToolNames, PictureBox &ctlPic);
    /// Writes what Save() would write into an open device.
    bool SaveTo(QIODevice &device, const QStringList &ToolNames, PictureBox &ctlPic);
    /// Save() keeps the former content of a file until the new one is complete (SafeWriter), for
    /// callers that do not keep the set otherwise.
    bool WritesBeside = false;
    /// Whether the set as it stands is on the disk elsewhere. Asked during Save when the file's
    /// former content could not be backed up.
    std::function<bool()> KeptElsewhere;
    /// The last Save wrote over another content than this set was loaded from or saved as.
    bool ChangedByOthers = false;
    QString BackupPath; ///< What the last Save wrote over; empty for none.

private:
    /// As Save(), but throws VbError.
    void write(const QString &FileName, const QStringList &ToolNames, PictureBox &ctlPic);
    /// Throws VbError when a text cannot be stored; else the size of the file in bytes.
    qint64 checkStorable(const QStringList &ToolNames, PictureBox &ctlPic) const;
    void writeTools(BmtWriter &writer, const QStringList &ToolNames, PictureBox &ctlPic) const;
    /// As Load(), but throws VbError or std::bad_alloc. \a name is for messages.
    void readTools(QIODevice &device, const QString &name);
    /// Calls \a read, which may throw VbError or std::bad_alloc; false after that.
    bool guarded(const QString &name, const std::function<void()> &read);
    bool writeTo(QIODevice &device, const QStringList &ToolNames, PictureBox &ctlPic) const;
    void addRecord(const BmtFormat::Record &record, qint64 &pictureMemory);

    ToolSetStorage &m_storage;
    KeyedCollection<ToolPtr> m_tools;
    FreeNames m_freeNames;
    BmtFormat::Header m_header;
    FileEnd m_fileEnd = FileEnd::Complete;
    bool m_allowDupes = false;
    FileStamp m_stamp; ///< Of the file `ToolSetName`, when it was last loaded or saved.
};
