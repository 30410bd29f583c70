#include "shell/RecentFileMenu.h"

#include "platform/desktop/Captions.h"
#include "shell/CFileList.h"

#include <QAction>
#include <QMenu>

RecentFileMenu::RecentFileMenu(QMenu *menu)
    : QObject(menu)
    , m_menu(menu)
{
    QAction *first = menu->addSeparator();
    first->setVisible(false);
    first->setObjectName(QStringLiteral("mnuFileList(0)"));
    m_items.append(first);
}

void RecentFileMenu::rebuild(const CFileList &files)
{
    while (m_items.size() > 1)
        delete m_items.takeLast();

    const QList<QAction *> all = m_menu->actions();
    const qsizetype place = all.indexOf(m_items.constFirst()) + 1;
    QAction *before = place < all.size() ? all[place] : nullptr;
    const auto add = [&](QAction *item) {
        item->setObjectName(QStringLiteral("mnuFileList(%1)").arg(m_items.size()));
        m_menu->insertAction(before, item);
        m_items.append(item);
    };
    for (const QString &path : files.Items()) {
        if (m_items.size() > longest)
            break;
        auto *item = new QAction(Captions::forMenu(path), m_menu);
        item->setData(path);
        connect(item, &QAction::triggered, this, [this, path] { Q_EMIT chosen(path); });
        add(item);
    }
    if (files.Count() > 0) {
        auto *separator = new QAction(m_menu);
        separator->setSeparator(true);
        add(separator);
    }
}
