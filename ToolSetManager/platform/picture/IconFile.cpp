#include "platform/picture/IconFile.h"

#include "platform/picture/ByteSource.h"
#include "platform/picture/LittleEndian.h"

namespace {

constexpr qint64 headerSize = 6;
constexpr qint64 entrySize = 16;

} // namespace

bool IconFile::recognises(ByteSource &source)
{
    const QByteArrayView header = source.read(0, headerSize);
    const int type = LittleEndian::at<quint16>(header, 2);
    return !header.isEmpty() && LittleEndian::at<quint16>(header, 0) == 0
        && (type == 1 || type == 2) && LittleEndian::at<quint16>(header, 4) != 0;
}

IconFile::IconFile(ByteSource &source)
    : m_source(source)
{
    const qint64 count = LittleEndian::at<quint16>(source.read(0, headerSize), 4);
    const qint64 size = std::min(headerSize + count * entrySize, source.size());
    m_frames = IconFrames::read(source.read(0, size), IconFrames::Directory::File);
}

std::vector<IconFrame> IconFile::frames(int icon)
{
    return icon == 0 ? m_frames : std::vector<IconFrame>();
}

QByteArrayView IconFile::bytes(const IconFrame &frame, qint64 most)
{
    // Some writers count the bytes of the mask differently: what matters is that they are there.
    const qint64 left = m_source.size() - frame.place;
    return m_source.read(frame.place, std::min({qint64(frame.bytes), left, most}));
}
