#pragma once

#include <QList>
#include <QString>

class CFileList;
class DocumentWindow;

/// The main frame as the document windows see it; a test puts a small fake in its place.
class Frame
{
public:
    enum class Arrangement { TileHorizontally, TileVertically, Cascade, ArrangeIcons };

    /// Names of the help files: the program's, the one that tool set windows name, the add-in's.
    static constexpr char16_t programHelp[] = u"VBQLNTSM.HLP";
    static constexpr char16_t toolSetHelp[] = u"TSM.HLP";
    static constexpr char16_t addInHelp[] = u"VBQLN5.HLP";

    virtual ~Frame() = default;

    // --- Commands ---
    // Words of the frame's own that document windows offer, too.
    static constexpr char16_t compareWord[] = u"compare";
    static constexpr char16_t versionsWord[] = u"versions";
    static constexpr char16_t preferencesWord[] = u"preferences";

    virtual void setAction(const QString &word) = 0; ///< Queues a command word.
    virtual void openFile(const QString &path) = 0; ///< Queues "open" for that path.
    virtual void closeFrame() = 0; ///< As the user's closing of the frame.

    /// The commandState() of \a document is another one now.
    virtual void commandStateChanged(const DocumentWindow &document) = 0;

    // --- Status bar ---
    /// The status() of \a document is another one now.
    virtual void statusChanged(const DocumentWindow &document) = 0;
    // The panels count from 1.
    static constexpr int toolPanel = 1; ///< The tool whose properties are open.
    static constexpr int effectPanel = 1; ///< What a drop would do, during a drag; ...
    static constexpr int namesPanel = 2; ///< ... and with what.
    static constexpr int noticePanel = 2; ///< The active window's notice() otherwise.
    virtual QString panelText(int panel) const = 0;
    virtual void setPanelText(int panel, const QString &text) = 0;
    /// Says in the notice's place what a command has produced; a \a file can be opened from there.
    virtual void showResult(const QString &text, const QString &file) = 0;

    /// Shows how far a long piece of work is, in per cent, and lets the windows paint; nothing
    /// else happens meanwhile. To be called by BusyProgress.
    virtual void showProgress(const QString &what, int percent) = 0;
    virtual void endProgress() = 0;

    /// Says above the windows, until the user closes it, what does not stop the work. Each text is
    /// shown once.
    virtual void showWarning(const QString &text) = 0;

    // --- Windows ---
    /// The open document windows, oldest first.
    virtual QList<DocumentWindow *> openDocuments() const = 0;
    virtual DocumentWindow *activeDocument() const = 0; ///< Null for none.
    virtual void activateDocument(DocumentWindow *document) = 0;
    /// Takes in a window that was made elsewhere, which then shows.
    virtual void addDocument(DocumentWindow *document) = 0;
    /// A new window of a set called \a caption; it shows.
    virtual DocumentWindow *newDocument(const QString &caption) = 0;
    /// The window of that file, opened if need be, in front of the others. Null when the file
    /// cannot be opened, which the user has been told then. At once: for commands only.
    virtual DocumentWindow *openDocument(const QString &path) = 0;
    virtual void documentClosed(DocumentWindow *document) = 0; ///< It is on its way out.
    virtual void arrangeWindows(Arrangement arrangement) = 0;

    virtual CFileList &FileListHandler() = 0;

    // --- Help ---
    /// One of the names above; the topic is that of HelpTopic.
    virtual void showHelp(const QString &helpFile, const QString &topic = {}) = 0;
    virtual void showAbout() = 0;
};
