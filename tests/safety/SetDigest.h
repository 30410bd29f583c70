#pragma once

#include "model/CVBATools.h"

#include <QCryptographicHash>

/// Two sets have the same digest when a tool set file holds them alike. Pictures are left out,
/// because a file has them as they are drawn.
inline QByteArray digestOf(const CVBATools &set, const QList<ToolPtr> &tools)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    const auto add = [&hash](const QString &text) {
        hash.addData(text.toUtf8());
        hash.addData(QByteArrayView("\0", 1));
    };
    add(set.Description());
    add(set.LongDescription());
    for (const ToolPtr &tool : tools) {
        for (const QString &text : {tool->Description, tool->FileName, tool->Hotkey,
                 tool->CommandLine, tool->HelpString, tool->AppName32}) {
            add(text);
        }
        add(QString::number(tool->ToolType) + u'/' + QString::number(tool->AccessOptions) + u'/'
            + QString::number(tool->VBEvents & BmtFormat::storedEvents) + u'/'
            + QString::number(tool->Enabled.raw()) + u'/' + QString::number(tool->HelpId));
    }
    return hash.result().toHex().left(16);
}
