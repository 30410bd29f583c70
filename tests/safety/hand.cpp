// Linked into the program: a hand that uses its windows without a pause, with keys, buttons and
// dialogs, until somebody ends the process. It tells on the standard output what stands on the
// screen, one line each:
//
//   doc CAPTION|DIGEST   a window, once everything that was offered has been recovered
//   ready                the edits begin
//   state DOC N DIGEST   document DOC ("file" or "untitledN") shows its Nth state
//   aged DOC N           that state has been on the screen for some time
//   saving DIGEST        the command to save it is given
//   saved DIGEST         it has been carried out
//   notsaved             it has come to nothing
//   closing DOC          its window is closed, and the changes are let go
//
// The environment has HAND_SEED, HAND_DELAY (milliseconds from a change to its snapshot; the
// program's own when empty) and HAND_EDITS (0: closes all windows and the program at once).

#include "platform/desktop/Toolbar.h"
#include "safety/SetDigest.h"
#include "shell/RecoveryBar.h"
#include "support/Answers.h"
#include "support/Program.h"
#include "toolset/ToolPropertiesLink.h"
#include "toolset/ToolSetMenus.h"

#include <QTest>
#include <QtWidgets>

#include <csignal>
#include <cstdio>

namespace {

void tell(const QByteArray &line)
{
    std::fputs(line.constData(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

volatile std::sig_atomic_t displayGone = 0; // set by SIGUSR1

class Hand : public QObject
{
public:
    explicit Hand(QObject *parent)
        : QObject(parent)
        , m_random(qEnvironmentVariableIntValue("HAND_SEED"))
        , m_tick(new QTimer(this))
    {
        connect(m_tick, &QTimer::timeout, this, &Hand::tick);
        // At any time: behind a dialog, too, a snapshot that waits for the former one is due soon.
        auto *hurry = new QTimer(this);
        connect(hurry, &QTimer::timeout, this, &Hand::hurrySnapshots);
        hurry->start(10);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Show)
            return false;
        if (auto *frame = qobject_cast<MDI *>(watched); frame && !m_frame) {
            m_frame = frame;
            connect(frame, &MDI::firstPainted, m_tick, [this] { m_tick->start(3); });
            // In the same turn as the change: the next one may be the program's last.
            connect(frame->findChild<QTimer *>(u"tmrAction"_qs), &QTimer::timeout, this,
                &Hand::tellStates);
        }
        if (auto *dialog = qobject_cast<QDialog *>(watched); dialog && dialog->isModal())
            QTimer::singleShot(0, dialog, [this, dialog] { answer(dialog); });
        return false;
    }

private:
    struct Document
    {
        QByteArray name;
        QPointer<frmToolSet> window;
        QByteArray digest {};
        int states = 0;
    };
    enum Phase { Opening, Recovering, Editing };

    int random(int below) { return m_random.bounded(below); }
    /// Of what the window shows, with what is typed into its properties dialog.
    static QByteArray digest(frmToolSet *window)
    {
        const auto &order = window->Document().toolsInOrder();
        QList<ToolPtr> tools(order.begin(), order.end());
        const auto *properties = window->findChild<ToolPropertiesLink *>();
        for (ToolPtr &tool : tools) {
            if (tool.get() == properties->editedTool())
                tool = std::make_shared<CVBATool>(properties->draft());
        }
        return digestOf(window->Tools(), tools);
    }
    void press(const char *button)
    {
        m_frame->findChild<Toolbar *>(u"tbTools"_qs)->button(QLatin1String(button))->trigger();
    }

    /// Everything goes on only when the program has nothing more to do.
    bool idle() const
    {
        const auto lines = m_frame->findChildren<QLineEdit *>(); // a name that is being edited
        return !QApplication::activeModalWidget()
            && std::none_of(
                lines.begin(), lines.end(), [](auto *line) { return line->isVisible(); })
            && !m_frame->findChild<QTimer *>(u"tmrAction"_qs)->isActive();
    }

    void tick()
    {
        if (!m_frame || !idle())
            return;
        if (m_phase == Opening) {
            if (auto *bar = m_frame->findChild<RecoveryBar *>())
                bar->findChild<QPushButton *>(u"cmdRecover"_qs)->click();
            m_phase = Recovering;
        } else if (m_phase == Recovering) {
            begin();
        } else {
            hurrySnapshots();
            observe();
            if (m_edits)
                edit();
            else
                end();
            tellStates();
        }
    }

    void begin()
    {
        frmToolSet *opened = nullptr;
        Document file {"file", nullptr};
        Document untitled {"untitled0", nullptr};
        const auto documents = m_frame->openDocuments();
        for (DocumentWindow *document : documents) {
            auto *window = static_cast<frmToolSet *>(document);
            tell("doc " + window->Caption().toUtf8() + '|' + digest(window));
            if (window->Caption() == u"Recovered - set.bmt"_qs)
                file.window = window;
            else if (window->Caption().startsWith(u"Recovered - Untitled"_qs))
                untitled.window = window;
            else
                opened = window;
        }
        if (!opened)
            std::exit(4);
        m_path = opened->Caption();
        if (file.window && m_edits)
            opened->parentWidget()->close(); // clean
        else
            file.window = opened;
        m_documents = {file, untitled};
        tell("ready");
        m_phase = Editing;
    }

    /// So that a state need not stand for seconds before it must be safe.
    void hurrySnapshots()
    {
        if (displayGone) {
            tellStates();
            std::exit(1); // as the toolkit does from within its event loop
        }
        if (!m_frame)
            return;
        for (QTimer *timer : m_frame->findChildren<QTimer *>(u"tmrSnapshot"_qs)) {
            // What goes into a snapshot is told before it is written, which takes another turn.
            connect(timer, &QTimer::timeout, this, &Hand::tellStates, Qt::UniqueConnection);
            if (m_delay > 0 && timer->isActive() && timer->interval() != m_delay)
                timer->start(m_delay);
        }
    }

    void observe()
    {
        if (!m_saving.isEmpty()) {
            const bool written = QFileInfo(m_path).lastModified() != m_fileTime;
            if (written && !m_saveFailed)
                tell("saved " + m_saving);
            else
                tell("notsaved");
        }
        m_saving.clear();
        adoptUntitled();
        tellStates();
    }

    void tellStates()
    {
        for (Document &document : m_documents) {
            if (!document.window)
                continue;
            connect(Program::listOf(document.window), &ListView::AfterLabelEdit, this,
                &Hand::tellStates, Qt::UniqueConnection);
            const QByteArray now = digest(document.window);
            if (now == document.digest)
                continue;
            document.digest = now;
            const QByteArray state = document.name + ' ' + QByteArray::number(document.states++);
            tell("state " + state + ' ' + now);
            // A snapshot that waits for the former one is a delay late.
            const int time = m_delay == 0 ? 6000 : qMax(3 * m_delay, 500);
            QTimer::singleShot(time, this, [this, state] { age(state, 30); });
        }
    }

    /// On a machine that has no time for this process, timers that are due together fire in one
    /// turn; the snapshot needs some turns more.
    void age(const QByteArray &state, int turns)
    {
        if (turns == 0)
            tell("aged " + state);
        else
            QTimer::singleShot(0, this, [this, state, turns] { age(state, turns - 1); });
    }

    // --- Edits ---

    QString text()
    {
        QString made;
        for (int i = random(12) + 1; i > 0; --i)
            made += QChar(u'a' + random(26));
        // No name that an earlier run has typed: in a draft it would be taken, and another then.
        const int seed = qEnvironmentVariableIntValue("HAND_SEED");
        return made + QString::number(seed, 36) + u'-' + QString::number(m_typed++);
    }

    void edit()
    {
        if (m_pause > 0) {
            --m_pause;
            return;
        }
        m_pause = random(8) == 0 ? random(120) : random(10);
        Document &document = m_documents[m_documents[1].window && random(4) == 0 ? 1 : 0];
        frmToolSet *window = document.window;
        m_frame->activateDocument(window);
        ListView *list = Program::listOf(window);
        list->setFocus();
        const int rows = Program::modelOf(window)->rowCount();
        if (rows == 0)
            return press("newtool");
        list->UnselectAll();
        list->setSelectedItem(random(rows));
        const int what = random(100);
        if (what < 25) {
            rename(list, text());
        } else if (what < 28) {
            rename(list, u"\u0436"_qs + text()); // no file can hold this
        } else if (what < 40) {
            constexpr Qt::Key keys[] = {Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_End};
            QTest::keyClick(
                list->currentView(), keys[random(4)], Qt::ControlModifier | Qt::ShiftModifier);
        } else if (what < 58) {
            press(what < 50 && rows > 150 ? "delete" : "newtool");
        } else if (what < 70) {
            press("toolproperties");
        } else if (what < 78) {
            press("copy");
            press("paste");
        } else if (what < 83) {
            press("properties");
        } else if (what < 86) {
            closeOrMakeUntitled();
        } else {
            save();
        }
    }

    static void rename(ListView *list, const QString &name)
    {
        QTest::keyClick(list->currentView(), Qt::Key_F2);
        const auto lines = list->currentView()->findChildren<QLineEdit *>();
        for (QLineEdit *line : lines) {
            if (!line->isVisible()) // of the rename before, on its way out
                continue;
            line->setText(name); // keyClicks() has ASCII only
            QTest::keyClick(line, Qt::Key_Return);
        }
    }

    void closeOrMakeUntitled()
    {
        Document &untitled = m_documents[1];
        if (untitled.window) {
            tell("closing " + untitled.name);
            untitled.window->parentWidget()->close();
        } else {
            press("newtoolset");
            press("newtool");
        }
    }

    void adoptUntitled()
    {
        const auto documents = m_frame->openDocuments();
        for (DocumentWindow *document : documents) {
            if (document->Caption().startsWith(u"Untitled"_qs) && !m_documents[1].window) {
                // A number of its own, as the next program would give it.
                document->setCaption(u"Untitled 1"_qs);
                // A name of its own: what the one before has shown may still be about to age.
                m_documents[1] = {"untitled" + QByteArray::number(++m_untitled),
                    static_cast<frmToolSet *>(document)};
            }
        }
    }

    void save()
    {
        frmToolSet *window = m_documents[0].window;
        m_frame->activateDocument(window);
        // Names that no file can hold: mostly they are mended first.
        const bool mends = random(8) > 0;
        for (int row = 0; mends && row < Program::modelOf(window)->rowCount(); ++row) {
            if (Program::modelOf(window)->toolAt(row)->Description.contains(u'\u0436')) {
                Program::listOf(window)->UnselectAll();
                Program::listOf(window)->setSelectedItem(row);
                rename(Program::listOf(window), text());
                return;
            }
        }
        m_saveFailed = false;
        m_saving = digest(window);
        m_fileTime = QFileInfo(m_path).lastModified();
        tell("saving " + m_saving);
        if (window->FileName().isEmpty())
            window->findChild<ToolSetMenus *>()->mnuFilex[ToolSetMenus::FileSaveAs]->trigger();
        else
            press("save");
    }

    void end()
    {
        m_tick->stop();
        QTimer::singleShot(0, m_frame, [this] {
            m_frame->close();
            m_frame->close();
        });
    }

    // --- Dialogs ---

    void answer(QDialog *dialog)
    {
        if (auto *box = qobject_cast<QMessageBox *>(dialog)) {
            m_saveFailed = m_saveFailed || box->text().startsWith(u"Error saving"_qs);
            const bool lettingGo = box->text().startsWith(u"Save changes to"_qs);
            QAbstractButton *button = box->button(lettingGo ? QMessageBox::No : QMessageBox::Yes);
            return (button ? button : box->button(QMessageBox::Ok))->click();
        }
        if (auto *files = qobject_cast<QFileDialog *>(dialog))
            return Answers::choose(files, m_path);
        auto *line = dialog->findChild<QLineEdit *>(
            random(2) == 0 ? u"txtDescription"_qs : u"txtLocation"_qs);
        if (!line)
            line = dialog->findChild<QLineEdit *>(u"txtDescription"_qs);
        line->selectAll();
        QTest::keyClicks(line, text());
        auto *ok = dialog->findChild<QPushButton *>(u"cmdOK"_qs);
        if (line->isVisible() && dialog->objectName() == u"frmToolProps"_qs && random(3) == 0) {
            // What is typed and not applied yet is on the screen, too.
            hurrySnapshots();
            observe();
            QTimer::singleShot(random(8 * m_delay + 10), ok, &QPushButton::click);
        } else {
            ok->click();
        }
    }

    QRandomGenerator m_random;
    QTimer *m_tick;
    QPointer<MDI> m_frame;
    Phase m_phase = Opening;
    QList<Document> m_documents; ///< "file" and "untitledN"; the second may have no window.
    int m_untitled = 0;
    QString m_path;
    const int m_delay = qEnvironmentVariableIntValue("HAND_DELAY");
    const bool m_edits = qEnvironmentVariableIntValue("HAND_EDITS") != 0;
    int m_pause = 0; ///< Ticks.
    int m_typed = 0;
    QByteArray m_saving; ///< Digest of what is being saved; empty for nothing.
    QDateTime m_fileTime; ///< Before that.
    bool m_saveFailed = false;
};

void watch()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    qApp->installEventFilter(new Hand(qApp));
    std::signal(SIGUSR1, [](int) { displayGone = 1; });
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)
