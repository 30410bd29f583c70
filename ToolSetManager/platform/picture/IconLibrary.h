#pragma once

#include "platform/picture/IconFrames.h"

#include <QByteArrayView>

#include <vector>

/// The icons of one kind of file, as the file holds them. Icons are counted from 0. What is cut
/// off, lies outside the file or does not fit together is empty. A view that is returned lasts
/// until the next call.
class IconLibrary
{
public:
    IconLibrary() = default;
    IconLibrary(const IconLibrary &) = delete;
    IconLibrary &operator=(const IconLibrary &) = delete;
    virtual ~IconLibrary() = default;

    virtual int count() = 0;
    /// The frames of an icon in the order of its directory.
    virtual std::vector<IconFrame> frames(int icon) = 0;
    /// At most \a most bytes from the start of a frame.
    virtual QByteArrayView bytes(const IconFrame &frame, qint64 most) = 0;
};
