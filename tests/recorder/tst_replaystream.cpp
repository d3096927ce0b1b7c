#include <recorder/service/replaystream.h>

#include <patience.h>
#include <replayreceiver.h>
#include <steppedclock.h>
#include <storedrecord.h>

#include <recorder/served/mailbox.h>

#include <QTemporaryDir>
#include <QTest>

#include <mutex>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using namespace Qt::StringLiterals;
using std::chrono::milliseconds;
using End = ReplayStream::End;
using Record = ZELKO_XML::ZELKO_RecordData;

namespace {

const QString id = u"R1"_s;

} // namespace

// The replay of a record of 1 s and 4000 bytes, by a clock that the test moves on.
class TestReplayStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void sendsTheSamplesAsTheyComeDue();
    void saysWhatTheSamplesAre();
    void sendsNothingBeforeSomebodyHasCome();
    void beginsWhereItIsTold();
    void holdsWithTheReplay();
    void tellsOfEachStandstill();
    void leavesOutAHoleInTime();
    void sendsNoFrameAcrossAnIndexEntry();
    void endsWithTheReplay();
    void knowsItsEndHoweverLongALookTakes();
    void endsWhenItIsStopped();
    void endsWhenItGoes();
    void givesUpWhereNobodyComes();
    void takesNobodyFromElsewhere();
    void endsWithoutARecord();
    void endsWithoutSamples_data();
    void endsWithoutSamples();
    void endsWhenItsReceiverGoes();
    void endsWhenItsReceiverTakesNothing();

private:
    void open(const std::string& sender = "127.0.0.1");
    void start(const Record& record);
    void play(const Record& record);
    void connectReceiver();
    StoreStatus beginReplay(ReplayStream::Source* source);
    void advance(int time) { m_clock.advance(milliseconds(time)); }
    // The time goes on for as long as the condition does not hold.
    template <typename Condition>
    bool advanceUntil(const Condition& condition)
    {
        return QTest::qWaitFor(
            [&] {
                advance(20);
                m_replays->endThoseDue();
                return condition();
            },
            patience);
    }
    bool hasEnded() const { return m_ending.has_value(); }

    SteppedClock m_clock;
    RecordUses m_uses;
    std::unique_ptr<Replays> m_replays;
    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_bytes; // of the record
    Record m_record;
    quint64 m_start = 10'000'000;
    StoreStatus m_status = StoreStatus::Done;
    std::function<std::optional<Replays::Position>()> m_position;
    std::mutex m_look; // held while the position is looked at
    std::unique_ptr<FlowSocket> m_socket;
    quint16 m_port = 0;
    std::unique_ptr<ReplayReceiver> m_receiver;
    QStringList m_log;
    std::optional<ReplayStream::Ending> m_ending;
    std::unique_ptr<Mailbox> m_news;
    std::unique_ptr<ReplayStream> m_stream;
};

void TestReplayStream::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_replays = std::make_unique<Replays>(m_uses, m_clock);
    m_news = std::make_unique<Mailbox>();
    m_bytes.clear();
    for (int i = 0; i < 4000; ++i) {
        m_bytes.append(static_cast<char>(i % 251));
    }
    QVERIFY(writeBytes(m_folder->filePath(u"samples"_s), m_bytes));
    m_start = 10'000'000;
    m_status = StoreStatus::Done;
    m_position = [this] {
        const std::lock_guard look(m_look);
        return m_replays->position(id);
    };
    m_log.clear();
    m_ending.reset();
    open();
}

void TestReplayStream::cleanup()
{
    m_stream.reset();
    m_receiver.reset();
    m_socket.reset();
    m_replays.reset();
    m_news.reset();
}

void TestReplayStream::open(const std::string& sender)
{
    QString error;
    m_socket = FlowSocket::open(FlowSocket::Kind::Stream, u"127.0.0.1"_s, 0, sender, &error);
    QVERIFY2(m_socket, qPrintable(error));
    m_port = m_socket->port();
}

StoreStatus TestReplayStream::beginReplay(ReplayStream::Source* source)
{
    if (m_status != StoreStatus::Done) {
        return m_status;
    }
    const RecordTimeline timeline(m_record);
    source->record = std::make_shared<Record>(m_record);
    source->samples = m_folder->filePath(u"samples"_s);
    source->start = m_start;
    source->stop = timeline.stopTime();
    source->position = m_position;
    source->end = [this] { m_replays->stop(id); };
    return m_replays->start(id, timeline, m_start, 0);
}

void TestReplayStream::start(const Record& record)
{
    m_record = record;
    ReplayStream::Listener listener;
    const auto note = [this](const QString& text) { m_news->post([this, text] { m_log.append(text); }); };
    listener.began = [note](const RecordPointer& begun) { note(u"began "_s + begun->GetRecordID()); };
    listener.paused = [note](bool paused) { note(paused ? u"stands still"_s : u"goes on"_s); };
    listener.ended = [this](const ReplayStream::Ending& ending) {
        m_news->post([this, ending] { m_ending = ending; });
    };
    m_stream = std::make_unique<ReplayStream>(
        std::move(m_socket), [this](ReplayStream::Source* source) { return beginReplay(source); }, listener,
        ReplayStream::Options(), m_clock);
}

void TestReplayStream::connectReceiver()
{
    m_receiver = std::make_unique<ReplayReceiver>(m_port);
    QVERIFY(m_receiver->waitUntilConnected(patience));
}

// To the moment in which it has begun.
void TestReplayStream::play(const Record& record)
{
    connectReceiver();
    start(record);
    QTRY_COMPARE_WITH_TIMEOUT(m_log, QStringList{u"began R1"_s}, patience);
}

void TestReplayStream::sendsTheSamplesAsTheyComeDue()
{
    play(finishedRecord(id));
    for (int quarter = 1; quarter < 4; ++quarter) {
        advance(250);
        QTRY_COMPARE_WITH_TIMEOUT(m_receiver->samples().size(), quarter * 1000, patience);
    }
    advance(250);
    m_replays->endThoseDue();
    QVERIFY(advanceUntil([this] { return hasEnded() && m_receiver->hasEnded(); }));
    QCOMPARE(m_receiver->samples(), m_bytes);
    QVERIFY(m_receiver->isWellFormed());
    QCOMPARE(m_ending->end, End::Finished);
    QCOMPARE(m_ending->time, 11'000'000U);
}

void TestReplayStream::saysWhatTheSamplesAre()
{
    play(finishedRecord(id));
    advance(250);
    QTRY_COMPARE_WITH_TIMEOUT(m_receiver->frames().size(), 1, patience);
    advance(250);
    QTRY_COMPARE_WITH_TIMEOUT(m_receiver->frames().size(), 2, patience);
    ChannelFrame expected;
    expected.number = 1;
    expected.sampleBytes = 1000;
    expected.time = 10'250'000;
    expected.centreFrequency = 145'000'000;
    expected.sampleRate = 1000;
    expected.bandwidth = 800;
    QCOMPARE(m_receiver->frames().constLast(), expected);
}

void TestReplayStream::sendsNothingBeforeSomebodyHasCome()
{
    start(finishedRecord(id));
    advance(250);
    QVERIFY(!m_replays->isReplaying(id));
    connectReceiver();
    const auto hasBegun = [this] { return !m_log.isEmpty(); };
    QVERIFY(QTest::qWaitFor(
        [&] {
            advance(20);
            return hasBegun();
        },
        patience));
    QVERIFY(m_replays->isReplaying(id));
}

void TestReplayStream::beginsWhereItIsTold()
{
    m_start = 10'500'000;
    play(finishedRecord(id));
    QVERIFY(advanceUntil([this] { return hasEnded() && m_receiver->hasEnded(); }));
    QCOMPARE(m_receiver->samples(), m_bytes.mid(2000));
    QCOMPARE(m_receiver->frames().constFirst().time, 10'500'000U);
}

void TestReplayStream::holdsWithTheReplay()
{
    play(finishedRecord(id));
    advance(250);
    QCOMPARE(m_replays->pause(id), StoreStatus::Done);
    advance(20);
    QTRY_COMPARE_WITH_TIMEOUT(m_log.mid(1), QStringList{u"stands still"_s}, patience);
    advance(5000);
    QTRY_COMPARE_WITH_TIMEOUT(m_receiver->samples().size(), 1000, patience);
    QCOMPARE(m_replays->goOn(id), StoreStatus::Done);
    advance(250);
    QTRY_COMPARE_WITH_TIMEOUT(m_receiver->samples().size(), 2000, patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_log.mid(1), (QStringList{u"stands still"_s, u"goes on"_s}), patience);
    QVERIFY(advanceUntil([this] { return hasEnded() && m_receiver->hasEnded(); }));
    QCOMPARE(m_receiver->samples(), m_bytes);
    QCOMPARE(m_ending->end, End::Finished);
}

// Also of one that comes before anybody has noticed that the replay went on.
void TestReplayStream::tellsOfEachStandstill()
{
    play(finishedRecord(id));
    QCOMPARE(m_replays->pause(id), StoreStatus::Done);
    advance(20);
    QTRY_COMPARE_WITH_TIMEOUT(m_log.mid(1), QStringList{u"stands still"_s}, patience);
    {
        const std::lock_guard nobodyLooks(m_look);
        QCOMPARE(m_replays->goOn(id), StoreStatus::Done);
        advance(100);
        QCOMPARE(m_replays->pause(id), StoreStatus::Done);
    }
    advance(20);
    QTRY_COMPARE_WITH_TIMEOUT(m_log.mid(1), (QStringList{u"stands still"_s, u"stands still"_s}), patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_receiver->samples().size(), 400, patience);
}

// The second half comes after half a second without samples.
void TestReplayStream::leavesOutAHoleInTime()
{
    Record record = finishedRecord(id);
    record.SetStopTime(11'500'000);
    record.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(10'500'000, 2000), indexEntry(11'000'000, 2000),
                          indexEntry(11'500'000, 4000)});
    play(record);
    advance(500);
    QTRY_COMPARE_WITH_TIMEOUT(m_receiver->samples().size(), 2000, patience);
    QVERIFY(advanceUntil([this] { return hasEnded() && m_receiver->hasEnded(); }));
    QCOMPARE(m_receiver->samples(), m_bytes);
    for (const ChannelFrame& frame : m_receiver->frames()) {
        QVERIFY(frame.isLast || frame.time < 10'500'000 || frame.time >= 11'000'000);
    }
}

void TestReplayStream::sendsNoFrameAcrossAnIndexEntry()
{
    Record record = finishedRecord(id);
    record.SetIndexEntry(
        {indexEntry(10'000'000, 0), indexEntry(10'100'000, 400, 90'000'000), indexEntry(11'000'000, 4000)});
    play(record);
    advance(250);
    QTRY_COMPARE_WITH_TIMEOUT(m_receiver->frames().size(), 2, patience);
    QCOMPARE(m_receiver->frames().at(0).sampleBytes, 400U);
    QCOMPARE(m_receiver->frames().at(1).centreFrequency, 90'000'000U);
    QCOMPARE(m_receiver->frames().at(1).sampleBytes, 600U);
}

void TestReplayStream::endsWithTheReplay()
{
    play(finishedRecord(id));
    advance(250);
    QTRY_COMPARE_WITH_TIMEOUT(m_receiver->samples().size(), 1000, patience);
    QCOMPARE(m_replays->stop(id), StoreStatus::Done);
    advance(20);
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded() && m_receiver->hasEnded(), patience);
    QCOMPARE(m_ending->end, End::Stopped);
    QCOMPARE(m_ending->time, 10'250'000U);
    QCOMPARE(m_receiver->samples().size(), 1000);
}

// The first look takes 700 ms, and nobody has looked again when the replay ends.
void TestReplayStream::knowsItsEndHoweverLongALookTakes()
{
    m_position = [this, hasLooked = false]() mutable -> std::optional<Replays::Position> {
        if (std::exchange(hasLooked, true)) {
            return std::nullopt;
        }
        advance(700);
        return Replays::Position{10'250'000, 1000, false};
    };
    play(finishedRecord(id));
    QTRY_COMPARE_WITH_TIMEOUT(m_receiver->samples().size(), 1000, patience);
    advance(50);
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded() && m_receiver->hasEnded(), patience);
    QCOMPARE(m_ending->end, End::Finished);
    QCOMPARE(m_receiver->samples(), m_bytes);
}

void TestReplayStream::endsWhenItIsStopped()
{
    play(finishedRecord(id));
    m_stream->stop();
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded() && m_receiver->hasEnded(), patience);
    QCOMPARE(m_ending->end, End::Stopped);
    QVERIFY(!m_replays->isReplaying(id));
}

void TestReplayStream::endsWhenItGoes()
{
    play(finishedRecord(id));
    m_stream.reset();
    QVERIFY(!m_replays->isReplaying(id));
}

void TestReplayStream::givesUpWhereNobodyComes()
{
    start(finishedRecord(id));
    QVERIFY(advanceUntil([this] { return hasEnded(); }));
    QCOMPARE(m_ending->end, End::NobodyCame);
    QCOMPARE(m_log, QStringList());
}

void TestReplayStream::takesNobodyFromElsewhere()
{
    open("192.0.2.1");
    connectReceiver();
    start(finishedRecord(id));
    QVERIFY(advanceUntil([this] { return hasEnded(); }));
    QCOMPARE(m_ending->end, End::NobodyCame);
}

void TestReplayStream::endsWithoutARecord()
{
    m_status = StoreStatus::UnknownRecord;
    connectReceiver();
    start(finishedRecord(id));
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), patience);
    QCOMPARE(m_ending->end, End::NotBegun);
    QCOMPARE(m_ending->status, StoreStatus::UnknownRecord);
}

void TestReplayStream::endsWithoutSamples_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::newRow("a file that is gone") << false;
    QTest::newRow("a file that is too short") << true;
}

void TestReplayStream::endsWithoutSamples()
{
    QFETCH(const bool, isThere);
    const QString path = m_folder->filePath(u"samples"_s);
    QVERIFY(isThere ? writeBytes(path, QByteArray(100, 's')) : QFile::remove(path));
    connectReceiver();
    start(finishedRecord(id));
    QVERIFY(advanceUntil([this] { return hasEnded(); }));
    QCOMPARE(m_ending->end, End::Damaged);
    QVERIFY(!m_replays->isReplaying(id));
}

void TestReplayStream::endsWhenItsReceiverGoes()
{
    play(finishedRecord(id));
    m_receiver->disconnect();
    QVERIFY(advanceUntil([this] { return hasEnded(); }));
    QCOMPARE(m_ending->end, End::Lost);
    QVERIFY(!m_replays->isReplaying(id));
}

// More than all that system and connection keep for somebody who does not read.
void TestReplayStream::endsWhenItsReceiverTakesNothing()
{
    constexpr quint64 bytes = 64 * 1024 * 1024;
    QFile samples(m_folder->filePath(u"samples"_s));
    QVERIFY(samples.open(QIODevice::ReadWrite) && samples.resize(bytes));
    Record record = finishedRecord(id);
    record.SetSize(bytes);
    record.SetStopPosition(bytes);
    record.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(11'000'000, bytes)});
    QTcpSocket deaf;
    deaf.setReadBufferSize(1);
    deaf.connectToHost(QHostAddress::LocalHost, m_port);
    QVERIFY(deaf.waitForConnected(patience));
    start(record);
    QVERIFY(advanceUntil([this] { return hasEnded(); }));
    QCOMPARE(m_ending->end, End::Lost);
}

QTEST_GUILESS_MAIN(TestReplayStream)
#include "tst_replaystream.moc"
