#include <patience.h>
#include <peerprocess.h>
#include <recorderclient.h>
#include <recorderprocess.h>
#include <storedbytes.h>
#include <storedrecord.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoTest;
using namespace Qt::StringLiterals;
using ZelkoCommon::Role;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;

namespace {

const QString device = u"Recorder1"_s;
const QString brief = u"Brief"_s;  // 1 s
const QString lengthy = u"Long"_s; // an hour
const QString done = u"done"_s;
const QStringList wholeRecording{"start requested", "recording", "stopping", "stopped"};

constexpr int longPatience = 2 * patience; // until a recorder has asked twice for a sign of life

enum RecordingKey { StartRequested = 0, StopRequested = 3 };
enum ReplayKey { Idle = 0, Paused = 2, Running = 4 };

} // namespace

// Two clients that work one channel of a real recorder by its values, and the process that owns the channel.
class TestRecorderChannels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions()); }
    void cleanupTestCase() { m_orb.reset(); }
    void init();
    void cleanup();
    void recordsForOneAndShowsItToTheOther();
    void endsARecordingAtTheSizeThatIsWritten();
    void waitsForDataAsLongAsItIsTold();
    void replaysForBoth();
    void playsARecordToItsEnd();
    void letsAViewerChangeNothing();
    void takesTheChannelAwayWithItsManager();
    void keepsWhatWasRecordedWhenItIsKilled();

private:
    using Client = std::unique_ptr<RecorderClient>;

    bool startRecorder(const QStringList& more = {})
    {
        m_recorder = std::make_unique<RecorderProcess>(QStringLiteral(ZELKO_RECORDER));
        return m_recorder->start(QStringList{u"--store"_s, m_store->path()} + more);
    }
    Client connectAs(Role role);
    void enter();
    ShownChannel shown(const Client& client) const { return client->channel(m_channel); }
    void record(int key) { m_first->select(shown(m_first).recordingState(), key); }
    void replay(const Client& client, int key) { client->select(shown(client).replayState(), key); }
    bool bothReplay(const QString& state) const
    {
        return shown(m_first).replay() == state && shown(m_second).replay() == state;
    }
    void send(int count);
    void sendUntilDurable();
    void run(const QString& record);
    bool hasStatus(const QString& id, Status status) const
    {
        const auto record = m_second->values().record(id);
        return record && record->GetRecordStatus() == status;
    }

    std::unique_ptr<ZelkoCommon::Orb> m_orb;
    std::unique_ptr<QTemporaryDir> m_store;
    std::unique_ptr<RecorderProcess> m_recorder;
    std::unique_ptr<PeerProcess> m_manager;
    QString m_channel;
    Client m_first;
    Client m_second;
};

void TestRecorderChannels::init()
{
    m_store = std::make_unique<QTemporaryDir>();
    QVERIFY(storeRecord(m_store->filePath(device), finishedRecord(brief), 4000));
    QVERIFY(storeRecord(m_store->filePath(device), hourLongRecord(lengthy), 4000));
    QVERIFY(startRecorder());
    enter();
    m_first = connectAs(Role::Operator);
    m_second = connectAs(Role::Operator);
}

void TestRecorderChannels::cleanup()
{
    m_second.reset();
    m_first.reset();
    m_manager.reset();
    m_recorder.reset();
}

TestRecorderChannels::Client TestRecorderChannels::connectAs(Role role)
{
    auto client = std::make_unique<RecorderClient>(*m_orb, m_recorder->port(), role);
    const auto isThere = [&] {
        return client->isConnected() && client->values().isLoaded() && shown(client).isThere();
    };
    return QTest::qWaitFor(isThere, patience) ? std::move(client) : nullptr;
}

void TestRecorderChannels::enter()
{
    m_manager = std::make_unique<PeerProcess>(QStringList{u"--recorder"_s, QString::number(m_recorder->port())}, 0,
                                              QStringLiteral(ZELKO_CHANNEL_MANAGER));
    QVERIFY(m_manager->port() != 0);
    m_channel = m_manager->ask("register Antenna1");
}

void TestRecorderChannels::send(int count)
{
    for (int number = 0; number < count; ++number) {
        const auto sends = [&] { return m_manager->ask(u"send %1"_s.arg(number)) == done; };
        QVERIFY(sendUntilStored(m_store->path(), sends));
    }
}

// Until the recorder says that something of them is durable.
void TestRecorderChannels::sendUntilDurable()
{
    int number = 0;
    const auto isDurable = [&] {
        return m_manager->ask(u"send %1"_s.arg(number++)) == done && shown(m_first).number("FileSize") > 0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isDurable(), patience);
}

void TestRecorderChannels::run(const QString& record)
{
    m_first->write(shown(m_first).find<Value<QString>>("RecordID"), record);
    replay(m_first, Running);
    QVERIFY(QTest::qWaitFor([this] { return m_manager->ask("receive") == done; }, patience)); // it comes once
}

void TestRecorderChannels::recordsForOneAndShowsItToTheOther()
{
    QVERIFY(m_first && m_second);
    const ChoiceLog log(shown(m_second).recordingState());
    m_first->write(shown(m_first).find<Value<QString>>("RecordName"), u"Morning"_s);
    record(StartRequested);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->ask("calls").endsWith("start"), patience);
    send(1);
    QTRY_COMPARE_WITH_TIMEOUT(shown(m_second).recording(), u"recording"_s, patience);
    const QString id = shown(m_first).text("RecordID");
    QTRY_VERIFY_WITH_TIMEOUT(hasStatus(id, Status::Recording), patience);
    record(StopRequested);
    QTRY_COMPARE_WITH_TIMEOUT(log.names(), wholeRecording, patience);
    QTRY_VERIFY_WITH_TIMEOUT(hasStatus(id, Status::Finished), patience);
    QCOMPARE(m_second->values().record(id)->GetRecordName(), u"Morning"_s);
    QCOMPARE(shown(m_second).text("RecordID"), id);
    QCOMPARE(shown(m_second).text("RecordStatus"), u"Finished"_s);
    QCOMPARE(shown(m_second).error(), QString());
}

void TestRecorderChannels::endsARecordingAtTheSizeThatIsWritten()
{
    QVERIFY(m_first && m_second);
    m_second->write(shown(m_second).find<Value<int>>("FileSizeInKB"), 1);
    QTRY_COMPARE_WITH_TIMEOUT(shown(m_first).find<Value<int>>("FileSizeInKB")->GetValue(), 1, patience);
    record(StartRequested);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->ask("calls").endsWith("start"), patience);
    send(3);
    QTRY_COMPARE_WITH_TIMEOUT(shown(m_second).recording(), u"stopped"_s, patience);
    const QString id = shown(m_second).text("RecordID");
    QTRY_VERIFY_WITH_TIMEOUT(hasStatus(id, Status::Finished), patience);
    QCOMPARE(m_second->values().record(id)->GetSize(), 1024U);
}

// For the second that the recording is to last, which is more than its patience.
void TestRecorderChannels::waitsForDataAsLongAsItIsTold()
{
    cleanup();
    QVERIFY(startRecorder({u"--data-patience"_s, u"0.1"_s}));
    enter();
    m_first = connectAs(Role::Operator);
    QVERIFY(m_first);
    m_first->write(shown(m_first).find<Value<int>>("RecordTimeout"), 1);
    const ChoiceLog log(shown(m_first).recordingState());
    record(StartRequested);
    QTRY_COMPARE_WITH_TIMEOUT(shown(m_first).error(), u"no data have come"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(log.names(), (QStringList{"start requested", "stopping", "stopped"}), patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->ask("calls").contains("fault 3: no data have come"), patience);
    QCOMPARE(shown(m_first).text("RecordID"), QString());
}

void TestRecorderChannels::replaysForBoth()
{
    QVERIFY(m_first && m_second);
    run(lengthy);
    QTRY_VERIFY_WITH_TIMEOUT(bothReplay(u"running"_s), patience);
    QTRY_VERIFY_WITH_TIMEOUT(hasStatus(lengthy, Status::Replaying), patience);
    const double before = shown(m_second).position();
    QTRY_VERIFY_WITH_TIMEOUT(shown(m_first).position() > before && shown(m_second).position() > before, patience);
    replay(m_second, Paused);
    QTRY_VERIFY_WITH_TIMEOUT(bothReplay(u"paused"_s), patience);
    QTRY_COMPARE_WITH_TIMEOUT(shown(m_first).position(), shown(m_second).position(), patience);
    const double held = shown(m_first).position();
    replay(m_first, Running);
    QTRY_VERIFY_WITH_TIMEOUT(shown(m_second).position() > held, patience);
    QTRY_VERIFY_WITH_TIMEOUT(bothReplay(u"running"_s), patience);
    replay(m_second, Idle);
    QTRY_VERIFY_WITH_TIMEOUT(bothReplay(u"stopped"_s), patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->ask("received").endsWith("all"), patience);
    QTRY_VERIFY_WITH_TIMEOUT(hasStatus(lengthy, Status::Finished), patience);
}

void TestRecorderChannels::playsARecordToItsEnd()
{
    QVERIFY(m_first && m_second);
    run(brief);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->ask("received"), u"4000 all"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(shown(m_second).position() == 11'000'000.0, patience);
    QTRY_VERIFY_WITH_TIMEOUT(bothReplay(u"stopped"_s), patience);
}

void TestRecorderChannels::letsAViewerChangeNothing()
{
    const Client viewer = connectAs(Role::Viewer);
    QVERIFY(viewer && m_second);
    QSignalSpy refused(&viewer->link(), &ZelkoCommon::TreeLink::writeRefused);
    const ChoiceLog log(shown(m_second).recordingState());
    viewer->select(shown(viewer).recordingState(), StartRequested);
    QTRY_COMPARE_WITH_TIMEOUT(refused.size(), 1, patience);
    QTRY_COMPARE_WITH_TIMEOUT(shown(viewer).recording(), u"stopped"_s, patience);
    viewer->select(shown(viewer).replayState(), Running);
    QTRY_COMPARE_WITH_TIMEOUT(refused.size(), 2, patience);
    QTRY_COMPARE_WITH_TIMEOUT(shown(viewer).replay(), u"stopped"_s, patience);
    QCOMPARE(log.names(), QStringList());
    QCOMPARE(m_manager->ask("calls"), QString());
}

void TestRecorderChannels::takesTheChannelAwayWithItsManager()
{
    QVERIFY(m_first && m_second);
    run(lengthy);
    QTRY_VERIFY_WITH_TIMEOUT(hasStatus(lengthy, Status::Replaying), patience);
    m_manager->kill();
    QTRY_VERIFY_WITH_TIMEOUT(!shown(m_second).isThere(), longPatience);
    QTRY_VERIFY_WITH_TIMEOUT(hasStatus(lengthy, Status::Finished), patience);
}

void TestRecorderChannels::keepsWhatWasRecordedWhenItIsKilled()
{
    QVERIFY(m_first && m_second);
    record(StartRequested);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->ask("calls").endsWith("start"), patience);
    sendUntilDurable();
    const QString id = shown(m_first).text("RecordID");
    const qint64 told = shown(m_first).number("FileSize");
    m_recorder->kill();
    m_first.reset();
    m_second.reset();
    QVERIFY(startRecorder());
    enter();
    m_second = connectAs(Role::Viewer);
    QVERIFY(m_second);
    QTRY_VERIFY_WITH_TIMEOUT(hasStatus(id, Status::Finished), patience);
    QVERIFY(static_cast<qint64>(m_second->values().record(id)->GetSize()) >= told);
    QCOMPARE(shown(m_second).recording(), u"stopped"_s);
}

QTEST_GUILESS_MAIN(TestRecorderChannels)
#include "tst_recorderchannels.moc"
