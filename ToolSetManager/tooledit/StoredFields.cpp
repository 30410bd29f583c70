#include "tooledit/StoredFields.h"

#include "model/CVBATool.h"

#include <QStringList>

namespace StoredFields {

QString text(const CVBATool &tool)
{
    constexpr qsizetype longest = 80;
    QStringList lines;
    const auto add = [&](const QString &name, const QString &value) {
        if (!value.isEmpty())
            lines.append(name + QStringLiteral(": ")
                + (value.size() > longest ? value.first(longest) + u'…' : value).simplified());
    };
    const auto number = [](int value) { return value == 0 ? QString() : QString::number(value); };
    const auto yes = [](bool on) { return on ? QStringLiteral("yes") : QString(); };
    if (!tool.Hotkey.isEmpty() && !tool.UseHotKey())
        add(QStringLiteral("Hot key (not in use)"), tool.Hotkey);
    else
        add(QStringLiteral("Hot key"), tool.Hotkey);
    add(QStringLiteral("In the add-in's list"), yes(tool.InList()));
    add(QStringLiteral("Events enabled"), yes(tool.EnableVBEvents()));
    if (tool.AppName32 != tool.Location())
        add(QStringLiteral("Application name"), tool.AppName32);
    if (tool.AppName16 != tool.AppName32)
        add(QStringLiteral("Application name (16 bits)"), tool.AppName16);
    add(QStringLiteral("Help context"), number(tool.HelpId));
    add(QStringLiteral("Flags"), number(tool.FLAGS));
    return lines.join(u'\n');
}

} // namespace StoredFields
