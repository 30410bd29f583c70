#include "cli/Commands.h"
#include "cli/Json.h"
#include "cli/SetFile.h"
#include "model/FieldText.h"
#include "model/ToolFields.h"
#include "platform/rtf/RtfPlainText.h"
#include "platform/text/WordDiff.h"

#include <QCommandLineParser>

namespace {

using Colour = Session::Colour;

/// Writes a comparison as text or as JSON.
class DiffPrinter
{
public:
    DiffPrinter(Session &session, const QCommandLineParser &arguments, ToolSetState left,
        ToolSetState right)
        : m_session(session)
        , m_left(std::move(left))
        , m_right(std::move(right))
        , m_asJson(arguments.isSet(QStringLiteral("json")))
        , m_words(arguments.isSet(QStringLiteral("help-text")))
        , m_plainText(session.codePage().number())
    {
    }

    /// True when anything differs.
    bool print();

private:
    struct Counts
    {
        int added = 0;
        int removed = 0;
        int changed = 0;
        int moved = 0;
        bool properties = false;
        bool any() const { return added + removed + changed + moved > 0 || properties; }
    };

    bool isSame(const CVBATool &left, const CVBATool &right, int field);
    QList<int> fieldsOf(const ToolSetDiff::Row &row);
    void print(const ToolSetDiff::Row &row, const QList<int> &fields);
    void printChanged(const ToolSetDiff::Row &row, const QList<int> &fields);
    void printField(const QString &name, const QString &before, const QString &after);
    void printHelp(const QString &before, const QString &after);
    void printWords(const QString &name, const QString &before, const QString &after);
    void printProperties();
    void printSummary();
    const CVBATool &leftTool(const ToolSetDiff::Row &row) const
    {
        return *m_left.tools[size_t(row.left) - 1];
    }
    const CVBATool &rightTool(const ToolSetDiff::Row &row) const
    {
        return *m_right.tools[size_t(row.right) - 1];
    }

    Session &m_session;
    const ToolSetState m_left;
    const ToolSetState m_right;
    const bool m_asJson;
    const bool m_words;
    RtfPlainText m_plainText;
    Counts m_counts;
    QByteArray m_text;
    JsonWriter m_json {m_text};
};

/// The field is no part of a file of the present version.
bool isKept(int field)
{
    static const int flags = ToolFields::indexOf(&CVBATool::FLAGS);
    return field != flags;
}

QString quoted(const CVBATool &tool)
{
    return u'"' + Session::visible(tool.Description) + u'"';
}

bool DiffPrinter::isSame(const CVBATool &left, const CVBATool &right, int field)
{
    static const int help = ToolFields::indexOf(&CVBATool::HelpString);
    if (m_words && field == help)
        return m_plainText.read(left.HelpString) == m_plainText.read(right.HelpString);
    return ToolFields::isSame(left, right, field);
}

QList<int> DiffPrinter::fieldsOf(const ToolSetDiff::Row &row)
{
    QList<int> fields;
    for (int field = 0; field < row.fields.size(); ++field) {
        if (row.fields.testBit(field) && isKept(field)
            && !isSame(leftTool(row), rightTool(row), field))
            fields.append(field);
    }
    return fields;
}

// --- Printing ---

bool DiffPrinter::print()
{
    const ToolSetDiff diff(m_left, m_right);
    if (m_asJson)
        m_json.beginObject();
    printProperties();
    if (m_asJson) {
        m_json.key("tools");
        m_json.beginArray();
    }
    for (const ToolSetDiff::Row &row : diff.rows()) {
        if (row.differs())
            print(row, fieldsOf(row));
    }
    if (m_asJson) {
        m_json.endArray();
        m_json.endObject();
        m_session.print(QByteArrayView(m_text));
    } else if (m_counts.any()) {
        printSummary();
    }
    return m_counts.any();
}

void DiffPrinter::printProperties()
{
    const auto &left = m_left.properties;
    const auto &right = m_right.properties;
    m_counts.properties = !(left == right);
    if (m_words && m_counts.properties) {
        m_counts.properties = left.Description != right.Description || left.FLAGS != right.FLAGS
            || m_plainText.read(left.LongDescription) != m_plainText.read(right.LongDescription);
    }
    if (m_asJson) {
        m_json.key("set");
        m_json.beginArray();
    } else if (m_counts.properties) {
        m_session.printLine(m_session.coloured(Colour::Yellow, QStringLiteral("~ tool set")));
    }
    if (m_counts.properties) {
        if (left.Description != right.Description)
            printField(QStringLiteral("description"), left.Description, right.Description);
        if (left.FLAGS != right.FLAGS)
            printField(
                QStringLiteral("flags"), QString::number(left.FLAGS), QString::number(right.FLAGS));
        if (left.LongDescription != right.LongDescription)
            printWords(
                QStringLiteral("long description"), left.LongDescription, right.LongDescription);
    }
    if (m_asJson)
        m_json.endArray();
}

void DiffPrinter::print(const ToolSetDiff::Row &row, const QList<int> &fields)
{
    if (!row.onlyLeft() && !row.onlyRight()) {
        if (row.moved || !fields.isEmpty())
            printChanged(row, fields);
        return;
    }
    const CVBATool &tool = row.onlyLeft() ? leftTool(row) : rightTool(row);
    const int position = row.onlyLeft() ? row.left : row.right;
    ++(row.onlyLeft() ? m_counts.removed : m_counts.added);
    if (m_asJson) {
        m_json.beginObject();
        m_json.member("name", tool.Description);
        m_json.member(row.onlyLeft() ? "removed" : "added", true);
        m_json.member(row.onlyLeft() ? "left" : "right", position);
        m_json.endObject();
        return;
    }
    m_session.printLine(m_session.coloured(row.onlyLeft() ? Colour::Red : Colour::Green,
        QStringLiteral("%1 tool %2 (#%3)")
            .arg(QLatin1Char(row.onlyLeft() ? '-' : '+'))
            .arg(quoted(tool))
            .arg(position)));
}

void DiffPrinter::printChanged(const ToolSetDiff::Row &row, const QList<int> &fields)
{
    m_counts.moved += row.moved;
    m_counts.changed += !fields.isEmpty();
    if (m_asJson) {
        m_json.beginObject();
        m_json.member("name", rightTool(row).Description);
        m_json.member("left", row.left);
        m_json.member("right", row.right);
        m_json.member("moved", row.moved);
        m_json.key("fields");
        m_json.beginArray();
    } else {
        QString line = QStringLiteral("~ tool ") + quoted(leftTool(row));
        if (row.moved)
            line += QStringLiteral(" moved from #%1 to #%2").arg(row.left).arg(row.right);
        m_session.printLine(m_session.coloured(Colour::Yellow, line));
    }
    static const int help = ToolFields::indexOf(&CVBATool::HelpString);
    for (const int field : fields) {
        if (field == help)
            printWords(
                ToolFields::nameOf(field), leftTool(row).HelpString, rightTool(row).HelpString);
        else
            printField(ToolFields::nameOf(field), FieldText::of(leftTool(row), field),
                FieldText::of(rightTool(row), field));
    }
    if (m_asJson) {
        m_json.endArray();
        m_json.endObject();
    }
}

void DiffPrinter::printField(const QString &name, const QString &before, const QString &after)
{
    if (m_asJson) {
        m_json.beginObject();
        m_json.member("field", name);
        m_json.member("left", before);
        m_json.member("right", after);
        m_json.endObject();
        return;
    }
    m_session.printLine(QStringLiteral("    %1: ").arg(name)
        + m_session.coloured(Colour::Red, Session::visible(before)) + QStringLiteral(" -> ")
        + m_session.coloured(Colour::Green, Session::visible(after)));
}

/// Of rich texts: their words when these are compared, else that they differ.
void DiffPrinter::printWords(const QString &name, const QString &before, const QString &after)
{
    if (m_asJson) {
        printField(name, m_plainText.read(before), m_plainText.read(after));
        return;
    }
    if (!m_words) {
        m_session.printLine(QStringLiteral("    %1: %2 bytes -> %3 bytes")
                                .arg(name)
                                .arg(before.size())
                                .arg(after.size()));
        return;
    }
    const QString left = m_plainText.read(before);
    const QString right = m_plainText.read(after);
    const WordDiff::Ranges ranges = WordDiff::between(left, right);
    for (const auto &range : ranges.left) {
        m_session.printLine(m_session.coloured(Colour::Red,
            QStringLiteral("    %1: [-%2-]")
                .arg(name, Session::visible(left.mid(range.start, range.length)))));
    }
    for (const auto &range : ranges.right) {
        m_session.printLine(m_session.coloured(Colour::Green,
            QStringLiteral("    %1: {+%2+}")
                .arg(name, Session::visible(right.mid(range.start, range.length)))));
    }
}

void DiffPrinter::printSummary()
{
    QStringList parts;
    const auto add = [&parts](int count, const QString &what) {
        if (count > 0)
            parts.append(QStringLiteral("%1 %2").arg(count).arg(what));
    };
    add(m_counts.added, QStringLiteral("added"));
    add(m_counts.removed, QStringLiteral("removed"));
    add(m_counts.changed, QStringLiteral("changed"));
    add(m_counts.moved, QStringLiteral("moved"));
    if (!parts.isEmpty())
        m_session.printLine(parts.join(QStringLiteral(", ")));
}

} // namespace

Session::Result Commands::diff(Session &session, const QCommandLineParser &arguments)
{
    const QStringList paths = arguments.positionalArguments();
    const auto left = SetFile::read(session, paths[0], SetFile::Damaged::Refuse);
    const auto right = SetFile::read(session, paths[1], SetFile::Damaged::Refuse);
    if (!left || !right)
        return Session::Trouble;
    DiffPrinter printer(session, arguments, SetFile::stateOf(*left), SetFile::stateOf(*right));
    return printer.print() ? Session::Findings : Session::Success;
}
