#include "model/OldHelp.h"

#include "model/CVBATools.h"
#include "platform/rtf/RichText.h"

void OldHelp::update(CVBATools &tools, int codePage)
{
    if (tools.FileVersion() >= BmtFormat::currentVersion)
        return;
    const auto ownForm = [codePage](const QString &text) {
        return RichText::ownForm(text, QStringLiteral("MS Sans Serif"), 8.5, codePage);
    };
    const QString empty = ownForm(QString());
    for (const ToolPtr &tool : tools)
        tool->HelpString = tool->HelpString.isEmpty() ? empty : ownForm(tool->HelpString);
}
