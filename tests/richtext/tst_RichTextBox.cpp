#include "platform/desktop/Accessible.h"
#include "platform/rtf/RichText.h"
#include "platform/rtf/RichTextBox.h"
#include "platform/rtf/RichTextPages.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

#include <QPrinter>
#include <QSignalSpy>
#include <QtWidgets>

#include <functional>
#include <memory>

namespace {

const QString sample = u"{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1 Courier New;}}"
                       "{\\colortbl;\\red255\\green0\\blue0;}\\fs20 ab"
                       "{\\b cd}\\f1\\fs40\\cf1 ef\\par\\qc\\li720\\fi-360 gh\\par}"_qs;

} // namespace

class RichTextBox_test : public QObject
{
    Q_OBJECT

    std::unique_ptr<RichTextBox> box;

    void select(int start, int length) const
    {
        box->setSelStart(start);
        box->setSelLength(length);
    }
    static QString rtf(const char *body)
    {
        return u"{\\rtf1{\\fonttbl{\\f0 Arial;}}\\fs20 "_qs + QString::fromLatin1(body) + u'}';
    }
    /// Font, size, colour, switches that are on, offset, left and hanging indent, alignment of a
    /// selection, "?" for what is mixed; indents and alignment only when they are not 0.
    QString look(int start, int length) const
    {
        select(start, length);
        const QColor text = box->palette().color(QPalette::Text);
        QStringList words {box->SelFontName().value_or(u"?"_qs)};
        const auto number = [&](const char *name, auto value) {
            words.append(QLatin1String(name) + (value ? QString::number(*value) : u"?"_qs));
        };
        number("", box->SelFontSize());
        const auto colour = box->SelColor();
        words.append(!colour         ? u"?"_qs
                : *colour == text    ? u"text"_qs
                : *colour == Qt::red ? u"red"_qs
                                     : colour->name());
        for (const auto &[name, value] :
            {std::pair("B", box->SelBold()), {"I", box->SelItalic()}, {"U", box->SelUnderline()},
                {"S", box->SelStrikeThru()}, {"P", box->SelProtected()}}) {
            if (value != false)
                words.append(QLatin1String(name) + (value ? u""_qs : u"?"_qs));
        }
        number("C", box->SelCharOffset());
        number("L", box->SelIndent());
        if (box->SelHangingIndent() != 0)
            number("H", box->SelHangingIndent());
        if (box->SelAlignment() != 0)
            number("A", box->SelAlignment());
        return words.join(u' ');
    }

private Q_SLOTS:
    void init() { box = std::make_unique<RichTextBox>(u"Arial"_qs, 10); }
    void cleanup() { box.reset(); }

    void untouchedText()
    {
        for (const QString &text : {u"{\\rtf1  \\foo{\\*\\bar}\r\nx\\par}\0\n"_qs,
                 u"plain\r\ntext"_qs, QString(), u"{\\rtf1 \\b"_qs}) {
            box->setTextRTF(text);
            QCOMPARE(box->TextRTF(), text);
            select(0, 1);
            box->selectAll();
            QTest::keyClick(box.get(), Qt::Key_Right);
            QCOMPARE(box->TextRTF(), text);
            QTest::keyClicks(box.get(), u"!"_qs);
            QVERIFY(box->TextRTF() != text);
            QVERIFY(box->TextRTF().startsWith(u"{\\rtf1\\ansi"_qs));
            box->undo();
            QCOMPARE(box->TextRTF(), text);
        }
    }

    void ownForm()
    {
        const QString own =
            u"{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Arial;}}\r\n"
            "\\pard\\f0\\fs20 a\\par\r\n}"_qs;
        box->setTextRTF(u"a"_qs);
        QCOMPARE(box->ownRTF(), own);
        QCOMPARE(RichText::ownForm(u"a"_qs, u"Arial"_qs, 10, 1252), own);
        QCOMPARE(RichText::ownForm(own, u"Courier"_qs, 12, 1252), own);
        box->setText(u"{a}"_qs);
        QCOMPARE(box->Text(), u"{a}"_qs);
        QVERIFY(box->TextRTF().contains(u"\\{a\\}"_qs));
    }

    void readsFormats()
    {
        box->setTextRTF(sample);
        QCOMPARE(look(2, 2), u"Arial 10 text B C0 L0"_qs);
        QCOMPARE(look(4, 2), u"Courier New 20 red C0 L0"_qs);
        QCOMPARE(look(1, 4), u"? ? ? B? C0 L0"_qs);
        QCOMPARE(look(0, 9), u"? ? ? B? C0 L? H? A?"_qs);
        QCOMPARE(look(8, 0), u"Courier New 20 red C0 L360 H360 A2"_qs);
        box->setTextRTF(rtf("\\up6\\i\\ul\\strike\\protect a"));
        QCOMPARE(look(0, 1), u"Arial 10 text I U S P C60 L0"_qs);
    }

    /// Dark colours show lighter before a dark background; the text keeps them.
    void darkBackground()
    {
        const QString text = u"{\\rtf1{\\colortbl;\\red0\\green0\\blue0;\\red0\\green0\\blue160;"
                             "\\red255\\green255\\blue0;}\\cf1 b\\cf2 n\\cf3 y\\cf0 a}"_qs;
        const auto shown = [this] {
            QString colours;
            const QTextBlock block = box->document()->begin();
            for (const auto &range : block.layout()->formats())
                colours += block.text().mid(range.start, range.length)
                    + range.format.foreground().color().name();
            return colours;
        };
        box->setTextRTF(text);
        QCOMPARE(shown(), QString());
        QPalette dark;
        dark.setColor(QPalette::Base, QColor(30, 30, 30));
        QSignalSpy changes(box.get(), &RichTextBox::Change);
        box->setPalette(dark);
        QTRY_COMPARE(shown(), u"b#8f8f8fn#8181ff"_qs);
        box->setPalette(QPalette(Qt::white));
        QCOMPARE(shown(), QString());
        QVERIFY(changes.isEmpty());
        QCOMPARE(box->TextRTF(), text);
        box->setPalette(dark);
        select(0, 4);
        box->setSelColor(Qt::black);
        QCOMPARE(shown(), u"bnya#8f8f8f"_qs);
        QVERIFY(!box->TextRTF().contains(u"143"_qs));
    }

    void bullets()
    {
        box->setTextRTF(sample);
        select(0, 9);
        box->setSelBullet(true);
        QCOMPARE(box->SelBullet(), true);
        QVERIFY(box->document()->begin().textList());
        box->setSelBullet(false);
        QVERIFY(!box->document()->begin().textList());
        select(7, 0);
        QCOMPARE(box->SelIndent(), 360); // its own indent, not the bullet's, was kept
    }

    void writesFormats()
    {
        using Box = RichTextBox;
        const std::pair<std::function<void(Box &)>, QString> rows[] = {
            {[](Box &b) { b.setSelBold(true); }, u"\\fs20\\b x"_qs},
            {[](Box &b) { b.setSelBold(true), b.setSelBold(false); }, u"\\fs20 x"_qs},
            {[](Box &b) { b.setSelItalic(true); }, u"\\fs20\\i x"_qs},
            {[](Box &b) { b.setSelUnderline(true); }, u"\\fs20\\ul x"_qs},
            {[](Box &b) { b.setSelStrikeThru(true); }, u"\\fs20\\strike x"_qs},
            {[](Box &b) { b.setSelProtected(true); }, u"\\fs20\\protect x"_qs},
            {[](Box &b) { b.setSelFontSize(8.5); }, u"\\fs17 x"_qs},
            {[](Box &b) { b.setSelCharOffset(-40); }, u"\\fs20\\dn4 x"_qs},
            {[](Box &b) { b.setSelCharOffset(40), b.setSelFontSize(6); }, u"\\fs12\\up4 x"_qs},
            {[](Box &b) { b.setSelColor(Qt::red); }, u"\\fs20\\cf1 x"_qs},
            {[](Box &b) { b.setSelFontName(u"Courier New"_qs); }, u"Courier New;}"_qs},
            {[](Box &b) { b.setSelAlignment(Box::rtfRight); }, u"\\pard\\qr\\f0"_qs},
            {[](Box &b) { b.setSelAlignment(Box::rtfCenter); }, u"\\pard\\qc\\f0"_qs},
            {[](Box &b) { b.setSelIndent(500); }, u"\\pard\\li500\\f0"_qs},
            {[](Box &b) { b.setSelHangingIndent(300), b.setSelIndent(500); },
                u"\\pard\\fi-300\\li800\\f0"_qs},
            {[](Box &b) { b.setSelRightIndent(500); }, u"\\pard\\ri500\\f0"_qs},
            {[](Box &b) { b.setSelBullet(true); }, u"{\\pntxtb\\'b7}}\\fi-200\\li200"_qs},
            {[](Box &b) { b.setSelBullet(true), b.setSelBullet(false); }, u"\\pard\\f0\\fs20 x"_qs},
        };
        for (const auto &[set, words] : rows) {
            box->setTextRTF(rtf("x\\par"));
            select(0, 1);
            set(*box);
            QVERIFY2(box->TextRTF().contains(words), qPrintable(words + u" in " + box->TextRTF()));
        }
    }

    void typingTakesTheFormat()
    {
        box->setSelBold(true);
        box->setSelFontSize(18);
        QTest::keyClicks(box.get(), u"a"_qs);
        box->setSelBold(false);
        QTest::keyClicks(box.get(), u"b"_qs);
        QVERIFY2(box->TextRTF().contains(u"\\fs36\\b a\\b0 b\\par"_qs), qPrintable(box->TextRTF()));
        // So do empty paragraphs.
        box->setTextRTF(rtf("\\par a\\par\\par b"));
        select(0, 4);
        box->setSelFontSize(30);
        box->setSelBold(true);
        QCOMPARE(look(0, 0), u"Arial 30 text B C0 L0"_qs);
        QCOMPARE(look(3, 0), u"Arial 30 text B C0 L0"_qs);
        QCOMPARE(look(4, 0), u"Arial 10 text C0 L0"_qs);
    }

    /// What is set reads back the same from the text that is written.
    void farOutLengths()
    {
        constexpr int far = std::numeric_limits<int>::max();
        box->setTextRTF(rtf("\\fi-500 a"));
        box->setSelTabCount(far);
        const int count = *box->SelTabCount();
        box->setSelTabs(0, -far);
        box->setSelTabs(count - 1, far);
        for (const int length : {far, -far}) {
            box->setSelIndent(length);
            box->setSelHangingIndent(length);
            box->setSelRightIndent(length);
            const auto read = [](const RichTextBox &of) {
                return std::tuple(of.SelIndent(), of.SelHangingIndent(), of.SelRightIndent(),
                    of.SelTabCount(), of.SelTabs(0), of.SelTabs(43));
            };
            RichTextBox again(u"Arial"_qs, 10);
            again.setTextRTF(box->TextRTF());
            QCOMPARE(read(again), read(*box));
        }
        QCOMPARE(count, 44);
    }

    void tabStops()
    {
        box->setTextRTF(rtf("\\tx500\\tx1500 a"));
        QCOMPARE(box->SelTabCount(), 2);
        QCOMPARE(box->SelTabs(1), 1500);
        QVERIFY(!box->SelTabs(2));
        box->setSelTabCount(3);
        box->setSelTabs(2, 3000);
        box->setSelTabs(9, 1);
        QVERIFY(box->TextRTF().contains(u"\\tx500\\tx1500\\tx3000\\f0"_qs));
        box->setSelTabCount(0);
        QVERIFY(!box->TextRTF().contains(u"\\tx"_qs));
    }

    void selection()
    {
        box->setTextRTF(sample);
        select(2, 3);
        QCOMPARE(box->SelStart(), 2);
        QCOMPARE(box->SelLength(), 3);
        QCOMPARE(box->SelText(), u"cde"_qs);
        QVERIFY(box->SelRTF().contains(u"\\fs20\\b cd"_qs));
        box->setSelText(u"X"_qs);
        QCOMPARE(box->Text(), u"abXf\ngh"_qs);
        box->setSelStart(0);
        QCOMPARE(box->SelRTF(), QString());
        box->setSelRTF(rtf("\\i new\\par"));
        QCOMPARE(box->Text(), u"new\nabXf\ngh"_qs);
        box->setSelStart(-5);
        box->setSelLength(99999);
        QCOMPARE(box->SelLength(), 11);
    }

    void rightMargin()
    {
        box->setTextRTF(rtf("word word word word word word word word word word word word word"));
        box->resize(300, 100);
        box->show();
        QVERIFY(QTest::qWaitForWindowExposed(box.get()));
        box->setRightMargin(1500);
        QCOMPARE(box->lineWrapMode(), QTextEdit::FixedPixelWidth);
        QCOMPARE(box->lineWrapColumnOrWidth(), 100);
        box->setRightMargin(300 * 15 + 1500); // beyond the box: scrolled to
        QCOMPARE(box->lineWrapColumnOrWidth(), 400);
        box->setRightMargin(0);
        QCOMPARE(box->lineWrapMode(), QTextEdit::WidgetWidth);
        // A margin just inside the box must not bring a scroll bar when the other one takes room.
        box->setTextRTF(rtf(QByteArray("word ").repeated(500).constData()));
        box->setRightMargin(box->widthInTwips() - 60);
        QCoreApplication::processEvents();
        QCOMPARE(box->horizontalScrollBar()->maximum(), 0);
        QVERIFY(box->verticalScrollBar()->maximum() > 0);
    }

    void protectedText()
    {
        struct
        {
            int start, length;
            QKeyCombination key;
            bool changes;
        } const rows[] = {
            // ab[CD]ef
            {3, 0, Qt::Key_X, false},
            {2, 0, Qt::Key_X, true},
            {4, 0, Qt::Key_X, true},
            {3, 0, Qt::Key_Return, false},
            {3, 0, Qt::Key_Tab, false},
            {2, 0, Qt::Key_Delete, false},
            {1, 0, Qt::Key_Delete, true},
            {4, 0, Qt::Key_Backspace, false},
            {2, 0, Qt::Key_Backspace, true},
            {1, 2, Qt::Key_X, false},
            {0, 6, Qt::Key_Delete, false},
            {0, 2, Qt::Key_Delete, true},
            {0, 6, Qt::CTRL | Qt::Key_X, false},
            {1, 2, Qt::CTRL | Qt::Key_V, false},
            {3, 0, Qt::CTRL | Qt::Key_V, false},
            {6, 0, Qt::CTRL | Qt::Key_Backspace, false},
            {1, 0, Qt::CTRL | Qt::Key_Delete, false},
        };
        QApplication::clipboard()->setText(u"clip"_qs);
        for (const auto &[start, length, key, changes] : rows) {
            box->setTextRTF(rtf("ab\\protect CD\\protect0 ef"));
            select(start, length);
            QTest::keyClick(box.get(), key.key(), key.keyboardModifiers());
            QVERIFY2((box->Text() != u"abCDef"_qs) == changes,
                qPrintable(
                    u"%1 at %2, %3"_qs.arg(QKeySequence(key).toString()).arg(start).arg(length)));
        }
        // What is typed beside it is not protected.
        box->setTextRTF(rtf("\\protect CD"));
        box->setSelStart(2);
        QTest::keyClicks(box.get(), u"x"_qs);
        QTest::keyClick(box.get(), Qt::Key_Backspace);
        QCOMPARE(box->Text(), u"CD"_qs);
    }

    void hiddenText()
    {
        box->resize(400, 100);
        box->setTextRTF(rtf("ab\\v hidden words\\v0 c"));
        QCOMPARE(box->Text(), u"abhidden wordsc"_qs);
        QTextCursor cursor(box->document());
        cursor.setPosition(2);
        const int before = box->cursorRect(cursor).left();
        cursor.setPosition(14);
        QVERIFY(box->cursorRect(cursor).left() - before <= 1);
        box->setSelStart(14);
        QTest::keyClicks(box.get(), u"!"_qs);
        QVERIFY(box->TextRTF().contains(u"\\v hidden words\\v0 !c"_qs));
    }

    /// Not by this program's own reading of what it copies: what others see.
    void hiddenTextOfOthers()
    {
        box->setTextRTF(rtf("ab\\v secret\\v0 c"));
        box->selectAll();
        box->copy();
        const QMimeData *data = QApplication::clipboard()->mimeData();
        QCOMPARE(data->text(), u"abc"_qs);
        QVERIFY(!data->html().contains(u"secret"_qs));
        QVERIFY(data->data(u"text/rtf"_qs).contains("\\v secret"));
        Accessible::makeEditor(*box);
        QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(box.get());
        QCOMPARE(spoken->text(QAccessible::Value), u"abc"_qs);
        const QString placed = spoken->textInterface()->text(0, 9);
        QCOMPARE(placed.size(), 9);
        QVERIFY(placed.startsWith(u"ab"_qs) && placed.endsWith(u'c') && !placed.contains(u's'));
    }

    void keysInListsAndTables_data()
    {
        constexpr char item[] = "\\fi-200\\li400 ";
        constexpr char row[] = "\\trowd\\cellx900\\cellx1800\\intbl ";
        const QByteArray bullet = "{\\*\\pn\\pnlvlblt}\\fs48 x\\par\\par";
        const QByteArray table =
            QByteArray(row) + "a\\cell b\\cell\\row c\\cell d\\cell\\row\\pard e";
        const QByteArray first = QByteArray(item) + "1.\\tab a\\par 2.\\tab b\\par 3.\\tab c";
        rows<QByteArray, int, QString, QString>({
            // Keys: > Tab, < Shift+Tab, ^ Enter, # Backspace, ! Delete. Tabs are >, lines in a cell
            // |.
            {"numbers count on", first, 4, u"^x"_qs, u"1.>a/2.>x/3.>b/4.>c"_qs},
            {"an item in two", first, 8, u"^x"_qs, u"1.>a/2.>/3.>xb/4.>c"_qs},
            {"only in a list", "1.\\tab a", 4, u"^x"_qs, u"1.>a/x"_qs},
            {"letters, not Roman ones", QByteArray(item) + "h)\\tab a\\par i)\\tab b", 9, u"^x"_qs,
                u"h)>a/i)>b/j)>x"_qs},
            {"Roman numbers, deeper items left out",
                QByteArray(item) + "(i)\\tab a\\par\\li800 1.\\tab x\\par\\li400 (ii)\\tab b", 5,
                u"^y"_qs, u"(i)>a/(ii)>y/1.>x/(iii)>b"_qs},
            {"levels in the number", QByteArray(item) + "1.9\\tab a", 5, u"^x"_qs,
                u"1.9>a/1.10>x"_qs},
            {"an empty item ends the list", QByteArray(item) + "1.\\tab a", 4, u"^^x"_qs,
                u"1.>a/x"_qs},
            {"an empty bullet ends the list", bullet, 2, u"^y"_qs, u"x/y"_qs},
            {"through the cells and on", table, 0, u">x>y<<z>>>>w"_qs, u"za>xb/yc>d/w>/e"_qs},
            {"a line in a cell", table, 1, u"^x"_qs, u"a|x>b/c>d/e"_qs},
            {"cells are not joined", table, 2, u"#!!x"_qs, u"ax>b/c>d/e"_qs},
            {"nor rows", table, 4, u"#x!"_qs, u"a>bx/c>d/e"_qs},
            {"nor what stands behind", table, 8, u"#x"_qs, u"a>b/c>dx/e"_qs},
            {"an empty row ends the table", table, 7, u">^x"_qs, u"a>b/c>d/x/e"_qs},
            {"a paragraph before the table", table, 0, u"^<x"_qs, u"/xa>b/c>d/e"_qs},
        });
    }
    void keysInListsAndTables()
    {
        const auto [body, position, keys, expected] = row<QByteArray, int, QString, QString>();
        box->setTextRTF(rtf(body.constData()));
        const QString given = box->Text();
        select(position, 0);
        const auto size = box->SelFontSize();
        static const QMap<QChar, Qt::Key> named {{u'>', Qt::Key_Tab}, {u'<', Qt::Key_Backtab},
            {u'^', Qt::Key_Return}, {u'#', Qt::Key_Backspace}, {u'!', Qt::Key_Delete}};
        for (const QChar key : keys) {
            if (named.contains(key))
                QTest::keyClick(box.get(), named.value(key));
            else
                QTest::keyClick(box.get(), key.toLatin1());
        }
        QString text = box->document()->toRawText();
        text.replace(u'\t', u'>').replace(QChar(0x2029), u'/').replace(QChar(0x2028), u'|');
        QCOMPARE(text, expected);
        QCOMPARE(box->SelFontSize(), size);
        RichTextBox again(u"Arial"_qs, 10);
        again.setTextRTF(box->TextRTF());
        QCOMPARE(again.Text(), box->Text());
        QCOMPARE(again.ownRTF(), box->TextRTF());
        while (box->document()->isUndoAvailable())
            box->undo();
        QCOMPARE(box->Text(), given);
    }

    /// Selections that cut rows clear their cells; whole rows go.
    void selectionsInTables()
    {
        const QByteArray table = "x\\par\\trowd\\cellx900\\cellx1800\\intbl a\\cell b\\cell\\row "
                                 "c\\cell d\\cell\\row\\pard e";
        const std::tuple<int, int, const char *, QString> rows[] = {
            {2, 3, "!", u"x\n!\t\nc\td\ne"_qs}, {2, 4, "", u"x\nc\td\ne"_qs},
            {0, 4, "!", u"!\n\tb\nc\td\ne"_qs}, {8, 3, "", u"x\na\tb\nc\t\n"_qs},
            {0, 11, "!", u"!"_qs}, {4, 1, "1\n2\t3", u"x\na\t1\n2 3\nc\td\ne"_qs}};
        for (const auto &[start, length, typed, expected] : rows) {
            box->setTextRTF(rtf(table.constData()));
            select(start, length);
            if (*typed == 0) {
                QTest::keyClick(box.get(), Qt::Key_Delete);
            } else if (qstrlen(typed) == 1) {
                QTest::keyClick(box.get(), *typed);
            } else {
                QApplication::clipboard()->setText(QString::fromLatin1(typed));
                box->paste();
            }
            QCOMPARE(box->Text(), expected);
        }
        box->setTextRTF(rtf(table.constData()));
        QTest::keyClick(box.get(), Qt::Key_A); // an edit elsewhere leaves the table one
        QVERIFY(box->TextRTF().contains(
            u"\\trowd\\trgaph0\\trleft0\\cellx900\\cellx1800\\pard\\intbl"_qs));
        box->selectAll();
        box->setSelAlignment(RichTextBox::rtfRight); // for which a row has no room
        QVERIFY(!box->TextRTF().contains(u"\\trowd"_qs));
    }

    /// A large bullet is not cut off at the left edge.
    void roomOfBullets()
    {
        const auto margin = [this] { return box->textCursor().blockFormat().leftMargin() * 15; };
        box->setTextRTF(rtf("{\\*\\pn\\pnlvlblt}\\fi-200\\li200\\fs48 x"));
        QCOMPARE(margin(), 480.0);
        QCOMPARE(box->SelIndent(), 0);
        box->setTextRTF(rtf("{\\*\\pn\\pnlvlblt}\\fi-200\\li200 x"));
        QCOMPARE(margin(), 240.0);
        select(0, 1);
        box->setSelFontSize(36);
        QCOMPARE(margin(), 720.0);
        QCOMPARE(box->SelHangingIndent(), 200);
    }

    void undo()
    {
        box->setTextRTF(sample);
        QVERIFY(!box->document()->isUndoAvailable());
        select(1, 4);
        box->setSelFontSize(30);
        select(0, 9);
        box->setSelBullet(true);
        box->undo();
        box->undo();
        QCOMPARE(box->TextRTF(), sample);
        box->redo();
        select(1, 4);
        QCOMPARE(box->SelFontSize(), 30.0);
    }

    void copyAndPaste()
    {
        box->setTextRTF(rtf("a\\b\\protect B\\protect0\\b0\\par\\qc\\tx700\\up8 c"));
        box->selectAll();
        box->copy();
        const QMimeData *data = QApplication::clipboard()->mimeData();
        for (const QString &type : {u"text/rtf"_qs, u"application/rtf"_qs})
            QVERIFY(data->data(type).startsWith("{\\rtf1"));
        QVERIFY(data->hasHtml());
        QCOMPARE(data->text(), u"aB\nc"_qs);
        RichTextBox other(u"Courier New"_qs, 8);
        other.paste();
        const QString pasted = other.TextRTF();
        QVERIFY2(pasted.contains(u"a\\b\\protect B"_qs), qPrintable(pasted));
        QVERIFY2(pasted.contains(u"\\qc\\tx700"_qs), qPrintable(pasted));
        QVERIFY2(pasted.contains(u"\\up8"_qs), qPrintable(pasted));
        other.undo();
        QCOMPARE(other.Text(), QString());
    }

    void pasteFromOthers()
    {
        struct
        {
            QString type;
            QByteArray bytes;
            QString words; ///< Empty when nothing is taken.
        } const rows[] = {
            {u"text/rtf"_qs, "{\\rtf1 x\\b y}", u"x\\b y"_qs},
            {u"text/richtext"_qs, "{\\rtf1 x\\b y}", u"x\\b y"_qs},
            {u"text/richtext"_qs, "<bold>y</bold>", QString()},
            {u"text/html"_qs, "<table><tr><td>x<td><b>y</b><tr><td colspan=2>a<p>b</table>",
                u"\\b\\cell "
                u"y\\cell\\row\r\n\\trowd\\trgaph108\\trleft0\\cellx766\\cellx1532\\pard\\intbl"
                "\\b0 a\\line b\\cell\\cell\\row"_qs},
            {u"text/html"_qs, "<ol type=a><li>x<ul><li>y</ul><li>z</ol>",
                u"\\fi-360\\li360\\sb180\\f0\\fs20 a.\\tab x\\par"_qs},
            {u"text/html"_qs, "<ol><li>x<ul><li>y</ul><li>z</ol>", u"\\fi-360\\li720"_qs},
            {u"text/html"_qs, "<ol><li>x<ul><li>y</ul><li>z</ol>", u"2.\\tab z"_qs},
            {u"text/plain"_qs, "x {y}", u"x \\{y\\}"_qs},
        };
        for (const auto &[type, bytes, words] : rows) {
            auto *data = new QMimeData;
            data->setData(type, bytes);
            QApplication::clipboard()->setMimeData(data);
            box->setTextRTF(QString());
            box->paste();
            QCOMPARE(box->Text().isEmpty(), words.isEmpty());
            QVERIFY2(box->TextRTF().contains(words), qPrintable(box->TextRTF()));
        }
    }

    /// A page's picture comes with it or is left out: no file is read because a page names it.
    void pageFetchesNothing()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"own.png"_qs);
        QVERIFY(Pictures::filled(1, 1, Pictures::red).save(path));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString inPage = QString::fromLatin1(file.readAll().toBase64());
        auto *data = new QMimeData;
        data->setHtml(
            u"a<img src='%1'>b<img src='file://%1'>c<img src='data:image/png;base64,%2'>d"_qs.arg(
                path, inPage));
        QApplication::clipboard()->setMimeData(data);
        box->paste();
        QCOMPARE(box->Text(), u"abc\uFFFCd"_qs);
        QCOMPARE(box->TextRTF().count(u"\\pict"_qs), 1);
    }

    void pastePicture()
    {
        const QImage image = Pictures::filled(3, 2, Pictures::green);
        QApplication::clipboard()->setImage(image);
        box->paste();
        QVERIFY(box->TextRTF().contains(
            u"{\\pict\\wmetafile8\\picw79\\pich53\\picwgoal45\\pichgoal30"_qs));
        box->selectAll();
        box->copy();
        QCOMPARE(QApplication::clipboard()->image().size(), image.size());
        RichTextBox other(u"Arial"_qs, 10);
        other.paste();
        QCOMPARE(other.TextRTF(), box->TextRTF());
    }

    void events()
    {
        QSignalSpy changes(box.get(), &RichTextBox::Change);
        QSignalSpy selections(box.get(), &RichTextBox::SelChange);
        box->setTextRTF(sample);
        changes.clear();
        selections.clear();
        select(1, 0);
        QCOMPARE(selections.size(), 1);
        box->setSelLength(2);
        QCOMPARE(selections.size(), 2);
        QCOMPARE(changes.size(), 0);
        box->setSelItalic(true);
        QVERIFY(changes.size() > 0);
    }

    void pagesFollowTheText()
    {
        box->setTextRTF(rtf("a\\par b\\par c"));
        QCOMPARE(box->pages().firstBeyond(0, {5000, 10000}), 5);
        box->setSelText(u"more"_qs);
        QCOMPARE(box->pages().firstBeyond(0, {5000, 10000}), 9);
    }

    void print()
    {
        QByteArray body;
        for (int i = 0; i < 200; ++i)
            body += "line " + QByteArray::number(i) + "\\par ";
        box->setTextRTF(rtf(body.constData()));
        const auto printed = [&](bool selectionOnly) {
            QImage image(100, 100, QImage::Format_RGB32);
            QPainter painter(&image);
            int count = 1;
            box->SelPrint(
                painter, QRect(0, 0, 9000, 13000), [&count] { ++count; }, selectionOnly);
            return count;
        };
        QCOMPARE(printed(true), 4);
        select(0, 30);
        QCOMPARE(printed(true), 1);
        QCOMPARE(printed(false), 4);
    }

    /// The toolkit's layout of such texts would never end, or take minutes.
    void boundedOnTheScreen()
    {
        box->show();
        box->setTextRTF(rtf("I"));
        const int usual = box->cursorRect().height();
        for (const QByteArray &body :
            QByteArrayList {"\\fs3276 " + QByteArray("\\par ").repeated(6000),
                "\\sa31680 " + QByteArray("I\\par ").repeated(6000),
                "\\fs400 " + QByteArray("W\\line ").repeated(60'000), QByteArray(600'000, 'x'),
                "\\tx500\\tx1000\\tx9000 " + QByteArray("c\\tab ").repeated(60'000)}) {
            const QString given = rtf(body.constData());
            box->setTextRTF(given);
            QVERIFY(box->document()->size().height() < 8'388'607);
            box->resize(box->width() - 40, box->height());
            QVERIFY(box->document()->size().height() < 8'388'607);
            QCOMPARE(box->TextRTF(), given);
            QCOMPARE(box->ownRTF(), RichText::ownForm(given, u"Arial"_qs, 10, 1252));
        }
        box->setTextRTF(rtf("I"));
        QCOMPARE(box->cursorRect().height(), usual);
    }
};

TSM_TEST(RichTextBox_test);
#include "tst_RichTextBox.moc"
