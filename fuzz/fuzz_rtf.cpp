#include "Promise.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"

#include <QGuiApplication>
#include <QTextDocument>

namespace {

bool isSevenBit(const QByteArray &bytes)
{
    for (const char c : bytes) {
        if (static_cast<unsigned char>(c) >= 128)
            return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz_rtf";
    static char *argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*=false");
    static const QGuiApplication application(argc, argv); // documents need fonts

    const QByteArrayView bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    RtfReader reader;
    QTextDocument first;
    reader.read(bytes, first);

    const QByteArray written = RtfWriter::write(first);
    require(isSevenBit(written), "what is written is seven-bit");
    QTextDocument second;
    reader.read(written, second);
    require(second.toRawText() == first.toRawText(), "no character is lost");
    require(RtfWriter::write(second) == written, "a second write gives the same bytes");
    return 0;
}
