#include "platform/rtf/ReadableColours.h"

#include <QTextBlock>

#include <algorithm>
#include <cmath>

namespace {

constexpr double lowestContrast =
    4.5; ///< Of body text, by the accessibility guidelines of the web.
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

ReadableColours::ReadableColours()
    : QSyntaxHighlighter(static_cast<QObject *>(nullptr))
{
}

void ReadableColours::show(QTextDocument *text, const QColor &background)
{
    m_background = background;
    QTextDocument *followed = isDark(background) ? text : nullptr;
    if (followed != document())
        setDocument(followed);
    else if (followed)
        rehighlight();
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

void ReadableColours::highlightBlock(const QString & /*text*/)
{
    for (auto it = currentBlock().begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const QTextCharFormat format = fragment.charFormat();
        if (!format.hasProperty(QTextFormat::ForegroundBrush))
            continue;
        const QColor own = format.foreground().color();
        const QColor shown = readable(own, m_background);
        if (shown != own)
            setFormat(fragment.position() - currentBlock().position(), fragment.length(), shown);
    }
}
