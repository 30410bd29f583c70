#include "toolset/ToolHelp.h"

#include "model/CVBATool.h"
#include "platform/text/Twips.h"
#include "richtext/frmToolHelp.h"

#include <QScreen>

void ToolHelp::show(const CVBATool &tool, const QWidget &window)
{
    auto *help = new frmToolHelp(window.window());
    constexpr Twips spare {300};
    const QRect own(window.mapToGlobal(QPoint(0, 0)), window.size());
    const QRect screenArea = window.screen()->geometry();
    const Twips width = Twips::fromPixels(help->width());
    const Twips end = Twips::fromPixels(screenArea.right() + 1);
    Twips left = Twips::fromPixels(own.right() + 1);
    if (left + width + spare > end) {
        left = Twips::fromPixels(own.left()) - width;
        if (left < Twips::fromPixels(screenArea.left()))
            left = end - width;
    }
    help->ShowHelp(tool.HelpString, static_cast<float>(left.value),
        static_cast<float>(Twips::fromPixels(own.top()).value), tool.Description);
}
