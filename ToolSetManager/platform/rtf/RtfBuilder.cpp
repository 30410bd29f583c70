#include "platform/rtf/RtfBuilder.h"

#include <QTextDocument>
#include <QTextList>

namespace {

/// A list goes over all its paragraphs whenever it gets another one; as bullets are not counted,
/// nobody sees where one list ends and the next begins.
constexpr int maximumListLength = 32;

} // namespace

void RtfLine::chop(qsizetype count)
{
    text.chop(count);
    while (!runs.empty() && runs.back().end > text.size()) {
        const bool emptied =
            runs.size() == 1 ? text.isEmpty() : runs[runs.size() - 2].end >= text.size();
        if (!emptied) {
            runs.back().end = text.size();
            return;
        }
        runs.pop_back();
    }
}

void RtfLine::closeRun(int format)
{
    if (!runs.empty() && runs.back().format == format)
        runs.back().end = text.size();
    else
        runs.push_back({text.size(), format});
}

RtfBuilder::RtfBuilder(QTextDocument &document)
    : m_cursor(&document)
    , m_listLength(maximumListLength)
{
    m_cursor.beginEditBlock();
}

RtfBuilder::~RtfBuilder()
{
    m_cursor.endEditBlock();
}

int RtfBuilder::addFormat(const QTextCharFormat &format)
{
    m_formats.push_back(format);
    return static_cast<int>(m_formats.size() - 1);
}

void RtfBuilder::addParagraph(
    const RtfLine &label, const RtfLine &line, const RtfParagraphStyle &style, int mark)
{
    const QTextCharFormat &markFormat = format(mark);
    const QTextBlockFormat &paragraph =
        blockFormat(style, style.bullet ? RtfCharStyle::halfPointsOf(markFormat) : 0);
    if (m_first) {
        m_cursor.setBlockFormat(paragraph);
        m_cursor.setBlockCharFormat(markFormat);
    } else {
        m_cursor.insertBlock(paragraph, markFormat);
    }
    m_first = false;
    if (style.bullet && ++m_listLength > maximumListLength) {
        m_listLength = 1;
        QTextListFormat listFormat;
        listFormat.setStyle(QTextListFormat::ListDisc);
        listFormat.setIndent(0); // the paragraphs have their own
        m_list = m_cursor.createList(listFormat)->objectIndex();
        m_lastFormat.setObjectIndex(m_list);
    }
    insertRuns(label);
    insertRuns(line);
}

void RtfBuilder::insertRuns(const RtfLine &line)
{
    qsizetype start = 0;
    for (const RtfLine::Run &run : line.runs) {
        // Not a copy: the document makes its own.
        const QString text = QString::fromRawData(line.text.constData() + start, run.end - start);
        m_cursor.insertText(text, format(run.format));
        start = run.end;
    }
}

const QTextBlockFormat &RtfBuilder::blockFormat(const RtfParagraphStyle &style, int halfPoints)
{
    if (style == m_lastStyle && halfPoints == m_lastHalfPoints)
        return m_lastFormat;
    m_lastStyle = style;
    m_lastHalfPoints = halfPoints;
    m_lastFormat = style.toFormat(halfPoints);
    if (style.bullet && m_list >= 0)
        m_lastFormat.setObjectIndex(m_list);
    return m_lastFormat;
}
