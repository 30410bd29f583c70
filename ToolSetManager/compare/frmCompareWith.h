#pragma once

#include <QDialog>
#include <QStringList>

class QPushButton;
class QTreeWidget;

/// Which set to compare with: one that is open, an earlier version, or a file.
class frmCompareWith : public QDialog
{
    Q_OBJECT
public:
    enum Choice { Nothing, OpenSet, Version, File };

    /// The titles of what can be chosen, in groups.
    frmCompareWith(const QString &title, const QStringList &openSets, const QStringList &versions,
        QWidget *parent);

    Choice choice() const { return m_choice; }
    int index() const { return m_index; } ///< In the list of the choice.

private:
    void addGroup(const QString &caption, const QStringList &titles, Choice choice);
    void tvSets_Change();
    void cmdOK_Click();

    QTreeWidget *tvSets;
    QPushButton *cmdFile;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
    Choice m_choice = Nothing;
    int m_index = -1;
};
