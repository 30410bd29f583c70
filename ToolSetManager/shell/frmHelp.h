#pragma once

#include <QWidget>

class QTextBrowser;

/// The help window: shows pages of the manual. One window, which changes its page.
class frmHelp : public QWidget
{
    Q_OBJECT
public:
    explicit frmHelp(QWidget *parent);

    /// \a page is the name of a Markdown page of the manual, such as "manual.md".
    void showPage(const QString &page);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QTextBrowser *m_browser;
};
