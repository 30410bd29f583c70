#include "platform/rtf/RtfMimeData.h"

#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfStyle.h"
#include "platform/rtf/RtfWebPage.h"
#include "platform/rtf/RtfWriter.h"

#include <QMimeData>
#include <QTextBlock>
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

/// The selection without hidden text, which no other program would hide.
QTextDocumentFragment shownPart(const QTextCursor &cursor)
{
    QTextDocument part;
    QTextCursor at(&part);
    at.insertFragment(QTextDocumentFragment(cursor));
    QList<std::pair<int, int>> hidden;
    for (QTextBlock block = part.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (RtfCharStyle::isHidden(fragment.charFormat()))
                hidden.prepend({fragment.position(), fragment.position() + fragment.length()});
        }
    }
    if (hidden.isEmpty())
        return QTextDocumentFragment(cursor);
    for (const auto &[from, to] : std::as_const(hidden)) {
        at.setPosition(from);
        at.setPosition(to, QTextCursor::KeepAnchor);
        at.removeSelectedText();
    }
    return QTextDocumentFragment(&part);
}

} // namespace

namespace RtfMimeData {

QMimeData *fromSelection(const QTextCursor &cursor)
{
    auto *selected = new QMimeData;
    const QByteArray rtf = RtfWriter::writeSelection(cursor);
    for (const char *type : rtfTypes)
        selected->setData(QLatin1StringView(type), rtf);
    const QTextDocumentFragment shown = shownPart(cursor);
    selected->setHtml(shown.toHtml());
    selected->setText(shown.toPlainText());
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
    reader.read(RtfWebPage(data.html(), document.defaultFont()).toRtf(), document);
    return false;
}

} // namespace RtfMimeData
