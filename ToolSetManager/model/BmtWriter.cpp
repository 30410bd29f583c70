#include "model/BmtWriter.h"

#include <QIODevice>
#include <QtEndian>

namespace {

constexpr qsizetype pieceSize = 1 << 20;

} // namespace

BmtWriter::BmtWriter(QIODevice &device)
    : m_device(device)
{
    // Room for the record that overflows the piece, so that the buffer is not moved.
    m_pending.reserve(pieceSize + (1 << 18));
}

template <class T>
void BmtWriter::putNumber(T number)
{
    char bytes[sizeof(T)];
    qToLittleEndian(number, bytes);
    m_pending.append(bytes, sizeof(T));
}

void BmtWriter::putString(QByteArrayView text)
{
    Q_ASSERT(text.size() <= BmtFormat::longestString);
    putNumber(static_cast<quint16>(text.size()));
    m_pending.append(text.data(), text.size());
}

void BmtWriter::putByteArray(QByteArrayView bytes)
{
    putNumber<qint16>(1);
    putNumber(static_cast<qint32>(bytes.size()));
    putNumber<qint32>(0);
    m_pending.append(bytes.data(), bytes.size());
}

void BmtWriter::writeHeader(
    qint16 flags, QByteArrayView longDescription, QByteArrayView description)
{
    putNumber(BmtFormat::currentVersion);
    putNumber(BmtFormat::marker);
    putNumber(flags);
    putString(longDescription);
    putString(description);
}

void BmtWriter::writeRecord(const BmtFormat::Record &record)
{
    putString(record.name);
    putString(record.location);
    putString(record.hotkey);
    putString(record.appName16);
    putNumber(record.kind);
    putNumber(record.accessOptions);
    putNumber(record.events);
    putString(record.commandLine);
    putString(record.help);
    putNumber(record.enabled);
    putNumber(record.helpId);
    putNumber<qint16>(0);
    putString(record.appName32);
    putString({});
    putByteArray(record.picture);
    if (m_pending.size() >= pieceSize)
        flush();
}

bool BmtWriter::flush()
{
    if (m_ok && !m_pending.isEmpty()) {
        // A short write is what a full disk gives; the next try then tells the reason.
        qint64 written = 0;
        while (m_ok && written < m_pending.size()) {
            const qint64 count =
                m_device.write(m_pending.constData() + written, m_pending.size() - written);
            m_ok = count > 0;
            written += qMax<qint64>(count, 0);
        }
    }
    m_pending.resize(0);
    return m_ok;
}
