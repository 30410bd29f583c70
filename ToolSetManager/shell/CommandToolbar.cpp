#include "shell/CommandToolbar.h"

#include "platform/desktop/Icons.h"
#include "platform/desktop/Tag.h"
#include "shell/CommandTable.h"

#include <QAction>

#include <algorithm>

namespace {

/// They show which view is on.
constexpr QLatin1StringView viewButtons[] = {
    QLatin1StringView("list"), QLatin1StringView("details")};

bool isViewButton(QLatin1StringView key)
{
    return std::find(std::begin(viewButtons), std::end(viewButtons), key) != std::end(viewButtons);
}

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
        QAction *made = addButton(row.key, row.toolTip, isViewButton(row.key));
        made->setIcon(blank);
        Tag::set(*made, row.tag);
    }
    disableDocumentButtons();
}

void CommandToolbar::showIcons()
{
    for (const auto &row : CommandTable::buttons)
        button(row.key)->setIcon(Icons::named(row.icon, row.fallbackIcon));
}

void CommandToolbar::setGroupEnabled(const QString &group, bool enabled)
{
    const auto all = buttons();
    for (QAction *each : all) {
        if (Tag::of(*each) == group)
            each->setEnabled(enabled);
    }
}

void CommandToolbar::setButtonEnabled(const QString &key, bool enabled)
{
    if (QAction *found = button(key))
        found->setEnabled(enabled);
}

void CommandToolbar::setButtonPressed(const QString &key, bool pressed)
{
    setPressed(key, pressed);
}

void CommandToolbar::releaseViewButtons()
{
    for (const auto &key : viewButtons)
        setPressed(key, false);
}

void CommandToolbar::disableDocumentButtons()
{
    for (const auto &key : CommandTable::documentButtons)
        setButtonEnabled(key, false);
    releaseViewButtons();
}
