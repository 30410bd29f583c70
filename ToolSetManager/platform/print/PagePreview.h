#pragma once

#include "platform/print/PageDocument.h"

#include <QAbstractScrollArea>

/// Shows the pages of a document as they will be printed: one at a time, or as in a book the one
/// that is shown beside its neighbour. Only these are drawn, and only the part that can be seen.
/// While the view has the focus, the shown page has a frame; beside its neighbour it always has.
///
/// The user's wishes for another page or zoom are reported, not carried out: the owner knows which
/// are allowed.
class PagePreview : public QAbstractScrollArea
{
    Q_OBJECT
public:
    static constexpr int leastZoom = 10; ///< Per cent.
    static constexpr int greatestZoom = 500;

    /// What the zoom follows while the view's size changes.
    enum class Fit { None, Width, WholePage };

    explicit PagePreview(QWidget *parent = nullptr);

    PageDocument &document() { return m_document; }
    const PageDocument &document() const { return m_document; }

    int PageCount() const { return m_document.PageCount(); }
    /// The shown page, counted from 1; 0 when there is none. It is shown from its top.
    int PreviewPage() const { return m_page; }
    void setPreviewPage(int page);
    int Zoom() const { return m_zoom; } ///< Per cent of the real size.
    /// What lies outside the limits is refused: the zoom stays. Ends the fit.
    void setZoom(int percent);
    Fit fit() const { return m_fit; }
    /// Fits what is shown, one page or two, into the view now and at each change of its size.
    void setFit(Fit fit);
    bool twoPages() const { return m_columns == 2; }
    /// Shows odd pages at the left of the even ones that follow them.
    void setTwoPages(bool two);

    /// The whole page at that zoom, in pixels.
    QSize sheetSize() const;

Q_SIGNALS:
    void firstWanted();
    void previousWanted();
    void nextWanted();
    void lastWanted();
    void pageWanted(int page); ///< By a click on the neighbour.
    void zoomWanted(int steps); ///< Above 0: larger.
    void zoomChanged(int percent); ///< Also by a fit.

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    double scale() const; ///< Pixels to a twip.
    int firstPage() const; ///< The leftmost of those that are shown.
    QRect sheet(int page) const; ///< In the viewport, of a page that is shown.
    QSize wholeSize() const; ///< Of the sheets and what is around them.
    void paintSheet(QPainter &painter, const QRect &exposed, int page) const;
    void applyZoom(int percent);
    void applyFit();
    void updateScrollBars();
    /// Scrolls by a screenful, or asks for the next or previous page at its end.
    void pageKey(bool forward);

    PageDocument m_document;
    int m_page = 0;
    int m_zoom = 100;
    Fit m_fit = Fit::None;
    int m_columns = 1;
    int m_wheel = 0; ///< Turned beyond the page's end so far, in eighths of a degree.
    QPoint m_pressed; ///< Where the mouse button was pressed.
    QPoint m_dragged; ///< Where the mouse was when the page was last moved by it.
};
