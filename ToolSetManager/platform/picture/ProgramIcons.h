#pragma once

#include "platform/picture/ByteSource.h"
#include "platform/picture/IconFrames.h"

#include <QImage>
#include <QString>

#include <memory>
#include <vector>

class IconLibrary;

/// The icons of a program file: executables and libraries of 32, 64 and 16 bits, and icon and
/// cursor files, which hold one. Icons are counted from 0, in the order in which Windows counts
/// them. Everything else, what is cut off or damaged included, has no icons.
///
/// Only what is asked for is read: the count costs a few small reads, whatever the file's size.
class ProgramIcons
{
public:
    /// The size in which Windows shows icons.
    static constexpr int usualSize = 32;

    explicit ProgramIcons(const QString &path);
    explicit ProgramIcons(std::unique_ptr<QIODevice> device);
    ~ProgramIcons();

    int count() const;

    /// The pictures that the icon consists of, in the order of its directory.
    std::vector<IconFrame> frames(int index) const;
    /// The sizes in which the icon has a picture, smallest first.
    std::vector<int> sizes(int index) const;

    /// True when the icon has a picture that looks as if it could be read; much cheaper than
    /// reading it.
    bool has(int index) const;

    /// The picture of the icon that serves best for \a wantedSize pixels, in its own size: that
    /// size, else the next larger, else the next smaller one; of these the deepest. Where that one
    /// is damaged or would take more than \a memory bytes, the next best. Format_ARGB32; null when
    /// there is none.
    QImage icon(int index, int wantedSize = usualSize, qint64 memory = 1 << 22) const;

private:
    void recognise();

    mutable ByteSource m_source;
    std::unique_ptr<IconLibrary> m_library; ///< Null for a file of another kind.
};
