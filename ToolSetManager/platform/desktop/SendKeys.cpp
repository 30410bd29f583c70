#include "platform/desktop/SendKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QWidget>

namespace SendKeys {

void send(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    const QPointer<QWidget> focus = QApplication::focusWidget();
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (!focus) // the key may have closed it
            return;
        QKeyEvent event(type, key, modifiers);
        QCoreApplication::sendEvent(focus, &event);
    }
}

} // namespace SendKeys
