#pragma once

#include <QByteArray>
#include <QtEndian>

/// Numbers as files have them, low byte first.
namespace Bytes {

template <class T>
QByteArray little(auto value)
{
    QByteArray bytes(sizeof(T), '\0');
    qToLittleEndian(static_cast<T>(value), bytes.data());
    return bytes;
}

QByteArray word(auto value)
{
    return little<quint16>(value);
}

QByteArray dword(auto value)
{
    return little<quint32>(value);
}

inline QByteArray words(std::initializer_list<int> values)
{
    QByteArray bytes;
    for (const int value : values)
        bytes += word(value);
    return bytes;
}

inline QByteArray dwords(std::initializer_list<quint32> values)
{
    QByteArray bytes;
    for (const quint32 value : values)
        bytes += dword(value);
    return bytes;
}

} // namespace Bytes
