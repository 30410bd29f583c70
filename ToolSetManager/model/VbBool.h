#pragma once

#include <QtGlobal>

/// A stored 16-bit truth value: true is -1, false 0. Any other value is true as well and stays as
/// it was read until a new truth value is assigned, so that it is written back unchanged.
class VbBool
{
public:
    VbBool(bool value = false)
        : m_raw(value ? -1 : 0)
    {
    }
    static VbBool fromRaw(qint16 raw)
    {
        VbBool value;
        value.m_raw = raw;
        return value;
    }

    operator bool() const { return m_raw != 0; }
    qint16 raw() const { return m_raw; }
    /// The stored values are compared: two true values may differ.
    friend bool operator==(VbBool a, VbBool b) { return a.m_raw == b.m_raw; }

private:
    qint16 m_raw;
};
