#include "shell/CommandQueue.h"

#include <QApplication>
#include <QTimer>

CommandQueue::CommandQueue(Dispatcher dispatcher, QObject *parent)
    : QObject(parent)
    , m_dispatcher(std::move(dispatcher))
    , tmrAction(new QTimer(this))
{
    tmrAction->setObjectName(QStringLiteral("tmrAction"));
    tmrAction->setInterval(10);
    connect(tmrAction, &QTimer::timeout, this, &CommandQueue::tmrAction_Timer);
}

void CommandQueue::append(const QString &word)
{
    m_words.enqueue(word);
    if (!tmrAction->isActive())
        tmrAction->start();
}

QString CommandQueue::takeFirst()
{
    return m_words.isEmpty() ? QString() : m_words.dequeue();
}

void CommandQueue::tmrAction_Timer()
{
    // The dialog may belong to the running command or to something else: what the desktop asks for
    // must not change the windows under a question about them.
    if (m_busy > 0 || QApplication::activeModalWidget())
        return;
    const Hold hold(*this);
    const QString word = takeFirst();
    if (word.isEmpty())
        tmrAction->stop();
    else
        m_dispatcher(word);
}
