#include "conditionsignallog.h"

#include <zelkoguibase/filter/enumerationfiltercondition.h>

#include <zelkobase/data/filterconditionlist.h>

#include <QtTest>

#include <algorithm>
#include <limits>

using namespace ZelkoGUI::Filter;
using ZELKO_XML::FilterConditionList;
using ZELKO_XML::ZELKO_RecordData;
using Status = ZELKO_RecordData::RecordStatus;
using StatusCondition = EnumerationFilterCondition<Status>;

namespace {

const int statusCount = static_cast<int>(ZELKO_RecordData::GetGUIRecordStatuss().size());

template <typename E>
QList<E> allOf(int count)
{
    QList<E> values;
    for (int number = 0; number < count; ++number) {
        values << static_cast<E>(number);
    }
    return values;
}

std::unique_ptr<StatusCondition> switchedOn(const QList<Status>& values)
{
    auto condition = std::make_unique<StatusCondition>(statusCount, 8, Qt::UserRole + 1, nullptr);
    condition->setValues(values);
    condition->setEnabled(true);
    return condition;
}

QList<Status> sorted(QList<Status> values)
{
    std::sort(values.begin(), values.end());
    return values;
}

FilterConditionList listWith(const QVector<int>& numbers)
{
    ZELKO_XML::EnumFilter filter;
    filter.SetEnumValue(numbers);
    ZELKO_XML::FilterCondition entry;
    entry.SetName(QStringLiteral("EnumerationFilter"));
    entry.SetColumn(8);
    entry.SetRole(Qt::UserRole + 1);
    entry.SetEnumFilter(filter);
    FilterConditionList list;
    list.AppendFilterCondition(entry);
    return list;
}

} // namespace

class EnumerationFilterConditionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsSwitchedOffWithNothing();
    void registersTheTypesOfTheCells();
    void passesWhatIsInTheSet();
    void theFourKindsDoTheSame();
    void cellsOfAnotherTypeFail_data();
    void cellsOfAnotherTypeFail();
    void everythingPassesWhileSwitchedOff();
    void anEmptySetIsActiveAndRejectsEverything();
    void aFullSetIsNotActive();
    void theSetterTellsChangesOnly();
    void theSetterIsSilentWhileSwitchedOff();
    void savesTheNumbersInAnyOrder();
    void anEmptySetIsSavedAndRestored();
    void restoresWithOneSignal();
    void theOrderInTheFileIsNoChange();
    void anyNumberIsTaken();
};

void EnumerationFilterConditionTest::startsSwitchedOffWithNothing()
{
    QObject parent;
    auto* const condition = new StatusCondition(statusCount, 8, 33, &parent);
    QCOMPARE(condition->parent(), &parent);
    QCOMPARE(condition->objectName(), QStringLiteral("EnumerationFilter"));
    QCOMPARE(condition->filterKeyColumn(), 8);
    QCOMPARE(condition->filterRole(), 33);
    QVERIFY(!condition->enabled());
    QVERIFY(!condition->filterActive());
    QVERIFY(condition->values().isEmpty());
}

void EnumerationFilterConditionTest::registersTheTypesOfTheCells()
{
    const EnumerationFilterCondition<ZELKO_RecordData::DataFormat> format(1, 6, 33, nullptr);
    const EnumerationFilterCondition<ZELKO_RecordData::DataRate> rate(1, 5, 33, nullptr);
    const EnumerationFilterCondition<ZELKO_RecordData::Interface> interface(1, 13, 33, nullptr);
    const EnumerationFilterCondition<Status> status(1, 8, 33, nullptr);
    QCOMPARE(QMetaType::fromName("ZELKO_XML::ZELKO_RecordData::DataFormat"),
             QMetaType::fromType<ZELKO_RecordData::DataFormat>());
    QCOMPARE(QMetaType::fromName("ZELKO_XML::ZELKO_RecordData::DataRate"),
             QMetaType::fromType<ZELKO_RecordData::DataRate>());
    QCOMPARE(QMetaType::fromName("ZELKO_XML::ZELKO_RecordData::Interface"),
             QMetaType::fromType<ZELKO_RecordData::Interface>());
    QCOMPARE(QMetaType::fromName("ZELKO_XML::ZELKO_RecordData::RecordStatus"), QMetaType::fromType<Status>());
}

void EnumerationFilterConditionTest::passesWhatIsInTheSet()
{
    const auto condition = switchedOn({Status::Finished, Status::Recording});
    for (const Status status : allOf<Status>(statusCount)) {
        const bool expected = status == Status::Finished || status == Status::Recording;
        QCOMPARE(condition->passes(QVariant::fromValue(status)), expected);
    }
    QVERIFY(!condition->passes(QVariant::fromValue(static_cast<Status>(99))));
}

template <typename E>
static void requireThatItPassesOne(E one, E other)
{
    EnumerationFilterCondition<E> condition(2, 0, 33, nullptr);
    condition.setValues({one});
    condition.setEnabled(true);
    QVERIFY(condition.passes(QVariant::fromValue(one)));
    QVERIFY(!condition.passes(QVariant::fromValue(other)));
    FilterConditionList list;
    condition.writeToXml(list);
    condition.setValues({other});
    QVERIFY(condition.readFromXml(list));
    QCOMPARE(condition.values(), QList<E>({one}));
}

void EnumerationFilterConditionTest::theFourKindsDoTheSame()
{
    requireThatItPassesOne(ZELKO_RecordData::DataFormat::IQ16, ZELKO_RecordData::DataFormat::IQ8);
    requireThatItPassesOne(ZELKO_RecordData::DataRate::RawStream, ZELKO_RecordData::DataRate::Bursts);
    requireThatItPassesOne(ZELKO_RecordData::Interface::None, ZELKO_RecordData::Interface::Usb);
    requireThatItPassesOne(Status::Finished, Status::Recording);
}

void EnumerationFilterConditionTest::cellsOfAnotherTypeFail_data()
{
    QTest::addColumn<QVariant>("cell");

    QTest::newRow("the number of an enumerator") << QVariant(static_cast<int>(Status::Finished));
    QTest::newRow("the same number of another enumeration")
        << QVariant::fromValue(static_cast<ZELKO_RecordData::DataRate>(Status::Finished));
    QTest::newRow("its name") << QVariant(QStringLiteral("Finished"));
    QTest::newRow("nothing") << QVariant();
}

void EnumerationFilterConditionTest::cellsOfAnotherTypeFail()
{
    QFETCH(QVariant, cell);
    QVERIFY(!switchedOn(allOf<Status>(statusCount))->passes(cell));
}

void EnumerationFilterConditionTest::everythingPassesWhileSwitchedOff()
{
    const StatusCondition condition(statusCount, 8, 33, nullptr);
    for (const QVariant& cell : {QVariant::fromValue(Status::Finished), QVariant(5), QVariant()}) {
        QVERIFY(condition.passes(cell));
    }
}

void EnumerationFilterConditionTest::anEmptySetIsActiveAndRejectsEverything()
{
    const auto condition = switchedOn({});
    QVERIFY(condition->filterActive());
    for (const Status status : allOf<Status>(statusCount)) {
        QVERIFY(!condition->passes(QVariant::fromValue(status)));
    }
    QVERIFY(!condition->passes(QVariant()));
}

void EnumerationFilterConditionTest::aFullSetIsNotActive()
{
    const auto condition = switchedOn(allOf<Status>(statusCount));
    QVERIFY(condition->enabled());
    QVERIFY(!condition->filterActive());
    condition->setValues(allOf<Status>(statusCount - 1));
    QVERIFY(condition->filterActive());
    condition->setEnabled(false);
    QVERIFY(!condition->filterActive());
}

void EnumerationFilterConditionTest::theSetterTellsChangesOnly()
{
    const auto condition = switchedOn({Status::Finished, Status::Recording});
    ConditionSignalLog log(*condition);
    condition->setValues({Status::Recording, Status::Finished, Status::Recording});
    QCOMPARE(log.take(), QString());
    condition->setValues({Status::Finished});
    QCOMPARE(log.take(), QStringLiteral("filter"));
    QCOMPARE(condition->values(), QList<Status>({Status::Finished}));
    condition->setValues({});
    QCOMPARE(log.take(), QStringLiteral("filter"));
}

void EnumerationFilterConditionTest::theSetterIsSilentWhileSwitchedOff()
{
    StatusCondition condition(statusCount, 8, 33, nullptr);
    ConditionSignalLog log(condition);
    condition.setValues({Status::Finished});
    QCOMPARE(log.take(), QString());
    QCOMPARE(condition.values(), QList<Status>({Status::Finished}));
    condition.setEnabled(true);
    QCOMPARE(log.take(), QStringLiteral("filter"));
}

void EnumerationFilterConditionTest::savesTheNumbersInAnyOrder()
{
    FilterConditionList list;
    switchedOn({Status::Finished, Status::Recording})->writeToXml(list);
    QVector<int> numbers = list.GetFilterCondition().constFirst().GetEnumFilter().GetEnumValue();
    std::sort(numbers.begin(), numbers.end());
    QCOMPARE(numbers, QVector<int>({2, 5}));
}

void EnumerationFilterConditionTest::anEmptySetIsSavedAndRestored()
{
    FilterConditionList list;
    switchedOn({})->writeToXml(list);
    list.Check();
    QVERIFY(list.GetFilterCondition().constFirst().IsEnumFilterSet());
    QVERIFY(!list.GetFilterCondition().constFirst().GetEnumFilter().IsEnumValueSet());
    const auto condition = switchedOn({Status::Finished});
    QVERIFY(condition->readFromXml(list));
    QVERIFY(condition->values().isEmpty());
}

void EnumerationFilterConditionTest::restoresWithOneSignal()
{
    const auto condition = switchedOn({Status::Finished});
    ConditionSignalLog log(*condition);
    QVERIFY(condition->readFromXml(listWith({2, 3, 3})));
    QCOMPARE(log.take(), QStringLiteral("filter, content"));
    QCOMPARE(sorted(condition->values()), QList<Status>({static_cast<Status>(2), static_cast<Status>(3)}));
    QVERIFY(condition->filterActive());
}

void EnumerationFilterConditionTest::theOrderInTheFileIsNoChange()
{
    const auto condition = switchedOn({static_cast<Status>(2), static_cast<Status>(5)});
    ConditionSignalLog log(*condition);
    QVERIFY(condition->readFromXml(listWith({5, 2, 5})));
    QCOMPARE(log.take(), QStringLiteral("content"));
}

void EnumerationFilterConditionTest::anyNumberIsTaken()
{
    const auto condition = switchedOn({});
    const QVector<int> numbers{std::numeric_limits<int>::min(), -1, std::numeric_limits<int>::max()};
    QVERIFY(condition->readFromXml(listWith(numbers)));
    QList<Status> expected;
    for (const int number : numbers) {
        expected << static_cast<Status>(number);
    }
    QCOMPARE(sorted(condition->values()), expected);
    QVERIFY(condition->filterActive());
    // What counts for a full set is how many there are.
    QVector<int> foreign;
    for (int i = 0; i < statusCount; ++i) {
        foreign << 100 + i;
    }
    QVERIFY(condition->readFromXml(listWith(foreign)));
    QVERIFY(!condition->filterActive());
}

QTEST_APPLESS_MAIN(EnumerationFilterConditionTest)
#include "tst_enumerationfiltercondition.moc"
