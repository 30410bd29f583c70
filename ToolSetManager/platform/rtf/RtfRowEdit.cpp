#include "platform/rtf/RtfRowEdit.h"

#include "platform/rtf/RtfProtection.h"
#include "platform/rtf/RtfRow.h"
#include "platform/rtf/RtfSelection.h"

#include <QKeyEvent>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace {

int endOf(const QTextBlock &block)
{
    return block.position() + block.length() - 1;
}

bool isBlank(const QTextBlock &row)
{
    const QString text = row.text();
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c == u'\t'; });
}

bool isEmptyParagraph(const QTextBlock &block)
{
    return block.length() == 1 && !RtfRow::isRow(block);
}

/// What is at that place of the block, counted in the document; a null character outside.
QChar characterAt(const QTextBlock &block, int position)
{
    const int index = position - block.position();
    return index >= 0 && index < block.length() - 1 ? block.text().at(index) : QChar();
}

/// A new row like the cursor's behind it; the cursor goes to its first cell.
void addRow(QTextCursor &cursor)
{
    const QTextBlock row = cursor.block();
    const QTextCharFormat format =
        row.begin().atEnd() ? row.charFormat() : row.begin().fragment().charFormat();
    const auto tabs = row.text().count(u'\t');
    cursor.beginEditBlock();
    cursor.movePosition(QTextCursor::EndOfBlock);
    cursor.insertBlock(row.blockFormat(), format);
    cursor.insertText(QString(tabs, u'\t'), format);
    cursor.movePosition(QTextCursor::StartOfBlock);
    cursor.endEditBlock();
}

void toNextCell(QTextCursor &cursor)
{
    const QTextBlock row = cursor.block();
    const auto tab = row.text().indexOf(u'\t', cursor.position() - row.position());
    if (tab >= 0)
        cursor.setPosition(row.position() + static_cast<int>(tab) + 1);
    else if (RtfRow::isRow(row.next()))
        cursor.setPosition(row.next().position());
    else
        addRow(cursor);
}

/// False in the first cell of a table.
bool toPreviousCell(QTextCursor &cursor)
{
    QTextBlock row = cursor.block();
    const auto tab = row.text().left(cursor.position() - row.position()).lastIndexOf(u'\t');
    qsizetype end = tab; // of the cell before, in its row
    if (tab < 0) {
        row = row.previous();
        if (!RtfRow::isRow(row))
            return false;
        end = row.length() - 1;
    }
    const auto before = end > 0 ? row.text().lastIndexOf(u'\t', end - 1) : -1;
    cursor.setPosition(row.position() + static_cast<int>(before) + 1);
    return true;
}

/// A new line in the cell; in a row without text, the end of the table; before a table that a text
/// begins with, a paragraph.
void enter(QTextCursor &cursor)
{
    const QTextBlock row = cursor.block();
    const QTextCharFormat format = cursor.charFormat();
    cursor.beginEditBlock();
    if (row.blockNumber() == 0 && cursor.atBlockStart()) {
        const QTextBlockFormat look = row.blockFormat();
        cursor.insertBlock(look, format);
        QTextCursor above(row);
        RtfSelection::setParagraph(above, {});
    } else if (isBlank(row)) {
        cursor.setPosition(row.position());
        cursor.setPosition(endOf(row), QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        RtfSelection::setParagraph(cursor, {});
    } else {
        cursor.insertText(QString(QChar::LineSeparator), format);
    }
    cursor.endEditBlock();
}

/// True when the key would join a row with another paragraph, or two cells. Instead of that the
/// cursor goes over the edge.
bool backspace(QTextCursor &cursor)
{
    const QTextBlock block = cursor.block();
    const bool inRow = RtfRow::isRow(block);
    if (!cursor.atBlockStart()) {
        if (!inRow || characterAt(block, cursor.position() - 1) != u'\t')
            return false;
    } else if (!block.previous().isValid() || block.textList()) {
        return false;
    } else if (inRow && isBlank(block)) {
        cursor.beginEditBlock();
        cursor.setPosition(endOf(block.previous()));
        cursor.setPosition(endOf(block), QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        cursor.endEditBlock();
        return true;
    } else {
        const bool joins = inRow ? !isEmptyParagraph(block.previous())
                                 : RtfRow::isRow(block.previous()) && block.length() > 1;
        if (!joins)
            return false;
    }
    cursor.movePosition(QTextCursor::Left);
    return true;
}

bool deletes(const QTextCursor &cursor)
{
    const QTextBlock block = cursor.block();
    const bool inRow = RtfRow::isRow(block);
    if (!cursor.atBlockEnd())
        return inRow && characterAt(block, cursor.position()) == u'\t';
    const QTextBlock next = block.next();
    if (!next.isValid())
        return false;
    return inRow ? !isEmptyParagraph(next) : RtfRow::isRow(next) && block.length() > 1;
}

} // namespace

namespace RtfRowEdit {

bool isInRow(const QTextCursor &cursor)
{
    return RtfRow::isRow(cursor.document()->findBlock(cursor.selectionStart()));
}

bool cutsRows(const QTextCursor &cursor)
{
    if (!cursor.hasSelection())
        return false;
    const int from = cursor.selectionStart();
    const int to = cursor.selectionEnd();
    const QTextBlock first = cursor.document()->findBlock(from);
    for (QTextBlock block = first; block.isValid() && block.position() <= to;
         block = block.next()) {
        if (!RtfRow::isRow(block))
            continue;
        if (block.position() == to && from < to) { // what is above would be joined with it
            if (from > first.position())
                return true;
            continue;
        }
        const bool whole = from <= block.position() && to > endOf(block);
        const bool joined = from < block.position() || to > endOf(block);
        const QString part = block.text().mid(std::max(0, from - block.position()),
            std::max(0, to - std::max(from, block.position())));
        if (!whole && (joined || part.contains(u'\t')))
            return true;
    }
    return false;
}

void clearCells(QTextCursor &cursor)
{
    const int from = cursor.selectionStart();
    QTextCursor at(cursor.document());
    int end = cursor.selectionEnd();
    cursor.beginEditBlock();
    // From the end on, so that places before stay.
    for (int i = end; i >= from; --i) {
        const QChar c = i > from ? cursor.document()->characterAt(i - 1) : QChar(u'\t');
        if (c != u'\t' && c != QChar::ParagraphSeparator)
            continue;
        if (c == u'\t' && i > from && !RtfRow::isRow(cursor.document()->findBlock(i - 1)))
            continue; // one of a paragraph beside the table
        at.setPosition(i);
        at.setPosition(end, QTextCursor::KeepAnchor);
        at.removeSelectedText();
        end = i - 1;
    }
    cursor.setPosition(from);
    cursor.endEditBlock();
}

bool keyPress(QTextCursor &cursor, const QKeyEvent &key)
{
    const auto reach = RtfProtection::reachOf(cursor, key);
    const bool plain = (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
    const bool isDelete = key.key() == Qt::Key_Backspace || key.key() == Qt::Key_Delete;
    if (cursor.hasSelection()) {
        const bool removes = reach || isDelete;
        const bool types = plain && !key.text().isEmpty() && key.key() != Qt::Key_Escape;
        if ((!removes && !types) || !cutsRows(cursor))
            return false;
        clearCells(cursor);
        if (removes)
            return true;
    } else if (reach) {
        return cutsRows(*reach);
    }
    switch (key.key()) {
    case Qt::Key_Backspace:
        return !cursor.hasSelection() && backspace(cursor);
    case Qt::Key_Delete:
        return !cursor.hasSelection() && deletes(cursor);
    default:
        break;
    }
    if (!plain || !isInRow(cursor))
        return false;
    switch (key.key()) {
    case Qt::Key_Tab:
        toNextCell(cursor);
        return true;
    case Qt::Key_Backtab:
        return toPreviousCell(cursor);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        enter(cursor);
        return true;
    default:
        return false;
    }
}

void fitCell(QTextDocument &text)
{
    QTextCursor at(&text);
    at.beginEditBlock();
    for (int i = text.characterCount() - 2; i >= 0; --i) {
        const QChar c = text.characterAt(i);
        if (c != u'\t' && c != QChar::ParagraphSeparator)
            continue;
        at.setPosition(i);
        const QTextCharFormat format = at.charFormat();
        at.deleteChar();
        at.insertText(QString(c == u'\t' ? QChar(u' ') : QChar(QChar::LineSeparator)), format);
    }
    at.endEditBlock();
}

QString fittedCell(const QString &plain)
{
    QString text = plain;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(u'\n', QChar(QChar::LineSeparator));
    return text.replace(u'\t', u' ');
}

} // namespace RtfRowEdit
