// The half of UnpackedSet that reads.

#include "cli/FolderNames.h"
#include "cli/Session.h"
#include "cli/ToolJson.h"
#include "cli/UnpackedFiles.h"
#include "cli/UnpackedSet.h"
#include "model/BmtTool.h"
#include "model/StorableText.h"
#include "model/ToolFields.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureBox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr int mostMessages = 20;

class Reader
{
public:
    Reader(Session &session, const QString &folder)
        : m_session(session)
        , m_folder(folder)
        , m_codePage(session.codePage())
        , m_box(BmtTool::pictureBoxSide, BmtTool::pictureBoxSide)
    {
    }

    std::unique_ptr<CVBATools> read();
    int codePage() const { return m_codePage.number(); }

private:
    QString path(const QString &name) const { return m_folder + u'/' + name; }
    void report(const JsonValue &value, const QString &what);
    void report(const QString &file, const QString &what);
    void readHeader(const JsonValue &list, CVBATools &tools);
    void readTool(const JsonValue &object, CVBATools &tools);
    void readFolder(const JsonValue &object, CVBATool &tool);
    void checkTexts(const JsonValue &object, const CVBATool &tool);
    std::optional<QByteArray> readFile(const QString &path, qint64 largest);
    QString readRichText(const QString &path);
    QImage readPicture(const QString &path);

    Session &m_session;
    const QString m_folder;
    CodePage m_codePage;
    PictureBox m_box;
    QString m_tool; ///< Its name, for messages.
    QHash<QString, int> m_names; ///< The line of each, without regard to letter case.
    QHash<QString, int> m_folders;
    int m_messages = 0;
};

void Reader::report(const JsonValue &value, const QString &what)
{
    const QString place = path(UnpackedSet::listName) + u':' + QString::number(value.line);
    report(place,
        m_tool.isEmpty() ? what
                         : QStringLiteral("tool \"%1\": %2").arg(Session::visible(m_tool), what));
}

void Reader::report(const QString &file, const QString &what)
{
    if (++m_messages <= mostMessages)
        m_session.error(file, what);
    else if (m_messages == mostMessages + 1)
        m_session.error(file, QStringLiteral("there are more mistakes"));
}

std::unique_ptr<CVBATools> Reader::read()
{
    QFile file(path(UnpackedSet::listName));
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        report(file.fileName(),
            file.exists() ? file.errorString() : QStringLiteral("there is no such file"));
        return nullptr;
    }
    JsonValue::Error error;
    const auto list = JsonValue::read(file.readAll(), error);
    if (!list) {
        report(file.fileName() + u':' + QString::number(error.line), error.what);
        return nullptr;
    }
    if (list->type != JsonValue::Type::Object) {
        report(*list, QStringLiteral("the file must hold an object"));
        return nullptr;
    }
    auto tools = std::make_unique<CVBATools>(m_session.storage());
    readHeader(*list, *tools);
    const JsonValue *all = list->find(u"tools");
    if (!all || all->type != JsonValue::Type::Array) {
        report(all ? *all : *list, QStringLiteral("\"tools\" must be a list"));
        return nullptr;
    }
    Progress progress(m_session, QStringLiteral("Reading"));
    qint64 done = 0;
    for (const JsonValue &object : all->items) {
        readTool(object, *tools);
        progress.show(++done, qint64(all->items.size()));
    }
    return m_messages == 0 ? std::move(tools) : nullptr;
}

void Reader::readHeader(const JsonValue &list, CVBATools &tools)
{
    using Type = JsonValue::Type;
    bool hasFormat = false;
    for (const auto &[key, value] : list.members) {
        if (key == u"format") {
            hasFormat = true;
            if (!value.whole(1, 1))
                report(value, QStringLiteral("this version of toolset knows the format 1 only"));
        } else if (key == u"codePage") {
            const auto number = value.whole(0, 9999);
            if (number && CodePage(int(*number)).number() == *number)
                m_codePage = CodePage(int(*number));
            else
                report(value, QStringLiteral("there is no such code page"));
        } else if (key == u"description") {
            if (value.type == Type::Text)
                tools.setDescription(value.text);
            else
                report(value, QStringLiteral("the description must be a text"));
        } else if (key == u"flags") {
            if (const auto flags = value.whole(-32768, 32767))
                tools.setFLAGS(qint32(*flags));
            else
                report(value, QStringLiteral("the flags must be a whole number"));
        } else if (key != u"tools") {
            report(value, QStringLiteral("there is no field \"%1\"").arg(key));
        }
    }
    if (!hasFormat)
        report(list, QStringLiteral("\"format\" is missing"));
    tools.setLongDescription(readRichText(path(UnpackedFiles::description)));
    const QString problem = StorableText::problem(m_codePage, tools.Description());
    const JsonValue *description = list.find(u"description");
    if (!problem.isEmpty() && description)
        report(*description, QStringLiteral("the description cannot be stored: %1").arg(problem));
}

void Reader::readTool(const JsonValue &object, CVBATools &tools)
{
    m_tool.clear();
    if (object.type != JsonValue::Type::Object)
        return report(object, QStringLiteral("a tool must be an object"));
    const auto tool = std::make_shared<CVBATool>();
    const JsonValue *name = ToolJson::valueOf(object, &CVBATool::Description);
    if (name)
        m_tool = name->text;
    ToolJson::read(object, *tool, {QStringLiteral("folder")},
        [this](const JsonValue &value, const QString &what) { report(value, what); });
    if (tool->Description.isEmpty())
        return report(name ? *name : object, QStringLiteral("the tool has no name"));
    const QString key = tool->Description.toCaseFolded();
    if (m_names.contains(key)) {
        return report(*name,
            QStringLiteral("the tool in line %1 has this name, too").arg(m_names.value(key)));
    }
    m_names.insert(key, name->line);
    readFolder(object, *tool);
    checkTexts(object, *tool);
    if (m_messages == 0 && !tools.Add(tool))
        report(*name, QStringLiteral("the set does not take a tool of this name"));
    m_tool.clear();
}

void Reader::readFolder(const JsonValue &object, CVBATool &tool)
{
    const JsonValue *folder = object.find(u"folder");
    if (!folder)
        return; // a tool without help and picture
    if (folder->type != JsonValue::Type::Text || !FolderNames::isPlain(folder->text))
        return report(
            *folder, QStringLiteral("the folder must be the name of one beside this file"));
    const QString key = folder->text.toCaseFolded();
    if (m_folders.contains(key)) {
        return report(*folder,
            QStringLiteral("the tool in line %1 has this folder, too").arg(m_folders.value(key)));
    }
    m_folders.insert(key, folder->line);
    const QString place = path(folder->text) + u'/';
    tool.HelpString = readRichText(place + UnpackedFiles::help);
    tool.Picture = readPicture(place + UnpackedFiles::picture);
    if (tool.HelpString.isEmpty() && tool.Picture.isNull() && !QFileInfo(place).isDir())
        report(*folder, QStringLiteral("there is no folder \"%1\"").arg(folder->text));
}

void Reader::checkTexts(const JsonValue &object, const CVBATool &tool)
{
    const auto check = [&](QString CVBATool::*field, const char *name) {
        const QString problem = StorableText::problem(m_codePage, tool.*field);
        if (problem.isEmpty())
            return;
        if (const JsonValue *value = ToolJson::valueOf(object, field)) {
            report(*value,
                QStringLiteral("the %1 cannot be stored: %2")
                    .arg(QLatin1StringView(name), problem));
        }
    };
    ToolFields::forEach([&](const auto &field) {
        if constexpr (std::is_same_v<std::decay_t<decltype(field)>, ToolFields::Text>)
            check(field.field, field.name);
    });
}

/// Of a file that may be missing.
std::optional<QByteArray> Reader::readFile(const QString &path, qint64 largest)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        if (file.exists())
            report(path, file.errorString());
        return std::nullopt;
    }
    // Most files are short: their size need not be asked for.
    constexpr qint64 usual = 1 << 13;
    QByteArray bytes = file.read(usual);
    if (bytes.size() == usual)
        bytes += file.read(qMin(file.size(), largest + 1) - usual);
    if (bytes.size() > largest) {
        report(path,
            QStringLiteral("the file is longer than the %L1 bytes that it may have").arg(largest));
        return std::nullopt;
    }
    return bytes;
}

QString Reader::readRichText(const QString &path)
{
    return m_codePage.decode(readFile(path, BmtFormat::longestString).value_or(QByteArray()));
}

QImage Reader::readPicture(const QString &path)
{
    constexpr qint64 largest = 16 << 20;
    const auto bytes = readFile(path, largest);
    if (!bytes)
        return {};
    qint64 memory = 64 << 20;
    const auto picture = Picture::decode(*bytes, memory, BmtTool::longestPictureSide);
    if (!picture) {
        report(path, QStringLiteral("the picture cannot be read"));
        return {};
    }
    if (picture->width() <= CVBATool::pictureSide && picture->height() <= CVBATool::pictureSide)
        return *picture;
    // As the set will store it: small, however many there are.
    m_box.setPicture(*picture);
    return m_box.Image();
}

} // namespace

std::unique_ptr<CVBATools> UnpackedSet::read(Session &session, const QString &folder, int &codePage)
{
    Reader reader(session, folder);
    auto tools = reader.read();
    codePage = reader.codePage();
    return tools;
}
