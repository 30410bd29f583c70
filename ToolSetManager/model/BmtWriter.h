#pragma once

#include "model/BmtFormat.h"

#include <QByteArray>

class QIODevice;

/// Writes a tool set file to a device, in pieces of about a megabyte. After the first failed write
/// nothing more is written and ok() is false; the device's errorString() tells why.
class BmtWriter
{
public:
    /// The device is borrowed, open for writing, and should be unbuffered.
    explicit BmtWriter(QIODevice &device);

    /// The strings must fit their counts (BmtFormat::longestString bytes).
    void writeHeader(qint16 flags, QByteArrayView longDescription, QByteArrayView description);
    void writeRecord(const BmtFormat::Record &record);

    /// Writes what is still held back; the same as ok() afterwards.
    bool flush();
    bool ok() const { return m_ok; }

private:
    void putString(QByteArrayView text);
    void putByteArray(QByteArrayView bytes);
    template <class T>
    void putNumber(T number);

    QIODevice &m_device;
    QByteArray m_pending;
    bool m_ok = true;
};
