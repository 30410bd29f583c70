#include "model/FreeNames.h"

#include "platform/VbError.h"
#include "platform/text/VbConvert.h"

#include <limits>

QString FreeNames::nameFor(const QString &name, const Taken &taken)
{
    const bool nameless = name.isEmpty() || VbConvert::isNumeric(name);
    if (!nameless && !taken(name))
        return name;
    const QString base = nameless ? QStringLiteral("Tool") : name;
    const QString folded = base.toCaseFolded();
    for (int number = m_lowest.value(folded, 1);; ++number) {
        if (number > std::numeric_limits<qint16>::max())
            throw VbError(
                VbError::Overflow, QStringLiteral("CVBATools"), QStringLiteral("Overflow"));
        QString candidate = base + u'(' + QString::number(number) + u')';
        if (!taken(candidate)) {
            m_lowest.insert(folded, number);
            return candidate;
        }
    }
}

void FreeNames::released(const QString &name)
{
    if (!name.endsWith(u')'))
        return;
    const qsizetype open = name.lastIndexOf(u'(');
    if (open < 1)
        return;
    const QStringView digits = QStringView(name).sliced(open + 1).chopped(1);
    bool ok = false;
    const int number = digits.toInt(&ok);
    // "(01)" and "(+1)" are names that no counter makes.
    if (!ok || number < 1 || QString::number(number) != digits)
        return;
    const auto entry = m_lowest.find(name.left(open).toCaseFolded());
    if (entry != m_lowest.end() && number < *entry)
        *entry = number;
}
