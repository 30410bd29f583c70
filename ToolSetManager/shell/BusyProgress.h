#pragma once

#include "platform/desktop/Hourglass.h"

#include <QElapsedTimer>
#include <QString>

class Frame;

/// Work that keeps the window busy: the hourglass while it lives, and a bar in the frame's status
/// bar when it lasts longer than a second. Only painting goes on meanwhile; what the user does
/// waits until the work is done.
class BusyProgress
{
public:
    static constexpr int patience = 1000; ///< Milliseconds before the bar comes up.

    /// \a what names the work to the user. The frame is borrowed.
    BusyProgress(Frame &frame, const QString &what, int patienceMs = patience);
    ~BusyProgress();
    BusyProgress(const BusyProgress &) = delete;
    BusyProgress &operator=(const BusyProgress &) = delete;

    /// How far the work is; cheap enough for each small step of it.
    void show(qint64 done, qint64 total);

private:
    Hourglass m_hourglass;
    Frame &m_frame;
    QString m_what;
    QElapsedTimer m_timer;
    qint64 m_next; ///< When the bar is to be painted again; milliseconds.
    bool m_shown = false;
};
