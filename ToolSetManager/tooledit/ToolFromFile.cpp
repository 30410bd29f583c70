#include "tooledit/ToolFromFile.h"

#include "model/ToolFileRecognition.h"
#include "platform/desktop/mFileUtil.h"
#include "platform/picture/PictureControl.h"
#include "platform/picture/ProgramIcons.h"

#include <QFileInfo>

namespace ToolFromFile {

ToolPtr make(const QString &path, const QString &macroFolder)
{
    auto tool = std::make_shared<CVBATool>();
    const auto kind = ToolFileRecognition::kindOf(path, tool->ToolType);
    if (!kind)
        return nullptr;
    tool->ToolType = *kind;
    tool->setLocation(ToolFileRecognition::locationOf(path, macroFolder));
    tool->Description = ToolFileRecognition::nameOf(path);
    if (isProgram(*kind)) {
        PictureControl picIcon;
        PictureControl picConvert;
        picConvert.resize(CVBATool::pictureSide, CVBATool::pictureSide);
        if (loadIcon(tool->Location(), macroFolder, picIcon, picConvert))
            tool->Picture = picConvert.Picture();
    }
    return tool;
}

QString pathOf(const QString &location, const QString &macroFolder)
{
    if (QFileInfo(location).isAbsolute())
        return location;
    const QString path = mFileUtil::AddSeparator(macroFolder) + location;
    return QFileInfo(path).isFile() ? path : QString();
}

bool loadIcon(const QString &location, const QString &macroFolder, PictureControl &picIcon,
    PictureControl &picConvert)
{
    const ProgramIcons icons(pathOf(location, macroFolder));
    const QImage icon = icons.icon(0);
    if (icon.isNull())
        return false;
    picIcon.resize(icon.size());
    picIcon.setPicture(icon);
    picConvert.setPicture(picIcon.Image());
    picConvert.setPicture(picConvert.Image());
    return true;
}

bool isProgram(qint16 kind)
{
    return kind == CVBATool::StandardExecutable || kind == CVBATool::AddInExecutable;
}

} // namespace ToolFromFile
