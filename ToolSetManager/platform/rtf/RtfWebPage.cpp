#include "platform/rtf/RtfWebPage.h"

#include "platform/rtf/RtfRow.h"
#include "platform/rtf/RtfSelection.h"
#include "platform/rtf/RtfWriter.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <numeric>

namespace {

constexpr int levelIndent = 360; ///< Twips, of each level of a list.

bool isNumbered(const QTextList &list)
{
    const int style = list.format().style();
    return style <= QTextListFormat::ListDecimal && style >= QTextListFormat::ListUpperRoman;
}

class Flattener
{
public:
    explicit Flattener(QTextDocument &to)
        : m_to(&to)
    {
        m_to.beginEditBlock();
    }
    ~Flattener() { m_to.endEditBlock(); }
    Flattener(const Flattener &) = delete;
    Flattener &operator=(const Flattener &) = delete;

    void addFrame(QTextFrame &frame)
    {
        for (auto it = frame.begin(); !it.atEnd(); ++it) {
            if (auto *table = qobject_cast<QTextTable *>(it.currentFrame()))
                addTable(*table);
            else if (it.currentFrame())
                addFrame(*it.currentFrame());
            else if (!isFiller(it))
                addParagraph(it.currentBlock());
        }
    }

private:
    /// The toolkit puts an empty paragraph before and behind each table.
    static bool isFiller(const QTextFrame::iterator &it)
    {
        if (it.currentBlock().length() > 1)
            return false;
        auto next = it;
        ++next;
        auto before = it;
        const bool isFirst = it == it.parentFrame()->begin();
        if (!isFirst)
            --before;
        return next.currentFrame() || (!isFirst && before.currentFrame());
    }

    void startParagraph(const RtfParagraphStyle &style, const QTextCharFormat &mark)
    {
        if (!std::exchange(m_first, false))
            m_to.insertBlock({}, mark);
        else
            m_to.setBlockCharFormat(mark);
        RtfSelection::setParagraph(m_to, style);
    }

    void addParagraph(const QTextBlock &block)
    {
        const QTextList *list = block.textList();
        RtfParagraphStyle style = RtfParagraphStyle::fromFormat(block.blockFormat(), list);
        const bool numbered = list && isNumbered(*list);
        if (list) {
            const int level = qBound(1, list->format().indent() + block.blockFormat().indent(), 20);
            style.bullet = !numbered;
            style.leftIndent = level * levelIndent;
            style.firstIndent = -levelIndent;
        }
        startParagraph(style, block.charFormat());
        if (numbered) {
            const QTextCharFormat format =
                block.begin().atEnd() ? block.charFormat() : block.begin().fragment().charFormat();
            m_to.insertText(list->itemText(block) + u'\t', textOf(format));
        }
        addText(block, false);
    }

    /// Behind a picture the text would be one, too.
    static QTextCharFormat textOf(QTextCharFormat format)
    {
        format.clearProperty(QTextFormat::ObjectType);
        return format;
    }

    void addText(const QTextBlock &block, bool inCell)
    {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            QString text = fragment.text();
            if (inCell)
                text.replace(u'\t', u' ');
            m_to.insertText(text, fragment.charFormat());
        }
    }

    void addTable(QTextTable &table)
    {
        const QList<int> edges = edgesOf(table);
        for (int row = 0; row < table.rows(); ++row) {
            QList<int> shape {0, cellGap};
            shape.append(edges);
            const bool fits = edges.size() <= RtfParagraphStyle::maximumTabs;
            startParagraph(fits ? RtfRow(shape).style() : RtfParagraphStyle(), {});
            for (int column = 0; column < table.columns(); ++column) {
                QTextTableCell cell = table.cellAt(row, column);
                if (column > 0)
                    m_to.insertText(
                        QStringLiteral("\t"), textOf(cell.firstCursorPosition().charFormat()));
                if (cell.row() == row && cell.column() == column) // else of one that spans
                    addCell(cell.begin(), true);
            }
        }
    }

    /// The paragraphs of a cell, those of tables in it included, as lines; true when the next one
    /// is the first.
    bool addCell(QTextFrame::iterator it, bool first)
    {
        for (; !it.atEnd(); ++it) {
            if (it.currentFrame()) {
                first = addCell(it.currentFrame()->begin(), first);
                continue;
            }
            const QTextBlock block = it.currentBlock();
            if (block.length() == 1)
                continue;
            if (!std::exchange(first, false))
                m_to.insertText(QString(QChar::LineSeparator), textOf(m_to.charFormat()));
            if (block.textList()) {
                const bool numbered = isNumbered(*block.textList());
                m_to.insertText(
                    (numbered ? block.textList()->itemText(block) : QString(QChar(0x2022))) + u' ',
                    textOf(block.begin().fragment().charFormat()));
            }
            addText(block, true);
        }
        return first;
    }

    /// Right edges in twips: the page's own widths are those of its window, so columns get room by
    /// the words in them.
    static QList<int> edgesOf(const QTextTable &table)
    {
        constexpr int most = 9000; // of Letter paper
        constexpr int perCharacter = 110;
        constexpr int shortest = 5;
        constexpr int longest = 40;
        QList<int> widths(table.columns(), shortest);
        for (int row = 0; row < table.rows(); ++row) {
            for (int column = 0; column < table.columns(); ++column) {
                const QTextTableCell cell = table.cellAt(row, column);
                const int length = cell.lastPosition() - cell.firstPosition();
                if (cell.row() == row && cell.column() == column && cell.columnSpan() == 1)
                    widths[column] = qBound(widths[column], length, longest);
            }
        }
        const int sum = std::accumulate(widths.cbegin(), widths.cend(), 0);
        const double scale = std::min<double>(perCharacter, double(most) / std::max(1, sum));
        double edge = 0;
        for (int &width : widths) {
            edge += width * scale + 2 * cellGap;
            width = static_cast<int>(edge);
        }
        return widths;
    }

    static constexpr int cellGap = 108; ///< Twips, as word processors have it.

    QTextCursor m_to;
    bool m_first = true;
};

} // namespace

RtfWebPage::RtfWebPage(const QString &html, const QFont &standard)
{
    setDefaultFont(standard);
    setHtml(html);
}

QByteArray RtfWebPage::toRtf() const
{
    RtfWebPage flat({}, defaultFont()); // which fetches nothing either
    for (QTextBlock block = begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            if (!format.isImageFormat())
                continue;
            const QUrl name(format.toImageFormat().name());
            const QVariant picture = resource(ImageResource, name);
            if (picture.isValid())
                flat.addResource(ImageResource, name, picture);
        }
    }
    Flattener(flat).addFrame(*rootFrame());
    return RtfWriter::write(flat);
}

/// The toolkit would read files of this computer for a page that names them.
QVariant RtfWebPage::loadResource(int type, const QUrl &name)
{
    const bool inPage = name.scheme() == QLatin1StringView("data");
    return inPage ? QTextDocument::loadResource(type, name) : QVariant();
}
