#pragma once

#include "toolset/ChangePreview.h"
#include "toolset/ToolPictures.h"

#include <QDialog>

#include <array>

class ChangesModel;
class EventChoices;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTreeView;

/// The dialog that changes several tools at once. What it would do is shown while it is entered, a
/// row a change; nothing reaches the document before Apply, which is one step of undo.
class frmChangeTools : public QDialog
{
    Q_OBJECT
public:
    /// Positions, ascending; either list may be the one that is changed.
    struct Scope
    {
        QList<int> selected;
        QList<int> shown;
    };
    /// What is handed in is borrowed, but for \a places.
    frmChangeTools(ToolSetDocument &document, const CodePage &codePage, const ToolPlaces &places,
        const Scope &scope, QWidget *parent = nullptr);

private Q_SLOTS:
    void refresh(); ///< What is entered has changed.
    void ticksChanged();
    void progressed();
    void completed();
    void cmdApply_Click();

private:
    QWidget *replacePage();
    QWidget *switchesPage();
    QLayout *scopeRow();
    QLayout *previewRows();
    QLayout *buttonRow();
    template <class Control>
    Control *named(const char *name, Control *control);
    QComboBox *choice(const char *name, const QStringList &entries);

    BulkChange change() const;
    const QList<int> &positions() const;
    QString hint() const; ///< On what is entered in the first page.
    QString summary() const;

    ToolSetDocument &m_document;
    const Scope m_scope;
    ToolPictures m_pictures;
    ChangePreview m_preview;
    ChangesModel *m_changes;
    QTimer m_typing; ///< From the last keystroke to the next preview.

    // --- Controls ---
    QRadioButton *optSelected;
    QRadioButton *optShown;
    QComboBox *cboField;
    QComboBox *cboSearch;
    QLineEdit *txtFind;
    QLineEdit *txtReplace;
    QCheckBox *chkMatchCase;
    QLabel *lblHint;
    std::array<QComboBox *, 4> cboSwitch {}; ///< Enabled, tool bar, list, out of process.
    QComboBox *cboKind;
    QCheckBox *chkPictures;
    EventChoices *tvwEvents;
    QTreeView *tvwChanges;
    QLabel *lblSummary;
    QPushButton *cmdTickAll;
    QPushButton *cmdTickNone;
    QPushButton *cmdApply = nullptr;
    QPushButton *cmdCancel;
};
