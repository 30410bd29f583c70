#include "shell/MdiArea.h"

#include "shell/StartPage.h"

#include <QEvent>

MdiArea::MdiArea(QWidget *parent)
    : QMdiArea(parent)
{
    setObjectName(QStringLiteral("mdi"));
    setAccessibleName(QStringLiteral("Tool sets"));
    showEmptiness();
}

void MdiArea::setEmptyPage(QWidget *page)
{
    delete std::exchange(m_emptyPage, page);
    if (m_emptyPage)
        m_emptyPage->setParent(this);
    showEmptiness();
}

void MdiArea::resizeEvent(QResizeEvent *event)
{
    QMdiArea::resizeEvent(event);
    placeEmptyPage();
}

bool MdiArea::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ChildAdded || event->type() == QEvent::ChildRemoved)
        QMetaObject::invokeMethod(this, &MdiArea::showEmptiness, Qt::QueuedConnection);
    return QMdiArea::viewportEvent(event);
}

void MdiArea::showEmptiness()
{
    const bool empty = subWindowList().isEmpty();
    setAccessibleDescription(empty ? StartPage::spoken() : QString());
    // Screen readers read what has the focus; with a window in it the area must not take it.
    setFocusPolicy(empty ? Qt::TabFocus : Qt::NoFocus);
    if (empty)
        setFocus();
    if (m_emptyPage) {
        m_emptyPage->setVisible(empty);
        placeEmptyPage();
    }
}

void MdiArea::placeEmptyPage()
{
    if (!m_emptyPage || m_emptyPage->isHidden())
        return;
    // A little above the middle, where the eye looks first.
    const QSize size = m_emptyPage->sizeHint().boundedTo(viewport()->size());
    const QSize room = viewport()->size() - size;
    m_emptyPage->setGeometry(
        QRect(viewport()->pos() + QPoint(room.width() / 2, room.height() * 2 / 5), size));
}
