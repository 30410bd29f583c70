#include "Promise.h"
#include "cli/Json.h"
#include "cli/Session.h"
#include "cli/SetFile.h"
#include "cli/UnpackedSet.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

namespace {

/// What was read, written again.
void write(JsonWriter &json, const JsonValue &value)
{
    switch (value.type) {
    case JsonValue::Type::Array:
        json.beginArray();
        for (const JsonValue &item : value.items)
            write(json, item);
        json.endArray();
        break;
    case JsonValue::Type::Object:
        json.beginObject();
        for (const auto &[key, member] : value.members) {
            json.key(key);
            write(json, member);
        }
        json.endObject();
        break;
    case JsonValue::Type::Text:
        json.value(value.text);
        break;
    case JsonValue::Type::Number:
        json.value(value.whole(-1000000, 1000000).value_or(0));
        break;
    case JsonValue::Type::Null:
    case JsonValue::Type::Truth:
        json.value(value.truth);
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz_unpacked";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    static const QTemporaryDir place;

    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    JsonValue::Error error;
    if (const auto value = JsonValue::read(bytes, error)) {
        QByteArray first;
        JsonWriter writer(first);
        write(writer, *value);
        const auto again = JsonValue::read(first, error);
        require(again.has_value(), "what was written can be read");
        QByteArray second;
        JsonWriter same(second);
        write(same, *again);
        require(first == second, "nothing is lost between writing and reading");
    } else {
        require(error.line >= 1 && !error.what.isEmpty(), "a failure has a line and a text");
    }

    QFile list(place.filePath(UnpackedSet::listName));
    require(list.open(QIODevice::WriteOnly) && list.write(bytes) == bytes.size(), "written");
    list.close();
    QBuffer streams[3];
    for (QBuffer &each : streams)
        each.open(QIODevice::ReadWrite);
    Session session({&streams[0], &streams[1], &streams[2]}, 1252, QString());
    int codePage = 0;
    const auto tools = UnpackedSet::read(session, place.path(), codePage);
    require(bool(tools) != session.hadTrouble(), "a set or a message");
    if (tools) {
        session.storage().codePage = CodePage(codePage);
        require(SetFile::write(session, *tools, QStringLiteral("-")), "what was read is storable");
    }
    return 0;
}
