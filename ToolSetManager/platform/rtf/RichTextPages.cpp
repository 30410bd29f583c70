#include "platform/rtf/RichTextPages.h"

#include "platform/text/Twips.h"

#include <QAbstractTextDocumentLayout>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextLayout>
#include <QUrl>

#include <algorithm>
#include <cmath>

namespace {

constexpr double dotsPerMetre = Twips::perInch / 0.0254;
constexpr double twipsPerPixel = Twips::perPixel;
constexpr double touch = 2; ///< Twips.

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

/// Qt scales fonts, tab stops, line heights and pictures to the device, but not the margins.
void scaleMargins(QTextDocument &document)
{
    QHash<int, QTextBlockFormat> scaled; // by the format's number
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const int number = block.blockFormatIndex();
        auto format = scaled.constFind(number);
        if (format == scaled.cend()) {
            QTextBlockFormat changed = block.blockFormat();
            for (const auto property : {QTextFormat::BlockLeftMargin, QTextFormat::BlockRightMargin,
                     QTextFormat::BlockTopMargin, QTextFormat::BlockBottomMargin,
                     QTextFormat::TextIndent}) {
                if (changed.hasProperty(property)) {
                    changed.setProperty(property, changed.doubleProperty(property) * twipsPerPixel);
                }
            }
            format = scaled.insert(number, changed);
        }
        if (*format != block.blockFormat()) {
            cursor.setPosition(block.position());
            cursor.setBlockFormat(*format);
        }
    }
    cursor.endEditBlock();
}

/// Pictures wider than the text's area would be cut off at its edge. True when there were any.
bool shrinkPictures(QTextDocument &document, int width)
{
    struct Change
    {
        int position;
        int length;
        QTextImageFormat picture;
    };
    std::vector<Change> changes; // made afterwards: they may join fragments
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextBlockFormat paragraph = block.blockFormat();
        const double widest = (width - paragraph.leftMargin() - paragraph.rightMargin()
                                  - std::max(0.0, paragraph.textIndent()))
            / twipsPerPixel;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            QTextImageFormat picture = it.fragment().charFormat().toImageFormat();
            if (!picture.isValid() || widest < 1 || picture.width() <= widest)
                continue;
            picture.setHeight(picture.height() * widest / picture.width());
            picture.setWidth(widest);
            changes.push_back({it.fragment().position(), it.fragment().length(), picture});
        }
    }
    QTextCursor cursor(&document);
    for (const Change &change : changes) {
        cursor.setPosition(change.position);
        cursor.setPosition(change.position + change.length, QTextCursor::KeepAnchor);
        cursor.setCharFormat(change.picture);
    }
    return !changes.empty();
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
    if (first >= m_length || m_lines.empty())
        return m_length;
    const size_t beyond = lineBeyond(lineOf(first), area.height());
    return beyond < m_lines.size() ? m_lines[beyond].start : m_length;
}

void RichTextPages::draw(QPainter &painter, const QRect &area, int first, int beyond)
{
    layOut(area.width());
    if (m_lines.empty() || first >= beyond)
        return;
    const double top = m_lines[lineOf(first)].top;
    const double bottom = m_lines[lineOf(beyond - 1)].bottom;
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, Qt::black);
    // A little less than the lines: those that only touch them would be drawn and cut off, and be
    // found in the printed file all the same.
    context.clip = QRectF(0, top + touch, m_width, bottom - top - 2 * touch);
    painter.save();
    painter.translate(area.topLeft());
    // Only a single line can be higher than its area: a picture larger than the page.
    if (bottom - top > area.height() + 1)
        painter.scale(area.height() / (bottom - top), area.height() / (bottom - top));
    painter.translate(0, -top);
    // What hangs out to the left or right is drawn, but not what stands above or below.
    painter.setClipRect(
        QRectF(-area.left(), top, m_width + 2 * area.left(), bottom - top), Qt::IntersectClip);
    m_layout->documentLayout()->draw(&painter, context);
    painter.restore();
}

int RichTextPages::height(int first, int beyond, int width)
{
    layOut(width);
    if (m_lines.empty() || first >= beyond)
        return 0;
    return static_cast<int>(
        std::ceil(m_lines[lineOf(beyond - 1)].bottom - m_lines[lineOf(first)].top));
}

void RichTextPages::release()
{
    m_layout.reset();
    m_lines = {};
    m_width = 0;
}

void RichTextPages::layOut(int width)
{
    if (m_layout && m_width == width)
        return;
    m_lines.clear();
    m_width = width;
    if (m_shrunk)
        m_layout.reset(); // for another width
    if (m_layout)
        m_layout->setTextWidth(width);
    else
        makeLayout();
    m_length = qMax(0, m_layout->characterCount() - 1);

    const auto *layout = m_layout->documentLayout();
    layout->documentSize(); // lays out all of it
    for (QTextBlock block = m_layout->begin(); block.isValid(); block = block.next()) {
        const QRectF place = layout->blockBoundingRect(block);
        const QTextLayout *lines = block.layout();
        for (int i = 0; i < lines->lineCount(); ++i) {
            const QTextLine line = lines->lineAt(i);
            const double top = place.top() + line.y();
            m_lines.push_back({block.position() + line.textStart(), top, top + line.height()});
        }
    }
}

/// A copy of the document. Device and width are there before the text comes, or it would be laid
/// out for others first.
void RichTextPages::makeLayout()
{
    m_layout = std::make_unique<LayoutDocument>(m_document);
    m_layout->setUndoRedoEnabled(false);
    m_layout->setDefaultFont(m_document.defaultFont());
    QTextOption option = m_document.defaultTextOption();
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere); // nothing beyond the edge
    m_layout->setDefaultTextOption(option);
    m_layout->setIndentWidth(m_document.indentWidth());
    m_layout->setDocumentMargin(0);
    m_layout->documentLayout()->setPaintDevice(&referenceDevice());
    m_layout->setTextWidth(m_width);
    QTextCursor cursor(m_layout.get());
    cursor.beginEditBlock();
    cursor.insertFragment(QTextDocumentFragment(&m_document));
    scaleMargins(*m_layout);
    m_shrunk = shrinkPictures(*m_layout, m_width);
    cursor.endEditBlock();
}

size_t RichTextPages::lineOf(int character) const
{
    const auto after = std::upper_bound(m_lines.cbegin(), m_lines.cend(), character,
        [](int wanted, const Line &line) { return wanted < line.start; });
    return after == m_lines.cbegin() ? 0 : static_cast<size_t>(after - m_lines.cbegin()) - 1;
}

size_t RichTextPages::lineBeyond(size_t line, double height) const
{
    const double limit = m_lines[line].top + height + 0.5;
    size_t beyond = line + 1;
    while (beyond < m_lines.size() && m_lines[beyond].bottom <= limit)
        ++beyond;
    return beyond;
}
