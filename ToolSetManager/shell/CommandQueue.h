#pragma once

#include <QObject>
#include <QQueue>

#include <functional>

class QTimer;

/// The commands that wait for their turn: words, first in, first out, of which `tmrAction` hands
/// one to the dispatcher at each tick. So no command runs inside the handler that asked for it, and
/// none while another one is running or a modal dialog is open.
class CommandQueue : public QObject
{
    Q_OBJECT
public:
    using Dispatcher = std::function<void(const QString &word)>;

    CommandQueue(Dispatcher dispatcher, QObject *parent);

    void append(const QString &word); ///< Starts the timer.
    QString takeFirst(); ///< Empty when there is none.

    /// While it exists no command runs: long work lets the window paint meanwhile.
    class Hold
    {
    public:
        explicit Hold(CommandQueue &queue)
            : m_queue(queue)
        {
            ++m_queue.m_busy;
        }
        ~Hold() { --m_queue.m_busy; }
        Hold(const Hold &) = delete;
        Hold &operator=(const Hold &) = delete;

    private:
        CommandQueue &m_queue;
    };

private Q_SLOTS:
    void tmrAction_Timer();

private:
    Dispatcher m_dispatcher;
    QTimer *tmrAction; ///< 10 ms; stops when a tick finds the queue empty.
    QQueue<QString> m_words;
    int m_busy = 0;
};
