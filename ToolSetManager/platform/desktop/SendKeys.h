#pragma once

#include <Qt>

/// Sends a keystroke to the control that has the focus, as if the user had pressed the key.
namespace SendKeys {

/// Nothing happens when no control of the program has the focus.
void send(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

} // namespace SendKeys
