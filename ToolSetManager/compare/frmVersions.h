#pragma once

#include "compare/EarlierVersions.h"
#include "model/ToolSetDiff.h"

#include <QDialog>

#include <functional>
#include <optional>

class QLabel;
class QPushButton;
class QTimer;
class QTreeWidget;
class QTreeWidgetItem;

/// The earlier versions of one tool set, or of all: when, how many tools, how large, and what is
/// different from now; and what the user wants to do with one of them. Versions are read one by one
/// while the dialog is open already.
class frmVersions : public QDialog
{
    Q_OBJECT
public:
    enum Wish { Nothing, Compare, OpenCopy, Restore };
    /// The set at that path as it is now; null when there is none any more.
    using Now = std::function<std::optional<ToolSetState>(const QString &path)>;

    /// The versions of the file, or of all files where \a path is empty. The storage is borrowed.
    frmVersions(ToolSetStorage &storage, const QString &path, Now now, QWidget *parent);

    Wish wish() const { return m_wish; }
    /// What the wish is about.
    const EarlierVersion &version() const { return m_versions[m_chosen]; }

protected:
    void paintEvent(QPaintEvent *event) override;

private Q_SLOTS:
    void tvVersions_Change();
    void cmdFolder_Click();
    void tmrPieces_Timer(); ///< Reads the next version.

private:
    QPushButton *addButton(const QString &name, const QString &caption, const QString &toolTip);
    void layOut(bool all);
    void fill();
    void close(Wish wish);
    int selected() const; ///< -1 for none.
    QString summarise(const EarlierVersion &version, int &tools, bool &readable);

    ToolSetStorage &m_storage;
    Now m_now;
    QList<EarlierVersion> m_versions;
    QList<bool> m_readable; ///< By version; as far as it is known.

    // --- Controls ---
    QLabel *lblVersions;
    QTreeWidget *tvVersions;
    QLabel *lblDetails;
    QPushButton *cmdCompare;
    QPushButton *cmdOpenCopy;
    QPushButton *cmdRestore;
    QPushButton *cmdFolder;
    QPushButton *cmdClose;
    QTimer *tmrPieces;

    // --- State ---
    QList<int> m_unread; ///< Indexes of versions, those of one file one after the other.
    QString m_nowPath; ///< Of the set in m_nowState.
    std::optional<ToolSetState> m_nowState;
    bool m_started = false;
    Wish m_wish = Nothing;
    int m_chosen = -1;
};
