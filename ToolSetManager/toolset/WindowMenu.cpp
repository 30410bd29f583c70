#include "toolset/WindowMenu.h"

#include "platform/desktop/Captions.h"
#include "shell/DocumentWindow.h"
#include "shell/Frame.h"
#include "toolset/ToolSetMenus.h"

#include <QAction>
#include <QMenu>

WindowMenu::WindowMenu(ToolSetMenus &menus, DocumentWindow &document, Frame &frame, QObject *parent)
    : QObject(parent)
    , m_menus(menus)
    , m_document(document)
    , m_frame(frame)
{
    constexpr Frame::Arrangement arrangements[] = {Frame::Arrangement::TileHorizontally,
        Frame::Arrangement::TileVertically, Frame::Arrangement::Cascade,
        Frame::Arrangement::ArrangeIcons};
    for (size_t i = 0; i < std::size(arrangements); ++i) {
        connect(menus.mnuWindowX[i], &QAction::triggered, this,
            [this, arrangement = arrangements[i]] { m_frame.arrangeWindows(arrangement); });
    }
    connect(menus.mnuWindow, &QMenu::aboutToShow, this, &WindowMenu::mnuWindow_aboutToShow);
}

void WindowMenu::mnuWindow_aboutToShow()
{
    const QList<QAction *> items = m_menus.mnuWindow->actions();
    for (qsizetype i = ToolSetMenus::WindowItems; i < items.size(); ++i)
        delete items[i]; // the list of the last time
    m_menus.mnuWindow->addSeparator();
    const auto documents = m_frame.openDocuments();
    int number = 0;
    for (DocumentWindow *document : documents) {
        const QString caption = Captions::forMenu(document->Caption());
        ++number;
        QAction *item = m_menus.mnuWindow->addAction(
            number <= 9 ? QStringLiteral("&%1 %2").arg(number).arg(caption) : caption);
        item->setCheckable(true);
        item->setChecked(document == &m_document);
        connect(item, &QAction::triggered, this,
            [this, document] { m_frame.activateDocument(document); });
    }
}
