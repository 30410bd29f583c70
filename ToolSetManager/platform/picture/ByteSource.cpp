#include "platform/picture/ByteSource.h"

#include <QFile>
#include <QFileInfo>

ByteSource::ByteSource(std::unique_ptr<QIODevice> device)
    : m_device(std::move(device))
{
    // Opening a pipe would wait for somebody to write into it.
    const auto *file = qobject_cast<QFile *>(m_device.get());
    if (file != nullptr && !QFileInfo(file->fileName()).isFile())
        return;
    if (m_device->open(QIODevice::ReadOnly | QIODevice::Unbuffered) && !m_device->isSequential())
        m_size = m_device->size();
}

ByteSource::~ByteSource() = default;

QByteArrayView ByteSource::read(qint64 offset, qint64 length)
{
    constexpr qint64 blockSize = 4096;
    if (offset < 0 || length <= 0 || offset > m_size || length > m_size - offset)
        return {};
    const qint64 inBlock = offset - m_blockStart;
    if (inBlock < 0 || inBlock + length > m_block.size()) {
        const qint64 wanted = std::min(std::max(length, blockSize), m_size - offset);
        m_block.resize(wanted);
        m_blockStart = offset;
        const qint64 got =
            m_device->seek(offset) ? m_device->read(m_block.data(), wanted) : qint64(-1);
        m_block.resize(std::max<qint64>(got, 0));
        if (got < length)
            return {};
        return QByteArrayView(m_block).first(length);
    }
    return QByteArrayView(m_block).sliced(inBlock, length);
}
