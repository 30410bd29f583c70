#include "platform/text/VbConvert.h"

#include <QLocale>

#include <charconv>
#include <cmath>
#include <limits>

namespace {

/// The language takes tabs and line ends around a number for blanks.
QStringView trimmed(QStringView text)
{
    const auto isBlank = [](QChar c) { return c == u' ' || (c >= u'\t' && c <= u'\r'); };
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.mid(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

/// The value behind `&H` or `&O`; empty for other texts and for more than 32 bits.
std::optional<quint32> radixValue(QStringView text)
{
    text = trimmed(text);
    if (text.size() < 3 || text[0] != u'&')
        return std::nullopt;
    const QChar letter = text[1].toUpper();
    const int base = letter == u'H' ? 16 : letter == u'O' ? 8 : 0;
    if (base == 0)
        return std::nullopt;
    quint64 value = 0;
    for (const QChar c : text.mid(2)) {
        int digit = -1;
        if (isDigit(c))
            digit = c.unicode() - u'0';
        else if (c.toUpper() >= u'A' && c.toUpper() <= u'F')
            digit = c.toUpper().unicode() - u'A' + 10;
        if (digit < 0 || digit >= base)
            return std::nullopt;
        value = value * static_cast<quint64>(base) + static_cast<quint64>(digit);
        if (value > std::numeric_limits<quint32>::max())
            return std::nullopt;
    }
    return static_cast<quint32>(value);
}

/// A decimal number brought into the form that a C parser reads; empty when it is none.
QByteArray plainDecimal(QStringView text)
{
    text = trimmed(text);
    bool negative = false;
    bool signSeen = false;
    if (text.size() > 2 && text.front() == u'(' && text.back() == u')') {
        text = trimmed(text.mid(1, text.size() - 2));
        negative = signSeen = true;
    }
    const auto takeSign = [&](QChar c) {
        if (signSeen || (c != u'-' && c != u'+'))
            return false;
        negative = c == u'-';
        signSeen = true;
        return true;
    };
    if (!text.isEmpty() && takeSign(text.front()))
        text = trimmed(text.mid(1));
    else if (!text.isEmpty() && takeSign(text.back()))
        text = trimmed(text.chopped(1));

    QByteArray digits(negative ? "-" : "");
    bool anyDigit = false;
    qsizetype i = 0;
    for (; i < text.size() && (isDigit(text[i]) || (anyDigit && text[i] == u',')); ++i) {
        if (text[i] == u',')
            continue;
        digits += text[i].toLatin1();
        anyDigit = true;
    }
    if (i < text.size() && text[i] == u'.') {
        digits += anyDigit ? "." : "0.";
        for (++i; i < text.size() && isDigit(text[i]); ++i) {
            digits += text[i].toLatin1();
            anyDigit = true;
        }
    }
    if (!anyDigit)
        return {};
    if (i < text.size() && QStringView(u"eEdD").contains(text[i])) {
        digits += 'e';
        ++i;
        if (i < text.size() && (text[i] == u'-' || text[i] == u'+'))
            digits += text[i++].toLatin1();
        const qsizetype first = i;
        for (; i < text.size() && isDigit(text[i]); ++i)
            digits += text[i].toLatin1();
        if (i == first)
            return {};
    }
    return i == text.size() ? digits : QByteArray();
}

template <class Signed, class Unsigned>
std::optional<Signed> toWhole(QStringView text)
{
    if (const auto pattern = radixValue(text)) {
        if (*pattern > std::numeric_limits<Unsigned>::max())
            return std::nullopt;
        return static_cast<Signed>(static_cast<Unsigned>(*pattern));
    }
    const auto value = VbConvert::toDouble(text);
    if (!value)
        return std::nullopt;
    const double rounded = std::nearbyint(*value); // the default mode: halves to even
    if (rounded < std::numeric_limits<Signed>::min()
        || rounded > std::numeric_limits<Signed>::max())
        return std::nullopt;
    return static_cast<Signed>(rounded);
}

} // namespace

namespace VbConvert {

bool isNumeric(QStringView text)
{
    return toDouble(text).has_value();
}

std::optional<double> toDouble(QStringView text)
{
    if (const auto pattern = radixValue(text))
        return static_cast<double>(static_cast<qint32>(*pattern));
    const QByteArray digits = plainDecimal(text);
    if (digits.isEmpty())
        return std::nullopt;
    double value = 0;
    const char *const end = digits.constData() + digits.size();
    const auto result = std::from_chars(digits.constData(), end, value);
    if (result.ec == std::errc::result_out_of_range)
        return digits.contains("e-") ? std::optional<double>(0) : std::nullopt;
    return result.ec == std::errc() && result.ptr == end ? std::optional<double>(value)
                                                         : std::nullopt;
}

std::optional<qint16> toInt16(QStringView text)
{
    return toWhole<qint16, quint16>(text);
}

std::optional<qint32> toInt32(QStringView text)
{
    return toWhole<qint32, quint32>(text);
}

std::optional<bool> toBool(QStringView text)
{
    const QStringView word = trimmed(text);
    if (word.compare(u"True", Qt::CaseInsensitive) == 0)
        return true;
    if (word.compare(u"False", Qt::CaseInsensitive) == 0)
        return false;
    if (const auto number = toDouble(text))
        return *number != 0;
    return std::nullopt;
}

QString fromSingle(float value)
{
    return QLocale::c().toString(static_cast<double>(value), 'g', 7).toUpper();
}

} // namespace VbConvert
