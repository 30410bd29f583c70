#include "platform/rtf/RtfText.h"

#include "platform/text/CodePage.h"

#include <algorithm>

namespace RtfText {

QByteArray toBytes(const QString &rtf, int codePage)
{
    const bool ascii = std::all_of(rtf.cbegin(), rtf.cend(), [](QChar c) { return c < u'\x80'; });
    if (ascii)
        return rtf.toLatin1();
    const CodePage page(codePage);
    if (const auto bytes = page.encode(rtf))
        return *bytes;
    QByteArray bytes;
    bytes.reserve(rtf.size() + 16);
    for (const QChar c : rtf) {
        if (const auto byte = page.encode(QStringView(&c, 1)))
            bytes.append(*byte);
        else
            bytes.append("\\u")
                .append(QByteArray::number(static_cast<qint16>(c.unicode())))
                .append('?');
    }
    return bytes;
}

bool isRtf(const QString &text)
{
    return text.startsWith(QLatin1StringView("{\\rtf"))
        || text.startsWith(QLatin1StringView("{\\urtf"));
}

} // namespace RtfText
