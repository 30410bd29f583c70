#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <functional>
#include <vector>

/// Packs icons into program files, as linkers do, for tests that read them back.
namespace ProgramFile {

/// A picture of an icon and what the icon's directory says of it.
struct Frame
{
    int width = 0;
    int height = 0;
    int bits = 0;
    QByteArray bytes;
};

/// An icon; it has a name, or else a number.
struct Icon
{
    QString name;
    quint16 number = 0;
    std::vector<Frame> frames;
};

/// An icon's bitmap: 40-byte header, colours, rows of picture and mask. \a pixel tells what is
/// stored for a pixel, an index or a colour; \a masked whether the mask has it.
Frame bitmap(int width, int height, int bits, const QList<QRgb> &colours,
    const std::function<quint32(int, int)> &pixel, const std::function<bool(int, int)> &masked);
/// 24 bits, one colour, nothing masked.
Frame plain(int side, QRgb colour);
Frame png(const QImage &image);

/// An executable of 32 or (\a wide) 64 bits; its resources are sorted.
QByteArray pe(std::vector<Icon> icons, bool wide = false);
/// One of 16 bits; its resources stand in the order given.
QByteArray ne(const std::vector<Icon> &icons);
/// An icon file (type 1) or cursor file (2).
QByteArray ico(const std::vector<Frame> &frames, quint16 type = 1);

constexpr qsizetype peResources = 0x600; ///< Where the resource directory starts in pe().

} // namespace ProgramFile
