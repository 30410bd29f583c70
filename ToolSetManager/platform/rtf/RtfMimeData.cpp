#include "platform/rtf/RtfMimeData.h"

#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"

#include <QMimeData>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextImageFormat>
#include <QUrl>

namespace {

constexpr const char *rtfTypes[] = {"text/rtf", "application/rtf", "text/richtext"};

QByteArray rtfOf(const QMimeData &data)
{
    for (const char *type : rtfTypes) {
        QByteArray bytes = data.data(QLatin1StringView(type));
        if (RtfReader::isRtf(bytes))
            return bytes;
    }
    return {};
}

/// The toolkit would read files of this computer for a page that names them.
class WebText : public QTextDocument
{
protected:
    QVariant loadResource(int type, const QUrl &name) override
    {
        const bool inPage = name.scheme() == QLatin1StringView("data");
        return inPage ? QTextDocument::loadResource(type, name) : QVariant();
    }
};

/// The picture that is all of the selection; null for other selections.
QVariant pictureOf(const QTextCursor &cursor)
{
    if (cursor.selectionEnd() - cursor.selectionStart() != 1)
        return {};
    QTextCursor behind(cursor);
    behind.setPosition(cursor.selectionEnd());
    const QTextCharFormat format = behind.charFormat();
    if (!format.isImageFormat())
        return {};
    return cursor.document()->resource(
        QTextDocument::ImageResource, QUrl(format.toImageFormat().name()));
}

} // namespace

namespace RtfMimeData {

QMimeData *fromSelection(const QTextCursor &cursor)
{
    auto *selected = new QMimeData;
    const QByteArray rtf = RtfWriter::writeSelection(cursor);
    for (const char *type : rtfTypes)
        selected->setData(QLatin1StringView(type), rtf);
    const QTextDocumentFragment fragment(cursor);
    selected->setHtml(fragment.toHtml());
    selected->setText(fragment.toPlainText());
    const QVariant picture = pictureOf(cursor);
    if (picture.isValid())
        selected->setImageData(picture);
    return selected;
}

bool isReadable(const QMimeData &data)
{
    return data.hasText() || data.hasHtml() || data.hasImage() || !rtfOf(data).isEmpty();
}

std::optional<bool> readFormatted(const QMimeData &data, RtfReader &reader, QTextDocument &document)
{
    const QByteArray rtf = rtfOf(data);
    if (!rtf.isEmpty()) {
        reader.read(rtf, document);
        return reader.endedWithParagraph();
    }
    if (!data.hasHtml())
        return std::nullopt;
    WebText web;
    web.setDefaultFont(document.defaultFont());
    web.setHtml(data.html());
    reader.read(RtfWriter::write(web), document);
    return false;
}

} // namespace RtfMimeData
