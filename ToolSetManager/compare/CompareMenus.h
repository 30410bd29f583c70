#pragma once

#include <QObject>

#include <array>
#include <optional>

class QAction;
class QMenu;
class RecentFileMenu;

/// The menu bar of a comparison window. An item with a command word raises chosen(); those of the
/// Window and Help menus and Exit are connected by the window.
class CompareMenus : public QObject
{
    Q_OBJECT
public:
    /// The menus belong to \a parent.
    explicit CompareMenus(QWidget *parent);

    QMenu *mnuFile;
    QMenu *mnuEdit;
    QMenu *mnuView;
    QMenu *mnuMerge;
    QMenu *mnuWindow;
    QMenu *mnuHelp;
    RecentFileMenu *mnuFileList;
    QAction *mnuFileExit;
    QAction *mnuHelpManager;
    QAction *mnuHelpAddIn;
    QAction *mnuHelpAbout;

    QList<QMenu *> all() const { return {mnuFile, mnuEdit, mnuView, mnuMerge, mnuWindow, mnuHelp}; }
    /// The item with that command word.
    QAction *item(const QString &word) const;
    /// As ToolSetMenus::showUndo.
    void showUndo(const std::optional<QString> &undoText, const std::optional<QString> &redoText);

Q_SIGNALS:
    void chosen(const QString &commandWord);

private:
    void add(QMenu *menu, const QString &caption, const QString &word, const QString &keys = {});
};

/// The command words of a comparison window.
namespace CompareWords {

constexpr char16_t nextChange[] = u"nextchange";
constexpr char16_t priorChange[] = u"priorchange";
constexpr char16_t copyRight[] = u"copyright";
constexpr char16_t copyLeft[] = u"copyleft";
constexpr char16_t copyAllRight[] = u"copyallright";
constexpr char16_t copyAllLeft[] = u"copyallleft";
constexpr char16_t changesOnly[] = u"changesonly";
constexpr char16_t swapSides[] = u"swapsides";
constexpr char16_t chooseBase[] = u"choosebase";
constexpr char16_t removeBase[] = u"removebase";
constexpr char16_t mergeRight[] = u"mergeright";
constexpr char16_t mergeLeft[] = u"mergeleft";

inline QString word(const char16_t *word)
{
    return QString::fromUtf16(word);
}

} // namespace CompareWords
