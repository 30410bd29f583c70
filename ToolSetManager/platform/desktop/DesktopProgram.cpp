#include "platform/desktop/DesktopProgram.h"

#include "platform/desktop/Hourglass.h"
#include "platform/desktop/MsgBox.h"

#include <QDesktopServices>
#include <QUrl>

namespace DesktopProgram {

void open(QWidget *parent, const QString &path)
{
    bool opened = false;
    {
        const Hourglass busy;
        opened = QDesktopServices::openUrl(QUrl::fromLocalFile(path));
    }
    if (!opened) {
        MsgBox::show(parent,
            QStringLiteral("The desktop has no program that opens \"%1\".").arg(path),
            MsgBox::Buttons::Ok, MsgBox::Icon::Information);
    }
}

} // namespace DesktopProgram
