#pragma once

#include <QString>

class QWidget;

/// Modal message boxes. The text is shown as it stands, never as markup.
namespace MsgBox {

enum class Icon { Critical, Question, Exclamation, Information };
enum class Buttons { Ok, YesNo, YesNoCancel };
enum class Answer { Ok, Yes, No, Cancel };

/// An empty title stands for the application's. Closing the box answers Cancel where there is such
/// a button, No where there is only that, else Ok.
Answer show(
    QWidget *parent, const QString &text, Buttons buttons, Icon icon, const QString &title = {});

} // namespace MsgBox
