#pragma once

#include "platform/picture/PictureBox.h"

#include <QObject>

#include <memory>

class CVBATools;
class DocumentWindow;
class Frame;
class ListView;
class QWidget;
class Settings;
class SnapshotKeeper;
class ToolSetDocument;
class ToolPropertiesLink;
class mTSM;
struct ToolSetSnapshot;
struct ToolSetStorage;

/// The file of one tool set window: opening and saving its document, the question before changes
/// are lost, and what is kept of changes that did not reach the file.
class ToolSetFile : public QObject
{
    Q_OBJECT
public:
    /// What is handed in is borrowed; \a form is the window itself, for messages.
    ToolSetFile(DocumentWindow &document, QWidget *form, Frame &frame, mTSM &state,
        const Settings &settings, ToolSetStorage &storage, ToolSetDocument &set, ListView &list);
    /// The dialog whose unapplied changes are kept in snapshots as well; to be set once.
    void setProperties(ToolPropertiesLink &properties);
    ~ToolSetFile() override;

    // --- Properties ---
    /// What the user should know of the file as it was found; empty when it was whole, and after a
    /// save.
    QString notice() const { return m_notice; }

    /// The window closes for good. What is unsaved is left for the next start, unless the user has
    /// given it up.
    void closed();

    // --- Commands ---
    /// Each adds the file to the recent ones when it succeeded.
    void open();
    void save();
    void saveAs();
    /// Offers to save a changed set. True when the user *cancelled*.
    bool CleanIfDirty();
    /// Shows a set from its snapshot, as one never saved. False, after a message, when the snapshot
    /// cannot be read.
    bool recover(const QString &snapshotPath);

private:
    /// Where a recovered set comes from.
    struct Origin
    {
        QString title;
        QString path;
    };

    bool openSet();
    bool saveSet();
    bool saveSetAs();
    void changed();
    void draftChanged();
    void setNotice(const QString &text);
    /// Says once that work that is not saved is not safe.
    void snapshotFailed(const QString &reason);
    /// What the status bar says when the save has written over somebody else's content.
    QString noticeOfOthers() const;
    ToolSetSnapshot snapshot() const;

    DocumentWindow &m_document;
    QWidget *m_form;
    Frame &m_frame;
    mTSM &m_state;
    const Settings &m_settings;
    ToolSetStorage &m_storage;
    ToolSetDocument &m_set;
    ListView &m_list;
    PictureBox picUtil; ///< Renders the button pictures for the file.

    SnapshotKeeper *m_snapshots;
    const ToolPropertiesLink *m_properties = nullptr;
    QString m_notice;
    Origin m_origin; ///< Empty unless recovered, and again after a save.
    bool m_givenUp = false; ///< The user has answered No, and nothing has changed since.
};
