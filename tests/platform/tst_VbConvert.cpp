#include "platform/text/VbConvert.h"
#include "support/TestRunner.h"

#include <QTest>
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
    void numbers_data();
    void numbers();
    void truthValues_data();
    void truthValues();
    void fromSingle_data();
    void fromSingle();
};

void VbConvert_test::numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("asDouble");
    QTest::addColumn<QVariant>("asInt16");
    QTest::addColumn<QVariant>("asInt32");
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
    for (const char *text : {"", " ", "abc", "1e", "1e+", "e3", ".", "-", "()", "&H", "&HG", "&O8",
             "&H100000000", "7 8", "1 e3", "--5", "-5-", "(5", "1.2.3", ",5", "1e400", "0x10", "5x",
             "True", "inf", "nan", "(-5)"}) {
        bad(text);
    }
}

void VbConvert_test::numbers()
{
    QFETCH(QString, text);
    QFETCH(QVariant, asDouble);
    QFETCH(QVariant, asInt16);
    QFETCH(QVariant, asInt32);
    QCOMPARE(shown(VbConvert::toDouble(text)), asDouble);
    QCOMPARE(VbConvert::isNumeric(text), asDouble.isValid());
    QCOMPARE(shown(VbConvert::toInt16(text)), asInt16);
    QCOMPARE(shown(VbConvert::toInt32(text)), asInt32);
}

void VbConvert_test::truthValues_data()
{
    QTest::addColumn<QVariant>("value");
    for (const char *text : {"True", " true ", "TRUE", "-1", "1", "0.1", "&HFFFF"})
        QTest::newRow(text) << QVariant(1.);
    for (const char *text : {"False", "FALSE", "0", " 0.0 ", "&H0"})
        QTest::newRow(text) << QVariant(0.);
    for (const char *text : {"", "yes", "Truee", "T"})
        QTest::newRow(text) << none;
}

void VbConvert_test::truthValues()
{
    QFETCH(QVariant, value);
    QCOMPARE(shown(VbConvert::toBool(QString::fromLatin1(QTest::currentDataTag()))), value);
}

void VbConvert_test::fromSingle_data()
{
    QTest::addColumn<float>("value");
    QTest::newRow("0") << 0.f;
    QTest::newRow("8.5") << 8.5f;
    QTest::newRow("-12") << -12.f;
    QTest::newRow("0.1") << 0.1f;
    QTest::newRow("1440") << 1440.f;
    QTest::newRow("1234567") << 1234567.f;
    QTest::newRow("1E-05") << 0.00001f;
    QTest::newRow("1.234568E+07") << 12345678.f;
}

void VbConvert_test::fromSingle()
{
    QFETCH(float, value);
    QCOMPARE(VbConvert::fromSingle(value), QString::fromLatin1(QTest::currentDataTag()));
}

TSM_TEST(VbConvert_test);
#include "tst_VbConvert.moc"
