#include "toolset/ToolSetMenus.h"

#include "platform/desktop/Captions.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/Tag.h"
#include "shell/CommandTable.h"
#include "shell/Frame.h"
#include "shell/RecentFileMenu.h"

#include <QAction>
#include <QMenu>

namespace {

using Text = QLatin1StringView;

/// One item of an item array; an empty caption is a separator.
struct Item
{
    Text caption;
    Text word; ///< Command word; empty: the window connects the item itself.
    Text keys; ///< Shortcut in portable text.
};

/// Adds the rows of a table to a menu and keeps the actions in \a items, which the table fits.
template <size_t count>
void fill(QMenu *menu, Text arrayName, std::array<QAction *, count> &items,
    const Item (&rows)[count], ToolSetMenus *menus)
{
    for (size_t i = 0; i < count; ++i) {
        if (rows[i].caption.isEmpty()) {
            items[i] = menu->addSeparator();
            continue;
        }
        items[i] = menu->addAction(rows[i].caption);
        items[i]->setObjectName(QStringLiteral("%1(%2)").arg(arrayName).arg(i));
        items[i]->setShortcut(QKeySequence(rows[i].keys, QKeySequence::PortableText));
        if (!rows[i].word.isEmpty()) {
            QObject::connect(items[i], &QAction::triggered, menus,
                [menus, word = rows[i].word] { Q_EMIT menus->chosen(word); });
        }
    }
}

constexpr Item fileItems[ToolSetMenus::FileItems] = {
    {Text("&New Tool Set"), Text("newtoolset"), Text("Ctrl+N")},
    {Text("&Open Tool Set..."), Text("open"), Text("Ctrl+O")},
    {},
    {Text("&Save Tool Set"), Text("save"), Text("Ctrl+S")},
    {Text("Save Tool Set  &As..."), Text(), Text("Ctrl+Shift+S")},
    {},
    {Text("&Print ..."), Text("print"), Text("Ctrl+P")},
    {Text("Print Set&up..."), Text(), Text()},
};
constexpr Item editItems[ToolSetMenus::EditItems] = {
    {Text("&New Tool..."), Text("newtool"), Text("Ins")},
    {Text("&Tool Properties..."), Text("toolproperties"), Text("Alt+Return")},
    {Text("Tool &Help..."), Text(), Text()},
    {Text("Tool Set &Properties..."), Text("properties"), Text()},
    {},
    {Text("C&ut"), Text("cut"), Text("Ctrl+X")},
    {Text("&Copy"), Text("copy"), Text("Ctrl+C")},
    {Text("&Paste"), Text("paste"), Text("Ctrl+V")},
    {Text("De&lete"), Text("delete"), Text("Del")},
};
constexpr Item viewItems[ToolSetMenus::ViewItems] = {
    {Text("&List"), Text("list"), Text()},
    {Text("&Details"), Text("details"), Text()},
    {Text("Tool &Help"), Text(), Text()},
};
constexpr Item windowItems[ToolSetMenus::WindowItems] = {
    {Text("Tile &Horizontally"), Text(), Text()},
    {Text("Tile &Vertically"), Text(), Text()},
    {Text("&Cascade"), Text(), Text()},
    {Text("&Arrange Icons"), Text(), Text()},
};
constexpr Item helpItems[ToolSetMenus::HelpItems] = {
    {Text("&Tool Set Manager..."), Text(), Text("F1")},
    {Text("&VB Quillon..."), Text(), Text()},
    {},
    {Text("&About Tool  Set Manager..."), Text(), Text()},
};

/// Appends the step to the command's text; without one the item is disabled.
void showStep(QAction &item, const QString &command, const std::optional<QString> &step)
{
    // With the name of a tool, which may be long, and in which a tab would begin the shortcut.
    constexpr int maxLength = 60;
    QString text = step.value_or(QString()).simplified();
    if (text.size() > maxLength)
        text = text.left(maxLength - 1) + u'\u2026';
    item.setText(text.isEmpty() ? command : command + u' ' + Captions::forMenu(text));
    item.setEnabled(step.has_value());
}

} // namespace

ToolSetMenus::ToolSetMenus(QWidget *parent)
    : QObject(parent)
    , mnuFile(new QMenu(QStringLiteral("&File"), parent))
    , mnuEdit(new QMenu(QStringLiteral("&Edit"), parent))
    , mnuView(new QMenu(QStringLiteral("&View"), parent))
    , mnuWindow(new QMenu(QStringLiteral("&Window"), parent))
    , mnuHelp(new QMenu(QStringLiteral("&Help"), parent))
{
    fill(mnuFile, Text("mnuFilex"), mnuFilex, fileItems, this);
    mnuFilePrintPreview = new QAction(QStringLiteral("Print Pre&view..."), this);
    mnuFilePrintPreview->setObjectName(QStringLiteral("mnuFilePrintPreview"));
    mnuFilePrintPreview->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P));
    mnuFile->insertAction(mnuFilex[FilePrintSetup], mnuFilePrintPreview);
    const auto fileItem = [this](const QString &name, const QString &caption, const QString &word) {
        QAction *item = mnuFile->addAction(caption);
        item->setObjectName(name);
        connect(item, &QAction::triggered, this, [this, word] { Q_EMIT chosen(word); });
    };
    mnuFile->addSeparator();
    fileItem(QStringLiteral("mnuFileCompare"), QStringLiteral("Compare &With..."),
        QString::fromUtf16(Frame::compareWord));
    fileItem(QStringLiteral("mnuFileVersions"), QStringLiteral("&Earlier Versions..."),
        QString::fromUtf16(Frame::versionsWord));
    mnuFile->addSeparator();
    mnuFileList = new RecentFileMenu(mnuFile);
    fileItem(QStringLiteral("mnuFilePreferences"), QStringLiteral("Pre&ferences..."),
        QString::fromUtf16(Frame::preferencesWord));
    mnuFile->addSeparator();
    mnuFileExit = mnuFile->addAction(QStringLiteral("E&xit"));
    mnuFileExit->setObjectName(QStringLiteral("mnuFileExit"));
    mnuFileExit->setShortcut(QKeySequence::Quit);
    fill(mnuEdit, Text("mnuEditX"), mnuEditX, editItems, this);
    mnuEdit->addSeparator();
    mnuEditUndo = editItem(QStringLiteral("mnuEditUndo"), {}, QStringLiteral("undo"));
    mnuEditUndo->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z));
    mnuEditRedo = editItem(QStringLiteral("mnuEditRedo"), {}, QStringLiteral("redo"));
    mnuEditRedo->setShortcuts(
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
    addListItems();
    addFindItems();
    addWorkOnSets();
    mnuEditX[EditToolHelp]->setVisible(false); // offered in the context menu only
    fill(mnuView, Text("mnuViewX"), mnuViewX, viewItems, this);
    for (const ViewItem view : {ViewList, ViewDetails})
        mnuViewX[view]->setCheckable(true);
    fill(mnuWindow, Text("mnuWindowX"), mnuWindowX, windowItems, this);
    fill(mnuHelp, Text("mnuHelpx"), mnuHelpx, helpItems, this);
    show(CommandState());
}

QAction *ToolSetMenus::editItem(const QString &name, const QString &caption, const QString &word)
{
    QAction *item = mnuEdit->addAction(caption);
    item->setObjectName(name);
    connect(item, &QAction::triggered, this, [this, word] { Q_EMIT chosen(word); });
    return item;
}

void ToolSetMenus::addWorkOnSets()
{
    mnuEditChangeTools = editItem(QStringLiteral("mnuEditChangeTools"),
        QStringLiteral("Change &Several Tools..."), QStringLiteral("changetools"));
    mnuEditCheck =
        editItem(QStringLiteral("mnuEditCheck"), QStringLiteral("Chec&k"), QStringLiteral("check"));
    mnuEditCheck->setShortcut(QKeySequence(Qt::Key_F7));
}

void ToolSetMenus::addListItems()
{
    mnuEdit->addSeparator();
    auto *move = new QMenu(QStringLiteral("Mov&e"), mnuEdit);
    move->setObjectName(QStringLiteral("mnuEditMove"));
    // The list has the keys: in a field they mean its text.
    const auto add = [this](QMenu *menu, const char16_t *name, const char16_t *caption,
                         const char16_t *keys, const char16_t *word) {
        QString text = QString::fromUtf16(caption);
        const QKeySequence sequence(QString::fromUtf16(keys), QKeySequence::PortableText);
        if (!sequence.isEmpty())
            text += u'\t' + sequence.toString(QKeySequence::NativeText);
        QAction *item = menu->addAction(text);
        item->setObjectName(QString::fromUtf16(name));
        Tag::set(*item, CommandTable::needsTool);
        connect(item, &QAction::triggered, this,
            [this, command = QString::fromUtf16(word)] { Q_EMIT chosen(command); });
        m_listItems.append(item);
    };
    add(mnuEdit, u"mnuEditRename", u"Rena&me", u"F2", u"rename");
    mnuEdit->addMenu(move);
    add(move, u"mnuEditMoveUp", u"&Up", u"Ctrl+Shift+Up", u"moveup");
    add(move, u"mnuEditMoveDown", u"&Down", u"Ctrl+Shift+Down", u"movedown");
    add(move, u"mnuEditMoveToStart", u"To &Start", u"Ctrl+Shift+Home", u"movetostart");
    add(move, u"mnuEditMoveToEnd", u"To &End", u"Ctrl+Shift+End", u"movetoend");
    add(mnuEdit, u"mnuEditSelectAll", u"Select &All", u"Ctrl+A", u"selectall");
    add(mnuEdit, u"mnuEditInvert", u"&Invert Selection", u"", u"invertselection");
}

void ToolSetMenus::addFindItems()
{
    mnuEdit->addSeparator();
    const auto item = [this](const char16_t *name, const char16_t *caption, QKeySequence keys) {
        QAction *made = mnuEdit->addAction(QString::fromUtf16(caption));
        made->setObjectName(QString::fromUtf16(name));
        made->setShortcut(keys);
        return made;
    };
    mnuEditFind = item(u"mnuEditFind", u"&Find...", Qt::CTRL | Qt::Key_F);
    mnuEditFindNext = item(u"mnuEditFindNext", u"Find Ne&xt", Qt::Key_F3);
    mnuEditFindPrevious = item(u"mnuEditFindPrevious", u"Find Pre&vious", Qt::SHIFT | Qt::Key_F3);
}

void ToolSetMenus::show(const CommandState &state)
{
    const auto enable = [&](const auto &items) {
        for (QAction *item : items)
            item->setEnabled(state.isEnabled(Tag::of(*item)));
    };
    enable(mnuEditX);
    enable(mnuViewX);
    enable(m_listItems);
    mnuViewX[ViewList]->setChecked(state.view == ListView::lvwList);
    mnuViewX[ViewDetails]->setChecked(state.view == ListView::lvwReport);
    mnuEditChangeTools->setEnabled(state.isEnabled(CommandTable::needsTool));
    showStep(*mnuEditUndo, QStringLiteral("Und&o"), state.undo);
    showStep(*mnuEditRedo, QStringLiteral("&Redo"), state.redo);
}
