#pragma once

#include <QWidget>

class HelpBrowser;
class QLabel;
class QLineEdit;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

/// The help window: the pages of the manual with their table of contents and a line to find text
/// in them. One window, which changes its page.
class frmHelp : public QWidget
{
    Q_OBJECT
public:
    explicit frmHelp(QWidget *parent);

    /// The help window of a modal dialog, which keeps the input from all windows but its own.
    static frmHelp *of(QWidget *dialog);

    /// Shows the page of the manual that stands for that help file; the names are Frame's. With a
    /// \a topic, the name of a heading in links, it shows that place.
    void showHelp(const QString &helpFile, const QString &topic = {});

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private Q_SLOTS:
    void txtFind_Change(const QString &text);
    void tvContents_NodeClick(QTreeWidgetItem *node);

private:
    QWidget *findLine();
    void addKeys();
    void fillContents();
    void markCurrentHeading();
    void find(bool backward);
    void tellMatches();
    void refreshIcons();

    QLineEdit *txtFind = nullptr;
    QToolButton *cmdFindPrior = nullptr;
    QToolButton *cmdFindNext = nullptr;
    QLabel *lblFound = nullptr;
    QTreeWidget *tvContents;
    HelpBrowser *m_browser;
};
