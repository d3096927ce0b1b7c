#include "filteredlist.h"

#include <resources/zelkoicons.h>

#include <QtTest>

using namespace ZelkoGUI::Filter;

class tst_RejectingColumns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }

    void marksColumnsByTheirOwnConditions();
    void leavesColumnsThatHideNothingUnmarked();
    void marksWhereAllRowsAreHidden();
    void marksNothingForAForeignOrientationOrRole();
    void keepsADecorationOfTheSource();
    void followsTheSourceWithTheMarks();
    void dropsAMarkWhenTheRowBehindItGoes();
    void searchesNoRowsForMarksWhileNoneIsHidden();
    void searchesOnceForAColumnThatRejectsNothing();
    void findsWhatCameWhileNoRowWasHidden_data();
    void findsWhatCameWhileNoRowWasHidden();
    void marksWithOneIcon();
};

void tst_RejectingColumns::marksColumnsByTheirOwnConditions()
{
    FilteredList list(10);
    list.add(1, below(20));
    list.add(2, below(7));
    QCOMPARE(column(list.proxy, 1), QList<int>({10, 0}));
    QCOMPARE(markedColumns(list.proxy), QList<int>({1, 2})); // what the third hides, the second hides too
}

void tst_RejectingColumns::leavesColumnsThatHideNothingUnmarked()
{
    FilteredList list(10);
    list.add(0, anything);
    QCOMPARE(markedColumns(list.proxy), QList<int>());
    list.add(1, below(20));
    QCOMPARE(markedColumns(list.proxy), QList<int>({1}));
}

void tst_RejectingColumns::marksWhereAllRowsAreHidden()
{
    FilteredList list(10);
    list.add(2, nothing);
    QCOMPARE(list.proxy.rowCount(), 0);
    QCOMPARE(markedColumns(list.proxy), QList<int>({2}));
    list.add(7, nothing); // there is no such column
    QCOMPARE(markedColumns(list.proxy), QList<int>({2}));
    QCOMPARE(list.proxy.headerData(7, Qt::Horizontal, Qt::DecorationRole), QVariant());
}

void tst_RejectingColumns::marksNothingForAForeignOrientationOrRole()
{
    FilteredList list(10);
    list.add(1, below(20));
    QCOMPARE(list.proxy.headerData(1, Qt::Vertical, Qt::DecorationRole), QVariant());
    QCOMPARE(list.proxy.headerData(1, Qt::Horizontal, Qt::DisplayRole), QVariant(2));
    QCOMPARE(list.proxy.headerData(7, Qt::Horizontal, Qt::DecorationRole), QVariant());
}

void tst_RejectingColumns::keepsADecorationOfTheSource()
{
    FilteredList list(10);
    list.table.decoratedSection = 1;
    list.add(1, below(20));
    list.add(2, below(7));
    QCOMPARE(list.proxy.headerData(1, Qt::Horizontal, Qt::DecorationRole), QVariant(QStringLiteral("own")));
    QCOMPARE(markedColumns(list.proxy), QList<int>({2}));
}

void tst_RejectingColumns::followsTheSourceWithTheMarks()
{
    FilteredList list(10);
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

void tst_RejectingColumns::dropsAMarkWhenTheRowBehindItGoes()
{
    FilteredList list(10);
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

void tst_RejectingColumns::searchesNoRowsForMarksWhileNoneIsHidden()
{
    FilteredList list(manyRows);
    ScriptedCondition* condition = list.add(0, anything);
    condition->takeAsked();
    list.table.set(17, 0, 3);
    list.table.set(17, 1, 3);
    list.table.insert(90, {{1, 2, 3}});
    list.table.remove(40);
    QCOMPARE(condition->takeAsked(), 3); // by the list itself, once for each row that came or changed
}

void tst_RejectingColumns::searchesOnceForAColumnThatRejectsNothing()
{
    FilteredList list(manyRows);
    list.add(0, anything);
    list.add(1, below(10 * (manyRows - 1)));
    QCOMPARE(markedColumns(list.proxy), QList<int>({1}));
    list.table.takeReads();
    for (int row = 1; row <= 100; ++row) {
        list.table.set(row, 0, 3);
    }
    QVERIFY(list.table.takeReads() < 3000);
}

void tst_RejectingColumns::findsWhatCameWhileNoRowWasHidden_data()
{
    QTest::addColumn<int>("changes");
    QTest::addColumn<int>("insertedAt");
    QTest::newRow("behind a few changes") << 3 << 100;
    QTest::newRow("behind many changes") << 90 << 100;
    QTest::newRow("above rows that had changed") << 3 << 2;
    QTest::newRow("and nothing else") << 0 << 50;
}

void tst_RejectingColumns::findsWhatCameWhileNoRowWasHidden()
{
    QFETCH(int, changes);
    QFETCH(int, insertedAt);
    FilteredList list(100);
    list.add(0, below(1000));
    list.add(2, below(8));
    for (int row = 0; row < changes; ++row) {
        list.table.set(row, 0, 5);
    }
    list.table.remove(changes / 2);
    list.table.insert(99, {{1, 1, 1}});
    QCOMPARE(markedColumns(list.proxy), QList<int>());
    list.table.insert(insertedAt, {{1, 1, 1}, {1, 1, 9}});
    list.table.set(0, 1, 4);
    QCOMPARE(markedColumns(list.proxy), QList<int>({2}));
    list.table.set(insertedAt, 0, 1000);
    QCOMPARE(markedColumns(list.proxy), QList<int>({0, 2}));
}

void tst_RejectingColumns::marksWithOneIcon()
{
    FilteredList list(10);
    list.add(1, below(20));
    FilteredList other(10);
    other.add(2, equals(3));
    const auto icon = [](const FilteredList& from, int section) {
        return from.proxy.headerData(section, Qt::Horizontal, Qt::DecorationRole).value<QIcon>();
    };
    QVERIFY(!icon(list, 1).pixmap(16).isNull());
    QCOMPARE(icon(list, 1).cacheKey(), icon(other, 2).cacheKey());
}

QTEST_MAIN(tst_RejectingColumns)

#include "tst_rejectingcolumns.moc"
