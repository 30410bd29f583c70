#pragma once

#include <QWidget>

class CFileList;
class QPushButton;
class QVBoxLayout;

/// What the frame shows while no document is open: buttons for what one would do first.
class StartPage : public QWidget
{
    Q_OBJECT
public:
    explicit StartPage(QWidget *parent);

    /// Offers these files, most recent first.
    void setRecentFiles(const CFileList &files);

    /// The words of the page for screen readers.
    static QString spoken();

Q_SIGNALS:
    void commandChosen(const QString &commandWord);
    void fileChosen(const QString &path);
    void manualChosen();

private:
    /// Appends a button that looks like a link to \a column.
    QPushButton *addLink(QVBoxLayout &column, const QString &text, const QString &icon);

    QVBoxLayout *m_recent;
};
