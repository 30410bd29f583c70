#include "platform/rtf/RichTextPages.h"

#include "platform/text/Twips.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextList>
#include <QUrl>

#include <algorithm>
#include <cmath>

namespace {

constexpr double dotsPerMetre = Twips::perInch / 0.0254;
constexpr double twipsPerPixel = Twips::perPixel;

// What a layout may hold. Its height is bounded by Qt's fixed point, 8,388,607 units, its weight by
// the time that long paragraphs without blanks, or with tabs, take: both grow with the square.
constexpr double mostHeight = 6'000'000;
constexpr int mostWeight = 10'000; ///< Characters.
constexpr int tabbedWeight = 5; ///< Of a character in a paragraph that has tab stops.
constexpr double tallestFont = 2; ///< Height of a line over the size of its font.
constexpr size_t mostKept = 4;

/// The device that the layout measures with: never drawn on, and alive as long as any layout.
QImage &referenceDevice()
{
    static QImage device = [] {
        QImage image(1, 1, QImage::Format_RGB32);
        image.setDotsPerMeterX(static_cast<int>(std::lround(dotsPerMetre)));
        image.setDotsPerMeterY(static_cast<int>(std::lround(dotsPerMetre)));
        return image;
    }();
    return device;
}

/// Qt scales fonts, tab stops, heights and pictures to the device, but not what moves lines
/// sideways. \a goesOn is set for a paragraph that begins in the piece before.
QTextBlockFormat paragraphFormat(const QTextBlock &block, bool goesOn)
{
    QTextBlockFormat format = block.blockFormat();
    format.setObjectIndex(-1);
    for (const auto property :
        {QTextFormat::BlockLeftMargin, QTextFormat::BlockRightMargin, QTextFormat::TextIndent}) {
        if (format.hasProperty(property))
            format.setProperty(property, format.doubleProperty(property) * twipsPerPixel);
    }
    if (goesOn) {
        format.clearProperty(QTextFormat::TextIndent);
        format.setLayoutDirection(block.textDirection()); // as the paragraph's beginning says
    }
    return format;
}

/// A picture wider than the text's area would be cut off at its edge.
void shrinkPicture(QTextCharFormat &format, const QTextBlockFormat &paragraph, int width)
{
    QTextImageFormat picture = format.toImageFormat();
    const double widest = (width - paragraph.leftMargin() - paragraph.rightMargin()
                              - std::max(0.0, paragraph.textIndent()))
        / twipsPerPixel;
    if (!picture.isValid() || widest < 1 || picture.width() <= widest)
        return;
    picture.setHeight(picture.height() * widest / picture.width());
    picture.setWidth(widest);
    format = picture;
}

/// A disc in front of the first line, of the size and at the place that Qt gives it.
void drawBullet(QPainter &painter, const QTextBlock &block)
{
    const QTextCharFormat format = block.charFormat();
    const QFontMetricsF metrics(QFont(format.font(), &referenceDevice()));
    const double size = std::floor(metrics.lineSpacing() / 3);
    const double away = metrics.horizontalAdvance(u' ');
    const QRectF text =
        block.layout()->lineAt(0).naturalTextRect().translated(block.layout()->position());
    const double left =
        block.textDirection() == Qt::RightToLeft ? text.right() + away : text.left() - away - size;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(
        format.hasProperty(QTextFormat::ForegroundBrush) ? format.foreground() : QBrush(Qt::black));
    painter.drawEllipse(QRectF(left, text.top() + (metrics.height() - size) / 2, size, size));
    painter.restore();
}

/// The distance to the layout's top of what Qt puts before the block's first line.
double topOf(const QTextBlock &block)
{
    return block.layout()->position().y();
}

/// Shows the pictures of another document.
class LayoutDocument : public QTextDocument
{
public:
    explicit LayoutDocument(const QTextDocument &source)
        : m_source(source)
    {
    }

protected:
    QVariant loadResource(int type, const QUrl &name) override
    {
        return m_source.resource(type, name);
    }

private:
    const QTextDocument &m_source;
};

} // namespace

RichTextPages::RichTextPages(const QTextDocument &document)
    : m_document(document)
{
}

RichTextPages::~RichTextPages() = default;

int RichTextPages::firstBeyond(int first, QSize area)
{
    layOut(area.width());
    if (first >= m_length)
        return m_length;
    const size_t beyond = lineBeyond(lineOf(first), area.height());
    return beyond < m_lines.size() ? m_lines[beyond].start : m_length;
}

void RichTextPages::draw(QPainter &painter, const QRect &area, int first, int beyond)
{
    layOut(area.width());
    if (first >= beyond)
        return;
    const size_t last = lineOf(beyond - 1);
    const size_t line = lineOf(first);
    const double top = m_lines[line].top;
    const double bottom = m_lines[last].bottom;
    painter.save();
    painter.translate(area.topLeft());
    // Only a single line can be higher than its area: a picture larger than the page.
    if (bottom - top > area.height() + 1)
        painter.scale(area.height() / (bottom - top), area.height() / (bottom - top));
    painter.translate(0, -top);
    // What hangs out to the left or right is drawn, but not what stands above or below.
    painter.setClipRect(
        QRectF(-area.left(), top, m_width + 2 * area.left(), bottom - top), Qt::IntersectClip);
    painter.setPen(Qt::black);
    auto piece = std::upper_bound(m_pieces.cbegin(), m_pieces.cend(), line,
        [](size_t wanted, const Piece &each) { return wanted < each.firstLine; });
    for (size_t from = line; from <= last; ++piece) {
        const size_t end = piece == m_pieces.cend() ? m_lines.size() : piece->firstLine;
        const size_t to = std::min(end, last + 1);
        drawLines(painter, static_cast<size_t>(piece - m_pieces.cbegin()) - 1, from, to);
        from = to;
    }
    painter.restore();
}

/// Draws lines of one piece, each by itself: a layout draws the line before those that are wanted
/// as well, and it would be found in the printed file. The painter's origin is the top of the text.
void RichTextPages::drawLines(QPainter &painter, size_t piece, size_t first, size_t beyond)
{
    const QTextDocument &layout = layoutOf(piece);
    const int start = m_pieces[piece].start;
    painter.save();
    painter.translate(0, m_pieces[piece].top);
    for (size_t line = first; line < beyond;) {
        const int position = m_lines[line].start - start;
        const QTextBlock block = layout.findBlock(position);
        const QTextLayout &lines = *block.layout();
        int i = lines.lineForTextPosition(position - block.position()).lineNumber();
        if (i == 0 && block.textList())
            drawBullet(painter, block);
        for (; line < beyond && i < lines.lineCount(); ++line, ++i)
            lines.lineAt(i).draw(&painter, lines.position());
    }
    painter.restore();
}

int RichTextPages::height(int first, int beyond, int width)
{
    layOut(width);
    if (first >= beyond)
        return 0;
    const double bottom = m_lines[lineOf(beyond - 1)].bottom;
    return static_cast<int>(std::ceil(bottom - m_lines[lineOf(first)].top));
}

void RichTextPages::release()
{
    m_pieces.clear();
    m_lines = {};
    m_kept.clear();
    m_heights.clear();
    m_next = 0;
    m_nextTop = 0;
    m_width = 0;
}

void RichTextPages::layOut(int width)
{
    if (m_width == width)
        return;
    release();
    m_width = width;
    m_length = m_document.characterCount() - 1;
}

void RichTextPages::layOutTo(int character)
{
    while (m_next <= std::min(character, m_length))
        layOutPiece();
}

void RichTextPages::layOutPiece()
{
    auto layout = makeLayout(m_next);
    layout->documentLayout()->documentSize(); // lays out all of it
    const int start = m_next;
    const size_t firstLine = m_lines.size();
    // The line that begins a paragraph in the piece before had been moved down there as here.
    const bool goesOn = m_document.findBlock(start).position() < start;
    const QTextBlock begin = layout->begin();
    const double shift = goesOn ? topOf(begin) + begin.layout()->lineAt(0).y() : topOf(begin);
    const double top = m_nextTop - shift;
    for (QTextBlock block = begin; block.isValid(); block = block.next()) {
        const double blockTop = top + topOf(block);
        const QTextLayout *lines = block.layout();
        for (int i = 0; i < lines->lineCount(); ++i) {
            const QTextLine line = lines->lineAt(i);
            m_lines.push_back({start + block.position() + line.textStart(), blockTop + line.y(),
                blockTop + line.y() + line.height()});
        }
    }
    m_next = start + layout->characterCount();
    if (m_next <= m_length) {
        // The last line may lack its end, and where the next paragraph begins is not known
        // before it is there: the next piece begins with this line.
        const QTextBlock last = layout->lastBlock();
        if (m_lines.size() - firstLine > 1) {
            m_next = m_lines.back().start;
            m_nextTop = last.layout()->lineCount() > 1 ? m_lines.back().top : top + topOf(last);
            m_lines.pop_back();
        } else {
            --m_next; // the mark that ends any document
            m_nextTop = m_lines.back().bottom;
        }
    }
    m_pieces.push_back({start, firstLine, top, nullptr});
    keep(m_pieces.size() - 1, std::move(layout));
}

/// A copy of the text from \a start on, as much of it as can be laid out at once.
std::unique_ptr<QTextDocument> RichTextPages::makeLayout(int start) const
{
    auto layout = std::make_unique<LayoutDocument>(m_document);
    layout->setUndoRedoEnabled(false);
    layout->setDefaultFont(m_document.defaultFont());
    QTextOption option = m_document.defaultTextOption();
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere); // nothing beyond the edge
    layout->setDefaultTextOption(option);
    layout->setIndentWidth(m_document.indentWidth());
    layout->setDocumentMargin(0);
    // Before the text comes, or it would be laid out for another device and width first.
    layout->documentLayout()->setPaintDevice(&referenceDevice());
    layout->setTextWidth(m_width);

    QTextCursor cursor(layout.get());
    cursor.beginEditBlock();
    double room = mostHeight;
    int weight = mostWeight;
    for (QTextBlock block = m_document.findBlock(start); block.isValid(); block = block.next()) {
        const bool isFirst = block.position() <= start;
        const bool goesOn = block.position() < start;
        const QTextBlockFormat format = paragraphFormat(block, goesOn);
        if (isFirst) {
            cursor.setBlockFormat(format);
            cursor.setBlockCharFormat(block.charFormat());
        } else {
            cursor.insertBlock(format, block.charFormat());
        }
        if (const QTextList *list = block.textList(); list && !goesOn)
            cursor.createList(list->format());

        // Each character may come to stand in a line of its own.
        const auto lineHeight = [&](const QTextCharFormat &characters, int number) {
            const double height = heightOf(characters, number);
            return std::max(height, format.lineHeight(height, twipsPerPixel));
        };
        room -= lineHeight(block.charFormat(), block.charFormatIndex())
            + (std::abs(format.topMargin()) + std::abs(format.bottomMargin())) * twipsPerPixel;
        const int each = format.hasProperty(QTextFormat::TabPositions) ? tabbedWeight : 1;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int from = std::max(start - fragment.position(), 0);
            if (from >= fragment.length())
                continue;
            QTextCharFormat characters = fragment.charFormat();
            const double height = lineHeight(characters, fragment.charFormatIndex());
            const double fitting = std::min(room / height, double(weight) / each);
            const int count =
                static_cast<int>(qBound(1.0, fitting, double(fragment.length() - from)));
            shrinkPicture(characters, format, m_width);
            cursor.insertText(fragment.text().mid(from, count), characters);
            room -= count * height;
            weight -= count * each;
            const int end = fragment.position() + from + count;
            if ((room < height || weight < each) && end < block.position() + block.length() - 1) {
                cursor.endEditBlock();
                return layout; // within a paragraph
            }
        }
        if ((room <= 0 || weight <= 0) && !isFirst)
            break;
    }
    cursor.endEditBlock();
    return layout;
}

/// The most that a line of such characters can take, whatever font they are drawn with at last.
double RichTextPages::heightOf(const QTextCharFormat &format, int number) const
{
    const auto known = m_heights.constFind(number);
    if (known != m_heights.cend())
        return *known;
    const QFont standard = m_document.defaultFont();
    double size = standard.pointSizeF() > 0 ? standard.pointSizeF() * Twips::perPoint
                                            : standard.pixelSize() * twipsPerPixel;
    if (format.hasProperty(QTextFormat::FontPixelSize))
        size = format.intProperty(QTextFormat::FontPixelSize) * twipsPerPixel;
    if (format.hasProperty(QTextFormat::FontPointSize))
        size = format.fontPointSize() * Twips::perPoint;
    double height = tallestFont * size * (1 + std::abs(format.baselineOffset()) / 100);
    if (format.isImageFormat())
        height += format.toImageFormat().height() * twipsPerPixel;
    m_heights.insert(number, std::max(height, 1.0));
    return std::max(height, 1.0);
}

/// The piece's layout, made once more where it is not kept.
QTextDocument &RichTextPages::layoutOf(size_t piece)
{
    auto layout = std::move(m_pieces[piece].layout);
    if (!layout) {
        layout = makeLayout(m_pieces[piece].start);
        layout->documentLayout()->documentSize(); // lays out all of it
    }
    keep(piece, std::move(layout));
    return *m_pieces[piece].layout;
}

void RichTextPages::keep(size_t piece, std::unique_ptr<QTextDocument> layout)
{
    m_pieces[piece].layout = std::move(layout);
    std::erase(m_kept, piece);
    m_kept.push_back(piece);
    if (m_kept.size() > mostKept) {
        m_pieces[m_kept.front()].layout.reset();
        m_kept.erase(m_kept.begin());
    }
}

size_t RichTextPages::lineOf(int character)
{
    layOutTo(character);
    const auto after = std::upper_bound(m_lines.cbegin(), m_lines.cend(), character,
        [](int wanted, const Line &line) { return wanted < line.start; });
    return after == m_lines.cbegin() ? 0 : static_cast<size_t>(after - m_lines.cbegin()) - 1;
}

/// The first line that does not fit when the lines from \a line on are put into that height.
size_t RichTextPages::lineBeyond(size_t line, double height)
{
    const double limit = m_lines[line].top + height + 0.5;
    for (size_t beyond = line + 1;; ++beyond) {
        if (beyond == m_lines.size())
            layOutTo(m_next);
        if (beyond == m_lines.size() || m_lines[beyond].bottom > limit)
            return beyond;
    }
}
