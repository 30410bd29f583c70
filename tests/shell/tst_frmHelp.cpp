#include "platform/desktop/HelpTopic.h"
#include "shell/Frame.h"
#include "shell/HelpBrowser.h"
#include "shell/HelpKey.h"
#include "shell/frmHelp.h"
#include "support/FakeFrame.h"
#include "support/TestRunner.h"

#include <QtWidgets>

/// The help window on the real manual.
class frmHelp_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void everyLinkAndPicture_data()
    {
        QTest::addColumn<QString>("helpFile");
        for (const char16_t *name : {Frame::programHelp, Frame::toolSetHelp, Frame::addInHelp})
            QTest::newRow(qPrintable(QString::fromUtf16(name))) << QString::fromUtf16(name);
    }

    void everyLinkAndPicture()
    {
        QFETCH(QString, helpFile);
        frmHelp help(nullptr);
        help.showHelp(helpFile);
        auto *browser = help.findChild<HelpBrowser *>();
        const QUrl page = browser->source();
        QSet<QString> links;
        const QTextDocument &document = *browser->document();
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                const QTextCharFormat format = it.fragment().charFormat();
                if (format.isAnchor())
                    links.insert(format.anchorHref());
                if (!format.isImageFormat())
                    continue;
                const QString name = format.toImageFormat().name();
                const auto picture = qvariant_cast<QImage>(
                    document.resource(QTextDocument::ImageResource, QUrl(name)));
                QVERIFY2(!picture.isNull(), qPrintable(name));
                QVERIFY(
                    picture.width() / picture.devicePixelRatio() <= browser->viewport()->width());
            }
        }
        QVERIFY(!browser->headings().isEmpty() && !links.isEmpty());
        QCOMPARE(browser->horizontalScrollBar()->maximum(), 0);
        for (const QString &link : std::as_const(links)) {
            browser->setSource(page);
            browser->setSource(page.resolved(QUrl(link)));
            bool found = !QUrl(link).hasFragment() && !browser->headings().isEmpty();
            for (const auto &heading : browser->headings())
                found = found || heading.anchor == QUrl(link).fragment();
            QVERIFY2(found, qPrintable(link));
        }
    }

    /// F1 in a dialog leads to its place, also while the dialog keeps all other windows waiting.
    void topics()
    {
        FakeFrame frame;
        const HelpKey key(frame, nullptr);
        const std::pair<const char *, QString> topics[] = {
            {"tool-properties", u"Tool properties"_qs},
            {"the-button-picture", u"The button picture"_qs},
            {"the-help-text", u"The help text"_qs},
            {"tool-set-properties", u"Tool set properties"_qs},
            {"printing", u"Printing"_qs},
        };
        for (const auto &[topic, heading] : topics) {
            QDialog dialog;
            QLineEdit field(&dialog);
            HelpTopic::set(dialog, topic);
            dialog.setModal(true);
            dialog.show();
            QVERIFY(QTest::qWaitForWindowExposed(&dialog));
            QTest::keyClick(&field, Qt::Key_F1);
            const auto *browser = dialog.findChild<HelpBrowser *>();
            QVERIFY(browser && browser->isVisible());
            QCOMPARE(browser->headings().at(browser->currentHeading()).text, heading);
        }
    }

    void contents()
    {
        frmHelp help(nullptr);
        help.showHelp(QString::fromUtf16(Frame::programHelp));
        auto *tree = help.findChild<QTreeWidget *>(u"tvContents"_qs);
        auto *browser = help.findChild<HelpBrowser *>();
        QTreeWidgetItem *node = tree->findItems(u"Tool properties"_qs, Qt::MatchExactly).value(0);
        QVERIFY(node && node->childCount() > 0);
        tree->setCurrentItem(node);
        QTest::keyClick(tree, Qt::Key_Return);
        QCOMPARE(browser->headings().at(browser->currentHeading()).text, u"Tool properties"_qs);
        // The page was not loaded anew: its tables have kept their dress.
        const auto frames = browser->document()->rootFrame()->childFrames();
        QVERIFY(!frames.isEmpty() && frames.constFirst()->frameFormat().border() == 1);
        QVERIFY(qobject_cast<QTextTable *>(frames.constFirst())->format().borderCollapse());
        // The contents follow the reader; and back.
        browser->verticalScrollBar()->setValue(browser->verticalScrollBar()->maximum());
        QVERIFY(tree->currentItem() != node);
        browser->verticalScrollBar()->setValue(0);
        QCOMPARE(tree->currentItem(), tree->topLevelItem(0));
    }

    void find()
    {
        frmHelp help(nullptr);
        help.showHelp(QString::fromUtf16(Frame::programHelp));
        auto *browser = help.findChild<HelpBrowser *>();
        auto *text = help.findChild<QLineEdit *>(u"txtFind"_qs);
        const auto *found = help.findChild<QLabel *>(u"lblFound"_qs);
        auto *next = help.findChild<QToolButton *>(u"cmdFindNext"_qs);
        QVERIFY(QTest::qWaitForWindowActive(&help));
        QTest::keyClick(browser, Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(QApplication::focusWidget(), text);
        QTest::keyClicks(text, u"BACKUPS"_qs); // in whatever letter case
        const int count = browser->matchCount();
        QVERIFY(count > 2);
        QCOMPARE(found->text(), u"1 of %1"_qs.arg(count));
        QTest::keyClick(text, Qt::Key_Return, Qt::ShiftModifier); // round the end
        QCOMPARE(found->text(), u"%1 of %1"_qs.arg(count));
        const QTextCursor place = browser->textCursor();
        QVERIFY(browser->viewport()->rect().contains(browser->cursorRect(place)));
        QTest::keyClick(text, Qt::Key_F3);
        QCOMPARE(found->text(), u"1 of %1"_qs.arg(count));
        text->setText(u"no such words"_qs);
        QCOMPARE(found->text(), u"Not found"_qs);
        QVERIFY(!next->isEnabled() && browser->extraSelections().isEmpty());
        QTest::keyClick(text, Qt::Key_Escape);
        QVERIFY(text->text().isEmpty() && found->text().isEmpty() && help.isVisible());
        QTest::keyClick(browser, Qt::Key_Escape);
        QVERIFY(!help.isVisible());
    }
};

TSM_TEST(frmHelp_test);
#include "tst_frmHelp.moc"
