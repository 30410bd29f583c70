#include "platform/desktop/Toolbar.h"
#include "platform/print/PrintSetupDialog.h"
#include "platform/print/Printers.h"
#include "richtext/RTFEditor.h"
#include "support/Answers.h"
#include "support/Find.h"
#include "support/TestRunner.h"

#include <QSignalSpy>
#include <QtWidgets>

#include <memory>

namespace {

QString rtf(const char *body)
{
    return u"{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1 Courier New;}}\\fs20 "_qs
        + QString::fromLatin1(body) + u'}';
}

} // namespace

class RTFEditor_test : public QObject
{
    Q_OBJECT

    std::unique_ptr<RTFEditor> editor;
    RichTextBox *box = nullptr;

    void select(int start, int length) const
    {
        editor->setSelStart(start);
        editor->setSelLength(length);
    }
    QAction *button(const char *key) const
    {
        return editor->findChild<Toolbar *>()->button(QString::fromLatin1(key));
    }
    QComboBox *combo(const char *name) const
    {
        return editor->findChild<QComboBox *>(QString::fromLatin1(name));
    }

private Q_SLOTS:
    void init()
    {
        editor = std::make_unique<RTFEditor>();
        box = editor->findChild<RichTextBox *>(u"rtControl"_qs);
        editor->resize(500, 300);
        editor->show();
        QVERIFY(QTest::qWaitForWindowExposed(editor.get()));
    }

    void cleanup() { editor.reset(); }

    void burstOfTyping()
    {
        QSignalSpy changes(editor.get(), &RTFEditor::Change);
        QSignalSpy selections(editor.get(), &RTFEditor::SelChange);
        QTest::keyClicks(box, u"several words"_qs);
        QCOMPARE(selections.size(), 13);
        QCOMPARE(changes.size(), 0); // not at once
        QVERIFY(changes.wait());
        QTest::keyClick(box, Qt::Key_Left);
        QVERIFY(!changes.wait(250)); // and not twice, wherever the caret goes
        QCOMPARE(changes.size(), 1);
    }

    void hostRaisesNoChange()
    {
        QSignalSpy changes(editor.get(), &RTFEditor::Change);
        QTest::keyClicks(box, u"x"_qs);
        editor->setTextRTF(rtf("text"));
        QVERIFY(!changes.wait(250));
        QCOMPARE(editor->TextRTF(), rtf("text"));
    }

    void rightMargin()
    {
        editor->setRightMargin(0);
        QCOMPARE(editor->RightMargin(), box->widthInTwips() - 60);
        QCOMPARE(editor->UserControl_WriteProperties().value(u"RightMargin"_qs), QVariant(0));
        editor->setRightMargin(3000);
        QCOMPARE(editor->RightMargin(), 0);
        QCOMPARE(box->RightMargin(), 3000);
        const QVariant stored = editor->UserControl_WriteProperties().value(u"RightMargin"_qs);
        QCOMPARE(stored.metaType(), QMetaType::fromType<float>());
        QCOMPARE(stored.toFloat(), 3000.f);
    }

    void properties()
    {
        const std::tuple<QVariantMap, int, int> rows[] = {
            // border, margin (0: of the box)
            {{}, 1, 0},
            {{{u"BorderStyle"_qs, 0}, {u"RightMargin"_qs, 2500.f}}, 0, 2500},
            {{{u"RightMargin"_qs, 0}}, 1, 0},
        };
        for (const auto &[bag, border, margin] : rows) {
            editor->setRightMargin(0);
            editor->UserControl_ReadProperties(bag);
            QCOMPARE(editor->BorderStyle(), border);
            QCOMPARE(box->RightMargin(), margin ? margin : box->widthInTwips() - 60);
            QCOMPARE(editor->RightMargin() != 0, margin == 0);
        }
    }

    void toolbarFollows()
    {
        const std::pair<QString, QString> rows[] = {{rtf("abcd"), u""_qs},
            {rtf("\\b\\i\\ul abcd"), u"+bold +italic +underline "_qs},
            {rtf("\\i a\\b b\\ul cd"), u"?bold +italic ?underline "_qs}};
        const auto shown = [this] {
            QString words;
            for (const char *key : {"bold", "italic", "underline"}) {
                if (editor->isMixed(QString::fromLatin1(key)))
                    words += u'?' + QLatin1StringView(key) + u' ';
                else if (button(key)->isChecked())
                    words += u'+' + QLatin1StringView(key) + u' ';
            }
            return words;
        };
        for (const auto &[text, state] : rows) {
            editor->setTextRTF(rtf("\\b\\i x\\b0\\i0 y"));
            select(0, 2);
            QTRY_VERIFY(editor->isMixed(u"bold"_qs));
            editor->setTextRTF(text);
            select(0, 4);
            QTRY_COMPARE(shown(), state);
            QCOMPARE(editor->TextRTF(), text); // following writes nothing
        }
    }

    void mixedButton()
    {
        editor->setTextRTF(rtf("a\\b b"));
        select(0, 2);
        button("bold")->trigger();
        QCOMPARE(editor->SelBold(), false); // mixed: all off first
        QVERIFY(!button("bold")->isChecked());
        button("bold")->trigger();
        QCOMPARE(editor->SelBold(), true);
        QVERIFY(button("bold")->isChecked());
        QTest::keyClick(box, Qt::Key_B, Qt::ControlModifier);
        QCOMPARE(editor->SelBold(), false);
    }

    void boxesFollow()
    {
        editor->setTextRTF(rtf("a\\f1\\fs48 b\\fs22 c\\fs28 d"));
        select(1, 1);
        QTRY_COMPARE(combo("cboFonts")->currentText(), u"Courier New"_qs);
        QCOMPARE(combo("cboFontSize")->currentText(), u"24"_qs);
        select(2, 1); // 11 points: not in the box
        QSignalSpy selections(editor.get(), &RTFEditor::SelChange);
        select(3, 1);
        QTRY_COMPARE(combo("cboFontSize")->currentText(), u"14"_qs);
        select(2, 1);
        button("bold")->trigger(); // brings the boxes in step at once
        QCOMPARE(combo("cboFontSize")->currentText(), u"14"_qs);
        select(0, 3);
        button("bold")->trigger();
        QCOMPARE(editor->SelFontSize(), std::nullopt);
        QCOMPARE(combo("cboFontSize")->currentText(), u"14"_qs);
    }

    void boxesWrite()
    {
        editor->setTextRTF(rtf("abc"));
        select(0, 2);
        QComboBox *sizes = combo("cboFontSize");
        QStringList items;
        for (int i = 0; i < sizes->count(); ++i)
            items.append(sizes->itemText(i));
        QCOMPARE(items, QStringList({u"8"_qs, u"10"_qs, u"12"_qs, u"14"_qs, u"18"_qs, u"24"_qs}));
        sizes->setFocus();
        QTest::keyClick(sizes, Qt::Key_End);
        QCOMPARE(editor->SelFontSize(), 24.0);
        QTRY_VERIFY(box->hasFocus());
        QComboBox *fonts = combo("cboFonts");
        fonts->setFocus();
        QTest::keyClicks(fonts, u"Courier N"_qs);
        QCOMPARE(editor->SelFontName(), u"Courier New"_qs);
        select(2, 1);
        QCOMPARE(editor->SelFontSize(), 10.0);
    }

    void colour()
    {
        editor->setTextRTF(rtf("ab"));
        select(0, 1);
        QColor preset;
        const auto answer = [&](const QColor &chosen) {
            QTimer::singleShot(0, this, [&preset, chosen] {
                auto *dialog = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
                QVERIFY(dialog);
                preset = dialog->currentColor();
                if (chosen.isValid()) {
                    dialog->setCurrentColor(chosen);
                    dialog->accept();
                } else {
                    dialog->reject();
                }
            });
            button("color")->trigger();
        };
        answer({});
        QCOMPARE(editor->TextRTF(), rtf("ab"));
        answer(Qt::red);
        QCOMPARE(editor->SelColor(), QColor(Qt::red));
        answer({});
        QCOMPARE(preset, QColor(Qt::red));
    }

    void printing()
    {
        Printers printers([] { return QStringList {u"There"_qs}; });
        printers.choose(u"There"_qs, QPageSize(QPageSize::A5), QPageLayout::Landscape);
        editor->setPrinters(printers);
        editor->setTextRTF(rtf("ab"));
        for (const int length : {0, 1}) {
            select(0, length);
            bool asked = false;
            QTimer::singleShot(0, this, [&] {
                auto *dialog = qobject_cast<PrintSetupDialog *>(QApplication::activeModalWidget());
                QVERIFY(dialog);
                asked = dialog->selectionOnly() == (length == 1)
                    && dialog->findChild<QRadioButton *>(u"optLandscape"_qs)->isChecked();
                dialog->reject();
            });
            button("print")->trigger();
            QVERIFY(asked);
        }
    }

    /// What could not be stored is not pasted, or made smaller on request.
    void pictureTooLong()
    {
        QImage noise(300, 300, QImage::Format_RGB32);
        for (int i = 0; i < 90000; ++i)
            noise.setPixel(i % 300, i / 300, qRgb(i * 7, i * 31, i * 3));
        editor->setLongestRTF(65535);
        editor->setTextRTF(rtf("text"));
        QApplication::clipboard()->setImage(noise);
        const auto paste = [&](const QString &message, QMessageBox::StandardButton button) {
            Answers answers;
            answers.message(message, button);
            box->paste();
            QCoreApplication::processEvents();
            QVERIFY(answers.lastText().contains(u"65,535"_qs));
        };
        const QString sizes = u"With this picture the text would need *"_qs;
        paste(sizes, QMessageBox::No);
        QCOMPARE(editor->TextRTF(), rtf("text"));
        paste(sizes, QMessageBox::Yes);
        QVERIFY(editor->TextRTF().contains(u"\\pict"_qs));
        QVERIFY(editor->TextRTF().size() <= 65535 && editor->TextRTF().size() > 55000);
        // No room for another, and formatted text is refused as a whole.
        Answers answers;
        answers.message(sizes, QMessageBox::Yes);
        answers.message(u"The text has no room for a picture."_qs, QMessageBox::Ok);
        editor->setLongestRTF(editor->TextRTF().size() + 100);
        box->paste();
        QCoreApplication::processEvents();
        auto *formatted = new QMimeData;
        formatted->setData(u"text/rtf"_qs, editor->TextRTF().toLatin1());
        QApplication::clipboard()->setMimeData(formatted);
        answers.message(sizes, QMessageBox::Ok);
        box->paste();
        QCoreApplication::processEvents();
        QCOMPARE(box->Text().count(QChar::ObjectReplacementCharacter), 1);
    }

    void tabAndEnterInADialog()
    {
        QDialog dialog;
        auto *inDialog = new RTFEditor(&dialog);
        auto *ok = new QPushButton(u"OK"_qs, &dialog);
        auto *layout = new QVBoxLayout(&dialog);
        layout->addWidget(inDialog);
        layout->addWidget(ok);
        ok->setDefault(true);
        QSignalSpy pressed(ok, &QPushButton::clicked);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        inDialog->setFocus();
        auto *text = inDialog->findChild<RichTextBox *>();
        QVERIFY(text->hasFocus());
        for (const Qt::Key key : {Qt::Key_A, Qt::Key_Tab, Qt::Key_Return, Qt::Key_Enter, Qt::Key_B})
            QTest::keyClick(text, key);
        // With Ctrl, too, whatever that means to the dialog.
        QSignalSpy turned(new QShortcut(Qt::CTRL | Qt::Key_Tab, &dialog), &QShortcut::activated);
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Return, Qt::Key_Enter})
            QTest::keyClick(text, key, Qt::ControlModifier);
        QCOMPARE(text->Text(), u"a\t\n\nb\t\n\n"_qs);
        QVERIFY(text->hasFocus());
        auto *bar = inDialog->findChild<Toolbar *>();
        for (QWidget *control :
            {child<QWidget>(inDialog, "cboFonts"), child<QWidget>(inDialog, "cboFontSize"),
                bar->widgetForAction(bar->button(u"bold"_qs))}) {
            control->setFocus();
            QTest::keyClick(control, Qt::Key_Return);
        }
        QCOMPARE(inDialog->SelBold(), true);
        text->setFocus();
        QCOMPARE(pressed.size() + turned.size(), 0);
        const auto back = [] {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
        };
        back();
        QVERIFY(inDialog->findChild<QComboBox *>(u"cboFontSize"_qs)->hasFocus());
        // All of the toolbar can be reached, and Tab from outside leads into the text.
        for (int i = 0; i < 3; ++i)
            back();
        auto *toolbar = inDialog->findChild<Toolbar *>();
        QCOMPARE(
            QApplication::focusWidget(), toolbar->widgetForAction(toolbar->button(u"color"_qs)));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QVERIFY(text->hasFocus()); // or the next Enter would be OK's
        QVERIFY(inDialog->SelUnderline().value());
        for (const bool bullet : {true, false}) {
            QTest::keyClick(text, Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
            QCOMPARE(inDialog->SelBullet().value(), bullet);
        }
        ok->setFocus();
        QTest::keyClick(ok, Qt::Key_Tab);
        QVERIFY(text->hasFocus());
    }

    void layout()
    {
        editor->setRightMargin(0);
        editor->resize(700, 200);
        QTRY_COMPARE(box->geometry().right(), 699);
        QCOMPARE(box->geometry().bottom(), 199);
        QCOMPARE(box->geometry().left(), 0);
        QCOMPARE(editor->RightMargin(), 700 * 15 - 60);
        const QRect before = box->geometry();
        QVERIFY(before.top() >= combo("cboFonts")->height());
        editor->setMinimumSize(1, 1);
        editor->resize(700, before.top() - 1);
        QTest::qWait(150); // for a timer that must change nothing
        QCOMPARE(box->geometry(), before);
    }

    void designMode()
    {
        editor->setUserMode(false);
        editor->setTextRTF(rtf("\\b a"));
        QTRY_VERIFY(button("bold")->isChecked()); // a changed text is followed all the same
        QSignalSpy selections(editor.get(), &RTFEditor::SelChange);
        button("bold")->setChecked(false);
        select(0, 1);
        QVERIFY(!selections.isEmpty());
        QTest::qWait(150); // for a timer that must not run
        QVERIFY(!button("bold")->isChecked());
    }
};

TSM_TEST(RTFEditor_test);
#include "tst_RTFEditor.moc"
