#include "shell/ToolSetLoader.h"

#include "model/CVBATools.h"
#include "model/OldHelp.h"
#include "model/ToolSetSnapshot.h"
#include "model/ToolSetStorage.h"

ToolSetLoader::Loaded ToolSetLoader::fromFile(
    const QString &path, ToolSetStorage &storage, const Progress &progress)
{
    auto loaded = std::make_unique<CVBATools>(storage);
    loaded->setAllowDupes(true);
    loaded->Progress = progress;
    const bool ok = loaded->Load(path);
    loaded->Progress = nullptr;
    if (!ok)
        return {nullptr, loaded->ErrorDescription};
    OldHelp::update(*loaded, storage.codePage.number());
    return {std::move(loaded), {}};
}

std::unique_ptr<CVBATools> ToolSetLoader::fromSnapshot(
    const ToolSetSnapshot &snapshot, ToolSetStorage &storage)
{
    auto tools = std::make_unique<CVBATools>(storage);
    tools->setFLAGS(snapshot.FLAGS);
    tools->setDescription(snapshot.Description);
    tools->setLongDescription(snapshot.LongDescription);
    for (const CVBATool &tool : snapshot.tools) {
        const auto copy = std::make_shared<CVBATool>(tool);
        tools->setAllowDupes(false); // the names come back as they were
        if (tools->Add(copy))
            continue;
        tools->setAllowDupes(true);
        if (!tools->Add(copy)) { // a name that was typed and not applied: there is no room for it
            copy->Description.clear();
            tools->Add(copy);
        }
    }
    tools->setAllowDupes(true);
    return tools;
}
