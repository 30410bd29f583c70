#include "model/FieldText.h"

#include "model/ToolFields.h"
#include "model/ToolKinds.h"
#include "model/VbEvents.h"
#include "platform/rtf/RtfPlainText.h"

#include <QCryptographicHash>

namespace {

const QString separator = QStringLiteral(", ");

struct Describe
{
    const CVBATool &tool;
    RtfPlainText *plainText;

    QString operator()(const ToolFields::Text &field) const
    {
        const QString &text = tool.*(field.field);
        return plainText && field.field == &CVBATool::HelpString ? plainText->read(text) : text;
    }
    QString operator()(const ToolFields::Number &field) const
    {
        const qint16 number = tool.*(field.field);
        if (field.field == &CVBATool::ToolType)
            return FieldText::kind(number);
        if (field.field == &CVBATool::AccessOptions)
            return FieldText::access(number);
        return QString::number(number);
    }
    QString operator()(const ToolFields::Special<VbBool> &field) const
    {
        const VbBool value = tool.*(field.field);
        return value == VbBool(bool(value))
            ? FieldText::yesNo(value)
            : FieldText::yesNo(value) + QStringLiteral(" (%1)").arg(value.raw());
    }
    QString operator()(const ToolFields::Special<qint32> &field) const
    {
        const qint32 value = tool.*(field.field);
        return field.field == &CVBATool::VBEvents ? FieldText::events(value)
                                                  : QString::number(value);
    }
    QString operator()(const ToolFields::Special<QImage> &field) const
    {
        return FieldText::picture(tool.*(field.field));
    }
};

} // namespace

QString FieldText::yesNo(bool yes)
{
    return yes ? QStringLiteral("yes") : QStringLiteral("no");
}

QString FieldText::kind(qint16 kind)
{
    const QString caption = ToolKinds::caption(kind);
    return caption.isEmpty() ? QString::number(kind) : caption;
}

const QList<FieldText::Bit> &FieldText::accessBits()
{
    static const QList<Bit> bits {
        {CVBATool::InToolBarOption, QStringLiteral("tool bar")},
        {CVBATool::InListOption, QStringLiteral("list")},
        {CVBATool::HotKeyOption, QStringLiteral("hot key")},
        {CVBATool::EventsOption, QStringLiteral("events")},
        {CVBATool::OutOfProcessOption, QStringLiteral("out of process")},
    };
    return bits;
}

const QList<FieldText::Bit> &FieldText::eventBits()
{
    static const QList<Bit> bits = [] {
        QList<Bit> all;
        for (int i = 0; i < VbEvents::eventCount; ++i)
            all.append({VbEvents::bit(i), VbEvents::text(VbEvents::events[size_t(i)].name)});
        return all;
    }();
    return bits;
}

QStringList FieldText::names(quint32 mask, const QList<Bit> &bits)
{
    QStringList all;
    for (const Bit &each : bits) {
        const auto bit = static_cast<quint32>(each.bit);
        if ((mask & bit) != 0)
            all.append(each.name);
        mask &= ~bit;
    }
    if (mask != 0)
        all.append(QString::number(mask));
    return all;
}

QString FieldText::access(qint16 options)
{
    return names(static_cast<quint16>(options), accessBits()).join(separator);
}

QString FieldText::events(qint32 mask)
{
    return names(static_cast<quint32>(mask), eventBits()).join(separator);
}

QString FieldText::picture(const QImage &picture)
{
    if (picture.isNull())
        return QStringLiteral("none");
    const QImage pixels = picture.convertToFormat(QImage::Format_ARGB32);
    QCryptographicHash digest(QCryptographicHash::Sha1);
    for (int y = 0; y < pixels.height(); ++y) {
        digest.addData(QByteArrayView(
            pixels.constScanLine(y), qsizetype(pixels.width()) * qsizetype(sizeof(QRgb))));
    }
    return QStringLiteral("%1 x %2, %3")
        .arg(picture.width())
        .arg(picture.height())
        .arg(QLatin1StringView(digest.result().toHex().left(12)));
}

QString FieldText::of(const CVBATool &tool, int field, RtfPlainText *plainText)
{
    QString text;
    int index = 0;
    const Describe describe {tool, plainText};
    ToolFields::forEach([&](const auto &each) {
        if (index++ == field)
            text = describe(each);
    });
    return text;
}
