#include "platform/picture/ProgramIcons.h"

#include "platform/picture/IconFile.h"
#include "platform/picture/LittleEndian.h"
#include "platform/picture/NeIcons.h"
#include "platform/picture/PeIcons.h"

#include <QFile>

#include <algorithm>

namespace {

constexpr int mostTries = 8; ///< Frames looked at, so that a thousand damaged ones cost no time.
constexpr qint64 frameHeader = 128; ///< Bytes that tell size and depth.

/// The frames, best first.
std::vector<IconFrame> bestFrames(IconLibrary &library, int index, int wantedSize)
{
    std::vector<IconFrame> frames = library.frames(index);
    IconFrames::sortByFitness(frames, wantedSize);
    if (frames.size() > mostTries)
        frames.resize(mostTries);
    bool told = false;
    for (IconFrame &frame : frames) {
        if (frame.bitsPerPixel == 0) {
            frame.bitsPerPixel = IconFrames::depth(library.bytes(frame, frameHeader));
            told = true;
        }
    }
    if (told)
        IconFrames::sortByFitness(frames, wantedSize);
    return frames;
}

} // namespace

ProgramIcons::ProgramIcons(const QString &path)
    : ProgramIcons(std::make_unique<QFile>(path))
{
}

ProgramIcons::ProgramIcons(std::unique_ptr<QIODevice> device)
    : m_source(std::move(device))
{
    recognise();
}

ProgramIcons::~ProgramIcons() = default;

void ProgramIcons::recognise()
{
    constexpr qint64 dosHeaderSize = 64;
    constexpr qsizetype newHeaderField = 60;
    const QByteArrayView dos = m_source.read(0, dosHeaderSize);
    if (dos.startsWith("MZ")) {
        const auto header = LittleEndian::at<quint32>(dos, newHeaderField);
        const QByteArrayView mark = m_source.read(header, 4);
        if (mark.startsWith(QByteArrayView("PE\0\0", 4)))
            m_library = std::make_unique<PeIcons>(m_source, header);
        else if (mark.startsWith("NE"))
            m_library = std::make_unique<NeIcons>(m_source, header);
    } else if (IconFile::recognises(m_source)) {
        m_library = std::make_unique<IconFile>(m_source);
    }
}

int ProgramIcons::count() const
{
    return m_library ? m_library->count() : 0;
}

std::vector<IconFrame> ProgramIcons::frames(int index) const
{
    return index >= 0 && index < count() ? m_library->frames(index) : std::vector<IconFrame>();
}

std::vector<int> ProgramIcons::sizes(int index) const
{
    std::vector<int> sizes;
    for (const IconFrame &frame : frames(index))
        sizes.push_back(frame.size);
    std::sort(sizes.begin(), sizes.end());
    sizes.erase(std::unique(sizes.begin(), sizes.end()), sizes.end());
    return sizes;
}

bool ProgramIcons::has(int index) const
{
    if (!m_library)
        return false;
    const auto frames = bestFrames(*m_library, index, usualSize);
    return std::any_of(frames.begin(), frames.end(), [this](const IconFrame &frame) {
        return IconFrames::plausible(m_library->bytes(frame, frameHeader));
    });
}

QImage ProgramIcons::icon(int index, int wantedSize, qint64 memory) const
{
    if (!m_library)
        return {};
    const auto frames = bestFrames(*m_library, index, wantedSize);
    for (const IconFrame &frame : frames) {
        QImage image = IconFrames::decode(m_library->bytes(frame, IconFrames::mostBytes), memory);
        if (!image.isNull())
            return image;
    }
    return {};
}
