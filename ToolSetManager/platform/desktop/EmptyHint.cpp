#include "platform/desktop/EmptyHint.h"

#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr int mostMargin = 16;
constexpr double titleScale = 1.3;
constexpr double faintness = 0.8; ///< Of the text's colour: it is no content.

} // namespace

QString EmptyHint::spoken() const
{
    const QString words = title.isEmpty() ? text : title + QStringLiteral(". ") + text;
    return words.simplified();
}

void EmptyHint::paint(
    QPainter &painter, const QRect &room, const QPalette &palette, QPalette::ColorRole back) const
{
    const int margin = qMin(mostMargin, room.height() / 8);
    const QRect inside = room.adjusted(margin, margin, -margin, -margin);
    if (!inside.isValid())
        return;
    // Not every role has a text colour of its own that can be read on it.
    const bool dark = palette.color(back).lightnessF() < 0.55F;
    const bool darkTheme = palette.color(QPalette::Base).lightnessF() < 0.5F;
    QColor colour = palette.color(dark == darkTheme ? QPalette::Text : QPalette::Base);
    colour.setAlphaF(faintness);

    painter.save();
    painter.setPen(colour);
    const QFont textFont = painter.font();
    QFont titleFont = textFont;
    titleFont.setPointSizeF(titleFont.pointSizeF() * titleScale);
    const int width = qMin(inside.width(), QFontMetrics(textFont).averageCharWidth() * 56);
    const auto heightOf = [&](const QFont &font, const QString &words) {
        return QFontMetrics(font)
            .boundingRect(0, 0, width, 10000, Qt::TextWordWrap | Qt::AlignHCenter, words)
            .height();
    };
    const int gap = title.isEmpty() ? 0 : QFontMetrics(textFont).height() / 2;
    const int titleHeight = title.isEmpty() ? 0 : heightOf(titleFont, title);
    const int whole = titleHeight + gap + heightOf(textFont, text);
    // A little above the middle, where the eye looks first.
    const int top = inside.top() + qMax(0, (inside.height() - whole) * 2 / 5);
    QRect box(inside.left() + (inside.width() - width) / 2, top, width, inside.bottom() - top + 1);
    painter.setClipRect(inside, Qt::IntersectClip);
    painter.setFont(titleFont);
    painter.drawText(box, Qt::TextWordWrap | Qt::AlignHCenter | Qt::AlignTop, title);
    box.setTop(top + titleHeight + gap);
    painter.setFont(textFont);
    painter.drawText(box, Qt::TextWordWrap | Qt::AlignHCenter | Qt::AlignTop, text);
    painter.restore();
}
