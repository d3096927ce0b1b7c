#include "patience.h"

#include <recorder/service/longtimer.h>

#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include <limits>

using namespace std::chrono_literals;
using ZelkoRecorder::LongTimer;

class TestLongTimer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_ends = 0; }
    void endsOnceWhenTheTimeIsOver_data();
    void endsOnceWhenTheTimeIsOver();
    void countsTimesThatNoPlainTimerHolds_data();
    void countsTimesThatNoPlainTimerHolds();
    void isStopped();
    void startsAnew();

private:
    /// So much that whatever was to end in a few milliseconds has ended.
    static void letTimePass()
    {
        QTimer other;
        other.setSingleShot(true);
        other.start(100ms);
        QTRY_VERIFY_WITH_TIMEOUT(!other.isActive(), patience);
    }

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
    QCOMPARE(m_ends, 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_ends, 1, patience);
    QVERIFY(elapsed.elapsed() >= milliseconds / 2); // a step may end a little early
    letTimePass();
    QCOMPARE(m_ends, 1);
}

void TestLongTimer::countsTimesThatNoPlainTimerHolds_data()
{
    QTest::addColumn<qint64>("milliseconds");
    QTest::newRow("the least that leaves the number of a plain one at nothing") << (qint64{1} << 32);
    QTest::newRow("one more") << (qint64{1} << 32) + 1;
    QTest::newRow("the most seconds that a number holds") << std::numeric_limits<int>::max() * qint64{1000};
}

void TestLongTimer::countsTimesThatNoPlainTimerHolds()
{
    QFETCH(const qint64, milliseconds);
    LongTimer timer(m_count);
    timer.start(std::chrono::milliseconds(milliseconds));
    letTimePass();
    QCOMPARE(m_ends, 0);
}

void TestLongTimer::isStopped()
{
    LongTimer stopped(m_count, 1ms);
    stopped.start(2ms);
    stopped.stop();
    letTimePass();
    QCOMPARE(m_ends, 0);
    stopped.start(2ms);
    QTRY_COMPARE_WITH_TIMEOUT(m_ends, 1, patience);
}

void TestLongTimer::startsAnew()
{
    LongTimer timer(m_count, 1ms);
    timer.start(std::chrono::hours(1));
    timer.start(3ms);
    QTRY_COMPARE_WITH_TIMEOUT(m_ends, 1, patience);
    letTimePass();
    QCOMPARE(m_ends, 1);
}

QTEST_GUILESS_MAIN(TestLongTimer)
#include "tst_longtimer.moc"
