#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <utility>
#include <vector>

/// Writes JavaScript Object Notation in UTF-8, in the order of the calls and indented by two
/// blanks. What a terminal or an editor does not show as a character of its own is written as an
/// escape.
class JsonWriter
{
public:
    enum class Layout { Lines, Inline };

    explicit JsonWriter(QByteArray &to)
        : m_to(to)
    {
    }

    void beginObject() { begin('{', Layout::Lines); }
    void endObject() { end('}'); }
    void beginArray(Layout layout = Layout::Lines) { begin('[', layout); }
    void endArray() { end(']'); }
    void key(const char *name);
    void key(const QString &name);

    void value(const QString &text);
    void value(qint64 number);
    void value(bool truth);
    template <class Value>
    void member(const char *name, const Value &content)
    {
        key(name);
        value(content);
    }
    void member(const char *name, int number) { member(name, qint64(number)); }

private:
    struct Level
    {
        Layout layout;
        bool isEmpty;
    };

    void begin(char bracket, Layout layout);
    void end(char bracket);
    void separate();
    void newLine();

    QByteArray &m_to;
    std::vector<Level> m_levels;
    bool m_afterKey = false;
};

/// A value that was read, with the line that it stands on, for messages.
struct JsonValue
{
    enum class Type { Null, Truth, Number, Text, Array, Object };

    Type type = Type::Null;
    int line = 1;
    bool truth = false;
    double number = 0;
    QString text;
    std::vector<JsonValue> items; ///< Of an array.
    std::vector<std::pair<QString, JsonValue>> members; ///< Of an object; no name twice.

    /// Null when there is none of that name.
    const JsonValue *find(QStringView name) const;
    /// The number, when it is a whole one in that range.
    std::optional<qint64> whole(qint64 least, qint64 most) const;

    struct Error
    {
        int line = 1;
        QString what; ///< A sentence without its full stop.
    };
    /// Empty, with \a error filled, when the bytes are no valid JSON.
    static std::optional<JsonValue> read(QByteArrayView bytes, Error &error);
};
