#pragma once

class QString;
class QWidget;

/// The programs that the desktop has for files of other kinds than this program's own.
namespace DesktopProgram {

/// Opens a file in the program that the desktop has for its kind; a message says so where there is
/// none.
void open(QWidget *parent, const QString &path);

} // namespace DesktopProgram
