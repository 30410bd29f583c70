#include "printing/RTFPrinter.h"

#include "platform/VbError.h"
#include "platform/print/PrintJob.h"
#include "platform/rtf/RichTextBox.h"
#include "platform/rtf/RichTextPages.h"

#include <QScopeGuard>
#include <QTextDocument>

namespace {

int lengthOf(const RichTextBox &box)
{
    return box.document()->characterCount() - 1;
}

/// The whole text of a header or footer, as far as the band has room.
void drawBand(QPainter &painter, RichTextBox *box, const QRect &band)
{
    if (!box || band.isEmpty())
        return;
    box->pages().draw(painter, band, 0, box->pages().firstBeyond(0, band.size()));
}

VbError printerError(const QString &text)
{
    return VbError(VbError::PrinterError, QStringLiteral("RTFPrinter"), text);
}

} // namespace

RTFPrinter::RTFPrinter(const Printers &printers, QObject *parent)
    : QObject(parent)
    , m_printers(printers)
{
}

RTFPrinter::Bands RTFPrinter::bands(const Paper &paper) const
{
    const auto rectangle = [](int left, int top, int right, int bottom) {
        return QRect(left, top, right - left, bottom - top);
    };
    const int offsetX = paper.unprintable.left();
    const int offsetY = paper.unprintable.top();
    const int left = m_leftMargin - offsetX;
    const int right = paper.size.width() - m_rightMargin - offsetX;
    const int headerTop = m_topMargin - offsetY;
    const int bodyTop = headerTop + m_headerHeight;
    const int pageBottom = paper.size.height() - m_bottomMargin - offsetY;
    const int footerTop = pageBottom - m_footerHeight;
    return {
        rectangle(left, headerTop, right, bodyTop),
        rectangle(left, bodyTop, right, footerTop - footerGap),
        rectangle(left, footerTop, right, pageBottom),
        QRect(QPoint(0, 0), paper.size)
            .marginsRemoved(paper.unprintable)
            .translated(-offsetX, -offsetY),
    };
}

void RTFPrinter::PrintRTF()
{
    m_cancelled = false;
    PrintJob job(m_printers, QStringLiteral("Printing Document"));
    job.setFileName(FileName);
    const auto tidyUp = qScopeGuard([this] {
        releaseLayouts();
        Q_EMIT EndDocument();
    });
    if (!job.start())
        throw printerError(job.errorText());
    if (printPages(job) && !job.end())
        throw printerError(job.errorText());
}

bool RTFPrinter::printPages(PrintJob &job)
{
    const Bands bands = this->bands(job.paper());
    if (bands.body.isEmpty())
        throw printerError(QStringLiteral("The margins leave no room for the text."));
    QPainter &painter = job.painter();
    painter.translate(job.paper().unprintable.left(), job.paper().unprintable.top());
    painter.setClipRect(bands.page);

    const int length = lengthOf(*DocumentBox);
    int first = 0;
    for (int page = 1;; ++page) {
        Q_EMIT BeginPage(page);
        if (m_cancelled)
            return false;
        drawBand(painter, HeaderBox, bands.header);
        const int beyond = DocumentBox->pages().firstBeyond(first, bands.body.size());
        DocumentBox->pages().draw(painter, bands.body, first, beyond);
        drawBand(painter, FooterBox, bands.footer);
        if (beyond >= length)
            return !m_cancelled;
        first = beyond;
        job.newPage();
    }
}

void RTFPrinter::releaseLayouts()
{
    for (RichTextBox *box : {DocumentBox, HeaderBox, FooterBox}) {
        if (box)
            box->pages().release();
    }
}
