#include "platform/picture/PeIcons.h"

#include "platform/picture/ByteSource.h"
#include "platform/picture/LittleEndian.h"

using LittleEndian::at;

namespace {

constexpr quint32 iconType = 3;
constexpr quint32 groupType = 14;
constexpr quint32 highBit = 0x80000000; ///< A name instead of a number, a branch instead of data.
constexpr qint64 nodeSize = 16;
constexpr qint64 entrySize = 8;

} // namespace

PeIcons::PeIcons(ByteSource &source, qint64 header)
    : m_source(source)
{
    if (!readSections(header))
        return;
    m_groups = type(groupType);
    m_count = m_groups.count;
}

bool PeIcons::readSections(qint64 header)
{
    constexpr qint64 headerSize = 24;
    constexpr qint64 sectionSize = 40;
    constexpr qsizetype resources = 2; ///< Number of the data directory.
    const QByteArrayView coff = m_source.read(header, headerSize);
    const int sectionCount = at<quint16>(coff, 6);
    const int optionalSize = at<quint16>(coff, 20);
    const qint64 sectionTable = header + headerSize + optionalSize;

    const QByteArrayView optional = m_source.read(header + headerSize, optionalSize);
    const int magic = at<quint16>(optional, 0);
    if (magic != 0x10B && magic != 0x20B) // 32 and 64 bits
        return false;
    const qsizetype directories = magic == 0x10B ? 96 : 112;
    if (at<quint32>(optional, directories - 4) <= resources)
        return false;
    const auto address = at<quint32>(optional, directories + resources * 8);
    if (address == 0)
        return false;

    const QByteArrayView table = m_source.read(sectionTable, sectionCount * sectionSize);
    for (qsizetype i = 0; i < table.size(); i += sectionSize) {
        m_sections.push_back(
            {at<quint32>(table, i + 12), at<quint32>(table, i + 16), at<quint32>(table, i + 20)});
    }
    for (const Section &section : m_sections) {
        const qint64 inSection = qint64(address) - section.address;
        if (inSection < 0 || inSection >= section.size)
            continue;
        m_directory = section.offset + inSection;
        m_directorySize = std::min(section.size - inSection, m_source.size() - m_directory);
        return m_directorySize > 0;
    }
    return false;
}

qint64 PeIcons::fileOffset(quint32 address, quint32 size) const
{
    for (const Section &section : m_sections) {
        const qint64 inSection = qint64(address) - section.address;
        if (inSection >= 0 && inSection < section.size)
            return inSection + size <= section.size ? section.offset + inSection : -1;
    }
    return -1;
}

PeIcons::Node PeIcons::node(quint32 offset)
{
    Node node;
    if (qint64(offset) + nodeSize > m_directorySize)
        return node;
    const QByteArrayView header = m_source.read(m_directory + offset, nodeSize);
    const int count = at<quint16>(header, 12) + at<quint16>(header, 14); // named and numbered
    if (offset + nodeSize + count * entrySize > m_directorySize)
        return node;
    node.entries = m_directory + offset + nodeSize;
    node.count = count;
    return node;
}

qint64 PeIcons::branchBelow(const Node &node, int entry)
{
    const QByteArrayView bytes = m_source.read(node.entries + entry * entrySize, entrySize);
    const auto target = at<quint32>(bytes, 4);
    return (target & highBit) != 0 ? qint64(target & ~highBit) : -1;
}

PeIcons::Node PeIcons::type(quint32 id)
{
    const Node root = node(0);
    const QByteArrayView entries = m_source.read(root.entries, root.count * entrySize);
    for (qsizetype i = 0; i < entries.size(); i += entrySize) {
        const auto target = at<quint32>(entries, i + 4);
        if (at<quint32>(entries, i) == id && (target & highBit) != 0)
            return node(target & ~highBit);
    }
    return {};
}

QByteArrayView PeIcons::data(const Node &names, int entry, qint64 most)
{
    constexpr qint64 dataEntrySize = 16;
    const qint64 languages = branchBelow(names, entry);
    if (languages < 0)
        return {};
    const Node language = node(static_cast<quint32>(languages));
    if (language.count == 0)
        return {};
    const auto target = at<quint32>(m_source.read(language.entries, entrySize), 4);
    if ((target & highBit) != 0 || target + dataEntrySize > m_directorySize)
        return {};
    const QByteArrayView leaf = m_source.read(m_directory + target, dataEntrySize);
    const auto address = at<quint32>(leaf, 0);
    const auto size = at<quint32>(leaf, 4);
    const qint64 offset = fileOffset(address, size);
    return m_source.read(offset, std::min(qint64(size), most));
}

std::vector<IconFrame> PeIcons::frames(int icon)
{
    constexpr qint64 longestDirectory = 6 + 65535 * 14;
    if (icon < 0 || icon >= m_count)
        return {};
    return IconFrames::read(
        data(m_groups, icon, longestDirectory), IconFrames::Directory::Resource);
}

QByteArrayView PeIcons::bytes(const IconFrame &frame, qint64 most)
{
    if (!m_iconsRead) {
        m_iconsRead = true;
        m_icons = type(iconType);
        const QByteArrayView entries = m_source.read(m_icons.entries, m_icons.count * entrySize);
        for (qsizetype i = 0; i < entries.size(); i += entrySize)
            m_entryOfIcon.try_emplace(at<quint32>(entries, i), static_cast<int>(i / entrySize));
    }
    const auto found = m_entryOfIcon.find(frame.place);
    return found == m_entryOfIcon.end() ? QByteArrayView() : data(m_icons, found->second, most);
}
