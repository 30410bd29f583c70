#pragma once

#include "platform/print/PageDocument.h"

#include <QAbstractScrollArea>

/// Shows the pages of a document one at a time, as they will be printed. Only the shown page is
/// drawn, and only the part of it that can be seen.
///
/// The user's wishes for another page or zoom are reported, not carried out: the owner knows which
/// are allowed.
class PagePreview : public QAbstractScrollArea
{
    Q_OBJECT
public:
    static constexpr int leastZoom = 10; ///< Per cent.
    static constexpr int greatestZoom = 500;

    explicit PagePreview(QWidget *parent = nullptr);

    PageDocument &document() { return m_document; }
    const PageDocument &document() const { return m_document; }

    int PageCount() const { return m_document.PageCount(); }
    /// The shown page, counted from 1; 0 when there is none. It is shown from its top.
    int PreviewPage() const { return m_page; }
    void setPreviewPage(int page);
    int Zoom() const { return m_zoom; } ///< Per cent of the real size.
    /// What lies outside the limits is refused: the zoom stays.
    void setZoom(int percent);

    /// The whole page at that zoom, in pixels.
    QSize sheetSize() const;

Q_SIGNALS:
    void firstWanted();
    void previousWanted();
    void nextWanted();
    void lastWanted();
    void zoomWanted(int steps); ///< Above 0: larger.

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    double scale() const; ///< Pixels to a twip.
    QRect sheet() const; ///< In the viewport.
    void updateScrollBars();
    /// Scrolls by a screenful, or asks for the next or previous page at its end.
    void pageKey(bool forward);

    PageDocument m_document;
    int m_page = 0;
    int m_zoom = 100;
    int m_wheel = 0; ///< Turned beyond the page's end so far, in eighths of a degree.
    QPoint m_dragged; ///< Where the mouse was when the page was last moved by it.
};
