#include "shell/WindowMenu.h"

#include "platform/desktop/Captions.h"
#include "shell/DocumentWindow.h"
#include "shell/Frame.h"

#include <QAction>
#include <QMenu>

namespace {

constexpr Frame::Arrangement arrangements[] = {Frame::Arrangement::TileHorizontally,
    Frame::Arrangement::TileVertically, Frame::Arrangement::Cascade,
    Frame::Arrangement::ArrangeIcons};

} // namespace

WindowMenu::WindowMenu(QMenu &menu, DocumentWindow &document, Frame &frame, QObject *parent)
    : QObject(parent)
    , m_menu(menu)
    , m_document(document)
    , m_frame(frame)
{
    for (size_t i = 0; i < std::size(arrangements); ++i) {
        connect(menu.actions().at(qsizetype(i)), &QAction::triggered, this,
            [this, arrangement = arrangements[i]] { m_frame.arrangeWindows(arrangement); });
    }
    connect(&menu, &QMenu::aboutToShow, this, &WindowMenu::mnuWindow_aboutToShow);
}

void WindowMenu::mnuWindow_aboutToShow()
{
    const QList<QAction *> items = m_menu.actions();
    for (qsizetype i = std::size(arrangements); i < items.size(); ++i)
        delete items[i]; // the list of the last time
    m_menu.addSeparator();
    const auto documents = m_frame.openDocuments();
    int number = 0;
    for (DocumentWindow *document : documents) {
        const QString caption = Captions::forMenu(document->Caption());
        ++number;
        QAction *item = m_menu.addAction(
            number <= 9 ? QStringLiteral("&%1 %2").arg(number).arg(caption) : caption);
        item->setCheckable(true);
        item->setChecked(document == &m_document);
        connect(item, &QAction::triggered, this,
            [this, document] { m_frame.activateDocument(document); });
    }
}
