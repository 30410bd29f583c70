#include "support/ProgramFile.h"

#include "support/Bytes.h"

#include <QBuffer>

#include <algorithm>

namespace ProgramFile {

using Bytes::dword;
using Bytes::word;

namespace {

void padTo(QByteArray &bytes, qsizetype unit)
{
    bytes.append((unit - bytes.size() % unit) % unit, '\0');
}

/// The head of a directory entry, up to the place of the frame.
QByteArray entry(const Frame &frame, bool cursor = false)
{
    const auto side = [](int n) { return QByteArray(1, static_cast<char>(n >= 256 ? 0 : n)); };
    const int colours = frame.bits < 8 ? 1 << frame.bits : 0;
    return side(frame.width) + side(frame.height) + QByteArray(1, static_cast<char>(colours)) + '\0'
        + word(cursor ? 3 : 1) + word(cursor ? 5 : frame.bits) + dword(frame.bytes.size());
}

/// The resource of type 14; its frames are numbered from \a first on.
QByteArray group(const Icon &icon, int first)
{
    QByteArray bytes = word(0) + word(1) + word(icon.frames.size());
    for (const Frame &frame : icon.frames)
        bytes += entry(frame) + word(first++);
    return bytes;
}

/// A leaf of the tree: a resource with its name or number.
struct Leaf
{
    QString name;
    quint32 number = 0;
    QByteArray bytes;
};

/// Writes the tree level by level, then the names, then the data.
QByteArray resourceSection(
    const std::vector<std::pair<quint32, std::vector<Leaf>>> &types, quint32 address)
{
    constexpr quint32 highBit = 0x80000000;
    constexpr qsizetype node = 16;
    constexpr qsizetype item = 8;
    qsizetype leaves = 0;
    for (const auto &type : types)
        leaves += qsizetype(type.second.size());
    const qsizetype namesAt = node + qsizetype(types.size()) * item;
    const qsizetype languagesAt = namesAt + qsizetype(types.size()) * node + leaves * item;
    const qsizetype entriesAt = languagesAt + leaves * (node + item);
    const qsizetype stringsAt = entriesAt + leaves * 16;

    QByteArray strings;
    for (const auto &type : types) {
        for (const Leaf &leaf : type.second) {
            if (!leaf.name.isEmpty())
                strings += QByteArray(2 + leaf.name.size() * 2, '\0');
        }
    }
    padTo(strings, 4);
    const auto header = [](qsizetype named, qsizetype numbered) -> QByteArray {
        return QByteArray(12, '\0') + word(named) + word(numbered);
    };
    QByteArray root = header(0, qsizetype(types.size()));
    QByteArray names;
    QByteArray languages;
    QByteArray entries;
    QByteArray texts;
    QByteArray data;
    qsizetype nextNames = namesAt;
    for (const auto &[type, list] : types) {
        root += dword(type) + dword(highBit | quint32(nextNames));
        nextNames += node + qsizetype(list.size()) * item;
        const auto named = std::count_if(
            list.begin(), list.end(), [](const Leaf &leaf) { return !leaf.name.isEmpty(); });
        names += header(named, qsizetype(list.size()) - named);
        for (const Leaf &leaf : list) {
            if (leaf.name.isEmpty()) {
                names += dword(leaf.number);
            } else {
                names += dword(highBit | quint32(stringsAt + texts.size()));
                texts += word(leaf.name.size());
                for (const QChar c : leaf.name)
                    texts += word(c.unicode());
            }
            names += dword(highBit | quint32(languagesAt + languages.size()));
            languages += header(0, 1) + dword(1033) + dword(entriesAt + entries.size());
            entries += dword(address + quint32(stringsAt + strings.size() + data.size()))
                + dword(leaf.bytes.size()) + dword(0) + dword(0);
            data += leaf.bytes;
            padTo(data, 4);
        }
    }
    texts.append(strings.size() - texts.size(), '\0');
    return root + names + languages + entries + texts + data;
}

} // namespace

Frame bitmap(int width, int height, int bits, const QList<QRgb> &colours,
    const std::function<quint32(int, int)> &pixel, const std::function<bool(int, int)> &masked)
{
    const auto rows = [&](int depth, const std::function<quint32(int, int)> &value) {
        QByteArray all;
        for (int y = height - 1; y >= 0; --y) {
            QByteArray row((width * depth + 31) / 32 * 4, '\0');
            for (int x = 0; x < width; ++x) {
                for (int bit = 0; bit < depth; ++bit) {
                    // Indexes fill a byte from its high end, colours lie low byte first.
                    const int at = depth < 8 ? x * depth + depth - 1 - bit : x * depth + bit;
                    const int inByte = depth < 8 ? 7 - at % 8 : at % 8;
                    if ((value(x, y) >> bit & 1) != 0)
                        row[at / 8] = static_cast<char>(row[at / 8] | 1 << inByte);
                }
            }
            all += row;
        }
        return all;
    };
    Frame frame {width, height, bits, {}};
    frame.bytes = dword(40) + dword(width) + dword(height * 2) + word(1) + word(bits)
        + QByteArray(16, '\0') + dword(colours.size()) + dword(0);
    for (const QRgb colour : colours)
        frame.bytes += dword(colour & 0xFFFFFF);
    frame.bytes += rows(bits, pixel) + rows(1, [&](int x, int y) { return masked(x, y) ? 1 : 0; });
    return frame;
}

Frame plain(int side, QRgb colour)
{
    return bitmap(
        side, side, 24, {}, [=](int, int) { return colour & 0xFFFFFF; },
        [](int, int) { return false; });
}

Frame png(const QImage &image)
{
    Frame frame {image.width(), image.height(), 32, {}};
    QBuffer buffer(&frame.bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return frame;
}

QByteArray pe(std::vector<Icon> icons, bool wide)
{
    constexpr quint32 headersSize = 0x400;
    constexpr quint32 textAddress = 0x1000;
    constexpr quint32 resourceAddress = 0x5000;
    std::sort(icons.begin(), icons.end(), [](const Icon &a, const Icon &b) {
        return std::tuple(a.name.isEmpty(), a.name, a.number)
            < std::tuple(b.name.isEmpty(), b.name, b.number);
    });
    std::vector<Leaf> frames;
    std::vector<Leaf> groups;
    for (const Icon &icon : icons) {
        const int first = static_cast<int>(frames.size()) + 1;
        for (const Frame &frame : icon.frames)
            frames.push_back({{}, quint32(frames.size()) + 1, frame.bytes});
        groups.push_back({icon.name, icon.number, group(icon, first)});
    }
    QByteArray resources = resourceSection({{3, frames}, {14, groups}}, resourceAddress);
    const auto resourceSize = quint32(resources.size());
    padTo(resources, 0x200);

    QByteArray directories(16 * 8, '\0');
    directories.replace(2 * 8, 8, QByteArray(dword(resourceAddress) + dword(resourceSize)));
    QByteArray optional(wide ? 112 : 96, '\0');
    optional.replace(0, 2, word(wide ? 0x20B : 0x10B));
    optional.replace(optional.size() - 4, 4, dword(16));
    optional += directories;
    const auto section = [](const char *name, quint32 address, quint32 size,
                             quint32 offset) -> QByteArray {
        QByteArray bytes(name);
        padTo(bytes, 8);
        return bytes + dword(size) + dword(address) + dword(size) + dword(offset)
            + QByteArray(16, '\0');
    };
    QByteArray file = "MZ" + QByteArray(58, '\0') + dword(0x80) + QByteArray(64, '\0');
    file += QByteArray("PE\0\0", 4) + word(wide ? 0x8664 : 0x14C) + word(2) + QByteArray(12, '\0')
        + word(optional.size()) + word(0x102) + optional;
    file += section(".text", textAddress, 0x200, headersSize)
        + section(".rsrc", resourceAddress, quint32(resources.size()), peResources);
    padTo(file, headersSize);
    return file + QByteArray(0x200, '\xCC') + resources;
}

QByteArray ne(const std::vector<Icon> &icons)
{
    constexpr int shift = 4;
    constexpr qsizetype unit = 1 << shift;
    constexpr qsizetype tableAt = 64; // behind the header
    std::vector<std::pair<quint16, QByteArray>> groups;
    std::vector<std::pair<quint16, QByteArray>> frames;
    for (const Icon &icon : icons) {
        groups.emplace_back(
            quint16(0x8000 | icon.number), group(icon, static_cast<int>(frames.size()) + 1));
        for (const Frame &frame : icon.frames)
            frames.emplace_back(quint16(0x8001 + frames.size()), frame.bytes);
    }
    const qsizetype header = 0x80;
    qsizetype dataAt =
        header + tableAt + 2 + 2 * 8 + 2 + 2 + qsizetype(groups.size() + frames.size()) * 12;
    dataAt = (dataAt + unit - 1) / unit * unit;
    QByteArray table = word(shift);
    QByteArray data;
    for (const auto &[type, list] : {std::pair(0x800E, groups), std::pair(0x8003, frames)}) {
        table += word(type) + word(list.size()) + dword(0);
        for (const auto &[number, bytes] : list) {
            QByteArray padded = bytes;
            padTo(padded, unit);
            table += word((dataAt + data.size()) / unit) + word(padded.size() / unit) + word(0x1C30)
                + word(number) + dword(0);
            data += padded;
        }
    }
    QByteArray file = "MZ" + QByteArray(58, '\0') + dword(header) + QByteArray(64, '\0') + "NE"
        + QByteArray(34, '\0') + word(tableAt) + QByteArray(26, '\0') + table + word(0);
    padTo(file, unit);
    return file + data;
}

QByteArray ico(const std::vector<Frame> &frames, quint16 type)
{
    QByteArray file = word(0) + word(type) + word(frames.size());
    qsizetype offset = 6 + qsizetype(frames.size()) * 16;
    for (const Frame &frame : frames) {
        file += entry(frame, type == 2) + dword(offset);
        offset += frame.bytes.size();
    }
    for (const Frame &frame : frames)
        file += frame.bytes;
    return file;
}

} // namespace ProgramFile
