#include "platform/desktop/IniFile.h"

#include <algorithm>

namespace {

constexpr char byteOrderMark[] = "\xEF\xBB\xBF";
constexpr QStringView escaped = u"\a\b\f\n\r\t\v";
constexpr QStringView letters = u"abfnrtv"; // their letters behind a backslash

bool isControl(QChar c)
{
    return c.unicode() < 0x20;
}

bool isHexDigit(QChar c)
{
    return QStringView(u"0123456789abcdefABCDEF").contains(c);
}

QString hex(char16_t unit)
{
    return QString::number(unit, 16);
}

/// QSettings' notation of a value.
QString escape(const QString &text)
{
    QString result;
    bool afterNumber = false; // a digit would belong to it
    for (const QChar c : text) {
        const qsizetype letter = escaped.indexOf(c);
        const bool number = (isControl(c) && letter < 0) || (afterNumber && isHexDigit(c));
        if (number)
            result += u"\\x" + hex(c.unicode());
        else if (letter >= 0)
            result += QStringLiteral("\\") + letters[letter];
        else if (c == u'\\' || c == u'"')
            result += QStringLiteral("\\") + c;
        else
            result += c;
        afterNumber = number;
    }
    return result;
}

/// The text that \a notation stands for, as far as it is one.
QString unescape(QStringView notation)
{
    QString result;
    for (qsizetype i = 0; i < notation.size(); ++i) {
        if (notation[i] != u'\\' || i + 1 == notation.size()) {
            result += notation[i];
            continue;
        }
        const QChar c = notation[++i];
        const qsizetype letter = letters.indexOf(c);
        if (c == u'x') {
            char16_t unit = 0;
            for (; i + 1 < notation.size() && isHexDigit(notation[i + 1]); ++i)
                unit =
                    static_cast<char16_t>(unit * 16 + notation.mid(i + 1, 1).toUShort(nullptr, 16));
            result += QChar(unit);
        } else {
            result += letter >= 0 ? escaped[letter] : c;
        }
    }
    return result;
}

bool hasControls(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(), isControl);
}

/// A value is in QSettings' notation when QSettings would have written it so. Without quotation
/// marks, and behind a drive's letter, `\n` and its like are left alone all the same: there they
/// are folders of a hand-written Windows path rather than line feeds.
QString readValue(const QString &text)
{
    const bool quoted = text.size() > 1 && text.startsWith(u'"') && text.endsWith(u'"');
    const QString inner = quoted ? text.mid(1, text.size() - 2) : text;
    QString value = unescape(inner);
    const bool mayHaveControls = quoted && inner.mid(1, 2) != u":\\";
    if (escape(value) != inner || (hasControls(value) && !mayHaveControls)) {
        // Quotation marks that enclose nothing but a hand-written path are no part of it.
        value = quoted && !inner.contains(u'"') ? inner : text;
    }
    return value.startsWith(u"@@") ? value.mid(1) : value; // a text that is no typed value
}

QString writtenValue(const QString &value)
{
    if (!hasControls(value) && readValue(value.trimmed()) == value)
        return value;
    return u'"' + escape(value.startsWith(u'@') ? u'@' + value : value) + u'"';
}

/// QSettings writes letters, digits and "_-." of a name as they are, `%HH` or `%UHHHH` for all
/// else.
QString readName(const QString &text)
{
    if (text == u"%General") // "General" itself has a meaning of its own there
        return text.mid(1);
    QString name;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'%') {
            name += text[i];
            continue;
        }
        const bool wide = text.mid(i + 1, 1) == u"U";
        const QString digits = wide ? text.mid(i + 2, 4) : text.mid(i + 1, 2);
        bool ok = digits.size() == (wide ? 4 : 2);
        name += QChar(ok ? digits.toUShort(&ok, 16) : u'\0');
        if (!ok)
            return text;
        i += digits.size() + (wide ? 1 : 0);
    }
    return name;
}

QString percentEncoded(const QString &name)
{
    QString result;
    for (const QChar c : name) {
        const bool plain = c.unicode() < 0x80 && (c.isLetterOrNumber() || u"_-."_qs.contains(c));
        result += plain ? QString(c) : u"%U" + hex(c.unicode()).rightJustified(4, u'0');
    }
    return result;
}

QString writtenName(const QString &name)
{
    const bool plain = name == name.trimmed() && readName(name) == name
        && std::none_of(name.cbegin(), name.cend(),
            [](QChar c) { return isControl(c) || QStringView(u"=[];#").contains(c); });
    return plain ? name : percentEncoded(name);
}

} // namespace

IniFile::IniFile(const QByteArray &content)
{
    for (qsizetype start = 0; start < content.size();) {
        const qsizetype end = content.indexOf('\n', start);
        const qsizetype next = end < 0 ? content.size() : end + 1;
        m_lines.append(content.mid(start, next - start));
        start = next;
    }
}

IniFile::Parsed IniFile::parsed(QByteArray line)
{
    if (line.startsWith(byteOrderMark))
        line.remove(0, qstrlen(byteOrderMark));
    const QString text = QString::fromUtf8(line).trimmed();
    if (text.startsWith(u'[')) {
        const qsizetype end = text.indexOf(u']');
        return {true, readName(text.mid(1, end < 0 ? -1 : end - 1).trimmed()), {}};
    }
    const qsizetype equals = text.indexOf(u'=');
    if (equals <= 0 || text.startsWith(u';') || text.startsWith(u'#'))
        return {};
    return {
        false, readName(text.left(equals).trimmed()), readValue(text.mid(equals + 1).trimmed())};
}

QList<QPair<QString, QString>> IniFile::values(const QString &section) const
{
    QList<QPair<QString, QString>> pairs;
    bool inside = false;
    for (const QByteArray &line : m_lines) {
        const Parsed found = parsed(line);
        if (found.isSection)
            inside = found.name == section;
        else if (inside && !found.name.isEmpty())
            pairs.append({found.name, found.value});
    }
    return pairs;
}

void IniFile::setValue(const QString &section, const QString &key, const QString &value)
{
    qsizetype place = -1; // of the key's line that counts
    qsizetype end = -1; // behind the section's last key; comments below may be of the next one
    bool inside = false;
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        const Parsed found = parsed(m_lines[i]);
        if (found.isSection)
            inside = found.name == section;
        if (!inside)
            continue;
        if (!found.name.isEmpty())
            end = i + 1;
        if (!found.isSection && found.name == key)
            place = i;
    }
    if (place >= 0) {
        // The key keeps its spelling.
        QByteArray &line = m_lines[place];
        if (parsed(line).value != value) {
            line.truncate(line.indexOf('=') + 1);
            line += writtenValue(value).toUtf8() + lineEnd();
        }
        return;
    }
    const QByteArray newLine = lineEnd();
    if (!m_lines.isEmpty() && !m_lines.constLast().endsWith('\n'))
        m_lines.last() += newLine;
    if (end < 0) {
        if (!m_lines.isEmpty() && !m_lines.constLast().trimmed().isEmpty())
            m_lines.append(newLine);
        m_lines.append('[' + writtenName(section).toUtf8() + ']' + newLine);
        end = m_lines.size();
    }
    m_lines.insert(end, (writtenName(key) + u'=' + writtenValue(value)).toUtf8() + newLine);
}

QByteArray IniFile::lineEnd() const
{
    const bool windows = !m_lines.isEmpty() && m_lines.constFirst().endsWith("\r\n");
    return windows ? QByteArrayLiteral("\r\n") : QByteArrayLiteral("\n");
}
