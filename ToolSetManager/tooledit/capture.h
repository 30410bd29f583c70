#pragma once

#include <QString>
#include <QtGlobal>

class PictureControl;

/// Copies a part of the screen to the clipboard, into a picture control and into a file.
namespace capture {

/// Screen pixels (of 96 dpi where the desktop is scaled); right and bottom are exclusive.
struct ScreenRect
{
    qint32 left = 0;
    qint32 top = 0;
    qint32 right = 0;
    qint32 bottom = 0;
};

/// Puts the rectangle on the clipboard as a bitmap, whose former content is lost, and then makes
/// the clipboard's bitmap the control's picture. A rectangle without width or height leaves the
/// clipboard alone: the control then gets what bitmap the clipboard holds, or none.
///
/// Throws VbError::Overflow when the width or the height is no 32-bit number; nothing is done then.
void CaptureScreenRectToPicture(const ScreenRect &rectangle, PictureControl &picture);

/// As above, and then writes the control's picture to a bitmap file. Passes over every error and
/// always returns true.
bool CaptureScreenRectToFile(
    const ScreenRect &rectangle, const QString &fileName, PictureControl &picture);

} // namespace capture
