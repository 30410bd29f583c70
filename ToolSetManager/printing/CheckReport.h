#pragma once

#include "model/ToolCheck.h"
#include "report/ToolsetReport.h"

/// The findings of a check on paper: tool by tool what was found and what to do about it.
namespace CheckReport {

/// Writes the whole report into a document that has been started, and ends it; progress counts
/// findings. \a rows are by position, \a fileName stands in the header. False when it was given up.
bool write(PageDocument &page, const QList<ToolCheck::Row> &rows, const QString &fileName,
    const ToolsetReport::Progress &progress = {});

} // namespace CheckReport
