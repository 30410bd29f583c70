#pragma once

#include <QStatusBar>

class QLabel;

/// A status bar of panels, counted from 1. Texts are shown as they stand, cut with an ellipsis
/// where the panel is too narrow.
class StatusBar : public QStatusBar
{
    Q_OBJECT
public:
    /// One panel for each width; the widths are shares of the bar.
    StatusBar(const QList<int> &shares, QWidget *parent = nullptr);

    QString panelText(int panel) const;
    void setPanelText(int panel, const QString &text);

private:
    QList<QLabel *> m_panels;
};
