// Linked into a program with an MDI area: as soon as that area has been painted, prints when that
// was and the processor time used until then, both in milliseconds, and ends the program.

#include <QCoreApplication>
#include <QEvent>
#include <QMdiArea>

#include <cstdio>
#include <ctime>

namespace {

double milliseconds(clockid_t clock)
{
    timespec now {};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

class FirstPaint : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // The area covers its frame, which gets no paint event of its own.
        if (event->type() == QEvent::Paint && qobject_cast<QMdiArea *>(watched->parent())) {
            qApp->removeEventFilter(this);
            // Queued: by then the window has been painted whole and handed to the display.
            QMetaObject::invokeMethod(this, &FirstPaint::report, Qt::QueuedConnection);
        }
        return false;
    }

private:
    void report()
    {
        std::printf(
            "%.3f %.3f\n", milliseconds(CLOCK_MONOTONIC), milliseconds(CLOCK_PROCESS_CPUTIME_ID));
        std::fflush(stdout);
        QCoreApplication::exit(0); // not quit(), which would ask the windows to close
    }
};

void watch()
{
    qApp->installEventFilter(new FirstPaint(qApp));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)
