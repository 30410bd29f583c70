#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/desktop/StatusBar.h"
#include "platform/desktop/Toolbar.h"
#include "platform/print/PagePreview.h"
#include "platform/print/PrintJob.h"
#include "platform/print/Printers.h"
#include "printing/ReportCommands.h"
#include "printing/frmPrint.h"
#include "support/Answers.h"
#include "support/Files.h"
#include "support/Find.h"
#include "support/PrintedPages.h"
#include "support/TestRunner.h"

#include <QComboBox>
#include <QListView>
#include <QPointer>
#include <QRadioButton>
#include <QScrollBar>

using PrintedPages::pagesOfPdf;

/// The preview as the user meets it, and the ways to paper from it and from the menu.
class frmPrint_test : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<ToolSetStorage> storage;
    std::unique_ptr<CVBATools> set;
    std::unique_ptr<SettingsStore> store;
    QStringList installed;
    Printers printers {[this] { return installed; }};
    std::unique_ptr<ReportCommands> commands;
    QStringList produced; ///< Texts, and the files behind arrows.
    QWidget owner;

    QString path(const char *name) const { return folder->filePath(QLatin1String(name)); }
    void addTools(int count)
    {
        while (set->Count() < count) {
            auto tool = std::make_shared<CVBATool>();
            tool->Description = u"Tool %1."_qs.arg(set->Count() + 1);
            set->Add(tool);
        }
    }

    /// Shows the preview and runs \a act while it is open.
    void preview(Answers &answers, const std::function<void(frmPrint *)> &act)
    {
        answers.dialog(u"frmPrint"_qs, [&](QDialog *dialog) {
            act(qobject_cast<frmPrint *>(dialog));
            dialog->close();
        });
        commands->preview(*set, path("set.bmt"));
    }

private Q_SLOTS:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        storage = std::make_unique<ToolSetStorage>(1252, path("scratch"), path("data"));
        set = std::make_unique<CVBATools>(*storage);
        store = std::make_unique<SettingsStore>(path("settings"));
        installed = QStringList {Printers::pdfFile()};
        printers.choose(Printers::pdfFile(), QPageSize(QPageSize::A4), QPageLayout::Portrait);
        produced.clear();
        commands = std::make_unique<ReportCommands>(
            &owner,
            [this](const QString &text, const QString &file) {
                produced.append(text + u" -> "_qs + file);
            },
            *store, printers);
    }

    void clicks()
    {
        // tools; clicks on First, Previous, Next, Last; what is enabled then, and told
        const std::tuple<int, QString, QString> rows[] = {
            {0, u""_qs, u" Page 1 of 1"_qs},
            {3, u""_qs, u" Page 1 of 1"_qs},
            {10, u"NP"_qs, u"NL Page 1 of 2"_qs},
            {20, u""_qs, u"NL Page 1 of 3"_qs},
            {20, u"N"_qs, u"FPNL Page 2 of 3"_qs},
            {20, u"NN"_qs, u"FP Page 3 of 3"_qs},
            {20, u"NNP"_qs, u"FPNL Page 2 of 3"_qs},
            {20, u"NNPP"_qs, u"NL Page 1 of 3"_qs},
            {20, u"L"_qs, u"FP Page 3 of 3"_qs},
            {20, u"LF"_qs, u"NL Page 1 of 3"_qs},
        };
        for (const auto &each : rows) {
            addTools(std::get<0>(each));
            Answers answers;
            preview(answers, [&](frmPrint *form) {
                const auto *toolbar = child<Toolbar>(form, "toolbar");
                const QMap<QChar, QString> keys {{u'F', u"First"_qs}, {u'P', u"Previous"_qs},
                    {u'N', u"Next"_qs}, {u'L', u"Last"_qs}};
                for (const QChar click : std::get<1>(each))
                    toolbar->button(keys[click])->trigger();
                QString found;
                for (const QChar key : u"FPNL"_qs) {
                    if (toolbar->button(keys[key])->isEnabled())
                        found += key;
                }
                const QString panel = child<StatusBar>(form, "status")->panelText(1);
                QCOMPARE(found + u' ' + panel, std::get<2>(each));
                QCOMPARE(form->windowTitle(), u"Tool Set Report"_qs);
                QVERIFY(toolbar->button(u"Print"_qs)->isEnabled());
                const auto *pages = child<PagePreview>(form, "prtStatus");
                QCOMPARE(pages->PreviewPage(), panel.section(u' ', 1, 1).toInt());
                QCOMPARE(pages->accessibleName(), panel);
            });
        }
    }

    void keysAndWheel()
    {
        addTools(20);
        Answers answers;
        preview(answers, [&](frmPrint *form) {
            auto *pages = form->findChild<PagePreview *>(u"prtStatus"_qs);
            form->resize(600, 400);
            QTest::keyClick(pages, Qt::Key_End);
            QCOMPARE(pages->PreviewPage(), 3);
            QTest::keyClick(pages, Qt::Key_Home);
            QCOMPARE(pages->PreviewPage(), 1);
            // Page Down reads on: to the page's end, then to the next page's top; and back.
            int presses = 0;
            for (; pages->PreviewPage() == 1; ++presses)
                QTest::keyClick(pages, Qt::Key_PageDown);
            QVERIFY(presses > 2);
            QCOMPARE(pages->verticalScrollBar()->value(), 0);
            QTest::keyClick(pages, Qt::Key_PageUp);
            QCOMPARE(pages->PreviewPage(), 1);
            QCOMPARE(pages->verticalScrollBar()->value(), pages->verticalScrollBar()->maximum());
            auto *zoom = form->findChild<QComboBox *>(u"cboZoom"_qs);
            const auto turn = [&](int notches, Qt::KeyboardModifiers modifiers) {
                const QPointF at(50, 50);
                QWheelEvent event(at, pages->viewport()->mapToGlobal(at), QPoint(),
                    QPoint(0, 120 * notches), Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
                QCoreApplication::sendEvent(pages->viewport(), &event);
            };
            turn(1, Qt::ControlModifier);
            QCOMPARE(zoom->currentText(), u"150"_qs);
            turn(1, Qt::ControlModifier);
            turn(1, Qt::ControlModifier); // there is no larger one
            QCOMPARE(pages->Zoom(), 200);
            turn(-1, Qt::ControlModifier);
            QCOMPARE(pages->Zoom(), 150);
            pages->verticalScrollBar()->setValue(pages->verticalScrollBar()->maximum());
            turn(-1, Qt::NoModifier);
            QCOMPARE(pages->PreviewPage(), 2);
        });
    }

    void zoom()
    {
        addTools(1);
        Answers answers;
        preview(answers, [&](frmPrint *form) {
            auto *zoom = form->findChild<QComboBox *>(u"cboZoom"_qs);
            auto *pages = form->findChild<PagePreview *>(u"prtStatus"_qs);
            QCOMPARE(zoom->currentText(), u"100"_qs);
            QCOMPARE(pages->sheetSize(), QSize(794, 1123)); // A4 at 96 dots an inch
            zoom->setFocus();
            QTest::keyClick(zoom, Qt::Key_Down);
            QTest::keyClick(zoom, Qt::Key_Down);
            QCOMPARE(pages->sheetSize(), QSize(1587, 2245));
            QCOMPARE(form->focusWidget(), pages);
            pages->setZoom(0); // refused
            QCOMPARE(pages->Zoom(), 200);
        });
    }

    /// A fit follows the window; the steps of the zoom go on from it.
    void fits()
    {
        addTools(20);
        Answers answers;
        preview(answers, [&](frmPrint *form) {
            const auto *pages = child<PagePreview>(form, "prtStatus");
            const auto *zoom = child<QComboBox>(form, "cboZoom");
            const auto press = [&](const char *key) {
                child<Toolbar>(form, "toolbar")->button(QLatin1String(key))->trigger();
            };
            const auto spare = [&](int sheets) {
                return pages->viewport()->width() - sheets * pages->sheetSize().width();
            };
            press("FitWidth");
            for (const int width : {600, 900}) {
                form->resize(width, 500);
                QVERIFY(spare(1) >= 0 && spare(1) < 60);
                QVERIFY(pages->verticalScrollBar()->maximum() > 0);
            }
            QCOMPARE(zoom->currentIndex(), -1);
            QCOMPARE(zoom->placeholderText(), QString::number(pages->Zoom()));
            press("TwoPages");
            QVERIFY(spare(2) >= 0 && spare(2) < 60);
            press("WholePage");
            QCOMPARE(pages->verticalScrollBar()->maximum(), 0);
            QCOMPARE(pages->horizontalScrollBar()->maximum(), 0);
            const int fitted = pages->Zoom();
            QVERIFY(fitted > 20 && fitted < 50);
            QTest::keyClick(form->focusWidget(), Qt::Key_Minus); // there is no smaller entry
            QCOMPARE(pages->Zoom(), fitted);
            QTest::keyClick(form->focusWidget(), Qt::Key_Plus);
            QCOMPARE(zoom->currentText(), u"50"_qs);
            form->resize(600, 600);
            QCOMPARE(pages->Zoom(), 50);
        });
    }

    /// Two pages and thumbnails: the page that is shown stays one, and a click on another takes it.
    void neighbours()
    {
        addTools(20);
        Answers answers;
        preview(answers, [&](frmPrint *form) {
            auto *toolbar = child<Toolbar>(form, "toolbar");
            auto *pages = child<PagePreview>(form, "prtStatus");
            auto *thumbnails = child<QListView>(form, "lvPages");
            QVERIFY(!thumbnails->isVisible());
            for (const char *key : {"WholePage", "TwoPages", "Thumbnails"})
                toolbar->button(QLatin1String(key))->trigger();
            QVERIFY(thumbnails->isVisible());
            const int quarter = pages->viewport()->width() / 4;
            const int middle = pages->viewport()->height() / 2;
            const auto click = [&](int x) {
                QTest::mouseClick(pages->viewport(), Qt::LeftButton, {}, {x, middle});
                if (thumbnails->currentIndex().row() + 1 != pages->PreviewPage())
                    return u"another mark"_qs;
                return child<StatusBar>(form, "status")->panelText(1);
            };
            QCOMPARE(click(3 * quarter), u"Page 2 of 3"_qs);
            QCOMPARE(click(quarter), u"Page 1 of 3"_qs);
            QTest::keyClick(pages, Qt::Key_PageDown); // past both
            QCOMPARE(click(3 * quarter), u"Page 3 of 3"_qs); // there is no fourth
            QTest::mouseClick(thumbnails->viewport(), Qt::LeftButton, {},
                thumbnails->visualRect(thumbnails->model()->index(0, 0)).center());
            QCOMPARE(pages->PreviewPage(), 1);
        });
    }

    void placeIsKept()
    {
        QRect place;
        Answers answers;
        preview(answers, [&](frmPrint *form) {
            form->setGeometry(60, 75, 600, 450);
            place = form->geometry();
        });
        preview(answers, [&](frmPrint *form) {
            QCOMPARE(form->geometry(), place);
            form->setGeometry(90, 90, 630, 480);
        });
        // Printing shows no window and leaves the place alone.
        answers.file(u"Print to PDF File"_qs, path("out.pdf"));
        commands->print(*set, QString());
        preview(answers, [&](frmPrint *form) { QCOMPARE(form->size(), QSize(630, 480)); });
    }

    void printsAll()
    {
        addTools(20);
        Answers answers;
        answers.dialog(u"frmPrint"_qs, [&](QDialog *dialog) {
            auto *toolbar = dialog->findChild<Toolbar *>(u"toolbar"_qs);
            toolbar->button(u"Next"_qs)->trigger();
            toolbar->button(u"Print"_qs)->trigger();
            auto *pages = dialog->findChild<PagePreview *>(u"prtStatus"_qs);
            QCOMPARE(pages->PreviewPage(), 2);
            QCOMPARE(dialog->focusWidget(), pages);
            dialog->close();
        });
        answers.file(u"Print to PDF File"_qs, path("out.pdf"));
        commands->preview(*set, path("set.bmt"));
        QCOMPARE(produced, QStringList(u"3 pages written to \"out.pdf\" -> "_qs + path("out.pdf")));
        const QStringList pages = pagesOfPdf(path("out.pdf"));
        QCOMPARE(pages.size(), 3);
        QVERIFY(pages[0].contains(u"Tool 1.\n"_qs) && pages[2].contains(u"Tool 20.\n"_qs));
        for (int i = 0; i < 3; ++i)
            QVERIFY(pages[i].contains(u"Page %1"_qs.arg(i + 1)));
    }

    void printsWithoutAWindow()
    {
        addTools(1);
        Answers answers; // fails on any dialog that is not told
        answers.file(u"Print to PDF File"_qs, QString());
        commands->print(*set, path("set.bmt")); // cancelled
        QVERIFY(produced.isEmpty());
        answers.file(u"Print to PDF File"_qs, path("out"));
        commands->print(*set, path("set.bmt"));
        QCOMPARE(pagesOfPdf(path("out.pdf")).size(), 1);
    }

    void noPrinter()
    {
        installed.clear();
        Answers answers;
        for (int i = 0; i < 2; ++i) {
            answers.message(
                u"No printers are installed.  Set up a printer and rerun this function."_qs,
                QMessageBox::Ok);
        }
        commands->print(*set, QString());
        commands->preview(*set, QString());
    }

    void printerVanishes()
    {
        installed << u"queue"_qs;
        printers.choose(u"gone"_qs, QPageSize(QPageSize::A4), QPageLayout::Portrait);
        Answers answers;
        const QString text =
            u"VB Quillon cannot access the printer or cannot start the print job.  "
            "A printer may not be available or installed."_qs;
        answers.message(text, QMessageBox::Ok);
        commands->print(*set, QString());
        // The preview stays empty, and nothing in it can be pressed.
        answers.message(text, QMessageBox::Ok);
        preview(answers, [&](frmPrint *form) {
            QCOMPARE(form->findChild<PagePreview *>()->PageCount(), 0);
            const auto buttons = form->findChild<Toolbar *>(u"toolbar"_qs)->buttons();
            for (const QAction *button : buttons)
                QVERIFY(!button->isEnabled());
            form->grab();
        });
    }

    void cannotWrite()
    {
        const QString unwritable = u"/proc/out.pdf"_qs; // for root too
        Answers answers;
        answers.file(u"Print to PDF File"_qs, unwritable);
        answers.message(u"\""_qs + unwritable + u"\" cannot be written.*"_qs, QMessageBox::Ok);
        commands->print(*set, QString());
        // A job that is given up leaves the file that was there.
        QVERIFY(Files::put(path("old.pdf"), "old"));
        {
            PrintJob job(printers, u"title"_qs);
            job.setFileName(path("old.pdf"));
            QVERIFY(job.start());
            job.newPage();
        }
        QCOMPARE(Files::contentOf(path("old.pdf")), QByteArray("old"));
    }

    void setUp()
    {
        for (const bool accepted : {false, true}) {
            Answers answers;
            answers.dialog(u"PrintSetupDialog"_qs, [&](QDialog *dialog) {
                auto *paper = child<QComboBox>(dialog, "cboPaper");
                QCOMPARE(paper->currentText(), u"A4"_qs);
                paper->setCurrentIndex(paper->findText(u"A5"_qs));
                child<QRadioButton>(dialog, "optLandscape")->click();
                accepted ? dialog->accept() : dialog->reject();
            });
            commands->setUp();
            QCOMPARE(printers.paper()->size, accepted ? QSize(11906, 8391) : QSize(11906, 16838));
        }
        Answers answers;
        preview(answers, [](frmPrint *form) {
            QCOMPARE(form->findChild<PagePreview *>()->document().PageWidth(), 11906);
        });
    }
};

TSM_TEST(frmPrint_test);
#include "tst_frmPrint.moc"
