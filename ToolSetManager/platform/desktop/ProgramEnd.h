#pragma once

#include <QObject>

#include <functional>

/// Does something last when the program is ended from outside: by a signal that asks it to end
/// (SIGTERM, SIGHUP, SIGINT), which then ends it, or because its display has gone, upon which the
/// toolkit leaves the program. A second signal ends the program at once. There is one such object.
class ProgramEnd : public QObject
{
public:
    /// \a act runs on the main thread, from its event loop, or without one when the display has
    /// gone. It must not wait for anything but the disk.
    explicit ProgramEnd(std::function<void()> act);
    ~ProgramEnd() override;

    /// When the program is left, what was made last goes first, function-local statics included.
    /// To be called when there is something new to do at the end, so that all that it needs stands.
    static void renew();

private:
    void watchSignals();
    void endBySignal();

    std::function<void()> m_act;
};
