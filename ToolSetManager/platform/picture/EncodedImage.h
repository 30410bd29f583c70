#pragma once

#include <QByteArrayView>
#include <QImage>

/// Pictures in the formats of the toolkit, as they stand in files and within icons and metafiles.
namespace EncodedImage {

/// Reads a picture of that format ("png", "jpeg", "gif") and of no other. Null when the bytes are
/// none, or when the decoded picture would take more than \a memoryLeft bytes; on success the
/// bytes taken are subtracted from it.
QImage decode(const char *format, QByteArrayView bytes, qint64 &memoryLeft);

} // namespace EncodedImage
