#pragma once

#include "platform/picture/IconLibrary.h"

#include <unordered_map>

class ByteSource;

/// The icons of a 32-bit or 64-bit program file ("PE"), in the order of its resource directory:
/// named ones before numbered ones, each sorted.
///
/// The directory is a tree of three levels, type, name and language, and is walked only so far
/// down; what points elsewhere is not followed. Counting reads the types and the number of names.
class PeIcons : public IconLibrary
{
public:
    /// \a header is the offset of the "PE". The source is borrowed.
    PeIcons(ByteSource &source, qint64 header);

    int count() override { return m_count; }
    std::vector<IconFrame> frames(int icon) override;
    QByteArrayView bytes(const IconFrame &frame, qint64 most) override;

private:
    struct Section
    {
        quint32 address = 0;
        quint32 size = 0;
        quint32 offset = 0; ///< In the file.
    };
    /// A branch of the tree: where its entries stand in the file, and how many they are.
    struct Node
    {
        qint64 entries = 0;
        int count = 0;
    };

    bool readSections(qint64 header);
    /// Where the \a size bytes at that address of the loaded program stand in the file; -1 when
    /// the file does not hold them.
    qint64 fileOffset(quint32 address, quint32 size) const;
    /// The branch at an offset in the directory; without entries when it is cut off.
    Node node(quint32 offset);
    /// The offset of the branch below the entry, or -1.
    qint64 branchBelow(const Node &node, int entry);
    /// The branch of a type.
    Node type(quint32 id);
    /// The first language's data below an entry of the second level.
    QByteArrayView data(const Node &node, int entry, qint64 most);

    ByteSource &m_source;
    std::vector<Section> m_sections;
    qint64 m_directory = 0; ///< Offset in the file.
    qint64 m_directorySize = 0;
    Node m_groups;
    int m_count = 0;
    Node m_icons;
    bool m_iconsRead = false;
    std::unordered_map<quint32, int> m_entryOfIcon; ///< By number.
};
