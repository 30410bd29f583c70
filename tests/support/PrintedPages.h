#pragma once

#include "platform/print/PageDocument.h"

#include <QProcess>
#include <QStringList>

#include <cmath>

/// What stands on pages, as lines of text.
namespace PrintedPages {

/// The texts of a page in the order of their drawing, as "x@line text". Lines of the body are
/// counted from 0 at the top margin in heights of the body's line, halves are told; "head" and
/// "foot" stand in the margins. Pictures are "x@line [width x height]", rich text "x@line {text}".
inline QStringList linesOf(const PageDocument &document, int page)
{
    const QFontMetricsF metrics(document.fonts().front());
    const QMargins margins = document.margins();
    const auto place = [&](double x, double top) {
        QString line = QString::number((top - margins.top()) / metrics.lineSpacing(), 'f', 1);
        if (line.endsWith(QLatin1StringView(".0")))
            line.chop(2);
        if (top < margins.top() - 1)
            line = u"head"_qs;
        else if (top > document.PageHeight() - margins.bottom())
            line = u"foot"_qs;
        return u"%1@%2 "_qs.arg(std::lround(x)).arg(line);
    };
    QStringList lines;
    for (const PageDocument::Step &step : document.steps(page)) {
        if (const auto *text = std::get_if<PageDocument::Text>(&step)) {
            const QFontMetricsF own(document.fonts().at(size_t(text->font)));
            lines << place(text->x, text->baseline - own.ascent()) + text->text;
        } else if (const auto *picture = std::get_if<PageDocument::Picture>(&step)) {
            lines << place(picture->place.x(), picture->place.y())
                    + u"[%1 x %2]"_qs.arg(picture->place.width()).arg(picture->place.height());
        } else if (const auto *part = std::get_if<PageDocument::RichTextPart>(&step)) {
            lines << place(part->area.x(), part->area.y()) + u'{' + part->text() + u'}';
        }
    }
    return lines;
}

/// The text of a PDF file's pages as another program reads it, in the order of its content.
inline QStringList pagesOfPdf(const QString &path)
{
    QProcess reader;
    reader.start(u"pdftotext"_qs, {u"-raw"_qs, path, u"-"_qs}, QIODevice::ReadOnly);
    if (!reader.waitForFinished() || reader.exitCode() != 0)
        return {};
    QString text = QString::fromUtf8(reader.readAllStandardOutput());
    if (text.endsWith(u'\f'))
        text.chop(1);
    return text.split(u'\f');
}

} // namespace PrintedPages
