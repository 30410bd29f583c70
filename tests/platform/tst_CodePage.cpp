#include "platform/text/CodePage.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

#include <QSet>
#include <QTest>

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
            QCOMPARE(codePage.encodeLossy(text), all);
            QCOMPARE(codePage.firstUnencodable(text), -1);
        }
    }

    void knownCharacters_data()
    {
        rows<int, QByteArray, QString>({
            {"Thai", 874, QByteArray("\x80\xA1\xFB"), u"\u20AC\u0E01\u0E5B"_qs},
            {"Central European", 1250, QByteArray("\x8A\xB9\xF5"), u"Šąő"_qs},
            {"Cyrillic", 1251, QByteArray("\xC0\xFF\xB8"), u"Аяё"_qs},
            {"Western", 1252, QByteArray("\x80\x9F\xE9"), u"€Ÿé"_qs},
            {"Greek", 1253, QByteArray("\xC1\xF9\xA2"), u"ΑωΆ"_qs},
            {"Turkish", 1254, QByteArray("\xDD\xFE\xD0"), u"İşĞ"_qs},
            {"Hebrew", 1255, QByteArray("\xE0\xA4\xFA"), u"\u05D0\u20AA\u05EA"_qs},
            {"Arabic", 1256, QByteArray("\xC7\x81\xA1"), u"\u0627\u067E\u060C"_qs},
            {"Baltic", 1257, QByteArray("\xC0\xF0\xFE"), u"Ąšž"_qs},
            {"Vietnamese", 1258, QByteArray("\xD0\xFE\xCC"), u"Đ₫\u0300"_qs},
            {"an unknown number is Western", 437, QByteArray("\x80"), u"€"_qs},
        });
    }

    void knownCharacters()
    {
        const auto [number, bytes, text] = row<int, QByteArray, QString>();
        const CodePage codePage(number);
        QCOMPARE(codePage.decode(bytes), text);
        QVERIFY(codePage.encode(text) == bytes);
    }

    void refusing_data()
    {
        rows<QString, int, QByteArray>({
            {"another script", u"€ ж!"_qs, 2, QByteArray("\x80 ?!")},
            {"a pair of surrogates is one character", u"a\U0001F600b"_qs, 1, QByteArray("a?b")},
            {"at the very start", u"жaж"_qs, 0, QByteArray("?a?")},
            {"a look-alike is not replaced", u"fi\uFB01"_qs, 2, QByteArray("fi?")},
            {"behind a null character", u"\0ж"_qs, 1, QByteArray("\0?", 2)},
        });
    }

    void refusing()
    {
        const auto [text, index, lossy] = row<QString, int, QByteArray>();
        const CodePage codePage(1252);
        QVERIFY(!codePage.encode(text));
        QCOMPARE(codePage.firstUnencodable(text), index);
        QCOMPARE(codePage.encodeLossy(text), lossy);
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
