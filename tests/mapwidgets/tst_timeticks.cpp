#include "microseconds.h"

#include <mapwidgets/timeticks.h>

#include <QDateTime>
#include <QtTest>

namespace {

constexpr double second = 1e6;
constexpr double hour = 3600 * second;
constexpr double day = 24 * hour;

double momentOf(const char* localTime)
{
    return static_cast<double>(
        QDateTime::fromString(QLatin1String(localTime), QStringLiteral("yyyy-MM-dd hh:mm:ss")).toMSecsSinceEpoch() *
        1000);
}

} // namespace

class TimeTicksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMomentIsTheNearestWholeOne_data();
    void aMomentIsTheNearestWholeOne();
    void distancesAreThoseOfClocks_data();
    void distancesAreThoseOfClocks();
    void ticksAreRoundInLocalTime_data();
    void ticksAreRoundInLocalTime();
    void ticksFollowTheClocks_data();
    void ticksFollowTheClocks();
    void textsAreAsFineAsTheDistance();
    void noTextIsLongerThanTheLongest_data();
    void noTextIsLongerThanTheLongest();
    void neighboursDifferHoweverSmallTheDistance();
    void endsAreTold_data();
    void endsAreTold();
    void momentsAreToldToTheMicrosecond_data();
    void momentsAreToldToTheMicrosecond();
    void timesGetShorter();
    void datesTellTheZone_data();
    void datesTellTheZone();
};

void TimeTicksTest::aMomentIsTheNearestWholeOne_data()
{
    QTest::addColumn<double>("moment");
    QTest::addColumn<qint64>("whole");
    QTest::newRow("below the middle") << 1'700'000'000'000'000.25 << qint64(1'700'000'000'000'000);
    QTest::newRow("above the middle") << 1'700'000'000'000'000.75 << qint64(1'700'000'000'000'001);
    QTest::newRow("more than there is") << 1e300 << qint64(9'200'000'000'000'000'000);
    QTest::newRow("less than there is") << -1e300 << qint64(-9'200'000'000'000'000'000);
}

void TimeTicksTest::aMomentIsTheNearestWholeOne()
{
    QFETCH(double, moment);
    QFETCH(qint64, whole);
    QCOMPARE(qint64(timeticks::whole(moment)), whole);
}

void TimeTicksTest::distancesAreThoseOfClocks_data()
{
    QTest::addColumn<double>("least");
    QTest::addColumn<double>("distance");
    QTest::newRow("nothing") << 0.0 << 1.0;
    QTest::newRow("microseconds") << 3.0 << 5.0;
    QTest::newRow("a thousandth") << 1000.0 << 1000.0;
    QTest::newRow("milliseconds") << 110'000.0 << 200'000.0;
    QTest::newRow("half a second") << 500'000.0 << 500'000.0;
    QTest::newRow("most of a second") << 600'000.0 << second;
    QTest::newRow("some seconds") << 11 * second << 15 * second;
    QTest::newRow("a minute") << 31 * second << 60 * second;
    QTest::newRow("half an hour") << 1000 * second << 1800 * second;
    QTest::newRow("six hours") << 4 * hour << 6 * hour;
    QTest::newRow("a day") << 13 * hour << day;
    QTest::newRow("days") << 2.5 * day << 5 * day;
    QTest::newRow("weeks") << 11 * day << 20 * day;
}

void TimeTicksTest::distancesAreThoseOfClocks()
{
    QFETCH(double, least);
    QFETCH(double, distance);
    QCOMPARE(microseconds(timeticks::distance(least)), microseconds(distance));
}

void TimeTicksTest::ticksAreRoundInLocalTime_data()
{
    QTest::addColumn<double>("moment");
    QTest::addColumn<double>("distance");
    QTest::addColumn<double>("tick");
    QTest::newRow("in winter") << momentOf("2024-01-10 07:00:01") << 6 * hour << momentOf("2024-01-10 12:00:00");
    QTest::newRow("in summer") << momentOf("2024-07-10 07:00:01") << 6 * hour << momentOf("2024-07-10 12:00:00");
    QTest::newRow("at midnight") << momentOf("2024-07-10 00:00:00") << day << momentOf("2024-07-10 00:00:00");
    QTest::newRow("behind midnight") << momentOf("2024-07-10 00:00:01") << day << momentOf("2024-07-11 00:00:00");
}

void TimeTicksTest::ticksAreRoundInLocalTime()
{
    QFETCH(double, moment);
    QFETCH(double, distance);
    QFETCH(double, tick);
    QCOMPARE(microseconds(timeticks::first(moment, distance)), microseconds(tick));
}

void TimeTicksTest::ticksFollowTheClocks_data()
{
    QTest::addColumn<double>("moment");
    QTest::addColumn<double>("distance");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("an hour is left out") << momentOf("2024-03-31 00:30:00") << hour
                                         << QStringList({"01:00", "03:00 CEST", "04:00", "05:00"});
    QTest::newRow("an hour comes twice") << momentOf("2024-10-27 01:30:00") << hour
                                         << QStringList({"02:00", "02:00 CET", "03:00", "04:00"});
    QTest::newRow("over a short night") << momentOf("2024-03-31 00:30:00") << 2 * hour
                                        << QStringList({"04:00 CEST", "06:00", "08:00", "10:00"});
    QTest::newRow("days of different lengths") << momentOf("2024-10-26 12:00:00") << day
                                               << QStringList({"2024-10-27", "2024-10-28", "2024-10-29", "2024-10-30"});
    QTest::newRow("over midnight") << momentOf("2024-07-10 21:30:00") << hour
                                   << QStringList({"22:00", "23:00", "2024-07-11", "01:00"});
}

void TimeTicksTest::ticksFollowTheClocks()
{
    QFETCH(double, moment);
    QFETCH(double, distance);
    QStringList texts;
    double tick = timeticks::first(moment, distance);
    for (int i = 0; i < 4; ++i) {
        texts << timeticks::text(tick, distance);
        tick = timeticks::next(tick, distance);
    }
    QTEST(texts, "texts");
}

void TimeTicksTest::textsAreAsFineAsTheDistance()
{
    const double moment = momentOf("2024-07-10 07:08:09") + 123'456;
    QCOMPARE(timeticks::text(moment, 1), QStringLiteral("07:08:09.123456"));
    QCOMPARE(timeticks::text(moment, 1000), QStringLiteral("07:08:09.123"));
    QCOMPARE(timeticks::text(moment, second), QStringLiteral("07:08:09"));
    QCOMPARE(timeticks::text(moment, hour), QStringLiteral("07:08"));
    QCOMPARE(timeticks::text(moment, day), QStringLiteral("2024-07-10"));
}

void TimeTicksTest::noTextIsLongerThanTheLongest_data()
{
    QTest::addColumn<double>("distance");
    QTest::newRow("microseconds") << 1.0;
    QTest::newRow("milliseconds") << 1000.0;
    QTest::newRow("seconds") << second;
    QTest::newRow("hours") << hour;
    QTest::newRow("days") << day;
}

void TimeTicksTest::noTextIsLongerThanTheLongest()
{
    QFETCH(double, distance);
    const double moment = momentOf("2024-07-10 07:08:09");
    QCOMPARE(timeticks::longestText(distance, true).size(), timeticks::text(moment, distance).size());
    QVERIFY(timeticks::longestText(distance, false).size() >= QStringLiteral("2024-07-10").size());
}

void TimeTicksTest::neighboursDifferHoweverSmallTheDistance()
{
    const double distance = timeticks::distance(0.1);
    const double tick = timeticks::first(momentOf("2024-07-10 07:08:09") + 123'456.5, distance);
    QCOMPARE(timeticks::text(tick, distance), QStringLiteral("07:08:09.123457"));
    QCOMPARE(timeticks::text(timeticks::next(tick, distance), distance), QStringLiteral("07:08:09.123458"));
}

void TimeTicksTest::endsAreTold_data()
{
    QTest::addColumn<double>("extent");
    QTest::addColumn<QString>("text");
    QTest::newRow("of a moment") << 500.0 << QStringLiteral("07:08:09.123456");
    QTest::newRow("of a burst") << 2 * second << QStringLiteral("07:08:09.123");
    QTest::newRow("of an hour") << hour << QStringLiteral("07:08:09");
    QTest::newRow("of a night") << 12 * hour << QStringLiteral("07:08:09");
    QTest::newRow("of a week") << 7 * day << QStringLiteral("2024-07-10");
}

void TimeTicksTest::endsAreTold()
{
    QFETCH(double, extent);
    QTEST(timeticks::endText(momentOf("2024-07-10 07:08:09") + 123'456, extent), "text");
}

void TimeTicksTest::momentsAreToldToTheMicrosecond_data()
{
    QTest::addColumn<long long>("moment");
    QTest::addColumn<QString>("text");
    QTest::newRow("in summer") << 1'720'588'089'123'456LL << QStringLiteral("2024-07-10 07:08:09.123456 CEST");
    QTest::newRow("in winter") << 1'704'866'889'000'001LL << QStringLiteral("2024-01-10 07:08:09.000001 CET");
    QTest::newRow("the epoch") << 0LL << QStringLiteral("1970-01-01 01:00:00.000000 CET");
    QTest::newRow("before the epoch") << -1LL << QStringLiteral("1970-01-01 00:59:59.999999 CET");
    QTest::newRow("more than a double holds")
        << 9'007'199'254'740'993LL << QStringLiteral("2255-06-06 01:47:34.740993 CEST");
}

void TimeTicksTest::momentsAreToldToTheMicrosecond()
{
    QFETCH(long long, moment);
    QTEST(timeticks::dateAndTime(moment), "text");
}

void TimeTicksTest::timesGetShorter()
{
    QCOMPARE(timeticks::timesOfDay(1'720'588'089'123'456LL),
             QStringList({"07:08:09.123456", "07:08:09.123", "07:08:09"}));
}

void TimeTicksTest::datesTellTheZone_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("stop");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("one day") << momentOf("2024-07-10 07:00:00") << momentOf("2024-07-10 08:00:00")
                             << QStringList({"2024-07-10 CEST", "CEST"});
    QTest::newRow("days") << momentOf("2024-01-10 07:00:00") << momentOf("2024-01-12 08:00:00")
                          << QStringList({"2024-01-10 – 2024-01-12 CET", "2024-01-10 CET", "CET"});
    QTest::newRow("over a change of the clocks")
        << momentOf("2024-10-26 07:00:00") << momentOf("2024-10-28 08:00:00")
        << QStringList({"2024-10-26 CEST – 2024-10-28 CET", "2024-10-26 CEST", "CEST"});
}

void TimeTicksTest::datesTellTheZone()
{
    QFETCH(double, start);
    QFETCH(double, stop);
    QTEST(timeticks::dates(start, stop), "texts");
    QCOMPARE(timeticks::isSameDay(start, stop), stop - start < 2 * hour);
}

QTEST_APPLESS_MAIN(TimeTicksTest)
#include "tst_timeticks.moc"
