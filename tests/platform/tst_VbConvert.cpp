#include "platform/text/VbConvert.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

#include <QVariant>

namespace {

/// Invalid for "no value", so that one column holds both outcomes.
template <class T>
QVariant shown(const std::optional<T> &value)
{
    return value ? QVariant::fromValue<double>(*value) : QVariant();
}

const QVariant none;

} // namespace

class VbConvert_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void numbers_data()
    {
        columns<QString, QVariant, QVariant, QVariant>();
        const auto row = [](const char *text, const QVariant &asDouble, const QVariant &asInt16,
                             const QVariant &asInt32) {
            QTest::addRow("\"%s\"", text)
                << QString::fromLatin1(text) << asDouble << asInt16 << asInt32;
        };
        const auto whole = [&](const char *text, double value) { row(text, value, value, value); };
        const auto bad = [&](const char *text) { row(text, none, none, none); };

        whole("7", 7);
        whole(" 12 ", 12);
        whole("\t12\r\n", 12);
        whole("-1", -1);
        whole("+ 5", 5);
        whole("5-", -5);
        whole("(5)", -5);
        whole("1,234", 1234);
        whole("1e3", 1000);
        whole("1D3", 1000);
        whole("1.5e+1", 15);
        whole("5.", 5);
        whole("1e-400", 0);
        row(".5", 0.5, 0., 0.);
        row("1.5", 1.5, 2., 2.);
        row("2.5", 2.5, 2., 2.);
        row("-2.5", -2.5, -2., -2.);
        row("32767.4", 32767.4, 32767., 32767.);
        row("32767.5", 32767.5, none, 32768.);
        row("-32768.5", -32768.5, -32768., -32768.);
        row("32768", 32768., none, 32768.);
        row("2147483647", 2147483647., none, 2147483647.);
        row("2147483648", 2147483648., none, none);
        row("1e300", 1e300, none, none);
        whole("&H1F", 31);
        whole("&h1f", 31);
        whole("&O17", 15);
        row("&HFFFF", 65535., -1., 65535.);
        row("&H8000", 32768., -32768., 32768.);
        row("&H10000", 65536., none, 65536.);
        row("&HFFFFFFFF", -1., none, -1.);
        for (const char *text : {"", " ", "abc", "1e", "1e+", "e3", ".", "-", "()", "&H", "&HG",
                 "&O8", "&H100000000", "7 8", "1 e3", "--5", "-5-", "(5", "1.2.3", ",5", "1e400",
                 "0x10", "5x", "True", "inf", "nan", "(-5)"}) {
            bad(text);
        }
    }

    void numbers()
    {
        const auto [text, asDouble, asInt16, asInt32] =
            row<QString, QVariant, QVariant, QVariant>();
        QCOMPARE(shown(VbConvert::toDouble(text)), asDouble);
        QCOMPARE(VbConvert::isNumeric(text), asDouble.isValid());
        QCOMPARE(shown(VbConvert::toInt16(text)), asInt16);
        QCOMPARE(shown(VbConvert::toInt32(text)), asInt32);
    }

    void truthValues()
    {
        const auto value = [](const char *text) {
            return shown(VbConvert::toBool(QString::fromLatin1(text)));
        };
        for (const char *text : {"True", " true ", "TRUE", "-1", "1", "0.1", "&HFFFF"})
            QVERIFY2(value(text) == QVariant(1.), text);
        for (const char *text : {"False", "FALSE", "0", " 0.0 ", "&H0"})
            QVERIFY2(value(text) == QVariant(0.), text);
        for (const char *text : {"", "yes", "Truee", "T"})
            QVERIFY2(value(text) == none, text);
    }

    void fromSingle()
    {
        QStringList texts;
        for (const float value : {0.f, 8.5f, -12.f, 0.1f, 1440.f, 1234567.f, 0.00001f, 12345678.f})
            texts.append(VbConvert::fromSingle(value));
        QCOMPARE(texts.join(u' '), u"0 8.5 -12 0.1 1440 1234567 1E-05 1.234568E+07"_qs);
    }
};

TSM_TEST(VbConvert_test);
#include "tst_VbConvert.moc"
