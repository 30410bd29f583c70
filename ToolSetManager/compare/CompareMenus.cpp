#include "compare/CompareMenus.h"

#include "platform/desktop/Captions.h"
#include "shell/Frame.h"
#include "shell/RecentFileMenu.h"

#include <QAction>
#include <QMenu>

CompareMenus::CompareMenus(QWidget *parent)
    : QObject(parent)
    , mnuFile(new QMenu(QStringLiteral("&File"), parent))
    , mnuEdit(new QMenu(QStringLiteral("&Edit"), parent))
    , mnuView(new QMenu(QStringLiteral("&View"), parent))
    , mnuMerge(new QMenu(QStringLiteral("&Merge"), parent))
    , mnuWindow(new QMenu(QStringLiteral("&Window"), parent))
    , mnuHelp(new QMenu(QStringLiteral("&Help"), parent))
{
    using namespace CompareWords;
    add(mnuFile, QStringLiteral("&New Tool Set"), QStringLiteral("newtoolset"),
        QStringLiteral("Ctrl+N"));
    add(mnuFile, QStringLiteral("&Open Tool Set..."), QStringLiteral("open"),
        QStringLiteral("Ctrl+O"));
    mnuFile->addSeparator();
    add(mnuFile, QStringLiteral("&Earlier Versions..."), word(Frame::versionsWord));
    mnuFile->addSeparator();
    mnuFileList = new RecentFileMenu(mnuFile);
    mnuFileExit = mnuFile->addAction(QStringLiteral("E&xit"));
    mnuFileExit->setObjectName(QStringLiteral("mnuFileExit"));
    mnuFileExit->setShortcut(QKeySequence::Quit);

    add(mnuEdit, QStringLiteral("Copy to the &Right"), word(copyRight),
        QStringLiteral("Alt+Right"));
    add(mnuEdit, QStringLiteral("Copy to the &Left"), word(copyLeft), QStringLiteral("Alt+Left"));
    add(mnuEdit, QStringLiteral("Copy &All to the Right"), word(copyAllRight));
    add(mnuEdit, QStringLiteral("Copy All &to the Left"), word(copyAllLeft));
    mnuEdit->addSeparator();
    add(mnuEdit, {}, QStringLiteral("undo"), QStringLiteral("Ctrl+Z"));
    add(mnuEdit, {}, QStringLiteral("redo"), QStringLiteral("Ctrl+Shift+Z"));
    item(QStringLiteral("redo"))
        ->setShortcuts({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), Qt::CTRL | Qt::Key_Y});
    showUndo({}, {});

    add(mnuView, QStringLiteral("&Next Change"), word(nextChange), QStringLiteral("F8"));
    add(mnuView, QStringLiteral("&Previous Change"), word(priorChange), QStringLiteral("Shift+F8"));
    mnuView->addSeparator();
    add(mnuView, QStringLiteral("&Changes Only"), word(changesOnly), QStringLiteral("Ctrl+D"));
    item(word(changesOnly))->setCheckable(true);
    add(mnuView, QStringLiteral("&Swap Sides"), word(swapSides));

    add(mnuMerge, QStringLiteral("Choose &Base..."), word(chooseBase));
    add(mnuMerge, QStringLiteral("R&emove Base"), word(removeBase));
    mnuMerge->addSeparator();
    add(mnuMerge, QStringLiteral("Merge into the &Right"), word(mergeRight));
    add(mnuMerge, QStringLiteral("Merge into the &Left"), word(mergeLeft));

    for (const QString &caption :
        {QStringLiteral("Tile &Horizontally"), QStringLiteral("Tile &Vertically"),
            QStringLiteral("&Cascade"), QStringLiteral("&Arrange Icons")})
        mnuWindow->addAction(caption);
    mnuHelpManager = mnuHelp->addAction(QStringLiteral("&Tool Set Manager..."));
    mnuHelpManager->setShortcut(QKeySequence::HelpContents);
    mnuHelpAddIn = mnuHelp->addAction(QStringLiteral("&VB Quillon..."));
    mnuHelp->addSeparator();
    mnuHelpAbout = mnuHelp->addAction(QStringLiteral("&About Tool Set Manager"));
}

void CompareMenus::add(
    QMenu *menu, const QString &caption, const QString &word, const QString &keys)
{
    QAction *made = menu->addAction(caption);
    made->setObjectName(word);
    made->setShortcut(QKeySequence(keys, QKeySequence::PortableText));
    made->setParent(this); // where item() looks
    connect(made, &QAction::triggered, this, [this, word] { Q_EMIT chosen(word); });
}

QAction *CompareMenus::item(const QString &word) const
{
    return findChild<QAction *>(word, Qt::FindDirectChildrenOnly);
}

void CompareMenus::showUndo(
    const std::optional<QString> &undoText, const std::optional<QString> &redoText)
{
    const auto show = [this](const QString &word, const QString &command,
                          const std::optional<QString> &step) {
        constexpr int longest = 60; // names of tools may be long, and hold tabs
        QString text = step.value_or(QString()).simplified();
        if (text.size() > longest)
            text = text.left(longest - 1) + u'\u2026';
        QAction *shown = item(word);
        shown->setText(text.isEmpty() ? command : command + u' ' + Captions::forMenu(text));
        shown->setEnabled(step.has_value());
    };
    show(QStringLiteral("undo"), QStringLiteral("&Undo"), undoText);
    show(QStringLiteral("redo"), QStringLiteral("Re&do"), redoText);
}
