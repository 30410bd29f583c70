#include "model/BulkChange.h"

#include "model/FieldText.h"
#include "model/StorableText.h"
#include "model/ToolFields.h"
#include "model/ToolSetDocument.h"
#include "platform/picture/PictureBox.h"
#include "platform/text/CodePage.h"
#include "platform/text/VbConvert.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QSet>

#include <algorithm>

namespace {

/// Milliseconds for one tool, after which it is found out whether the regular expression has
/// failed.
constexpr int suspiciousTime = 20;

bool isSeparator(QChar c)
{
    return c == u'\\' || c == u'/';
}

QString withoutEndSeparators(QString folder)
{
    while (!folder.isEmpty() && isSeparator(folder.back()))
        folder.chop(1);
    return folder;
}

/// The length of the folder at the start of the text; -1 when it is not there.
qsizetype folderLength(QStringView text, QStringView folder, Qt::CaseSensitivity caseSensitivity)
{
    if (text.size() < folder.size())
        return -1;
    for (qsizetype i = 0; i < folder.size(); ++i) {
        const bool same = isSeparator(folder[i])
            ? isSeparator(text[i])
            : text.sliced(i, 1).compare(folder.sliced(i, 1), caseSensitivity) == 0;
        if (!same)
            return -1;
    }
    return folder.size();
}

/// Replaces the folder in the path that starts the text and ends before its character \a end.
std::optional<QString> replacedFolder(QStringView path, const QString &folder, const QString &with)
{
    const bool native = folder.startsWith(u'/') && path.startsWith(u'/');
    const qsizetype length =
        folderLength(path, folder, native ? Qt::CaseSensitive : Qt::CaseInsensitive);
    if (length < 0 || (length < path.size() && !isSeparator(path[length])))
        return std::nullopt;
    QString rest = path.sliced(length).toString();
    if (with.isEmpty())
        return rest.mid(1);
    if (with.contains(u'/') != with.contains(u'\\')) {
        const QChar separator = with.contains(u'/') ? u'/' : u'\\';
        std::replace_if(rest.begin(), rest.end(), isSeparator, separator);
    }
    return QString(withoutEndSeparators(with) + rest);
}

/// The same for each path in a command line: one starts at an argument's start, or behind a
/// character that is no part of one, and ends with the argument.
QString replaceFolderInArguments(const QString &text, const QString &folder, const QString &with)
{
    QString result;
    bool quoted = false;
    for (qsizetype at = 0; at < text.size();) {
        const QChar before = at == 0 ? QChar(u' ') : text[at - 1];
        const bool starts = before.isSpace() || QStringView(u"\"=,;:'(").contains(before);
        if (starts && text[at] != u'"' && !text[at].isSpace()) {
            qsizetype end = at;
            while (end < text.size() && text[end] != u'"' && (quoted || !text[end].isSpace()))
                ++end;
            if (const auto path =
                    replacedFolder(QStringView(text).sliced(at, end - at), folder, with)) {
                result += *path;
                at = end;
                continue;
            }
        }
        quoted ^= text[at] == u'"';
        result += text[at++];
    }
    return result;
}

QString expanded(const QString &replacement, const QRegularExpressionMatch &match)
{
    QString text;
    for (qsizetype i = 0; i < replacement.size(); ++i) {
        const QChar c = replacement[i];
        const QChar next = i + 1 < replacement.size() ? replacement[i + 1] : QChar();
        const int group = next >= u'0' && next <= u'9' ? next.digitValue() : -1;
        const int groups = match.regularExpression().captureCount();
        if ((c == u'$' || c == u'\\') && group >= 0 && group <= groups) {
            text += match.captured(group);
            ++i;
        } else if (c == u'$' && next == u'$') {
            text += c;
            ++i;
        } else {
            text += c;
        }
    }
    return text;
}

bool apply(BulkChange::Switch to, bool is)
{
    return to == BulkChange::Switch::AsIs ? is : to == BulkChange::Switch::On;
}

QList<BulkChange::FieldChange> differences(
    const CVBATool &before, const CVBATool &after, const QString &nameAfter)
{
    QList<BulkChange::FieldChange> changes;
    const auto compare = [&](const char *field, const QString &from, const QString &to) {
        if (from != to)
            changes.append({field, from, to});
    };
    compare("name", before.Description, nameAfter);
    compare("location", before.Location(), after.Location());
    compare("command line", before.CommandLine, after.CommandLine);
    compare("kind", FieldText::kind(before.ToolType), FieldText::kind(after.ToolType));
    compare("enabled switch", FieldText::yesNo(before.Enabled), FieldText::yesNo(after.Enabled));
    compare("access switches", FieldText::access(before.AccessOptions),
        FieldText::access(after.AccessOptions));
    compare("events", FieldText::events(before.VBEvents), FieldText::events(after.VBEvents));
    if (before.Picture != after.Picture)
        changes.append({"picture", {}, {}});
    return changes;
}

/// Adds what is to be said of the row's texts.
void checkTexts(BulkChange::Row &row, const CodePage &codePage)
{
    const auto remark = [&row](const QString &text) {
        row.remark += (row.remark.isEmpty() ? QString() : QStringLiteral(" ")) + text;
    };
    const std::pair<const char *, const QString &> texts[] = {
        {"name", row.name},
        {"location", row.after.FileName},
        {"command line", row.after.CommandLine},
    };
    for (const auto &[field, text] : texts) {
        const bool changes = std::any_of(row.changes.cbegin(), row.changes.cend(),
            [field = field](const auto &change) { return qstrcmp(change.field, field) == 0; });
        if (!changes)
            continue;
        const QString problem = StorableText::problem(codePage, text);
        if (!problem.isEmpty()) {
            row.storable = false;
            remark(QStringLiteral("The %1 cannot be stored: %2.")
                       .arg(QLatin1StringView(field), problem));
        }
        if (text.startsWith(u' ') || text.endsWith(u' ')) {
            remark(QStringLiteral("The blanks at the ends of the %1 are lost when the file is "
                                  "loaded.")
                       .arg(QLatin1StringView(field)));
        }
    }
}

} // namespace

QString BulkChange::error() const
{
    const QRegularExpression pattern = expression();
    return pattern.isValid()
        ? QString()
        : QStringLiteral("The regular expression is wrong at character %1: %2.")
              .arg(pattern.patternErrorOffset() + 1)
              .arg(pattern.errorString());
}

QRegularExpression BulkChange::expression() const
{
    if (replacement.search != Search::RegularExpression)
        return {};
    QRegularExpression::PatternOptions options = QRegularExpression::UseUnicodePropertiesOption;
    options.setFlag(QRegularExpression::CaseInsensitiveOption, !replacement.caseSensitive);
    return QRegularExpression(replacement.find, options);
}

// --- Texts ---

QString BulkChange::replaceFolder(const QString &path, const QString &folder, const QString &with)
{
    return replacedFolder(path, withoutEndSeparators(folder), with).value_or(path);
}

QString BulkChange::replaced(const QString &text, const QRegularExpression &expression) const
{
    const QString &find = replacement.find;
    const QString &with = replacement.replace;
    if (find.isEmpty())
        return text;
    switch (replacement.search) {
    case Search::Folder:
        if (replacement.field == Field::CommandLine)
            return replaceFolderInArguments(text, withoutEndSeparators(find), with);
        return replaceFolder(text, find, with);
    case Search::Text: {
        QString result = text;
        return result.replace(
            find, with, replacement.caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive);
    }
    case Search::RegularExpression:
        break;
    }
    QString result;
    qsizetype end = 0;
    for (auto matches = expression.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        result += QStringView(text).sliced(end, match.capturedStart() - end);
        result += expanded(with, match);
        end = match.capturedEnd();
    }
    return result + QStringView(text).sliced(end);
}

bool BulkChange::givesUp(const CVBATool &tool, const QRegularExpression &expression) const
{
    if (replacement.search != Search::RegularExpression || replacement.find.isEmpty())
        return false;
    const QString text = replacement.field == Field::Location ? tool.Location()
        : replacement.field == Field::CommandLine             ? tool.CommandLine
                                                              : tool.Description;
    qsizetype end = 0;
    for (auto matches = expression.globalMatch(text); matches.hasNext();)
        end = matches.next().capturedEnd();
    return !expression.match(text, end).isValid();
}

// --- Preview ---

CVBATool BulkChange::changed(const CVBATool &tool, const QRegularExpression &expression) const
{
    CVBATool after = tool;
    switch (replacement.field) {
    case Field::Location:
        if (const QString text = replaced(tool.Location(), expression); text != tool.Location())
            after.setLocation(text);
        break;
    case Field::CommandLine:
        after.CommandLine = replaced(tool.CommandLine, expression);
        break;
    case Field::Name:
        after.Description = replaced(tool.Description, expression);
        break;
    }
    after.Enabled = ::apply(enabled, tool.Enabled);
    after.setIntoolBar(::apply(inToolBar, tool.IntoolBar()));
    after.setInList(::apply(inList, tool.InList()));
    after.setRunOutOfProcess(::apply(outOfProcess, tool.RunOutOfProcess()));
    after.VBEvents = (tool.VBEvents | (addedEvents & BmtFormat::storedEvents))
        & ~(removedEvents & BmtFormat::storedEvents);
    if (kind && *kind != tool.ToolType) {
        after.ToolType = *kind;
        if (*kind == CVBATool::Separator) {
            after.Description = QStringLiteral("Separator");
            after.setLocation({});
            after.Picture = PictureBox(
                Twips::fromPixels(CVBATool::pictureSide), Twips::fromPixels(CVBATool::pictureSide))
                                .Image();
        }
    }
    const bool isProgram = after.ToolType == CVBATool::StandardExecutable
        || after.ToolType == CVBATool::AddInExecutable;
    if (takePicture && isProgram) {
        const QImage picture = takePicture(after);
        if (!picture.isNull())
            after.Picture = picture;
    }
    return after;
}

/// The names of a set while its tools are renamed one after the other, as the set would do it.
class BulkChange::Preview::Names
{
public:
    explicit Names(const ToolSetDocument &document)
        : m_document(document)
    {
    }

    /// Empty when there is no free name.
    QString rename(const QString &name, const QString &newName)
    {
        m_gone.insert(name.toCaseFolded());
        m_added.remove(name.toCaseFolded());
        m_free.released(name);
        try {
            const QString given =
                m_free.nameFor(newName, [this](const QString &key) { return isTaken(key); });
            m_added.insert(given.toCaseFolded());
            return given;
        } catch (const VbError &) {
            return {};
        }
    }

private:
    bool isTaken(const QString &key) const
    {
        const QString folded = key.toCaseFolded();
        return m_added.contains(folded)
            || (!m_gone.contains(folded) && m_document.Tools().Items().contains(key));
    }

    const ToolSetDocument &m_document;
    FreeNames m_free;
    QSet<QString> m_gone;
    QSet<QString> m_added;
};

BulkChange::Preview::Preview(const BulkChange &change, const ToolSetDocument &document,
    const QList<int> &positions, const CodePage &codePage)
    : m_change(change)
    , m_document(document)
    , m_codePage(codePage)
    , m_expression(change.expression())
    , m_names(std::make_unique<Names>(document))
{
    if (m_expression.isValid())
        m_positions = positions;
}

BulkChange::Preview::~Preview() = default;

bool BulkChange::Preview::work(int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds); // a negative time is for ever
    while (m_next < count()) {
        add(m_positions[m_next++]);
        if (deadline.hasExpired())
            break;
    }
    return m_next == count();
}

void BulkChange::Preview::add(int position)
{
    Row row;
    row.position = position;
    row.tool = m_document.toolAt(position);
    QElapsedTimer timer;
    timer.start();
    row.after = m_change.changed(*row.tool, m_expression);
    if (timer.elapsed() > suspiciousTime && m_change.givesUp(*row.tool, m_expression))
        m_givenUp.append(row.tool);
    const QString &wanted = row.after.Description;
    row.name = wanted;
    if (wanted != row.tool->Description) {
        row.name = m_names->rename(row.tool->Description, wanted);
        if (row.name.isEmpty()) {
            row.storable = false;
            row.remark = QStringLiteral("No name like \"%1\" is free.").arg(wanted);
        } else if (row.name != wanted) {
            row.remark = wanted.isEmpty() || VbConvert::isNumeric(wanted)
                ? QStringLiteral("\"%1\" cannot be a name.").arg(wanted)
                : QStringLiteral("The name \"%1\" is taken.").arg(wanted);
        }
    }
    row.changes = differences(*row.tool, row.after, row.name);
    if (row.changes.isEmpty())
        return;
    checkTexts(row, m_codePage);
    m_rows.append(row);
}

QList<BulkChange::Row> BulkChange::preview(
    const ToolSetDocument &document, const QList<int> &positions, const CodePage &codePage) const
{
    Preview preview(*this, document, positions, codePage);
    preview.work(-1);
    return preview.rows();
}

// --- Apply ---

int BulkChange::apply(ToolSetDocument &document, const QList<Row> &rows)
{
    QList<Row> storable = rows;
    storable.removeIf([](const Row &row) { return !row.storable; });
    if (storable.isEmpty())
        return 0;
    const ToolSetDocument::Step step(document,
        storable.size() == 1
            ? QStringLiteral("Change of \"%1\"").arg(storable.constFirst().tool->Description)
            : QStringLiteral("Change of %L1 Tools").arg(storable.size()));
    return static_cast<int>(std::count_if(storable.cbegin(), storable.cend(),
        [&document](const Row &row) { return document.apply(row.tool, row.after); }));
}
