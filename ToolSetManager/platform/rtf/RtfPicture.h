#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QTextImageFormat>

#include <functional>
#include <optional>

class QTextDocument;

/// A picture of a rich text: the bytes as they stood there, and the size at which it is shown.
struct RtfPicture
{
    /// What the text calls the picture, which is written again as it was. What is shown depends on
    /// the bytes alone: some writers put a GIF where they promise a PNG.
    enum Kind {
        NoKind,
        Metafile, ///< Windows metafile without the placeable header.
        Bitmap, ///< Device-independent bitmap without the file's header.
        Png,
        Jpeg,
        EnhancedMetafile,
        DeviceBitmap, ///< These three are kept, and a frame stands for them.
        MacPicture,
        Os2Metafile
    };

    /// Plays a Windows metafile, plain or enhanced. Sizes: as shown, in twips, and of the image
    /// wanted, in pixels. Null when it cannot.
    using MetafileDecoder =
        std::function<QImage(QByteArrayView metafile, QSize twips, QSize pixels)>;

    static constexpr int maximumGoal = 31680; ///< Twips; 22 inches.

    Kind kind = NoKind;
    QByteArray data;
    QSize extent {
        0, 0}; ///< \picw and \pich: hundredths of a millimetre for metafiles, else pixels.
    QSize goal {0, 0}; ///< Twips, scaling applied.

    /// Fills what the text did not say from the rest, and applies the scaling in percent to the
    /// goal. False when there are no bytes, or none whose kind the text or they themselves show.
    bool complete(int scaleX, int scaleY);

    /// The form in which the oldest readers show pictures: a metafile that paints one bitmap.
    /// Transparent parts become white. An empty size means 96 pixels to the inch.
    static RtfPicture fromImage(const QImage &image, QSize twips = {});

    /// The picture's pixels; null when nothing here reads it. The memory it takes is subtracted
    /// from \a memoryLeft, and it is null when that does not suffice.
    QImage decode(const MetafileDecoder &metafiles, qint64 &memoryLeft) const;

    /// The format of the picture's character in a document; \a base is that of the text around.
    /// \a name is the resource to show.
    QTextImageFormat toFormat(const QTextCharFormat &base, const QString &name) const;
    /// Empty when the format is none that toFormat() made.
    static std::optional<RtfPicture> fromFormat(const QTextCharFormat &format);

    /// A resource name for the picture: the same for equal ones.
    QString resourceName() const;
    /// Name of the frame that stands for pictures that cannot be shown.
    static QString frameName();
    /// Makes the document show \a image for \a name, or the frame when it is null. Returns the
    /// name of what shows.
    static QString addResource(QTextDocument &document, const QString &name, const QImage &image);

    friend bool operator==(const RtfPicture &, const RtfPicture &) = default;

private:
    /// The kind that goes with the bytes; NoKind when they are none that is shown here.
    Kind kindOfData() const;
    QImage decodeMetafile(const MetafileDecoder &metafiles, qint64 &memoryLeft) const;
    /// Fills `goal` where the text did not say it.
    void completeGoal();
};
