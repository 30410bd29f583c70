#pragma once

#include <QAccessible>

class QTextEdit;
class QWidget;

/// What screen readers are told of controls for which the toolkit's own answer is wrong or missing.
namespace Accessible {

/// Names a control that has no visible label. Combo boxes need this on Linux, where the toolkit
/// takes their names from labels only: the name is given by a label that is never shown.
void setName(QWidget &control, const QString &name);

/// What kind of thing a control is. To be called when the control is made: readers that have seen
/// it keep what they know.
void setRole(QWidget &control, QAccessible::Role role);

/// Makes a text that is only read a document, whose text can be read piece by piece.
void makeDocument(QTextEdit &text);
/// Formatted text that is edited: hidden text is not spoken.
void makeEditor(QTextEdit &text);

} // namespace Accessible
