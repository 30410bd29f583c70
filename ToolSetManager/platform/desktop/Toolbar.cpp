#include "platform/desktop/Toolbar.h"

#include <QAction>

namespace {

constexpr char keyProperty[] = "Key";

} // namespace

Toolbar::Toolbar(const QString &title, QWidget *parent)
    : QToolBar(title, parent)
{
    setToolButtonStyle(Qt::ToolButtonIconOnly);
}

QAction *Toolbar::addButton(const QString &key, const QString &toolTip)
{
    QAction *action = addAction(toolTip);
    action->setObjectName(key);
    action->setProperty(keyProperty, key);
    action->setToolTip(toolTip);
    connect(action, &QAction::triggered, this, [this, key] { Q_EMIT ButtonClick(key); });
    m_buttons.append(action);
    return action;
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
