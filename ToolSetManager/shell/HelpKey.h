#pragma once

#include <QObject>

class Frame;

/// The key F1 in dialogs: opens the manual at the topic (HelpTopic) of what has the focus. The
/// frame itself has the key in its menu.
class HelpKey : public QObject
{
    Q_OBJECT
public:
    /// Sees the keys of the whole program; the frame is borrowed.
    explicit HelpKey(Frame &frame, QObject *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Frame &m_frame;
};
