#pragma once

#include "platform/desktop/FileLookup.h"

#include <QHash>
#include <QStringList>

/// Looks files up on the disk, now. Each folder in which a name has to be compared without regard
/// to letter case is listed once only.
class DiskFiles : public FileLookup
{
    Q_OBJECT
public:
    using FileLookup::FileLookup;

    State state(const QString &path) override;
    void forget() override { m_folders.clear(); }

private:
    struct Folder
    {
        State state = State::Missing;
        QHash<QString, QStringList> names; ///< The spellings by the folded name.
    };

    const Folder &folder(const QString &path);
    State stateBelow(const QString &folder, const QStringList &names, qsizetype first);

    QHash<QString, Folder> m_folders;
};
