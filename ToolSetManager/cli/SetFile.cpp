#include "cli/SetFile.h"

#include "cli/Session.h"
#include "model/BmtTool.h"
#include "model/OldHelp.h"
#include "platform/picture/PictureBox.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

const QString standard = QStringLiteral("-");
constexpr qint64 longestStream = 512LL << 20; ///< Bytes; a pipe may never end.

/// All that a pipe or a device gives. False when that is too much, or fails.
bool drain(QIODevice &device, QByteArray &bytes)
{
    constexpr qint64 piece = 1 << 20;
    for (;;) {
        const qsizetype before = bytes.size();
        bytes.resize(before + piece);
        const qint64 count = device.read(bytes.data() + before, piece);
        bytes.resize(before + qMax<qint64>(count, 0));
        if (count <= 0)
            return count == 0 || device.atEnd();
        if (bytes.size() > longestStream)
            return false;
    }
}

bool isStream(const QString &path)
{
    const QFileInfo info(path);
    return path == standard || (info.exists() && !info.isFile() && !info.isDir());
}

PictureBox pictureBox()
{
    return {BmtTool::pictureBoxSide, BmtTool::pictureBoxSide};
}

/// False after a message.
bool load(Session &session, CVBATools &tools, const QString &path)
{
    bool ok = true;
    if (isStream(path)) {
        QByteArray bytes = SetFile::readBytes(session, path, ok);
        if (!ok)
            return false;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        ok = tools.LoadFrom(buffer);
    } else {
        Progress progress(session, QStringLiteral("Reading"));
        tools.Progress = [&progress](qint64 done, qint64 total) { progress.show(done, total); };
        ok = tools.Load(path);
        tools.Progress = nullptr;
    }
    if (!ok)
        session.error(SetFile::shown(path), tools.ErrorDescription);
    return ok;
}

} // namespace

QString SetFile::shown(const QString &path)
{
    return path == standard ? QStringLiteral("standard input") : path;
}

std::unique_ptr<CVBATools> SetFile::read(
    Session &session, const QString &path, Damaged damaged, Empty empty)
{
    auto tools = std::make_unique<CVBATools>(session.storage());
    tools->setAllowDupes(true);
    if (empty == Empty::Accept && QFileInfo(path).isFile() && QFileInfo(path).size() == 0)
        return tools;
    if (!load(session, *tools, path))
        return nullptr;
    switch (tools->fileEnd()) {
    case CVBATools::FileEnd::Complete:
        break;
    case CVBATools::FileEnd::Early:
        session.error(shown(path),
            QStringLiteral("the file ends early; %1 %2 could be read")
                .arg(tools->Count())
                .arg(tools->Count() == 1 ? u"tool" : u"tools"));
        if (damaged == Damaged::Refuse)
            return nullptr;
        break;
    case CVBATools::FileEnd::NotAToolSet:
        session.error(shown(path), QStringLiteral("not a tool set"));
        return nullptr;
    }
    OldHelp::update(*tools, session.codePage().number());
    return tools;
}

bool SetFile::write(
    Session &session, CVBATools &tools, const QStringList &names, const QString &path)
{
    PictureBox box = pictureBox();
    if (path == standard) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        if (!tools.SaveTo(buffer, names, box)) {
            session.error(QStringLiteral("standard output"), tools.ErrorDescription);
            return false;
        }
        session.print(QByteArrayView(buffer.data()));
        return true;
    }
    Progress progress(session, QStringLiteral("Writing"));
    tools.Progress = [&progress](qint64 done, qint64 total) { progress.show(done, total); };
    tools.WritesBeside = true;
    const bool existed = QFileInfo::exists(path);
    const bool ok = tools.Save(path, names, box);
    tools.Progress = nullptr;
    if (!ok) {
        session.error(path, tools.ErrorDescription);
        if (!existed)
            QFile::remove(path);
    }
    return ok;
}

bool SetFile::write(Session &session, CVBATools &tools, const QString &path)
{
    QStringList names;
    names.reserve(tools.Count());
    for (const ToolPtr &tool : tools)
        names.append(tool->Description);
    return write(session, tools, names, path);
}

QByteArray SetFile::readBytes(Session &session, const QString &path, bool &ok)
{
    QByteArray bytes;
    QFile file(path);
    QIODevice &device = path == standard ? session.in() : file;
    ok = path == standard || file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    const bool opened = ok;
    ok = ok && drain(device, bytes);
    if (!ok) {
        session.error(shown(path),
            opened && bytes.size() > longestStream ? QStringLiteral("too large for a pipe")
                                                   : device.errorString());
        bytes.clear();
    }
    return bytes;
}

bool SetFile::writeBytes(Session &session, const QByteArray &bytes, const QString &path)
{
    if (path == standard) {
        session.print(QByteArrayView(bytes));
        return true;
    }
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    session.error(path, file.errorString());
    return false;
}

ToolSetState SetFile::stateOf(const CVBATools &tools)
{
    ToolSetState state;
    state.properties = {tools.Description(), tools.LongDescription(), tools.FLAGS()};
    state.tools.reserve(size_t(tools.Count()));
    for (const ToolPtr &tool : tools)
        state.tools.push_back(tool);
    return state;
}
