#include "platform/print/PageDocument.h"

#include "platform/rtf/RichText.h"
#include "platform/rtf/RichTextPages.h"
#include "platform/text/CodePage.h"
#include "platform/text/Twips.h"

#include <QPainter>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace {

constexpr int standardMargin = Twips::perInch;
constexpr int leastRoom = 720; ///< Columns narrower than this are given up.
constexpr int partGap = 240; ///< Between the parts of a header.
constexpr double rounding = 0.5;

/// A character that would be drawn as an empty box becomes a blank.
QString printable(QString text)
{
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control)
            character = u' ';
    }
    return text;
}

/// No line breaks within what such a character joins.
constexpr QChar joiner(0x2060);

/// The text with joiners where Unicode's rules would part a drive or a scheme from its path, or a
/// switch from the dashes or the slash in front of it.
QString joined(const QString &text)
{
    QString joined;
    bool inMarks = false; // of a switch
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar character = text[i];
        const bool isStart = i == 0 || text[i - 1].isSpace() || text[i - 1] == u'"';
        inMarks = (isStart || inMarks) && (character == u'-' || character == u'/');
        joined += character;
        const QChar next = i + 1 < text.size() ? text[i + 1] : QChar();
        if (!next.isNull() && !next.isSpace()
            && (inMarks || (character == u':' && (next == u'\\' || next == u'/'))))
            joined += joiner;
    }
    return joined;
}

bool isLineEnd(QChar character)
{
    return character == u'\r' || character == u'\n';
}

/// \a count lines at most of a text that is wrapped within \a width; the last one is cut.
QStringList wrapped(
    const QString &text, const QFont &font, const QFontMetricsF &metrics, double width, int count)
{
    QStringList lines;
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        if (lines.size() + 1 == count) {
            lines.append(metrics.elidedText(text.mid(line.textStart()), Qt::ElideRight, width));
            break;
        }
        lines.append(text.mid(line.textStart(), line.textLength()));
    }
    layout.endLayout();
    return lines;
}

} // namespace

QMargins Paper::margins() const
{
    const auto margin = [](int length, int least) {
        return std::max(std::min(standardMargin, length / 5), least);
    };
    return QMargins(margin(size.width(), unprintable.left()),
        margin(size.height(), unprintable.top()), margin(size.width(), unprintable.right()),
        margin(size.height(), unprintable.bottom()));
}

struct PageDocument::RichTextBody
{
    QTextDocument document;
    RichTextPages pages {document};
};

QString PageDocument::RichTextPart::text() const
{
    QTextCursor cursor(&body->document);
    cursor.setPosition(first);
    cursor.setPosition(beyond, QTextCursor::KeepAnchor);
    QString text = cursor.selectedText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    return text;
}

PageDocument::PageDocument()
    : m_codePage(CodePage::systemNumber())
{
    RichText::substituteFonts();
}

PageDocument::~PageDocument() = default;

// --- The document ---

void PageDocument::StartDoc(const std::optional<Paper> &paper)
{
    m_pages.clear();
    m_fonts.clear();
    m_metrics.clear();
    m_header.clear();
    m_footer.clear();
    m_indent = 0;
    setFont(QStringLiteral("Arial"), 10, false);
    m_headerFont = m_font;

    m_error = paper ? NoError : NoPrinter;
    if (!paper)
        return;
    m_paper = *paper;
    m_margins = m_paper.margins();
    const QRect inner = QRect(QPoint(0, 0), m_paper.size).marginsRemoved(m_margins);
    if (inner.width() < leastRoom || inner.height() < leastRoom) {
        m_error = CannotStart;
        return;
    }
    NewPage();
}

void PageDocument::NewPage()
{
    if (!m_pages.empty())
        finishPage();
    m_pages.emplace_back();
    m_x = m_column = lineStart();
    m_y = m_margins.top();
}

void PageDocument::EndDoc()
{
    if (!m_pages.empty())
        finishPage();
}

void PageDocument::Clear()
{
    m_pages.clear();
}

void PageDocument::finishPage()
{
    writeMarginText(m_header, true);
    writeMarginText(m_footer, false);
    m_pages.back().shrink_to_fit();
}

// --- Header and footer ---

void PageDocument::setHeaderFont(const QString &family, double points, bool bold)
{
    m_headerFont = useFont(family, points, bold);
}

QString PageDocument::numbered(QString part) const
{
    for (qsizetype at = part.indexOf(u'%'); at >= 0; at = part.indexOf(u'%', at)) {
        const QStringView mark = QStringView(part).mid(at, 2);
        const QString value = mark == u"%d" ? QString::number(PageCount()) : QStringLiteral("%");
        if (mark == u"%d" || mark == u"%%")
            part.replace(at, 2, value);
        at += value.size();
    }
    return part;
}

void PageDocument::writeMarginText(const QString &parts, bool header)
{
    if (parts.isEmpty())
        return;
    const QString text = printable(parts);
    // Whatever stands left of the last two bars belongs to the left part: a file's name may hold
    // bars of its own.
    const qsizetype last = text.lastIndexOf(u'|');
    const qsizetype middle = last > 0 ? text.lastIndexOf(u'|', last - 1) : -1;
    const qsizetype first = middle >= 0 ? middle : last;
    const QString left = numbered(first >= 0 ? text.left(first) : text);
    const QString centre = first < 0 ? QString()
        : middle >= 0                ? numbered(text.mid(middle + 1, last - middle - 1))
                                     : numbered(text.mid(last + 1));
    const QString rightPart = middle >= 0 ? numbered(text.mid(last + 1)) : QString();

    const QFontMetricsF &metrics = m_metrics[size_t(m_headerFont)];
    const double width = right() - m_margins.left();
    const double centreWidth = metrics.horizontalAdvance(centre);
    const double rightWidth = metrics.horizontalAdvance(rightPart);
    const double leftWidth = centre.isEmpty()
        ? (rightPart.isEmpty() ? width : width - rightWidth - partGap)
        : (width - centreWidth) / 2 - partGap;

    // Half-way between the paper's edge and the text, growing towards the text.
    const double edge = header ? std::max(m_margins.top() / 2, m_paper.unprintable.top())
                               : std::max(m_margins.bottom() / 2, m_paper.unprintable.bottom());
    const double room = (header ? m_margins.top() : m_margins.bottom()) - edge;
    const int mostLines = std::max(1, static_cast<int>(room / metrics.lineSpacing()));
    const QStringList lines = wrapped(left, m_fonts[size_t(m_headerFont)], metrics,
        std::max(leftWidth, double(leastRoom)), mostLines);
    const double firstTop = header ? edge
                                   : m_paper.size.height() - edge
            - metrics.lineSpacing() * static_cast<double>(std::max<qsizetype>(lines.size(), 1));

    Page written;
    const double baseline = firstTop + metrics.ascent();
    const auto put = [&](double x, double y, const QString &part) {
        if (!part.isEmpty())
            written.emplace_back(std::in_place_type<Text>, Text {x, y, m_headerFont, part});
    };
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const double below = static_cast<double>(i) * metrics.lineSpacing();
        put(m_margins.left(), baseline + below, lines[i]);
    }
    put(m_margins.left() + (width - centreWidth) / 2, baseline, centre);
    put(right() - rightWidth, baseline, rightPart);
    // The header first, for those to whom the printed file is read.
    Page &page = m_pages.back();
    if (header)
        page.swap(written);
    page.insert(page.end(), written.cbegin(), written.cend());
}

bool PageDocument::hasRoomAt(int x) const
{
    return right() - x >= leastRoom;
}

// --- Position and font ---

void PageDocument::setCurrentX(int x)
{
    m_x = m_column = x;
}

void PageDocument::setFont(const QString &family, double points, bool bold)
{
    m_font = useFont(family, points, bold);
}

int PageDocument::useFont(const QString &family, double points, bool bold)
{
    QFont font(family);
    font.setPixelSize(static_cast<int>(std::lround(points * Twips::perPoint)));
    font.setBold(bold);
    // Glyphs lie where the layout says at every scale.
    font.setHintingPreference(QFont::PreferNoHinting);
    const auto found = std::find(m_fonts.cbegin(), m_fonts.cend(), font);
    if (found != m_fonts.cend())
        return static_cast<int>(found - m_fonts.cbegin());
    m_fonts.push_back(font);
    m_metrics.emplace_back(font);
    return static_cast<int>(m_fonts.size()) - 1;
}

double PageDocument::lineHeight() const
{
    return m_metrics[size_t(m_font)].lineSpacing();
}

double PageDocument::lineStart() const
{
    const double start = m_margins.left() + m_indent;
    return right() - start < leastRoom ? m_margins.left() : start;
}

// --- Output ---

void PageDocument::makeRoom(double height)
{
    if (m_y + height <= bottom() + rounding || m_y <= m_margins.top())
        return;
    const double x = m_x;
    const double column = m_column;
    NewPage();
    m_x = x;
    m_column = column;
}

void PageDocument::endLine()
{
    m_y += lineHeight();
    m_x = m_column = lineStart();
}

void PageDocument::setText(const QString &text)
{
    if (m_pages.empty())
        return;
    for (qsizetype at = 0; at < text.size();) {
        if (isLineEnd(text[at])) {
            at += text[at] == u'\r' && text.mid(at + 1, 1) == u'\n' ? 2 : 1;
            endLine();
            continue;
        }
        const auto end = std::find_if(text.cbegin() + at, text.cend(), isLineEnd) - text.cbegin();
        writeWrapped(printable(text.mid(at, end - at)));
        at = end;
    }
}

void PageDocument::writeWrapped(const QString &text)
{
    const double width = m_metrics[size_t(m_font)].horizontalAdvance(text);
    if (m_x + width <= right() + rounding) {
        write(text, width);
        return;
    }
    if (right() - m_column < leastRoom)
        m_column = lineStart();
    if (right() - m_x < leastRoom) {
        m_y += lineHeight();
        m_x = m_column;
    }
    const QString whole = joined(text);
    QTextLayout layout(whole, m_fonts[size_t(m_font)]);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        if (line.textStart() > 0) {
            m_y += lineHeight();
            m_x = m_column;
        }
        line.setLineWidth(right() - m_x);
        write(
            whole.mid(line.textStart(), line.textLength()).remove(joiner), line.naturalTextWidth());
    }
    layout.endLayout();
}

void PageDocument::write(const QString &text, double width)
{
    makeRoom(lineHeight());
    const double baseline = m_y + m_metrics[size_t(m_font)].ascent();
    m_pages.back().emplace_back(std::in_place_type<Text>, Text {m_x, baseline, m_font, text});
    m_x += width;
}

void PageDocument::setTextRTF(const QString &rtf)
{
    if (m_pages.empty())
        return;
    const auto first = std::find_if_not(rtf.cbegin(), rtf.cend(), isLineEnd);
    const auto last = std::find_if_not(rtf.crbegin(), rtf.crend(), isLineEnd).base();

    auto body = std::make_shared<RichTextBody>();
    QFont standard = m_fonts[size_t(m_font)];
    standard.setPointSizeF(double(standard.pixelSize()) / Twips::perPoint);
    body->document.setDefaultFont(standard);
    if (first < last)
        RichText::read(QString(first, last - first), body->document, RichText::reader(m_codePage));
    const int length = body->document.characterCount() - 1;

    m_x = m_column = lineStart();
    if (length == 0) {
        endLine();
        return;
    }
    const int width = static_cast<int>(right() - m_x);
    for (int from = 0; from < length;) {
        int room = static_cast<int>(bottom() - m_y + rounding);
        int beyond = body->pages.firstBeyond(from, {width, room});
        int height = body->pages.height(from, beyond, width);
        if (height > room && m_y > m_margins.top()) {
            makeRoom(height);
            room = static_cast<int>(bottom() - m_y + rounding);
            beyond = body->pages.firstBeyond(from, {width, room});
            height = body->pages.height(from, beyond, width);
        }
        height = std::min(height, room); // one line higher than a page is drawn smaller
        const QRect area(CurrentX(), CurrentY(), width, height);
        m_pages.back().emplace_back(
            std::in_place_type<RichTextPart>, RichTextPart {body, area, from, beyond});
        m_y += height;
        from = beyond;
    }
    m_x = m_column = lineStart();
}

void PageDocument::DrawPicture(const QImage &picture, const QRect &place)
{
    if (!m_pages.empty() && !picture.isNull())
        m_pages.back().emplace_back(std::in_place_type<Picture>, Picture {place, picture});
}

// --- The pages ---

void PageDocument::draw(QPainter &painter, int page) const
{
    painter.save();
    painter.setPen(Qt::black);
    painter.setRenderHints(QPainter::SmoothPixmapTransform | QPainter::TextAntialiasing
        | QPainter::LosslessImageRendering);
    int font = -1;
    for (const Step &step : steps(page)) {
        if (const auto *text = std::get_if<Text>(&step)) {
            if (font != text->font)
                painter.setFont(m_fonts[size_t(text->font)]);
            font = text->font;
            painter.drawText(QPointF(text->x, text->baseline), text->text);
        } else if (const auto *picture = std::get_if<Picture>(&step)) {
            painter.drawImage(picture->place, picture->image);
        } else if (const auto *part = std::get_if<RichTextPart>(&step)) {
            part->body->pages.draw(painter, part->area, part->first, part->beyond);
        }
    }
    painter.restore();
}

const std::vector<PageDocument::Step> &PageDocument::steps(int page) const
{
    return m_pages.at(size_t(page) - 1);
}

QString PageDocument::pageText(int page) const
{
    QString all;
    double line = -1;
    for (const Step &step : steps(page)) {
        if (const auto *text = std::get_if<Text>(&step)) {
            if (!all.isEmpty())
                all += text->baseline == line ? u' ' : u'\n';
            line = text->baseline;
            all += text->text;
        } else if (const auto *part = std::get_if<RichTextPart>(&step)) {
            all += u'\n' + part->text();
            line = -1;
        }
    }
    return all;
}
