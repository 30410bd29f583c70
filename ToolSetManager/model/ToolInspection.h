#pragma once

#include "model/ToolCheck.h"

/// One look at one tool: what there is to find without regard to the other tools.
struct ToolInspection
{
    QList<ToolFinding> findings; ///< The most severe first.
    QString hotKey; ///< That the tool occupies, in the common form; empty for none.
    QString waitsFor; ///< The file that is being looked up; empty for none.

    /// \a oldVersion is that of a file whose flags the present version has no place for.
    static ToolInspection of(const CVBATool &tool, const ToolCheck::Rules &rules, bool oldVersion);
};
