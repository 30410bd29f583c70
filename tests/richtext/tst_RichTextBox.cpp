#include "platform/rtf/RichTextBox.h"
#include "platform/rtf/RichTextPages.h"
#include "support/TestRunner.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QPrinter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>

#include <functional>
#include <memory>

namespace {

const QString sample =
    QStringLiteral("{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1 Courier New;}}"
                   "{\\colortbl;\\red255\\green0\\blue0;}\\fs20 ab"
                   "{\\b cd}\\f1\\fs40\\cf1 ef\\par\\qc\\li720\\fi-360 gh\\par}");

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

private Q_SLOTS:
    void init() { box = std::make_unique<RichTextBox>(u"Arial"_qs, 10); }
    void cleanup() { box.reset(); }

    void untouchedText_data();
    void untouchedText();
    void ownForm();
    void charactersOutsideTheCodePage();
    void readsCharacters();
    void mixedIsEmpty();
    void writesFormats_data();
    void writesFormats();
    void typingTakesTheFormat();
    void emptyParagraphTakesTheFormat();
    void farOutLengths();
    void paragraphs();
    void tabStops();
    void selection();
    void rightMargin();
    void protectedText_data();
    void protectedText();
    void typingBesideProtectedText();
    void hiddenText();
    void undo();
    void copyAndPaste();
    void pasteFromOthers_data();
    void pasteFromOthers();
    void pageFetchesNothing();
    void pastePicture();
    void events();
    void pagesFollowTheText();
    void print();
};

void RichTextBox_test::untouchedText_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("foreign RTF") << u"{\\rtf1  \\foo{\\*\\bar}\r\nx\\par}\0\n"_qs;
    QTest::newRow("plain text") << u"plain\r\ntext"_qs;
    QTest::newRow("empty") << QString();
    QTest::newRow("half an RTF") << u"{\\rtf1 \\b"_qs;
}

void RichTextBox_test::untouchedText()
{
    QFETCH(const QString, text);
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

void RichTextBox_test::ownForm()
{
    const QString own =
        u"{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Arial;}}\r\n"
        "\\pard\\f0\\fs20 a\\par\r\n}"_qs;
    box->setTextRTF(u"a"_qs);
    QCOMPARE(box->ownRTF(), own);
    QCOMPARE(RichTextBox::ownForm(u"a"_qs, u"Arial"_qs, 10), own);
    QCOMPARE(RichTextBox::ownForm(own, u"Courier"_qs, 12), own);
    box->setText(u"{a}"_qs);
    QCOMPARE(box->Text(), u"{a}"_qs);
    QVERIFY(box->TextRTF().contains(u"\\{a\\}"_qs));
}

void RichTextBox_test::charactersOutsideTheCodePage()
{
    box->setTextRTF(u"{\\rtf1 x\u4E2Dy}"_qs);
    QCOMPARE(box->Text(), u"x\u4E2Dy"_qs);
}

void RichTextBox_test::readsCharacters()
{
    box->setTextRTF(sample);
    select(2, 2);
    QCOMPARE(box->SelBold(), true);
    QCOMPARE(box->SelFontName(), u"Arial"_qs);
    QCOMPARE(box->SelFontSize(), 10.0);
    QCOMPARE(box->SelColor(), box->palette().color(QPalette::Text));
    select(4, 2);
    QCOMPARE(box->SelBold(), false);
    QCOMPARE(box->SelFontName(), u"Courier New"_qs);
    QCOMPARE(box->SelFontSize(), 20.0);
    QCOMPARE(box->SelColor(), QColor(Qt::red));
    box->setTextRTF(rtf("\\up6\\i\\ul\\strike\\protect a"));
    select(0, 1);
    QCOMPARE(box->SelCharOffset(), 60);
    QCOMPARE(box->SelItalic(), true);
    QCOMPARE(box->SelUnderline(), true);
    QCOMPARE(box->SelStrikeThru(), true);
    QCOMPARE(box->SelProtected(), true);
}

void RichTextBox_test::mixedIsEmpty()
{
    box->setTextRTF(sample);
    select(1, 4);
    QVERIFY(!box->SelBold());
    QVERIFY(!box->SelFontName());
    QVERIFY(!box->SelFontSize());
    QVERIFY(!box->SelColor());
    QCOMPARE(box->SelItalic(), false);
    select(0, 9);
    QVERIFY(!box->SelAlignment());
    QVERIFY(!box->SelIndent());
    QCOMPARE(box->SelBullet(), false);
}

void RichTextBox_test::writesFormats_data()
{
    using Set = std::function<void(RichTextBox &)>;
    QTest::addColumn<Set>("set");
    QTest::addColumn<QString>("words");
    const auto row = [](const char *name, const Set &set, const char *words) {
        QTest::newRow(name) << set << QString::fromLatin1(words);
    };
    row(
        "bold", [](auto &b) { b.setSelBold(true); }, "\\fs20\\b x");
    row(
        "not bold",
        [](auto &b) {
            b.setSelBold(true);
            b.setSelBold(false);
        },
        "\\fs20 x");
    row(
        "italic", [](auto &b) { b.setSelItalic(true); }, "\\fs20\\i x");
    row(
        "underline", [](auto &b) { b.setSelUnderline(true); }, "\\fs20\\ul x");
    row(
        "strike", [](auto &b) { b.setSelStrikeThru(true); }, "\\fs20\\strike x");
    row(
        "protected", [](auto &b) { b.setSelProtected(true); }, "\\fs20\\protect x");
    row(
        "size", [](auto &b) { b.setSelFontSize(8.5); }, "\\fs17 x");
    row(
        "offset", [](auto &b) { b.setSelCharOffset(-40); }, "\\fs20\\dn4 x");
    row(
        "offset and then size",
        [](auto &b) {
            b.setSelCharOffset(40);
            b.setSelFontSize(6);
        },
        "\\fs12\\up4 x");
    row(
        "colour", [](auto &b) { b.setSelColor(Qt::red); }, "\\fs20\\cf1 x");
    row(
        "font", [](auto &b) { b.setSelFontName(u"Courier New"_qs); }, "Courier New;}");
    row(
        "right", [](auto &b) { b.setSelAlignment(RichTextBox::rtfRight); }, "\\pard\\qr\\f0");
    row(
        "centre", [](auto &b) { b.setSelAlignment(RichTextBox::rtfCenter); }, "\\pard\\qc\\f0");
    row(
        "indent", [](auto &b) { b.setSelIndent(500); }, "\\pard\\li500\\f0");
    row(
        "hanging indent",
        [](auto &b) {
            b.setSelHangingIndent(300);
            b.setSelIndent(500);
        },
        "\\pard\\fi-300\\li800\\f0");
    row(
        "right indent", [](auto &b) { b.setSelRightIndent(500); }, "\\pard\\ri500\\f0");
    row(
        "bullet", [](auto &b) { b.setSelBullet(true); }, "{\\pntxtb\\'b7}}\\fi-200\\li200");
    row(
        "bullet taken back",
        [](auto &b) {
            b.setSelBullet(true);
            b.setSelBullet(false);
        },
        "\\pard\\f0\\fs20 x");
}

void RichTextBox_test::writesFormats()
{
    QFETCH(const std::function<void(RichTextBox &)>, set);
    QFETCH(const QString, words);
    box->setTextRTF(rtf("x\\par"));
    select(0, 1);
    set(*box);
    QVERIFY2(box->TextRTF().contains(words), qPrintable(box->TextRTF()));
}

void RichTextBox_test::typingTakesTheFormat()
{
    box->setSelBold(true);
    box->setSelFontSize(18);
    QTest::keyClicks(box.get(), u"a"_qs);
    box->setSelBold(false);
    QTest::keyClicks(box.get(), u"b"_qs);
    QVERIFY2(box->TextRTF().contains(u"\\fs36\\b a\\b0 b\\par"_qs), qPrintable(box->TextRTF()));
}

void RichTextBox_test::emptyParagraphTakesTheFormat()
{
    box->setTextRTF(rtf("\\par a\\par\\par b"));
    select(0, 4);
    box->setSelFontSize(30);
    box->setSelBold(true);
    for (const int empty : {0, 3}) {
        box->setSelStart(empty);
        QCOMPARE(box->SelFontSize(), 30.0);
        QCOMPARE(box->SelBold(), true);
    }
    box->setSelStart(4);
    QCOMPARE(box->SelFontSize(), 10.0);
}

/// What is set reads back the same from the text that is written.
void RichTextBox_test::farOutLengths()
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

void RichTextBox_test::paragraphs()
{
    box->setTextRTF(sample);
    box->setSelStart(8);
    QCOMPARE(box->SelAlignment(), int(RichTextBox::rtfCenter));
    QCOMPARE(box->SelIndent(), 360);
    QCOMPARE(box->SelHangingIndent(), 360);
    select(0, 9);
    box->setSelBullet(true);
    QCOMPARE(box->SelBullet(), true);
    QVERIFY(box->document()->begin().textList());
    box->setSelBullet(false);
    QVERIFY(!box->document()->begin().textList());
    select(7, 0);
    QCOMPARE(box->SelIndent(), 360); // its own indent, not the bullet's, was kept
}

void RichTextBox_test::tabStops()
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

void RichTextBox_test::selection()
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

void RichTextBox_test::rightMargin()
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

void RichTextBox_test::protectedText_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("changes");
    // ab[CD]ef
    const auto row = [](const char *name, int start, int length, QKeyCombination key,
                         bool changes) {
        QTest::newRow(name) << start << length << int(key.key()) << int(key.keyboardModifiers())
                            << changes;
    };
    row("type inside", 3, 0, Qt::Key_X, false);
    row("type before", 2, 0, Qt::Key_X, true);
    row("type behind", 4, 0, Qt::Key_X, true);
    row("new line inside", 3, 0, Qt::Key_Return, false);
    row("tab inside", 3, 0, Qt::Key_Tab, false);
    row("delete it", 2, 0, Qt::Key_Delete, false);
    row("delete beside it", 1, 0, Qt::Key_Delete, true);
    row("backspace it", 4, 0, Qt::Key_Backspace, false);
    row("backspace beside it", 2, 0, Qt::Key_Backspace, true);
    row("type over it", 1, 2, Qt::Key_X, false);
    row("delete a selection with it", 0, 6, Qt::Key_Delete, false);
    row("delete a selection without it", 0, 2, Qt::Key_Delete, true);
    row("cut", 0, 6, Qt::CTRL | Qt::Key_X, false);
    row("paste over", 1, 2, Qt::CTRL | Qt::Key_V, false);
    row("paste inside", 3, 0, Qt::CTRL | Qt::Key_V, false);
    row("delete the word", 6, 0, Qt::CTRL | Qt::Key_Backspace, false);
    row("delete the next word", 1, 0, Qt::CTRL | Qt::Key_Delete, false);
}

void RichTextBox_test::protectedText()
{
    QFETCH(const int, start);
    QFETCH(const int, length);
    QFETCH(const int, key);
    QFETCH(const int, modifiers);
    QApplication::clipboard()->setText(u"clip"_qs);
    box->setTextRTF(rtf("ab\\protect CD\\protect0 ef"));
    select(start, length);
    QTest::keyClick(box.get(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QTEST(box->Text() != u"abCDef"_qs, "changes");
}

void RichTextBox_test::typingBesideProtectedText()
{
    box->setTextRTF(rtf("\\protect CD"));
    box->setSelStart(2);
    QTest::keyClicks(box.get(), u"x"_qs);
    QTest::keyClick(box.get(), Qt::Key_Backspace);
    QCOMPARE(box->Text(), u"CD"_qs); // what was typed is not protected
}

void RichTextBox_test::hiddenText()
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

void RichTextBox_test::undo()
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

void RichTextBox_test::copyAndPaste()
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

void RichTextBox_test::pasteFromOthers_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("words");
    QTest::newRow("RTF") << u"text/rtf"_qs << QByteArray("{\\rtf1 x\\b y}") << u"x\\b y"_qs;
    QTest::newRow("RTF of another name")
        << u"text/richtext"_qs << QByteArray("{\\rtf1 x\\b y}") << u"x\\b y"_qs;
    QTest::newRow("enriched text is no RTF")
        << u"text/richtext"_qs << QByteArray("<bold>y</bold>") << QString();
    QTest::newRow("web page") << u"text/html"_qs
                              << QByteArray("<table><tr><td>x<td><b>y</b></table>") << u"\\b y"_qs;
    QTest::newRow("plain text") << u"text/plain"_qs << QByteArray("x {y}") << u"x \\{y\\}"_qs;
}

void RichTextBox_test::pasteFromOthers()
{
    QFETCH(const QString, type);
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, words);
    auto *data = new QMimeData;
    data->setData(type, bytes);
    QApplication::clipboard()->setMimeData(data);
    box->paste();
    if (words.isEmpty())
        QCOMPARE(box->Text(), QString());
    else
        QVERIFY2(box->TextRTF().contains(words), qPrintable(box->TextRTF()));
}

/// A page's picture comes with it or is left out: no file is read because a page names it.
void RichTextBox_test::pageFetchesNothing()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"own.png"_qs);
    QImage image(1, 1, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(path));
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

void RichTextBox_test::pastePicture()
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::green);
    QApplication::clipboard()->setImage(image);
    box->paste();
    QVERIFY(
        box->TextRTF().contains(u"{\\pict\\wmetafile8\\picw79\\pich53\\picwgoal45\\pichgoal30"_qs));
    box->selectAll();
    box->copy();
    QCOMPARE(QApplication::clipboard()->image().size(), image.size());
    RichTextBox other(u"Arial"_qs, 10);
    other.paste();
    QCOMPARE(other.TextRTF(), box->TextRTF());
}

void RichTextBox_test::events()
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

void RichTextBox_test::pagesFollowTheText()
{
    box->setTextRTF(rtf("a\\par b\\par c"));
    QCOMPARE(box->pages().firstBeyond(0, {5000, 10000}), 5);
    box->setSelText(u"more"_qs);
    QCOMPARE(box->pages().firstBeyond(0, {5000, 10000}), 9);
}

void RichTextBox_test::print()
{
    const QTemporaryDir folder;
    QByteArray body;
    for (int i = 0; i < 200; ++i)
        body += "line " + QByteArray::number(i) + "\\par ";
    box->setTextRTF(rtf(body.constData()));
    const auto printed = [&](const char *name) {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(folder.filePath(QString::fromLatin1(name)));
        if (!box->SelPrint(printer))
            return -1;
        QFile file(printer.outputFileName());
        if (!file.open(QIODevice::ReadOnly))
            return -1;
        return int(file.readAll().count("/Type /Page\n"));
    };
    QVERIFY(printed("all.pdf") >= 3);
    select(0, 30);
    QCOMPARE(printed("selection.pdf"), 1);
    QPrinter nowhere;
    nowhere.setOutputFormat(QPrinter::PdfFormat);
    nowhere.setOutputFileName(folder.filePath(u"missing/x.pdf"_qs));
    QTest::ignoreMessage(QtWarningMsg, "QPainter::begin(): Returned false");
    QVERIFY(!box->SelPrint(nowhere));
}

TSM_TEST(RichTextBox_test);
#include "tst_RichTextBox.moc"
