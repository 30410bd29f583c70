#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QtEndian>

#include <type_traits>

/// Numbers of the formats of Windows, which stand in files with their low byte first.
namespace LittleEndian {

/// The number at \a offset; 0 where the bytes end before it. Formats in which that matters check
/// their lengths themselves.
template <class T>
T at(QByteArrayView bytes, qsizetype offset)
{
    static_assert(std::is_integral_v<T>);
    if (offset < 0 || offset > bytes.size() - qsizetype(sizeof(T)))
        return 0;
    return qFromLittleEndian<T>(bytes.data() + offset);
}

template <class T>
void append(QByteArray &bytes, T number)
{
    static_assert(std::is_integral_v<T>);
    char raw[sizeof(T)];
    qToLittleEndian(number, raw);
    bytes.append(raw, sizeof(T));
}

} // namespace LittleEndian
