#include "shell/MdiArea.h"

#include "platform/desktop/EmptyHint.h"

#include <QEvent>
#include <QPainter>

namespace {

EmptyHint hint()
{
    return {QStringLiteral("No tool set is open"),
        QStringLiteral(
            "Ctrl+N makes a new one, Ctrl+O opens one; or drag tool sets (.bmt) from the "
            "desktop onto this window. F1 shows the manual.")};
}

} // namespace

MdiArea::MdiArea(QWidget *parent)
    : QMdiArea(parent)
{
    setObjectName(QStringLiteral("mdi"));
    setAccessibleName(QStringLiteral("Tool sets"));
    describe();
}

void MdiArea::paintEvent(QPaintEvent *event)
{
    QMdiArea::paintEvent(event);
    if (!subWindowList().isEmpty())
        return;
    QPainter painter(viewport());
    hint().paint(painter, viewport()->rect(), palette(), QPalette::Dark);
}

bool MdiArea::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ChildAdded || event->type() == QEvent::ChildRemoved) {
        QMetaObject::invokeMethod(this, &MdiArea::describe, Qt::QueuedConnection);
        viewport()->update();
    }
    return QMdiArea::viewportEvent(event);
}

void MdiArea::describe()
{
    const bool empty = subWindowList().isEmpty();
    setAccessibleDescription(empty ? hint().spoken() : QString());
    // Screen readers read what has the focus; with a window in it the area must not take it.
    setFocusPolicy(empty ? Qt::TabFocus : Qt::NoFocus);
    if (empty)
        setFocus();
}
