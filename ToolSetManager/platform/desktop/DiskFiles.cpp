#include "platform/desktop/DiskFiles.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

FileLookup::State DiskFiles::state(const QString &path)
{
    if (QFileInfo::exists(path))
        return State::Found;
    const qsizetype root = path.indexOf(u'/') + 1;
    return stateBelow(path.left(root), path.mid(root).split(u'/', Qt::SkipEmptyParts), 0);
}

FileLookup::State DiskFiles::stateBelow(
    const QString &path, const QStringList &names, qsizetype first)
{
    if (first == names.size())
        return State::Found;
    const Folder &here = folder(path);
    if (here.state != State::Found)
        return here.state;
    // A copy: looking further down may move the entry.
    const QStringList spellings = here.names.value(names[first].toCaseFolded());
    State best = State::Missing;
    for (const QString &spelling : spellings) {
        const QString below = QDir(path).filePath(spelling);
        const State state = stateBelow(below, names, first + 1);
        if (state == State::Found)
            return state;
        if (state == State::Unknown)
            best = state;
    }
    return best;
}

const DiskFiles::Folder &DiskFiles::folder(const QString &path)
{
    const auto found = m_folders.constFind(path);
    if (found != m_folders.constEnd())
        return *found;
    Folder folder;
    const QFileInfo info(path);
    if (info.isDir()) {
        folder.state = info.isReadable() && info.isExecutable() ? State::Found : State::Unknown;
        QDirIterator entries(
            path, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        while (entries.hasNext()) {
            entries.next();
            folder.names[entries.fileName().toCaseFolded()].append(entries.fileName());
        }
    }
    return *m_folders.insert(path, folder);
}
