#pragma once

#include "platform/picture/IconLibrary.h"

#include <unordered_map>

class ByteSource;

/// The icons of a 16-bit program file ("NE"), in the order in which its resource table has them.
class NeIcons : public IconLibrary
{
public:
    /// \a header is the offset of the "NE". The source is borrowed.
    NeIcons(ByteSource &source, qint64 header);

    int count() override { return static_cast<int>(m_groups.size()); }
    std::vector<IconFrame> frames(int icon) override;
    QByteArrayView bytes(const IconFrame &frame, qint64 most) override;

private:
    struct Place
    {
        qint64 offset = 0;
        qint64 size = 0;
    };

    /// False when the table is cut off.
    bool readTable(qint64 header);

    ByteSource &m_source;
    std::vector<Place> m_groups;
    std::unordered_map<quint32, Place> m_frames; ///< By number.
};
