#include <chartcontrols/timeticks_p.h>

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
    void distancesAreThoseOfClocks_data();
    void distancesAreThoseOfClocks();
    void ticksAreRoundInLocalTime_data();
    void ticksAreRoundInLocalTime();
    void textsAreAsFineAsTheDistance();
    void neighboursDifferHoweverSmallTheDistance();
};

void TimeTicksTest::distancesAreThoseOfClocks_data()
{
    QTest::addColumn<double>("least");
    QTest::addColumn<double>("distance");
    QTest::newRow("nothing") << 0.0 << 1000.0;
    QTest::newRow("microseconds") << 3.0 << 1000.0;
    QTest::newRow("milliseconds") << 110'000.0 << 200'000.0;
    QTest::newRow("half a second") << 500'000.0 << 500'000.0;
    QTest::newRow("most of a second") << 600'000.0 << second;
    QTest::newRow("some seconds") << 11 * second << 15 * second;
    QTest::newRow("a minute") << 31 * second << 60 * second;
    QTest::newRow("half an hour") << 1000 * second << 1800 * second;
    QTest::newRow("six hours") << 4 * hour << 6 * hour;
    QTest::newRow("a day") << 13 * hour << day;
    QTest::newRow("days") << 2.5 * day << 3 * day;
}

void TimeTicksTest::distancesAreThoseOfClocks()
{
    QFETCH(double, least);
    QFETCH(double, distance);
    QCOMPARE(timeticks::distance(least), distance);
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
    QCOMPARE(timeticks::first(moment, distance), tick);
}

void TimeTicksTest::textsAreAsFineAsTheDistance()
{
    const double moment = momentOf("2024-07-10 07:08:09") + 123'456;
    QCOMPARE(timeticks::text(moment, 1000), QStringLiteral("07:08:09.123"));
    QCOMPARE(timeticks::text(moment, second), QStringLiteral("07:08:09"));
    QCOMPARE(timeticks::text(moment, hour), QStringLiteral("07:08:09"));
    QCOMPARE(timeticks::text(moment, day), QStringLiteral("2024-07-10"));
}

void TimeTicksTest::neighboursDifferHoweverSmallTheDistance()
{
    const double distance = timeticks::distance(3);
    const double tick = timeticks::first(momentOf("2024-07-10 07:08:09") + 123'456, distance);
    QCOMPARE(timeticks::text(tick, distance), QStringLiteral("07:08:09.124"));
    QCOMPARE(timeticks::text(tick + distance, distance), QStringLiteral("07:08:09.125"));
}

QTEST_APPLESS_MAIN(TimeTicksTest)
#include "tst_timeticks.moc"
