#include "platform/text/CodePage.h"
#include "support/TestRunner.h"

#include <QSet>

class CodePage_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void everyByteComesBack()
    {
        QByteArray all(256, '\0');
        for (int i = 0; i < 256; ++i)
            all[i] = static_cast<char>(i);
        for (const int number : {874, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258}) {
            const CodePage codePage(number);
            QCOMPARE(codePage.number(), number);
            const QString text = codePage.decode(all);
            QCOMPARE(text.size(), 256);
            QCOMPARE(QSet<QChar>(text.begin(), text.end()).size(), 256);
            QCOMPARE(text.left(128), QString::fromLatin1(all.left(128)));
            QVERIFY(codePage.encode(text) == all);
            QCOMPARE(codePage.firstUnencodable(text), -1);
        }
    }

    void knownCharacters()
    {
        const std::tuple<int, QByteArray, QString> rows[] = {
            {874, "\x80\xA1\xFB", u"\u20AC\u0E01\u0E5B"_qs}, {1250, "\x8A\xB9\xF5", u"Šąő"_qs},
            {1251, "\xC0\xFF\xB8", u"Аяё"_qs}, {1252, "\x80\x9F\xE9", u"€Ÿé"_qs},
            {1253, "\xC1\xF9\xA2", u"ΑωΆ"_qs}, {1254, "\xDD\xFE\xD0", u"İşĞ"_qs},
            {1255, "\xE0\xA4\xFA", u"\u05D0\u20AA\u05EA"_qs},
            {1256, "\xC7\x81\xA1", u"\u0627\u067E\u060C"_qs}, {1257, "\xC0\xF0\xFE", u"Ąšž"_qs},
            {1258, "\xD0\xFE\xCC", u"Đ₫\u0300"_qs}, {437, "\x80", u"€"_qs}}; // unknown: Western
        for (const auto &[number, bytes, text] : rows) {
            const CodePage codePage(number);
            QCOMPARE(codePage.decode(bytes), text);
            QVERIFY(codePage.encode(text) == bytes);
        }
    }

    void refusing()
    {
        const std::pair<QString, int> rows[] = {
            {u"€ ж!"_qs, 2},
            {u"a\U0001F600b"_qs, 1}, // a pair of surrogates is one character
            {u"жaж"_qs, 0},
            {u"fi\uFB01"_qs, 2}, // a look-alike is not replaced
            {u"\0ж"_qs, 1},
        };
        const CodePage codePage(1252);
        for (const auto &[text, index] : rows) {
            QVERIFY(!codePage.encode(text));
            QCOMPARE(codePage.firstUnencodable(text), index);
        }
    }

    void numberForLocale()
    {
        const std::pair<const char *, int> rows[] = {{"C", 1252}, {"en_US", 1252}, {"de_DE", 1252},
            {"ja_JP", 1252}, {"pl_PL", 1250}, {"ro_RO", 1250}, {"sr_Latn_RS", 1250},
            {"bs_Latn_BA", 1250}, {"sr_Cyrl_RS", 1251}, {"bs_Cyrl_BA", 1251}, {"uz_Cyrl_UZ", 1251},
            {"az_Cyrl_AZ", 1251}, {"ru_RU", 1251}, {"bg_BG", 1251}, {"el_GR", 1253},
            {"tr_TR", 1254}, {"az_Latn_AZ", 1254}, {"uz_Latn_UZ", 1254}, {"he_IL", 1255},
            {"ar_EG", 1256}, {"lt_LT", 1257}, {"vi_VN", 1258}, {"th_TH", 874}};
        for (const auto &[locale, number] : rows)
            QVERIFY2(
                CodePage::numberForLocale(QLocale(QString::fromLatin1(locale))) == number, locale);
    }
};

TSM_TEST(CodePage_test);
#include "tst_CodePage.moc"
