#include "tooledit/capture.h"

#include "platform/VbError.h"
#include "platform/desktop/ScreenShot.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureControl.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>

#include <limits>

namespace {

qint32 difference(qint32 a, qint32 b)
{
    const qint64 result = qint64(a) - b;
    if (result < std::numeric_limits<qint32>::min() || result > std::numeric_limits<qint32>::max())
        throw VbError(VbError::Overflow, QStringLiteral("capture"), QStringLiteral("Overflow"));
    return static_cast<qint32>(result);
}

} // namespace

namespace capture {

void CaptureScreenRectToPicture(const ScreenRect &rectangle, PictureControl &picture)
{
    const qint32 width = difference(rectangle.right, rectangle.left);
    const qint32 height = difference(rectangle.bottom, rectangle.top);
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (width > 0 && height > 0) {
        const QImage image = ScreenShot::take({rectangle.left, rectangle.top, width, height});
        if (!image.isNull())
            clipboard->setImage(image);
    }
    picture.setPicture(clipboard->image());
}

bool CaptureScreenRectToFile(
    const ScreenRect &rectangle, const QString &fileName, PictureControl &picture)
{
    try {
        CaptureScreenRectToPicture(rectangle, picture);
    } catch (const VbError &) {
        // Required: the control keeps its picture, which is then what is saved.
    }
    if (!picture.Picture().isNull()) {
        // The folder may be open to others, who could have put a link to another file there.
        QFile file(fileName);
        file.remove();
        if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            file.write(Picture::encodeBitmap(picture.Picture()));
    }
    return true;
}

} // namespace capture
