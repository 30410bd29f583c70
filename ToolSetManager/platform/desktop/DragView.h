#pragma once

#include "platform/desktop/DragHost.h"

#include <QAbstractEventDispatcher>
#include <QAbstractItemView>
#include <QApplication>
#include <QDragMoveEvent>
#include <QElapsedTimer>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QTimer>
#include <QTimerEvent>

#include <algorithm>

/// A view that leaves drags to its host and draws the host's marks.
template <class View>
class DragView : public View
{
public:
    explicit DragView(DragHost &host)
        : m_host(host)
    {
        this->setDragEnabled(true);
        this->viewport()->setAcceptDrops(true);
        m_scrollTimer.setInterval(50);
        QObject::connect(&m_scrollTimer, &QTimer::timeout, this, [this] { scrollForDrag(); });
    }

    /// What is typed is looked for in the labels, whichever column a click has made current.
    void keyboardSearch(const QString &text) override
    {
        const QModelIndex current = this->currentIndex();
        if (current.column() > 0) {
            this->selectionModel()->setCurrentIndex(
                current.siblingAtColumn(0), QItemSelectionModel::NoUpdate);
        }
        View::keyboardSearch(text);
    }

protected:
    /// A click on the only selected label edits it after a pause. Qt edits whatever is current
    /// then, if anything is; the label may have been deleted, or left by a key.
    bool edit(
        const QModelIndex &index, QAbstractItemView::EditTrigger trigger, QEvent *event) override
    {
        if (m_late)
            return true;
        if (trigger == QAbstractItemView::EditKeyPressed && index.column() > 0) {
            // The click has made another column current, but what the key edits is the label.
            const QModelIndex label = index.siblingAtColumn(0);
            this->selectionModel()->setCurrentIndex(label, QItemSelectionModel::NoUpdate);
            return View::edit(label, trigger, event);
        }
        if (trigger == QAbstractItemView::SelectedClicked) {
            if (!m_clickEdits)
                return false;
            m_clicked = index;
        }
        return View::edit(index, trigger, event);
    }

    void focusInEvent(QFocusEvent *event) override
    {
        if (event->reason() == Qt::MouseFocusReason
            || event->reason() == Qt::ActiveWindowFocusReason)
            m_sinceActivation.start();
        else
            m_sinceActivation.invalidate();
        View::focusInEvent(event);
    }

    void mousePressEvent(QMouseEvent *event) override
    {
        // A click that activates the window only selects. The desktop may activate the window a
        // moment before it passes the click on.
        const bool activates = !this->hasFocus()
            || (m_sinceActivation.isValid()
                && !m_sinceActivation.hasExpired(QApplication::doubleClickInterval()));
        const QItemSelection selection = this->selectionModel()->selection();
        m_clickEdits =
            !activates && std::all_of(selection.begin(), selection.end(), [&](const auto &range) {
                return range.top() == selection.constFirst().top() && range.height() == 1;
            });
        View::mousePressEvent(event);
    }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        // Qt drags with any button; and once a drag was refused or cancelled, it selects.
        const Qt::MouseButtons held = event->buttons();
        if (held != Qt::NoButton && (held != Qt::LeftButton || m_host.isDragSpent()))
            return;
        View::mouseMoveEvent(event);
    }

    void timerEvent(QTimerEvent *event) override
    {
        const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(this);
        const bool pause = std::any_of(timers.begin(), timers.end(), [event](const auto &timer) {
            return timer.timerId == event->timerId()
                && timer.interval == QApplication::doubleClickInterval();
        });
        if (pause && !this->currentIndex().isValid())
            return; // Qt would warn; it stops the timer the next time
        m_late = pause
            && (m_clicked != this->currentIndex()
                || this->state() == QAbstractItemView::EditingState);
        View::timerEvent(event);
        m_late = false;
    }

    void startDrag(Qt::DropActions) override { m_host.startDrag(); }

    void dragEnterEvent(QDragEnterEvent *event) override { dragMoveEvent(event); }

    void dragMoveEvent(QDragMoveEvent *event) override
    {
        event->ignore();
        m_host.dragOver(event);
        m_dragPoint = event->position().toPoint();
        m_dragData = event->mimeData();
        if (event->isAccepted() && !scrollSteps().isNull())
            m_scrollTimer.start();
        else
            m_scrollTimer.stop();
    }

    void dragLeaveEvent(QDragLeaveEvent *) override
    {
        m_scrollTimer.stop();
        m_host.dragLeave();
    }

    void dropEvent(QDropEvent *event) override
    {
        m_scrollTimer.stop();
        event->ignore();
        m_host.dragDrop(event);
    }

    void paintEvent(QPaintEvent *event) override
    {
        View::paintEvent(event);
        QPainter painter(this->viewport());
        m_host.paintMarks(painter);
    }

private:
    /// By how many pixels a drag at its present place scrolls: none but near the edges. Qt's own
    /// scrolling needs Qt's own handling of the drag, which the host does not use.
    QPoint scrollSteps() const
    {
        const auto step = [](int at, int length, int margin) {
            constexpr int most = 24;
            if (at < margin)
                return qMax(-most, at - margin);
            return qBound(0, at - (length - margin), most);
        };
        const QSize size = this->viewport()->size();
        constexpr int margin = 24;
        return {step(m_dragPoint.x(), size.width(), margin),
            step(m_dragPoint.y(), size.height(), margin)};
    }

    void scrollForDrag()
    {
        const auto scroll = [](QScrollBar *bar, int by) {
            const int before = bar->value();
            bar->setValue(before + by);
            return bar->value() != before;
        };
        const QPoint by = scrollSteps();
        const bool moved =
            scroll(this->horizontalScrollBar(), by.x()) | scroll(this->verticalScrollBar(), by.y());
        if (!moved || !m_dragData) {
            m_scrollTimer.stop();
            return;
        }
        // Another row is under the mouse now, which has not moved.
        QDragMoveEvent event(m_dragPoint, Qt::CopyAction | Qt::MoveAction, m_dragData,
            Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        m_host.dragOver(&event);
    }

    DragHost &m_host;
    QPersistentModelIndex m_clicked; ///< The label that may be edited after the pause.
    bool m_clickEdits = false; ///< The present press may start an edit when it is released.
    QElapsedTimer m_sinceActivation; ///< Of the window, as far as it has the keyboard by that.
    bool m_late = false; ///< The pause is over, and that label is current no more.
    QTimer m_scrollTimer;
    QPoint m_dragPoint; ///< Where the drag was seen last, in the viewport.
    QPointer<const QMimeData> m_dragData;
};
