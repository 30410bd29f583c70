#pragma once

#include <QStringView>

/// Hot-key texts, which the add-in and users write in several ways: "Ctrl+Shift+F5", "CTRL-A",
/// "alt del", and, as the add-in's language sends keys, "^+{F5}" and "%a".
namespace HotKey {

/// One form for all ways to write the same key, "Ctrl+Alt+Shift+F5"; empty for a text that is no
/// key.
QString canonical(QStringView text);

} // namespace HotKey
