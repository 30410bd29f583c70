// The commands that print what is in a set: list, show, cat.

#include "cli/Commands.h"
#include "cli/Json.h"
#include "cli/SetFile.h"
#include "cli/SetText.h"
#include "model/FieldText.h"
#include "platform/VbError.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureBox.h"
#include "platform/rtf/RtfPlainText.h"

#include <QBuffer>
#include <QCommandLineParser>
#include <QFileInfo>

#include <algorithm>
#include <array>

namespace {

using Row = std::array<QString, 4>;

Row rowOf(const CVBATool &tool, int position)
{
    return {Session::visible(tool.Description), QString::number(position),
        FieldText::kind(tool.ToolType), Session::visible(tool.Location())};
}

void printAligned(Session &session, const CVBATools &tools)
{
    std::vector<Row> rows;
    std::array<qsizetype, 4> widths {};
    int position = 0;
    for (const ToolPtr &tool : tools) {
        rows.push_back(rowOf(*tool, ++position));
        for (size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], rows.back()[i].size());
    }
    for (const Row &row : rows) {
        session.printLine(session.coloured(Session::Colour::Bold, row[0].leftJustified(widths[0]))
            + QStringLiteral("  ") + row[1].rightJustified(widths[1]) + QStringLiteral("  ")
            + row[2].leftJustified(widths[2]) + QStringLiteral("  ") + row[3]);
    }
}

void printTabs(Session &session, const CVBATools &tools, const QString &prefix)
{
    int position = 0;
    for (const ToolPtr &tool : tools) {
        const Row row = rowOf(*tool, ++position);
        session.printLine(prefix + row[0] + u'\t' + row[1] + u'\t' + row[2] + u'\t' + row[3]);
    }
}

void writeJson(JsonWriter &json, const CVBATools &tools, const QString &path)
{
    json.beginObject();
    json.member("file", path);
    json.member("description", tools.Description());
    json.key("tools");
    json.beginArray();
    int position = 0;
    for (const ToolPtr &tool : tools) {
        json.beginObject();
        json.member("name", tool->Description);
        json.member("position", ++position);
        json.member("kind", FieldText::kind(tool->ToolType));
        json.member("location", tool->Location());
        json.endObject();
    }
    json.endArray();
    json.endObject();
}

/// The position of the tool that a word names or numbers; 0 when there is none.
int positionOf(const CVBATools &tools, const QString &word)
{
    if (tools.Items().contains(word)) {
        const ToolPtr &named = tools.Item(word);
        int position = 1;
        while (tools.Item(position) != named)
            ++position;
        return position;
    }
    bool ok = false;
    const int position = word.startsWith(u'#') ? word.sliced(1).toInt(&ok) : 0;
    return ok && position >= 1 && position <= tools.Count() ? position : 0;
}

/// False after a message.
bool writePicture(Session &session, const CVBATool &tool, const QString &path)
{
    if (tool.Picture.isNull()) {
        session.error(tool.Description, QStringLiteral("the tool has no picture"));
        return false;
    }
    const QString extension = QFileInfo(path).suffix().toLower();
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    if (extension == u"bmp")
        bytes.write(Picture::encodeBitmap(tool.Picture.convertToFormat(QImage::Format_RGB32)));
    else if (extension == u"png")
        tool.Picture.save(&bytes, "PNG");
    else
        session.error(path, QStringLiteral("pictures are written as *.png or *.bmp"));
    return bytes.size() > 0 && SetFile::writeBytes(session, bytes.data(), path);
}

} // namespace

Session::Result Commands::list(Session &session, const QCommandLineParser &arguments)
{
    const QStringList paths = arguments.positionalArguments();
    const bool asJson = arguments.isSet(QStringLiteral("json"));
    const bool several = paths.size() > 1;
    QByteArray text;
    JsonWriter json(text);
    if (asJson)
        json.beginArray();
    for (const QString &path : paths) {
        const auto tools = SetFile::read(session, path);
        if (!tools)
            continue;
        if (asJson) {
            writeJson(json, *tools, path);
        } else if (session.outIsTerminal()) {
            if (several)
                session.printLine(SetFile::shown(path) + u':');
            printAligned(session, *tools);
        } else {
            printTabs(session, *tools, several ? SetFile::shown(path) + u'\t' : QString());
        }
    }
    if (asJson)
        json.endArray();
    session.print(QByteArrayView(text));
    return Session::Success;
}

Session::Result Commands::show(Session &session, const QCommandLineParser &arguments)
{
    QStringList words = arguments.positionalArguments();
    const QString path = words.takeFirst();
    const auto tools = SetFile::read(session, path);
    if (!tools)
        return Session::Trouble;
    QList<int> positions;
    for (const QString &word : std::as_const(words)) {
        const int position = positionOf(*tools, word);
        if (position == 0)
            session.error(
                SetFile::shown(path), QStringLiteral("there is no tool \"%1\"").arg(word));
        else
            positions.append(position);
    }
    if (words.isEmpty()) {
        for (int position = 1; position <= tools->Count(); ++position)
            positions.append(position);
    }
    const QString picture = arguments.value(QStringLiteral("picture"));
    if (!picture.isEmpty()) {
        if (positions.size() == 1)
            writePicture(session, *tools->Item(positions.constFirst()), picture);
        else if (!session.hadTrouble())
            session.error({}, QStringLiteral("a picture is that of one tool: name it"));
        return Session::Success;
    }
    RtfPlainText plainText(session.codePage().number());
    bool isFirst = true;
    for (const int position : std::as_const(positions)) {
        const CVBATool &tool = *tools->Item(position);
        if (arguments.isSet(QStringLiteral("rtf")))
            session.print(
                QByteArrayView(session.codePage().encode(tool.HelpString).value_or(QByteArray())));
        else if (arguments.isSet(QStringLiteral("help-text")))
            session.printLine(plainText.read(tool.HelpString));
        else
            session.print((isFirst ? QString() : QStringLiteral("\n"))
                + SetText::ofTool(tool, plainText, position));
        isFirst = false;
    }
    return Session::Success;
}

Session::Result Commands::cat(Session &session, const QCommandLineParser &arguments)
{
    const auto tools = SetFile::read(session, arguments.positionalArguments().constFirst());
    if (!tools)
        return Session::Trouble;
    RtfPlainText plainText(session.codePage().number());
    session.print(SetText::ofSet(*tools, plainText));
    for (const ToolPtr &tool : *tools)
        session.print(u'\n' + SetText::ofTool(*tool, plainText));
    return Session::Success;
}
