#pragma once

#include <Qt>

class QWidget;

/// Keystrokes as if the user had pressed and released the key.
namespace SendKeys {

/// To the control that has the focus; nothing happens when none of the program's has it.
void send(Qt::Key key, Qt::KeyboardModifiers modifiers);

/// To that control, which the key may close; null for none.
void sendTo(QWidget *control, Qt::Key key, Qt::KeyboardModifiers modifiers);

} // namespace SendKeys
