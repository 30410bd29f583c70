#include "model/ToolFileRecognition.h"

#include "model/CVBATool.h"

#include <algorithm>
#include <array>

namespace {

bool isSeparator(QChar c)
{
    return c == u'/' || c == u'\\';
}

/// Paths are text here, with the separators of either system.
qsizetype nameStart(const QString &path)
{
    const auto last = std::find_if(path.crbegin(), path.crend(), isSeparator);
    return path.crend() - last;
}

QString folderKey(QString folder)
{
    folder.replace(u'\\', u'/');
    while (folder.size() > 1 && folder.endsWith(u'/'))
        folder.chop(1);
    return folder.toCaseFolded();
}

} // namespace

namespace ToolFileRecognition {

std::optional<qint16> kindOf(const QString &fileName, qint16 currentKind)
{
    struct Entry
    {
        const char16_t *extension;
        qint16 kind;
    };
    static constexpr std::array<Entry, 9> table {{
        {u".EXE", CVBATool::StandardExecutable},
        {u".BAT", CVBATool::StandardExecutable},
        {u".COM", CVBATool::StandardExecutable},
        {u".DLL", CVBATool::AddInExecutable},
        {u".BAS", CVBATool::Macro},
        {u".BMM", CVBATool::Macro},
        {u".HLP", CVBATool::HelpFile},
        {u".TXT", CVBATool::TextFile},
        {u".INI", CVBATool::TextFile},
    }};
    const QString extension = fileName.right(4).toUpper();
    for (const Entry &entry : table) {
        if (extension != QStringView(entry.extension))
            continue;
        const bool keeps = &entry == &table.front() && currentKind == CVBATool::AddInExecutable;
        return keeps ? currentKind : entry.kind;
    }
    return std::nullopt;
}

QString unrecognisedText()
{
    return QStringLiteral("Unable to recognize this type of file.\r\n\r\n"
                          "File types are recognized by their extensions.\r\n"
                          "The recognized extensions consist of:\r\n\r\n"
                          "exe, com, bat\t-  executables files\r\n"
                          "exe, dll\t\t-  OLE servers\r\n"
                          "bas, bmm\t-  macro files\r\n"
                          "hlp\t\t-  help files\r\n"
                          "txt, ini\t\t-  text files\r\n");
}

QString locationOf(const QString &path, const QString &macroFolder)
{
    const qsizetype start = nameStart(path);
    if (start > 0 && folderKey(path.first(start)) == folderKey(macroFolder))
        return path.sliced(start);
    return path;
}

QString nameOf(const QString &path)
{
    const QString name = path.sliced(nameStart(path));
    return name.first(std::min<qsizetype>(1, name.size())).toUpper() + name.mid(1).toLower();
}

bool isReplaceable(const QString &description, const QString &formerLocation)
{
    const QString start = QStringLiteral("Tool(");
    // As the language's pattern "Tool(#*)": one digit, then anything.
    const bool isDefault = description.startsWith(start) && description.endsWith(u')')
        && description.size() > start.size() + 1 && description[start.size()] >= u'0'
        && description[start.size()] <= u'9';
    return isDefault || description == nameOf(formerLocation);
}

} // namespace ToolFileRecognition
