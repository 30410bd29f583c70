#include "platform/rtf/ReadableColours.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace {

/// Of body text, by the accessibility guidelines of the web.
constexpr double lowestContrast = 4.5;
constexpr float lightnessStep = 0.04F;

double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
        + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

bool isDark(const QColor &background)
{
    return contrast(background, Qt::white) > contrast(background, Qt::black);
}

} // namespace

ReadableColours::ReadableColours(QTextDocument &document)
    : m_document(document)
{
    connect(&m_document, &QTextDocument::contentsChange, this,
        [this](int position, int /*removed*/, int added) {
            if (isDark(m_background))
                update(position, position + added);
        });
}

void ReadableColours::setBackground(const QColor &background)
{
    if (background == m_background)
        return;
    m_background = background;
    update(0, m_document.characterCount());
}

void ReadableColours::update(int first, int last)
{
    // Not by a QSyntaxHighlighter, which makes the document report a change of its text.
    for (QTextBlock block = m_document.findBlock(first);
         block.isValid() && block.position() <= last; block = block.next()) {
        QTextLayout *layout = block.layout();
        if (!layout->preeditAreaText().isEmpty())
            continue; // an input method marks its own text
        QList<QTextLayout::FormatRange> ranges;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const QTextCharFormat own = fragment.charFormat();
            if (!own.hasProperty(QTextFormat::ForegroundBrush))
                continue;
            const QColor shown = readable(own.foreground().color(), m_background);
            if (shown == own.foreground().color())
                continue;
            QTextCharFormat format;
            format.setForeground(shown);
            ranges.append({fragment.position() - block.position(), fragment.length(), format});
        }
        if (ranges == layout->formats())
            continue;
        layout->setFormats(ranges);
        m_document.markContentsDirty(block.position(), block.length());
    }
}

QColor ReadableColours::readable(const QColor &text, const QColor &background)
{
    if (!isDark(background))
        return text;
    float hue = 0;
    float saturation = 0;
    float lightness = 0;
    text.getHslF(&hue, &saturation, &lightness);
    QColor shown = text;
    while (contrast(shown, background) < lowestContrast && lightness < 1) {
        lightness = std::min(1.0F, lightness + lightnessStep);
        shown = QColor::fromHslF(hue, saturation, lightness);
    }
    return shown;
}
