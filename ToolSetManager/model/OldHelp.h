#pragma once

class CVBATools;

/// Help texts of files before the present version.
namespace OldHelp {

/// Gives the help texts of a set of an older file the form in which the rich-text box writes them,
/// as the window does when it opens such a file; an empty one becomes an empty document. Nothing
/// changes in a set of the present version. \a codePage is that of the file.
void update(CVBATools &tools, int codePage);

} // namespace OldHelp
