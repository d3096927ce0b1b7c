#include "patience.h"

#include <recorder/service/longtimer.h>

#include <QElapsedTimer>
#include <QTest>

using namespace std::chrono_literals;
using ZelkoRecorder::LongTimer;

class TestLongTimer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_ends = 0; }
    void endsOnceWhenTheTimeIsOver_data();
    void endsOnceWhenTheTimeIsOver();
    void countsTimesThatNoPlainTimerHolds();
    void isStopped();
    void startsAnew();

private:
    const std::function<void()> m_count = [this] { ++m_ends; };
    int m_ends = 0;
};

void TestLongTimer::endsOnceWhenTheTimeIsOver_data()
{
    QTest::addColumn<int>("milliseconds");
    QTest::addColumn<int>("longestStep");
    QTest::newRow("in one step") << 20 << 100;
    QTest::newRow("in steps of equal length") << 20 << 5;
    QTest::newRow("in steps with a rest") << 21 << 5;
    QTest::newRow("at once") << 0 << 5;
}

void TestLongTimer::endsOnceWhenTheTimeIsOver()
{
    QFETCH(const int, milliseconds);
    QFETCH(const int, longestStep);
    LongTimer timer(m_count, std::chrono::milliseconds(longestStep));
    QElapsedTimer elapsed;
    elapsed.start();
    timer.start(std::chrono::milliseconds(milliseconds));
    QVERIFY(timer.isActive());
    QTRY_COMPARE_WITH_TIMEOUT(m_ends, 1, patience);
    QVERIFY(elapsed.elapsed() >= milliseconds / 2); // a step may end a little early
    QVERIFY(!timer.isActive());
    QCOMPARE(timer.left(), 0ms);
}

void TestLongTimer::countsTimesThatNoPlainTimerHolds()
{
    LongTimer timer(m_count);
    const auto longest = std::chrono::seconds(std::numeric_limits<int>::max());
    timer.start(longest);
    QVERIFY(timer.left() <= longest + 1s);
    QVERIFY(timer.left() > longest - 1h);
}

void TestLongTimer::isStopped()
{
    LongTimer stopped(m_count, 1ms);
    stopped.start(5ms);
    stopped.stop();
    QVERIFY(!stopped.isActive());
    QCOMPARE(stopped.left(), 0ms);
    bool otherEnds = false;
    LongTimer other([&] { otherEnds = true; }, 1ms);
    other.start(20ms);
    QTRY_VERIFY_WITH_TIMEOUT(otherEnds, patience);
    QCOMPARE(m_ends, 0);
}

void TestLongTimer::startsAnew()
{
    LongTimer timer(m_count, 1ms);
    timer.start(std::chrono::hours(1));
    timer.start(3ms);
    QTRY_COMPARE_WITH_TIMEOUT(m_ends, 1, patience);
}

QTEST_GUILESS_MAIN(TestLongTimer)
#include "tst_longtimer.moc"
