#include "shell/BusyProgress.h"

#include "shell/Frame.h"

namespace {

constexpr int refresh = 50; ///< Milliseconds between two paintings of the bar.

} // namespace

BusyProgress::BusyProgress(Frame &frame, const QString &what, int patienceMs)
    : m_frame(frame)
    , m_what(what)
    , m_next(patienceMs)
{
    m_timer.start();
}

BusyProgress::~BusyProgress()
{
    if (m_shown)
        m_frame.endProgress();
}

void BusyProgress::show(qint64 done, qint64 total)
{
    if (m_timer.elapsed() < m_next || total <= 0)
        return;
    m_shown = true;
    m_frame.showProgress(m_what, static_cast<int>(100 * done / total));
    m_next = m_timer.elapsed() + refresh;
}
