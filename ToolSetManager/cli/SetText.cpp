#include "cli/SetText.h"

#include "cli/Session.h"
#include "model/FieldText.h"
#include "model/ToolFields.h"
#include "platform/rtf/RtfPlainText.h"

#include <QCryptographicHash>

namespace {

QString fact(const QString &name, const QString &value)
{
    return QStringLiteral("  ") + name + QStringLiteral(": ") + Session::visible(value) + u'\n';
}

/// The words line by line. Texts of the same words may differ in their looks, so a digest of the
/// text as it is stored follows.
QString richText(const QString &name, const QString &rtf, RtfPlainText &plainText)
{
    if (rtf.isEmpty())
        return {};
    QString text;
    QStringList lines = plainText.read(rtf).split(u'\n');
    while (!lines.isEmpty() && lines.constLast().isEmpty())
        lines.removeLast();
    for (const QString &line : std::as_const(lines))
        text += fact(name, line);
    const QByteArray digest =
        QCryptographicHash::hash(rtf.toUtf8(), QCryptographicHash::Sha1).toHex().left(12);
    return text
        + fact(name + QStringLiteral(" as stored"),
            QStringLiteral("%1 bytes, %2").arg(rtf.size()).arg(QLatin1StringView(digest)));
}

/// The facts of one field; none for what is empty or 0.
struct Facts
{
    const CVBATool &tool;
    RtfPlainText &plainText;
    QString text;
    int index = 0;

    void operator()(const ToolFields::Text &field)
    {
        const QString &value = tool.*(field.field);
        if (field.field == &CVBATool::HelpString)
            text += richText(ToolFields::nameOf(index), value, plainText);
        else if (field.field != &CVBATool::Description && !value.isEmpty())
            text += fact(ToolFields::nameOf(index), value);
        ++index;
    }
    void operator()(const ToolFields::Special<qint32> &field)
    {
        if (field.field == &CVBATool::VBEvents) {
            for (const QString &name :
                FieldText::names(static_cast<quint32>(tool.VBEvents), FieldText::eventBits()))
                text += fact(QStringLiteral("event"), name);
        } else if (tool.FLAGS != 0 && tool.FLAGS != tool.VBEvents) { // else the same word
            text += fact(ToolFields::nameOf(index), FieldText::of(tool, index));
        }
        ++index;
    }
    void operator()(const ToolFields::Number &field)
    {
        if (tool.*(field.field) != 0 || field.field == &CVBATool::ToolType)
            text += fact(ToolFields::nameOf(index), FieldText::of(tool, index));
        ++index;
    }
    template <class Field>
    void operator()(const Field & /*field*/)
    {
        text += fact(ToolFields::nameOf(index), FieldText::of(tool, index));
        ++index;
    }
};

} // namespace

QString SetText::ofSet(const CVBATools &tools, RtfPlainText &plainText)
{
    return QStringLiteral("Tool set\n")
        + (tools.Description().isEmpty() ? QString()
                                         : fact(QStringLiteral("description"), tools.Description()))
        + fact(QStringLiteral("flags"), QString::number(tools.FLAGS()))
        + richText(QStringLiteral("long description"), tools.LongDescription(), plainText);
}

QString SetText::ofTool(const CVBATool &tool, RtfPlainText &plainText, int position)
{
    Facts facts {
        tool, plainText, QStringLiteral("Tool \"%1\"\n").arg(Session::visible(tool.Description))};
    if (position > 0)
        facts.text += fact(QStringLiteral("position"), QString::number(position));
    ToolFields::forEach(facts);
    return facts.text;
}
