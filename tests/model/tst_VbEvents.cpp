#include "model/VbEvents.h"
#include "support/TestRunner.h"

#include <QSet>

using VbEvents::text;

/// What makes the table usable: groups without gaps, names that tell events apart.
class VbEvents_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void groupsCoverTheEvents()
    {
        int next = 0;
        for (const VbEvents::Group &group : VbEvents::groups) {
            QCOMPARE(group.first, next);
            next = group.last + 1;
        }
        QCOMPARE(next, VbEvents::eventCount);
    }

    void namesAreUniqueAndSorted()
    {
        QSet<QString> names;
        for (const VbEvents::Event &event : VbEvents::events)
            names.insert(text(event.name));
        QCOMPARE(names.size(), VbEvents::eventCount);
        for (const VbEvents::Group &group : VbEvents::groups) {
            for (int i = group.first; i < group.last; ++i) {
                QVERIFY(text(VbEvents::events[std::size_t(i)].name)
                    < text(VbEvents::events[std::size_t(i) + 1].name));
            }
        }
        // The last word of the name says what the caption says.
        for (const VbEvents::Event &event : VbEvents::events)
            QVERIFY(text(event.name).endsWith(text(event.caption).remove(u' ')));
    }

    void masks()
    {
        QCOMPARE(VbEvents::with(0, 25, true), 0x02000000);
        QCOMPARE(VbEvents::with(-1, 0, false), -2);
        QCOMPARE(VbEvents::with(VbEvents::with(-67108864, 3, true), 3, false), -67108864);
        QVERIFY(VbEvents::contains(8, 3));
        QVERIFY(!VbEvents::contains(~8, 3));
    }
};

TSM_TEST(VbEvents_test);
#include "tst_VbEvents.moc"
