#pragma once

#include "platform/print/PageDocument.h"

#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <functional>

class QIODevice;

/// Pages in the Portable Document Format. Text stays text: it can be searched for.
class PdfPages
{
public:
    /// The device is borrowed, and must be open for writing. \a title is what readers show.
    PdfPages(QIODevice &device, const QString &title, const QPageSize &size,
        QPageLayout::Orientation orientation = QPageLayout::Portrait);
    ~PdfPages(); ///< Completes the file, unless end() has.

    /// Begins the first page. False when the device refuses.
    bool begin() { return m_painter.begin(&m_writer); }
    /// Its units are twips, its origin the corner of the paper.
    QPainter &painter() { return m_painter; }
    void newPage() { m_writer.newPage(); }
    void end();

    /// Draws all pages of a document of the same paper. \a progress is told after each page how
    /// many are drawn; false gives the rest up, and so does this.
    bool draw(const PageDocument &document, const std::function<bool(int done)> &progress = {});

    /// The sheet that is usual in the user's country.
    static QPageSize usualSize();
    /// The sheet as a page document takes it. \a unprintable is that of the upright sheet.
    static Paper paper(const QPageSize &size,
        QPageLayout::Orientation orientation = QPageLayout::Portrait, QMargins unprintable = {});

private:
    QPdfWriter m_writer;
    QPainter m_painter;
};
