#include "compare/DifferenceTexts.h"

#include "model/ToolFields.h"
#include "model/ToolKinds.h"
#include "model/VbEvents.h"
#include "platform/rtf/RtfPlainText.h"

#include <QLocale>
#include <QStringList>

namespace {

constexpr qint32 inMenuFlag = 1; // of a set's FLAGS: the add-in lists the set in its menu

QString yesNo(bool yes)
{
    return yes ? QStringLiteral("Yes") : QStringLiteral("No");
}

QString access(const CVBATool &tool)
{
    QStringList ways;
    const std::pair<bool, QString> options[] = {{tool.IntoolBar(), QStringLiteral("tool bar")},
        {tool.InList(), QStringLiteral("list")}, {tool.UseHotKey(), QStringLiteral("hot key")},
        {tool.EnableVBEvents(), QStringLiteral("events")},
        {tool.RunOutOfProcess(), QStringLiteral("out of process")}};
    for (const auto &[on, caption] : options) {
        if (on)
            ways.append(caption);
    }
    return ways.join(QStringLiteral(", "));
}

QString events(qint32 mask)
{
    QStringList names;
    for (int event = 0; event < VbEvents::eventCount; ++event) {
        if (VbEvents::contains(mask, event))
            names.append(VbEvents::text(VbEvents::events[size_t(event)].name));
    }
    return names.join(QStringLiteral(", "));
}

QString picture(const QImage &image)
{
    return image.isNull() ? QStringLiteral("none")
                          : QStringLiteral("%1 by %2").arg(image.width()).arg(image.height());
}

QString beginning(const QString &rtf, int codePage)
{
    constexpr qsizetype longest = 200;
    return rtf.isEmpty() ? QString()
                         : DifferenceTexts::plainText(rtf, codePage).left(longest).simplified();
}

QString capitalised(QString text)
{
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text;
}

} // namespace

QString DifferenceTexts::fieldCaption(int field)
{
    return capitalised(ToolFields::nameOf(field));
}

QString DifferenceTexts::setFieldCaption(int field)
{
    switch (field) {
    case Description:
        return QStringLiteral("Short description");
    case LongDescription:
        return QStringLiteral("Long description");
    default:
        return QStringLiteral("In the add-in's menu");
    }
}

QString DifferenceTexts::value(const CVBATool &tool, int field, int codePage)
{
    QString text;
    int index = 0;
    ToolFields::forEach([&](const auto &entry) {
        if (index++ != field)
            return;
        const auto &stored = tool.*(entry.field);
        using Value = std::decay_t<decltype(stored)>;
        if constexpr (std::is_same_v<Value, VbBool>)
            text = yesNo(bool(stored));
        else if constexpr (std::is_same_v<Value, QImage>)
            text = picture(stored);
        else if constexpr (std::is_same_v<Value, QString>)
            text = entry.field == &CVBATool::HelpString ? beginning(stored, codePage) : stored;
        else if constexpr (std::is_same_v<Value, qint32>)
            text = entry.field == &CVBATool::VBEvents ? events(stored) : QString::number(stored);
        else if (entry.field == &CVBATool::ToolType && ToolKinds::isKnown(stored))
            text = ToolKinds::caption(stored);
        else if (entry.field == &CVBATool::AccessOptions)
            text = access(tool);
        else
            text = QString::number(stored);
    });
    return text;
}

QString DifferenceTexts::setValue(
    const ToolSetContents::Properties &properties, int field, int codePage)
{
    switch (field) {
    case Description:
        return properties.Description;
    case LongDescription:
        return beginning(properties.LongDescription, codePage);
    default:
        return yesNo((properties.FLAGS & inMenuFlag) != 0);
    }
}

QString DifferenceTexts::plainText(const QString &rtf, int codePage)
{
    QString text = RtfPlainText(codePage).read(rtf);
    // A text that is no RTF comes as it is; shown, each end of a line is one character.
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return text.replace(u'\r', u'\n');
}

QString DifferenceTexts::tools(int count)
{
    return count == 1 ? QStringLiteral("1 tool") : QStringLiteral("%L1 tools").arg(count);
}

QString DifferenceTexts::summary(const ToolSetDiff::Summary &summary)
{
    QStringList parts;
    const auto add = [&](int count, const QString &what) {
        if (count > 0)
            parts.append(QStringLiteral("%L1 %2").arg(count).arg(what));
    };
    if (summary.removed > 0)
        parts.append(tools(summary.removed) + QStringLiteral(" fewer"));
    if (summary.added > 0)
        parts.append(tools(summary.added) + QStringLiteral(" more"));
    add(summary.changed, QStringLiteral("changed"));
    add(summary.moved, QStringLiteral("moved"));
    if (summary.properties)
        parts.append(QStringLiteral("other properties"));
    return parts.isEmpty() ? QStringLiteral("no difference") : parts.join(QStringLiteral(", "));
}

QString DifferenceTexts::size(qint64 bytes)
{
    return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}
