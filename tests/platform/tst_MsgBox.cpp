#include "platform/desktop/MessageText.h"
#include "platform/desktop/MsgBox.h"
#include "support/TestRunner.h"

#include <QtWidgets>

class MsgBox_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    /// The end of a question shows, whatever name stands in it, and columns are straight.
    void texts()
    {
        const std::tuple<const char *, QString, bool> rows[] = {
            // name of the row, name in the question, all of it is shown
            {"short", u"Notepad"_qs, true},
            {"long", QString(255, u'W'), true},
            {"words", u"many words "_qs.repeated(40), true},
            {"longest", QString(65535, u'W'), false},
            {"outside the plane", u"😀"_qs.repeated(9000), false},
            {"lines", u"\n"_qs.repeated(3000), false},
            {"table", u"mmm\t- a\ni\t\t- b\nmmmmmmmm\t\t- c"_qs, true},
        };
        for (const auto &[row, name, whole] : rows) {
            const QString question = u"Do you want to delete '"_qs + name + u"'?"_qs;
            QTimer::singleShot(0, this, [&, this, row = row, whole = whole] {
                auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
                const auto closing = qScopeGuard([&] { box->button(QMessageBox::No)->click(); });
                QCOMPARE(box->text(), question);
                const auto labels = box->findChildren<MessageText *>();
                QVERIFY(labels.size() == 1 && labels[0]->isVisible());
                const MessageText *label = labels[0];
                QCOMPARE(label->text(), question);
                const auto *shown = label->findChild<QTextDocument *>();
                QVERIFY2(shown->toPlainText().endsWith(u"'?"_qs), row);
                QCOMPARE(shown->toPlainText().contains(u'…'), !whole);
                QVERIFY2(shown->toPlainText().isValidUtf16(), row);
                const QSize size = shown->size().toSize();
                QVERIFY2(label->width() >= size.width() && label->height() >= size.height(), row);
                QVERIFY(box->rect().contains(label->geometry()));
                QVERIFY(box->height() < box->screen()->availableSize().height() * 3 / 4);
                QSet<int> columns;
                for (auto block = shown->begin(); block.isValid(); block = block.next()) {
                    const int tab = int(block.text().indexOf(u'\t'));
                    if (tab >= 0)
                        columns.insert(int(block.layout()->lineAt(0).cursorToX(tab + 1)));
                }
                QCOMPARE(columns.size(), name.contains(u'\t') ? 1 : 0);
            });
            QCOMPARE(
                MsgBox::show(nullptr, question, MsgBox::Buttons::YesNo, MsgBox::Icon::Question),
                MsgBox::Answer::No);
        }
    }
};

TSM_TEST(MsgBox_test);
#include "tst_MsgBox.moc"
