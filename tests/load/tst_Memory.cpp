#include "platform/desktop/Toolbar.h"
#include "support/Program.h"
#include "support/Rows.h"
#include "support/TestRunner.h"
#include "toolset/ToolSetMenus.h"

#include <QtWidgets>

#include <malloc.h>

#if defined(__SANITIZE_ADDRESS__)
constexpr bool ownHeap = true; // of the sanitizer, which looks for leaks itself
#else
constexpr bool ownHeap = false;
#endif

/// What is opened and closed over and over leaves no more memory in use. MEMORY_ROUNDS (a tenth of
/// them to warm up) makes it longer than the few that show a leak of some hundred bytes each.
class Memory_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void flat_data()
    {
        // allowed: bytes a round
        rows<QString, int>({
            {"a set with pictures and help texts", u"close"_qs, 1500},
            {"the properties dialog, its editor used", u"toolproperties"_qs, 600},
            {"the properties of the set", u"properties"_qs, 600},
            {"the preview", u"preview"_qs, 600},
            {"the help of a tool", u"help"_qs, 600},
        });
    }

    void flat()
    {
        const auto [word, allowed] = row<QString, int>();
        if (ownHeap)
            QSKIP("the heap is the sanitizer's");
        QPixmapCache::setCacheLimit(0); // else icons of closed sets stay, up to some megabytes
        const QTemporaryDir home;
        const QString path = home.filePath(u"set.bmt"_qs);
        QVERIFY(QFile::copy(QStringLiteral(TSM_SAMPLE), path));
        Program program(home.path(), {Printers::pdfFile()});
        frmToolSet *window = program.open(path);
        Program::listOf(window)->setSelectedItem(2);
        QTimer hand; // in whatever dialog is open
        connect(&hand, &QTimer::timeout, this, [] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            if (auto *box = dialog->findChild<QWidget *>(u"rtControl"_qs)) {
                QTest::keyClicks(box, u"word"_qs);
                QTest::keyClick(box, Qt::Key_Z, Qt::ControlModifier);
            }
            if (auto *ok = dialog->findChild<QPushButton *>(u"cmdOK"_qs))
                ok->click();
            else
                dialog->close();
        });
        hand.start(1);
        const auto once = [&] {
            if (word == u"close") {
                window->parentWidget()->close();
                window = program.open(path);
            } else if (word == u"preview") {
                window->findChild<ToolSetMenus *>()->mnuFilePrintPreview->trigger();
            } else if (word == u"help") {
                window->findChild<ToolSetMenus *>()
                    ->mnuViewX[ToolSetMenus::ViewToolHelp]
                    ->trigger();
                for (QWidget *each : QApplication::topLevelWidgets()) {
                    if (each->inherits("frmToolHelp"))
                        each->close();
                }
            } else {
                program.run(word);
            }
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::processEvents();
        };
        bool set = false;
        int rounds = qEnvironmentVariableIntValue("MEMORY_ROUNDS", &set);
        rounds = set ? rounds : 60;
        for (int i = 0; i < qMax(20, rounds / 10); ++i)
            once();
        const auto inUse = [] { return static_cast<qint64>(mallinfo2().uordblks); };
        const qint64 before = inUse();
        for (int i = 0; i < rounds; ++i)
            once();
        const qint64 grown = inUse() - before;
        qInfo("%lld bytes more after %d rounds", grown, rounds);
        QVERIFY(grown < 20000 + allowed * rounds);
    }
};

TSM_TEST(Memory_test);
#include "tst_Memory.moc"
