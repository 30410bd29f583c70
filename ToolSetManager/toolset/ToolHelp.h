#pragma once

class CVBATool;
class QWidget;

/// The help of a tool in a window of its own beside the window of its set.
namespace ToolHelp {

/// Opens it on the right of \a window where there is room for it, with a little to spare; else on
/// the left; else at the right edge of the screen, where it covers least.
void show(const CVBATool &tool, const QWidget &window);

} // namespace ToolHelp
