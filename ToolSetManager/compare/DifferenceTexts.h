#pragma once

#include "model/ToolSetDiff.h"

#include <QString>

/// What the comparison shows of tools, sets and their differences, as texts.
namespace DifferenceTexts {

/// The values that a set has of its own, by the index that rows and fields use.
enum SetField { Description, LongDescription, MenuSwitch, setFieldCount };

QString fieldCaption(int field); ///< Of a tool: by its index in ToolFields.
QString setFieldCaption(int field);

/// One line. Of a picture its size; of a help text how it begins. The code page is that of rich
/// texts that do not tell theirs.
QString value(const CVBATool &tool, int field, int codePage);
QString setValue(const ToolSetContents::Properties &properties, int field, int codePage);

/// The words of a help text.
QString plainText(const QString &rtf, int codePage);

/// What is different in the right set, as in "3 tools fewer, 1 changed".
QString summary(const ToolSetDiff::Summary &summary);

/// "1 tool", "2 tools".
QString tools(int count);

/// In the units that people use: "1.2 MB".
QString size(qint64 bytes);

} // namespace DifferenceTexts
