#include "platform/rtf/RtfSelection.h"

#include "platform/rtf/RtfPicture.h"
#include "platform/rtf/RtfRow.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>

namespace RtfSelection {

void visitCharacters(
    const QTextCursor &cursor, const std::function<bool(const QTextCharFormat &)> &visit)
{
    const int from = cursor.selectionStart();
    const int to = cursor.selectionEnd();
    for (QTextBlock block = cursor.document()->findBlock(from);
         block.isValid() && block.position() < to; block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (fragment.position() < to && fragment.position() + fragment.length() > from
                && !visit(fragment.charFormat()))
                return;
        }
    }
}

void visitParagraphs(
    const QTextCursor &cursor, const std::function<bool(const RtfParagraphStyle &)> &visit)
{
    const int first = cursor.selectionStart();
    for (QTextBlock block = cursor.document()->findBlock(first);
         block.isValid() && (block.position() < cursor.selectionEnd() || block.position() <= first);
         block = block.next()) {
        if (!visit(RtfParagraphStyle::fromFormat(block.blockFormat(), block.textList() != nullptr)))
            return;
    }
}

QTextCharFormat changed(
    const QTextCharFormat &format, const QFont &standard, const CharacterChange &change)
{
    RtfCharStyle style = RtfCharStyle::fromFormat(format, standard);
    const QString family = style.family;
    change(style);
    QTextCharFormat text = style.toFormat();
    if (style.family == family && format.hasProperty(RtfFamilyProperty))
        text.setFontFamilies(format.fontFamilies().toStringList()); // which may stand in for it
    const auto picture = RtfPicture::fromFormat(format);
    return picture ? QTextCharFormat(picture->toFormat(text, format.toImageFormat().name())) : text;
}

void setParagraph(QTextCursor &at, const RtfParagraphStyle &style)
{
    QTextList *list = at.currentList();
    QTextBlockFormat format = style.toFormat(RtfCharStyle::halfPointsOf(at.blockCharFormat()));
    if (style.bullet && list)
        format.setObjectIndex(list->objectIndex());
    at.setBlockFormat(format);
    if (style.bullet && !list) {
        QTextListFormat listFormat;
        listFormat.setStyle(QTextListFormat::ListDisc);
        listFormat.setIndent(0);
        at.createList(listFormat);
    }
}

void changeCharacters(
    const QTextCursor &cursor, const QFont &standard, const CharacterChange &change)
{
    struct Part
    {
        int from;
        int to; ///< The same: the mark of the paragraph that starts there.
        QTextCharFormat format;
    };
    QTextDocument *document = cursor.document();
    QList<Part> parts;
    const int from = cursor.selectionStart();
    const int to = cursor.selectionEnd();
    for (QTextBlock block = document->findBlock(from); block.isValid() && block.position() < to;
         block = block.next()) {
        if (block.position() >= from) {
            parts.append({block.position(), block.position(),
                changed(block.charFormat(), standard, change)});
        }
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int start = qMax(from, fragment.position());
            const int end = qMin(to, fragment.position() + fragment.length());
            if (start < end)
                parts.append({start, end, changed(fragment.charFormat(), standard, change)});
        }
    }
    QTextCursor range(document);
    range.beginEditBlock();
    for (const Part &part : std::as_const(parts)) {
        range.setPosition(part.from);
        range.setPosition(part.to, QTextCursor::KeepAnchor);
        if (part.from != part.to) {
            range.setCharFormat(part.format);
            continue;
        }
        range.setBlockCharFormat(part.format);
        if (range.currentList()) // whose bullet has the mark's size
            setParagraph(range, RtfParagraphStyle::fromFormat(range.blockFormat(), true));
    }
    range.endEditBlock();
}

void changeParagraphs(const QTextCursor &cursor, const ParagraphChange &change)
{
    const int first = cursor.selectionStart();
    const int to = cursor.selectionEnd();
    QTextCursor at(cursor);
    at.beginEditBlock();
    for (QTextBlock block = cursor.document()->findBlock(first);
         block.isValid() && (block.position() < to || block.position() <= first);
         block = block.next()) {
        RtfParagraphStyle style =
            RtfParagraphStyle::fromFormat(block.blockFormat(), block.textList());
        change(style);
        if (!style.row.isEmpty() && style != RtfRow(style.row).style())
            style.row.clear(); // a table has no room for what it looks like now
        at.setPosition(block.position());
        setParagraph(at, style);
    }
    at.endEditBlock();
}

} // namespace RtfSelection
