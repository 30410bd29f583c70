#include "platform/desktop/ProgramEnd.h"

#include <QSocketNotifier>

#include <cstdlib>
#include <utility>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

// Signal handlers and exit handlers reach nothing else.
std::function<void()> *atExit = nullptr;

void actAtExit()
{
    if (auto *act = std::exchange(atExit, nullptr))
        (*act)();
}

} // namespace

ProgramEnd::ProgramEnd(std::function<void()> act)
    : m_act(std::move(act))
{
    atExit = &m_act;
    renew();
    watchSignals();
}

void ProgramEnd::renew()
{
    // Registered more than once, the first call does it.
    if (atExit)
        std::atexit(actAtExit);
}

ProgramEnd::~ProgramEnd()
{
    atExit = nullptr; // left in order
}

#ifdef Q_OS_UNIX

namespace {

int signalPipe[2] = {-1, -1};

void noteSignal(int number)
{
    const int error = errno;
    const char byte = static_cast<char>(number);
    // A full pipe already holds a signal.
    [[maybe_unused]] const auto written = ::write(signalPipe[1], &byte, 1);
    errno = error;
}

} // namespace

void ProgramEnd::watchSignals()
{
    if (::pipe(signalPipe) != 0)
        return;
    for (const int end : signalPipe) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    auto *arrived = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
    connect(arrived, &QSocketNotifier::activated, this, &ProgramEnd::endBySignal);
    for (const int number : {SIGTERM, SIGHUP, SIGINT}) {
        struct sigaction former
        {
        };
        ::sigaction(number, nullptr, &former);
        if (former.sa_handler == SIG_IGN) // as nohup does
            continue;
        struct sigaction action
        {
        };
        action.sa_handler = noteSignal;
        action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
        ::sigaction(number, &action, nullptr);
    }
}

void ProgramEnd::endBySignal()
{
    char number = 0;
    if (::read(signalPipe[0], &number, 1) != 1)
        return;
    m_act();
    // What started the program learns the reason of its end.
    std::signal(number, SIG_DFL);
    std::raise(number);
}

#else

void ProgramEnd::watchSignals()
{
}
void ProgramEnd::endBySignal()
{
}

#endif
