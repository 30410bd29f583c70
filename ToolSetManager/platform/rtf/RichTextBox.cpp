#include "platform/rtf/RichTextBox.h"

#include "platform/rtf/ReadableColours.h"
#include "platform/rtf/RichText.h"
#include "platform/rtf/RichTextPages.h"
#include "platform/rtf/RtfMimeData.h"
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
constexpr int twipsPerHalfPoint = Twips::perPoint / 2;
constexpr int bulletHang = 200; ///< Between bullet and text where the paragraph says nothing.
constexpr int nextTab = 720; ///< Distance of a stop that is added.

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
    cursor.insertFragment(QTextDocumentFragment(&source));
    if (endsWithParagraph)
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

// --- Formats of the selection ---

template <class Get>
auto RichTextBox::charValue(Get get) const -> std::optional<decltype(get(QTextCharFormat()))>
{
    std::optional<decltype(get(QTextCharFormat()))> value;
    bool mixed = false;
    RtfSelection::visitCharacters(textCursor(), [&](const QTextCharFormat &format) {
        const auto here = get(format);
        mixed = value && *value != here;
        value = here;
        return !mixed;
    });
    if (mixed)
        return std::nullopt;
    return value ? value : get(currentCharFormat()); // no text, or paragraph marks alone
}

template <class Get>
auto RichTextBox::paragraphValue(Get get) const -> std::optional<decltype(get(RtfParagraphStyle()))>
{
    std::optional<decltype(get(RtfParagraphStyle()))> value;
    bool mixed = false;
    RtfSelection::visitParagraphs(textCursor(), [&](const RtfParagraphStyle &style) {
        const auto here = get(style);
        mixed = value && *value != here;
        value = here;
        return !mixed;
    });
    return mixed ? std::nullopt : value;
}

void RichTextBox::changeCharacters(const RtfSelection::CharacterChange &change)
{
    if (textCursor().hasSelection())
        RtfSelection::changeCharacters(textCursor(), font(), change);
    else
        setCurrentCharFormat(RtfSelection::changed(currentCharFormat(), font(), change));
}

void RichTextBox::setFlag(RtfCharStyle::Flag flag, bool on)
{
    changeCharacters([flag, on](RtfCharStyle &style) {
        style.flags = static_cast<quint16>(on ? style.flags | flag : style.flags & ~flag);
    });
}

void RichTextBox::changeParagraphs(const RtfSelection::ParagraphChange &change)
{
    RtfSelection::changeParagraphs(textCursor(), change);
}

std::optional<QString> RichTextBox::SelFontName() const
{
    return charValue(
        [this](const QTextCharFormat &f) { return RtfCharStyle::fromFormat(f, font()).family; });
}

void RichTextBox::setSelFontName(const QString &family)
{
    changeCharacters([&family](RtfCharStyle &style) { style.family = family; });
}

std::optional<double> RichTextBox::SelFontSize() const
{
    return charValue([this](const QTextCharFormat &f) {
        return RtfCharStyle::fromFormat(f, font()).halfPoints / 2.0;
    });
}

void RichTextBox::setSelFontSize(double points)
{
    constexpr double most = RtfCharStyle::maximumHalfPoints;
    const int halfPoints = static_cast<int>(std::lround(qBound(1.0, points * 2, most)));
    changeCharacters([halfPoints](RtfCharStyle &style) { style.halfPoints = halfPoints; });
}

std::optional<bool> RichTextBox::SelBold() const
{
    return charValue([](const QTextCharFormat &f) { return f.fontWeight() >= QFont::DemiBold; });
}

void RichTextBox::setSelBold(bool on)
{
    setFlag(RtfCharStyle::Bold, on);
}

std::optional<bool> RichTextBox::SelItalic() const
{
    return charValue([](const QTextCharFormat &f) { return f.fontItalic(); });
}

void RichTextBox::setSelItalic(bool on)
{
    setFlag(RtfCharStyle::Italic, on);
}

std::optional<bool> RichTextBox::SelUnderline() const
{
    return charValue([](const QTextCharFormat &f) { return f.fontUnderline(); });
}

void RichTextBox::setSelUnderline(bool on)
{
    setFlag(RtfCharStyle::Underline, on);
}

std::optional<bool> RichTextBox::SelStrikeThru() const
{
    return charValue([](const QTextCharFormat &f) { return f.fontStrikeOut(); });
}

void RichTextBox::setSelStrikeThru(bool on)
{
    setFlag(RtfCharStyle::Strike, on);
}

std::optional<bool> RichTextBox::SelProtected() const
{
    return charValue([](const QTextCharFormat &f) { return RtfCharStyle::isProtected(f); });
}

void RichTextBox::setSelProtected(bool on)
{
    setFlag(RtfCharStyle::Protected, on);
}

std::optional<QColor> RichTextBox::SelColor() const
{
    const auto colour = charValue(
        [this](const QTextCharFormat &f) { return RtfCharStyle::fromFormat(f, font()).colour; });
    if (!colour)
        return std::nullopt;
    return *colour ? QColor(**colour) : palette().color(QPalette::Text);
}

void RichTextBox::setSelColor(const QColor &colour)
{
    changeCharacters([&colour](RtfCharStyle &style) { style.colour = colour.rgb(); });
}

std::optional<int> RichTextBox::SelCharOffset() const
{
    return charValue([](const QTextCharFormat &f) {
        return f.intProperty(RtfOffsetProperty) * twipsPerHalfPoint;
    });
}

void RichTextBox::setSelCharOffset(int twips)
{
    constexpr int limit = RtfCharStyle::maximumHalfPoints;
    const int offset =
        qBound(-limit, static_cast<int>(std::lround(double(twips) / twipsPerHalfPoint)), limit);
    changeCharacters([offset](RtfCharStyle &style) { style.offset = offset; });
}

std::optional<int> RichTextBox::SelAlignment() const
{
    return paragraphValue([](const RtfParagraphStyle &style) -> int {
        switch (style.alignment) {
        case RtfParagraphStyle::Right:
            return rtfRight;
        case RtfParagraphStyle::Centre:
            return rtfCenter;
        default:
            return rtfLeft;
        }
    });
}

void RichTextBox::setSelAlignment(int alignment)
{
    changeParagraphs([alignment](RtfParagraphStyle &style) {
        style.alignment = alignment == rtfRight ? RtfParagraphStyle::Right
            : alignment == rtfCenter            ? RtfParagraphStyle::Centre
                                                : RtfParagraphStyle::Left;
    });
}

std::optional<bool> RichTextBox::SelBullet() const
{
    return paragraphValue([](const RtfParagraphStyle &style) { return style.bullet; });
}

void RichTextBox::setSelBullet(bool on)
{
    changeParagraphs([on](RtfParagraphStyle &style) {
        if (on && !style.bullet && style.firstIndent == 0) {
            style.leftIndent += bulletHang;
            style.firstIndent = -bulletHang;
        } else if (!on && style.bullet && style.firstIndent == -bulletHang) {
            style.leftIndent -= bulletHang;
            style.firstIndent = 0;
        }
        style.bullet = on;
    });
}

std::optional<int> RichTextBox::SelIndent() const
{
    return paragraphValue(
        [](const RtfParagraphStyle &style) { return style.leftIndent + style.firstIndent; });
}

void RichTextBox::setSelIndent(int twips)
{
    changeParagraphs([twips](RtfParagraphStyle &style) {
        style.leftIndent =
            RtfParagraphStyle::bounded(RtfParagraphStyle::bounded(twips) - style.firstIndent);
    });
}

std::optional<int> RichTextBox::SelHangingIndent() const
{
    return paragraphValue([](const RtfParagraphStyle &style) { return -style.firstIndent; });
}

void RichTextBox::setSelHangingIndent(int twips)
{
    changeParagraphs([twips](RtfParagraphStyle &style) {
        style.leftIndent = RtfParagraphStyle::bounded(
            style.leftIndent + style.firstIndent + RtfParagraphStyle::bounded(twips));
        style.firstIndent = -RtfParagraphStyle::bounded(twips);
    });
}

std::optional<int> RichTextBox::SelRightIndent() const
{
    return paragraphValue([](const RtfParagraphStyle &style) { return style.rightIndent; });
}

void RichTextBox::setSelRightIndent(int twips)
{
    changeParagraphs([twips](RtfParagraphStyle &style) {
        style.rightIndent = RtfParagraphStyle::bounded(twips);
    });
}

std::optional<int> RichTextBox::SelTabCount() const
{
    return paragraphValue(
        [](const RtfParagraphStyle &style) { return static_cast<int>(style.tabs.size()); });
}

void RichTextBox::setSelTabCount(int count)
{
    const auto wanted = qBound(qsizetype(0), qsizetype(count), RtfParagraphStyle::maximumTabs);
    changeParagraphs([wanted](RtfParagraphStyle &style) {
        style.tabs.resize(qMin(wanted, style.tabs.size()));
        while (style.tabs.size() < wanted) {
            const int last = style.tabs.isEmpty() ? 0 : style.tabs.last().position;
            if (last > RtfParagraphStyle::maximumLength - nextTab)
                break; // no text has a stop further out
            style.tabs.append({last + nextTab, RtfTab::Left});
        }
    });
}

std::optional<int> RichTextBox::SelTabs(int index) const
{
    const auto position = paragraphValue([index](const RtfParagraphStyle &style) {
        return index >= 0 && index < style.tabs.size() ? style.tabs.at(index).position : -1;
    });
    return position == -1 ? std::nullopt : position;
}

void RichTextBox::setSelTabs(int index, int twips)
{
    changeParagraphs([index, twips](RtfParagraphStyle &style) {
        if (index < 0 || index >= style.tabs.size())
            return;
        style.tabs[index].position = RtfParagraphStyle::bounded(twips);
        std::sort(style.tabs.begin(), style.tabs.end(),
            [](const RtfTab &a, const RtfTab &b) { return a.position < b.position; });
    });
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
    dropLockedFormat();
    QTextEdit::keyPressEvent(event);
}

void RichTextBox::inputMethodEvent(QInputMethodEvent *event)
{
    if (isLocked(Touch::Insertion)) {
        event->accept();
        return;
    }
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
    // Protected text may be dragged out, but stays.
    if (event->source() == viewport() || event->source() == this) {
        if (isLocked(Touch::Nothing))
            event->setDropAction(Qt::CopyAction);
    }
    QTextEdit::dropEvent(event);
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
    dropLockedFormat();
    QTextDocument text;
    text.setDefaultFont(font());
    RtfReader from = RichText::reader(m_codePage);
    const auto refused = [this](const QTextDocumentFragment &pasted, const QImage &picture) {
        const qint64 length = lengthWith(pasted);
        if (length > m_longestRTF)
            Q_EMIT PictureTooLong(picture, length);
        return length > m_longestRTF;
    };
    if (const auto endsWithParagraph = RtfMimeData::readFormatted(*source, from, text)) {
        if (m_longestRTF > 0 && text.toPlainText().contains(QChar::ObjectReplacementCharacter)
            && refused(QTextDocumentFragment(&text), {}))
            return;
        insertDocument(text, *endsWithParagraph);
    } else if (source->hasImage()) {
        const QImage image = qvariant_cast<QImage>(source->imageData());
        if (image.isNull() || (m_longestRTF > 0 && refused(fragmentOf(image), image)))
            return;
        insertPicture(image);
    } else {
        setSelText(source->text());
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
