#include "platform/desktop/SendKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QWidget>

namespace SendKeys {

void send(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    sendTo(QApplication::focusWidget(), key, modifiers);
}

void sendTo(QWidget *control, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    const QPointer<QWidget> target = control;
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (!target)
            return;
        QKeyEvent event(type, key, modifiers);
        QCoreApplication::sendEvent(target, &event);
    }
}

} // namespace SendKeys
