#include "platform/rtf/RtfDump.h"
#include "platform/rtf/RtfPlainText.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"
#include "platform/text/CodePage.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

#include <QFont>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QUrl>

namespace {

constexpr char header[] = "{\\rtf1\\ansi\\ansicpg1252\\deff0"
                          "{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}{\\f1\\fmodern Courier New;}"
                          "{\\f2\\fnil\\fcharset2 Symbol;}{\\f3\\fcharset204 Arial CYR;}"
                          "{\\f4\\fcharset128 MS Mincho;}{\\f5\\fcharset2 Wingdings;}}"
                          "{\\colortbl ;\\red255\\green0\\blue0;\\red0\\green0\\blue255;}";

QString dumpOf(const QByteArray &rtf)
{
    QTextDocument document;
    document.setDefaultFont(QFont(u"Arial"_qs, 12));
    RtfReader().read(rtf, document);
    return rtfDump(document);
}

QString dumpOfBody(const QByteArray &body)
{
    return dumpOf(header + body + '}');
}

} // namespace

class RtfReader_test : public QObject
{
    Q_OBJECT

    static void row(const char *name, const char *body, const QString &expected)
    {
        QTest::newRow(name) << QByteArray(body) << expected;
    }

private Q_SLOTS:
    void body_data()
    {
        columns<QByteArray, QString>();

        // Paragraphs
        row("one paragraph without mark", "Hello", u"Hello"_qs);
        row("last mark makes no paragraph", "Hello\\par ", u"Hello"_qs);
        row("empty last paragraph", "Hello\\par\\par ", u"Hello\n"_qs);
        row("backslash and line end is a mark", "a\\\nb\\\r\nc", u"a\nb\nc"_qs);
        row("line ends are no text", "a\r\nb\nc", u"abc"_qs);
        row("line break", "a\\line b", u"a⏎b"_qs);
        row("style counts at the mark", "\\qc a\\pard b\\par c", u"ab\nc"_qs);
        row("pard resets", "\\qr\\li720 a\\par\\pard b", u"<qr li720>a\nb"_qs);
        row("alignments", "\\qj a\\par\\ql b\\par\\qc c\\par\\qr d", u"<qj>a\nb\n<qc>c\n<qr>d"_qs);
        row("indents", "\\li720\\ri360\\fi-360 a", u"<li720 ri360 fi-360>a"_qs);
        row("indents outlive marks, not groups", "{\\li720 a\\par b\\par}c",
            u"<li720>a\n<li720>b\nc"_qs);
        row("tab stops are sorted, kinds hold for one", "\\tqr\\tx2880\\tx720\\tqdec\\tx1440 a",
            u"<tx720 tqdec tx1440 tqr tx2880>a"_qs);
        row("spacing", "\\sb120\\sa60\\sl360\\slmult1 a\\par\\sl-300\\slmult0 b\\par\\sl300 c",
            u"<sb120 sa60 lines360>a\n<sb120 sa60 sl-300>b\n<sb120 sa60 sl300>c"_qs);
        row("one line's spacing is none", "\\sl240\\slmult1 a", u"a"_qs);
        row("right to left", "\\rtlpar\\qr a", u"<qr rtl>a"_qs);
        row("page break", "a\\page b", u"a\n<pagebb>b"_qs);

        // Character formats
        row("toggles", "a\\b b\\i c\\b0 d\\i0 e", u"a{b:b}{b i:c}{i:d}e"_qs);
        row("groups restore", "a{\\b b{\\i c}d}e", u"a{b:b}{b i:c}{b:d}e"_qs);
        row("plain", "\\b\\i\\ul\\strike\\cf1\\up6\\f1\\fs40 a\\plain b",
            u"{b i ul strike f=Courier New fs40 up6 cf=#ff0000:a}b"_qs);
        row("kinds of underline", "{\\uldb a}{\\ulwave b}\\ulth c\\ulnone d", u"{ul:abc}d"_qs);
        row("rarer kinds of underline",
            "{\\ulthdashd a}{\\ulthdashdd b}{\\ulthldash c}{\\ululdbwave d}", u"{ul:abcd}"_qs);
        row("associated formats",
            "{\\dbch\\af0\\afs32\\ab a}{\\afs30 b}{\\dbch\\afs32\\ab\\loch\\fs20 c}"
            "{\\rtlch\\afs40\\ab\\ltrch\\fs26 d}{\\ltrch\\ab\\rtlch e}{\\hich\\afs8 f}",
            u"{b fs32:a}{fs30:b}{b fs20:c}{fs26:d}ef"_qs);
        row("colours", "\\cf1 a\\cf2 b\\cf0 c\\cf9 d", u"{cf=#ff0000:a}{cf=#0000ff:b}cd"_qs);
        row("highlight", "a\\highlight2 b\\highlight0 c", u"a{bg=#0000ff:b}c"_qs);
        row("sizes", "\\fs17 a\\fs b", u"{fs17:a}b"_qs);
        row("offsets", "a\\up4 b\\up0\\dn6 c\\dn0 d\\up e", u"a{up4:b}{up-6:c}d{up6:e}"_qs);
        row("super and sub", "a\\super b\\sub c\\nosupersub d", u"a{super:b}{sub:c}d"_qs);
        row("protected and hidden", "a\\protect b\\protect0\\v c\\v0 d", u"a{protect:b}{v:c}d"_qs);
        row("unknown font is the default one", "\\f77 a", u"a"_qs);

        // Characters
        row("escapes", "a\\\\b\\{c\\}d", u"a\\b{c}d"_qs);
        row("special characters",
            "\\tab\\emdash\\endash\\bullet\\lquote\\rquote\\ldblquote\\rdblquote", u"→—–•‘’“”"_qs);
        row("spaces and hyphens", "a\\~b\\_c\\-d", u"a\u00A0b\u2011c\u00ADd"_qs);
        row("Western byte", "\\'e4\\'80\\'E4", u"ä€ä"_qs);
        row("raw Western byte", "\xe4", u"ä"_qs);
        row("line ends as bytes are marks", "a\\'0db\\'0a\\'0dc", u"a\nb\n\nc"_qs);
        row("braces and backslashes in raw letters of two bytes",
            "\\f4 a\x81{b\x81}c\x95\\d\\'81\\{e}f", u"{f=MS Mincho:a＋b±c表d＋e}"_qs);
        row("a byte alone before a brace", "{\\f4 \\'81}a{\\f0 \xe9}b", u"aéb"_qs);
        row("Cyrillic font", "\\f3 \\'cf\\'f0\\'e8", u"При"_qs);
        row("Japanese, second byte as text", "\\f4\\'83A\\'83\\'41 x", u"{f=MS Mincho:アア x}"_qs);
        row("Japanese up to another font", "\\f4\\'83A\\f3\\'cf", u"{f=MS Mincho:ア}П"_qs);
        row("Symbol font", "{\\f2 abG\\'b7}c", u"{f=Symbol:αβΓ•}c"_qs);
        row("escaped bytes of a symbol font", "{\\f2 \\\\\\{\\'5c\\'7b}", u"{f=Symbol:∴{∴{}"_qs);
        row("symbols as fields",
            "{\\field{\\*\\fldinst SYMBOL 74 \\\\f \"Wingdings\" \\\\s 10}{\\fldrslt\\f1}}"
            "{\\field{\\*\\fldinst{\\b SYMBOL 0xF062 \\\\f Symbol}}}"
            "{\\field{\\*\\fldinst SYMBOL 8364 \\\\u}{\\fldrslt}}"
            "{\\field{\\fldinst SYMBOL 74 \\\\f Wingdings}{\\fldrslt x}}{\\field{\\*\\fldinst "
            "PAGE}}",
            u"{f=Wingdings fs20:\u263A}{b f=Symbol:β}€x"_qs);
        row("Symbol font in Unicode's private range", "{\\f2 \\u-3999?\\u61538?\\u913?}",
            u"{f=Symbol:αβΑ}"_qs);
        row("Wingdings, as far as Unicode has it", "{\\f5 J\\'fc!\\u-3844?}",
            u"{f=Wingdings:\u263A\u2714\uF021\u2714}"_qs);
        row("Unicode with a fallback byte", "\\u8364?a\\u8364\\'80b\\u246 o", u"€a€bö"_qs);
        row("Unicode without fallback", "\\uc0\\u8364 a\\u8364b", u"€a€b"_qs);
        row("Unicode with two bytes", "\\uc2\\u26085\\'93\\'fa\\u26412ab!", u"日本!"_qs);
        row("negative Unicode", "\\u-4036?", u"\uF03C"_qs);
        row("surrogates", "\\u-10179?\\u-8704?x", u"😀x"_qs);
        row("one number for both surrogates", "\\u128512?x", u"😀x"_qs);
        row("fallback length belongs to the group", "{\\uc3\\u8364abcd}\\u8364ab", u"€d€b"_qs);
        row("a group's end ends the fallback", "{\\uc5\\u8364 a}bcdef", u"€bcdef"_qs);
        row("a word as fallback", "\\u8212\\emdash x", u"—x"_qs);
        row("a missing fallback costs no mark", "\\u8364\\par x", u"€\nx"_qs);
        row("control characters", "a\x01\x1f\tb", u"a→b"_qs);
        row("characters that documents keep for themselves", "\\u-560?\\u-559?\\u-4?a\\u8233?b",
            u"\uFFFD\uFFFD\uFFFDa⏎b"_qs);

        // Groups
        row("unknown words and symbols", "a\\foo12 b\\bar\\;c", u"abc"_qs);
        row("unknown groups count unless marked", "a{\\foo b}{\\*\\foo c{d}e}f", u"abf"_qs);
        row("a mark inside a group says nothing", "a{\\b0\\*\\cs8\\ul b}{x\\*\\foo c}d",
            u"a{ul:b}xcd"_qs);
        row("properties without a mark are no text",
            "a{\\sp{\\sn x}{\\sv y}}{\\list{\\listname x;}}b", u"ab"_qs);
        row("groups that are no text",
            "{\\info{\\title x}}{\\stylesheet{\\s0 Normal;}}{\\header h}a{\\footnote n}b",
            u"ab"_qs);
        row("field", "a{\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt{\\ul b}}}c",
            u"a{ul:b}c"_qs);
        row("object", "{\\object\\objemb{\\*\\objclass X}{\\*\\objdata 0011}{\\result r}}",
            u"r"_qs);
        row("either or", "{\\upr{ansi}{\\*\\ud{unicode}}}", u"unicode"_qs);
        row("binary data may hold anything", "a\\bin5 }}}\\{b", u"ab"_qs);
        row("binary data cut off", "a\\bin500 b", u"a"_qs);
        row("binary data of negative length", "a\\bin-5 b", u"ab"_qs);
        row("text behind the end", "a}b{c}", u"a"_qs);

        // Lists
        row("old bullets",
            "\\pard{\\pntext\\f2\\'b7\\tab}{\\*\\pn\\pnlvlblt\\pnf2\\pnindent200{\\pntxtb\\'b7}}"
            "\\fi-200\\li200 a\\par{\\pntext\\f2\\'b7\\tab}b\\par\\pard c\\par",
            u"<bullet li200 fi-200>a\n<bullet li200 fi-200>b\nc"_qs);
        row("old numbers become text",
            "\\pard{\\pntext\\f1 1.\\tab}{\\*\\pn\\pnlvlbody\\pnf0\\pndec{\\pntxta.}}\\li200 a",
            u"<li200>{f=Courier New:1.→}a"_qs);
        row("list tables",
            "{\\*\\listtable{\\list\\listtemplateid1{\\listlevel\\levelnfc23{\\leveltext\\'01*;}}"
            "{\\listlevel\\levelnfc0}\\listid77}{\\list{\\listlevel\\levelnfc0}\\listid78}}"
            "{\\*\\listoverridetable{\\listoverride\\listid77\\listoverridecount0\\ls1}"
            "{\\listoverride\\listid78\\listoverridecount0\\ls2}}"
            "{\\listtext\\f2\\'b7\\tab}\\ls1 a\\par{\\listtext 1.\\tab}\\ls1\\ilvl1 b\\par"
            "{\\listtext 7)\\tab}\\ls2\\ilvl0 c\\par\\pard d\\par\\ls9 e",
            u"<bullet>a\n1.→b\n7)→c\nd\ne"_qs);

        // Tables
        row("rows are lines with tab stops",
            "\\trowd\\trgaph100\\trleft-100\\cellx2000\\cellx4000\\cellx6000\\pard\\intbl a\\cell "
            "b\\par "
            "c\\cell\\cell\\row\\pard d",
            u"<tx2100 tx4100>a→b⏎c→\nd"_qs);
        row("nested rows",
            "\\trowd\\cellx3000\\cellx6000\\pard\\intbl\\itap2 x\\nestcell y\\nestcell"
            "{\\nonesttables\\par}{\\*\\nesttableprops\\trowd\\cellx1\\nestrow}z\\cell "
            "w\\cell\\row",
            u"<tx3000>x→y⏎z→w"_qs);

        // Pictures: sizes and bytes; what they show is RtfPicture's matter.
        row("hexadecimal digits, goal and scale",
            "{\\pict\\pngblip\\picw10\\pich10\\picwgoal300\\pichgoal150\\picscalex200 0a0\nb 0C}",
            u"[png 600x150, 3]"_qs);
        row("binary picture", "a{\\pict\\dibitmap0\\picw4\\pich2\\bin3 }}}b}c",
            u"a[dib 60x30, 3]c"_qs);
        row("metafile's own size", "{\\pict\\wmetafile8\\picw2540\\pich1270 00}",
            u"[wmf 1440x720, 1]"_qs);
        row("picture without bytes", "a{\\pict\\pngblip\\picwgoal9999}b", u"ab"_qs);
        row("groups in a picture",
            "{\\pict{\\*\\picprop{\\sp{\\sn x}{\\sv 1}}}\\jpegblip{\\*\\blipuid 00}"
            "\\picwgoal15\\pichgoal15 00}",
            u"[jpeg 15x15, 1]"_qs);
    }

    void body()
    {
        const auto [rtf, expected] = Rows::row<QByteArray, QString>();
        QCOMPARE(dumpOfBody(rtf), expected);
        // The short way to the words alone, without symbols and the labels of lists.
        if (rtf.contains("\\f2") || rtf.contains("\\f5") || rtf.contains("text\\")
            || rtf.contains("SYMBOL"))
            return;
        const QByteArray whole = header + rtf + '}';
        QTextDocument document;
        RtfReader().read(whole, document);
        const auto words = [](QString text) {
            return text.removeIf(
                [](QChar c) { return c.isSpace() || !c.isPrint() || c >= QChar(0xFFFC); });
        };
        QCOMPARE(words(RtfPlainText(1252).read(CodePage(1252).decode(whole))),
            words(document.toPlainText()));
    }

    void wholeText_data()
    {
        columns<QByteArray, QString>();

        row("plain text", "a\\b {c}\r\nd\te", u"a\\b {c}\nd→e"_qs);
        row("plain text in the default code page", "\xe4", u"ä"_qs);
        row("nothing", "", QString(u""_qs));
        row("only the beginning", "{\\rtf", u""_qs);
        row("a tab spelled as a byte", "{\\rtf1 a\\'09b}", u"a→b"_qs);
        row("no tables", "{\\rtf1 a\\f1 b\\cf1 c}", u"abc"_qs);
        row("the document's code page", "{\\rtf1\\ansi\\ansicpg1251 \\'cf}", u"П"_qs);
        row("the code page of a Macintosh", "{\\rtf1\\mac \\'8a}", u"ä"_qs);
        row("charsets of a Macintosh",
            "{\\rtf1{\\fonttbl{\\f0\\fcharset77 A;}{\\f1\\fcharset78 A;}{\\f2\\fcharset85 A;}"
            "{\\f3\\fcharset88 A;}{\\f4\\fcharset89 A;}{\\f5\\cpg10007 A;}}"
            "\\f0\\'8a\\f1\\'83A\\f2\\'e1\\f3\\'8b\\f4\\'80\\f5\\'80}",
            u"{f=A:äアαčАА}"_qs);
        row("charsets that fonts' names tell",
            "{\\rtf1{\\fonttbl{\\f0 A CE;}{\\f1\\fcharset0 A Cyr;}{\\f2 A Greek;}{\\f3 A Tur;}"
            "{\\f4 A Baltic;}{\\f5\\fcharset204 A CE;}{\\f6\\fcharset0\\cpg1251 A;}"
            "{\\f7\\cpg1251\\fcharset0 A;}{\\f8 A [maker];}}"
            "\\f0\\'e8\\f1\\'cf\\f2\\'e1\\f3\\'fd\\f4\\'e0\\f5\\'cf\\f6\\'cf\\f7\\'cf\\f8 x}",
            u"{f=A:čПαıąППÏx}"_qs);
        row("the code page of DOS", "{\\rtf1\\pc \\'84}", u"ä"_qs);
        row("fonts without braces", "{\\rtf1{\\fonttbl\\f0\\fswiss Arial;\\f1 Courier;}\\f1 a}",
            u"{f=Courier:a}"_qs);
        row("other names of a font",
            "{\\rtf1{\\fonttbl{\\f0\\fnil{\\*\\panose 0102}Foo{\\*\\falt Bar};}}"
            "\\f0 a}",
            u"{f=Foo:a}"_qs);
        row("font's name in its own code page",
            "{\\rtf1{\\fonttbl{\\f0\\fcharset204 \\'cf;}{\\f1 \\u1055?b;}}\\f0 a\\f1 b}",
            u"{f=П:a}{f=Пb:b}"_qs);
        row("the default font", "{\\rtf1\\deff3{\\fonttbl{\\f3 Courier;}}a\\plain b}",
            u"{f=Courier:ab}"_qs);
        row("first colour spelled out as black is automatic",
            "{\\rtf1{\\colortbl\\red0\\green0\\blue0;\\red0\\green0\\blue0;}\\cf0 a\\cf1 b}",
            u"a{cf=#000000:b}"_qs);
        row("colours out of range", "{\\rtf1{\\colortbl;\\red999\\green-5;}\\cf1 a}",
            u"{cf=#ff0000:a}"_qs);
        row("a table that never ends", "{\\rtf1{\\fonttbl{\\f0 Arial;} a", u""_qs);
        row("too many closing braces", "{\\rtf1 a}}}}b", u"a"_qs);
    }

    void wholeText()
    {
        const auto [rtf, expected] = Rows::row<QByteArray, QString>();
        QCOMPARE(dumpOf(rtf), expected);
    }

    void paragraphEnd()
    {
        for (const auto &[rtf, ended] : {std::pair("{\\rtf1 a\\par }", true),
                 {"{\\rtf1 a\\par b}", false}, {"{\\rtf1}", false}, {"a\n", false}}) {
            QTextDocument document;
            RtfReader reader;
            reader.read(QByteArray(rtf), document);
            QVERIFY2(reader.endedWithParagraph() == ended, rtf);
        }
    }

    /// Cut at every byte, a text gives the beginning of what it gives as a whole.
    void cutOff()
    {
        const QByteArray rtf = QByteArray(header)
            + "\\pard\\qc{\\b one}\\par\\u8364?\\'e4{\\*\\x y}{\\pict\\pngblip\\picwgoal15 0011}"
              "\\trowd\\cellx500\\intbl c\\cell\\row two}";
        QTextDocument document;
        RtfReader reader;
        reader.read(rtf, document);
        const QString whole = document.toPlainText();
        for (qsizetype length = 5; length < rtf.size(); ++length) {
            reader.read(QByteArrayView(rtf).first(length), document);
            QString text = document.toPlainText();
            // A byte or number cut in two is another character.
            while (!text.isEmpty() && !whole.startsWith(text))
                text.chop(1);
            QVERIFY2(
                document.toPlainText().size() - text.size() <= 1, rtf.first(length).constData());
        }
    }

    void depth_data()
    {
        QTest::addColumn<QByteArray>("piece");
        QTest::newRow("braces") << QByteArray("{");
        QTest::newRow("formats") << QByteArray("{\\b{\\b0");
        QTest::newRow("ignored groups") << QByteArray("{\\*\\x");
        QTest::newRow("pictures") << QByteArray("{\\pict");
        QTest::newRow("tables") << QByteArray("{\\fonttbl");
        QTest::newRow("closing braces") << QByteArray("}");
    }

    void depth()
    {
        QFETCH(const QByteArray, piece);
        constexpr int times = 1'000'000;
        const QByteArray rtf = "{\\rtf1 a" + piece.repeated(times) + "b";
        QVERIFY(dumpOf(rtf).startsWith(u'a'));
        const QByteArray closed =
            "{\\rtf1 a{" + piece.repeated(times) + QByteArray(times, '}') + "}";
        QVERIFY(dumpOf(closed).startsWith(u'a'));
    }

    void hugeNumbers()
    {
        static constexpr const char *words[] = {"fs", "f", "cf", "highlight", "up", "dn", "li",
            "ri", "fi", "sb", "sa", "sl", "tx", "u", "uc", "ls", "ilvl", "cellx", "bin", "picw",
            "pich", "picwgoal", "pichgoal", "picscalex", "deff", "ansicpg", "trgaph"};
        for (const char *word : words) {
            for (const char *number :
                {"99999999999999999999", "-99999999999999999999", "2147483647"}) {
                const QByteArray text = QByteArray("\\") + word + number;
                dumpOf("{\\rtf1 " + text + " a{\\pict\\wmetafile8" + text + " 00}\\row " + text
                    + "b}");
            }
        }
        QCOMPARE(dumpOfBody("\\fs99999 a"), u"{fs3276:a}"_qs);
        QCOMPARE(dumpOfBody("\\fs0 a\\fs1 b"), u"{fs1:ab}"_qs);
        QCOMPARE(dumpOfBody("\\li-99999999999 a"), u"<li-31680>a"_qs);
        QCOMPARE(dumpOfBody("{\\pict\\wmetafile8\\picwgoal99999999\\pichgoal1\\picscalex900 00}"),
            u"[wmf 31680x1, 1]"_qs);
    }

    void untouchedSettings()
    {
        QTextDocument document;
        document.setUndoRedoEnabled(true);
        document.setPlainText(u"before"_qs);
        RtfReader().read("{\\rtf1\\deftab300 after}", document);
        QCOMPARE(document.defaultTextOption().tabStopDistance(), 20.0);
        RtfReader().read("{\\rtf1\\deftab0 after}", document);
        QCOMPARE(document.defaultTextOption().tabStopDistance(), 48.0);
        QVERIFY(document.isUndoRedoEnabled());
        QVERIFY(!document.isUndoAvailable());
        QVERIFY(!document.isModified());
        QCOMPARE(document.toPlainText(), u"after"_qs);
    }

    /// Whatever a text names, reading, showing and writing it asks for no file and no address.
    void fetchesNothing()
    {
        class Watched : public QTextDocument
        {
        public:
            QStringList asked;

        protected:
            QVariant loadResource(int, const QUrl &name) override
            {
                asked.append(name.toString());
                return {};
            }
        };
        Watched document;
        RtfReader().read(
            "{\\rtf1{\\*\\template http://example.invalid/t.dot}{\\*\\datastore 00}"
            "{\\field{\\*\\fldinst INCLUDEPICTURE \"file:///etc/passwd\" \\\\d}{\\fldrslt shown}}"
            "{\\field{\\fldinst{HYPERLINK \"http://example.invalid/\"}}{\\fldrslt link}}"
            "{\\field{\\*\\fldinst DDEAUTO c:\\\\\\\\cmd.exe \"/c calc\"}{\\fldrslt dde}}"
            "{\\object\\objautlink\\objupdate{\\*\\objclass Package}{\\*\\objdata 0105}{\\result "
            "obj}}"
            "{\\*\\filetbl{\\file\\fid0 \\\\\\\\host\\\\share\\\\x;}}{\\subdocument0}"
            "{\\pict\\pngblip file:///etc/passwd}<img src='file:///etc/passwd'>}",
            document);
        QCOMPARE(document.toPlainText(), u"shownlinkddeobj\uFFFC<img src='file:///etc/passwd'>"_qs);
        document.size(); // lays it out
        QImage image(200, 200, QImage::Format_RGB32);
        QPainter painter(&image);
        document.drawContents(&painter);
        painter.end();
        const QByteArray written = RtfWriter::write(document);
        QCOMPARE(document.asked, QStringList());
        for (const char *name : {"http", "HYPERLINK", "cmd.exe"})
            QVERIFY2(!written.contains(name), name);
    }
};

TSM_TEST(RtfReader_test);
#include "tst_RtfReader.moc"
