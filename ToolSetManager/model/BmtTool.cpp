#include "model/BmtTool.h"

#include "model/StorableText.h"
#include "model/ToolFields.h"
#include "model/ToolSetStorage.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureBox.h"

namespace {

VbError fileError(const QString &text)
{
    return {VbError::DeviceError, QStringLiteral("CVBATools"), text};
}

/// Only blanks are trimmed, not every white space.
QByteArrayView trimmedBlanks(QByteArrayView text)
{
    while (!text.isEmpty() && text.front() == ' ')
        text = text.sliced(1);
    while (!text.isEmpty() && text.back() == ' ')
        text.chop(1);
    return text;
}

VbError pictureErrorOf(const QString &toolName)
{
    return fileError(QStringLiteral("The button picture of the tool \"%1\" is not a bitmap "
                                    "that can be read.")
                         .arg(toolName));
}

/// A picture's bytes have one extra byte behind the bitmap; without more there is no bitmap.
bool hasBitmap(QByteArrayView bytes)
{
    return bytes.size() > 1;
}

/// The size of a text with its count.
qint64 storedTextSize(
    const QString &text, const char *field, const QString &owner, const CodePage &codePage)
{
    const QString problem = StorableText::problem(codePage, text);
    if (!problem.isEmpty()) {
        throw fileError(QStringLiteral("The %1 of %2 cannot be stored: %3.")
                            .arg(QLatin1StringView(field), owner, problem));
    }
    return text.size() + qint64(sizeof(quint16));
}

} // namespace

ToolPtr BmtTool::decode(const BmtFormat::Record &record, qint16 fileVersion,
    ToolSetStorage &storage, qint64 &pictureMemory)
{
    auto tool = std::make_shared<CVBATool>();
    ToolFields::forEachStored(
        [&](const ToolFields::Text &field) {
            const QByteArrayView stored = record.*(field.stored);
            (*tool).*(field.field) =
                storage.codePage.decode(field.trimmed ? trimmedBlanks(stored) : stored);
        },
        [&](const ToolFields::Number &field) { (*tool).*(field.field) = record.*(field.stored); });
    tool->FLAGS = record.events;
    if (fileVersion != BmtFormat::oldVersion)
        tool->VBEvents = record.events;
    else
        tool->FLAGS &= ~1;
    tool->Enabled = VbBool::fromRaw(record.enabled);
    if (hasBitmap(record.picture)) {
        // The scratch file is what other programs expect to find; the picture itself is taken from
        // the bytes at hand, so a scratch file that cannot be written costs nothing.
        storage.scratch.write(record.picture);
        const auto picture =
            Picture::decode(record.picture, pictureMemory, BmtTool::longestPictureSide);
        if (!picture)
            throw pictureErrorOf(tool->Description);
        tool->Picture = *picture;
    }
    return tool;
}

VbError BmtTool::pictureError(const BmtFormat::Record &record, const CodePage &codePage)
{
    return pictureErrorOf(codePage.decode(trimmedBlanks(record.name)));
}

qint64 BmtTool::storedHeaderSize(const BmtFormat::Header &header, const CodePage &codePage)
{
    const QString owner = QStringLiteral("the tool set");
    return 3 * qint64(sizeof(qint16))
        + storedTextSize(header.LongDescription, "long description", owner, codePage)
        + storedTextSize(header.Description, "description", owner, codePage);
}

qint64 BmtTool::storedSize(const CVBATool &tool, const CodePage &codePage)
{
    constexpr qint64 numbersSize = 2 + 2 + 4 + 2 + 2 + 2;
    constexpr qint64 reservedTextSize = 2;
    qint64 size = numbersSize + reservedTextSize;
    const QString owner = QStringLiteral("the tool \"%1\"").arg(tool.Description);
    ToolFields::forEachStored(
        [&](const ToolFields::Text &field) {
            size += storedTextSize(tool.*(field.field), field.name, owner, codePage);
        },
        [](const ToolFields::Number & /*counted above*/) {});
    return size;
}

qint64 BmtTool::storedPictureSize(PictureBox &ctlPic)
{
    constexpr qint64 arrayHeaderSize = 2 + 4 + 4;
    ctlPic.setPicture(QImage());
    return arrayHeaderSize + Picture::encodeBitmap(ctlPic.Image()).size() + 1;
}

BmtTool::Encoded::Encoded(const CVBATool &tool, ToolSetStorage &storage, PictureBox &ctlPic)
{
    m_texts.reserve(ToolFields::count);
    ToolFields::forEachStored(
        [&](const ToolFields::Text &field) {
            m_texts.push_back(storage.codePage.encode(tool.*(field.field)).value_or(QByteArray()));
            m_record.*(field.stored) = m_texts.back();
        },
        [&](const ToolFields::Number &field) { m_record.*(field.stored) = tool.*(field.field); });
    m_record.events = tool.VBEvents & BmtFormat::storedEvents;
    m_record.enabled = tool.Enabled.raw();
    ctlPic.setPicture(tool.Picture);
    m_picture = Picture::encodeBitmap(ctlPic.Image());
    storage.scratch.write(m_picture);
    m_picture.append('\0'); // Kept: the array runs from 0 to the file's length inclusive.
    m_record.picture = m_picture;
}
