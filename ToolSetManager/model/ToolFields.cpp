#include "model/ToolFields.h"

namespace {

/// Calls \a visit with the one field of that index.
template <class Visit>
void visitField(int index, Visit visit)
{
    int at = 0;
    ToolFields::forEach([&](const auto &field) {
        if (at++ == index)
            visit(field);
    });
}

} // namespace

QBitArray ToolFields::differing(const CVBATool &a, const CVBATool &b)
{
    QBitArray fields;
    if (&a == &b)
        return fields;
    int index = 0;
    forEach([&](const auto &field) {
        if (a.*(field.field) != b.*(field.field)) {
            fields.resize(count);
            fields.setBit(index);
        }
        ++index;
    });
    return fields;
}

bool ToolFields::isSame(const CVBATool &a, const CVBATool &b, int index)
{
    bool same = true;
    visitField(index, [&](const auto &field) { same = a.*(field.field) == b.*(field.field); });
    return same;
}

void ToolFields::copy(const CVBATool &from, CVBATool &to, int index)
{
    visitField(index, [&](const auto &field) { to.*(field.field) = from.*(field.field); });
}

QString ToolFields::nameOf(int index)
{
    QString name;
    visitField(index, [&](const auto &field) { name = QLatin1StringView(field.name); });
    return name;
}
