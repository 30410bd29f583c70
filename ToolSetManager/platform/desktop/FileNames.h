#pragma once

#include <QString>

namespace FileNames {

/// True when the path's bytes were not UTF-8: the toolkit has put U+FFFD in their place, and finds
/// no file by such a path.
inline bool isUnreadable(const QString &path)
{
    return path.contains(QChar::ReplacementCharacter);
}

} // namespace FileNames
