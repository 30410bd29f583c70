#include "shell/HelpBrowser.h"

#include <QAbstractTextDocumentLayout>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextTable>

namespace {

constexpr int margin = 16;

/// The name that a heading has in links, by the rule of the web side of the manual: small letters,
/// blanks as hyphens, no punctuation.
QString anchorOf(const QString &heading)
{
    QString anchor;
    for (const QChar c : heading.toLower()) {
        if (c == u' ')
            anchor += u'-';
        else if (c.isLetterOrNumber() || c == u'-' || c == u'_')
            anchor += c;
    }
    return anchor;
}

} // namespace

HelpBrowser::HelpBrowser(QWidget *parent)
    : QTextBrowser(parent)
{
    setOpenExternalLinks(false); // the manual leads nowhere but to itself
    document()->setDocumentMargin(margin);
    // Were it to come and go, the pictures would be fitted in the middle of the layout.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    // Emitted for history, too, which goes past doSetSource(), and for links within a page.
    connect(this, &QTextBrowser::sourceChanged, this, [this](const QUrl &url) {
        const QUrl page = url.adjusted(QUrl::RemoveFragment);
        if (page == m_page)
            return;
        m_page = page;
        readHeadings();
        dressTables();
        searchPage();
        showMatches();
        Q_EMIT pageLoaded();
    });
}

void HelpBrowser::doSetSource(const QUrl &url, QTextDocument::ResourceType type)
{
    QTextBrowser::doSetSource(url, type);
    if (url.hasFragment())
        scrollTo(url.fragment());
}

void HelpBrowser::readHeadings()
{
    m_headings.clear();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        if (level > 0)
            m_headings.append({block.text(), level, block.position(), anchorOf(block.text())});
    }
}

void HelpBrowser::dressTables()
{
    // The browser would take it for an edit and load the page anew at the next link within it.
    const QSignalBlocker quiet(document());
    const auto frames = document()->rootFrame()->childFrames();
    for (QTextFrame *frame : frames) {
        auto *table = qobject_cast<QTextTable *>(frame);
        if (!table)
            continue;
        QTextTableFormat format = table->format();
        format.setBorderCollapse(true);
        format.setBorder(1);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderBrush(palette().color(QPalette::Mid));
        format.setCellPadding(4);
        format.setCellSpacing(0);
        table->setFormat(format);
    }
}

void HelpBrowser::scrollTo(const QString &anchor)
{
    for (const Heading &heading : std::as_const(m_headings)) {
        if (heading.anchor != anchor)
            continue;
        const QTextBlock block = document()->findBlock(heading.position);
        const qreal top = document()->documentLayout()->blockBoundingRect(block).top();
        verticalScrollBar()->setValue(qMax(0, qRound(top) - margin / 2));
        // The keyboard goes on from here as well.
        QTextCursor cursor(block);
        setTextCursor(cursor);
        verticalScrollBar()->setValue(qMax(0, qRound(top) - margin / 2));
        return;
    }
}

int HelpBrowser::currentHeading() const
{
    const int top = cursorForPosition(QPoint(margin, margin)).position();
    int current = -1;
    for (int i = 0; i < m_headings.size() && m_headings[i].position <= top; ++i)
        current = i;
    return current;
}

// --- Pictures ---

QVariant HelpBrowser::loadResource(int type, const QUrl &name)
{
    QVariant content = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::ImageResource)
        return content;
    QImage picture;
    if (!picture.loadFromData(content.toByteArray()))
        return content;
    m_pictures.insert(name, picture);
    return fitted(picture);
}

QImage HelpBrowser::fitted(const QImage &picture) const
{
    const int room = viewport()->width() - 2 * margin;
    if (picture.width() <= room || room <= 0)
        return picture;
    const qreal ratio = devicePixelRatioF();
    QImage smaller = picture.scaledToWidth(
        qMin(qRound(room * ratio), picture.width()), Qt::SmoothTransformation);
    smaller.setDevicePixelRatio(qreal(smaller.width()) / room);
    return smaller;
}

void HelpBrowser::fitPictures()
{
    if (m_fittedWidth == viewport()->width())
        return;
    m_fittedWidth = viewport()->width();
    const QSignalBlocker quiet(document()); // as above
    for (auto picture = m_pictures.cbegin(); picture != m_pictures.cend(); ++picture) {
        document()->addResource(
            QTextDocument::ImageResource, picture.key(), fitted(picture.value()));
    }
    document()->markContentsDirty(0, document()->characterCount());
}

void HelpBrowser::resizeEvent(QResizeEvent *event)
{
    // What is read stays in sight although the lines above it break anew.
    const QTextCursor top = cursorForPosition(QPoint(margin, margin));
    fitPictures();
    QTextBrowser::resizeEvent(event);
    const int shift = cursorRect(top).top() - margin;
    if (verticalScrollBar()->value() > 0)
        verticalScrollBar()->setValue(verticalScrollBar()->value() + shift);
}

void HelpBrowser::changeEvent(QEvent *event)
{
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        dressTables();
        showMatches();
    }
}

// --- Find ---

void HelpBrowser::searchPage()
{
    m_matches.clear();
    m_match = -1;
    if (m_wanted.isEmpty())
        return;
    QTextCursor from(document());
    for (;;) {
        from = document()->find(m_wanted, from);
        if (from.isNull())
            return;
        m_matches.append(from);
    }
}

void HelpBrowser::find(const QString &text)
{
    // While the text grows or shrinks, each search starts where the first one did.
    if (m_wanted.isEmpty()) {
        document()->size(); // what is not laid out yet would be hit at the top as well
        m_from = cursorForPosition({}).position();
    }
    m_wanted = text;
    searchPage();
    for (int i = 0; i < matchCount() && m_match < 0; ++i) {
        if (m_matches[i].selectionStart() >= m_from)
            m_match = i;
    }
    if (m_match < 0 && matchCount() > 0)
        m_match = 0;
    showMatches();
}

void HelpBrowser::findNext(bool backward)
{
    if (matchCount() == 0)
        return;
    m_match = (m_match + (backward ? matchCount() - 1 : 1)) % matchCount();
    m_from = m_matches[m_match].selectionStart();
    showMatches();
}

void HelpBrowser::showMatches()
{
    QList<ExtraSelection> marks;
    for (int i = 0; i < matchCount(); ++i) {
        ExtraSelection mark;
        mark.cursor = m_matches[i];
        QColor colour = palette().color(QPalette::Active, QPalette::Highlight);
        if (i == m_match)
            mark.format.setForeground(palette().color(QPalette::Active, QPalette::HighlightedText));
        else
            colour.setAlphaF(0.3F);
        mark.format.setBackground(colour);
        marks.append(mark);
    }
    setExtraSelections(marks);
    if (m_match < 0) {
        if (!m_wanted.isEmpty()) // back from where a shorter text was found
            showPlace(m_from);
        return;
    }
    // A selection of its own would be drawn over the mark, and pale while the focus is elsewhere.
    QTextCursor place = m_matches[m_match];
    place.setPosition(place.selectionStart());
    setTextCursor(place);
    showPlace(place.position());
}

void HelpBrowser::showPlace(int position)
{
    QTextCursor place(document());
    place.setPosition(qMin(position, document()->characterCount() - 1));
    const QRect rect = cursorRect(place);
    const int room = viewport()->height() / 4; // some lines around it
    if (rect.top() < room / 2 || rect.bottom() > viewport()->height() - room)
        verticalScrollBar()->setValue(verticalScrollBar()->value() + rect.top() - room);
}
