// The half of UnpackedSet that writes.

#include "cli/FolderNames.h"
#include "cli/Session.h"
#include "cli/SetFile.h"
#include "cli/ToolJson.h"
#include "cli/UnpackedFiles.h"
#include "cli/UnpackedSet.h"
#include "model/BmtTool.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureBox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>
#include <QTemporaryDir>

const QString UnpackedSet::listName = QStringLiteral("toolset.json");

namespace {

class Writer
{
public:
    Writer(Session &session, const CVBATools &tools, const QString &folder)
        : m_session(session)
        , m_tools(tools)
        , m_folder(folder)
        , m_box(BmtTool::pictureBoxSide, BmtTool::pictureBoxSide)
    {
    }

    bool write();

private:
    QString path(const QString &name) const { return m_folder + u'/' + name; }
    bool fail(const QString &file, const QString &what)
    {
        m_session.error(file, what);
        return false;
    }
    bool prepare();
    bool readFormer();
    bool backUpFormer(CVBATools &former, int codePage);
    void nameFolders();
    bool writeTools();
    bool writeTool(const CVBATool &tool, const QString &folder);
    bool put(const QString &path, QByteArrayView bytes);
    QByteArray list() const;
    void removeFormer();
    void removeNew();
    QByteArray pictureOf(const CVBATool &tool);

    Session &m_session;
    const CVBATools &m_tools;
    const QString m_folder;
    PictureBox m_box;
    bool m_isUpdate = false;
    bool m_madeFolder = false;
    QStringList m_folders; ///< By index of the tool.
    QStringList m_formerFolders;
    QHash<QString, QByteArray> m_formerPictures; ///< By folder, as a set would store them.
    QStringList m_made; ///< Files and then folders of this run, for the case of a failure.
};

bool Writer::write()
{
    nameFolders();
    if (!prepare())
        return false;
    if (writeTools()) {
        removeFormer();
        return true;
    }
    removeNew();
    return false;
}

void Writer::nameFolders()
{
    QStringList names;
    names.reserve(m_tools.Count());
    for (const ToolPtr &tool : m_tools)
        names.append(tool->Description);
    m_folders = FolderNames::of(names, {UnpackedSet::listName, UnpackedFiles::description});
}

bool Writer::prepare()
{
    const QFileInfo info(m_folder);
    if (info.exists() && !info.isDir())
        return fail(m_folder, QStringLiteral("this is a file, not a folder"));
    m_isUpdate = QFileInfo::exists(path(UnpackedSet::listName));
    if (m_isUpdate)
        return readFormer();
    if (info.exists() && !QDir(m_folder).isEmpty()) {
        return fail(
            m_folder, QStringLiteral("the folder has other files in it than those of a tool set"));
    }
    m_madeFolder = !info.exists();
    if (!QDir().mkpath(m_folder))
        return fail(m_folder, QStringLiteral("the folder cannot be made"));
    return true;
}

/// What is there must be readable: mistakes in it are somebody's unfinished work.
bool Writer::readFormer()
{
    QFile file(path(UnpackedSet::listName));
    JsonValue::Error error;
    const auto list =
        file.open(QIODevice::ReadOnly) ? JsonValue::read(file.readAll(), error) : std::nullopt;
    int codePage = 0;
    const auto former = UnpackedSet::read(m_session, m_folder, codePage);
    if (!former || !list) {
        return fail(m_folder,
            QStringLiteral("nothing is written over a folder that cannot be packed; remove it or "
                           "correct it first"));
    }
    for (const JsonValue &tool : list->find(u"tools")->items) {
        const JsonValue *folder = tool.find(u"folder");
        const JsonValue *name = ToolJson::valueOf(tool, &CVBATool::Description);
        if (!folder)
            continue;
        m_formerFolders.append(folder->text);
        m_formerPictures.insert(folder->text, pictureOf(*former->Item(name->text)));
    }
    return backUpFormer(*former, codePage);
}

bool Writer::backUpFormer(CVBATools &former, int codePage)
{
    const QTemporaryDir scratch;
    const QString packed = scratch.filePath(QStringLiteral("former.bmt"));
    ToolSetStorage &storage = m_session.storage();
    const CodePage own = std::exchange(storage.codePage, CodePage(codePage));
    const bool written = SetFile::write(m_session, former, packed);
    storage.codePage = own;
    if (!written)
        return false;
    // As with a file, a backup that fails does not stop it.
    storage.backups.backup(QFileInfo(m_folder).absoluteFilePath() + QStringLiteral(".bmt"), packed);
    return true;
}

QByteArray Writer::pictureOf(const CVBATool &tool)
{
    m_box.setPicture(tool.Picture);
    return Picture::encodeBitmap(m_box.Image());
}

// --- Writing ---

bool Writer::writeTools()
{
    Progress progress(m_session, QStringLiteral("Writing"));
    qint64 done = 0;
    for (const ToolPtr &tool : m_tools) {
        if (!writeTool(*tool, m_folders[done]))
            return false;
        progress.show(++done, m_tools.Count());
    }
    const QByteArray description =
        m_session.codePage().encode(m_tools.LongDescription()).value_or(QByteArray());
    // The list last: without it the folder is no unpacked set.
    return (description.isEmpty() || put(path(UnpackedFiles::description), description))
        && put(path(UnpackedSet::listName), list());
}

bool Writer::writeTool(const CVBATool &tool, const QString &folder)
{
    const QString place = path(folder);
    if (!QDir().mkdir(place) && !QFileInfo(place).isDir())
        return fail(place, QStringLiteral("the folder cannot be made"));
    const QByteArray picture = pictureOf(tool);
    const QByteArray help = m_session.codePage().encode(tool.HelpString).value_or(QByteArray());
    const QString file = place + u'/';
    const auto former = m_formerPictures.constFind(folder);
    // One in another format or size that gives the same is the user's.
    const bool hasPicture = former != m_formerPictures.constEnd() && *former == picture
        && QFileInfo::exists(file + UnpackedFiles::picture);
    return (hasPicture || put(file + UnpackedFiles::picture, picture))
        && (help.isEmpty() || put(file + UnpackedFiles::help, help));
}

bool Writer::put(const QString &path, QByteArrayView bytes)
{
    QFile file(path);
    if (m_isUpdate && file.exists()) {
        if (file.size() == bytes.size() && file.open(QIODevice::ReadOnly)
            && file.readAll() == bytes)
            return true;
        file.close();
        QSaveFile whole(path);
        whole.setDirectWriteFallback(true);
        return (whole.open(QIODevice::WriteOnly)
                   && whole.write(bytes.data(), bytes.size()) == bytes.size() && whole.commit())
            || fail(path, whole.errorString());
    }
    m_made.append(path);
    return (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
               && file.write(bytes.data(), bytes.size()) == bytes.size() && file.flush())
        || fail(path, file.errorString());
}

QByteArray Writer::list() const
{
    QByteArray text;
    JsonWriter json(text);
    json.beginObject();
    json.member("format", 1);
    json.member("codePage", m_session.codePage().number());
    json.member("description", m_tools.Description());
    json.member("flags", m_tools.FLAGS());
    json.key("tools");
    json.beginArray();
    qsizetype index = 0;
    for (const ToolPtr &tool : m_tools) {
        json.beginObject();
        ToolJson::write(json, *tool);
        json.member("folder", m_folders[index++]);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return text;
}

// --- Removing ---

/// Files of tools that are gone, and folders that are empty then; what somebody else has put there
/// stays.
void Writer::removeFormer()
{
    if (!m_isUpdate)
        return;
    const QSet<QString> used(m_folders.begin(), m_folders.end());
    for (const QString &folder : std::as_const(m_formerFolders)) {
        if (used.contains(folder))
            continue;
        QFile::remove(path(folder) + u'/' + UnpackedFiles::help);
        QFile::remove(path(folder) + u'/' + UnpackedFiles::picture);
        QDir().rmdir(path(folder));
    }
    qsizetype index = 0;
    for (const ToolPtr &tool : m_tools) {
        const QString &folder = m_folders[index++];
        if (tool->HelpString.isEmpty())
            QFile::remove(path(folder) + u'/' + UnpackedFiles::help);
    }
    if (m_tools.LongDescription().isEmpty())
        QFile::remove(path(UnpackedFiles::description));
}

void Writer::removeNew()
{
    if (m_isUpdate)
        return;
    for (const QString &file : std::as_const(m_made))
        QFile::remove(file);
    for (const QString &folder : std::as_const(m_folders))
        QDir().rmdir(path(folder));
    if (m_madeFolder)
        QDir().rmdir(m_folder);
}

} // namespace

bool UnpackedSet::write(Session &session, const CVBATools &tools, const QString &folder)
{
    return Writer(session, tools, folder).write();
}
