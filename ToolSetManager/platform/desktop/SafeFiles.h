#pragma once

#include <QFileDevice>

/// What keeps files safe: from other users and from a machine that stops.
namespace SafeFiles {

constexpr QFileDevice::Permissions folderPermissions =
    QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
constexpr QFileDevice::Permissions filePermissions =
    QFileDevice::ReadOwner | QFileDevice::WriteOwner;

/// Makes the folder when it is missing and closes it to others in any case. False when it cannot
/// be made.
bool makeFolder(const QString &folder);

/// Returns when the file's content is on the disk, as far as the system can tell. Flushes nothing
/// that the file itself holds back.
void flushToDisk(const QFileDevice &file);

} // namespace SafeFiles
