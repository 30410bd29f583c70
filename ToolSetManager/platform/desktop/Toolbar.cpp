#include "platform/desktop/Toolbar.h"

#include <QAction>
#include <QScopedValueRollback>

namespace {

constexpr char keyProperty[] = "Key";

} // namespace

Toolbar::Toolbar(const QString &title, QWidget *parent)
    : QToolBar(title, parent)
{
    setToolButtonStyle(Qt::ToolButtonIconOnly);
}

QAction *Toolbar::addButton(const QString &key, const QString &toolTip, bool pressable)
{
    QAction *action = addAction(toolTip);
    action->setObjectName(key);
    action->setProperty(keyProperty, key);
    action->setToolTip(toolTip);
    if (pressable) {
        action->setCheckable(true);
        // A screen reader toggles the button, which then is not triggered.
        connect(action, &QAction::toggled, this, [this, key] {
            if (!m_settingPressed)
                Q_EMIT ButtonClick(key);
        });
    } else {
        connect(action, &QAction::triggered, this, [this, key] { Q_EMIT ButtonClick(key); });
    }
    m_buttons.append(action);
    return action;
}

void Toolbar::setPressed(const QString &key, bool pressed)
{
    const QScopedValueRollback guard(m_settingPressed, true);
    if (QAction *found = button(key))
        found->setChecked(pressed);
}

QAction *Toolbar::button(const QString &key) const
{
    for (QAction *action : m_buttons) {
        if (Toolbar::key(action) == key)
            return action;
    }
    return nullptr;
}

QString Toolbar::key(const QAction *button)
{
    return button->property(keyProperty).toString();
}
