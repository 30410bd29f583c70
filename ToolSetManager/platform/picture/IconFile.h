#pragma once

#include "platform/picture/IconLibrary.h"

class ByteSource;

/// An icon or cursor file: one icon.
class IconFile : public IconLibrary
{
public:
    /// True when the file starts as an icon or cursor file does.
    static bool recognises(ByteSource &source);

    /// The source is borrowed.
    explicit IconFile(ByteSource &source);

    int count() override { return m_frames.empty() ? 0 : 1; }
    std::vector<IconFrame> frames(int icon) override;
    QByteArrayView bytes(const IconFrame &frame, qint64 most) override;

private:
    ByteSource &m_source;
    std::vector<IconFrame> m_frames;
};
