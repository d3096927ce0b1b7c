#include "conditionsignallog.h"

#include <zelkoguibase/filter/booleanfiltercondition.h>

#include <zelkobase/data/filterconditionlist.h>

#include <QtTest>

using namespace ZelkoGUI::Filter;
using ZELKO_XML::FilterConditionList;

class BooleanFilterConditionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsSwitchedOffWithTrue();
    void passesCellsOfTheSameFlag_data();
    void passesCellsOfTheSameFlag();
    void everythingPassesWhileSwitchedOff();
    void isActiveWhileSwitchedOn();
    void theSetterTellsChangesOnly();
    void theSetterIsSilentWhileSwitchedOff();
    void restoresTheFlag();
};

void BooleanFilterConditionTest::startsSwitchedOffWithTrue()
{
    QObject parent;
    auto* const condition = new BooleanFilterCondition(12, 33, &parent);
    QCOMPARE(condition->parent(), &parent);
    QCOMPARE(condition->objectName(), QStringLiteral("BooleanFilter"));
    QCOMPARE(condition->filterKeyColumn(), 12);
    QCOMPARE(condition->filterRole(), 33);
    QVERIFY(!condition->enabled());
    QVERIFY(condition->value());
}

void BooleanFilterConditionTest::passesCellsOfTheSameFlag_data()
{
    QTest::addColumn<QVariant>("cell");
    QTest::addColumn<bool>("passesTrue");
    QTest::addColumn<bool>("passesFalse");

    QTest::newRow("true") << QVariant(true) << true << false;
    QTest::newRow("false") << QVariant(false) << false << true;
    QTest::newRow("a number") << QVariant(2) << true << false;
    QTest::newRow("zero") << QVariant(0.0) << false << true;
    QTest::newRow("a word") << QVariant(QStringLiteral("false")) << false << true;
    QTest::newRow("an enumerator") << QVariant::fromValue(Qt::DescendingOrder) << false << false;
    QTest::newRow("a moment") << QVariant(QDateTime::currentDateTime()) << false << false;
    QTest::newRow("nothing") << QVariant() << false << false;
}

void BooleanFilterConditionTest::passesCellsOfTheSameFlag()
{
    QFETCH(QVariant, cell);
    QFETCH(bool, passesTrue);
    QFETCH(bool, passesFalse);
    BooleanFilterCondition condition(12, 33, nullptr);
    condition.setEnabled(true);
    QCOMPARE(condition.passes(cell), passesTrue);
    condition.setValue(false);
    QCOMPARE(condition.passes(cell), passesFalse);
}

void BooleanFilterConditionTest::everythingPassesWhileSwitchedOff()
{
    const BooleanFilterCondition condition(12, 33, nullptr);
    for (const QVariant& cell : {QVariant(true), QVariant(false), QVariant(QTime(1, 2)), QVariant()}) {
        QVERIFY(condition.passes(cell));
    }
}

void BooleanFilterConditionTest::isActiveWhileSwitchedOn()
{
    BooleanFilterCondition condition(12, 33, nullptr);
    QVERIFY(!condition.filterActive());
    condition.setEnabled(true);
    QVERIFY(condition.filterActive());
}

void BooleanFilterConditionTest::theSetterTellsChangesOnly()
{
    BooleanFilterCondition condition(12, 33, nullptr);
    condition.setEnabled(true);
    ConditionSignalLog log(condition);
    condition.setValue(true);
    QCOMPARE(log.take(), QString());
    condition.setValue(false);
    QCOMPARE(log.take(), QStringLiteral("filter"));
    QVERIFY(!condition.value());
}

void BooleanFilterConditionTest::theSetterIsSilentWhileSwitchedOff()
{
    BooleanFilterCondition condition(12, 33, nullptr);
    ConditionSignalLog log(condition);
    condition.setValue(false);
    QCOMPARE(log.take(), QString());
    QVERIFY(!condition.value());
    condition.setEnabled(true);
    QCOMPARE(log.take(), QStringLiteral("filter"));
}

void BooleanFilterConditionTest::restoresTheFlag()
{
    BooleanFilterCondition condition(12, 33, nullptr);
    condition.setEnabled(true);
    condition.setValue(false);
    FilterConditionList list;
    condition.writeToXml(list);
    QCOMPARE(list.GetFilterCondition().constFirst().GetBooleanFilter().GetTestValue(), false);
    ConditionSignalLog log(condition);
    QVERIFY(condition.readFromXml(list));
    QCOMPARE(log.take(), QStringLiteral("content"));
    condition.setValue(true);
    log.take();
    QVERIFY(condition.readFromXml(list));
    QCOMPARE(log.take(), QStringLiteral("filter, content"));
    QVERIFY(!condition.value());
}

QTEST_APPLESS_MAIN(BooleanFilterConditionTest)
#include "tst_booleanfiltercondition.moc"
