#include <recorder/served/replays.h>

#include <handclock.h>
#include <storedrecord.h>

#include <QSignalSpy>
#include <QTest>

#include <thread>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;
using Kind = RecordUses::Kind;
using std::chrono::milliseconds;

namespace {

const QString id = QStringLiteral("R1");

} // namespace

class TestReplays : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void movesWithTheClock();
    void standsStillWhilePaused();
    void endsAtItsStop();
    void endsByItself();
    void endsWhenStopped();
    void replaysARecordOnceAtATime();
    void refusesWhatHoldsNothing();
    void refusesARecordThatIsBeingDeleted();
    void keepsTheRecordFromBeingDeleted();
    void knowsNothingOfOtherRecords();
    void marksTheRecord();
    void tellsOfBeginAndEndInOrder();
    void mayBeCalledByAnyThread();
    void endsWithoutASignalWhenItGoes();

private:
    StoreStatus start(quint64 from = 0, quint64 to = 0)
    {
        return m_replays->start(id, RecordTimeline(finishedRecord(id)), from, to);
    }

    HandClock m_clock;
    RecordUses m_uses;
    std::unique_ptr<Replays> m_replays;
};

void TestReplays::init()
{
    m_replays = std::make_unique<Replays>(m_uses, m_clock);
}

void TestReplays::movesWithTheClock()
{
    QCOMPARE(start(), StoreStatus::Done);
    m_clock.advance(milliseconds(250));
    QCOMPARE(m_replays->position(id), (Replays::Position{10'250'000, 1000, false}));
    m_clock.advance(milliseconds(250));
    QCOMPARE(m_replays->position(id), (Replays::Position{10'500'000, 2000, false}));
}

void TestReplays::standsStillWhilePaused()
{
    QCOMPARE(start(), StoreStatus::Done);
    m_clock.advance(milliseconds(250));
    QCOMPARE(m_replays->pause(id), StoreStatus::Done);
    m_clock.advance(milliseconds(10'000));
    m_replays->endThoseDue();
    QCOMPARE(m_replays->position(id), (Replays::Position{10'250'000, 1000, true, 1}));
    QCOMPARE(m_replays->goOn(id), StoreStatus::Done);
    m_clock.advance(milliseconds(250));
    QCOMPARE(m_replays->position(id), (Replays::Position{10'500'000, 2000, false, 1}));
}

void TestReplays::endsAtItsStop()
{
    QCOMPARE(start(10'200'000, 10'600'000), StoreStatus::Done);
    m_clock.advance(milliseconds(399));
    m_replays->endThoseDue();
    QVERIFY(m_replays->isReplaying(id));
    m_clock.advance(milliseconds(1));
    QCOMPARE(m_replays->pause(id), StoreStatus::UnknownEntry);
    m_replays->endThoseDue();
    QVERIFY(!m_replays->isReplaying(id));
    QVERIFY(!m_replays->position(id).has_value());
}

void TestReplays::endsByItself()
{
    QCOMPARE(start(), StoreStatus::Done);
    QSignalSpy spy(m_replays.get(), &Replays::changed);
    QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 1, 30'000);
    m_clock.advance(milliseconds(2000));
    QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 2, 30'000);
    QVERIFY(!m_replays->isReplaying(id));
}

void TestReplays::endsWhenStopped()
{
    QCOMPARE(start(), StoreStatus::Done);
    QCOMPARE(m_replays->stop(id), StoreStatus::Done);
    QVERIFY(!m_replays->isReplaying(id));
    QCOMPARE(m_replays->stop(id), StoreStatus::UnknownEntry);
    QCOMPARE(start(), StoreStatus::Done);
}

void TestReplays::replaysARecordOnceAtATime()
{
    QCOMPARE(start(), StoreStatus::Done);
    m_clock.advance(milliseconds(100));
    QCOMPARE(start(), StoreStatus::InUse);
    QCOMPARE(m_replays->position(id)->time, quint64{10'100'000});
}

void TestReplays::refusesWhatHoldsNothing()
{
    QCOMPARE(start(11'000'000, 10'000'000), StoreStatus::BadRange);
    QVERIFY(m_uses.begin(id, Kind::Deletion));
}

void TestReplays::refusesARecordThatIsBeingDeleted()
{
    const RecordUses::Handle deletion = m_uses.begin(id, Kind::Deletion);
    QCOMPARE(start(), StoreStatus::InUse);
    QVERIFY(!m_replays->isReplaying(id));
}

void TestReplays::keepsTheRecordFromBeingDeleted()
{
    QCOMPARE(start(), StoreStatus::Done);
    QVERIFY(!m_uses.begin(id, Kind::Deletion));
    QCOMPARE(start(), StoreStatus::InUse);
    QCOMPARE(m_replays->stop(id), StoreStatus::Done);
    QVERIFY(m_uses.begin(id, Kind::Deletion));
}

void TestReplays::knowsNothingOfOtherRecords()
{
    QCOMPARE(start(), StoreStatus::Done);
    const QString other = QStringLiteral("R2");
    QCOMPARE(m_replays->pause(other), StoreStatus::UnknownEntry);
    QCOMPARE(m_replays->goOn(other), StoreStatus::UnknownEntry);
    QCOMPARE(m_replays->stop(other), StoreStatus::UnknownEntry);
    QVERIFY(!m_replays->position(other).has_value());
    QVERIFY(m_replays->isReplaying(id));
}

void TestReplays::marksTheRecord()
{
    const auto record = std::make_shared<ZELKO_RecordData>(finishedRecord(id));
    QCOMPARE(m_replays->asShown(record), record);
    QCOMPARE(start(), StoreStatus::Done);
    const RecordPointer shown = m_replays->asShown(record);
    QCOMPARE(shown->GetRecordStatus(), ZELKO_RecordData::RecordStatus::Replaying);
    QVERIFY(*record == finishedRecord(id));
    QVERIFY(!m_replays->asShown(nullptr));
}

void TestReplays::tellsOfBeginAndEndInOrder()
{
    QSignalSpy spy(m_replays.get(), &Replays::changed);
    QCOMPARE(start(), StoreStatus::Done);
    QCOMPARE(spy.size(), 0); // nobody is called by an operation
    QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 1, 30'000);
    QCOMPARE(m_replays->stop(id), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 2, 30'000);
    QCOMPARE(spy.at(0).at(0).toString(), id);
    QCOMPARE(spy.at(1).at(0).toString(), id);
}

void TestReplays::mayBeCalledByAnyThread()
{
    QSignalSpy spy(m_replays.get(), &Replays::changed);
    std::thread other([this] {
        for (int i = 0; i < 500; ++i) {
            start();
            m_replays->pause(id);
            m_replays->goOn(id);
            m_replays->stop(id);
        }
    });
    for (int i = 0; i < 500; ++i) {
        m_replays->position(id);
        m_replays->endThoseDue();
    }
    other.join();
    QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 1000, 30'000);
    QVERIFY(m_uses.begin(id, Kind::Deletion));
}

void TestReplays::endsWithoutASignalWhenItGoes()
{
    QCOMPARE(start(), StoreStatus::Done);
    m_replays.reset();
    QVERIFY(m_uses.begin(id, Kind::Deletion));
}

QTEST_GUILESS_MAIN(TestReplays)
#include "tst_replays.moc"
