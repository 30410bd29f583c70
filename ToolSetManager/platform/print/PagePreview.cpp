#include "platform/print/PagePreview.h"

#include "platform/desktop/Accessible.h"

#include "platform/text/Twips.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <cmath>

namespace {

constexpr int border = 12; ///< Pixels around the sheet.
constexpr int shadow = 3;
constexpr int markWidth = 2;
constexpr int wheelNotch = 120; ///< Qt: eighths of a degree.

} // namespace

PagePreview::PagePreview(QWidget *parent)
    : QAbstractScrollArea(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(QFrame::NoFrame);
    Accessible::setRole(*this, QAccessible::Document);
    viewport()->setCursor(Qt::OpenHandCursor);
    horizontalScrollBar()->setSingleStep(20);
    verticalScrollBar()->setSingleStep(20);
}

void PagePreview::setPreviewPage(int page)
{
    m_page = std::clamp(page, std::min(1, PageCount()), PageCount());
    m_wheel = 0;
    updateScrollBars();
    verticalScrollBar()->setValue(0);
    if (m_columns > 1) { // where there is no room for both
        const QRect paper = sheet(m_page);
        if (paper.left() < 0 || paper.right() >= viewport()->width())
            horizontalScrollBar()->setValue(horizontalScrollBar()->value() + paper.left() - border);
    }
    setAccessibleName(m_page == 0 ? QStringLiteral("No pages")
                                  : QStringLiteral("Page %1 of %2").arg(m_page).arg(PageCount()));
    setAccessibleDescription(m_page == 0 ? QString() : m_document.pageText(m_page));
    viewport()->update();
}

void PagePreview::setZoom(int percent)
{
    if (percent < leastZoom || percent > greatestZoom)
        return;
    m_fit = Fit::None;
    applyZoom(percent);
}

void PagePreview::setFit(Fit fit)
{
    m_fit = fit;
    applyFit();
}

void PagePreview::setTwoPages(bool two)
{
    m_columns = two ? 2 : 1;
    updateScrollBars();
    applyFit();
    setPreviewPage(m_page);
}

void PagePreview::applyFit()
{
    if (m_fit == Fit::None || m_page == 0)
        return;
    // Not the viewport's size, which depends on the scroll bars and so on the zoom itself.
    const QSize room = maximumViewportSize();
    const auto fitting = [](int pixels, int around, double points) {
        return static_cast<int>((pixels - around) * 100 / points);
    };
    const double inch = logicalDpiX() / double(Twips::perInch);
    const double sheetsWide = m_columns * m_document.PageWidth() * inch;
    const double sheetHigh = m_document.PageHeight() * inch;
    const int aroundWidth = (m_columns + 1) * border;
    const int byHeight = fitting(room.height(), 2 * border, sheetHigh);
    int percent = fitting(room.width(), aroundWidth, sheetsWide);
    if (m_fit == Fit::WholePage)
        percent = std::min(percent, byHeight);
    else if (percent > byHeight) // there will be a scroll bar
        percent = fitting(
            room.width() - verticalScrollBar()->sizeHint().width(), aroundWidth, sheetsWide);
    applyZoom(std::clamp(percent, leastZoom, greatestZoom));
}

void PagePreview::applyZoom(int percent)
{
    if (percent == m_zoom)
        return;
    // What is in the middle of the window stays there.
    const auto middle = [](const QScrollBar *bar) {
        const double whole = bar->maximum() + bar->pageStep();
        return whole > 0 ? (bar->value() + bar->pageStep() / 2.0) / whole : 0;
    };
    const double x = middle(horizontalScrollBar());
    const double y = middle(verticalScrollBar());
    const bool atTop = verticalScrollBar()->value() == 0;
    m_zoom = percent;
    updateScrollBars();
    const auto restore = [](QScrollBar *bar, double place) {
        const double whole = bar->maximum() + bar->pageStep();
        bar->setValue(static_cast<int>(std::lround(place * whole - bar->pageStep() / 2.0)));
    };
    restore(horizontalScrollBar(), x);
    restore(verticalScrollBar(), atTop ? 0 : y);
    viewport()->update();
    Q_EMIT zoomChanged(percent);
}

double PagePreview::scale() const
{
    return double(logicalDpiX()) / Twips::perInch * m_zoom / 100;
}

QSize PagePreview::sheetSize() const
{
    return QSize(static_cast<int>(std::lround(m_document.PageWidth() * scale())),
        static_cast<int>(std::lround(m_document.PageHeight() * scale())));
}

int PagePreview::firstPage() const
{
    return m_columns == 1 ? m_page : (m_page - 1) / m_columns * m_columns + 1;
}

QSize PagePreview::wholeSize() const
{
    const QSize size = sheetSize();
    return QSize(m_columns * (size.width() + border) + border, size.height() + 2 * border);
}

QRect PagePreview::sheet(int page) const
{
    const QSize size = sheetSize();
    const int spare = std::max(0, viewport()->width() - wholeSize().width());
    const int left = border + spare / 2 + (page - firstPage()) * (size.width() + border);
    return QRect(
        QPoint(left - horizontalScrollBar()->value(), border - verticalScrollBar()->value()), size);
}

void PagePreview::updateScrollBars()
{
    const QSize whole = wholeSize();
    const QSize room = viewport()->size();
    horizontalScrollBar()->setRange(0, std::max(0, whole.width() - room.width()));
    horizontalScrollBar()->setPageStep(room.width());
    verticalScrollBar()->setRange(0, std::max(0, whole.height() - room.height()));
    verticalScrollBar()->setPageStep(room.height());
}

void PagePreview::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), palette().color(QPalette::Window).darker(130));
    if (m_page == 0)
        return;
    const int first = firstPage();
    for (int page = first; page < first + m_columns && page <= PageCount(); ++page)
        paintSheet(painter, event->rect(), page);
    if (!hasFocus() && m_columns == 1)
        return;
    QColor mark = palette().color(QPalette::Active, QPalette::Highlight);
    if (!hasFocus())
        mark.setAlphaF(0.6F);
    painter.setPen(QPen(mark, markWidth));
    painter.setBrush(Qt::NoBrush);
    constexpr double out = markWidth / 2.0;
    painter.drawRect(QRectF(sheet(m_page)).adjusted(-out, -out, out, out));
}

void PagePreview::paintSheet(QPainter &painter, const QRect &exposed, int page) const
{
    const QRect paper = sheet(page);
    painter.save();
    painter.fillRect(paper.translated(shadow, shadow), QColor(0, 0, 0, 90));
    painter.fillRect(paper, Qt::white);
    painter.setClipRect(paper.intersected(exposed));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(paper.topLeft());
    painter.scale(scale(), scale());
    m_document.draw(painter, page);
    painter.restore();
}

void PagePreview::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    applyFit();
    updateScrollBars();
}

void PagePreview::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void PagePreview::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

void PagePreview::pageKey(bool forward)
{
    QScrollBar *bar = verticalScrollBar();
    if (forward && bar->value() < bar->maximum()) {
        bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
    } else if (!forward && bar->value() > bar->minimum()) {
        bar->triggerAction(QAbstractSlider::SliderPageStepSub);
    } else {
        // Past all that is shown: a neighbour has been read, too.
        const int first = firstPage();
        for (int i = 0; i < m_columns && firstPage() == first; ++i) {
            if (forward)
                Q_EMIT nextWanted();
            else if (m_page > 1)
                Q_EMIT previousWanted();
        }
        if (!forward && firstPage() != first)
            bar->setValue(bar->maximum()); // reading on backwards
    }
}

void PagePreview::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_PageDown:
    case Qt::Key_Space:
        pageKey(true);
        break;
    case Qt::Key_PageUp:
    case Qt::Key_Backspace:
        pageKey(false);
        break;
    case Qt::Key_Home:
        Q_EMIT firstWanted();
        break;
    case Qt::Key_End:
        Q_EMIT lastWanted();
        break;
    case Qt::Key_Plus:
        Q_EMIT zoomWanted(1);
        break;
    case Qt::Key_Minus:
        Q_EMIT zoomWanted(-1);
        break;
    default:
        QAbstractScrollArea::keyPressEvent(event); // the arrows scroll
    }
}

void PagePreview::wheelEvent(QWheelEvent *event)
{
    const int turned = event->angleDelta().y();
    const bool turnsPage =
        (turned < 0 && verticalScrollBar()->value() == verticalScrollBar()->maximum())
        || (turned > 0 && verticalScrollBar()->value() == verticalScrollBar()->minimum());
    if (!turnsPage && !(event->modifiers() & Qt::ControlModifier)) {
        m_wheel = 0;
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    event->accept();
    m_wheel = (m_wheel > 0) == (turned > 0) ? m_wheel + turned : turned;
    if (std::abs(m_wheel) < wheelNotch)
        return;
    const bool up = m_wheel > 0;
    m_wheel = 0;
    if (event->modifiers() & Qt::ControlModifier)
        Q_EMIT zoomWanted(up ? 1 : -1);
    else
        pageKey(!up);
}

void PagePreview::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_dragged = event->position().toPoint();
    m_pressed = m_dragged;
    viewport()->setCursor(Qt::ClosedHandCursor);
}

void PagePreview::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const QPoint moved = event->position().toPoint() - m_dragged;
    m_dragged = event->position().toPoint();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - moved.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - moved.y());
}

void PagePreview::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    viewport()->setCursor(Qt::OpenHandCursor);
    const QPoint at = event->position().toPoint();
    if (m_page == 0 || (at - m_pressed).manhattanLength() >= QApplication::startDragDistance())
        return;
    const int first = firstPage();
    for (int page = first; page < first + m_columns && page <= PageCount(); ++page) {
        if (page != m_page && sheet(page).contains(at))
            Q_EMIT pageWanted(page);
    }
}
