#include "conditionsignallog.h"

#include <zelkoguibase/filter/booleanfiltercondition.h>
#include <zelkoguibase/filter/numberfiltercondition.h>
#include <zelkoguibase/filter/stringfiltercondition.h>

#include <zelkobase/data/filterconditionlist.h>

#include <QtTest>

using namespace ZelkoGUI::Filter;
using ZELKO_XML::FilterCondition;
using ZELKO_XML::FilterConditionList;

namespace {

constexpr int column = 12;
constexpr int role = Qt::UserRole + 1;
const QString name = QStringLiteral("DeletableFlag");

/// An entry for the condition of these tests, with another flag than the one it starts with.
FilterCondition falseEntry()
{
    FilterCondition entry;
    entry.SetName(name);
    entry.SetColumn(column);
    entry.SetRole(role);
    entry.GetBooleanFilter().SetTestValue(false);
    return entry;
}

FilterConditionList listOf(const QVector<FilterCondition>& entries)
{
    FilterConditionList list;
    list.SetFilterCondition(entries);
    return list;
}

template <typename Change>
FilterCondition changed(Change change)
{
    FilterCondition entry = falseEntry();
    change(entry);
    return entry;
}

FilterCondition entryThatSays(bool enabled, bool value)
{
    FilterCondition entry = falseEntry();
    entry.SetEnabled(enabled);
    entry.GetBooleanFilter().SetTestValue(value);
    return entry;
}

} // namespace

class AbstractFilterConditionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void everyRealSwitchIsTold();
    void anEntryIsFoundByColumnRoleAndName();
    void anotherEntryIsNotTaken_data();
    void anotherEntryIsNotTaken();
    void aListWithoutEntriesChangesNothing();
    void anEntryWithoutANameIsForAConditionWithoutOne();
    void anEmptyNameIsThatOfAConditionWithoutOne();
    void theFirstEntryThatFitsIsTaken();
    void anEntryOfAnotherKindIsPassedBy();
    void signalsOfARestore_data();
    void signalsOfARestore();
    void anEntryThatDoesNotSaySoLeavesItSwitchedAsItIs_data();
    void anEntryThatDoesNotSaySoLeavesItSwitchedAsItIs();
    void contentIsRestoredBeforeTheSignals();
    void writesWhereItStandsAndWhetherItIsOn();
    void aConditionWithoutANameIsWrittenWithoutOne();
    void whatIsSwitchedOffIsWrittenAsWell();
    void aConditionMayDieInItsOwnSignal();

private:
    void requireUntouched(ConditionSignalLog& log) const;

    std::unique_ptr<BooleanFilterCondition> m_condition;
};

void AbstractFilterConditionTest::init()
{
    m_condition = std::make_unique<BooleanFilterCondition>(column, role, nullptr);
    m_condition->setObjectName(name);
}

void AbstractFilterConditionTest::requireUntouched(ConditionSignalLog& log) const
{
    QCOMPARE(log.take(), QString());
    QVERIFY(m_condition->value());
    QVERIFY(!m_condition->enabled());
}

void AbstractFilterConditionTest::everyRealSwitchIsTold()
{
    ConditionSignalLog log(*m_condition);
    m_condition->setEnabled(false);
    QCOMPARE(log.take(), QString());
    m_condition->setEnabled(true);
    QCOMPARE(log.take(), QStringLiteral("filter"));
    m_condition->setEnabled(true);
    QCOMPARE(log.take(), QString());
    m_condition->setEnabled(false);
    QCOMPARE(log.take(), QStringLiteral("filter"));
}

void AbstractFilterConditionTest::anEntryIsFoundByColumnRoleAndName()
{
    QVERIFY(m_condition->readFromXml(listOf({falseEntry()})));
    QVERIFY(!m_condition->value());
}

void AbstractFilterConditionTest::anotherEntryIsNotTaken_data()
{
    QTest::addColumn<FilterCondition>("entry");

    QTest::newRow("another column") << changed([](FilterCondition& entry) { entry.SetColumn(column + 1); });
    QTest::newRow("another role") << changed([](FilterCondition& entry) { entry.SetRole(Qt::UserRole); });
    QTest::newRow("another name") << changed([](FilterCondition& entry) { entry.SetName(QStringLiteral("Other")); });
    QTest::newRow("the name in another case")
        << changed([](FilterCondition& entry) { entry.SetName(QStringLiteral("deletableflag")); });
    QTest::newRow("no name") << changed([](FilterCondition& entry) { entry.ResetName(); });
    QTest::newRow("another kind") << changed([](FilterCondition& entry) {
        entry.ResetBooleanFilter();
        entry.SetEnumFilter({});
    });
    QTest::newRow("no kind") << changed([](FilterCondition& entry) { entry.ResetBooleanFilter(); });
}

void AbstractFilterConditionTest::anotherEntryIsNotTaken()
{
    QFETCH(FilterCondition, entry);
    entry.SetEnabled(true);
    ConditionSignalLog log(*m_condition);
    QVERIFY(!m_condition->readFromXml(listOf({entry})));
    requireUntouched(log);
}

void AbstractFilterConditionTest::aListWithoutEntriesChangesNothing()
{
    ConditionSignalLog log(*m_condition);
    QVERIFY(!m_condition->readFromXml(FilterConditionList()));
    requireUntouched(log);
}

void AbstractFilterConditionTest::anEntryWithoutANameIsForAConditionWithoutOne()
{
    FilterCondition entry = falseEntry();
    entry.ResetName();
    m_condition->setObjectName(QString());
    QVERIFY(!m_condition->readFromXml(listOf({falseEntry()})));
    QVERIFY(m_condition->readFromXml(listOf({entry})));
    QVERIFY(!m_condition->value());
}

void AbstractFilterConditionTest::anEmptyNameIsThatOfAConditionWithoutOne()
{
    FilterCondition entry = falseEntry();
    entry.SetName(QString());
    QVERIFY(!m_condition->readFromXml(listOf({entry})));
    m_condition->setObjectName(QString());
    QVERIFY(m_condition->readFromXml(listOf({entry})));
}

void AbstractFilterConditionTest::theFirstEntryThatFitsIsTaken()
{
    const FilterCondition other = changed([](FilterCondition& entry) {
        entry.SetColumn(0);
        entry.GetBooleanFilter().SetTestValue(true);
    });
    const FilterCondition second = changed([](FilterCondition& entry) {
        entry.SetEnabled(true);
        entry.GetBooleanFilter().SetTestValue(true);
    });
    QVERIFY(m_condition->readFromXml(listOf({other, falseEntry(), second})));
    QVERIFY(!m_condition->value());
    QVERIFY(!m_condition->enabled());
}

void AbstractFilterConditionTest::anEntryOfAnotherKindIsPassedBy()
{
    StringFilterCondition text(column, role, nullptr);
    NumberFilterCondition<double> number(5, column, role, nullptr);
    text.setObjectName(name);
    number.setObjectName(name);
    FilterConditionList list;
    text.writeToXml(list);
    number.writeToXml(list);
    list.AppendFilterCondition(falseEntry());
    QVERIFY(m_condition->readFromXml(list));
    QVERIFY(!m_condition->value());
    number.setValue(7);
    QVERIFY(number.readFromXml(list));
    QCOMPARE(number.value(), 5.0);
}

void AbstractFilterConditionTest::signalsOfARestore_data()
{
    QTest::addColumn<bool>("wasOn");
    QTest::addColumn<bool>("savedOn");
    QTest::addColumn<bool>("savedValue");
    QTest::addColumn<QString>("expected");

    const QString both = QStringLiteral("filter, content");
    const QString content = QStringLiteral("content");
    QTest::newRow("off stays off with its content") << false << false << true << content;
    QTest::newRow("off stays off with new content") << false << false << false << content;
    QTest::newRow("off goes on with its content") << false << true << true << both;
    QTest::newRow("off goes on with new content") << false << true << false << both;
    QTest::newRow("on goes off with its content") << true << false << true << both;
    QTest::newRow("on goes off with new content") << true << false << false << both;
    QTest::newRow("on stays on with its content") << true << true << true << content;
    QTest::newRow("on stays on with new content") << true << true << false << both;
}

void AbstractFilterConditionTest::signalsOfARestore()
{
    QFETCH(bool, wasOn);
    QFETCH(bool, savedOn);
    QFETCH(bool, savedValue);
    QFETCH(QString, expected);
    m_condition->setEnabled(wasOn);
    ConditionSignalLog log(*m_condition);
    QVERIFY(m_condition->readFromXml(listOf({entryThatSays(savedOn, savedValue)})));
    QCOMPARE(log.take(), expected);
    QCOMPARE(m_condition->enabled(), savedOn);
    QCOMPARE(m_condition->value(), savedValue);
}

void AbstractFilterConditionTest::anEntryThatDoesNotSaySoLeavesItSwitchedAsItIs_data()
{
    QTest::addColumn<bool>("on");
    QTest::addColumn<QString>("expected");

    QTest::newRow("on") << true << QStringLiteral("filter, content");
    QTest::newRow("off") << false << QStringLiteral("content");
}

void AbstractFilterConditionTest::anEntryThatDoesNotSaySoLeavesItSwitchedAsItIs()
{
    QFETCH(bool, on);
    QFETCH(QString, expected);
    m_condition->setEnabled(on);
    ConditionSignalLog log(*m_condition);
    QVERIFY(m_condition->readFromXml(listOf({falseEntry()})));
    QCOMPARE(m_condition->enabled(), on);
    QVERIFY(!m_condition->value());
    QCOMPARE(log.take(), expected);
}

void AbstractFilterConditionTest::contentIsRestoredBeforeTheSignals()
{
    QStringList seen;
    const auto look = [&] { seen << QStringLiteral("%1 %2").arg(m_condition->enabled()).arg(m_condition->value()); };
    connect(m_condition.get(), &AbstractFilterCondition::si_filterChanged, this, look);
    connect(m_condition.get(), &AbstractFilterCondition::si_filterContentChanged, this, look);
    QVERIFY(m_condition->readFromXml(listOf({entryThatSays(true, false)})));
    QCOMPARE(seen, QStringList({QStringLiteral("1 0"), QStringLiteral("1 0")}));
}

void AbstractFilterConditionTest::writesWhereItStandsAndWhetherItIsOn()
{
    m_condition->setEnabled(true);
    FilterConditionList list = listOf({falseEntry()});
    m_condition->writeToXml(list);
    QCOMPARE(list.GetFilterCondition().size(), 2);
    QVERIFY(list.GetFilterCondition().at(1) == entryThatSays(true, true));
    list.Check();
}

void AbstractFilterConditionTest::aConditionWithoutANameIsWrittenWithoutOne()
{
    m_condition->setObjectName(QString());
    FilterConditionList list;
    m_condition->writeToXml(list);
    QVERIFY(!list.GetFilterCondition().constFirst().IsNameSet());
    m_condition->setValue(false);
    QVERIFY(m_condition->readFromXml(list));
    QVERIFY(m_condition->value());
}

void AbstractFilterConditionTest::whatIsSwitchedOffIsWrittenAsWell()
{
    FilterConditionList list;
    m_condition->writeToXml(list);
    QVERIFY(list.GetFilterCondition().constFirst().IsEnabledSet());
    QVERIFY(list.GetFilterCondition().constFirst() == entryThatSays(false, true));
}

// Whoever is told may drop the filter, for instance with the window that it belongs to.
void AbstractFilterConditionTest::aConditionMayDieInItsOwnSignal()
{
    m_condition->setEnabled(true);
    connect(m_condition.get(), &AbstractFilterCondition::si_filterChanged, this, [this] { m_condition.reset(); });
    m_condition->setValue(false);
    QVERIFY(!m_condition);

    init();
    connect(m_condition.get(), &AbstractFilterCondition::si_filterChanged, this, [this] { m_condition.reset(); });
    QVERIFY(m_condition->readFromXml(listOf({entryThatSays(true, false)})));
    QVERIFY(!m_condition);
}

QTEST_APPLESS_MAIN(AbstractFilterConditionTest)
#include "tst_abstractfiltercondition.moc"
