#include "platform/desktop/DriveListBox.h"

#include "platform/desktop/Icons.h"
#include "platform/desktop/mFileUtil.h"

#include <QDir>
#include <QSet>
#include <QStorageInfo>

#include <algorithm>

namespace {

/// Mounted for the system's own purposes, not for people.
bool isSystemVolume(const QStorageInfo &volume)
{
    static const QStringList folders {QStringLiteral("/boot"), QStringLiteral("/dev"),
        QStringLiteral("/etc"), QStringLiteral("/proc"), QStringLiteral("/run"),
        QStringLiteral("/snap"), QStringLiteral("/sys"), QStringLiteral("/tmp"),
        QStringLiteral("/var")};
    const QString root = volume.rootPath();
    if (root.startsWith(QStringLiteral("/run/media/")))
        return false;
    return std::any_of(folders.begin(), folders.end(), [&](const QString &folder) {
        return root == folder || root.startsWith(mFileUtil::AddSeparator(folder));
    });
}

bool contains(const QString &root, const QString &path)
{
    return path == root || path.startsWith(mFileUtil::AddSeparator(root));
}

} // namespace

DriveListBox::DriveListBox(QWidget *parent)
    : QComboBox(parent)
{
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    fill();
    connect(this, &QComboBox::currentIndexChanged, this, &DriveListBox::Change);
}

void DriveListBox::fill()
{
    addItem(Icons::named(QStringLiteral("user-home"), QStyle::SP_DirHomeIcon),
        QStringLiteral("Home"), QDir::homePath());
    QSet<QString> seen;
    const auto volumes = QStorageInfo::mountedVolumes();
    for (const QStorageInfo &volume : volumes) {
        const QString root = volume.rootPath();
        const bool system =
            !volume.isRoot() && (isSystemVolume(volume) || volume.bytesTotal() <= 0);
        // In a container single files are mounted, too.
        if (!volume.isValid() || system || seen.contains(root) || !QFileInfo(root).isDir())
            continue;
        seen.insert(root);
        const QString path = QDir::toNativeSeparators(root);
        const QString label = volume.name();
        addItem(Icons::named(QStringLiteral("drive-harddisk"), QStyle::SP_DriveHDIcon),
            label.isEmpty() ? path : path + QStringLiteral(" [") + label + u']', root);
    }
#ifndef Q_OS_WIN
    // In a changed root nothing says that "/" is mounted; it is there all the same.
    if (!seen.contains(QDir::rootPath())) {
        insertItem(1, Icons::named(QStringLiteral("drive-harddisk"), QStyle::SP_DriveHDIcon),
            QDir::rootPath(), QDir::rootPath());
    }
#endif
}

QString DriveListBox::Drive() const
{
    return currentData().toString();
}

void DriveListBox::setDrive(const QString &path)
{
    const QString absolute = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    int best = -1;
    for (int i = 0; i < count(); ++i) {
        const QString root = itemData(i).toString();
        if (contains(root, absolute)
            && (best < 0 || root.size() > itemData(best).toString().size()))
            best = i;
    }
    if (best >= 0)
        setCurrentIndex(best);
}
