#pragma once

#include "model/CVBATools.h"

/// Tools and sets as lines of text.
namespace SetDump {

/// Names in the order of the set.
inline QStringList names(const CVBATools &set)
{
    QStringList all;
    for (const ToolPtr &tool : set)
        all.append(tool->Description);
    return all;
}

/// All of a tool but its picture: texts, then numbers; switches and masks in hexadecimal digits.
inline QString line(const CVBATool &tool)
{
    const auto hex = [](qint32 mask) { return QString::number(static_cast<quint32>(mask), 16); };
    return QStringList {tool.Description, tool.FileName, tool.Hotkey, tool.AppName16,
               tool.AppName32, tool.CommandLine, tool.HelpString}
               .join(u'|')
        + u"|%1 %2 %3 %4 %5 %6"_qs.arg(tool.ToolType)
              .arg(hex(tool.AccessOptions), hex(tool.FLAGS), hex(tool.VBEvents))
              .arg(tool.Enabled.raw())
              .arg(tool.HelpId);
}

/// Version, flags and descriptions of a set, then its tools.
inline QStringList lines(const CVBATools &set)
{
    QStringList all {u"%1 %2|%3|%4"_qs.arg(set.FileVersion())
                         .arg(set.FLAGS())
                         .arg(set.LongDescription(), set.Description())};
    for (const ToolPtr &tool : set)
        all.append(line(*tool));
    return all;
}

} // namespace SetDump
