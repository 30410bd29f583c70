#include "cli/ToolJson.h"

#include "model/BmtFormat.h"
#include "model/FieldText.h"
#include "model/ToolFields.h"
#include "model/ToolKinds.h"

#include <algorithm>
#include <limits>

namespace {

using Type = JsonValue::Type;

/// "command line" as "commandLine".
QString keyFor(const char *fieldName)
{
    QString key;
    bool capital = false;
    for (const QChar c : QString::fromLatin1(fieldName)) {
        if (c == u' ') {
            capital = true;
            continue;
        }
        key += capital ? c.toUpper() : c;
        capital = false;
    }
    return key;
}

/// By the index of the field in ToolFields.
const QString &keyOf(int field)
{
    static const QStringList keys = [] {
        QStringList all;
        ToolFields::forEach([&all](const auto &each) { all.append(keyFor(each.name)); });
        return all;
    }();
    return keys[field];
}

/// Help text and picture have files of their own; the flags are not in the file.
template <class Field>
bool isInJson(const Field &field)
{
    if constexpr (std::is_same_v<Field, ToolFields::Text>)
        return field.field != &CVBATool::HelpString;
    else if constexpr (std::is_same_v<Field, ToolFields::Special<QImage>>)
        return false;
    else if constexpr (std::is_same_v<Field, ToolFields::Special<qint32>>)
        return field.field == &CVBATool::VBEvents;
    else
        return true;
}

// --- Writing ---

void writeBits(
    JsonWriter &json, quint32 mask, const QList<FieldText::Bit> &bits, JsonWriter::Layout layout)
{
    json.beginArray(layout);
    for (const FieldText::Bit &each : bits) {
        const auto bit = static_cast<quint32>(each.bit);
        if ((mask & bit) != 0)
            json.value(each.name);
        mask &= ~bit;
    }
    if (mask != 0)
        json.value(qint64(mask));
    json.endArray();
}

struct Write
{
    JsonWriter &json;
    const CVBATool &tool;

    void operator()(const ToolFields::Text &field) const { json.value(tool.*(field.field)); }
    void operator()(const ToolFields::Number &field) const
    {
        const qint16 number = tool.*(field.field);
        if (field.field == &CVBATool::ToolType && ToolKinds::isKnown(number))
            json.value(ToolKinds::caption(number));
        else if (field.field == &CVBATool::AccessOptions)
            writeBits(json, static_cast<quint16>(number), FieldText::accessBits(),
                JsonWriter::Layout::Inline);
        else
            json.value(qint64(number));
    }
    void operator()(const ToolFields::Special<VbBool> &field) const
    {
        const VbBool value = tool.*(field.field);
        if (value == VbBool(bool(value)))
            json.value(bool(value));
        else
            json.value(qint64(value.raw()));
    }
    void operator()(const ToolFields::Special<qint32> &field) const
    {
        writeBits(json, static_cast<quint32>(tool.*(field.field) & BmtFormat::storedEvents),
            FieldText::eventBits(), JsonWriter::Layout::Lines);
    }
    void operator()(const ToolFields::Special<QImage> & /*in a file of its own*/) const { }
};

// --- Reading ---

template <class Integer>
std::optional<Integer> toInteger(const JsonValue &value)
{
    using Limits = std::numeric_limits<Integer>;
    const auto whole = value.whole(Limits::min(), Limits::max());
    return whole ? std::optional(static_cast<Integer>(*whole)) : std::nullopt;
}

struct Read
{
    const JsonValue &value;
    CVBATool &tool;
    const ToolJson::Report &report;

    void operator()(const ToolFields::Text &field) const
    {
        if (value.type == Type::Text)
            tool.*(field.field) = value.text;
        else
            wrong("a text", field.name);
    }
    void operator()(const ToolFields::Number &field) const
    {
        if (field.field == &CVBATool::ToolType)
            readKind();
        else if (field.field == &CVBATool::AccessOptions)
            readBits(FieldText::accessBits(), std::numeric_limits<quint16>::max(), field.name,
                [this](quint32 mask) { tool.AccessOptions = static_cast<qint16>(mask); });
        else if (const auto number = toInteger<qint16>(value))
            tool.*(field.field) = *number;
        else
            wrong("a whole number from -32768 to 32767", field.name);
    }
    void operator()(const ToolFields::Special<VbBool> &field) const
    {
        const auto raw = toInteger<qint16>(value);
        if (value.type == Type::Truth)
            tool.*(field.field) = value.truth;
        else if (raw)
            tool.*(field.field) = VbBool::fromRaw(*raw);
        else
            wrong("true or false", field.name);
    }
    void operator()(const ToolFields::Special<qint32> &field) const
    {
        readBits(FieldText::eventBits(), BmtFormat::storedEvents, field.name,
            [this](quint32 mask) { tool.VBEvents = static_cast<qint32>(mask); });
    }
    void operator()(const ToolFields::Special<QImage> & /*in a file of its own*/) const { }

    void wrong(const char *expected, const char *field) const
    {
        report(value,
            QStringLiteral("the %1 must be %2")
                .arg(QLatin1StringView(field), QLatin1StringView(expected)));
    }

    void readKind() const
    {
        for (qint16 kind = CVBATool::NoKind; ToolKinds::isKnown(kind); ++kind) {
            if (value.type == Type::Text && value.text == ToolKinds::caption(kind)) {
                tool.ToolType = kind;
                return;
            }
        }
        if (const auto number = toInteger<qint16>(value))
            tool.ToolType = *number;
        else
            report(value,
                value.type == Type::Text ? QStringLiteral("there is no kind \"%1\"").arg(value.text)
                                         : QStringLiteral("the kind must be a text or a number"));
    }

    template <class Set>
    void readBits(const QList<FieldText::Bit> &bits, quint32 all, const char *field, Set set) const
    {
        if (value.type != Type::Array)
            return wrong("a list", field);
        quint32 mask = 0;
        for (const JsonValue &item : value.items) {
            const auto known = std::find_if(bits.begin(), bits.end(),
                [&](const auto &bit) { return item.type == Type::Text && item.text == bit.name; });
            const auto number = item.whole(0, all);
            if (known != bits.end())
                mask |= static_cast<quint32>(known->bit);
            else if (number)
                mask |= static_cast<quint32>(*number);
            else
                return report(item,
                    QStringLiteral("\"%1\" is none of the %2")
                        .arg(item.text, QLatin1StringView(field)));
        }
        set(mask);
    }
};

} // namespace

void ToolJson::write(JsonWriter &json, const CVBATool &tool)
{
    int index = 0;
    ToolFields::forEach([&](const auto &field) {
        const int at = index++;
        if (!isInJson(field))
            return;
        json.key(keyOf(at));
        Write {json, tool}(field);
    });
}

void ToolJson::read(
    const JsonValue &object, CVBATool &tool, const QStringList &known, const Report &report)
{
    int index = 0;
    QStringList keys = known;
    ToolFields::forEach([&](const auto &field) {
        const int at = index++;
        if (!isInJson(field))
            return;
        keys.append(keyOf(at));
        if (const JsonValue *value = object.find(keyOf(at)))
            Read {*value, tool, report}(field);
    });
    for (const auto &[key, value] : object.members) {
        if (!keys.contains(key))
            report(value, QStringLiteral("there is no field \"%1\"").arg(key));
    }
}

const JsonValue *ToolJson::valueOf(const JsonValue &object, QString CVBATool::*field)
{
    return object.find(keyOf(ToolFields::indexOf(field)));
}
