#pragma once

#include <QByteArray>
#include <QString>

/// Rich text as the program's strings hold it: bytes decoded by the code page of the tool set file,
/// because that is what loading does with all text.
namespace RtfText {

/// The bytes of a rich text; characters that the code page does not have are written as `\u`.
QByteArray toBytes(const QString &rtf, int codePage);

bool isRtf(const QString &text);

} // namespace RtfText
