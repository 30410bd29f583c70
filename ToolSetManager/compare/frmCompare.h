#pragma once

#include "compare/Comparison.h"
#include "model/ToolSetDocument.h"
#include "shell/DocumentWindow.h"

#include <QPointer>
#include <QWidget>

#include <functional>

class CompareMenus;
class ComparisonModel;
class Frame;
class QItemSelectionModel;
class QLabel;
class QListWidget;
class QTreeView;
class RowDetails;
class Toolbar;

/// The window of a comparison: two sets side by side, the fields and help texts of the selected
/// tool below, and the commands that copy and merge. It has nothing to save: what it copies goes
/// into the windows of the sets.
class frmCompare : public QWidget, public DocumentWindow
{
    Q_OBJECT
public:
    /// Has the user choose a set; null when that was given up.
    using Choose =
        std::function<std::unique_ptr<ComparedSet>(QWidget *parent, const QString &title)>;

    /// The frame is borrowed; the code page is that of rich texts that do not tell theirs. The
    /// window deletes itself when it is closed.
    frmCompare(Frame &frame, std::unique_ptr<Comparison> comparison, int codePage, Choose choose);
    ~frmCompare() override;

    Comparison &comparison() { return *m_comparison; }

    // --- DocumentWindow ---
    QWidget *widget() override { return this; }
    QString Name() const override { return QStringLiteral("frmCompare"); }
    QString Caption() const override;
    void setCaption(const QString &) override { } // it follows from the sets
    QString FileName() const override { return {}; }
    void setFileName(const QString &) override { }
    QString notice() const override { return m_notice; }
    DocumentStatus status() const override;
    int View() const override;
    void setView(int) override { }
    void setAction(const QString &word) override;
    CommandState commandState() const override;
    bool CleanIfDirty() override { return false; }
    bool Recover(const QString &) override { return false; }
    void Unload() override;
    void Form_Activate() override;
    QList<QMenu *> menus() const override;
    RecentFileMenu &mnuFileList() override;

    QSize sizeHint() const override { return {860, 560}; }

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private Q_SLOTS:
    void tvRows_Change(); ///< Another row is the current one.
    void lstConflicts_Activate(int row);

private:
    using Side = Comparison::Side;

    void makeToolbar();
    void makeViews();
    void layOut();
    void connectMenus();
    void refreshTitles();
    void showDifferences();
    void refreshCommands();
    void refreshIcons();
    void goTo(int shownRow);
    void goToChange(int step);
    void setChangesOnly(bool on);
    void copy(Side to);
    void copyAll(Side to);
    void mergeInto(Side to);
    void chooseBase();
    /// Opens the side's file where that is needed to change it. False, after a message, when it
    /// cannot be changed.
    bool makeChangeable(Side side);
    std::vector<size_t> selectedRows() const; ///< Of those that differ.
    void undo(bool again);
    void setNotice(const QString &text);

    Frame &m_frame;
    std::unique_ptr<Comparison> m_comparison;
    Choose m_choose;
    ComparisonModel *m_rows;

    // --- Controls ---
    CompareMenus *m_menus;
    Toolbar *tbCompare = nullptr;
    QLabel *lblSets;
    QTreeView *tvRows;
    RowDetails *m_details;
    QListWidget *lstConflicts;
    QLabel *lblSummary;

    // --- State ---
    int m_current = 0; ///< The row that is current, by its index in Comparison::rows().
    QPointer<ToolSetDocument> m_changed; ///< The set that was changed from here last.
    QString m_notice; ///< Of the last command.
    bool m_unloading = false;
};
