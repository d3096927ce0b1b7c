#include "conditionsignallog.h"

#include <zelkoguibase/filter/numberfiltercondition.h>

#include <zelkobase/data/filterconditionlist.h>

#include <QtTest>

#include <limits>

using namespace ZelkoGUI::Filter;
using ZELKO_XML::FilterConditionList;
using FileComparator = ZELKO_XML::NumberFilter::Comparator;
using FileType = ZELKO_XML::NumberFilter::Type;
using Comparator = NumberComparison::Comparator;

Q_DECLARE_METATYPE(Comparator)

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
const QDateTime noon(QDate(2026, 3, 29), QTime(12, 0), Qt::UTC);

template <typename T>
std::unique_ptr<NumberFilterCondition<T>> switchedOn(const T& limit, Comparator comparator)
{
    auto condition = std::make_unique<NumberFilterCondition<T>>(limit, 1, Qt::UserRole + 1, nullptr);
    condition->setComparator(comparator);
    condition->setEnabled(true);
    return condition;
}

/// Which of the six comparators a cell passes, one sign each in the order of their numbers.
template <typename T>
QString answers(const T& limit, const QVariant& cell)
{
    QString signs;
    for (int number = 0; number <= 5; ++number) {
        const bool passes = switchedOn(limit, static_cast<Comparator>(number))->passes(cell);
        signs += passes ? QLatin1Char('+') : QLatin1Char('-');
    }
    return signs;
}

const QString equal = QStringLiteral("+--++-");
const QString below = QStringLiteral("-+-+-+");
const QString above = QStringLiteral("--+-++");
const QString unordered = QStringLiteral("-----+");
const QString failed = QStringLiteral("------");

template <typename T>
ZELKO_XML::NumberFilter written(const NumberFilterCondition<T>& condition)
{
    FilterConditionList list;
    condition.writeToXml(list);
    return list.GetFilterCondition().constFirst().GetNumberFilter();
}

/// What `condition` holds after it was saved and restored.
template <typename T>
T restored(const NumberFilterCondition<T>& condition)
{
    FilterConditionList list;
    condition.writeToXml(list);
    NumberFilterCondition<T> other(T{}, 1, Qt::UserRole + 1, nullptr);
    return other.readFromXml(list) ? other.value() : T{};
}

FilterConditionList listWith(FileComparator comparator, const QString& value, FileType type = FileType::Double)
{
    ZELKO_XML::FilterCondition entry;
    entry.SetName(QStringLiteral("NumberFilter"));
    entry.SetColumn(1);
    entry.SetRole(Qt::UserRole + 1);
    entry.GetNumberFilter().SetComparator(comparator);
    entry.GetNumberFilter().SetFilterValue(value);
    entry.GetNumberFilter().SetType(type);
    FilterConditionList list;
    list.AppendFilterCondition(entry);
    return list;
}

} // namespace

class NumberFilterConditionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsSwitchedOffWithEqual();
    void theComparatorsAreNumberedAsInFiles();
    void comparesNumbers_data();
    void comparesNumbers();
    void comparesTimesOfDay_data();
    void comparesTimesOfDay();
    void comparesMoments_data();
    void comparesMoments();
    void passesNothingWithAnUnknownComparator();
    void everythingPassesWhileSwitchedOff();
    void isActiveWhileSwitchedOn();
    void aRangeIsTwoConditions();
    void settersTellChangesOnly();
    void settersAreSilentWhileSwitchedOff();
    void notANumberAlwaysCountsAsAChange();
    void invalidTimesAreEqual();
    void savesTypeComparatorAndText();
    void aNumberKeepsSixDigits_data();
    void aNumberKeepsSixDigits();
    void otherLimitsAreRestoredWhole();
    void restoresWithOneSignal();
    void unchangedContentIsNotTold();
    void aComparatorThatIsNotKnownIsReadAsNotEqual_data();
    void aComparatorThatIsNotKnownIsReadAsNotEqual();
    void theTypeInTheFileIsNotLookedAt();
    void aTextThatIsNoLimitIsReadAsNothing();
};

void NumberFilterConditionTest::startsSwitchedOffWithEqual()
{
    QObject parent;
    auto* const condition = new NumberFilterCondition<double>(2.5, 9, 33, &parent);
    QCOMPARE(condition->parent(), &parent);
    QCOMPARE(condition->objectName(), QStringLiteral("NumberFilter"));
    QCOMPARE(condition->filterKeyColumn(), 9);
    QCOMPARE(condition->filterRole(), 33);
    QVERIFY(!condition->enabled());
    QCOMPARE(condition->value(), 2.5);
    QCOMPARE(condition->comparator(), NumberComparison::Equal);
}

void NumberFilterConditionTest::theComparatorsAreNumberedAsInFiles()
{
    QCOMPARE(static_cast<int>(NumberFilterCondition<double>::Equal), static_cast<int>(FileComparator::Equal));
    QCOMPARE(static_cast<int>(NumberFilterCondition<double>::Less), static_cast<int>(FileComparator::Less));
    QCOMPARE(static_cast<int>(NumberFilterCondition<double>::Greater), static_cast<int>(FileComparator::Greater));
    QCOMPARE(static_cast<int>(NumberFilterCondition<double>::LessOrEqual),
             static_cast<int>(FileComparator::LessOrEqual));
    QCOMPARE(static_cast<int>(NumberFilterCondition<double>::GreaterOrEqual),
             static_cast<int>(FileComparator::GreaterOrEqual));
    QCOMPARE(static_cast<int>(NumberFilterCondition<double>::NotEqual), static_cast<int>(FileComparator::NotEqual));
    QCOMPARE(static_cast<int>(FileComparator::Equal), 0);
    QCOMPARE(static_cast<int>(FileComparator::NotEqual), 5);
}

void NumberFilterConditionTest::comparesNumbers_data()
{
    QTest::addColumn<double>("limit");
    QTest::addColumn<QVariant>("cell");
    QTest::addColumn<QString>("expected");

    QTest::newRow("the limit") << 100.0 << QVariant(100.0) << equal;
    QTest::newRow("a little above") << 100.0 << QVariant(100.5) << above;
    QTest::newRow("below") << 100.0 << QVariant(99.0) << below;
    QTest::newRow("a whole number") << 100.0 << QVariant(100) << equal;
    QTest::newRow("a count of bytes") << 1048576.0 << QVariant(quint64{1048577}) << above;
    QTest::newRow("a text that is a number") << 100.0 << QVariant(QStringLiteral("99.5")) << below;
    QTest::newRow("a text that is none") << 100.0 << QVariant(QStringLiteral("abc")) << failed;
    QTest::newRow("an empty text") << 0.0 << QVariant(QString()) << failed;
    QTest::newRow("the infinite") << 100.0 << QVariant(std::numeric_limits<double>::infinity()) << above;
    QTest::newRow("not a number in the cell") << 100.0 << QVariant(notANumber) << unordered;
    QTest::newRow("not a number as the limit") << notANumber << QVariant(100.0) << unordered;
    QTest::newRow("not a number on both sides") << notANumber << QVariant(notANumber) << unordered;
    QTest::newRow("an enumerator") << 1.0 << QVariant::fromValue(Qt::DescendingOrder) << failed;
    QTest::newRow("a moment") << 100.0 << QVariant(noon) << failed;
    QTest::newRow("a list") << 100.0 << QVariant(QStringList(QStringLiteral("1"))) << failed;
    QTest::newRow("nothing") << 0.0 << QVariant() << failed;
}

void NumberFilterConditionTest::comparesNumbers()
{
    QFETCH(double, limit);
    QFETCH(QVariant, cell);
    QFETCH(QString, expected);
    QCOMPARE(answers(limit, cell), expected);
}

void NumberFilterConditionTest::comparesTimesOfDay_data()
{
    QTest::addColumn<QVariant>("cell");
    QTest::addColumn<QString>("expected");

    QTest::newRow("the limit") << QVariant(QTime(12, 0)) << equal;
    QTest::newRow("a millisecond later") << QVariant(QTime(12, 0, 0, 1)) << above;
    QTest::newRow("before midnight") << QVariant(QTime(23, 59, 59, 999)) << above;
    QTest::newRow("behind midnight") << QVariant(QTime(0, 0)) << below;
    QTest::newRow("a text") << QVariant(QStringLiteral("11:59:59")) << below;
    QTest::newRow("the time of a moment") << QVariant(noon) << equal;
    QTest::newRow("a number") << QVariant(12.0) << failed;
    QTest::newRow("nothing") << QVariant() << failed;
}

void NumberFilterConditionTest::comparesTimesOfDay()
{
    QFETCH(QVariant, cell);
    QFETCH(QString, expected);
    QCOMPARE(answers(QTime(12, 0), cell), expected);
}

void NumberFilterConditionTest::comparesMoments_data()
{
    QTest::addColumn<QVariant>("cell");
    QTest::addColumn<QString>("expected");

    QTest::newRow("the limit") << QVariant(noon) << equal;
    QTest::newRow("the limit in local time") << QVariant(noon.toLocalTime()) << equal;
    QTest::newRow("a millisecond earlier") << QVariant(noon.addMSecs(-1)) << below;
    QTest::newRow("the next day") << QVariant(noon.addDays(1)) << above;
    QTest::newRow("the start of its day") << QVariant(noon.date()) << below;
    QTest::newRow("a number") << QVariant(qint64{1'774'785'600'000}) << failed;
    QTest::newRow("a time of day") << QVariant(QTime(12, 0)) << failed;
    QTest::newRow("nothing") << QVariant() << failed;
}

void NumberFilterConditionTest::comparesMoments()
{
    QFETCH(QVariant, cell);
    QFETCH(QString, expected);
    QCOMPARE(answers(noon, cell), expected);
}

void NumberFilterConditionTest::passesNothingWithAnUnknownComparator()
{
    for (const int number : {-1, 6, 1000}) {
        QVERIFY(!switchedOn(1.0, static_cast<Comparator>(number))->passes(1.0));
        QVERIFY(!switchedOn(1.0, static_cast<Comparator>(number))->passes(2.0));
    }
}

void NumberFilterConditionTest::everythingPassesWhileSwitchedOff()
{
    const NumberFilterCondition<double> number(5, 1, 33, nullptr);
    const NumberFilterCondition<QTime> time(QTime(1, 2), 1, 33, nullptr);
    const NumberFilterCondition<QDateTime> moment(noon, 1, 33, nullptr);
    for (const QVariant& cell : {QVariant(7.0), QVariant(QTime(3, 4)), QVariant(QStringLiteral("x")), QVariant()}) {
        QVERIFY(number.passes(cell));
        QVERIFY(time.passes(cell));
        QVERIFY(moment.passes(cell));
    }
}

void NumberFilterConditionTest::isActiveWhileSwitchedOn()
{
    const auto condition = switchedOn(0.0, NumberComparison::GreaterOrEqual);
    QVERIFY(condition->filterActive());
    condition->setEnabled(false);
    QVERIFY(!condition->filterActive());
}

void NumberFilterConditionTest::aRangeIsTwoConditions()
{
    const auto lower = switchedOn(10.0, NumberComparison::GreaterOrEqual);
    const auto upper = switchedOn(20.0, NumberComparison::LessOrEqual);
    QString passed;
    for (const double cell : {9.9, 10.0, 15.0, 20.0, 20.1}) {
        passed += lower->passes(cell) && upper->passes(cell) ? QLatin1Char('+') : QLatin1Char('-');
    }
    QCOMPARE(passed, QStringLiteral("-+++-"));
}

void NumberFilterConditionTest::settersTellChangesOnly()
{
    const auto condition = switchedOn(1.0, NumberComparison::Less);
    ConditionSignalLog log(*condition);
    condition->setValue(1.0);
    condition->setComparator(NumberComparison::Less);
    QCOMPARE(log.take(), QString());
    condition->setValue(2.0);
    QCOMPARE(log.take(), QStringLiteral("filter"));
    condition->setComparator(NumberComparison::Greater);
    QCOMPARE(log.take(), QStringLiteral("filter"));
    QCOMPARE(condition->value(), 2.0);
    QCOMPARE(condition->comparator(), NumberComparison::Greater);
}

void NumberFilterConditionTest::settersAreSilentWhileSwitchedOff()
{
    NumberFilterCondition<QTime> condition(QTime(1, 2), 4, 33, nullptr);
    ConditionSignalLog log(condition);
    condition.setValue(QTime(3, 4));
    condition.setComparator(NumberComparison::Less);
    QCOMPARE(log.take(), QString());
    QCOMPARE(condition.value(), QTime(3, 4));
    condition.setEnabled(true);
    QCOMPARE(log.take(), QStringLiteral("filter"));
}

void NumberFilterConditionTest::notANumberAlwaysCountsAsAChange()
{
    const auto condition = switchedOn(notANumber, NumberComparison::Less);
    ConditionSignalLog log(*condition);
    condition->setValue(notANumber);
    condition->setValue(notANumber);
    QCOMPARE(log.take(), QStringLiteral("filter, filter"));
    FilterConditionList list;
    condition->writeToXml(list);
    list.Check();
    QVERIFY(condition->readFromXml(list));
    QCOMPARE(log.take(), QStringLiteral("filter, content"));
}

void NumberFilterConditionTest::invalidTimesAreEqual()
{
    const auto time = switchedOn(QTime(), NumberComparison::Less);
    const auto moment = switchedOn(QDateTime(), NumberComparison::Less);
    ConditionSignalLog timeLog(*time);
    ConditionSignalLog momentLog(*moment);
    time->setValue(QTime());
    moment->setValue(QDateTime());
    QCOMPARE(timeLog.take(), QString());
    QCOMPARE(momentLog.take(), QString());
}

void NumberFilterConditionTest::savesTypeComparatorAndText()
{
    const auto number = written(*switchedOn(1048576.0, NumberComparison::GreaterOrEqual));
    QCOMPARE(number.GetType(), FileType::Double);
    QCOMPARE(number.GetComparator(), FileComparator::GreaterOrEqual);
    QCOMPARE(number.GetFilterValue(), QStringLiteral("1.04858e+06"));
    const auto whole = written(*switchedOn(1234567, NumberComparison::Equal));
    QCOMPARE(whole.GetType(), FileType::Int);
    QCOMPARE(whole.GetFilterValue(), QStringLiteral("1234567"));
    const auto time = written(*switchedOn(QTime(1, 2, 3, 4), NumberComparison::LessOrEqual));
    QCOMPARE(time.GetType(), FileType::Time);
    QCOMPARE(time.GetComparator(), FileComparator::LessOrEqual);
    QCOMPARE(time.GetFilterValue(), QStringLiteral("01:02:03.004"));
    const auto moment = written(*switchedOn(noon, NumberComparison::NotEqual));
    QCOMPARE(moment.GetType(), FileType::DateTime);
    QCOMPARE(moment.GetComparator(), FileComparator::NotEqual);
    QCOMPARE(moment.GetFilterValue(), QStringLiteral("1774785600000"));
}

void NumberFilterConditionTest::aNumberKeepsSixDigits_data()
{
    QTest::addColumn<double>("limit");
    QTest::addColumn<double>("expected");

    QTest::newRow("a frequency of seven digits") << 1234567.0 << 1234570.0;
    QTest::newRow("a frequency of nine digits") << 123456789.0 << 123457000.0;
    QTest::newRow("six digits") << 433.925 << 433.925;
    QTest::newRow("nothing") << 0.0 << 0.0;
}

void NumberFilterConditionTest::aNumberKeepsSixDigits()
{
    QFETCH(double, limit);
    QFETCH(double, expected);
    QCOMPARE(restored(*switchedOn(limit, NumberComparison::Less)), expected);
}

void NumberFilterConditionTest::otherLimitsAreRestoredWhole()
{
    QCOMPARE(restored(*switchedOn(1234567, NumberComparison::Equal)), 1234567);
    const QTime time(23, 59, 59, 999);
    QCOMPARE(restored(*switchedOn(time, NumberComparison::Less)), time);
    const QDateTime moment = noon.addMSecs(123);
    QCOMPARE(restored(*switchedOn(moment, NumberComparison::Less)), moment);
    QVERIFY(!restored(*switchedOn(QTime(), NumberComparison::Less)).isValid());
}

void NumberFilterConditionTest::restoresWithOneSignal()
{
    const auto condition = switchedOn(1.0, NumberComparison::Less);
    ConditionSignalLog log(*condition);
    QVERIFY(condition->readFromXml(listWith(FileComparator::Greater, QStringLiteral("2.5"))));
    QCOMPARE(log.take(), QStringLiteral("filter, content"));
    QCOMPARE(condition->value(), 2.5);
    QCOMPARE(condition->comparator(), NumberComparison::Greater);
    QVERIFY(condition->readFromXml(listWith(FileComparator::Less, QStringLiteral("2.5"))));
    QCOMPARE(log.take(), QStringLiteral("filter, content"));
}

void NumberFilterConditionTest::unchangedContentIsNotTold()
{
    const auto condition = switchedOn(2.5, NumberComparison::Less);
    ConditionSignalLog log(*condition);
    QVERIFY(condition->readFromXml(listWith(FileComparator::Less, QStringLiteral("2.50"))));
    QCOMPARE(log.take(), QStringLiteral("content"));
}

void NumberFilterConditionTest::aComparatorThatIsNotKnownIsReadAsNotEqual_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<Comparator>("expected");

    QTest::newRow("the first") << 0 << NumberComparison::Equal;
    QTest::newRow("the last but one") << 4 << NumberComparison::GreaterOrEqual;
    QTest::newRow("the last") << 5 << NumberComparison::NotEqual;
    QTest::newRow("behind the last") << 6 << NumberComparison::NotEqual;
    QTest::newRow("before the first") << -1 << NumberComparison::NotEqual;
}

void NumberFilterConditionTest::aComparatorThatIsNotKnownIsReadAsNotEqual()
{
    QFETCH(int, number);
    QFETCH(Comparator, expected);
    NumberFilterCondition<double> condition(0, 1, Qt::UserRole + 1, nullptr);
    QVERIFY(condition.readFromXml(listWith(static_cast<FileComparator>(number), QStringLiteral("1"))));
    QCOMPARE(condition.comparator(), expected);
}

void NumberFilterConditionTest::theTypeInTheFileIsNotLookedAt()
{
    NumberFilterCondition<double> condition(0, 1, Qt::UserRole + 1, nullptr);
    for (const FileType type : {FileType::Int, FileType::Reserved, FileType::DateTime}) {
        condition.setValue(0);
        QVERIFY(condition.readFromXml(listWith(FileComparator::Less, QStringLiteral("7"), type)));
        QCOMPARE(condition.value(), 7.0);
    }
}

void NumberFilterConditionTest::aTextThatIsNoLimitIsReadAsNothing()
{
    const FilterConditionList list = listWith(FileComparator::Less, QStringLiteral("soon"));
    NumberFilterCondition<double> number(5, 1, Qt::UserRole + 1, nullptr);
    QVERIFY(number.readFromXml(list));
    QCOMPARE(number.value(), 0.0);
    NumberFilterCondition<QTime> time(QTime(1, 2), 1, Qt::UserRole + 1, nullptr);
    QVERIFY(time.readFromXml(list));
    QVERIFY(!time.value().isValid());
    NumberFilterCondition<QDateTime> moment(noon, 1, Qt::UserRole + 1, nullptr);
    QVERIFY(moment.readFromXml(list));
    QCOMPARE(moment.value().toMSecsSinceEpoch(), 0);
}

QTEST_APPLESS_MAIN(NumberFilterConditionTest)
#include "tst_numberfiltercondition.moc"
