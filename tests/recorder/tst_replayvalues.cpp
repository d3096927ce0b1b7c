#include <recorder/served/replayvalues.h>

#include <recorder/served/replays.h>

#include <handclock.h>
#include <recordervalues.h>
#include <storedrecord.h>
#include <watch.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using std::chrono::milliseconds;

namespace {

const QString device = QStringLiteral("D1");

} // namespace

class TestReplayValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void showsNothingAtFirst();
    void showsTheReplayThatWasBegun();
    void movesWithTheReplay();
    void standsStillWithTheReplay();
    void showsTheReplayThatWasBegunLast();
    void showsNothingAfterTheLastReplay();
    void tellsNobodyOfWhatStaysAsItIs();

private:
    StoreStatus start(const QString& id) { return m_replays->start(id, RecordTimeline(finishedRecord(id)), 0, 0); }
    // What clients see: the record, microseconds of its signal since its start, and how many are replayed.
    QString shown() const
    {
        const qint64 position = values().find<Value<qint64>>("/Replay/CurrentReplayPosition")->GetValue();
        return QStringLiteral("%1 %2 %3")
            .arg(values().find<Value<QString>>("/Replay/RecordID")->GetValue())
            .arg(position == 0 ? -1 : position - 10'000'000)
            .arg(values().find<Value<int>>("/Replay/NoOfReplays")->GetValue());
    }
    RecorderValues values() const { return {*m_tree, QString(), device}; }

    HandClock m_clock;
    RecordUses m_uses;
    std::unique_ptr<Tree> m_tree;
    std::unique_ptr<Replays> m_replays;
    std::unique_ptr<ReplayValues> m_values;
};

void TestReplayValues::init()
{
    m_values.reset();
    m_replays = std::make_unique<Replays>(m_uses, m_clock);
    m_tree = std::make_unique<Tree>();
    m_values = std::make_unique<ReplayValues>(*m_tree, device, *m_replays);
}

void TestReplayValues::showsNothingAtFirst()
{
    QCOMPARE(shown(), QStringLiteral(" -1 0"));
}

void TestReplayValues::showsTheReplayThatWasBegun()
{
    QCOMPARE(start(QStringLiteral("R1")), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral("R1 0 1"), 30'000);
}

void TestReplayValues::movesWithTheReplay()
{
    QCOMPARE(start(QStringLiteral("R1")), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral("R1 0 1"), 30'000);
    m_clock.advance(milliseconds(250));
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral("R1 250000 1"), 30'000);
    m_clock.advance(milliseconds(500));
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral("R1 750000 1"), 30'000);
}

void TestReplayValues::standsStillWithTheReplay()
{
    QCOMPARE(start(QStringLiteral("R1")), StoreStatus::Done);
    m_clock.advance(milliseconds(250));
    QCOMPARE(m_replays->pause(QStringLiteral("R1")), StoreStatus::Done);
    m_clock.advance(milliseconds(250));
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral("R1 250000 1"), 30'000);
    QCOMPARE(m_replays->goOn(QStringLiteral("R1")), StoreStatus::Done);
    m_clock.advance(milliseconds(250));
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral("R1 500000 1"), 30'000);
}

void TestReplayValues::showsTheReplayThatWasBegunLast()
{
    QCOMPARE(start(QStringLiteral("R1")), StoreStatus::Done);
    m_clock.advance(milliseconds(250));
    QCOMPARE(start(QStringLiteral("R2")), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral("R2 0 2"), 30'000);
    QCOMPARE(m_replays->stop(QStringLiteral("R2")), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral("R1 250000 1"), 30'000);
}

void TestReplayValues::showsNothingAfterTheLastReplay()
{
    QCOMPARE(start(QStringLiteral("R1")), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral("R1 0 1"), 30'000);
    m_clock.advance(milliseconds(1000)); // to its end
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral(" -1 0"), 30'000);
    QCOMPARE(start(QStringLiteral("R1")), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral("R1 0 1"), 30'000);
}

void TestReplayValues::tellsNobodyOfWhatStaysAsItIs()
{
    QCOMPARE(start(QStringLiteral("R1")), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral("R1 0 1"), 30'000);
    int changes = 0;
    Watch watch([&] { ++changes; });
    watch.on(values().find<Value<QString>>("/Replay/RecordID"));
    for (int quarter = 1; quarter < 4; ++quarter) {
        m_clock.advance(milliseconds(250));
        QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringLiteral("R1 %1 1").arg(quarter * 250'000), 30'000);
    }
    QCOMPARE(changes, 0);
}

QTEST_GUILESS_MAIN(TestReplayValues)
#include "tst_replayvalues.moc"
