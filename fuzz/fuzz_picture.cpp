#include "platform/picture/EnhancedMetafile.h"
#include "platform/picture/Metafile.h"
#include "platform/picture/Picture.h"

#include <QGuiApplication>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Enhanced metafiles are played; the others are only taken apart, because what plays them is a
/// process of its own.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz_picture";
    static char *argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*=false");
    static const QGuiApplication application(argc, argv); // text needs fonts

    constexpr qint64 memory = 1 << 20;
    const QByteArrayView bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    qint64 memoryLeft = memory;
    const auto image = Picture::decode(bytes, memoryLeft);
    if (image ? image->isNull() || memoryLeft != memory - image->sizeInBytes() || memoryLeft < 0
              : memoryLeft != memory)
        std::abort();
    constexpr int longestSide = 5;
    qint64 leftBySmall = memory;
    const auto small = Picture::decode(bytes, leftBySmall, longestSide);
    if (small ? small->isNull() || small->width() > longestSide || small->height() > longestSide
                || leftBySmall < 0
              : image.has_value())
        std::abort();
    if (image) {
        // Nothing of it is left to chance.
        qint64 again = memory;
        if (Picture::decode(bytes, again) != image)
            std::abort();
    }
    Metafile::size(bytes);
    const QImage sole = Metafile::soleBitmap(bytes);
    if (!sole.isNull() && sole.format() != QImage::Format_RGB32)
        std::abort();
    const QSize played(120, 80);
    const QImage drawing = EnhancedMetafile::render(bytes, played);
    if (!drawing.isNull() && drawing.size() != played)
        std::abort();
    return 0;
}
