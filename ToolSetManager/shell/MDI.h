#pragma once

#include "platform/desktop/FrameIdentity.h"
#include "shell/Frame.h"

#include <QHash>
#include <QMainWindow>
#include <QPointer>
#include <QQueue>

#include <functional>

class CommandQueue;
class CommandToolbar;
class MdiArea;
class QMdiSubWindow;
class QTimer;
class RecentFileMenu;
class RecoveryOffer;
class Settings;
class SettingsStore;
class StatusBar;
class frmHelp;
class mTSM;

/// The main frame: holds the document windows, the toolbar and the status bar, and turns every
/// command (button, menu item, command line, request of a window) into a command word that runs
/// later, one at a time, from a queue. So no command runs inside the handler that asked for it.
class MDI : public QMainWindow, public Frame
{
    Q_OBJECT
public:
    static constexpr auto &caption = FrameIdentity::caption;
    static constexpr auto &windowClass = FrameIdentity::windowClass;

    /// Makes a document window of the given frame; it deletes itself when it is closed.
    using DocumentFactory = std::function<DocumentWindow *(Frame &frame)>;

    /// What is handed in is borrowed. \a commandLine is a path to open, or empty.
    MDI(mTSM &state, Settings &settings, SettingsStore &store, DocumentFactory factory,
        const QString &commandLine);
    ~MDI() override;

    // --- The command queue ---
    QString Action(); ///< Removes and returns the word at the head; empty when there is none.
    void setAction(const QString &word) override; ///< Appends a word.

    /// Has the word run \a command, whichever window is active: what is beyond single windows.
    void setCommand(const QString &word, std::function<void()> command);

    // --- Frame ---
    void openFile(const QString &path) override;
    void closeFrame() override;
    void commandStateChanged(const DocumentWindow &document) override;
    void statusChanged(const DocumentWindow &document) override;
    QString panelText(int panel) const override;
    void setPanelText(int panel, const QString &text) override;
    void showResult(const QString &text, const QString &file) override;
    void showProgress(const QString &what, int percent) override;
    void endProgress() override;
    void showWarning(const QString &text) override;
    QList<DocumentWindow *> openDocuments() const override { return m_documents; }
    DocumentWindow *activeDocument() const override;
    void activateDocument(DocumentWindow *document) override;
    void addDocument(DocumentWindow *document) override;
    DocumentWindow *newDocument(const QString &caption) override;
    DocumentWindow *openDocument(const QString &path) override;
    void documentClosed(DocumentWindow *document) override;
    void arrangeWindows(Arrangement arrangement) override;
    CFileList &FileListHandler() override { return *m_files; }
    void showHelp(const QString &helpFile, const QString &topic = {}) override;
    void showAbout() override;

    /// Offers to open what these snapshots hold, in a bar above the windows (RecoveryOffer).
    void offerRecovery(const QStringList &snapshots);

    /// Another start of the program asked for it.
    void comeForward();

Q_SIGNALS:
    void firstPainted(); ///< The frame stands on the screen; what can wait is done now.

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool event(QEvent *event) override;

private Q_SLOTS:
    // --- tmrDrag ---
    void tmrDrag_Timer();
    // --- recent files ---
    void FileListHandler_FileAdded();
    void saveRecentFiles();
    // --- mdi ---
    void mdi_SubWindowActivated();

private:
    void MDIForm_Load(const QString &commandLine);
    /// True when the close is to be cancelled.
    bool MDIForm_QueryUnload();

    void makeMenus();
    void refreshIcons();
    void dispatch(const QString &word);
    void newToolSet();
    /// The window of the set; null when the user has chosen none.
    DocumentWindow *openToolSet(int view, QString path);
    /// The path chosen in the open dialog; empty when cancelled.
    QString openHelper();
    DocumentWindow *documentWithCaption(const QString &caption) const;
    DocumentWindow *makeDocument();
    void takeIn(DocumentWindow *document);
    void recoverToolSets();
    QMdiSubWindow *subWindowOf(DocumentWindow *document) const;
    void giveIcon(const QList<QMdiSubWindow *> &windows) const;
    int currentView() const;
    void showCommandState();
    void showStatus();
    void makeStartPage();
    void showMenusOf(DocumentWindow *document);
    /// Shows in the status bar what a drop of these files would do.
    void tellDrag(const QString &effect, const QString &names);

    mTSM &m_state;
    Settings &m_settings;
    SettingsStore &m_store;
    DocumentFactory m_factory;

    // --- Controls ---
    CommandToolbar *tbTools;
    StatusBar *status;
    MdiArea *mdi;
    RecoveryOffer *m_recovery; ///< Its bar stands above the windows.
    QMenu *mnuFile = nullptr;
    QMenu *mnuHelp = nullptr;
    RecentFileMenu *mnuFileList = nullptr;
    QTimer *tmrDrag;
    QPointer<frmHelp> m_help;

    // --- State ---
    CFileList *m_files;
    CommandQueue *m_commands;
    QHash<QString, std::function<void()>> m_ownCommands; ///< By their words.
    QStringList m_warnings; ///< All that have been shown.
    bool m_statusPending = false; ///< showStatus() is about to run.
    bool m_painted = false; ///< The buttons have their icons.
    /// The files for the next "open" words, one for each; without one the user is asked.
    QQueue<QString> m_pendingPaths;
    QStringList m_draggedFiles; ///< The tool sets of the drag above the frame.
    int m_newWindows = 0; ///< Counts "Untitled" windows; never reset.
    QList<DocumentWindow *> m_documents; ///< Oldest first.
    DocumentWindow *m_menuOwner = nullptr; ///< Whose menus are shown; null: the frame's own.
};
