#pragma once

#include <QByteArray>
#include <QString>

/// Rich text as the program's strings hold it: bytes decoded by the system's code page, because
/// that is what tool set files do with them.
namespace RtfText {

/// Number of the system's code page.
int systemCodePage();

/// The bytes of a rich text; characters that the code page does not have are written as `\u`.
QByteArray toBytes(const QString &rtf);

bool isRtf(const QString &text);

} // namespace RtfText
