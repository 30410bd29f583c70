#include "platform/rtf/RtfPicture.h"

#include "platform/picture/Dib.h"
#include "platform/picture/EnhancedMetafile.h"
#include "platform/picture/Metafile.h"
#include "platform/picture/Picture.h"
#include "platform/rtf/DibMetafile.h"
#include "platform/rtf/RtfStyle.h"
#include "platform/text/Twips.h"

#include <QCryptographicHash>
#include <QPainter>
#include <QTextDocument>
#include <QUrl>

#include <cmath>

namespace {

constexpr int twipsPerPixel = Twips::perPixel;
constexpr double metafileUnit = Twips::perInch / 2540.0; // twips in a hundredth of a millimetre
constexpr int maximumDecodedSide = 2000;
constexpr int decodedPerShown = 2; // metafiles are played finer than shown, for large scales

/// What stands for a picture that nothing here can show. Stretched to the picture's size.
QImage frameImage()
{
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setPen(QColor(128, 128, 128));
    painter.drawRect(0, 0, 63, 63);
    return image;
}

} // namespace

RtfPicture RtfPicture::fromImage(const QImage &image, QSize twips)
{
    QImage opaque(image.size(), QImage::Format_RGB32);
    opaque.fill(Qt::white);
    QPainter painter(&opaque);
    painter.drawImage(opaque.rect(), image);
    painter.end();

    RtfPicture picture;
    picture.kind = Metafile;
    picture.data = DibMetafile::encode(opaque);
    picture.goal = (twips.isEmpty() ? image.size() * twipsPerPixel : twips)
                       .boundedTo({maximumGoal, maximumGoal});
    picture.extent = QSize(static_cast<int>(std::lround(picture.goal.width() / metafileUnit)),
        static_cast<int>(std::lround(picture.goal.height() / metafileUnit)));
    return picture;
}

bool RtfPicture::complete(int scaleX, int scaleY)
{
    if (kind == NoKind)
        kind = kindOfData();
    if (data.isEmpty() || kind == NoKind)
        return false;
    completeGoal();
    const auto scaled = [](int size, int percent) {
        constexpr qint64 most = maximumGoal;
        return static_cast<int>(
            qBound(qint64(1), qint64(size) * (percent ? percent : 100) / 100, most));
    };
    goal = {scaled(goal.width(), scaleX), scaled(goal.height(), scaleY)};
    return true;
}

void RtfPicture::completeGoal()
{
    const double unit = kind == Metafile || kind == EnhancedMetafile ? metafileUnit : twipsPerPixel;
    const auto complete = [unit](int &length, int own) {
        if (length <= 0)
            length = static_cast<int>(std::lround(qMin(own * unit, double(maximumGoal))));
        length = qBound(0, length, maximumGoal);
    };
    complete(goal.rwidth(), extent.width());
    complete(goal.rheight(), extent.height());
}

RtfPicture::Kind RtfPicture::kindOfData() const
{
    if (::EnhancedMetafile::recognises(data))
        return EnhancedMetafile;
    if (::Metafile::recognises(data))
        return Metafile;
    if (data.startsWith("\xFF\xD8\xFF"))
        return Jpeg;
    // There is no word for GIF and bitmap files: other writers call them PNG, too.
    if (data.startsWith("\x89PNG") || data.startsWith("GIF8") || data.startsWith("BM"))
        return Png;
    return Dib::header(data) ? Bitmap : NoKind;
}

QImage RtfPicture::decode(const MetafileDecoder &metafiles, qint64 &memoryLeft) const
{
    switch (kindOfData()) {
    case Metafile:
    case EnhancedMetafile:
        return decodeMetafile(metafiles, memoryLeft);
    case Png:
    case Jpeg:
        return Picture::decode(data, memoryLeft).value_or(QImage());
    case Bitmap:
        return DibMetafile::decodeBitmap(data, memoryLeft);
    default:
        return {};
    }
}

QImage RtfPicture::decodeMetafile(const MetafileDecoder &metafiles, qint64 &memoryLeft) const
{
    const QSize pixels = (goal * decodedPerShown / twipsPerPixel)
                             .boundedTo({maximumDecodedSide, maximumDecodedSide});
    const qint64 needed = qint64(pixels.width()) * pixels.height() * 4;
    if (metafiles && !pixels.isEmpty() && needed <= memoryLeft) {
        QImage image = metafiles(data, goal, pixels);
        memoryLeft -= image.sizeInBytes();
        if (!image.isNull())
            return image;
    }
    return ::EnhancedMetafile::recognises(data) ? ::EnhancedMetafile::firstBitmap(data, memoryLeft)
                                                : DibMetafile::decode(data, memoryLeft);
}

QTextImageFormat RtfPicture::toFormat(const QTextCharFormat &base, const QString &name) const
{
    QTextImageFormat format;
    format.merge(base);
    format.setName(name);
    const bool shown = !RtfCharStyle::isHidden(base);
    format.setWidth(shown ? double(goal.width()) / twipsPerPixel : 0);
    format.setHeight(shown ? double(goal.height()) / twipsPerPixel : 0);
    format.setProperty(RtfPictureKindProperty, int(kind));
    format.setProperty(RtfPictureDataProperty, data);
    format.setProperty(RtfPictureExtentProperty, extent);
    format.setProperty(RtfPictureGoalProperty, goal);
    return format;
}

std::optional<RtfPicture> RtfPicture::fromFormat(const QTextCharFormat &format)
{
    const int kind = format.intProperty(RtfPictureKindProperty);
    if (kind <= NoKind || kind > Os2Metafile)
        return std::nullopt;
    RtfPicture picture;
    picture.kind = static_cast<Kind>(kind);
    picture.data = format.property(RtfPictureDataProperty).toByteArray();
    picture.extent = format.property(RtfPictureExtentProperty).toSize();
    picture.goal = format.property(RtfPictureGoalProperty).toSize();
    return picture;
}

QString RtfPicture::resourceName() const
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(QByteArray(1, static_cast<char>('0' + kind)));
    hash.addData(data);
    return QStringLiteral("rtf:") + QString::fromLatin1(hash.result().toHex());
}

QString RtfPicture::frameName()
{
    return QStringLiteral("rtf:frame");
}

QString RtfPicture::addResource(QTextDocument &document, const QString &name, const QImage &image)
{
    QString used = image.isNull() ? frameName() : name;
    document.addResource(
        QTextDocument::ImageResource, QUrl(used), image.isNull() ? frameImage() : image);
    return used;
}
