#include <overviewdisplay/timerows_p.h>

#include <QtTest>

#include <limits>

using SPECTRUM_OVERVIEW::moved;
using SPECTRUM_OVERVIEW::TimeRange;
using SPECTRUM_OVERVIEW::TimeRows;
using SPECTRUM_OVERVIEW::zoomed;

Q_DECLARE_METATYPE(TimeRange)

namespace {

constexpr quint64 farthest = std::numeric_limits<quint64>::max();
constexpr quint64 odd = (quint64(1) << 53) + 1; // the first that a double does not know

} // namespace

class TimeRowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsBeginAtExactTimes_data();
    void rowsBeginAtExactTimes();
    void eachTimeHasItsRow_data();
    void eachTimeHasItsRow();
    void timesOutsideAreHeld();
    void placesLieBetweenRows();
    void zoomsKeepTheirCentre_data();
    void zoomsKeepTheirCentre();
    void movesKeepTheirLength_data();
    void movesKeepTheirLength();
};

void TimeRowsTest::rowsBeginAtExactTimes_data()
{
    QTest::addColumn<TimeRange>("range");
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("row");
    QTest::addColumn<quint64>("time");
    QTest::newRow("the first") << TimeRange{odd, odd + 700} << 100 << 0 << odd;
    QTest::newRow("one between") << TimeRange{odd, odd + 700} << 100 << 33 << odd + 231;
    QTest::newRow("cut to a microsecond") << TimeRange{odd, odd + 10} << 3 << 1 << odd + 3;
    QTest::newRow("behind the last") << TimeRange{odd, odd + 700} << 100 << 100 << odd + 700;
    QTest::newRow("more rows than times") << TimeRange{odd, odd + 2} << 4 << 3 << odd + 1;
    QTest::newRow("of all there is") << TimeRange{0, farthest} << 3 << 2 << farthest / 3 * 2;
}

void TimeRowsTest::rowsBeginAtExactTimes()
{
    QFETCH(TimeRange, range);
    QFETCH(int, rows);
    QFETCH(int, row);
    QTEST((TimeRows{range, rows}.timeOf(row)), "time");
}

void TimeRowsTest::eachTimeHasItsRow_data()
{
    QTest::addColumn<TimeRange>("range");
    QTest::addColumn<int>("rows");
    QTest::newRow("many times a row") << TimeRange{odd, odd + 1000} << 7;
    QTest::newRow("one time a row") << TimeRange{odd, odd + 100} << 100;
    QTest::newRow("many rows a time") << TimeRange{odd, odd + 10} << 37;
}

void TimeRowsTest::eachTimeHasItsRow()
{
    QFETCH(TimeRange, range);
    QFETCH(int, rows);
    const TimeRows times{range, rows};
    for (quint64 time = range.start; time < range.stop; ++time) {
        const int row = times.rowAt(time);
        QVERIFY(times.timeOf(row) <= time);
        QVERIFY(time < times.timeOf(row + 1));
        const int first = times.firstRowFrom(time);
        QVERIFY(times.timeOf(first) >= time);
        QVERIFY(first == 0 || times.timeOf(first - 1) < time);
    }
}

void TimeRowsTest::timesOutsideAreHeld()
{
    const TimeRows times{{1000, 2000}, 50};
    QCOMPARE(times.rowAt(0), 0);
    QCOMPARE(times.rowAt(2000), 49);
    QCOMPARE(times.rowAt(farthest), 49);
    QCOMPARE(times.firstRowFrom(0), 0);
    QCOMPARE(times.firstRowFrom(2000), 50);
    QCOMPARE(times.firstRowFrom(farthest), 50);
}

void TimeRowsTest::placesLieBetweenRows()
{
    const TimeRows times{{1000, 2000}, 50};
    QCOMPARE(times.placeOf(1000), 0.0);
    QCOMPARE(times.placeOf(1010), 0.5);
    QCOMPARE(times.placeOf(2000), 50.0);
    QCOMPARE(times.placeOf(0), -50.0);
    QCOMPARE(times.placeOf(3000), 100.0);
}

void TimeRowsTest::zoomsKeepTheirCentre_data()
{
    QTest::addColumn<TimeRange>("range");
    QTest::addColumn<quint64>("centre");
    QTest::addColumn<double>("factor");
    QTest::addColumn<TimeRange>("zoomed");
    const TimeRange range{10'000, 20'000};
    QTest::newRow("in") << range << quint64(12'000) << 0.5 << TimeRange{11'000, 16'000};
    QTest::newRow("out") << range << quint64(12'000) << 2.0 << TimeRange{8'000, 28'000};
    QTest::newRow("around an edge") << range << quint64(20'000) << 0.5 << TimeRange{15'000, 20'000};
    QTest::newRow("around what is outside") << range << quint64(5) << 0.5 << TimeRange{10'000, 15'000};
    QTest::newRow("not below the epoch") << range << quint64(15'000) << 10.0 << TimeRange{0, 100'000};
    QTest::newRow("not too fine") << range << quint64(15'000) << 1e-9 << TimeRange{14'950, 15'050};
    QTest::newRow("at the end of time") << TimeRange{farthest - 1000, farthest} << farthest - 1000 << 8.0
                                        << TimeRange{farthest - 1000, farthest};
}

void TimeRowsTest::zoomsKeepTheirCentre()
{
    QFETCH(TimeRange, range);
    QFETCH(quint64, centre);
    QFETCH(double, factor);
    const TimeRange found = zoomed(range, centre, factor);
    QVERIFY(found.start < found.stop);
    if (centre < farthest / 2) {
        QTEST(found, "zoomed");
    }
}

void TimeRowsTest::movesKeepTheirLength_data()
{
    QTest::addColumn<TimeRange>("range");
    QTest::addColumn<double>("lengths");
    QTest::addColumn<TimeRange>("moved");
    QTest::newRow("later") << TimeRange{1000, 2000} << 0.5 << TimeRange{1500, 2500};
    QTest::newRow("earlier") << TimeRange{1000, 2000} << -0.5 << TimeRange{500, 1500};
    QTest::newRow("not below the epoch") << TimeRange{1000, 2000} << -2.0 << TimeRange{0, 1000};
    QTest::newRow("not beyond all dates")
        << TimeRange{0, 9'199'999'999'999'999'000U} << 2.0 << TimeRange{1000, 9'200'000'000'000'000'000U};
    QTest::newRow("not where there are none")
        << TimeRange{farthest - 5, farthest} << 1.0 << TimeRange{farthest - 5, farthest};
}

void TimeRowsTest::movesKeepTheirLength()
{
    QFETCH(TimeRange, range);
    QFETCH(double, lengths);
    QTEST(moved(range, lengths), "moved");
}

QTEST_APPLESS_MAIN(TimeRowsTest)
#include "tst_timerows.moc"
