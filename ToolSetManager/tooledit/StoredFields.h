#pragma once

class CVBATool;
class QString;

/// What a tool stores without a control for it in the properties dialog.
namespace StoredFields {

/// A line for each of those fields that is not empty, as in "Hot key: Ctrl+K"; the longest ones are
/// cut. Empty when there are none.
QString text(const CVBATool &tool);

} // namespace StoredFields
