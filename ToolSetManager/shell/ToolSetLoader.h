#pragma once

#include <QString>

#include <functional>
#include <memory>

class CVBATools;
struct ToolSetSnapshot;
struct ToolSetStorage;

/// Sets from files and from snapshots, as windows show them.
namespace ToolSetLoader {

struct Loaded
{
    std::unique_ptr<CVBATools> tools; ///< Null when the file cannot be read.
    QString error; ///< Why.
};

using Progress = std::function<void(qint64 done, qint64 total)>;

/// Help texts of old files come out in the form that the rich-text box gives them. What a damaged
/// file has is there; CVBATools::fileEnd() tells.
Loaded fromFile(const QString &path, ToolSetStorage &storage, const Progress &progress = {});

/// The tools have the names that they had.
std::unique_ptr<CVBATools> fromSnapshot(const ToolSetSnapshot &snapshot, ToolSetStorage &storage);

} // namespace ToolSetLoader
