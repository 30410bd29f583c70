#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <memory>

class QIODevice;

/// The bytes of a file that is read here and there, in small pieces: a piece costs a read of the
/// file only where the last ones did not lie beside it. The file is read, not mapped, because
/// somebody may cut it off meanwhile.
class ByteSource
{
public:
    /// A device that cannot be opened or is no regular file has no bytes.
    explicit ByteSource(std::unique_ptr<QIODevice> device);
    ~ByteSource();

    qint64 size() const { return m_size; }

    /// The bytes from \a offset on, valid until the next call; empty when there are not as many.
    QByteArrayView read(qint64 offset, qint64 length);

private:
    std::unique_ptr<QIODevice> m_device;
    qint64 m_size = 0;
    QByteArray m_block;
    qint64 m_blockStart = 0;
};
