#include "platform/picture/ProgramIcons.h"

#include <QBuffer>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr int mostIcons = 20; // one file may list the same icon a thousand times
    auto buffer = std::make_unique<QBuffer>();
    buffer->setData(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const ProgramIcons icons(std::move(buffer));
    const int count = std::min(icons.count(), mostIcons);
    for (int i = 0; i < count; ++i) {
        const QImage image = icons.icon(i);
        if (!image.isNull() && (image.format() != QImage::Format_ARGB32 || !icons.has(i)))
            std::abort();
        icons.icon(i, 16);
    }
    return 0;
}
