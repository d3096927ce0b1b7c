#include <zelkoguibase/filter/multifiltersortproxymodel.h>

#include "filteredlist.h"
#include "signallog.h"

#include <zelkoguibase/filter/numberfiltercondition.h>

#include <QPointer>
#include <QtTest>

#include <random>

using namespace ZelkoGUI::Filter;

class tst_MultiFilterSortProxyModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsAllWithoutActiveConditions();
    void hidesWhatFailsEitherLimitOfOneColumn();
    void asksAConditionThatIsAddedTwiceOnce();
    void asksInOrderUpToTheFirstFailure();
    void readsNoCellForInactiveConditions();
    void addsInactiveConditionsWithoutFiltering();

    void adoptsConditionsWithoutAParent();
    void leavesConditionsOfOthersAlive();
    void showsRowsAgainWhenAConditionDies();
    void showsManyRowsAgainWhenAConditionOfOthersDies();
    void removesAConditionThatItDoesNotHave();
    void clearsNothingFromAnEmptyList();
    void clearsInactiveConditionsWithASignal();
    void ignoresRemovedConditions();
    void diesBeforeAndAfterItsConditions();

    void livesWithoutASource();
    void changesItsSource();
    void outlivesItsSource();

    void agreesWithAStockProxy_data();
    void agreesWithAStockProxy();
};

void tst_MultiFilterSortProxyModel::showsAllWithoutActiveConditions()
{
    for (const bool hasCondition : {false, true}) {
        FilteredList list(5);
        if (hasCondition) {
            list.add(0, nothing)->setEnabled(false);
        }
        SignalLog log(&list.proxy);
        list.table.set(2, 1, 7);
        QCOMPARE(list.proxy.rowCount(), 5);
        QCOMPARE(markedColumns(list.proxy), QList<int>());
        QCOMPARE(log.take(), QStringList({QStringLiteral("header changed"), QStringLiteral("changed 2 columns 1-1")}));
    }
}

void tst_MultiFilterSortProxyModel::hidesWhatFailsEitherLimitOfOneColumn()
{
    FilteredList list(10);
    auto* lower = new NumberFilterCondition<double>(20, 0, Qt::UserRole + 1, nullptr);
    auto* upper = new NumberFilterCondition<double>(50, 0, Qt::UserRole + 1, nullptr);
    lower->setComparator(NumberComparison::GreaterOrEqual);
    upper->setComparator(NumberComparison::LessOrEqual);
    list.proxy.addFilter(lower);
    list.proxy.addFilter(upper);
    lower->setEnabled(true);
    QCOMPARE(column(list.proxy, 0), QList<int>({20, 30, 40, 50, 60, 70, 80, 90}));
    upper->setEnabled(true);
    QCOMPARE(column(list.proxy, 0), QList<int>({20, 30, 40, 50}));
}

void tst_MultiFilterSortProxyModel::asksAConditionThatIsAddedTwiceOnce()
{
    FilteredList list(5);
    ScriptedCondition* condition = list.add(0, below(20));
    SignalLog log(&list.proxy);
    list.proxy.addFilter(condition);
    QCOMPARE(log.take(), QStringList());
    condition->takeAsked();
    QVERIFY(list.proxy.filterAcceptsRow(0, QModelIndex()));
    QCOMPARE(condition->takeAsked(), 1);
    list.proxy.removeFilter(condition);
    QCOMPARE(list.proxy.rowCount(), 5);
}

void tst_MultiFilterSortProxyModel::asksInOrderUpToTheFirstFailure()
{
    FilteredList list(5);
    ScriptedCondition* first = list.add(0, below(20));
    ScriptedCondition* second = list.add(1, anything);
    first->takeAsked();
    second->takeAsked();
    list.table.takeReads();
    QVERIFY(!list.proxy.filterAcceptsRow(4, QModelIndex()));
    QCOMPARE(first->takeAsked(), 1);
    QCOMPARE(second->takeAsked(), 0);
    QCOMPARE(list.table.takeReads(), 1);
    QVERIFY(list.proxy.filterAcceptsRow(1, QModelIndex()));
    QCOMPARE(first->takeAsked(), 1);
    QCOMPARE(second->takeAsked(), 1);
}

void tst_MultiFilterSortProxyModel::readsNoCellForInactiveConditions()
{
    FilteredList list(5);
    ScriptedCondition* condition = list.add(0, nothing);
    condition->setEnabled(false);
    condition->takeAsked();
    list.table.takeReads();
    QVERIFY(list.proxy.filterAcceptsRow(0, QModelIndex()));
    QCOMPARE(condition->takeAsked(), 0);
    QCOMPARE(list.table.takeReads(), 0);
}

void tst_MultiFilterSortProxyModel::addsInactiveConditionsWithoutFiltering()
{
    FilteredList list(5);
    auto* condition = new ScriptedCondition(0, nothing);
    condition->setEnabled(false);
    SignalLog log(&list.proxy);
    list.table.takeReads();
    list.proxy.addFilter(condition);
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(list.table.takeReads(), 0);
    list.proxy.removeFilter(condition);
    QCOMPARE(log.take(), QStringList());
}

void tst_MultiFilterSortProxyModel::adoptsConditionsWithoutAParent()
{
    FilteredList list(10);
    const QPointer<ScriptedCondition> removed = list.add(0, below(20));
    const QPointer<ScriptedCondition> cleared = list.add(1, below(20));
    QCOMPARE(removed->parent(), &list.proxy);
    list.proxy.removeFilter(removed);
    QVERIFY(!removed);
    list.proxy.clearFilters();
    QVERIFY(!cleared);
    QCOMPARE(list.proxy.rowCount(), 10);
}

void tst_MultiFilterSortProxyModel::leavesConditionsOfOthersAlive()
{
    FilteredList list(10);
    QObject owner;
    auto* removed = new ScriptedCondition(0, below(20), &owner);
    auto* cleared = new ScriptedCondition(1, below(90), &owner);
    list.proxy.addFilter(removed);
    list.proxy.addFilter(cleared);
    QCOMPARE(list.proxy.rowCount(), 1);
    list.proxy.removeFilter(removed);
    QCOMPARE(list.proxy.rowCount(), 9);
    list.proxy.clearFilters();
    QCOMPARE(list.proxy.rowCount(), 10);
    QCOMPARE(removed->parent(), &owner);
    QCOMPARE(cleared->parent(), &owner);
}

void tst_MultiFilterSortProxyModel::showsRowsAgainWhenAConditionDies()
{
    FilteredList list(10);
    ScriptedCondition* condition = list.add(0, below(20));
    SignalLog log(&list.proxy);
    delete condition;
    QCOMPARE(log.take(), insertion(2, 9) + header);
    QCOMPARE(markedColumns(list.proxy), QList<int>());
    list.proxy.clearFilters();
    QCOMPARE(log.take(), QStringList()); // the list is empty
}

void tst_MultiFilterSortProxyModel::showsManyRowsAgainWhenAConditionOfOthersDies()
{
    FilteredList list(manyRows);
    QObject owner;
    auto* condition = new ScriptedCondition(2, isOdd, &owner);
    list.proxy.addFilter(condition);
    list.add(0, below(10 * manyRows));
    SignalLog log(&list.proxy);
    delete condition;
    QCOMPARE(log.take(), layoutChange() + header);
    QCOMPARE(list.proxy.rowCount(), manyRows);
    QCOMPARE(markedColumns(list.proxy), QList<int>());
}

void tst_MultiFilterSortProxyModel::removesAConditionThatItDoesNotHave()
{
    FilteredList list(10);
    ScriptedCondition foreign(0, below(20));
    const QPointer<ScriptedCondition> child = new ScriptedCondition(0, below(20), &list.proxy);
    SignalLog log(&list.proxy);
    list.proxy.removeFilter(&foreign);
    QCOMPARE(log.take(), header); // active ones have the list looked at, whosever they are
    list.proxy.removeFilter(child);
    QCOMPARE(log.take(), header);
    QVERIFY(!child);
    list.proxy.removeFilter(nullptr);
    list.proxy.addFilter(nullptr);
    QCOMPARE(list.proxy.rowCount(), 10);
}

void tst_MultiFilterSortProxyModel::clearsNothingFromAnEmptyList()
{
    FilteredList list(10);
    SignalLog log(&list.proxy);
    list.table.takeReads();
    list.proxy.clearFilters();
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(list.table.takeReads(), 0);
}

void tst_MultiFilterSortProxyModel::clearsInactiveConditionsWithASignal()
{
    FilteredList list(10);
    list.add(0, below(20))->setEnabled(false);
    SignalLog log(&list.proxy);
    list.proxy.clearFilters();
    QCOMPARE(log.take(), header);
}

void tst_MultiFilterSortProxyModel::ignoresRemovedConditions()
{
    FilteredList list(10);
    QObject owner;
    auto* condition = new ScriptedCondition(0, below(20), &owner);
    list.proxy.addFilter(condition);
    list.proxy.removeFilter(condition);
    SignalLog log(&list.proxy);
    condition->setTest(nothing);
    condition->setEnabled(false);
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(list.proxy.rowCount(), 10);
}

void tst_MultiFilterSortProxyModel::diesBeforeAndAfterItsConditions()
{
    QObject owner;
    auto* condition = new ScriptedCondition(0, below(20), &owner);
    {
        FilteredList list(10);
        list.proxy.addFilter(condition);
        list.add(1, below(90));
    }
    condition->setEnabled(false);
    FilteredList list(10);
    list.proxy.addFilter(condition);
    condition->setEnabled(true);
    delete condition;
    QCOMPARE(list.proxy.rowCount(), 10);
}

void tst_MultiFilterSortProxyModel::livesWithoutASource()
{
    MultiFilterSortProxyModel proxy(nullptr);
    QSignalSpy headers(&proxy, &QAbstractItemModel::headerDataChanged);
    auto* condition = new ScriptedCondition(0, nothing);
    proxy.addFilter(condition);
    QCOMPARE(headers.size(), 1);
    QCOMPARE(headers[0][0].value<Qt::Orientation>(), Qt::Horizontal);
    QCOMPARE(headers[0].mid(1), QVariantList({0, -1}));
    condition->setTest(anything);
    QCOMPARE(headers.size(), 2);
    QCOMPARE(proxy.headerData(0, Qt::Horizontal, Qt::DecorationRole), QVariant());
    proxy.clearFilters();
    QCOMPARE(headers.size(), 3);
    NumberTable table(numbers(3));
    proxy.setSourceModel(&table);
    QCOMPARE(proxy.rowCount(), 3);
    proxy.setSourceModel(nullptr);
    QCOMPARE(proxy.rowCount(), 0);
}

void tst_MultiFilterSortProxyModel::changesItsSource()
{
    FilteredList list(10);
    list.add(0, below(30));
    NumberTable other(numbers(2));
    list.proxy.setSourceModel(&other);
    QCOMPARE(column(list.proxy, 0), QList<int>({0, 10}));
    QCOMPARE(markedColumns(list.proxy), QList<int>());
    SignalLog log(&list.proxy);
    list.table.set(0, 0, 1000);
    QCOMPARE(log.take(), QStringList());
    other.insert(2, {{40, 0, 0}, {20, 0, 0}});
    QCOMPARE(markedColumns(list.proxy), QList<int>({0}));
    QCOMPARE(log.take(), insertion(2, 2));
    QSignalSpy headers(&list.proxy, &QAbstractItemModel::headerDataChanged);
    other.addColumn();
    QCOMPARE(markedColumns(list.proxy), QList<int>({0}));
    QCOMPARE(headers.takeLast(), (QVariantList{QVariant::fromValue(Qt::Horizontal), 0, 3}));
    other.removeLastColumn();
    QCOMPARE(markedColumns(list.proxy), QList<int>({0}));
    QCOMPARE(headers.takeLast(), (QVariantList{QVariant::fromValue(Qt::Horizontal), 0, 2}));
}

void tst_MultiFilterSortProxyModel::outlivesItsSource()
{
    MultiFilterSortProxyModel proxy(nullptr);
    auto* condition = new ScriptedCondition(0, below(20));
    proxy.addFilter(condition);
    auto table = std::make_unique<NumberTable>(numbers(5));
    proxy.setSourceModel(table.get());
    QCOMPARE(proxy.rowCount(), 2);
    table.reset();
    QCOMPARE(proxy.rowCount(), 0);
    condition->setTest(anything);
    QCOMPARE(proxy.rowCount(), 0);
}

/// The same verdicts by a stock proxy that forgets all it knows before each comparison.
class StockProxy : public QSortFilterProxyModel
{
public:
    bool filterAcceptsRow(int row, const QModelIndex&) const override
    {
        const auto value = [&](int number) { return sourceModel()->index(row, number).data().toInt(); };
        return first(value(0)) && second(value(2));
    }

    ScriptedCondition::Test first = anything;
    ScriptedCondition::Test second = anything;
};

/// Both kinds of list over one table that changes at random, with conditions that do.
class RandomWalk
{
public:
    RandomWalk(int rows, unsigned seed)
        : m_random(seed)
    {
        const auto order = seed % 2 == 0 ? Qt::AscendingOrder : Qt::DescendingOrder;
        list.proxy.sort(1, order);
        stock.setSortRole(Qt::UserRole);
        stock.setSourceModel(&list.table);
        stock.sort(1, order);
        QList<NumberTable::Row> firstRows(rows);
        std::generate(firstRows.begin(), firstRows.end(), [this] { return newRow(); });
        list.table.insert(0, firstRows);
    }

    void step()
    {
        if (list.table.rowCount() == 0 || draw(8) == 0) {
            list.table.insert(draw(list.table.rowCount() + 1), {newRow(), newRow()});
        } else if (draw(2) == 0) {
            changeTable();
        } else {
            changeConditions();
        }
        stock.invalidate();
    }

    /// By what each column's own condition says of all rows.
    QList<int> expectedMarks() const
    {
        const auto hides = [this](int number, const ScriptedCondition::Test& test) {
            const QList<int> values = column(list.table, number);
            return stock.rowCount() < values.size() && !std::all_of(values.begin(), values.end(), test);
        };
        QList<int> marks;
        marks += hides(0, stock.first) ? QList<int>{0} : QList<int>{};
        marks += hides(2, stock.second) ? QList<int>{2} : QList<int>{};
        return marks;
    }

    FilteredList list{0};
    StockProxy stock;

private:
    int draw(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
    int newNumber() { return draw(1000) * 100'000 + m_next++; } // none twice, so that the order is one
    NumberTable::Row newRow() { return {newNumber(), newNumber(), draw(8)}; }

    void changeTable()
    {
        const int row = draw(list.table.rowCount());
        const int number = draw(4);
        if (number == 3) {
            list.table.remove(row);
        } else {
            list.table.set(row, number, number == 2 ? draw(8) : newNumber());
        }
    }

    void changeConditions()
    {
        const int kind = draw(3);
        if (kind == 0) {
            stock.first = below(draw(1000) * 100'000);
        } else if (kind == 1) {
            stock.second = [mask = draw(256)](int value) { return ((mask >> value) & 1) != 0; };
        } else {
            stock.first = stock.second = anything;
        }
        m_first->setTest(stock.first);
        m_second->setTest(stock.second);
    }

    std::mt19937 m_random;
    int m_next = 0;
    ScriptedCondition* const m_first = list.add(0, anything);
    ScriptedCondition* const m_second = list.add(2, anything);
};

void tst_MultiFilterSortProxyModel::agreesWithAStockProxy_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("steps");
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 4; ++seed) {
        QTest::addRow("a short list, draw %u", seed) << 12 << 300 << seed;
        QTest::addRow("a long list, draw %u", seed) << 400 << 60 << seed;
    }
}

void tst_MultiFilterSortProxyModel::agreesWithAStockProxy()
{
    QFETCH(int, rows);
    QFETCH(int, steps);
    QFETCH(unsigned, seed);
    RandomWalk walk(rows, seed);
    QCOMPARE(walk.list.proxy.rowCount(), rows);
    for (int step = 0; step < steps; ++step) {
        walk.step();
        QCOMPARE(column(walk.list.proxy, 0), column(walk.stock, 0));
        Q_EMIT walk.list.proxy.layoutAboutToBeChanged(); // the marks are those of the last change that was told of
        Q_EMIT walk.list.proxy.layoutChanged();
        QCOMPARE(markedColumns(walk.list.proxy), walk.expectedMarks());
    }
}

QTEST_MAIN(tst_MultiFilterSortProxyModel)

#include "tst_multifiltersortproxymodel.moc"
