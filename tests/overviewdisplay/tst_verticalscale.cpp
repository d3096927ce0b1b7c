#include <overviewdisplay/verticalscale_p.h>

#include <overviewdisplay/waterfallview.h>

#include <QApplication>
#include <QFontMetrics>
#include <QtTest>

#include <cmath>
#include <limits>

using SPECTRUM_OVERVIEW::TimeRange;
using SPECTRUM_OVERVIEW::VerticalScale;

namespace {

constexpr quint64 second = 1'000'000;
constexpr quint64 begin = 1'700'000'000 * second; // 23:13:20 in Berlin

QFontMetrics metrics()
{
    return QFontMetrics(QApplication::font());
}

QStringList texts(const std::vector<VerticalScale::Tick>& ticks)
{
    QStringList all;
    for (const VerticalScale::Tick& tick : ticks) {
        if (!tick.text.isEmpty()) {
            all << tick.text;
        }
    }
    return all;
}

// A height in which a text has room every so many of `parts`.
double heightFor(int parts)
{
    return parts * 3.0 * metrics().height();
}

} // namespace

class VerticalScaleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void timesAreRound_data();
    void timesAreRound();
    void timesRunDownwards();
    void absurdTimesHaveFewTicks_data();
    void absurdTimesHaveFewTicks();
    void levelsAreRound_data();
    void levelsAreRound();
    void levelsRunUpwards();
    void noTextIsOverAnother();
};

void VerticalScaleTest::timesAreRound_data()
{
    QTest::addColumn<quint64>("extent");
    QTest::addColumn<QStringList>("first");
    QTest::newRow("milliseconds") << second / 50 << QStringList({"23:13:20.000", "23:13:20.005", "23:13:20.010"});
    QTest::newRow("seconds") << 20 * second << QStringList({"23:13:20", "23:13:25", "23:13:30"});
    QTest::newRow("an hour") << 3600 * second << QStringList({"23:15", "23:30", "23:45"});
    QTest::newRow("over midnight") << 4 * 3600 * second << QStringList({"2023-11-15", "01:00", "02:00"});
    QTest::newRow("days") << 4 * 86400 * second << QStringList({"2023-11-15", "2023-11-16", "2023-11-17"});
}

void VerticalScaleTest::timesAreRound()
{
    QFETCH(quint64, extent);
    QFETCH(QStringList, first);
    const auto ticks = VerticalScale::ofTime({begin, begin + extent}, heightFor(4), metrics());
    QCOMPARE(texts(ticks).mid(0, 3), first);
}

void VerticalScaleTest::timesRunDownwards()
{
    const auto ticks = VerticalScale::ofTime({begin, begin + 20 * second}, heightFor(4), metrics());
    QList<double> places;
    for (const VerticalScale::Tick& tick : ticks) {
        if (!tick.text.isEmpty()) {
            places << tick.place;
        }
    }
    QCOMPARE(places.size(), 4);
    QVERIFY(std::abs(places.at(0)) < 1e-6);
    QVERIFY(std::abs(places.at(3) - heightFor(4) * 15 / 20) < 1e-6);
}

void VerticalScaleTest::absurdTimesHaveFewTicks_data()
{
    QTest::addColumn<quint64>("start");
    QTest::addColumn<quint64>("stop");
    constexpr quint64 farthest = std::numeric_limits<quint64>::max();
    QTest::newRow("the epoch") << quint64(0) << quint64(1);
    QTest::newRow("all there is") << quint64(0) << farthest;
    QTest::newRow("the end") << farthest - 1 << farthest;
    QTest::newRow("more than a double knows") << (quint64(1) << 62) << (quint64(1) << 62) + 5;
}

void VerticalScaleTest::absurdTimesHaveFewTicks()
{
    QFETCH(quint64, start);
    QFETCH(quint64, stop);
    const auto ticks = VerticalScale::ofTime({start, stop}, 500, metrics());
    QVERIFY(ticks.size() <= 1000);
    for (const VerticalScale::Tick& tick : ticks) {
        QVERIFY(tick.place > -1 && tick.place < 501);
    }
}

void VerticalScaleTest::levelsAreRound_data()
{
    QTest::addColumn<double>("lowest");
    QTest::addColumn<double>("highest");
    QTest::addColumn<QStringList>("all");
    QTest::newRow("a usual range") << -80.0 << 0.0 << QStringList({"-80", "-60", "-40", "-20", "0"});
    QTest::newRow("between round ones") << -75.0 << -3.0 << QStringList({"-60", "-40", "-20"});
    QTest::newRow("fine") << -2.0 << 0.0 << QStringList({"-2.0", "-1.5", "-1.0", "-0.5", "0.0"});
    QTest::newRow("on both sides") << -40.0 << 40.0 << QStringList({"-40", "-20", "0", "20", "40"});
}

void VerticalScaleTest::levelsAreRound()
{
    QFETCH(double, lowest);
    QFETCH(double, highest);
    QTEST(texts(VerticalScale::ofLevels(lowest, highest, heightFor(4), metrics())), "all");
}

void VerticalScaleTest::levelsRunUpwards()
{
    const auto ticks = VerticalScale::ofLevels(-80, 0, 300, metrics());
    for (const VerticalScale::Tick& tick : ticks) {
        if (!tick.text.isEmpty()) {
            QVERIFY(std::abs(tick.place - -tick.text.toDouble() / 80 * 300) < 1e-6);
        }
    }
}

void VerticalScaleTest::noTextIsOverAnother()
{
    for (double height = 20; height < 2000; height += 37) {
        double before = -1e9;
        for (const auto& tick : VerticalScale::ofTime({begin, begin + 777 * second}, height, metrics())) {
            if (!tick.text.isEmpty()) {
                QVERIFY(tick.place - before > metrics().height());
                before = tick.place;
            }
        }
    }
}

QTEST_MAIN(VerticalScaleTest)
#include "tst_verticalscale.moc"
