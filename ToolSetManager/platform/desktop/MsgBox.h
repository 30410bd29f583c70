#pragma once

#include <QString>

class QWidget;

/// Modal message boxes. The text is shown as it stands, never as markup.
namespace MsgBox {

enum class Icon { Critical, Question, Exclamation, Information };
/// The first button is the one that Return presses; of NoYes, which stands in the same order, No.
enum class Buttons { Ok, YesNo, NoYes, YesNoCancel };
enum class Answer { Ok, Yes, No, Cancel };

/// An empty title stands for the application's. Escape and closing the box answer Cancel where
/// there is such a button, and OK where that is the only one; a question with Yes and No has to be
/// answered.
Answer show(
    QWidget *parent, const QString &text, Buttons buttons, Icon icon, const QString &title = {});

} // namespace MsgBox
