#include "platform/picture/EmfObjects.h"

#include "platform/picture/EmfBitmap.h"

#include <algorithm>
#include <array>

namespace {

constexpr quint32 stock = 0x80000000;

enum PenStyle : quint32 {
    Null = 5,
    UserStyle = 7,
    Alternate = 8,
    StyleMask = 0xF,
    SquareCap = 0x100,
    FlatCap = 0x200,
    CapMask = 0xF00,
    BevelJoin = 0x1000,
    MiterJoin = 0x2000,
    JoinMask = 0xF000,
    Geometric = 0x10000
};

enum BrushStyle : quint32 { Solid = 0, NoBrush = 1, Hatched = 2 };

Qt::BrushStyle hatch(quint32 number)
{
    static constexpr std::array styles {Qt::HorPattern, Qt::VerPattern, Qt::FDiagPattern,
        Qt::BDiagPattern, Qt::CrossPattern, Qt::DiagCrossPattern};
    return number < styles.size() ? styles[number] : Qt::SolidPattern;
}

EmfBrush brushOf(quint32 style, const QColor &colour, quint32 hatchNumber)
{
    if (style == NoBrush)
        return {Qt::NoBrush, colour};
    return {style == Hatched ? hatch(hatchNumber) : Qt::SolidPattern, colour};
}

EmfPen penOf(quint32 style, qint64 width, const QColor &colour)
{
    static constexpr std::array lines {
        Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine, Qt::DashDotDotLine, Qt::NoPen};
    const quint32 line = style & StyleMask;
    EmfPen result;
    result.pen = QPen(colour, double(std::max<qint64>(width, 0)));
    result.pen.setStyle(line < lines.size() ? lines[line] : Qt::SolidLine);
    if (line == Alternate)
        result.pen.setDashPattern({1, 1});
    const quint32 cap = style & CapMask;
    result.pen.setCapStyle(cap == SquareCap ? Qt::SquareCap
            : cap == FlatCap                ? Qt::FlatCap
                                            : Qt::RoundCap);
    const quint32 join = style & JoinMask;
    result.pen.setJoinStyle(join == BevelJoin ? Qt::BevelJoin
            : join == MiterJoin               ? Qt::SvgMiterJoin
                                              : Qt::RoundJoin);
    return result;
}

EmfPen simplePen(const EmfRecord &record)
{
    const qint32 width = record.number(16);
    quint32 style = record.count(12) & StyleMask;
    if (width > 1 && style != Null) // only thin ones have dashes
        style = 0;
    return penOf(style, width, record.colour(24));
}

EmfPen extendedPen(const EmfRecord &record)
{
    constexpr qsizetype styleEntries = 52;
    constexpr quint32 maximumEntries = 16;
    const quint32 style = record.count(28);
    const quint32 width = record.count(32);
    EmfPen result = penOf(style, std::min(width, 0x7FFFFFFFU), record.colour(40));
    result.cosmetic = (style & Geometric) == 0;
    if (record.count(36) == NoBrush)
        result.pen.setStyle(Qt::NoPen);
    const quint32 entries = std::min(record.count(48), maximumEntries) / 2 * 2;
    if ((style & StyleMask) != UserStyle || entries == 0)
        return result;
    QList<qreal> dashes;
    for (quint32 i = 0; i < entries; ++i) {
        constexpr double shortest = 0.5;
        constexpr double longest = 1000;
        dashes.append(
            std::clamp(record.count(styleEntries + qsizetype(i) * 4) / double(std::max(width, 1U)),
                shortest, longest));
    }
    result.pen.setDashPattern(dashes);
    return result;
}

EmfFont fontOf(const EmfRecord &record)
{
    constexpr qsizetype name = 40;
    EmfFont font;
    font.height = record.number(12);
    font.width = record.number(16);
    font.escapement = record.number(20);
    font.weight = std::clamp(record.number(28), 0, 1000);
    if (font.weight == 0)
        font.weight = QFont::Normal;
    font.italic = record.at<quint8>(32) != 0;
    font.underline = record.at<quint8>(33) != 0;
    font.strikeOut = record.at<quint8>(34) != 0;
    for (qsizetype i = 0; i < 32; ++i) {
        const QChar letter(record.at<quint16>(name + i * 2));
        if (letter.isNull())
            break;
        font.family.append(letter);
    }
    return font;
}

} // namespace

EmfObjects::EmfObjects(int count)
    : m_objects(static_cast<std::size_t>(std::max(count, 0)))
    , m_memory(64 << 20)
{
}

void EmfObjects::create(const EmfRecord &record, const EmfState &state)
{
    const quint32 number = record.count(8);
    if (number >= m_objects.size())
        return;
    Object &object = m_objects[number];
    switch (record.type) {
    case EmfRecord::CreatePen:
        object = simplePen(record);
        break;
    case EmfRecord::CreateExtendedPen:
        object = extendedPen(record);
        break;
    case EmfRecord::CreateBrush:
        object = brushOf(record.count(12), record.colour(16), record.count(20));
        break;
    case EmfRecord::CreateFont:
        object = fontOf(record);
        break;
    case EmfRecord::CreateMonoBrush:
    case EmfRecord::CreatePatternBrush: {
        QImage image = EmfBitmap::read(record, 16, m_memory);
        m_memory -= image.sizeInBytes();
        if (record.type == EmfRecord::CreateMonoBrush && !image.isNull()) {
            image = image.convertToFormat(QImage::Format_Mono);
            image.setColorTable({state.background.rgb(), state.textColour.rgb()}); // white first
        }
        object = image.isNull() ? EmfBrush {Qt::NoBrush}
                                : EmfBrush {Qt::TexturePattern, Qt::black, image};
        break;
    }
    default:
        break;
    }
}

void EmfObjects::remove(quint32 number)
{
    if (number < m_objects.size())
        m_objects[number] = {};
}

EmfObjects::Object EmfObjects::object(quint32 number) const
{
    static constexpr std::array<QRgb, 5> greys {0xFFFFFF, 0xC0C0C0, 0x808080, 0x404040, 0x000000};
    enum { NullBrush = 5, WhitePen, BlackPen, NullPen, FirstFont = 10, LastFont = 17, Brush, Pen };
    if (number < m_objects.size())
        return m_objects[number];
    if (number < stock)
        return {};
    const quint32 index = number - stock;
    if (index < greys.size())
        return EmfBrush {Qt::SolidPattern, QColor(greys[index])};
    switch (index) {
    case NullBrush:
        return EmfBrush {Qt::NoBrush};
    case WhitePen:
        return EmfPen {QPen(Qt::white, 0)};
    case NullPen:
        return EmfPen {QPen(Qt::NoPen)};
    case BlackPen:
    case Pen:
        return EmfPen {};
    case Brush:
        return EmfBrush {};
    default:
        return index >= FirstFont && index <= LastFont ? Object(EmfFont {}) : Object();
    }
}

void EmfObjects::select(quint32 number, EmfState &state) const
{
    const Object chosen = object(number);
    if (const auto *pen = std::get_if<EmfPen>(&chosen))
        state.pen = *pen;
    else if (const auto *brush = std::get_if<EmfBrush>(&chosen))
        state.brush = *brush;
    else if (const auto *font = std::get_if<EmfFont>(&chosen))
        state.font = *font;
}

EmfBrush EmfObjects::brush(quint32 number) const
{
    const Object chosen = object(number);
    const auto *brush = std::get_if<EmfBrush>(&chosen);
    return brush != nullptr ? *brush : EmfBrush {Qt::NoBrush};
}
