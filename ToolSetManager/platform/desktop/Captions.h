#pragma once

#include <QString>

/// Texts of the user's own (names, paths) where the toolkit takes some of their characters for
/// marks: with those doubled they are shown as they stand.
namespace Captions {

/// For a menu item: "&" marks the next letter as its key.
inline QString forMenu(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

/// For the title of a window: "[*]" is where a changed document is marked.
inline QString forTitle(QString text)
{
    return text.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}

} // namespace Captions
