#pragma once

#include <QString>

class CodePage;

/// What the strings of a tool set file can hold.
namespace StorableText {

/// Why the text cannot be stored, as part of a sentence; empty when it can.
QString problem(const CodePage &codePage, const QString &text);

} // namespace StorableText
