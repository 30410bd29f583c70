#include "platform/picture/EmfText.h"

#include "platform/picture/EmfShapes.h"
#include "platform/text/CodePage.h"

#include <QFontMetricsF>
#include <QtMath>

#include <algorithm>

namespace {

enum Option : quint32 {
    Opaque = 0x2,
    Clipped = 0x4,
    GlyphNumbers = 0x10,
    NoRectangle = 0x100,
    SmallCharacters = 0x200,
    TwoDistances = 0x2000
};

enum Align : quint32 { UpdatePosition = 1, Right = 2, Centre = 6, Bottom = 8, Baseline = 24 };

struct Text
{
    QString letters {};
    QPointF reference {}; ///< Logical.
    quint32 options = 0;
    QRectF rectangle {}; ///< Logical; for Opaque and Clipped.
    QList<double> advances {}; ///< Logical, one a letter; empty for those of the font.
};

QString letters(const EmfRecord &record, qsizetype offset, qsizetype count, bool small)
{
    constexpr qsizetype longest = 4096;
    const qsizetype width = small ? 1 : 2;
    if (offset < 8 || offset > record.bytes.size())
        return {};
    count = std::min({count, longest, (record.bytes.size() - offset) / width});
    const QByteArrayView raw = record.bytes.sliced(offset, count * width);
    if (small)
        return CodePage().decode(raw);
    QString text;
    for (qsizetype i = 0; i < count; ++i)
        text.append(QChar(LittleEndian::at<quint16>(raw, i * 2)));
    return text;
}

Text read(const EmfRecord &record)
{
    constexpr qsizetype start = 36;
    Text text;
    if (record.type == EmfRecord::SmallTextOut) {
        text.reference = record.point(8);
        text.options = record.count(20);
        const bool rectangle = (text.options & NoRectangle) == 0;
        if (rectangle)
            text.rectangle = record.rectangle(start);
        text.letters = letters(record, start + (rectangle ? 16 : 0), record.count(16),
            (text.options & SmallCharacters) != 0);
        return text;
    }
    text.reference = record.point(start);
    text.options = record.count(start + 16);
    text.rectangle = record.rectangle(start + 20);
    text.letters = letters(record, record.count(start + 12), record.count(start + 8),
        record.type == EmfRecord::TextOutA);
    const qsizetype advances = record.count(start + 36);
    const qsizetype step = (text.options & TwoDistances) != 0 ? 8 : 4;
    if (advances >= start && advances + text.letters.size() * step <= record.bytes.size()) {
        for (qsizetype i = 0; i < text.letters.size(); ++i)
            text.advances.append(record.number(advances + i * step));
    }
    return text;
}

/// The state's font in pixels of the picture.
QFont fontFor(const EmfState &state)
{
    constexpr double largest = 2000;
    constexpr double usual = 16;
    const double unit = state.toPicture().map(QLineF(0, 0, 0, 1)).length();
    QFont font(state.font.family.isEmpty() ? QStringLiteral("Arial") : state.font.family);
    font.setWeight(static_cast<QFont::Weight>(std::clamp(state.font.weight, 1, 1000)));
    font.setItalic(state.font.italic);
    font.setUnderline(state.font.underline);
    font.setStrikeOut(state.font.strikeOut);
    font.setHintingPreference(QFont::PreferNoHinting);
    const double height = state.font.height == 0 ? usual * state.deviceToPicture.m22()
                                                 : std::abs(double(state.font.height)) * unit;
    const auto size = [&](double pixels) {
        return static_cast<int>(std::clamp(std::isfinite(pixels) ? pixels : 1, 1.0, largest) + 0.5);
    };
    font.setPixelSize(size(height));
    if (state.font.height > 0) { // that of the cell
        const QFontMetricsF metrics(font);
        font.setPixelSize(
            size(height * height / std::max(metrics.ascent() + metrics.descent(), 1.0)));
    }
    if (state.font.width != 0) {
        const double own = QFontMetricsF(font).averageCharWidth();
        const double wanted =
            std::abs(double(state.font.width)) * state.toPicture().map(QLineF(0, 0, 1, 0)).length();
        if (own > 0 && std::isfinite(wanted))
            font.setStretch(static_cast<int>(std::clamp(wanted / own * 100, 30.0, 300.0)));
    }
    return font;
}

/// Each letter's advance in pixels. A letter of two halves has its advance at the first.
QList<double> pixelAdvances(const Text &text, const EmfState &state)
{
    const double unit = state.toPicture().map(QLineF(0, 0, 1, 0)).length();
    QList<double> pixels;
    for (const double advance : text.advances)
        pixels.append(std::isfinite(unit) ? advance * unit : 0);
    return pixels;
}

void drawLetters(QPainter &painter, const QString &letters, const QList<double> &advances)
{
    if (advances.isEmpty() || letters.isRightToLeft()) {
        painter.drawText(QPointF(), letters);
        return;
    }
    double x = 0;
    for (qsizetype i = 0; i < letters.size(); ++i) {
        const bool pair = letters[i].isHighSurrogate() && i + 1 < letters.size();
        painter.drawText(QPointF(EmfState::bounded({x, 0})), letters.mid(i, pair ? 2 : 1));
        x += advances[i];
        if (pair)
            x += advances[++i];
    }
}

/// The angle of the text's line on the picture, in degrees and clockwise.
double angle(const EmfState &state)
{
    const QLineF right = state.world.map(QLineF(0, 0, 1, 0));
    const double own = -state.font.escapement / 10.0;
    return own + (std::isfinite(right.angle()) ? -right.angle() : 0);
}

} // namespace

void EmfText::draw(const EmfRecord &record, EmfState &state, EmfCanvas &canvas)
{
    const Text text = read(record);
    EmfState shown = state;
    shown.rop2 = EmfState::CopyPen;
    if ((text.options & NoRectangle) == 0) {
        const QPainterPath box = EmfShapes::rectangle(text.rectangle.normalized(), state);
        if ((text.options & Opaque) != 0)
            canvas.fillPlain(box, shown, state.background);
        if ((text.options & Clipped) != 0)
            shown.clip.combine(
                QRegion(box.boundingRect().toAlignedRect()), EmfClip::And, state.everything);
    }
    if (text.letters.isEmpty() || (text.options & GlyphNumbers) != 0
        || !canvas.spend(double(text.letters.size()) * 1000))
        return;

    const QFont font = fontFor(state);
    const QFontMetricsF metrics(font);
    const QList<double> advances = pixelAdvances(text, state);
    double width = 0;
    for (const double advance : advances)
        width += advance;
    if (advances.isEmpty())
        width = metrics.horizontalAdvance(text.letters);
    const bool update = (state.textAlign & UpdatePosition) != 0;
    const QPointF reference = state.map(update ? state.position : text.reference);
    const quint32 horizontal = state.textAlign & Centre;
    const quint32 vertical = state.textAlign & Baseline;
    const double left = horizontal == Centre ? -width / 2 : horizontal == Right ? -width : 0;
    const double down = vertical == Baseline ? 0
        : vertical == Bottom                 ? -metrics.descent()
                                             : metrics.ascent();
    QPainter &painter = canvas.painter(shown);
    painter.translate(reference);
    painter.rotate(angle(state));
    painter.translate(EmfState::bounded({left, down}));
    if (state.opaque) {
        painter.fillRect(QRectF(0, -metrics.ascent(), EmfState::bounded({width, 0}).x(),
                             metrics.ascent() + metrics.descent()),
            state.background);
    }
    painter.setFont(font);
    painter.setPen(state.textColour);
    drawLetters(painter, text.letters, advances);
    if (update) {
        const QTransform back = state.toPicture().inverted();
        QTransform turn;
        turn.rotate(angle(state));
        state.position = back.map(reference + turn.map(QPointF(width, 0)));
    }
}
