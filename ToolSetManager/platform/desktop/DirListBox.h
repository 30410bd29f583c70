#pragma once

#include <QListWidget>

/// The list of folders: the way down to the open folder, and the folders in it. A double click or
/// Return opens the highlighted one.
class DirListBox : public QListWidget
{
    Q_OBJECT
public:
    explicit DirListBox(QWidget *parent = nullptr);

    /// The open folder, with native separators.
    QString Path() const { return m_path; }
    /// Opens a folder. One that does not exist or may not be read is ignored.
    void setPath(const QString &path);

    /// The highlighted folder.
    QString highlighted() const;
    bool isOpenFolderHighlighted() const;
    /// Takes the highlight back to the open folder.
    void highlightOpenFolder();

Q_SIGNALS:
    void Change(); ///< Another folder is open.

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void openItem(const QListWidgetItem *item);

    QString m_path;
    int m_openRow = -1;
};
