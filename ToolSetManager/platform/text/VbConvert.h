#pragma once

#include <QString>

#include <optional>

/// How the add-in's language (Visual Basic) reads numbers and truth values out of text and writes
/// them, because settings are exchanged with it as text and a tool's name that reads as a number
/// is treated apart. Nothing else in the program parses stored numbers by hand.
///
/// Read are: blanks around the number, a sign before or behind it or parentheses for a negative
/// one, thousands separators, a decimal point, exponents with E or D, and `&H`/`&O` integers. The
/// forms are those of English regional settings; currency signs are not read.
namespace VbConvert {

/// True when the text would read as a number.
bool isNumeric(QStringView text);

/// Empty when the text is no number or too large for a double.
std::optional<double> toDouble(QStringView text);

/// Whole numbers, halves rounded to the even neighbour; empty when out of range. A hexadecimal or
/// octal text is taken as the bit pattern of the type: `&HFFFF` is -1 as a 16-bit number.
std::optional<qint16> toInt16(QStringView text);
std::optional<qint32> toInt32(QStringView text);

/// `True` and `False` in any letter case, else a number: zero is false.
std::optional<bool> toBool(QStringView text);

/// The text of a single-precision number: at most seven digits, no point behind a whole number.
QString fromSingle(float value);

} // namespace VbConvert
