#pragma once

#include <QHash>
#include <QString>

#include <optional>

/// Where the drives of another system's paths lie here: "C:\Tools\x.exe" is a file below the folder
/// that is assigned to C. Windows itself needs no such table.
class DosDrives
{
public:
    /// The drives of the user's Wine, without looking into them; none where there is no Wine.
    static DosDrives ofWine();
    /// \a devices is the folder of Wine's links "c:", "d:" and so on.
    static DosDrives ofWine(const QString &devices);

    /// Assigns a folder to a letter, in place of a former one; an empty folder removes it.
    void assign(QChar letter, const QString &folder);
    QString folder(QChar letter) const; ///< Empty when none is assigned.

    /// The path on this system: itself where it is one of it already; empty for a drive without a
    /// folder, a network share and a path that starts nowhere. Nothing is looked up.
    QString nativePath(const QString &path) const;

    /// The drive letter, in upper case, of a path such as "c:\x"; null when it has none.
    static QChar drive(QStringView path);

private:
    QHash<QChar, QString> m_folders; ///< By upper-case letter.
};
