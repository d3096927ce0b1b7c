#include "filteredlist.h"
#include "signallog.h"

#include <QItemSelectionModel>
#include <QTableView>
#include <QtTest>

#include <functional>

using namespace ZelkoGUI::Filter;

class tst_RowChange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesAFewRowsInSteps();
    void takesManyRowsInOneLayoutChange_data();
    void takesManyRowsInOneLayoutChange();
    void takesRowsTogetherInOneStep();
    void takesStepsWhereItDoesNotFollowTheSource();
    void readsEachCellOnceForAChange();
    void takesAChangeFromWithinAChange_data();
    void takesAChangeFromWithinAChange();
    void keepsPersistentIndexes();
    void keepsTheScrollPosition();
};

void tst_RowChange::takesAFewRowsInSteps()
{
    FilteredList list(8);
    SignalLog log(&list.proxy);
    ScriptedCondition* condition = list.add(2, isOdd);
    QCOMPARE(column(list.proxy, 0), QList<int>({10, 30, 50, 70}));
    QCOMPARE(log.take(), removal(6, 6) + removal(4, 4) + removal(2, 2) + removal(0, 0) + header);
    condition->setTest(below(2));
    QCOMPARE(log.take(), removal(1, 3) + insertion(0, 0) + header);
    condition->setEnabled(false);
    QCOMPARE(log.take(), insertion(2, 7) + header);
}

void tst_RowChange::takesManyRowsInOneLayoutChange_data()
{
    QTest::addColumn<int>("sortColumn");
    QTest::addColumn<Qt::SortOrder>("order");
    QTest::newRow("in the order of the source") << -1 << Qt::AscendingOrder;
    QTest::newRow("sorted") << 1 << Qt::AscendingOrder;
    QTest::newRow("sorted downwards") << 0 << Qt::DescendingOrder;
}

void tst_RowChange::takesManyRowsInOneLayoutChange()
{
    QFETCH(int, sortColumn);
    QFETCH(Qt::SortOrder, order);
    FilteredList list(manyRows);
    list.proxy.sort(sortColumn, order);
    SignalLog log(&list.proxy);
    ScriptedCondition* condition = list.add(2, equals(3));
    QCOMPARE(list.proxy.rowCount(), manyRows / 8);
    QCOMPARE(log.take(), layoutChange() + header);
    condition->setTest(isOdd);
    QCOMPARE(list.proxy.rowCount(), manyRows / 2);
    QCOMPARE(log.take(), layoutChange() + header);
    QList<int> shown = column(list.proxy, 0);
    QCOMPARE(std::is_sorted(shown.begin(), shown.end()), sortColumn == -1);
    QCOMPARE(std::is_sorted(shown.rbegin(), shown.rend()), sortColumn != -1);
    list.proxy.clearFilters();
    QCOMPARE(list.proxy.rowCount(), manyRows);
    QCOMPARE(log.take(), layoutChange() + header);
}

void tst_RowChange::takesRowsTogetherInOneStep()
{
    FilteredList list(manyRows);
    list.proxy.sort(1);
    SignalLog log(&list.proxy);
    ScriptedCondition* condition = list.add(0, below(1000));
    QCOMPARE(log.take(), removal(0, manyRows - 101) + header);
    condition->setTest(nothing);
    QCOMPARE(log.take(), removal(0, 99) + header);
    condition->setEnabled(false);
    QCOMPARE(log.take(), insertion(0, manyRows - 1) + header);
}

void tst_RowChange::takesStepsWhereItDoesNotFollowTheSource()
{
    constexpr int rows = 200;
    FilteredList list(rows);
    list.proxy.setDynamicSortFilter(false);
    SignalLog log(&list.proxy);
    list.add(2, isOdd);
    const QStringList texts = log.take();
    QCOMPARE(texts.first(), QStringLiteral("begin remove %1-%1").arg(rows - 2));
    QCOMPARE(texts.count(QStringLiteral("header changed")), rows / 2 + 1);
}

void tst_RowChange::readsEachCellOnceForAChange()
{
    FilteredList list(manyRows);
    ScriptedCondition* first = list.add(2, equals(3));
    ScriptedCondition* second = list.add(0, anything);
    first->takeAsked();
    second->takeAsked();
    first->setTest(isOdd);
    QCOMPARE(first->takeAsked(), manyRows);
    QCOMPARE(second->takeAsked(), manyRows); // it rejects nothing, which takes all rows to know
    second->setTest([](int value) { return value > 0; });
    QCOMPARE(first->takeAsked(), manyRows);
    QCOMPARE(second->takeAsked(), manyRows / 2 + 1); // the first row is rejected by both
}

void tst_RowChange::takesAChangeFromWithinAChange_data()
{
    using Model = QAbstractItemModel;
    using React = std::function<void()>;
    using Connect = std::function<void(QItemSelectionModel&, Model&, QObject*, React)>;
    QTest::addColumn<Connect>("connectTo");
    const auto toList = [](auto signal) -> Connect {
        return [=](QItemSelectionModel&, Model& list, QObject* context, const React& react) {
            connect(&list, signal, context, react, Qt::SingleShotConnection);
        };
    };
    const auto toSelection = [](auto signal) -> Connect {
        return [=](QItemSelectionModel& selection, Model&, QObject* context, const React& react) {
            connect(&selection, signal, context, react, Qt::SingleShotConnection);
        };
    };
    QTest::newRow("before rows go") << toList(&Model::rowsAboutToBeRemoved);
    QTest::newRow("when rows went") << toList(&Model::rowsRemoved);
    QTest::newRow("before rows come") << toList(&Model::rowsAboutToBeInserted);
    QTest::newRow("when rows came") << toList(&Model::rowsInserted);
    QTest::newRow("before the layout changes") << toList(&Model::layoutAboutToBeChanged);
    QTest::newRow("when the layout has changed") << toList(&Model::layoutChanged);
    QTest::newRow("when the selection changes") << toSelection(&QItemSelectionModel::selectionChanged);
    QTest::newRow("when the current row changes") << toSelection(&QItemSelectionModel::currentChanged);
}

void tst_RowChange::takesAChangeFromWithinAChange()
{
    QFETCH(std::function<void(QItemSelectionModel&, QAbstractItemModel&, QObject*, std::function<void()>)>, connectTo);
    for (const int rows : {40, manyRows}) { // in steps, and in layout changes
        FilteredList list(rows);
        ScriptedCondition* condition = list.add(2, anything);
        QItemSelectionModel selection(&list.proxy);
        selection.setCurrentIndex(list.proxy.index(2, 0), QItemSelectionModel::ClearAndSelect);
        connectTo(selection, list.proxy, condition, [condition] { condition->setTest(equals(5)); });
        condition->setTest(isOdd);
        condition->setTest(below(4));
        condition->setTest(equals(5)); // where nothing was told of the first change
        QCOMPARE(list.proxy.rowCount(), rows / 8);
        QCOMPARE(list.proxy.index(0, 2).data().toInt(), 5);
        QCOMPARE(markedColumns(list.proxy), QList<int>({2}));
    }
}

void tst_RowChange::keepsPersistentIndexes()
{
    constexpr int rows = 800;
    FilteredList list(rows);
    list.proxy.sort(1);
    QList<QPersistentModelIndex> indexes;
    for (int row = 0; row < rows; row += 5) {
        indexes.append(QPersistentModelIndex(list.proxy.mapFromSource(list.table.index(row, 2))));
    }
    ScriptedCondition* condition = list.add(2, isOdd);
    int kept = 0;
    for (int i = 0; i < indexes.size(); ++i) {
        const bool isShown = list.table.index(5 * i, 2).data().toInt() % 2 != 0;
        QCOMPARE(indexes[i].isValid(), isShown);
        QVERIFY(!isShown || list.proxy.mapToSource(indexes[i]) == list.table.index(5 * i, 2));
        kept += isShown ? 1 : 0;
    }
    QCOMPARE(kept, rows / 10);
    condition->setEnabled(false);
    QCOMPARE(list.proxy.mapToSource(indexes[1]), list.table.index(5, 2));
}

void tst_RowChange::keepsTheScrollPosition()
{
    FilteredList list(manyRows);
    ScriptedCondition* condition = list.add(2, isOdd);
    QTableView view;
    view.setModel(&list.proxy);
    view.resize(300, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.verticalScrollBar()->setValue(200);
    SignalLog log(&list.proxy);
    condition->setEnabled(false);
    QCOMPARE(log.take(), layoutChange() + header);
    QCoreApplication::processEvents();
    QCOMPARE(view.verticalScrollBar()->value(), 200);
    condition->setEnabled(true);
    QCoreApplication::processEvents();
    QCOMPARE(view.verticalScrollBar()->value(), 200);
}

QTEST_MAIN(tst_RowChange)

#include "tst_rowchange.moc"
