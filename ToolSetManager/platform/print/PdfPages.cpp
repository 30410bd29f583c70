#include "platform/print/PdfPages.h"

#include "platform/text/Twips.h"

#include <QCoreApplication>
#include <QLocale>

#include <cmath>

PdfPages::PdfPages(QIODevice &device, const QString &title, const QPageSize &size,
    QPageLayout::Orientation orientation)
    : m_writer(&device)
{
    m_writer.setTitle(title);
    m_writer.setCreator(QCoreApplication::applicationName());
    m_writer.setResolution(Twips::perInch);
    m_writer.setPageLayout(QPageLayout(size, orientation, QMarginsF(0, 0, 0, 0)));
}

PdfPages::~PdfPages()
{
    end();
}

void PdfPages::end()
{
    if (m_painter.isActive())
        m_painter.end();
}

bool PdfPages::draw(const PageDocument &document, const std::function<bool(int done)> &progress)
{
    for (int page = 1; page <= document.PageCount(); ++page) {
        if (page > 1)
            newPage();
        document.draw(m_painter, page);
        if (progress && !progress(page))
            return false;
    }
    return true;
}

QPageSize PdfPages::usualSize()
{
    const bool inches = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    return QPageSize(inches ? QPageSize::Letter : QPageSize::A4);
}

Paper PdfPages::paper(
    const QPageSize &size, QPageLayout::Orientation orientation, QMargins unprintable)
{
    constexpr double perMillimetre = Twips::perInch / 25.4;
    const QSizeF upright = size.size(QPageSize::Millimeter) * perMillimetre;
    const QSize sheet(static_cast<int>(std::lround(upright.width())),
        static_cast<int>(std::lround(upright.height())));
    if (orientation == QPageLayout::Portrait)
        return {sheet, unprintable};
    // The sheet is turned with its left edge to the top.
    return {sheet.transposed(),
        QMargins(unprintable.bottom(), unprintable.left(), unprintable.top(), unprintable.right())};
}
