#include "platform/rtf/RichTextBox.h"
#include "richtext/frmToolHelp.h"
#include "support/TestRunner.h"

#include <QPointer>
#include <QScrollBar>
#include <QToolTip>

class frmToolHelp_test : public QObject
{
    Q_OBJECT

    QPointer<frmToolHelp> window;
    RichTextBox *rtf = nullptr;

    void showHelp(const QString &text, const QString &name = u"Tool"_qs)
    {
        window = new frmToolHelp;
        rtf = window->findChild<RichTextBox *>(u"rtf"_qs);
        window->ShowHelp(text, 1500, 3000, name);
        QVERIFY(QTest::qWaitForWindowExposed(window));
    }

private Q_SLOTS:
    void cleanup() { delete window; }

    void empty()
    {
        showHelp(QString(), u"A & [*] B"_qs);
        QCOMPARE(rtf->Text(), QString());
        QVERIFY(window->windowTitle().startsWith(u"Help For A & [*]"_qs));
        QVERIFY(!window->isModal());
    }

    void placeAndCaption()
    {
        showHelp(u"{\\rtf1 text}"_qs);
        QCOMPARE(window->pos(), QPoint(100, 200));
        QCOMPARE(window->windowTitle(), u"Help For Tool"_qs);
        QCOMPARE(rtf->geometry(), window->rect().adjusted(8, 8, -8, -8));
        QCOMPARE(rtf->RightMargin(), (window->width() - 16) * 15 - 60);
        QCOMPARE(
            rtf->palette().color(QPalette::Base), QToolTip::palette().color(QPalette::ToolTipBase));
    }

    void wrapsAtTheBox()
    {
        showHelp(u"{\\rtf1 "_qs + u"word "_qs.repeated(1000) + u'}');
        for (const int width : {300, 600}) {
            window->resize(width, 200);
            QTRY_COMPARE(rtf->RightMargin(), (width - 16) * 15 - 60);
            QCoreApplication::processEvents();
            QCOMPARE(rtf->horizontalScrollBar()->maximum(), 0);
            QVERIFY(rtf->verticalScrollBar()->maximum() > 0);
        }
    }

    void tooSmall()
    {
        showHelp(u"{\\rtf1 text}"_qs);
        const QRect before = rtf->geometry();
        window->resize(10, 10);
        QTRY_COMPARE(window->size(), QSize(10, 10));
        QCOMPARE(rtf->geometry(), before);
    }

    void showsAndKeeps()
    {
        showHelp(u"{\\rtf1 te\\b xt}"_qs);
        QTest::keyClicks(rtf, u"typed"_qs);
        QCOMPARE(rtf->Text(), u"text"_qs);
        QCOMPARE(rtf->TextRTF(), u"{\\rtf1 te\\b xt}"_qs);
    }

    void closes()
    {
        showHelp(u"{\\rtf1 text}"_qs);
        QTest::keyClick(rtf, Qt::Key_Escape);
        QTRY_VERIFY(!window);
    }
};

TSM_TEST(frmToolHelp_test);
#include "tst_frmToolHelp.moc"
