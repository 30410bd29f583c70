#include "Promise.h"
#include "model/ToolSetSnapshot.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

bool same(const CVBATool &a, const CVBATool &b)
{
    return a.Description == b.Description && a.FileName == b.FileName && a.Picture == b.Picture
        && a.HelpString == b.HelpString && a.Enabled.raw() == b.Enabled.raw()
        && a.ToolType == b.ToolType && a.VBEvents == b.VBEvents && a.HelpId == b.HelpId;
}

} // namespace

/// A snapshot that can be read is the same after it was written again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("s"));
    QFile input(path);
    require(input.open(QIODevice::WriteOnly)
            && input.write(reinterpret_cast<const char *>(data), static_cast<qint64>(size))
                == static_cast<qint64>(size),
        "the input can be written");
    input.close();

    const ToolSetSnapshot::Origin origin = ToolSetSnapshot::readOrigin(path);
    const auto first = ToolSetSnapshot::read(path);
    if (!first)
        return 0;
    require(first->title == origin.title && first->path == origin.path,
        "what the file begins with is the snapshot's");
    require(SnapshotWriter(*first, path).finish() == SnapshotWriter::State::Done,
        "what was read can be written");
    const auto second = ToolSetSnapshot::read(path);
    require(second && second->title == first->title && second->path == first->path
            && second->FLAGS == first->FLAGS && second->Description == first->Description
            && second->LongDescription == first->LongDescription
            && std::equal(first->tools.begin(), first->tools.end(), second->tools.begin(),
                second->tools.end(), same),
        "nothing is lost between writing and reading");
    return 0;
}
