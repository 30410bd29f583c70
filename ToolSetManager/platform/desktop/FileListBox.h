#pragma once

#include <QListView>

class QStringListModel;

/// The list of the files of a folder that match a pattern.
class FileListBox : public QListView
{
    Q_OBJECT
public:
    explicit FileListBox(QWidget *parent = nullptr);

    QString Path() const { return m_path; }
    void setPath(const QString &path);
    /// One or more patterns, separated by ";". As on Windows letter case and blanks around them do
    /// not matter, and "*.*" means every file.
    void setPattern(const QString &pattern);
    void Refresh(); ///< Reads the folder anew; nothing is selected then.

    /// The selected file's name; empty for none.
    QString FileName() const;
    /// Selects that file; false when it is not listed, and nothing is selected then.
    bool setFileName(const QString &name);

Q_SIGNALS:
    void KeyUp(int key); ///< Only for a key that was pressed in the list, too.
    void MouseUp();
    void DblClick();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QStringListModel *m_model;
    QString m_path;
    QString m_pattern = QStringLiteral("*.*");
    int m_pressedKey = 0;
};
