#include "model/ToolSetDocument.h"
#include "model/ToolSetStorage.h"
#include "platform/rtf/RichTextBox.h"
#include "shell/frmTSProps.h"
#include "support/SetDump.h"
#include "support/TestRunner.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <memory>

class frmTSProps_test : public QObject
{
    Q_OBJECT

    QTemporaryDir folder;
    std::unique_ptr<ToolSetStorage> storage;
    std::unique_ptr<ToolSetDocument> document;

    /// Runs the dialog modally; \a act gets it when it is open and has to end it.
    template <class Act>
    void run(const CVBATools *of, Act act) const
    {
        frmTSProps dialog(*document);
        dialog.Toolset = of;
        QTimer::singleShot(0, &dialog, [&] { act(dialog); });
        dialog.exec();
    }
    void give(const QString &description, int flags) const
    {
        document->setProperties({description, u"{\\rtf1 lo\\b ng}"_qs, flags});
    }
    template <class Child>
    static Child *child(QWidget &dialog, const char *name)
    {
        return dialog.findChild<Child *>(QString::fromLatin1(name));
    }

private Q_SLOTS:
    void init()
    {
        storage = std::make_unique<ToolSetStorage>(1252, folder.path(), folder.path());
        document = std::make_unique<ToolSetDocument>(*storage);
        give(u" short "_qs, 1);
    }

    void shows()
    {
        const std::tuple<int, bool, int> rows[] = {// flags, ticked, flags when ticked otherwise
            {1, false, 0}, // a file of version 1
            {0, true, 1}, {6, true, 7}, {7, false, 6}, {-1, false, -2}};
        for (const auto &[flags, hidden, then] : rows) {
            give(u" short "_qs, flags);
            run(&document->Tools(), [&, hidden = hidden](frmTSProps &dialog) {
                QCOMPARE(dialog.windowTitle(), u"Tool Set Properties"_qs);
                QCOMPARE(child<QLineEdit>(dialog, "txtDescription")->text(), u" short "_qs);
                QCOMPARE(child<RichTextBox>(dialog, "rtControl")->Text(), u"long"_qs);
                QCOMPARE(child<QCheckBox>(dialog, "chkHide")->isChecked(), hidden);
                child<QCheckBox>(dialog, "chkHide")->setChecked(!hidden);
                child<QPushButton>(dialog, "cmdOK")->click();
            });
            QCOMPARE(document->Tools().FLAGS(), then);
        }
    }

    void stores()
    {
        run(&document->Tools(), [&](frmTSProps &dialog) {
            QTest::keyClicks(child<QLineEdit>(dialog, "txtDescription"), u"er "_qs);
            QTest::keyClicks(child<RichTextBox>(dialog, "rtControl"), u"x"_qs);
            child<QPushButton>(dialog, "cmdOK")->click();
        });
        QCOMPARE(document->Tools().Description(), u" short er "_qs); // not trimmed
        QVERIFY(document->Tools().LongDescription().contains(u"xlo\\b ng"_qs));
    }

    void untouchedDescription()
    {
        give(QString(65535, u'x'), 1); // as long as a file allows
        run(&document->Tools(),
            [&](frmTSProps &dialog) { child<QPushButton>(dialog, "cmdOK")->click(); });
        QCOMPARE(document->Tools().Description().size(), 65535);
        QCOMPARE(document->Tools().LongDescription(), u"{\\rtf1 lo\\b ng}"_qs);
    }

    void cancelTouchesNothing()
    {
        give(u" short "_qs, 5);
        for (const bool byKey : {false, true}) {
            run(&document->Tools(), [&](frmTSProps &dialog) {
                auto *text = child<RichTextBox>(dialog, "rtControl");
                QTest::keyClicks(child<QLineEdit>(dialog, "txtDescription"), u"x"_qs);
                QTest::keyClicks(text, u"x"_qs);
                child<QCheckBox>(dialog, "chkHide")->toggle();
                if (byKey)
                    QTest::keyClick(text, Qt::Key_Escape);
                else
                    child<QPushButton>(dialog, "cmdCancel")->click();
            });
            QCOMPARE(SetDump::lines(document->Tools()),
                QStringList(u"0 5|{\\rtf1 lo\\b ng}| short "_qs));
        }
    }

    void withoutASet()
    {
        run(nullptr, [&](frmTSProps &dialog) {
            QCOMPARE(child<QLineEdit>(dialog, "txtDescription")->text(), QString());
            child<QPushButton>(dialog, "cmdOK")->click();
        });
    }

    void defaultPointer()
    {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        run(&document->Tools(), [&](frmTSProps &dialog) {
            QTRY_VERIFY(!QGuiApplication::overrideCursor());
            child<QPushButton>(dialog, "cmdCancel")->click();
        });
    }
};

TSM_TEST(frmTSProps_test);
#include "tst_frmTSProps.moc"
