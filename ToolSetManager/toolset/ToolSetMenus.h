#pragma once

#include "shell/CommandState.h"

#include <QList>
#include <QObject>

#include <array>

class QAction;
class QMenu;
class RecentFileMenu;

/// The menu bar of a tool set window: the item arrays, their captions and keys. An item with a
/// command word raises chosen(); the others are connected by the window. Items that belong to a
/// command group carry it as their tag.
class ToolSetMenus : public QObject
{
    Q_OBJECT
public:
    /// Indexes into the item arrays; the missing ones are separators.
    enum FileItem {
        FileNew = 0,
        FileOpen = 1,
        FileSave = 3,
        FileSaveAs = 4,
        FilePrint = 6,
        FilePrintSetup = 7,
        FileItems
    };
    enum EditItem {
        EditNewTool = 0,
        EditToolProperties = 1,
        EditToolHelp = 2,
        EditToolSetProperties = 3,
        EditCut = 5,
        EditCopy = 6,
        EditPaste = 7,
        EditDelete = 8,
        EditItems
    };
    enum ViewItem { ViewList, ViewDetails, ViewToolHelp, ViewItems };
    enum WindowItem { TileHorizontally, TileVertically, Cascade, ArrangeIcons, WindowItems };
    enum HelpItem { HelpToolSetManager = 0, HelpAddIn = 1, HelpAbout = 3, HelpItems };

    /// The menus belong to \a parent.
    explicit ToolSetMenus(QWidget *parent);

    QMenu *mnuFile;
    QMenu *mnuEdit;
    QMenu *mnuView;
    QMenu *mnuWindow;
    QMenu *mnuHelp;
    std::array<QAction *, FileItems> mnuFilex {};
    std::array<QAction *, EditItems> mnuEditX {};
    std::array<QAction *, ViewItems> mnuViewX {};
    std::array<QAction *, WindowItems> mnuWindowX {};
    std::array<QAction *, HelpItems> mnuHelpx {};
    RecentFileMenu *mnuFileList;
    // Of this program's own: no items of the arrays.
    QAction *mnuFilePrintPreview;
    QAction *mnuEditUndo;
    QAction *mnuEditRedo;
    QAction *mnuEditFind;
    QAction *mnuEditFindNext;
    QAction *mnuEditFindPrevious;
    QAction *mnuEditCheck;
    QAction *mnuEditChangeTools;
    QAction *mnuFileExit;

    QList<QMenu *> all() const { return {mnuFile, mnuEdit, mnuView, mnuWindow, mnuHelp}; }

    /// Enables the Edit and View items by the groups that their tags name, and says in Undo and
    /// Redo what they are about.
    void show(const CommandState &state);

Q_SIGNALS:
    void chosen(const QString &commandWord);

private:
    /// An item of this program's own with a command word, at the end of the Edit menu.
    QAction *editItem(const QString &name, const QString &caption, const QString &word);
    void addFindItems();
    void addListItems();
    void addWorkOnSets();

    QList<QAction *> m_listItems; ///< For what else only the list's keys do.
};
