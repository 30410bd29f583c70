// A large set and many windows through the program's own windows, once each: large_set [TOOLS].
// Prints how long each step took until it was painted, and how long the windows did not react
// meanwhile without showing the hourglass. To be run on a display: xvfb-run bench/.../large_set

#include "support/Program.h"
#include "support/SampleSet.h"
#include "toolset/FindBar.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTreeView>

#include <algorithm>
#include <csignal>
#include <cstdio>

#include <sys/time.h>

namespace {

volatile std::sig_atomic_t depth = 0; ///< Of events that are being handled.
volatile std::sig_atomic_t stretch = 0; ///< Ticks of the outermost one without the hourglass.
volatile std::sig_atomic_t longest = 0;
constexpr int tickMs = 2;

/// Looks at the pointer in the midst of whatever runs: a command shows and hides the hourglass
/// within one event.
void tick(int)
{
    const bool waiting = depth == 0 || QGuiApplication::overrideCursor();
    stretch = waiting ? 0 : stretch + 1;
    longest = std::max(longest, stretch);
}

void startTicking()
{
    struct sigaction action = {};
    action.sa_handler = tick;
    action.sa_flags = SA_RESTART;
    sigaction(SIGALRM, &action, nullptr);
    const itimerval every {{0, tickMs * 1000}, {0, tickMs * 1000}};
    setitimer(ITIMER_REAL, &every, nullptr);
}

class Application : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (depth == 0)
            stretch = 0;
        depth = depth + 1;
        const bool handled = QApplication::notify(receiver, event);
        depth = depth - 1;
        return handled;
    }
};

/// What a step is: one action of the user, or many, or none.
enum class Step { OneEvent, Many };

/// Runs a step and what follows from it, until everything is painted.
template <class Act>
void measure(const char *what, Program &program, Act act, Step step = Step::OneEvent)
{
    longest = 0;
    QElapsedTimer timer;
    timer.start();
    if (step == Step::OneEvent)
        QTimer::singleShot(0, &program.frame, act); // so that its time counts
    else
        act();
    QTimer *queue = program.frame.findChild<QTimer *>(u"tmrAction"_qs);
    do {
        QCoreApplication::processEvents();
    } while (queue->isActive());
    QCoreApplication::processEvents();
    std::printf("| %s | %lld | %lld |\n", what, static_cast<long long>(timer.elapsed()),
        static_cast<long long>(longest) * tickMs);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    Application app(argc, argv);
    const int count = argc > 1 ? std::atoi(argv[1]) : 100000;
    SampleSet samples;
    const QString path = samples.file(count);
    Program program(samples.path(u"home"_qs));
    program.storage.snapshotDelay = std::chrono::seconds(2);
    program.frame.activateWindow();
    if (!QTest::qWaitForWindowActive(&program.frame))
        std::puts("without the focus: keys do nothing");
    startTicking();
    std::printf("| step | ms | longest without hourglass, ms |\n|---|---:|---:|\n");

    measure("open", program, [&] { program.frame.openFile(path); });
    frmToolSet *window = program.window();
    ListView *list = Program::listOf(window);
    ToolListModel *model = Program::modelOf(window);
    auto *view = list->reportView();
    const char *columns[] = {"sort by name", "sort by position", "sort by location"};
    for (int column : {0, 1, 2}) {
        measure(columns[column], program, [=] {
            QTest::mouseClick(view->header()->viewport(), Qt::LeftButton, {},
                QPoint(view->header()->sectionViewportPosition(column) + 9, 5));
        });
    }
    const auto scroll = [=] {
        QScrollBar *bar = view->verticalScrollBar();
        for (int i = 0; i <= 1000; ++i) {
            bar->setValue(static_cast<int>(qint64(bar->maximum()) * i / 1000));
            view->viewport()->repaint();
        }
    };
    measure("scroll through, 1,000 steps", program, scroll, Step::Many);
    auto *field = window->findChild<QLineEdit *>(u"txtFind"_qs);
    window->findChild<FindBar *>()->open();
    const std::pair<const char *, QString> words[] = {
        {"find: first letter of a name", u"name:7"_qs}, {"find: second letter", u"name:77"_qs},
        {"find: word of a help text, read first", u"refresh"_qs},
        {"find: another one", u"settings"_qs}, {"find: none", u"settinx"_qs},
        {"find: no word", QString()}};
    for (const int shown : {ListView::lvwReport, ListView::lvwList}) {
        window->setView(shown);
        for (const auto &[what, typed] : words) {
            measure(what, program, [=] { field->setText(typed); });
            measure(
                " ... until all help texts were searched", program,
                [=] {
                    while (!model->finder().isComplete())
                        QCoreApplication::processEvents();
                },
                Step::Many);
        }
    }
    window->setView(ListView::lvwReport);
    window->findChild<FindBar *>()->close();
    measure("rename in place", program, [=] {
        list->setSelectedItem(count / 2);
        list->StartLabelEdit();
        auto *line = view->findChild<QLineEdit *>();
        line->setText(u"Renamed"_qs);
        QTest::keyClick(line, Qt::Key_Return);
    });
    measure("select a tenth", program, [=] {
        QList<int> rows;
        for (int row = 0; row < count; row += 10)
            rows.append(row);
        list->selectRows(rows);
    });
    measure("move it to the end", program,
        [=] { QTest::keyClick(view, Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier); });
    if (list->selectedRows().value(0) != count - count / 10)
        std::puts("not moved");
    const auto wait = [] { QTest::qWait(6000); };
    measure("snapshot written meanwhile", program, wait, Step::Many);
    measure("delete it", program, [&] { program.frame.setAction(u"silentdelete"_qs); });
    measure("show as a list", program, [&] { program.frame.setAction(u"list"_qs); });
    measure("save", program, [&] { program.frame.setAction(u"save"_qs); });
    std::printf("%d tools left\n", model->rowCount());
    measure("copy all", program, [&] {
        list->currentView()->selectAll();
        program.frame.setAction(u"copy"_qs);
    });
    measure("paste them into a new set", program, [&] {
        program.frame.setAction(u"newtoolset"_qs);
        program.frame.setAction(u"paste"_qs);
    });
    std::printf("%d tools pasted\n", Program::modelOf(program.window())->rowCount());
    QTimer no;
    QObject::connect(&no, &QTimer::timeout, [] {
        if (auto *question = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            question->button(QMessageBox::No)->click();
    });
    no.start(10);
    measure("close that", program, [&] { program.window()->parentWidget()->close(); });
    no.stop();
    measure("close", program, [=] { window->parentWidget()->close(); });

    const QString small = samples.file(100);
    for (int i = 0; i < 100; ++i)
        QFile::copy(small, samples.path(u"w%1.bmt"_qs.arg(i)));
    measure("open 100 windows of 100 tools", program, [&] {
        for (int i = 0; i < 100; ++i)
            program.frame.openFile(samples.path(u"w%1.bmt"_qs.arg(i)));
    });
    std::printf("%d windows\n", static_cast<int>(program.frame.openDocuments().size()));
    auto *area = program.frame.findChild<QMdiArea *>();
    measure(
        "tile", program, [&] { program.frame.arrangeWindows(Frame::Arrangement::TileVertically); });
    const auto next = [=] {
        for (int i = 0; i < 100; ++i)
            area->activateNextSubWindow();
    };
    measure("through all windows", program, next, Step::Many);
    measure("a new tool set", program, [&] { program.frame.setAction(u"newtoolset"_qs); });
    measure("close all", program, [&] { program.frame.close(); });
}
