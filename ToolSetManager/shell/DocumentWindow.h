#pragma once

#include "shell/CommandState.h"

#include <QList>
#include <QString>

class Frame;
class QMenu;
class QWidget;
class RecentFileMenu;
class ToolSetDocument;

/// What the status bar says of a document, at its right end.
struct DocumentStatus
{
    QString name; ///< Of the file, without its folder.
    QString contents; ///< How much is in it, and how much of that is selected.
    QString state; ///< Whether there is something to save.
};

/// What the main frame knows of a document window. The frame drives it by command words and asks
/// it before it closes it.
class DocumentWindow
{
public:
    virtual ~DocumentWindow() = default;

    virtual QWidget *widget() = 0;

    // --- Properties ---
    virtual QString Name() const = 0; ///< Name of the form's kind.
    virtual QString Caption() const = 0; ///< Path of the file, or "Untitled" and a number.
    virtual void setCaption(const QString &caption) = 0;
    virtual QString FileName() const = 0; ///< Empty for a document never saved.
    virtual void setFileName(const QString &path) = 0;
    virtual QString notice() const = 0; ///< What the status bar says of the document; often empty.
    virtual int View() const = 0; ///< A value of ListView::ViewConstants.
    virtual void setView(int view) = 0;
    virtual void setAction(const QString &word) = 0; ///< Runs a command; unknown words do nothing.

    virtual CommandState commandState() const = 0;
    virtual DocumentStatus status() const = 0;
    /// The set that it shows, as far as it shows one of its own; else null.
    virtual ToolSetDocument *toolSet() { return nullptr; }

    // --- Operations ---
    /// Offers to save a changed document. True when the user *cancelled*.
    virtual bool CleanIfDirty() = 0;
    /// Shows what a snapshot holds, as a document never saved. False when it cannot be read, which
    /// the window tells the user itself.
    virtual bool Recover(const QString &snapshot) = 0;
    /// Closes the window without asking and without telling the frame "close".
    virtual void Unload() = 0;
    /// The window has become the active one.
    virtual void Form_Activate() = 0;

    // --- Menus ---
    virtual QList<QMenu *> menus() const = 0; ///< Shown in the frame while the window is active.
    virtual RecentFileMenu &mnuFileList() = 0;

    /// What Exit does in each document window: closes them all, after their questions, and the
    /// frame.
    static void exit(Frame &frame);
};
