#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "support/TestRunner.h"
#include "toolset/ToolListModel.h"

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QSignalSpy>
#include <QTemporaryDir>

/// The list of a set of tools named by single letters, in whatever order it is looked at.
class ToolListModel_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_tester.reset();
        m_model.reset();
        m_set = std::make_unique<CVBATools>(m_storage);
        m_set->setAllowDupes(true);
        const std::pair<QString, QString> tools[] = {{u"d"_qs, u"z"_qs}, {u"B"_qs, u"y"_qs},
            {u"a"_qs, u"Y"_qs}, {u"c"_qs, u"x"_qs}, {u"e"_qs, u""_qs}};
        for (const auto &[name, location] : tools) {
            auto tool = std::make_shared<CVBATool>();
            tool->Description = name;
            tool->setLocation(location);
            QVERIFY(m_set->Add(tool));
        }
        m_model = std::make_unique<ToolListModel>();
        m_tester = std::make_unique<QAbstractItemModelTester>(
            m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_model->setTools(m_set.get());
    }

    void sorting()
    {
        const std::tuple<int, Qt::SortOrder, QString> rows[] = {
            {0, Qt::AscendingOrder, u"a3 B2 c4 d1 e5"_qs}, // letter case does not matter
            {0, Qt::DescendingOrder, u"e5 d1 c4 B2 a3"_qs},
            {1, Qt::AscendingOrder, u"d1 B2 a3 c4 e5"_qs},
            {1, Qt::DescendingOrder, u"e5 c4 a3 B2 d1"_qs},
            {2, Qt::AscendingOrder, u"e5 c4 B2 a3 d1"_qs}, // equal ones by position
            {2, Qt::DescendingOrder, u"d1 B2 a3 c4 e5"_qs},
        };
        for (const auto &[column, order, expected] : rows) {
            m_model->sort(column, order);
            QCOMPARE(shown(), expected);
            // What is written does not depend on how it is looked at.
            QCOMPARE(m_model->keysInPositionOrder().join(u' '), u"d B a c e"_qs);
        }
    }

    void selectionFollowsItsTool()
    {
        const QPersistentModelIndex location(m_model->index(2, 2)); // "a"
        m_model->sort(0, Qt::AscendingOrder);
        QCOMPARE(location.row(), 0);
        m_model->MoveTools(rowsOf(u"a"_qs), rowsOf(u"e"_qs).constFirst());
        QCOMPARE(location.row(), 4);
        QCOMPARE(location.data().toString(), u"Y"_qs);
    }

    void renaming()
    {
        m_model->sort(0, Qt::AscendingOrder);
        QCOMPARE(m_model->renameTool(0, u"B"_qs), u"B(1)"_qs);
        // In the set the tool is the last one now; on the screen and in the file it keeps its
        // place.
        QCOMPARE(shown(), u"B(1)3 B2 c4 d1 e5"_qs);
        QCOMPARE(m_model->keysInPositionOrder().join(u' '), u"d B B(1) c e"_qs);
        QCOMPARE(m_set->Item(5)->Description, u"B(1)"_qs);
        QCOMPARE(m_model->renameTool(0, QString()), u"Tool(1)"_qs);
    }

    /// Set and list stay in step when a name and all its numbers are taken.
    void noFreeName()
    {
        const auto made = [](const QString &name) {
            auto tool = std::make_shared<CVBATool>();
            tool->Description = name;
            return tool;
        };
        for (int i = 1; i <= 32767; ++i)
            m_set->Add(made(u"B"_qs));
        m_set->Add(made(u"y"_qs));
        m_model->setTools(m_set.get());
        QSignalSpy refused(m_model.get(), &ToolListModel::noFreeName);
        QCOMPARE(m_model->renameTool(m_model->rowCount() - 1, u"b"_qs), u"y"_qs);
        QVERIFY(m_model->appendTools({made(u"B"_qs)}).isEmpty());
        QCOMPARE(refused.size(), 2);
        QCOMPARE(m_model->keysInPositionOrder().last(), u"y"_qs);
        QCOMPARE(m_model->rowCount(), m_set->Count());
        QCOMPARE(m_model->renameTool(6, u"B"_qs), u"B(2)"_qs); // its own number is free
    }

    void moving()
    {
        const std::tuple<QString, QString, QString> rows[] = {
            {u"B"_qs, u"c"_qs, u"d1 a2 c3 B4 e5"_qs}, // down: below the target
            {u"c"_qs, u"B"_qs, u"d1 c2 B3 a4 e5"_qs}, // up: above it
            {u"e"_qs, u"d"_qs, u"e1 d2 B3 a4 c5"_qs},
            {u"d"_qs, u"e"_qs, u"B1 a2 c3 e4 d5"_qs},
            {u"dB"_qs, u"c"_qs, u"a1 c2 d3 B4 e5"_qs}, // several keep their order
            {u"ce"_qs, u"B"_qs, u"d1 c2 e3 B4 a5"_qs},
            {u"de"_qs, u"a"_qs, u"B1 a2 d3 e4 c5"_qs}, // from both sides
            {u"dce"_qs, u"c"_qs, u"B1 a2 d3 c4 e5"_qs}, // gathered at one of them
            {u"a"_qs, u"a"_qs, u"d1 B2 a3 c4 e5"_qs},
            {u"dBace"_qs, u"B"_qs, u"d1 B2 a3 c4 e5"_qs},
        };
        for (const auto &[moved, target, expected] : rows) {
            init();
            m_model->sort(2, Qt::DescendingOrder); // rows and positions differ
            const QList<int> found = m_model->MoveTools(rowsOf(moved), rowsOf(target).constFirst());
            QCOMPARE(shown(), expected);
            QCOMPARE(found, rowsOf(moved));
            QCOMPARE(m_set->Count(), 5);
        }
    }

    void removing()
    {
        // Positions close up in their own order, however the list was sorted meanwhile.
        for (const auto &[removed, expected] : {std::pair(u"a"_qs, u"d1 B2 c3 e4"_qs),
                 {u"Bc"_qs, u"d1 a2 e3"_qs}, {u"dBace"_qs, QString()}}) {
            init();
            m_model->sort(0, Qt::AscendingOrder);
            m_model->removeTools(rowsOf(removed));
            m_model->sort(1, Qt::AscendingOrder);
            QCOMPARE(shown(), expected);
            QCOMPARE(m_set->Count(), 5 - removed.size());
            for (const QChar name : removed)
                QVERIFY(!m_set->Items().contains(name));
        }
    }

    void appendingIntoASort()
    {
        m_model->sort(0, Qt::AscendingOrder);
        auto tool = std::make_shared<CVBATool>();
        tool->Description = u"b"_qs;
        QCOMPARE(m_model->appendTools({tool}), QList<int> {2});
        QCOMPARE(shown(), u"a3 B2 b(1)6 c4 d1 e5"_qs);
    }

private:
    /// Names in the order shown, each with its position: "b2 a1".
    QString shown() const
    {
        QStringList items;
        for (int row = 0; row < m_model->rowCount(); ++row)
            items.append(
                m_model->toolAt(row)->Description + QString::number(m_model->positionAt(row)));
        return items.join(u' ');
    }

    QList<int> rowsOf(const QString &names) const
    {
        QList<int> rows;
        for (int row = 0; row < m_model->rowCount(); ++row) {
            if (names.contains(m_model->toolAt(row)->Description))
                rows.append(row);
        }
        return rows;
    }

    QTemporaryDir m_folder;
    ToolSetStorage m_storage {1252, m_folder.path(), m_folder.path()};
    std::unique_ptr<CVBATools> m_set;
    std::unique_ptr<ToolListModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

TSM_TEST(ToolListModel_test);
#include "tst_ToolListModel.moc"
