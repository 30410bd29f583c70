#include "platform/desktop/MessageText.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QScreen>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

namespace {

constexpr int charactersInLine = 68; ///< Of average width, at most.
constexpr qsizetype longestShown = 4000; ///< Tried first; more never fits a screen.

/// The text with each run of tabs as one.
QString withSingleTabs(const QString &text)
{
    QString single;
    for (const QChar c : text) {
        if (c != u'\t' || !single.endsWith(u'\t'))
            single += c;
    }
    return single;
}

/// Where the columns begin, from the second on.
QList<QTextOption::Tab> columnsOf(const QString &text, const QFontMetrics &metrics)
{
    QList<int> widths;
    const QStringList lines = text.split(u'\n');
    for (const QString &line : lines) {
        const QStringList cells = line.split(u'\t');
        for (qsizetype i = 0; i + 1 < cells.size(); ++i) {
            if (i == widths.size())
                widths.append(0);
            widths[i] = std::max(widths[i], metrics.horizontalAdvance(cells[i]));
        }
    }
    QList<QTextOption::Tab> columns;
    int left = 0;
    for (const int width : std::as_const(widths)) {
        left += width + 2 * metrics.averageCharWidth();
        columns.append(QTextOption::Tab(left, QTextOption::LeftTab));
    }
    return columns;
}

QString withoutMiddle(const QString &text, qsizetype length)
{
    if (text.size() <= length)
        return text;
    qsizetype head = length / 2;
    qsizetype tail = text.size() - length / 2;
    if (text[head - 1].isHighSurrogate())
        --head;
    if (text[tail].isLowSurrogate())
        ++tail;
    return text.first(head) + QChar(u'…') + text.sliced(tail);
}

} // namespace

MessageText::MessageText(const QString &text, QWidget *parent)
    : QLabel(parent)
    , m_shown(new QTextDocument(this))
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setText(text);

    const QString whole = withSingleTabs(text);
    const QSize room = screen()->availableSize();
    m_shown->setDocumentMargin(0);
    m_shown->setDefaultFont(font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextBlockFormat columns;
    columns.setTabPositions(columnsOf(whole, fontMetrics()));
    m_shown->setDefaultTextOption(option);
    const int widest =
        std::min(charactersInLine * fontMetrics().averageCharWidth(), room.width() / 2);
    const int highest = room.height() / 2;
    for (qsizetype length = std::min(whole.size(), longestShown);; length = length * 3 / 4) {
        m_shown->setPlainText(withoutMiddle(whole, length));
        QTextCursor all(m_shown);
        all.select(QTextCursor::Document);
        all.mergeBlockFormat(columns);
        m_shown->setTextWidth(-1);
        m_shown->setTextWidth(std::min(std::ceil(m_shown->idealWidth()), double(widest)));
        if (m_shown->size().height() <= highest || length < charactersInLine)
            break;
    }
}

QSize MessageText::sizeHint() const
{
    return m_shown->size().toSize().expandedTo({1, 1});
}

int MessageText::heightForWidth(int width) const
{
    // A box that is wider than the text needs leaves the lines as they are.
    return width < sizeHint().width() ? QLabel::heightForWidth(width) : sizeHint().height();
}

void MessageText::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, palette().color(foregroundRole()));
    m_shown->documentLayout()->draw(&painter, context);
}
