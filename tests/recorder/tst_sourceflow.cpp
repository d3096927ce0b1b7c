#include <recorder/served/mailbox.h>
#include <recorder/service/sourceflow.h>

#include <countingsource.h>
#include <flowtaker.h>
#include <freeport.h>
#include <patience.h>
#include <steppedclock.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using std::chrono::milliseconds;

// A signal of 1000 frames a second, each of four bytes, by a clock that the test moves on.
class TestSourceFlow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_flow.reset(); }
    void sendsWhatIsDue();
    void saysWhatTheSamplesAre();
    void takesTheTimesOfTheSignal();
    void sendsNoFrameAcrossATuning();
    void leavesOutANumberWhereTimeIsMissing_data();
    void leavesOutANumberWhereTimeIsMissing();
    void keepsFramesSmall();
    void endsWithTheSignal();
    void breaksOffWithASourceThatFails();
    void waitsForWhoTakesItSlowly();
    void endsWhileNobodyTakesIt();
    void closesTheConnectionInTheEnd();
    void tellsThatNobodyListens();
    void endsBeforeThereIsRoomForIt();

private:
    void start(const SourceDescription& signal, double speed = 1, qint64 failsAt = -1)
    {
        m_flow =
            std::make_unique<SourceFlow>(std::make_unique<CountingSource>(signal, failsAt),
                                         SourceFlow::Start{m_taker->port(), 10'000'000, speed}, keepFault(), m_clock);
    }
    SourceFlow::Failed keepFault()
    {
        return [this](const QString& why) { m_faults.post([this, why] { m_told.append(why); }); };
    }
    // The time goes on for as long as the condition does not hold.
    template <typename Condition>
    bool advanceUntil(const Condition& condition)
    {
        return QTest::qWaitFor(
            [&] {
                m_clock.advance(milliseconds(20));
                return condition();
            },
            patience);
    }

    Mailbox m_faults;
    QStringList m_told;
    SteppedClock m_clock;
    std::unique_ptr<FlowTaker> m_taker;
    std::unique_ptr<SourceFlow> m_flow;
};

void TestSourceFlow::init()
{
    m_told.clear();
    m_taker = std::make_unique<FlowTaker>();
}

void TestSourceFlow::sendsWhatIsDue()
{
    start(CountingSource::signal(-1));
    QCOMPARE(m_taker->size(), 0);
    m_clock.advance(milliseconds(100));
    QTRY_COMPARE_WITH_TIMEOUT(m_taker->size(), 400, patience);
    m_clock.advance(milliseconds(50));
    QTRY_COMPARE_WITH_TIMEOUT(m_taker->size(), 600, patience);
    QCOMPARE(m_taker->samples(), CountingSource::bytes(150));
    for (qsizetype i = 0; i < m_taker->frames().size(); ++i) {
        QCOMPARE(m_taker->frames()[i].number, static_cast<quint32>(i));
    }
}

void TestSourceFlow::saysWhatTheSamplesAre()
{
    start(CountingSource::signal(-1));
    QVERIFY(advanceUntil([this] { return m_taker->hasFrames() && m_taker->frames().size() >= 2; }));
    const ChannelFrame first = m_taker->frames()[0];
    QCOMPARE(first.stream, 0U);
    QCOMPARE(first.time, 10'000'000U);
    QCOMPARE(first.centreFrequency, 145'000'000U);
    QCOMPARE(first.sampleRate, 1000U);
    QCOMPARE(first.bandwidth, 1000U);
    QVERIFY(!first.isLast);
    QCOMPARE(m_taker->frames()[1].time, 10'000'000U + first.sampleBytes / 4 * 1000U);
}

void TestSourceFlow::takesTheTimesOfTheSignal()
{
    SourceDescription signal = CountingSource::signal(-1);
    signal.segments[0].startTime = 77'000'000;
    start(signal);
    QVERIFY(advanceUntil([this] { return m_taker->hasFrames(); }));
    QCOMPARE(m_taker->frames()[0].time, 77'000'000U);
}

void TestSourceFlow::sendsNoFrameAcrossATuning()
{
    SourceDescription signal = CountingSource::signal(100);
    signal.segments.append({30, 146'000'000, 0});
    start(signal, 0);
    QVERIFY(advanceUntil([this] { return m_taker->hasLast(); }));
    const auto& frames = m_taker->frames();
    QCOMPARE(frames.size(), 3);
    QCOMPARE(frames[0].sampleBytes, 120U);
    QCOMPARE(frames[0].centreFrequency, 145'000'000U);
    QCOMPARE(frames[1].sampleBytes, 280U);
    QCOMPARE(frames[1].centreFrequency, 146'000'000U);
    QCOMPARE(frames[1].time, 10'030'000U);
    QCOMPARE(m_taker->samples(), CountingSource::bytes(100));
}

void TestSourceFlow::leavesOutANumberWhereTimeIsMissing_data()
{
    QTest::addColumn<quint64>("rate");
    QTest::addColumn<quint64>("secondStart"); // 30 frames behind the first; 0: follows from it
    QTest::addColumn<QVector<quint32>>("numbers");
    QTest::newRow("no hole") << quint64{1000} << quint64{77'030'000} << QVector<quint32>{0, 1, 2};
    QTest::newRow("no time of its own") << quint64{1000} << quint64{0} << QVector<quint32>{0, 1, 2};
    QTest::newRow("times that are rounded") << quint64{48'000} << quint64{77'000'625} << QVector<quint32>{0, 1, 2};
    QTest::newRow("a hole") << quint64{1000} << quint64{78'000'000} << QVector<quint32>{0, 2, 3};
    QTest::newRow("time that has been before") << quint64{1000} << quint64{77'010'000} << QVector<quint32>{0, 1, 2};
}

void TestSourceFlow::leavesOutANumberWhereTimeIsMissing()
{
    QFETCH(const quint64, rate);
    QFETCH(const quint64, secondStart);
    SourceDescription signal = CountingSource::signal(100, rate);
    signal.segments[0].startTime = 77'000'000;
    signal.segments.append({30, 145'000'000, secondStart});
    start(signal, 0);
    QVERIFY(advanceUntil([this] { return m_taker->hasLast(); }));
    QVector<quint32> numbers;
    for (const ChannelFrame& frame : m_taker->frames()) {
        numbers.append(frame.number);
    }
    QTEST(numbers, "numbers");
    QCOMPARE(m_taker->samples(), CountingSource::bytes(100));
}

void TestSourceFlow::keepsFramesSmall()
{
    start(CountingSource::signal(40'000), 0);
    QVERIFY(advanceUntil([this] { return m_taker->hasLast(); }));
    QCOMPARE(m_taker->frames()[0].sampleBytes, 65'536U);
    QCOMPARE(m_taker->samples(), CountingSource::bytes(40'000));
}

void TestSourceFlow::endsWithTheSignal()
{
    start(CountingSource::signal(150));
    QVERIFY(advanceUntil([this] { return m_taker->hasLast(); }));
    QCOMPARE(m_taker->frames().constLast().sampleBytes, 0U);
    QCOMPARE(m_taker->frames().constLast().time, 10'150'000U);
    QCOMPARE(m_taker->samples(), CountingSource::bytes(150));
    QTRY_VERIFY_WITH_TIMEOUT(m_taker->isClosed(), patience);
    m_flow.reset();
    QCoreApplication::processEvents();
    QCOMPARE(m_told, QStringList());
}

void TestSourceFlow::breaksOffWithASourceThatFails()
{
    start(CountingSource::signal(-1), 0, 150);
    QVERIFY(advanceUntil([this] { return m_taker->isClosed() && !m_told.isEmpty(); }));
    QCOMPARE(m_told, QStringList{QStringLiteral("the source has failed: the cable broke")});
    QCOMPARE(m_taker->samples(), CountingSource::bytes(150));
    QVERIFY(!m_taker->hasLast());
}

// More than any buffer of the system holds.
void TestSourceFlow::waitsForWhoTakesItSlowly()
{
    constexpr qint64 frames = 5'000'000;
    start(CountingSource::signal(frames), 0);
    QVERIFY(advanceUntil([this] { return m_taker->hasLast(); }));
    QCOMPARE(m_taker->samples().size(), frames * 4);
    QCOMPARE(m_taker->samples().right(4), CountingSource::bytes(frames).right(4));
}

void TestSourceFlow::endsWhileNobodyTakesIt()
{
    start(CountingSource::signal(-1), 0);
    m_flow.reset(); // there is always more
    QVERIFY(!m_taker->hasLast());
}

void TestSourceFlow::closesTheConnectionInTheEnd()
{
    start(CountingSource::signal(-1));
    QVERIFY(advanceUntil([this] { return m_taker->hasFrames(); }));
    m_flow.reset();
    QTRY_VERIFY_WITH_TIMEOUT(m_taker->isClosed(), patience);
    QVERIFY(!m_taker->hasLast());
}

void TestSourceFlow::tellsThatNobodyListens()
{
    const SourceFlow flow(std::make_unique<CountingSource>(CountingSource::signal(-1)),
                          SourceFlow::Start{freePort(), 0, 0}, keepFault(), m_clock);
    const QStringList told{QStringLiteral("nobody takes the data of the source")};
    QTRY_COMPARE_WITH_TIMEOUT(m_told, told, patience);
}

// The taker takes no connection, and the system keeps two.
void TestSourceFlow::endsBeforeThereIsRoomForIt()
{
    const auto first = FlowConnection::open(m_taker->port());
    const auto second = FlowConnection::open(m_taker->port());
    QVERIFY(first && second);
    start(CountingSource::signal(-1));
    m_flow.reset();
    QCoreApplication::processEvents();
    QCOMPARE(m_told, QStringList());
}

QTEST_GUILESS_MAIN(TestSourceFlow)
#include "tst_sourceflow.moc"
