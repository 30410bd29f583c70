#pragma once

#include <QList>
#include <QObject>

class CFileList;
class QAction;
class QMenu;

/// The recent files at the foot of a File menu: the item array `mnuFileList`. Item 0 is never
/// shown and marks the place; behind it stand the paths, most recent first, and a separator. A list
/// may have thousands of entries; the menus show no more than a screen has room for.
class RecentFileMenu : public QObject
{
    Q_OBJECT
public:
    /// Puts item 0 at the present end of the menu; the menu owns the items.
    explicit RecentFileMenu(QMenu *menu);

    static constexpr int longest = 50; ///< Paths.

    void rebuild(const CFileList &files);

Q_SIGNALS:
    void chosen(const QString &path);

private:
    QMenu *m_menu;
    QList<QAction *> m_items;
};
