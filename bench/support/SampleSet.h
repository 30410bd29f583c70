#pragma once

#include "model/CVBATool.h"
#include "model/ToolSetStorage.h"

#include <QTemporaryDir>

/// Tool sets to measure with: each tool has a picture of 18 by 18 pixels and 2 KB of help text.
/// Everything lies in a folder of its own that goes with the object.
class SampleSet
{
public:
    SampleSet();

    ToolSetStorage &storage() { return m_storage; }
    /// The tools of a set of that size; names and locations are not in their sorted order.
    static QList<ToolPtr> tools(int count);
    /// A file with so many tools, written when first asked for; empty when that failed.
    QString file(int count);
    QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
    ToolSetStorage m_storage;
};
