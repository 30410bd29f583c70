#include "shell/CommandToolbar.h"

#include "platform/desktop/Icons.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/Tag.h"
#include "shell/CommandTable.h"

#include <QAction>

namespace {

// They show which view is on.
constexpr QLatin1StringView listButton("list");
constexpr QLatin1StringView detailsButton("details");

} // namespace

CommandToolbar::CommandToolbar(QWidget *parent)
    : Toolbar(QStringLiteral("Tools"), parent)
{
    setObjectName(QStringLiteral("tbTools"));
    setMovable(false);
    setIconSize(QSize(22, 22));
    QPixmap blank(iconSize()); // without any icon the buttons would show their text
    blank.fill(Qt::transparent);
    for (const auto &row : CommandTable::buttons) {
        if (row.startsGroup)
            addSeparator();
        QAction *made =
            addButton(row.key, row.toolTip, row.key == listButton || row.key == detailsButton);
        made->setIcon(blank);
        Tag::set(*made, row.tag);
    }
    show(CommandState());
}

void CommandToolbar::showIcons()
{
    for (const auto &row : CommandTable::buttons)
        button(row.key)->setIcon(Icons::named(row.icon, row.fallbackIcon));
}

void CommandToolbar::show(const CommandState &state)
{
    const auto all = buttons();
    for (QAction *each : all)
        each->setEnabled(state.isEnabled(Tag::of(*each)));
    setPressed(listButton, state.view == ListView::lvwList);
    setPressed(detailsButton, state.view != 0 && state.view != ListView::lvwList);
}
