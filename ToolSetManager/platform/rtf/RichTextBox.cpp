#include "platform/rtf/RichTextBox.h"

#include "platform/rtf/ReadableColours.h"
#include "platform/rtf/RichText.h"
#include "platform/rtf/RichTextPages.h"
#include "platform/rtf/RtfMimeData.h"
#include "platform/rtf/RtfNumbering.h"
#include "platform/rtf/RtfRowEdit.h"
#include "platform/rtf/RtfText.h"
#include "platform/rtf/RtfWriter.h"
#include "platform/text/CodePage.h"
#include "platform/text/Twips.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMimeData>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QUrl>

#include <algorithm>
#include <cmath>

using RtfProtection::Touch;

namespace {

constexpr int twipsPerPixel = Twips::perPixel;

// The toolkit's layout ends at 8,388,607 pixels, and never where a text goes on.
constexpr double mostHeight = 6'000'000;
constexpr double tallestFont = 2; ///< Height of a line over the size of its font.
constexpr double widestFont = 1.2; ///< Width of a character, on the average of a line.
constexpr double pixelsPerPoint = 96.0 / 72;

/// Breaking a word of so many characters takes a time that grows with its square, unless it may be
/// broken anywhere.
constexpr int longestWord = 20'000;

bool hasEndlessWord(const QTextBlock &block)
{
    if (block.length() <= longestWord)
        return false;
    const QString text = block.text();
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size() && i - start <= longestWord; ++i) {
        if (text[i].isSpace())
            start = i + 1;
    }
    return text.size() - start > longestWord;
}

} // namespace

RichTextBox::RichTextBox(const QString &family, double points, QWidget *parent)
    : QTextEdit(parent)
    , m_codePage(CodePage::systemNumber())
    , m_colours(std::make_unique<ReadableColours>(*document()))
{
    RichText::substituteFonts();
    QFont standard(family);
    standard.setPointSizeF(points);
    setFont(standard);
    setAcceptRichText(true);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setBorderStyle(rtfFixedSingle);
    connect(document(), &QTextDocument::contentsChange, this,
        [this](int position, int, int added) { fitHeight(position, added); });
    load({});
    m_colours->setBackground(palette().color(QPalette::Base));
    connect(this, &QTextEdit::textChanged, this, [this] {
        m_pages.reset();
        Q_EMIT Change();
    });
    connect(this, &QTextEdit::selectionChanged, this, &RichTextBox::reportSelection);
    connect(this, &QTextEdit::cursorPositionChanged, this, &RichTextBox::reportSelection);
}

RichTextBox::~RichTextBox() = default;

// --- The whole text ---

void RichTextBox::load(const QString &rtf)
{
    m_given = rtf;
    document()->clear();
    m_mostHeight = 0;
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document()->setDefaultFont(font());
    RichText::read(rtf, *document(), RichText::reader(m_codePage));
    setTextCursor(QTextCursor(document()));
    wrap();
}

QString RichTextBox::TextRTF() const
{
    return document()->isModified() ? ownRTF() : m_given;
}

void RichTextBox::setTextRTF(const QString &rtf)
{
    load(rtf);
}

QString RichTextBox::ownRTF() const
{
    return QString::fromLatin1(RtfWriter::write(*document()));
}

void RichTextBox::setText(const QString &plain)
{
    load(plain);
    m_given = RtfText::isRtf(plain) ? plain : ownRTF();
}

// --- The box ---

void RichTextBox::setBorderStyle(int style)
{
    m_borderStyle = style;
    setFrameShape(style == rtfNoBorder ? QFrame::NoFrame : QFrame::StyledPanel);
}

int RichTextBox::widthInTwips() const
{
    return width() * twipsPerPixel;
}

void RichTextBox::setRightMargin(int twips)
{
    m_rightMargin = qMax(0, twips);
    wrap();
}

void RichTextBox::wrap()
{
    const int pixels = m_rightMargin / twipsPerPixel;
    const bool hidden = pixels >= viewport()->width() && pixels <= width();
    if (m_rightMargin == 0 || hidden) {
        setLineWrapMode(QTextEdit::WidgetWidth);
    } else {
        setLineWrapMode(QTextEdit::FixedPixelWidth);
        setLineWrapColumnOrWidth(pixels);
    }
}

/// The most that those characters can take on the screen, at their own size.
double RichTextBox::shownHeight(int from, int to) const
{
    const double width =
        qMax(16, lineWrapMode() == FixedPixelWidth ? lineWrapColumnOrWidth() : viewport()->width());
    double all = 0;
    for (QTextBlock block = document()->findBlock(from); block.isValid() && block.position() <= to;
         block = block.next()) {
        const QTextBlockFormat paragraph = block.blockFormat();
        const double inside = qMax(
            1.0, width - paragraph.leftMargin() - paragraph.rightMargin() - paragraph.textIndent());
        const auto add = [&](const QTextCharFormat &format, const QString &text) {
            const double points = format.hasProperty(QTextFormat::FontPointSize)
                ? format.fontPointSize()
                : font().pointSizeF();
            const double size = qMax(points * pixelsPerPoint, 1.0);
            double height = size * tallestFont * (1 + qAbs(format.baselineOffset()) / 100);
            if (format.isImageFormat())
                height += format.toImageFormat().height();
            // Two lines together are wider than the text's area, or the second one's first word
            // would stand in the first; a tab and a break may take a line however narrow they are.
            const double characters = double(text.size());
            const auto breaks = text.count(u'\t') + text.count(QChar::LineSeparator);
            const double lines =
                qMin(characters, 1 + double(breaks) + 2 * characters * size * widestFont / inside);
            all += lines * qMax(height, paragraph.lineHeight(height, 1));
        };
        add(block.charFormat(), QStringLiteral(" "));
        all += qAbs(paragraph.topMargin()) + qAbs(paragraph.bottomMargin());
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int start = qMax(from - fragment.position(), 0);
            const int end = qMin(to - fragment.position(), fragment.length());
            if (start < end)
                add(fragment.charFormat(), fragment.text().mid(start, end - start));
        }
    }
    return all;
}

/// Shows a text that may be too tall for the toolkit's layout smaller. Called before a change is
/// laid out.
void RichTextBox::fitHeight(int position, int added)
{
    if (wordWrapMode() != QTextOption::WrapAnywhere) {
        for (QTextBlock block = document()->findBlock(position);
             block.isValid() && block.position() <= position + added; block = block.next()) {
            if (hasEndlessWord(block)) {
                setWordWrapMode(QTextOption::WrapAnywhere);
                break;
            }
        }
    }
    m_mostHeight += shownHeight(position, position + added);
    if (m_mostHeight > mostHeight || m_scale < 1)
        m_mostHeight = shownHeight(0, document()->characterCount());
    const double scale = qMin(1.0, mostHeight / m_mostHeight);
    if (scale == m_scale)
        return;
    m_scale = scale;
    auto *layout = document()->documentLayout();
    if (scale < 1) {
        // The toolkit scales fonts, distances and pictures to the device, by whole dots an inch.
        const int dots = qMax(1, static_cast<int>(viewport()->logicalDpiY() * scale));
        const int perMetre = static_cast<int>(std::lround(dots / 0.0254));
        m_smallDevice = QImage(1, 1, QImage::Format_RGB32);
        m_smallDevice.setDotsPerMeterX(perMetre);
        m_smallDevice.setDotsPerMeterY(perMetre);
        layout->setPaintDevice(&m_smallDevice);
    } else {
        layout->setPaintDevice(viewport());
    }
    document()->markContentsDirty(0, document()->characterCount());
}

void RichTextBox::resizeEvent(QResizeEvent *event)
{
    if (m_mostHeight > mostHeight / 100)
        fitHeight(0, document()->characterCount()); // narrower lines make it taller
    QTextEdit::resizeEvent(event);
    wrap();
}

void RichTextBox::changeEvent(QEvent *event)
{
    QTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_colours) // not while the base is constructed
        m_colours->setBackground(palette().color(QPalette::Base));
}

// --- The selection ---

int RichTextBox::SelStart() const
{
    return textCursor().selectionStart();
}

void RichTextBox::setSelStart(int position)
{
    QTextCursor cursor = textCursor();
    cursor.setPosition(qBound(0, position, document()->characterCount() - 1));
    setTextCursor(cursor);
}

int RichTextBox::SelLength() const
{
    return textCursor().selectionEnd() - textCursor().selectionStart();
}

void RichTextBox::setSelLength(int length)
{
    QTextCursor cursor = textCursor();
    const int start = cursor.selectionStart();
    const int end = static_cast<int>(
        qBound(qint64(start), qint64(start) + length, qint64(document()->characterCount() - 1)));
    cursor.setPosition(start);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

QString RichTextBox::SelText() const
{
    return textCursor().selection().toPlainText();
}

void RichTextBox::setSelText(const QString &plain)
{
    QTextCursor cursor = textCursor();
    QTextCharFormat format = currentCharFormat();
    format.clearProperty(QTextFormat::ObjectType); // behind a picture the text would be one, too
    cursor.insertText(plain, format);
    setTextCursor(cursor);
}

QString RichTextBox::SelRTF() const
{
    const QTextCursor cursor = textCursor();
    return cursor.hasSelection() ? QString::fromLatin1(RtfWriter::writeSelection(cursor))
                                 : QString();
}

void RichTextBox::setSelRTF(const QString &rtf)
{
    if (!RtfText::isRtf(rtf)) {
        setSelText(rtf);
        return;
    }
    QTextDocument source;
    source.setDefaultFont(font());
    RtfReader from = RichText::reader(m_codePage);
    from.read(RtfText::toBytes(rtf, m_codePage), source);
    insertDocument(source, from.endedWithParagraph());
}

void RichTextBox::insertDocument(const QTextDocument &source, bool endsWithParagraph)
{
    for (QTextBlock block = source.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (!it.fragment().charFormat().isImageFormat())
                continue;
            const QUrl name(it.fragment().charFormat().toImageFormat().name());
            document()->addResource(QTextDocument::ImageResource, name,
                source.resource(QTextDocument::ImageResource, name));
        }
    }
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    const QTextBlockFormat rest = cursor.blockFormat();
    cursor.insertFragment(QTextDocumentFragment(&source));
    if (endsWithParagraph && cursor.blockFormat().hasProperty(RtfRowProperty))
        cursor.insertBlock(rest);
    else if (endsWithParagraph)
        cursor.insertBlock();
    cursor.endEditBlock();
    setTextCursor(cursor);
}

void RichTextBox::insertPicture(const QImage &image)
{
    const RtfPicture picture = RtfPicture::fromImage(image);
    qint64 memory = image.sizeInBytes() * 8 + (1 << 20);
    const QString name =
        RtfPicture::addResource(*document(), picture.resourceName(), picture.decode({}, memory));
    QTextCursor cursor = textCursor();
    cursor.insertText(QString(QChar::ObjectReplacementCharacter),
        picture.toFormat(RtfProtection::typed(currentCharFormat(), font()), name));
    setTextCursor(cursor);
}

QTextDocumentFragment RichTextBox::fragmentOf(const QImage &image) const
{
    QTextDocument document;
    QTextCursor(&document).insertText(QString(QChar::ObjectReplacementCharacter),
        RtfPicture::fromImage(image).toFormat(currentCharFormat(), QString()));
    return QTextDocumentFragment(&document);
}

qint64 RichTextBox::lengthWith(const QTextDocumentFragment &pasted) const
{
    const std::unique_ptr<QTextDocument> trial(document()->clone());
    QTextCursor cursor(trial.get());
    cursor.setPosition(textCursor().anchor());
    cursor.setPosition(textCursor().position(), QTextCursor::KeepAnchor);
    cursor.insertFragment(pasted);
    return RtfWriter::write(*trial).size();
}

bool RichTextBox::insertSmallerPicture(const QImage &image)
{
    constexpr int smallestSide = 8;
    const qint64 bare = lengthWith({});
    QImage smaller = image;
    for (;;) {
        const qint64 length = lengthWith(fragmentOf(smaller));
        if (length <= m_longestRTF)
            break;
        const double room = std::max<qint64>(0, m_longestRTF - bare) / double(length - bare);
        const QSize size = smaller.size() * (0.98 * std::sqrt(room)); // less in each round
        if (std::max(size.width(), size.height()) < smallestSide)
            return false;
        smaller =
            image.scaled(size.expandedTo({1, 1}), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    insertPicture(smaller);
    return true;
}

void RichTextBox::reportSelection()
{
    const QTextCursor cursor = textCursor();
    const std::pair now(cursor.anchor(), cursor.position());
    if (std::exchange(m_reportedSelection, now) != now)
        Q_EMIT SelChange();
}

// --- Protected text ---

bool RichTextBox::isLocked(RtfProtection::Touch touch) const
{
    return RtfProtection::isLocked(textCursor(), touch);
}

void RichTextBox::dropLockedFormat()
{
    if (textCursor().hasSelection())
        return;
    const QTextCharFormat beside = currentCharFormat();
    const QTextCharFormat typed = RtfProtection::typed(beside, font());
    if (typed != beside)
        setCurrentCharFormat(typed);
}

void RichTextBox::keyPressEvent(QKeyEvent *event)
{
    if (isReadOnly()) {
        QTextEdit::keyPressEvent(event);
        return;
    }
    if (RtfProtection::isLocked(textCursor(), *event)) {
        QApplication::beep();
        event->accept();
        return;
    }
    if (pressKey(*event)) {
        event->accept();
        return;
    }
    dropLockedFormat();
    QTextEdit::keyPressEvent(event);
}

/// What keys do in lists and tables; true when that is all.
bool RichTextBox::pressKey(const QKeyEvent &key)
{
    QTextCursor cursor = textCursor();
    const QTextCursor before = cursor;
    if (key.matches(QKeySequence::Cut) && RtfRowEdit::cutsRows(cursor)) {
        copy();
        RtfRowEdit::clearCells(cursor);
        setTextCursor(cursor);
        return true;
    }
    const bool done = RtfRowEdit::keyPress(cursor, key);
    if (cursor != before || cursor.anchor() != before.anchor())
        setTextCursor(cursor);
    if (done)
        return true;
    const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    return isEnter && (key.modifiers() & ~Qt::KeypadModifier) == 0 && enterInList();
}

bool RichTextBox::enterInList()
{
    QTextCursor cursor = textCursor();
    const QTextCharFormat typed = currentCharFormat();
    if (cursor.currentList() && cursor.block().length() == 1) {
        setSelBullet(false); // the list ends with an item without text
        setCurrentCharFormat(typed);
        return true;
    }
    const auto format = RtfNumbering::enter(cursor);
    if (!format)
        return false;
    setTextCursor(cursor);
    setCurrentCharFormat(RtfProtection::typed(*format, font()));
    ensureCursorVisible();
    return true;
}

void RichTextBox::inputMethodEvent(QInputMethodEvent *event)
{
    if (isLocked(Touch::Insertion)) {
        event->accept();
        return;
    }
    if (!event->commitString().isEmpty() || !event->preeditString().isEmpty())
        clearCutRows();
    dropLockedFormat();
    QTextEdit::inputMethodEvent(event);
}

void RichTextBox::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu *menu = createStandardContextMenu(event->pos());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (isLocked(Touch::Insertion)) {
        for (const char *name : {"edit-cut", "edit-paste", "edit-delete"}) {
            if (auto *action = menu->findChild<QAction *>(QLatin1StringView(name)))
                action->setEnabled(false);
        }
    }
    menu->popup(event->globalPos());
}

void RichTextBox::dropEvent(QDropEvent *event)
{
    // Protected text and parts of rows may be dragged out, but stay.
    if (event->source() == viewport() || event->source() == this) {
        if (isLocked(Touch::Nothing) || RtfRowEdit::cutsRows(textCursor()))
            event->setDropAction(Qt::CopyAction);
    }
    QTextEdit::dropEvent(event);
}

void RichTextBox::clearCutRows()
{
    QTextCursor cursor = textCursor();
    if (!RtfRowEdit::cutsRows(cursor))
        return;
    RtfRowEdit::clearCells(cursor);
    setTextCursor(cursor);
}

// --- Clipboard ---

QMimeData *RichTextBox::createMimeDataFromSelection() const
{
    return RtfMimeData::fromSelection(textCursor());
}

bool RichTextBox::canInsertFromMimeData(const QMimeData *source) const
{
    return !isReadOnly() && !isLocked(Touch::Insertion) && RtfMimeData::isReadable(*source);
}

void RichTextBox::insertFromMimeData(const QMimeData *source)
{
    if (!canInsertFromMimeData(source))
        return;
    const bool inRow = RtfRowEdit::isInRow(textCursor());
    QTextDocument text;
    text.setDefaultFont(font());
    RtfReader from = RichText::reader(m_codePage);
    const auto makeRoom = [this] {
        clearCutRows();
        dropLockedFormat();
    };
    const auto refused = [this](const QTextDocumentFragment &pasted, const QImage &picture) {
        const qint64 length = lengthWith(pasted);
        if (length > m_longestRTF)
            Q_EMIT PictureTooLong(picture, length);
        return length > m_longestRTF;
    };
    if (const auto endsWithParagraph = RtfMimeData::readFormatted(*source, from, text)) {
        if (inRow)
            RtfRowEdit::fitCell(text);
        if (m_longestRTF > 0 && text.toPlainText().contains(QChar::ObjectReplacementCharacter)
            && refused(QTextDocumentFragment(&text), {}))
            return;
        makeRoom();
        insertDocument(text, *endsWithParagraph && !inRow);
    } else if (source->hasImage()) {
        const QImage image = qvariant_cast<QImage>(source->imageData());
        if (image.isNull() || (m_longestRTF > 0 && refused(fragmentOf(image), image)))
            return;
        makeRoom();
        insertPicture(image);
    } else {
        makeRoom();
        setSelText(inRow ? RtfRowEdit::fittedCell(source->text()) : source->text());
    }
    ensureCursorVisible();
}

// --- Printing ---

RichTextPages &RichTextBox::pages()
{
    if (!m_pages)
        m_pages = std::make_unique<RichTextPages>(*document());
    return *m_pages;
}

void RichTextBox::SelPrint(
    QPainter &painter, const QRect &area, const std::function<void()> &newPage, bool selectionOnly)
{
    QTextDocument part;
    part.setDefaultFont(font());
    if (selectionOnly && SelLength() > 0)
        RichText::reader(m_codePage).read(RtfWriter::writeSelection(textCursor()), part);
    else
        RichText::reader(m_codePage).read(RtfWriter::write(*document()), part);
    RichTextPages pages(part);
    const int length = part.characterCount() - 1;
    for (int first = 0;;) {
        const int beyond = pages.firstBeyond(first, area.size());
        pages.draw(painter, area, first, beyond);
        first = beyond;
        if (first >= length)
            return;
        newPage();
    }
}
