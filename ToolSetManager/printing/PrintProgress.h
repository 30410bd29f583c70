#pragma once

#include <QElapsedTimer>
#include <QString>

#include <memory>

class QProgressDialog;
class QWidget;

/// Shows how far a long print is, and lets the user cancel it: after a second's work a dialog with
/// a bar, before that nothing.
class PrintProgress
{
public:
    /// \a text has "%1" for the step and "%2" for their number. The parent is borrowed.
    PrintProgress(QWidget *parent, const QString &text, int steps);
    ~PrintProgress();

    /// To be called after each step, counted from 1. False when the user has cancelled.
    bool step(int done);

private:
    QString m_text;
    int m_steps;
    QElapsedTimer m_sinceShown;
    std::unique_ptr<QProgressDialog> m_dialog;
};
