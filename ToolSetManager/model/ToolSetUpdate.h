#pragma once

#include "model/ToolSetDiff.h"

class ToolSetDocument;

/// Brings the set of a document into another state, in one step of undo: where restoring, copying
/// between sets and merging end.
namespace ToolSetUpdate {

/// What is to become of a document.
struct Target
{
    struct Entry
    {
        int from = 0; ///< The tool's present position; 0 for a new one.
        ToolPtr tool; ///< What it is to be. The document's own tool means: as it is.
    };
    ToolSetContents::Properties properties;
    /// In their new order. Their names must differ in more than letter case. A tool of the document
    /// that is not here is removed.
    std::vector<Entry> tools;
};

ToolSetState stateOf(const ToolSetDocument &document); ///< With its own tools, as the next.
ToolSetState stateOf(const CVBATools &set);
Target unchanged(const ToolSetDocument &document);
/// The state in place of the document's own, tool by tool as ToolSetDiff matches them.
Target replacement(const ToolSetDocument &document, const ToolSetState &state);

/// Tools of the document stay the very same ones. \a step names the step of undo; without a
/// difference there is none.
void apply(ToolSetDocument &document, const Target &target, const QString &step);

} // namespace ToolSetUpdate
