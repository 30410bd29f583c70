#include "cli/Json.h"

#include <QStringDecoder>

#include <cmath>

namespace {

/// Whether the character is written as an escape: controls, private use, which undefined bytes of
/// a code page ride on, and what is no character by itself.
bool isHidden(char16_t c)
{
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029 || c == 0xFEFF
        || (c >= 0xD800 && c <= 0xF8FF);
}

/// A character that stands for itself, in one byte.
bool isPlain(char16_t c)
{
    return c >= 0x20 && c < 0x7F && c != u'"' && c != u'\\';
}

void appendQuoted(QByteArray &to, QStringView text)
{
    to += '"';
    for (qsizetype i = 0; i < text.size(); ++i) {
        qsizetype plain = i;
        while (plain < text.size() && isPlain(text[plain].unicode()))
            ++plain;
        if (plain > i) {
            to += text.sliced(i, plain - i).toLatin1();
            i = plain - 1;
            continue;
        }
        const char16_t c = text[i].unicode();
        const bool pair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (c == u'"' || c == u'\\') {
            to += '\\';
            to += char(c);
        } else if (c == u'\n') {
            to += "\\n";
        } else if (c == u'\r') {
            to += "\\r";
        } else if (c == u'\t') {
            to += "\\t";
        } else if (pair) {
            to += text.sliced(i++, 2).toUtf8();
        } else if (isHidden(c)) {
            to += "\\u" + QByteArray::number(c, 16).rightJustified(4, '0');
        } else {
            to += text.sliced(i, 1).toUtf8();
        }
    }
    to += '"';
}

/// Reads one text; the first error ends it.
class Parser
{
public:
    Parser(QStringView text, JsonValue::Error &error)
        : m_text(text)
        , m_error(error)
    {
    }

    bool readAll(JsonValue &value)
    {
        if (!read(value, 0))
            return false;
        skipBlanks();
        return m_at == m_text.size()
            || fail(QStringLiteral("there is something behind the end of the text"));
    }

private:
    static constexpr int deepest = 64;

    bool fail(const QString &what)
    {
        if (m_error.what.isEmpty())
            m_error = {m_line, what};
        return false;
    }
    bool failAt()
    {
        if (m_at >= m_text.size())
            return fail(QStringLiteral("the text ends early"));
        return fail(QStringLiteral("\"%1\" is not expected here").arg(m_text[m_at]));
    }
    char16_t next() const { return m_at < m_text.size() ? m_text[m_at].unicode() : u'\0'; }
    void skipBlanks()
    {
        while (m_at < m_text.size()
            && (next() == u' ' || next() == u'\t' || next() == u'\r' || next() == u'\n')) {
            m_line += next() == u'\n';
            ++m_at;
        }
    }
    bool take(char16_t c)
    {
        skipBlanks();
        if (m_at >= m_text.size() || next() != c)
            return false;
        ++m_at;
        return true;
    }
    bool takeWord(QStringView word)
    {
        if (!m_text.sliced(m_at).startsWith(word))
            return false;
        m_at += word.size();
        return true;
    }

    bool read(JsonValue &value, int depth);
    bool readString(QString &text);
    bool readEscape(QString &text);
    bool readNumber(JsonValue &value);
    bool readArray(JsonValue &value, int depth);
    bool readObject(JsonValue &value, int depth);

    QStringView m_text;
    JsonValue::Error &m_error;
    qsizetype m_at = 0;
    int m_line = 1;
};

bool Parser::read(JsonValue &value, int depth)
{
    using Type = JsonValue::Type;
    skipBlanks();
    value.line = m_line;
    if (depth > deepest)
        return fail(QStringLiteral("the brackets are nested too deeply"));
    switch (next()) {
    case u'{':
        return readObject(value, depth);
    case u'[':
        return readArray(value, depth);
    case u'"':
        value.type = Type::Text;
        return readString(value.text);
    default:
        break;
    }
    for (const bool truth : {false, true}) {
        if (takeWord(truth ? u"true" : u"false")) {
            value.type = Type::Truth;
            value.truth = truth;
            return true;
        }
    }
    return takeWord(u"null") || readNumber(value);
}

bool Parser::readNumber(JsonValue &value)
{
    const qsizetype start = m_at;
    while (m_at < m_text.size() && QStringView(u"+-.0123456789eE").contains(m_text[m_at]))
        ++m_at;
    bool ok = false;
    value.type = JsonValue::Type::Number;
    value.number = m_text.sliced(start, m_at - start).toDouble(&ok);
    if (ok)
        return true;
    m_at = start;
    return failAt();
}

bool Parser::readEscape(QString &text)
{
    const char16_t c = next();
    ++m_at;
    constexpr QStringView letters = u"\"\\/bfnrt";
    constexpr char16_t meanings[] = u"\"\\/\b\f\n\r\t";
    if (const qsizetype at = letters.indexOf(c); at >= 0) {
        text += QChar(meanings[at]);
        return true;
    }
    bool ok = false;
    const ushort unit = c == u'u' && m_at + 4 <= m_text.size()
        ? m_text.sliced(m_at, 4).toString().toUShort(&ok, 16)
        : ushort(0);
    if (!ok)
        return fail(QStringLiteral("\"\\%1\" is no escape").arg(QChar(c)));
    m_at += 4;
    text += QChar(unit);
    return true;
}

bool Parser::readString(QString &text)
{
    ++m_at;
    while (m_at < m_text.size() && next() != u'"') {
        if (next() < 0x20)
            return fail(QStringLiteral("a text does not end in its line"));
        const qsizetype start = m_at;
        while (m_at < m_text.size() && next() != u'"' && next() != u'\\' && next() >= 0x20)
            ++m_at;
        text += m_text.sliced(start, m_at - start);
        if (m_at < m_text.size() && next() == u'\\') {
            ++m_at;
            if (!readEscape(text))
                return false;
        }
    }
    if (m_at >= m_text.size())
        return fail(QStringLiteral("a text does not end"));
    ++m_at;
    return true;
}

bool Parser::readArray(JsonValue &value, int depth)
{
    value.type = JsonValue::Type::Array;
    ++m_at;
    if (take(u']'))
        return true;
    do {
        JsonValue item;
        if (!read(item, depth + 1))
            return false;
        value.items.push_back(std::move(item));
    } while (take(u','));
    return take(u']') || failAt();
}

bool Parser::readObject(JsonValue &value, int depth)
{
    value.type = JsonValue::Type::Object;
    ++m_at;
    if (take(u'}'))
        return true;
    constexpr size_t usualCount = 16;
    value.members.reserve(usualCount);
    do {
        skipBlanks();
        if (next() != u'"')
            return failAt();
        std::pair<QString, JsonValue> member;
        if (!readString(member.first))
            return false;
        if (value.find(member.first))
            return fail(QStringLiteral("\"%1\" stands here twice").arg(member.first));
        if (!take(u':'))
            return failAt();
        if (!read(member.second, depth + 1))
            return false;
        value.members.push_back(std::move(member));
    } while (take(u','));
    return take(u'}') || failAt();
}

} // namespace

// --- Writing ---

void JsonWriter::newLine()
{
    m_to += '\n';
    m_to.append(2 * qsizetype(m_levels.size()), ' ');
}

void JsonWriter::separate()
{
    if (std::exchange(m_afterKey, false) || m_levels.empty())
        return;
    Level &level = m_levels.back();
    if (!level.isEmpty)
        m_to += level.layout == Layout::Inline ? ", " : ",";
    if (level.layout == Layout::Lines)
        newLine();
    level.isEmpty = false;
}

void JsonWriter::begin(char bracket, Layout layout)
{
    separate();
    m_to += bracket;
    m_levels.push_back({layout, true});
}

void JsonWriter::end(char bracket)
{
    const Level level = m_levels.back();
    m_levels.pop_back();
    if (!level.isEmpty && level.layout == Layout::Lines)
        newLine();
    m_to += bracket;
    if (m_levels.empty())
        m_to += '\n';
}

void JsonWriter::key(const char *name)
{
    key(QString::fromLatin1(name));
}

void JsonWriter::key(const QString &name)
{
    separate();
    appendQuoted(m_to, name);
    m_to += ": ";
    m_afterKey = true;
}

void JsonWriter::value(const QString &text)
{
    separate();
    appendQuoted(m_to, text);
}

void JsonWriter::value(qint64 number)
{
    separate();
    m_to += QByteArray::number(number);
}

void JsonWriter::value(bool truth)
{
    separate();
    m_to += truth ? "true" : "false";
}

// --- Reading ---

const JsonValue *JsonValue::find(QStringView name) const
{
    for (const auto &[key, value] : members) {
        if (key == name)
            return &value;
    }
    return nullptr;
}

std::optional<qint64> JsonValue::whole(qint64 least, qint64 most) const
{
    if (type != Type::Number || number != std::floor(number) || number < double(least)
        || number > double(most))
        return std::nullopt;
    return static_cast<qint64>(number);
}

std::optional<JsonValue> JsonValue::read(QByteArrayView bytes, Error &error)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    if (decoder.hasError()) {
        // The line, for an editor that shows a question mark where the byte is.
        const qsizetype bad = text.indexOf(QChar::ReplacementCharacter);
        error = {int(text.left(bad).count(u'\n')) + 1, QStringLiteral("the text is no UTF-8")};
        return std::nullopt;
    }
    error = {};
    JsonValue value;
    if (!Parser(text, error).readAll(value))
        return std::nullopt;
    return value;
}
