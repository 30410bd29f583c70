#pragma once

#include "cli/Json.h"
#include "model/CVBATool.h"

#include <functional>

/// The fields of a tool in the JSON of an unpacked set: all that the file stores but help text and
/// picture, which have files of their own. Each field's key is its name in ToolFields, as
/// "commandLine" for the "command line".
namespace ToolJson {

/// Told what is wrong with a value, and where it stands.
using Report = std::function<void(const JsonValue &value, const QString &what)>;

/// Writes the members of an object that has been begun.
void write(JsonWriter &json, const CVBATool &tool);

/// Reads the object's members into the tool; fields without one keep their value. \a known are keys
/// that the caller reads itself.
void read(const JsonValue &object, CVBATool &tool, const QStringList &known, const Report &report);

/// The value of a field, of which JSON holds the first key; null when it is missing.
const JsonValue *valueOf(const JsonValue &object, QString CVBATool::*field);

} // namespace ToolJson
