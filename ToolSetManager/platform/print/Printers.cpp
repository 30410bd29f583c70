#include "platform/print/Printers.h"

#include "platform/print/PdfPages.h"
#include "platform/text/Twips.h"

#include <QPrinter>
#include <QPrinterInfo>

#include <cmath>

namespace {

constexpr double twipsPerMillimetre = Twips::perInch / 25.4;

QStringList systemPrinters()
{
    QStringList names = QPrinterInfo::availablePrinterNames();
    names.sort(Qt::CaseInsensitive);
    const QString standard = QPrinterInfo::defaultPrinterName();
    if (!names.removeOne(standard)) {
        names.prepend(Printers::pdfFile());
        return names;
    }
    names.prepend(standard);
    names.append(Printers::pdfFile());
    return names;
}

int twips(double millimetres)
{
    return static_cast<int>(std::lround(millimetres * twipsPerMillimetre));
}

/// What a queue cannot print on, for the upright sheet.
QMargins unprintable(const QString &name, const QPageSize &pageSize)
{
    if (name == Printers::pdfFile())
        return {};
    QPrinter printer(QPrinterInfo::printerInfo(name), QPrinter::HighResolution);
    printer.setPageSize(pageSize);
    QPageLayout layout = printer.pageLayout();
    layout.setUnits(QPageLayout::Millimeter);
    const QMarginsF least = layout.minimumMargins();
    return QMargins(
        twips(least.left()), twips(least.top()), twips(least.right()), twips(least.bottom()));
}

} // namespace

Printers::Printers()
    : Printers(systemPrinters)
{
}

Printers::Printers(List list)
    : m_list(std::move(list))
{
}

QString Printers::pdfFile()
{
    return QStringLiteral("PDF File");
}

QStringList Printers::names() const
{
    QStringList names = m_list();
    m_standard = names.value(0);
    return names;
}

QString Printers::name() const
{
    if (!m_name.isEmpty())
        return m_name;
    return m_standard.isEmpty() ? names().value(0) : m_standard;
}

QPageSize Printers::pageSize() const
{
    return m_pageSize.isValid() ? m_pageSize : defaultPageSize(name());
}

void Printers::choose(
    const QString &name, const QPageSize &pageSize, QPageLayout::Orientation orientation)
{
    m_name = name;
    m_pageSize = pageSize;
    m_orientation = orientation;
}

std::optional<Paper> Printers::paper() const
{
    const QStringList present = names();
    const QString printer = name();
    if (!present.contains(printer))
        return std::nullopt;
    const QPageSize size = pageSize();
    return PdfPages::paper(size, m_orientation, unprintable(printer, size));
}

QList<QPageSize> Printers::pageSizes(const QString &name)
{
    QList<QPageSize> sizes;
    if (name != pdfFile())
        sizes = QPrinterInfo::printerInfo(name).supportedPageSizes();
    if (sizes.isEmpty()) {
        for (const auto id : {QPageSize::A3, QPageSize::A4, QPageSize::A5, QPageSize::B5,
                 QPageSize::Letter, QPageSize::Legal, QPageSize::Executive, QPageSize::Tabloid})
            sizes.append(QPageSize(id));
    }
    return sizes;
}

QPageSize Printers::defaultPageSize(const QString &name)
{
    QPageSize size;
    if (!name.isEmpty() && name != pdfFile())
        size = QPrinterInfo::printerInfo(name).defaultPageSize();
    if (size.isValid())
        return size;
    return PdfPages::usualSize();
}

QString Printers::description(const QString &name)
{
    if (name == pdfFile())
        return QStringLiteral("Writes a file in the Portable Document Format");
    const QPrinterInfo printer = QPrinterInfo::printerInfo(name);
    QStringList parts {printer.description(), printer.location()};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}
