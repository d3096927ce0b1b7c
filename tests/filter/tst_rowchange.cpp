#include "filteredlist.h"
#include "patience.h"
#include "signallog.h"

#include <QItemSelectionModel>
#include <QTableView>
#include <QtTest>

#include <functional>

using namespace ZelkoGUI::Filter;

namespace {

using React = std::function<void()>;
using Connect = std::function<void(QItemSelectionModel& selection, QAbstractItemModel& list, QObject* context, React)>;
using Trigger = std::function<void(FilteredList& list, ScriptedCondition& condition)>;

} // namespace

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
    using Selection = QItemSelectionModel;
    QTest::addColumn<Connect>("connectTo");
    QTest::addColumn<Trigger>("trigger");
    const auto toList = [](auto signal) -> Connect {
        return [=](Selection&, Model& list, QObject* context, const React& react) {
            connect(&list, signal, context, react, Qt::SingleShotConnection);
        };
    };
    const auto toSelection = [](auto signal) -> Connect {
        return [=](Selection& selection, Model&, QObject* context, const React& react) {
            connect(&selection, signal, context, react, Qt::SingleShotConnection);
        };
    };
    const Trigger refiltered = [](FilteredList&, ScriptedCondition& condition) { condition.setTest(isOdd); };
    const Trigger hidden = [](FilteredList& list, ScriptedCondition&) { list.table.set(2, 2, 8); };
    const Trigger moved = [](FilteredList& list, ScriptedCondition&) { list.table.set(2, 1, -5); };
    const Trigger added = [](FilteredList& list, ScriptedCondition&) { list.table.insert(3, {{1, 1, 1}}); };
    const Trigger removed = [](FilteredList& list, ScriptedCondition&) { list.table.remove(2); };
    const Trigger replaced = [](FilteredList& list, ScriptedCondition&) {
        list.table.reset(numbers(list.table.rowCount()));
    };

    QTest::newRow("before rows go") << toList(&Model::rowsAboutToBeRemoved) << refiltered;
    QTest::newRow("when rows went") << toList(&Model::rowsRemoved) << refiltered;
    QTest::newRow("when the header changes") << toList(&Model::headerDataChanged) << refiltered;
    QTest::newRow("when the selection changes") << toSelection(&Selection::selectionChanged) << refiltered;
    QTest::newRow("when the current row changes") << toSelection(&Selection::currentChanged) << refiltered;

    QTest::newRow("before a changed row goes") << toList(&Model::rowsAboutToBeRemoved) << hidden;
    QTest::newRow("when a changed row went") << toList(&Model::rowsRemoved) << hidden;
    QTest::newRow("when the selection loses a changed row") << toSelection(&Selection::selectionChanged) << hidden;
    QTest::newRow("before a changed row moves") << toList(&Model::layoutAboutToBeChanged) << moved;
    QTest::newRow("when a changed row has moved") << toList(&Model::layoutChanged) << moved;
    QTest::newRow("when a row changes") << toList(&Model::dataChanged) << moved;
    QTest::newRow("before a new row comes") << toList(&Model::rowsAboutToBeInserted) << added;
    QTest::newRow("when a new row came") << toList(&Model::rowsInserted) << added;
    QTest::newRow("before a row of the source goes") << toList(&Model::rowsAboutToBeRemoved) << removed;
    QTest::newRow("when a row of the source went") << toList(&Model::rowsRemoved) << removed;
    QTest::newRow("when the selection loses a row") << toSelection(&Selection::selectionChanged) << removed;
    QTest::newRow("before all rows go") << toList(&Model::modelAboutToBeReset) << replaced;
    QTest::newRow("when all rows are others") << toList(&Model::modelReset) << replaced;
}

void tst_RowChange::takesAChangeFromWithinAChange()
{
    QFETCH(Connect, connectTo);
    QFETCH(Trigger, trigger);
    for (const int rows : {40, manyRows}) { // in steps, and in layout changes
        FilteredList list(rows);
        list.proxy.sort(1);
        ScriptedCondition* condition = list.add(2, below(4));
        QItemSelectionModel selection(&list.proxy);
        selection.setCurrentIndex(list.proxy.mapFromSource(list.table.index(2, 0)),
                                  QItemSelectionModel::ClearAndSelect);
        bool reacted = false;
        connectTo(selection, list.proxy, condition, [&] {
            reacted = true;
            condition->setTest(equals(5));
        });
        trigger(list, *condition);
        QVERIFY(reacted);
        const QList<int> values = column(list.proxy, 2);
        QCOMPARE(values, QList<int>(rows / 8, 5));
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
    QVERIFY(QTest::qWaitForWindowExposed(&view, patience));
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
