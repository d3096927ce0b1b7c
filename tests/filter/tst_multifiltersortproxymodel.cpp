#include <zelkoguibase/filter/multifiltersortproxymodel.h>

#include "numbertable.h"
#include "scriptedcondition.h"
#include "signallog.h"

#include <zelkoguibase/filter/numberfiltercondition.h>

#include <QAbstractItemModelTester>
#include <QIcon>
#include <QItemSelectionModel>
#include <QPointer>
#include <QTableView>
#include <QtTest>

#include <random>

using namespace ZelkoGUI::Filter;

namespace {

constexpr int manyRows = 1600; // so many that a change may go all over the list

/// Numbers 0, 10, 20 ... in the first column, the same from the end in the second, 0 to 7 by turns in the third.
QList<NumberTable::Row> numbers(int count)
{
    QList<NumberTable::Row> rows;
    for (int i = 0; i < count; ++i) {
        rows.append({10 * i, 10 * (count - 1 - i), i % 8});
    }
    return rows;
}

bool isOdd(int value)
{
    return value % 2 != 0;
}

auto below(int limit)
{
    return [limit](int value) { return value < limit; };
}

auto equals(int number)
{
    return [number](int value) { return value == number; };
}

bool anything(int)
{
    return true;
}

bool nothing(int)
{
    return false;
}

QList<int> column(const QAbstractItemModel& model, int number)
{
    QList<int> values;
    for (int row = 0; row < model.rowCount(); ++row) {
        values.append(model.index(row, number).data().toInt());
    }
    return values;
}

QList<int> markedColumns(const QAbstractItemModel& model)
{
    QList<int> sections;
    for (int section = 0; section < model.columnCount(); ++section) {
        if (model.headerData(section, Qt::Horizontal, Qt::DecorationRole).canConvert<QIcon>()) {
            sections.append(section);
        }
    }
    return sections;
}

/// A list as it is used: sorted by role 32, following its source.
class List
{
public:
    explicit List(int rows)
        : table(numbers(rows))
    {
        proxy.setSourceModel(&table);
        proxy.setSortRole(Qt::UserRole);
        proxy.setDynamicSortFilter(true);
    }

    ScriptedCondition* add(int number, ScriptedCondition::Test test)
    {
        auto* condition = new ScriptedCondition(number, std::move(test));
        proxy.addFilter(condition);
        return condition;
    }

    NumberTable table;
    MultiFilterSortProxyModel proxy{nullptr};
    QAbstractItemModelTester tester{&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest};
};

QStringList layoutChange()
{
    return {QStringLiteral("begin layout"), QStringLiteral("header changed"), QStringLiteral("end layout")};
}

QStringList removal(int first, int last)
{
    const QString rows = QStringLiteral("%1-%2").arg(first).arg(last);
    return {QStringLiteral("begin remove ") + rows, QStringLiteral("header changed"),
            QStringLiteral("end remove ") + rows};
}

QStringList insertion(int first, int last)
{
    const QString rows = QStringLiteral("%1-%2").arg(first).arg(last);
    return {QStringLiteral("begin insert ") + rows, QStringLiteral("header changed"),
            QStringLiteral("end insert ") + rows};
}

const QStringList header{QStringLiteral("header changed")};

} // namespace

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

    void marksColumnsByTheirOwnConditions();
    void leavesColumnsThatHideNothingUnmarked();
    void marksWhereAllRowsAreHidden();
    void marksNothingForAForeignOrientationOrRole();
    void keepsADecorationOfTheSource();
    void followsTheSourceWithTheMarks();
    void dropsAMarkWhenTheRowBehindItGoes();
    void searchesNoRowsForMarksWhileNoneIsHidden();
    void searchesOnceForAColumnThatRejectsNothing();

    void takesAFewRowsInSteps();
    void takesManyRowsInOneLayoutChange_data();
    void takesManyRowsInOneLayoutChange();
    void takesRowsTogetherInOneStep();
    void takesStepsWhereItDoesNotFollowTheSource();
    void readsEachCellOnceForAChange();
    void takesAChangeFromWithinAChange();

    void keepsSelectionAndCurrentRowOverALayoutChange();
    void tellsOfSelectedRowsThatALayoutChangeHides_data();
    void tellsOfSelectedRowsThatALayoutChangeHides();
    void keepsTheSelectionOfTheWholeListToItsRows();
    void keepsPersistentIndexes();
    void keepsTheScrollPosition();

    void adoptsConditionsWithoutAParent();
    void leavesConditionsOfOthersAlive();
    void showsRowsAgainWhenAConditionDies();
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
    List list(5);
    list.add(0, nothing)->setEnabled(false);
    SignalLog log(&list.proxy);
    list.table.set(2, 1, 7);
    QCOMPARE(list.proxy.rowCount(), 5);
    QCOMPARE(markedColumns(list.proxy), QList<int>());
    QCOMPARE(log.take(), QStringList({QStringLiteral("header changed"), QStringLiteral("changed 2 columns 1-1")}));
}

void tst_MultiFilterSortProxyModel::hidesWhatFailsEitherLimitOfOneColumn()
{
    List list(10);
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
    List list(5);
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
    List list(5);
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
    List list(5);
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
    List list(5);
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

void tst_MultiFilterSortProxyModel::marksColumnsByTheirOwnConditions()
{
    List list(10);
    list.add(1, below(20));
    list.add(2, below(7));
    QCOMPARE(column(list.proxy, 1), QList<int>({10, 0}));
    QCOMPARE(markedColumns(list.proxy), QList<int>({1, 2})); // what the third hides, the second hides too
}

void tst_MultiFilterSortProxyModel::leavesColumnsThatHideNothingUnmarked()
{
    List list(10);
    list.add(0, anything);
    QCOMPARE(markedColumns(list.proxy), QList<int>());
    list.add(1, below(20));
    QCOMPARE(markedColumns(list.proxy), QList<int>({1}));
}

void tst_MultiFilterSortProxyModel::marksWhereAllRowsAreHidden()
{
    List list(10);
    list.add(2, nothing);
    QCOMPARE(list.proxy.rowCount(), 0);
    QCOMPARE(markedColumns(list.proxy), QList<int>({2}));
    list.add(7, nothing); // there is no such column
    QCOMPARE(markedColumns(list.proxy), QList<int>({2}));
    QCOMPARE(list.proxy.headerData(7, Qt::Horizontal, Qt::DecorationRole), QVariant());
}

void tst_MultiFilterSortProxyModel::marksNothingForAForeignOrientationOrRole()
{
    List list(10);
    list.add(1, below(20));
    QCOMPARE(list.proxy.headerData(1, Qt::Vertical, Qt::DecorationRole), QVariant());
    QCOMPARE(list.proxy.headerData(1, Qt::Horizontal, Qt::DisplayRole), QVariant(2));
    QCOMPARE(list.proxy.headerData(7, Qt::Horizontal, Qt::DecorationRole), QVariant());
}

void tst_MultiFilterSortProxyModel::keepsADecorationOfTheSource()
{
    List list(10);
    list.table.decoratedSection = 1;
    list.add(1, below(20));
    list.add(2, below(7));
    QCOMPARE(list.proxy.headerData(1, Qt::Horizontal, Qt::DecorationRole), QVariant(QStringLiteral("own")));
    QCOMPARE(markedColumns(list.proxy), QList<int>({2}));
}

void tst_MultiFilterSortProxyModel::followsTheSourceWithTheMarks()
{
    List list(10);
    list.add(0, below(100));
    list.add(1, below(80));
    QCOMPARE(markedColumns(list.proxy), QList<int>({1}));
    list.table.set(4, 0, 200);
    QCOMPARE(markedColumns(list.proxy), QList<int>({0, 1}));
    list.table.set(4, 0, 20);
    QCOMPARE(markedColumns(list.proxy), QList<int>({1}));
    list.table.insert(3, {{300, 0, 0}, {30, 0, 0}});
    QCOMPARE(markedColumns(list.proxy), QList<int>({0, 1}));
    list.table.reset(numbers(8));
    QCOMPARE(markedColumns(list.proxy), QList<int>());
}

void tst_MultiFilterSortProxyModel::dropsAMarkWhenTheRowBehindItGoes()
{
    List list(10);
    list.add(0, below(90));
    list.add(1, below(90));
    QCOMPARE(markedColumns(list.proxy), QList<int>({0, 1}));
    list.table.remove(9);
    list.table.set(3, 2, 5);
    QCOMPARE(markedColumns(list.proxy), QList<int>({1}));
    list.table.set(0, 1, 5);
    QCOMPARE(markedColumns(list.proxy), QList<int>());
    QCOMPARE(list.proxy.rowCount(), 9);
}

void tst_MultiFilterSortProxyModel::searchesNoRowsForMarksWhileNoneIsHidden()
{
    List list(manyRows);
    list.add(0, anything);
    list.table.takeReads();
    list.table.set(17, 0, 3);
    list.table.set(17, 1, 3);
    QVERIFY(list.table.takeReads() < 30);
}

void tst_MultiFilterSortProxyModel::searchesOnceForAColumnThatRejectsNothing()
{
    List list(manyRows);
    list.add(0, anything);
    list.add(1, below(10 * (manyRows - 1)));
    QCOMPARE(markedColumns(list.proxy), QList<int>({1}));
    list.table.takeReads();
    for (int row = 1; row <= 100; ++row) {
        list.table.set(row, 0, 3);
    }
    QVERIFY(list.table.takeReads() < 3000);
}

void tst_MultiFilterSortProxyModel::takesAFewRowsInSteps()
{
    List list(8);
    SignalLog log(&list.proxy);
    ScriptedCondition* condition = list.add(2, isOdd);
    QCOMPARE(column(list.proxy, 0), QList<int>({10, 30, 50, 70}));
    QCOMPARE(log.take(), removal(6, 6) + removal(4, 4) + removal(2, 2) + removal(0, 0) + header);
    condition->setTest(below(2));
    QCOMPARE(log.take(), removal(1, 3) + insertion(0, 0) + header);
    condition->setEnabled(false);
    QCOMPARE(log.take(), insertion(2, 7) + header);
}

void tst_MultiFilterSortProxyModel::takesManyRowsInOneLayoutChange_data()
{
    QTest::addColumn<int>("sortColumn");
    QTest::addColumn<Qt::SortOrder>("order");
    QTest::newRow("in the order of the source") << -1 << Qt::AscendingOrder;
    QTest::newRow("sorted") << 1 << Qt::AscendingOrder;
    QTest::newRow("sorted downwards") << 0 << Qt::DescendingOrder;
}

void tst_MultiFilterSortProxyModel::takesManyRowsInOneLayoutChange()
{
    QFETCH(int, sortColumn);
    QFETCH(Qt::SortOrder, order);
    List list(manyRows);
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

void tst_MultiFilterSortProxyModel::takesRowsTogetherInOneStep()
{
    List list(manyRows);
    list.proxy.sort(1);
    SignalLog log(&list.proxy);
    ScriptedCondition* condition = list.add(0, below(1000));
    QCOMPARE(log.take(), removal(0, manyRows - 101) + header);
    condition->setTest(nothing);
    QCOMPARE(log.take(), removal(0, 99) + header);
    condition->setEnabled(false);
    QCOMPARE(log.take(), insertion(0, manyRows - 1) + header);
}

void tst_MultiFilterSortProxyModel::takesStepsWhereItDoesNotFollowTheSource()
{
    constexpr int rows = 200;
    List list(rows);
    list.proxy.setDynamicSortFilter(false);
    SignalLog log(&list.proxy);
    list.add(2, isOdd);
    const QStringList texts = log.take();
    QCOMPARE(texts.first(), QStringLiteral("begin remove %1-%1").arg(rows - 2));
    QCOMPARE(texts.count(QStringLiteral("header changed")), rows / 2 + 1);
}

void tst_MultiFilterSortProxyModel::readsEachCellOnceForAChange()
{
    List list(manyRows);
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

void tst_MultiFilterSortProxyModel::takesAChangeFromWithinAChange()
{
    List list(manyRows);
    ScriptedCondition* condition = list.add(2, anything);
    const auto react = [condition] { condition->setTest(equals(5)); };
    connect(&list.proxy, &QAbstractItemModel::layoutChanged, condition, react, Qt::SingleShotConnection);
    condition->setTest(isOdd);
    QCOMPARE(list.proxy.rowCount(), manyRows / 8);
    QCOMPARE(list.proxy.index(0, 2).data().toInt(), 5);
    QCOMPARE(markedColumns(list.proxy), QList<int>({2}));
}

void tst_MultiFilterSortProxyModel::keepsSelectionAndCurrentRowOverALayoutChange()
{
    List list(manyRows);
    list.proxy.sort(1);
    QItemSelectionModel selection(&list.proxy);
    using Flag = QItemSelectionModel::SelectionFlag;
    for (const int row : {403, 803, 804}) {
        selection.select(list.proxy.mapFromSource(list.table.index(row, 0)), Flag::Select | Flag::Rows);
    }
    selection.setCurrentIndex(list.proxy.mapFromSource(list.table.index(803, 1)), Flag::NoUpdate);
    SignalLog log(&list.proxy);
    ScriptedCondition* condition = list.add(2, equals(3)); // 403 and 803 are such, 804 is not
    QCOMPARE(log.take().mid(0, 3), layoutChange());
    const auto selected = [&] {
        QList<int> rows;
        for (const QModelIndex& index : selection.selectedRows()) {
            rows.append(list.proxy.mapToSource(index).row());
        }
        std::sort(rows.begin(), rows.end());
        return rows;
    };
    QCOMPARE(selected(), QList<int>({403, 803}));
    QCOMPARE(list.proxy.mapToSource(selection.currentIndex()), list.table.index(803, 1));
    condition->setEnabled(false);
    QCOMPARE(log.take(), layoutChange() + header);
    QCOMPARE(selected(), QList<int>({403, 803}));
    QCOMPARE(list.proxy.mapToSource(selection.currentIndex()), list.table.index(803, 1));
}

void tst_MultiFilterSortProxyModel::tellsOfSelectedRowsThatALayoutChangeHides_data()
{
    QTest::addColumn<QList<int>>("selected");
    QTest::addColumn<QList<int>>("kept");
    QTest::newRow("a row by itself") << QList<int>{100} << QList<int>{};
    QTest::newRow("the upper end of a range") << QList<int>{100, 101} << QList<int>{101};
    QTest::newRow("the lower end of a range") << QList<int>{101, 102} << QList<int>{101};
    QTest::newRow("the middle of a range") << QList<int>{101, 102, 103} << QList<int>{101, 103};
    QTest::newRow("two rows with hidden ones between") << QList<int>{101, 200} << QList<int>{101};
}

void tst_MultiFilterSortProxyModel::tellsOfSelectedRowsThatALayoutChangeHides()
{
    QFETCH(QList<int>, selected);
    QFETCH(QList<int>, kept);
    List list(manyRows);
    QItemSelectionModel selection(&list.proxy);
    using Flag = QItemSelectionModel::SelectionFlag;
    for (const int row : selected) {
        selection.select(list.proxy.index(row, 0), Flag::Select | Flag::Rows);
    }
    QList<int> told;
    connect(&selection, &QItemSelectionModel::selectionChanged, &selection, [&] {
        told.clear();
        for (const QModelIndex& index : selection.selectedRows()) {
            told.append(index.data().toInt() / 10);
        }
        std::sort(told.begin(), told.end());
    });
    told = {-1};
    SignalLog log(&list.proxy);
    list.add(2, isOdd);
    QCOMPARE(log.take().mid(0, 3), layoutChange());
    QCOMPARE(told, kept);
}

void tst_MultiFilterSortProxyModel::keepsTheSelectionOfTheWholeListToItsRows()
{
    constexpr int rows = 400;
    List list(rows);
    QItemSelectionModel selection(&list.proxy);
    const auto selectAll = [&] {
        const QModelIndex last = list.proxy.index(list.proxy.rowCount() - 1, list.proxy.columnCount() - 1);
        selection.select(QItemSelection(list.proxy.index(0, 0), last), QItemSelectionModel::ClearAndSelect);
    };
    selectAll();
    ScriptedCondition* condition = list.add(2, isOdd);
    QCOMPARE(selection.selectedRows().size(), rows / 2);
    condition->setTest(equals(3));
    QCOMPARE(selection.selectedRows().size(), rows / 8);
    condition->setEnabled(false);
    QCOMPARE(selection.selectedRows().size(), rows / 8); // and not what came between
    for (const QModelIndex& index : selection.selectedRows(2)) {
        QCOMPARE(index.data().toInt(), 3);
    }
}

void tst_MultiFilterSortProxyModel::keepsPersistentIndexes()
{
    constexpr int rows = 800;
    List list(rows);
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

void tst_MultiFilterSortProxyModel::keepsTheScrollPosition()
{
    List list(manyRows);
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

void tst_MultiFilterSortProxyModel::adoptsConditionsWithoutAParent()
{
    List list(10);
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
    List list(10);
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
    List list(10);
    ScriptedCondition* condition = list.add(0, below(20));
    SignalLog log(&list.proxy);
    delete condition;
    QCOMPARE(log.take(), insertion(2, 9) + header);
    QCOMPARE(markedColumns(list.proxy), QList<int>());
    list.proxy.clearFilters();
    QCOMPARE(log.take(), QStringList()); // the list is empty
}

void tst_MultiFilterSortProxyModel::removesAConditionThatItDoesNotHave()
{
    List list(10);
    ScriptedCondition foreign(0, below(20));
    const QPointer<ScriptedCondition> child = new ScriptedCondition(0, below(20), &list.proxy);
    list.proxy.removeFilter(&foreign);
    list.proxy.removeFilter(child);
    QVERIFY(!child);
    list.proxy.removeFilter(nullptr);
    list.proxy.addFilter(nullptr);
    QCOMPARE(list.proxy.rowCount(), 10);
}

void tst_MultiFilterSortProxyModel::clearsNothingFromAnEmptyList()
{
    List list(10);
    SignalLog log(&list.proxy);
    list.table.takeReads();
    list.proxy.clearFilters();
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(list.table.takeReads(), 0);
}

void tst_MultiFilterSortProxyModel::clearsInactiveConditionsWithASignal()
{
    List list(10);
    list.add(0, below(20))->setEnabled(false);
    SignalLog log(&list.proxy);
    list.proxy.clearFilters();
    QCOMPARE(log.take(), header);
}

void tst_MultiFilterSortProxyModel::ignoresRemovedConditions()
{
    List list(10);
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
        List list(10);
        list.proxy.addFilter(condition);
        list.add(1, below(90));
    }
    condition->setEnabled(false);
    List list(10);
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
    List list(10);
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
    std::mt19937 random(seed);
    const auto draw = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    int next = 0;
    const auto newNumber = [&] { return draw(1000) * 100'000 + next++; }; // none twice, so that the order is one
    const auto newRow = [&] { return NumberTable::Row{newNumber(), newNumber(), draw(8)}; };

    List list(0);
    list.proxy.sort(1, seed % 2 == 0 ? Qt::AscendingOrder : Qt::DescendingOrder);
    ScriptedCondition* first = list.add(0, anything);
    ScriptedCondition* second = list.add(2, anything);
    StockProxy stock;
    stock.setSortRole(Qt::UserRole);
    stock.setSourceModel(&list.table);
    stock.sort(1, seed % 2 == 0 ? Qt::AscendingOrder : Qt::DescendingOrder);
    QList<NumberTable::Row> firstRows(rows);
    std::generate(firstRows.begin(), firstRows.end(), newRow);
    list.table.insert(0, firstRows);
    QVERIFY(list.table.rowCount() == rows && list.proxy.rowCount() == rows);

    for (int step = 0; step < steps; ++step) {
        const int count = list.table.rowCount();
        switch (draw(count > 0 ? 8 : 1)) {
        case 0:
            list.table.insert(draw(count + 1), {newRow(), newRow()});
            break;
        case 1:
            list.table.remove(draw(count));
            break;
        case 2:
            list.table.set(draw(count), 0, newNumber());
            break;
        case 3:
            list.table.set(draw(count), 1, newNumber());
            break;
        case 4:
            list.table.set(draw(count), 2, draw(8));
            break;
        case 5:
            stock.first = below(draw(1000) * 100'000);
            first->setTest(stock.first);
            break;
        case 6:
            stock.second = [mask = draw(256)](int value) { return ((mask >> value) & 1) != 0; };
            second->setTest(stock.second);
            break;
        default:
            stock.first = stock.second = anything;
            first->setTest(anything);
            second->setTest(anything);
            break;
        }
        stock.invalidate();
        QCOMPARE(column(list.proxy, 0), column(stock, 0));
        QList<int> marks;
        const auto hides = [&](int number, const ScriptedCondition::Test& test) {
            const QList<int> values = column(list.table, number);
            return list.proxy.rowCount() < values.size() && !std::all_of(values.begin(), values.end(), test);
        };
        Q_EMIT list.proxy.layoutAboutToBeChanged(); // the marks are those of the last change that the list told of
        Q_EMIT list.proxy.layoutChanged();
        marks += hides(0, stock.first) ? QList<int>{0} : QList<int>{};
        marks += hides(2, stock.second) ? QList<int>{2} : QList<int>{};
        QCOMPARE(markedColumns(list.proxy), marks);
    }
}

QTEST_MAIN(tst_MultiFilterSortProxyModel)

#include "tst_multifiltersortproxymodel.moc"
