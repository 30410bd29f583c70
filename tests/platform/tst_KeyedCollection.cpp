#include "platform/KeyedCollection.h"
#include "support/Errors.h"
#include "support/TestRunner.h"

#include <QRandomGenerator>

namespace {

using Names = KeyedCollection<QString>;

QStringList listed(const Names &names)
{
    QStringList list;
    for (const QString &name : names)
        list.append(name);
    return list;
}

} // namespace

class KeyedCollection_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void keysIgnoreCase()
    {
        Names names;
        names.Add(u"first"_qs, u"Übung"_qs);
        QVERIFY(names.contains(u"ÜBUNG"_qs));
        QCOMPARE(names.Item(u"übung"_qs), u"first"_qs);
        QCOMPARE(
            errorOf([&] { names.Add(u"second"_qs, u"üBUNG"_qs); }), int(VbError::DuplicateKey));
        QCOMPARE(listed(names), QStringList {u"first"_qs});
        QVERIFY(names.Remove(u"ÜbUnG"_qs));
        QCOMPARE(names.Count(), 0);
        names.Add(u"third"_qs, u"Übung"_qs);
        QCOMPARE(names.Item(1), u"third"_qs);
    }

    void errors()
    {
        Names names;
        names.Add(u"a"_qs, u"a"_qs);
        QCOMPARE(errorOf([&] { names.Item(u"b"_qs); }), int(VbError::InvalidCall));
        for (const int position : {-1, 0, 2}) {
            QCOMPARE(errorOf([&] { names.Item(position); }), int(VbError::SubscriptOutOfRange));
            QVERIFY(!names.RemoveAt(position));
        }
        QCOMPARE(errorOf([&] { names.AddFirst(u"b"_qs, u"A"_qs); }), int(VbError::DuplicateKey));
        QVERIFY(!names.Remove(u"b"_qs));
        QCOMPARE(listed(names), QStringList {u"a"_qs});
    }

    /// Insertions at both ends and removals anywhere, against the plainest thing that can do the
    /// same.
    void agreesWithAList()
    {
        QRandomGenerator random(1);
        Names names;
        QStringList expected;
        for (int step = 0; step < 3000; ++step) {
            const QString key = QString::number(random.bounded(60));
            const qsizetype at = expected.indexOf(key);
            switch (random.bounded(6)) {
            case 0:
            case 1:
                QCOMPARE(
                    errorOf([&] { names.Add(key, key); }), at < 0 ? 0 : int(VbError::DuplicateKey));
                if (at < 0)
                    expected.append(key);
                break;
            case 2:
                QCOMPARE(errorOf([&] { names.AddFirst(key, key); }),
                    at < 0 ? 0 : int(VbError::DuplicateKey));
                if (at < 0)
                    expected.prepend(key);
                break;
            case 3:
                QCOMPARE(names.Remove(key), at >= 0);
                expected.removeAll(key);
                break;
            case 4: {
                QStringList some {u"not there"_qs};
                for (int count = random.bounded(20); count > 0; --count)
                    some.append(QString::number(random.bounded(60)));
                const auto taken = names.TakeOut(some);
                const QStringList before = expected;
                for (const QString &each : some)
                    expected.removeAll(each);
                QCOMPARE(listed(names), expected);
                if (random.bounded(2)) {
                    names.PutBack(taken, [](const QString &item) { return item; });
                    expected = before;
                }
                break;
            }
            default: {
                const int position = random.bounded(70);
                QCOMPARE(names.RemoveAt(position), position >= 1 && position <= expected.size());
                if (position >= 1 && position <= expected.size())
                    expected.removeAt(position - 1);
            }
            }
            QCOMPARE(listed(names), expected);
            for (int i = 0; i < expected.size(); ++i) {
                QCOMPARE(names.Item(i + 1), expected[i]);
                QCOMPARE(names.Item(expected[i]), expected[i]);
            }
        }
    }
};

TSM_TEST(KeyedCollection_test);
#include "tst_KeyedCollection.moc"
