#include "platform/picture/NeIcons.h"

#include "platform/picture/ByteSource.h"
#include "platform/picture/LittleEndian.h"

using LittleEndian::at;

NeIcons::NeIcons(ByteSource &source, qint64 header)
    : m_source(source)
{
    if (!readTable(header)) { // not whole
        m_groups.clear();
        m_frames.clear();
    }
}

bool NeIcons::readTable(qint64 header)
{
    constexpr qint64 tableField = 0x24;
    constexpr int numbered = 0x8000;
    constexpr int iconType = numbered | 3;
    constexpr int groupType = numbered | 14;
    constexpr qint64 typeSize = 8;
    constexpr qint64 entrySize = 12;
    constexpr int largestShift = 15;
    constexpr qint64 longestTable = 0x10000;

    const int tableOffset = at<quint16>(m_source.read(header + tableField, 2), 0);
    const int shift = at<quint16>(m_source.read(header + tableOffset, 2), 0);
    if (tableOffset == 0 || shift > largestShift)
        return false;
    const qint64 start = header + tableOffset;
    for (qint64 position = start + 2; position < start + longestTable;) {
        const QByteArrayView mark = m_source.read(position, 2);
        if (mark.isEmpty())
            return false;
        const int type = at<quint16>(mark, 0);
        if (type == 0)
            return true;
        const int count = at<quint16>(m_source.read(position, typeSize), 2);
        position += typeSize;
        const QByteArrayView entries = m_source.read(position, count * entrySize);
        if (entries.size() != count * entrySize)
            return false;
        position += entries.size();
        for (qsizetype i = 0; i < entries.size(); i += entrySize) {
            const Place place {qint64(at<quint16>(entries, i)) << shift,
                qint64(at<quint16>(entries, i + 2)) << shift};
            const int id = at<quint16>(entries, i + 6);
            if (type == groupType)
                m_groups.push_back(place);
            else if (type == iconType && (id & numbered) != 0)
                m_frames.try_emplace(static_cast<quint32>(id & ~numbered), place);
        }
    }
    return false;
}

std::vector<IconFrame> NeIcons::frames(int icon)
{
    if (icon < 0 || icon >= count())
        return {};
    const Place &place = m_groups[static_cast<std::size_t>(icon)];
    return IconFrames::read(
        m_source.read(place.offset, place.size), IconFrames::Directory::Resource);
}

QByteArrayView NeIcons::bytes(const IconFrame &frame, qint64 most)
{
    const auto found = m_frames.find(frame.place);
    if (found == m_frames.end())
        return {};
    const Place &place = found->second;
    // Sizes are rounded up to whole units, which may reach over the end of the file.
    const qint64 left = m_source.size() - place.offset;
    return m_source.read(place.offset, std::min({place.size, left, most}));
}
