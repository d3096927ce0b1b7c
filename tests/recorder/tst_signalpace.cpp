#include <recorder/store/signalpace.h>

#include <steppedclock.h>

#include <QTest>

#include <limits>

using ZelkoRecorder::SignalPace;
using ZelkoTest::SteppedClock;

class TestSignalPace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsFromItsBeginning_data();
    void countsFromItsBeginning();
    void hasAllAtOnceWithoutASpeed();
};

void TestSignalPace::countsFromItsBeginning_data()
{
    QTest::addColumn<double>("speed");
    QTest::addColumn<int>("milliseconds");
    QTest::addColumn<qint64>("frames");
    QTest::newRow("nothing at once") << 1.0 << 0 << qint64{0};
    QTest::newRow("in real time") << 1.0 << 1500 << qint64{1500};
    QTest::newRow("twice as fast") << 2.0 << 1500 << qint64{3000};
    QTest::newRow("slowly, and whole frames only") << 0.5 << 1501 << qint64{750};
}

void TestSignalPace::countsFromItsBeginning()
{
    QFETCH(const double, speed);
    QFETCH(const int, milliseconds);
    SteppedClock clock;
    clock.advance(std::chrono::milliseconds(70));
    const SignalPace pace(speed, 1000, clock);
    clock.advance(std::chrono::milliseconds(milliseconds));
    QTEST(pace.framesDue(), "frames");
}

void TestSignalPace::hasAllAtOnceWithoutASpeed()
{
    SteppedClock clock;
    QCOMPARE(SignalPace(0, 1000, clock).framesDue(), std::numeric_limits<qint64>::max());
}

QTEST_APPLESS_MAIN(TestSignalPace)
#include "tst_signalpace.moc"
