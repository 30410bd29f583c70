#include "safety/SetDigest.h"
#include "support/Program.h"
#include "support/TestRunner.h"

#include <QtCore>

#include <csignal>

/// Ends the program (SIGKILL, SIGTERM, exit) at random moments while a hand (hand.cpp) works in it,
/// and looks whether the next start still has what had been on the screen.
///
/// TSM_KILLS is the number of ends (24), TSM_KILL_SEED the seed of all that is random,
/// TSM_KILL_DELAY the time from a change to its snapshot in milliseconds (100; 0: the program's
/// own).
class Killed_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        m_storage = std::make_unique<ToolSetStorage>(1252, m_home->path(), m_home->path());
        m_file = m_home->filePath(u"set.bmt"_qs);
        m_data = m_home->filePath(u"VB Quillon Tool Set Manager"_qs);
        CVBATools set(*m_storage);
        QStringList names;
        for (int i = 0; i < 200; ++i) {
            const auto tool = std::make_shared<CVBATool>();
            tool->Description = u"tool "_qs + QString::number(i);
            tool->HelpString = QString(3000 * (i % 5), u'h');
            tool->Picture = QImage(18, 18, QImage::Format_RGB32);
            tool->Picture.fill(Qt::red);
            set.Add(tool);
            names.append(tool->Description);
        }
        PictureBox box(Twips {275}, Twips {275});
        QVERIFY(set.Save(m_file, names, box));
    }

    void nothingIsLost()
    {
        const auto number = [](const char *name, int fallback) {
            return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : fallback;
        };
        const int kills = number("TSM_KILLS", 24);
        const int delay = number("TSM_KILL_DELAY", 100);
        const int seed = number("TSM_KILL_SEED", 1);
        m_random.seed(static_cast<quint32>(seed));
        qInfo("TSM_KILL_SEED=%d", seed);

        QByteArray inFile = digestOfFile(m_file);
        QByteArray whole = inFile; // what was in the file before a save that was cut off
        Run former;
        int states = 0;
        int recovered = 0;
        int cutSaves = 0;
        for (int round = 0; round <= kills; ++round) {
            const bool last = round == kills;
            QProcess program;
            start(program, delay, !last);
            Run run;
            while (!run.ready) {
                QVERIFY2(program.waitForReadyRead(30000), "the program does not start");
                hearAll(program, run);
            }
            const QByteArray lost = missing(former, run);
            if (!lost.isEmpty())
                qInfo("the former run told\n%s\nand this one\n%s",
                    former.told.join('\n').constData(), run.told.join('\n').constData());
            QVERIFY2(lost.isEmpty(), lost.constData());
            recovered += static_cast<int>(run.found.size()) - 1;
            if (last) {
                QVERIFY(program.waitForFinished(30000));
                QCOMPARE(program.exitCode(), 0);
                break;
            }

            constexpr int ends[] = {SIGKILL, SIGTERM, SIGUSR1};
            end(program, run, delay, ends[round % 3]);
            QVERIFY(program.waitForFinished(30000));
            hearAll(program, run);
            // Asked to end, or left by its display, the program writes what stands on the screen.
            const bool asked = round % 3 != 0;
            QCOMPARE(
                program.exitStatus(), round % 3 == 2 ? QProcess::NormalExit : QProcess::CrashExit);
            for (Shown &shown : run.shown)
                shown.needed = asked ? static_cast<int>(shown.states.size()) - 1 : shown.needed;

            // The file as it last was when whole, or its copy, is there.
            if (!run.saved.isEmpty())
                inFile = whole = run.saved;
            const QByteArray now = digestOfFile(m_file);
            if (now != inFile) {
                QVERIFY2(!run.saving.isEmpty(), "the file changed without a save");
                inFile = now;
                if (now == run.saving) {
                    whole = now;
                } else {
                    ++cutSaves;
                    QVERIFY(digestsOfBackups().contains(whole));
                }
            }
            for (const Shown &shown : std::as_const(run.shown))
                states += static_cast<int>(shown.states.size());
            former = run;
        }
        // Closed in order, nothing is left to offer.
        QCOMPARE(Sets::files(m_data + u"/snapshots"_qs), QStringList());
        qInfo("%d ends, %d states shown, %d sets recovered, %d ends within the writing of a file",
            kills, states, recovered, cutSaves);
        QVERIFY(kills < 10 || (states > kills && recovered > 0));
    }

private:
    /// What one document has shown in one run.
    struct Shown
    {
        QByteArrayList states;
        int needed = -1; ///< This state or a later one must come back; -1: none need.
    };
    struct Run
    {
        QMap<QByteArray, QByteArray> found; ///< Digests after the recovery, by caption.
        QMap<QByteArray, Shown> shown;
        QByteArray saving; ///< Digest of what was being saved at the end; empty for nothing.
        QByteArray saved; ///< Digest of the last complete save of this run.
        bool ready = false;
        QByteArrayList told; ///< All that the hand has told.
    };

    void start(QProcess &program, int delay, bool edits)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const auto &name : {u"XDG_CONFIG_HOME"_qs, u"XDG_DATA_HOME"_qs, u"XDG_CACHE_HOME"_qs,
                 u"XDG_RUNTIME_DIR"_qs})
            environment.insert(name, m_home->path());
        environment.insert(u"HAND_SEED"_qs, QString::number(m_random.bounded(1, 1000000000)));
        environment.insert(u"HAND_DELAY"_qs, QString::number(delay));
        environment.insert(u"HAND_EDITS"_qs, edits ? u"1"_qs : u"0"_qs);
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program.start(QCoreApplication::applicationDirPath() + u"/program_with_hand"_qs, {m_file});
    }

    /// Ends the program at some moment, in that way.
    void end(QProcess &program, Run &run, int delay, int signal)
    {
        // A third of the ends comes whenever it comes, the others near a save, half of these while
        // the file is being written.
        const int kind = m_random.bounded(3);
        QElapsedTimer timer;
        timer.start();
        const int patience = kind == 0 ? m_random.bounded(20 * delay + 400) : 20000;
        while (timer.elapsed() < patience && (kind == 0 || run.saving.isEmpty())) {
            program.waitForReadyRead(qMax(1, patience - int(timer.elapsed())));
            hearAll(program, run);
            if (program.state() != QProcess::Running)
                return;
        }
        if (kind == 1) {
            QTest::qSleep(m_random.bounded(m_random.bounded(2) == 0 ? 40 : 400));
        } else if (kind == 2) {
            const qint64 size = QFileInfo(m_file).size();
            for (timer.start(); timer.elapsed() < 2000 && QFileInfo(m_file).size() >= size;)
                ;
        }
        ::kill(static_cast<pid_t>(program.processId()), signal);
    }

    static void hear(const QByteArray &line, Run &run)
    {
        run.told.append(line);
        QByteArrayList rest = line.split(' ');
        const QByteArray word = rest.takeFirst();
        if (word == "doc") {
            const qsizetype bar = line.lastIndexOf('|');
            run.found.insert(line.mid(4, bar - 4), line.mid(bar + 1));
        } else if (word == "ready") {
            run.ready = true;
        } else if (word == "state") {
            run.shown[rest[0]].states.append(rest[2]);
        } else if (word == "aged") {
            Shown &shown = run.shown[rest[0]];
            if (rest[1].toInt() < shown.states.size())
                shown.needed = qMax(shown.needed, rest[1].toInt());
        } else if (word == "saving") {
            run.saving = rest[0];
        } else if (word == "saved") {
            run.saving.clear();
            run.saved = rest[0];
            Shown &shown = run.shown["file"];
            shown.needed = qMax(shown.needed, static_cast<int>(shown.states.lastIndexOf(rest[0])));
        } else if (word == "notsaved") {
            run.saving.clear();
        } else if (word == "closing") {
            run.shown.remove(rest[0]);
        }
    }

    static void hearAll(QProcess &program, Run &run)
    {
        while (program.canReadLine())
            hear(program.readLine().trimmed(), run);
    }

    QByteArray digestOfFile(const QString &path)
    {
        CVBATools set(*m_storage);
        if (!set.Load(path))
            return "unreadable";
        QList<ToolPtr> tools;
        for (const ToolPtr &tool : set)
            tools.append(tool);
        return digestOf(set, tools);
    }

    QByteArrayList digestsOfBackups()
    {
        QByteArrayList digests;
        for (const QString &copy : Sets::files(m_data + u"/backups"_qs, u"*.bmt"_qs))
            digests.append(digestOfFile(copy));
        return digests;
    }

    /// Why the former run's states are not in what this one found; empty when all is well.
    static QByteArray missing(const Run &former, const Run &now)
    {
        const QByteArrayList found = now.found.values();
        for (auto shown = former.shown.cbegin(); shown != former.shown.cend(); ++shown) {
            const QByteArrayList enough = shown->states.mid(qMax(shown->needed, 0));
            const bool there = std::any_of(enough.begin(), enough.end(),
                [&](const QByteArray &state) { return found.contains(state); });
            if (shown->needed >= 0 && !there)
                return shown.key() + ": nothing from state " + QByteArray::number(shown->needed)
                    + " on, of " + QByteArray::number(shown->states.size());
        }
        return {};
    }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<ToolSetStorage> m_storage;
    QString m_file;
    QString m_data;
    QRandomGenerator m_random;
};

TSM_TEST(Killed_test);
#include "tst_Killed.moc"
