#pragma once

#include <QStatusBar>

class QLabel;
class QProgressBar;
class QToolButton;

/// A status bar of panels, counted from 1. Texts are shown as they stand, cut with an ellipsis
/// where the panel is too narrow. In front of the panels there is room for a progress bar, behind
/// them for facts, each as wide as its text.
class StatusBar : public QStatusBar
{
    Q_OBJECT
public:
    /// One panel for each width; the widths are shares of the bar.
    StatusBar(const QList<int> &shares, QWidget *parent = nullptr);

    QString panelText(int panel) const;
    void setPanelText(int panel, const QString &text);
    /// Says in that panel what was produced. A \a file can be opened with the desktop's program, by
    /// a button at the end of the bar, which goes with the panel's next text.
    void showResult(int panel, const QString &text, const QString &file = {});

    /// Shows these texts at the right end; empty ones take no room.
    void setFacts(const QStringList &facts);

    /// Shows the progress bar, which tells \a what is under way.
    void showProgress(const QString &what, int percent);
    void endProgress(); ///< Hides it.

private:
    void makeOpenButton();

    QList<QLabel *> m_panels;
    QList<QLabel *> m_facts;
    QToolButton *cmdOpen = nullptr; ///< Made when it is first needed.
    QString m_result; ///< The file that it opens.
    int m_resultPanel = 0;
    QProgressBar *m_progress = nullptr; ///< Made when it is first needed.
};
