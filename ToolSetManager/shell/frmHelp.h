#pragma once

#include <QWidget>

class QTextBrowser;

/// The help window: shows pages of the manual. One window, which changes its page.
class frmHelp : public QWidget
{
    Q_OBJECT
public:
    explicit frmHelp(QWidget *parent);

    /// Shows the page of the manual that stands for that help file; the names are Frame's.
    void showHelp(const QString &helpFile);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QTextBrowser *m_browser;
};
