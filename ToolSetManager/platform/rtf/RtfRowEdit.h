#pragma once

class QKeyEvent;
class QString;
class QTextCursor;
class QTextDocument;

/// Editing in the rows of tables: the keys that move between cells, and whatever would tear a row
/// apart. A row keeps the tabs between its cells until all of it is deleted.
namespace RtfRowEdit {

/// True when the cursor is in a row.
bool isInRow(const QTextCursor &cursor);
/// True when deleting the selection would leave a part of a row.
bool cutsRows(const QTextCursor &cursor);
/// Deletes the selected text, but no row and nothing of its shape.
void clearCells(QTextCursor &cursor);

/// Does what a key means in a row and beside it; false when it means what it does elsewhere. A
/// selection that cuts rows is gone then.
bool keyPress(QTextCursor &cursor, const QKeyEvent &key);

/// Makes a text one that a cell can take: one paragraph without tabs.
void fitCell(QTextDocument &text);
QString fittedCell(const QString &plain);

} // namespace RtfRowEdit
