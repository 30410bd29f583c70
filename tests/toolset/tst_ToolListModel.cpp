#include "model/ToolSetDocument.h"
#include "model/ToolSetStorage.h"
#include "support/TestRunner.h"
#include "toolset/ToolListModel.h"

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QRandomGenerator>
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
        m_set = std::make_unique<ToolSetDocument>(m_storage);
        const std::pair<QString, QString> tools[] = {{u"d"_qs, u"z"_qs}, {u"B"_qs, u"y"_qs},
            {u"a"_qs, u"Y"_qs}, {u"c"_qs, u"x"_qs}, {u"e"_qs, u""_qs}};
        for (const auto &[name, location] : tools) {
            auto tool = std::make_shared<CVBATool>();
            tool->Description = name;
            tool->setLocation(location);
            QCOMPARE(m_set->append({tool}).size(), 1);
        }
        m_model = std::make_unique<ToolListModel>(*m_set, 1252);
        m_tester = std::make_unique<QAbstractItemModelTester>(
            m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
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
            QCOMPARE(m_set->keysInOrder().join(u' '), u"d B a c e"_qs);
        }
    }

    void selectionFollowsItsTool()
    {
        const QPersistentModelIndex location(m_model->index(2, 2)); // "a"
        m_model->sort(0, Qt::AscendingOrder);
        QCOMPARE(location.row(), 0);
        m_set->move({3}, 5);
        QCOMPARE(location.row(), 0);
        m_model->sort(1, Qt::AscendingOrder);
        QCOMPARE(location.row(), 4);
        QCOMPARE(location.data().toString(), u"Y"_qs);
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
            const int place = m_model->positionAt(rowsOf(target).constFirst());
            const QList<int> now = m_set->move(m_model->positionsOf(rowsOf(moved)), place);
            QCOMPARE(now, m_model->positionsOf(rowsOf(moved)));
            m_model->sort(1, Qt::AscendingOrder);
            QCOMPARE(shown(), expected);
        }
    }

    /// After each edit and undo the list is what a new one would be.
    void followsTheDocument()
    {
        QRandomGenerator random(7);
        const auto some = [&](int below) {
            QList<int> positions;
            for (int position = 1; position <= m_set->count(); ++position) {
                if (random.bounded(10) < below)
                    positions.append(position);
            }
            return positions;
        };
        const QStringList filters {QString(), u"name:d"_qs, u"name:(1"_qs, u"location:y"_qs};
        QString filter;
        for (int step = 0; step < 400; ++step) {
            switch (random.bounded(m_set->count() > 300 ? 7 : 10)) {
            case 0: // three stay
                m_set->remove(some(random.bounded(10)).mid(3));
                break;
            case 1:
                if (m_set->count() > 0)
                    m_set->move(some(2), random.bounded(m_set->count()) + 1);
                break;
            case 2:
                m_model->sort(random.bounded(3), Qt::SortOrder(random.bounded(2)));
                break;
            case 3:
            case 4:
                m_set->undo();
                break;
            case 5:
                m_set->redo();
                break;
            case 6:
                filter = filters[random.bounded(filters.size())];
                m_model->setFilter(ToolFilter(filter));
                break;
            default: {
                QList<ToolPtr> tools;
                for (int count = random.bounded(100); count > 0; --count)
                    tools.append(std::make_shared<CVBATool>(
                        *m_set->toolsInOrder().at(size_t(random.bounded(3)))));
                m_set->append(tools);
            }
            }
            ToolListModel fresh(*m_set, 1252);
            fresh.sort(m_model->sortKey(), m_model->sortOrder());
            fresh.setFilter(ToolFilter(filter));
            QCOMPARE(shown(*m_model), shown(fresh));
            QList<int> positions = some(3);
            const QList<int> found = m_model->positionsOf(m_model->rowsOf(positions));
            positions.removeIf([&](int position) { return fresh.rowOf(position) < 0; });
            QCOMPARE(found, positions);
        }
    }

private:
    /// Names in the order shown, each with its position: "b2 a1".
    QString shown() const { return shown(*m_model); }
    static QString shown(const ToolListModel &model)
    {
        QStringList items;
        for (int row = 0; row < model.rowCount(); ++row)
            items.append(model.toolAt(row)->Description + QString::number(model.positionAt(row)));
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
    std::unique_ptr<ToolSetDocument> m_set;
    std::unique_ptr<ToolListModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

TSM_TEST(ToolListModel_test);
#include "tst_ToolListModel.moc"
