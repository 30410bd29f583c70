#pragma once

#include <QProxyStyle>
#include <QStyleOption>

/// Shows which item of a menu bar has the keys, too: without a menu open, as after Alt alone or
/// after Escape in a menu, the toolkit's own style draws it like the others.
class MenuBarStyle : public QProxyStyle
{
public:
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget) const override
    {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (element != CE_MenuBarItem || item == nullptr || !item->state.testFlag(State_Selected)
            || !item->state.testFlag(State_HasFocus)) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        QStyleOptionMenuItem marked = *item;
        marked.state |= State_Sunken;
        QProxyStyle::drawControl(element, &marked, painter, widget);
    }
};
