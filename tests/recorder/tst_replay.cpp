#include <recorder/store/replay.h>

#include <storedrecord.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using std::chrono::microseconds;
using std::chrono::milliseconds;

namespace {

// From second 10 to 11, 4000 bytes.
RecordTimeline timeline()
{
    return RecordTimeline(finishedRecord(QStringLiteral("R1")));
}

Replay::TimePoint at(milliseconds time)
{
    return Replay::TimePoint(std::chrono::hours(5)) + time;
}

} // namespace

class TestReplay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesWhatIsInTheRecord_data();
    void takesWhatIsInTheRecord();
    void runsWithTheClock();
    void standsStillWhilePaused();
    void canBePausedAndContinuedTwice();
    void endsAtItsStop();
    void staysAtItsEnd();
    void takesNoTimesForMoreThanItCanCount();
};

void TestReplay::takesWhatIsInTheRecord_data()
{
    QTest::addColumn<quint64>("start");
    QTest::addColumn<quint64>("stop");
    QTest::addColumn<bool>("isValid");
    QTest::addColumn<quint64>("first");
    QTest::addColumn<quint64>("last");
    constexpr quint64 begin = 10'000'000;
    constexpr quint64 end = 11'000'000;
    QTest::newRow("all of it") << begin << end << true << begin << end;
    QTest::newRow("no stop is its end") << begin + 10 << quint64{0} << true << begin + 10 << end;
    QTest::newRow("neither start nor stop") << quint64{0} << quint64{0} << true << begin << end;
    QTest::newRow("more than it") << quint64{1} << ~quint64{0} << true << begin << end;
    QTest::newRow("a part") << begin + 10 << end - 10 << true << begin + 10 << end - 10;
    QTest::newRow("reversed") << end << begin << false << end << end;
    QTest::newRow("before it") << quint64{1} << begin << false << begin << begin;
    QTest::newRow("behind it") << end << end + 5 << false << end << end;
}

void TestReplay::takesWhatIsInTheRecord()
{
    QFETCH(const quint64, start);
    QFETCH(const quint64, stop);
    const Replay replay(timeline(), start, stop, at(milliseconds(0)));
    QTEST(replay.isValid(), "isValid");
    QTEST(replay.timeAt(at(milliseconds(0))), "first");
    QTEST(replay.timeAt(at(milliseconds(5000))), "last");
}

void TestReplay::runsWithTheClock()
{
    const Replay replay(timeline(), 0, 0, at(milliseconds(0)));
    QCOMPARE(replay.timeAt(at(milliseconds(250))), quint64{10'250'000});
    QCOMPARE(replay.offsetAt(at(milliseconds(250))), quint64{1000});
    QCOMPARE(replay.left(at(milliseconds(250))), microseconds(750'000));
}

void TestReplay::standsStillWhilePaused()
{
    Replay replay(timeline(), 0, 0, at(milliseconds(0)));
    replay.pause(at(milliseconds(300)));
    QVERIFY(replay.isPaused());
    QCOMPARE(replay.timeAt(at(milliseconds(90'000))), quint64{10'300'000});
    QVERIFY(!replay.hasEnded(at(milliseconds(90'000))));
    replay.continueAt(at(milliseconds(90'000)));
    QVERIFY(!replay.isPaused());
    QCOMPARE(replay.timeAt(at(milliseconds(90'100))), quint64{10'400'000});
}

void TestReplay::canBePausedAndContinuedTwice()
{
    Replay replay(timeline(), 0, 0, at(milliseconds(0)));
    replay.continueAt(at(milliseconds(100)));
    replay.pause(at(milliseconds(300)));
    replay.pause(at(milliseconds(500)));
    replay.continueAt(at(milliseconds(600)));
    replay.continueAt(at(milliseconds(700)));
    QCOMPARE(replay.timeAt(at(milliseconds(800))), quint64{10'500'000});
    QCOMPARE(replay.pauses(), 1U); // the others meant nothing
    replay.pause(at(milliseconds(800)));
    QCOMPARE(replay.pauses(), 2U);
}

void TestReplay::endsAtItsStop()
{
    const Replay replay(timeline(), 10'200'000, 10'600'000, at(milliseconds(0)));
    QVERIFY(!replay.hasEnded(at(milliseconds(399))));
    QVERIFY(replay.hasEnded(at(milliseconds(400))));
    QCOMPARE(replay.timeAt(at(milliseconds(400))), quint64{10'600'000});
}

void TestReplay::staysAtItsEnd()
{
    Replay replay(timeline(), 0, 0, at(milliseconds(0)));
    replay.pause(at(milliseconds(2000)));
    replay.continueAt(at(milliseconds(3000)));
    QVERIFY(replay.hasEnded(at(milliseconds(3000))));
    QCOMPARE(replay.left(at(milliseconds(9000))), microseconds(0));
    QCOMPARE(replay.offsetAt(at(milliseconds(9000))), quint64{4000});
}

void TestReplay::takesNoTimesForMoreThanItCanCount()
{
    ZELKO_XML::ZELKO_RecordData record = finishedRecord(QStringLiteral("R1"));
    record.SetStopTime(~quint64{0});
    record.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(~quint64{0}, 4000)});
    const Replay replay(RecordTimeline(record), 0, 0, at(milliseconds(0)));
    QCOMPARE(replay.left(at(milliseconds(0))), microseconds(1'000'000'000'000'000));
    QCOMPARE(replay.timeAt(at(milliseconds(250))), quint64{10'250'000});
}

QTEST_GUILESS_MAIN(TestReplay)
#include "tst_replay.moc"
