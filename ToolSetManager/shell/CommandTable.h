#pragma once

#include <QLatin1StringView>
#include <QStyle>

/// The toolbar's commands: one row a button, in order. A click queues the key as a command word.
namespace CommandTable {

/// Command groups, the tags of buttons and menu items.
constexpr QLatin1StringView needsToolSet("L");
constexpr QLatin1StringView needsTool("P");
constexpr QLatin1StringView needsClipboard("C");

struct Button
{
    QLatin1StringView key;
    QLatin1StringView toolTip;
    QLatin1StringView tag; ///< The group that enables it; empty: always enabled.
    QLatin1StringView icon;
    QStyle::StandardPixmap fallbackIcon;
    bool startsGroup = false; ///< A separator stands before it.
};

using Text = QLatin1StringView;

constexpr Button buttons[] = {
    {Text("newtoolset"), Text("Create a new tool set"), Text(), Text("document-new"),
        QStyle::SP_FileIcon},
    {Text("open"), Text("Open existing tool set"), Text(), Text("document-open"),
        QStyle::SP_DialogOpenButton},
    {Text("save"), Text("Save the tool set"), needsToolSet, Text("document-save"),
        QStyle::SP_DialogSaveButton},
    {Text("cut"), Text("Cut the selected tool"), needsTool, Text("edit-cut"),
        QStyle::SP_FileLinkIcon, true},
    {Text("copy"), Text("Copy the selected tool"), needsTool, Text("edit-copy"),
        QStyle::SP_FileDialogContentsView},
    {Text("paste"), Text("Paste the selected tool"), needsClipboard, Text("edit-paste"),
        QStyle::SP_DialogApplyButton},
    {Text("newtool"), Text("Create a new tool"), needsToolSet, Text("list-add"),
        QStyle::SP_FileDialogNewFolder, true},
    {Text("delete"), Text("Delete the selected tool"), needsTool, Text("edit-delete"),
        QStyle::SP_TrashIcon},
    {Text("print"), Text("Print the tool set"), needsToolSet, Text("document-print"),
        QStyle::SP_FileDialogInfoView, true},
    {Text("properties"), Text("Tool set properties"), needsToolSet, Text("document-properties"),
        QStyle::SP_FileDialogDetailedView},
    {Text("toolproperties"), Text("Tool properties"), needsTool, Text("configure"),
        QStyle::SP_ComputerIcon},
    {Text("macro"), Text("Edit macro"), Text(), Text("dialog-scripts"),
        QStyle::SP_FileDialogContentsView},
    {Text("list"), Text("List tools"), needsToolSet, Text("view-list-icons"),
        QStyle::SP_FileDialogListView, true},
    {Text("details"), Text("Tool details"), needsToolSet, Text("view-list-details"),
        QStyle::SP_FileDialogDetailedView},
};

} // namespace CommandTable
